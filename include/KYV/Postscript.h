#ifndef KYV_POSTSCRIPT_H
#define KYV_POSTSCRIPT_H

#include <array>

#include "KYV/FileDevice.h"

namespace KYV {

class Strings;

/// A PostScript or Encapsulated PostScript file. Plot units are points, y grows upward. Each frame is a page; without
/// frames the file is one page.
class Postscript final : public FileDevice {
 public:
  Postscript() { init(); }
  ~Postscript() override;

  int init() override;
  /// File name, then any of port, land, eps, noeps, color, gray, scale=, lwidth=, sz=w:h (inches) and paper names.
  int setParam(const char* options) override;
  int open() override;
  int close() override;
  int getCoords(Rect& r) override;
  Rect getCoords() override;
  int drawLine(int cls, float x1, float y1, float x2, float y2) override;
  int drawLine(int cls, const Points& points) override;
  int drawFill(int cls, const Points& points) override;
  int drawImage(const Image& image, float x, float y) override;
  int drawImage(const Image& image, int, float x, float y) override { return drawImage(image, x, y); }
  using FileDevice::setClip;
  int setClip(float x1, float y1, float x2, float y2) override;
  int message(const char* text) override;
  /// What is drawn next stands on a new page. Pages that were left cannot be asked for.
  int newFrame(int frame) override;
  int newFrame() override { return newFrame(-1); }

 private:
  /// What sets the colour of an attribute class, kept while its colour value stays.
  struct ColorLine {
    int color = 0;
    int size = 0;  // 0: yet to be made
    char text[192] = "";
  };

  bool setOption(const Strings& items, int i);
  void putColor(int cls);
  void putPen(int cls);
  void startPage() {
    if (page_due) beginPage();
  }
  void beginPage();
  void putClip();
  void putPath(const Points& points);

  int page = 0;  // 0: no frame was begun
  bool page_due = false;
  bool clipped = false;  // a clip was set
  bool eps = false;
  bool color = false;
  bool portrait = false;
  float scale = 1.0f;
  float lwidth = 1.0f;
  std::array<ColorLine, 4> lines;
};

}  // namespace KYV
#endif
