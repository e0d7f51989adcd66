#ifndef KYV_HPGL_H
#define KYV_HPGL_H

#include "KYV/FileDevice.h"

namespace KYV {

class Strings;

/// A file of HP-GL/2 plotter instructions, wrapped for a printer on request. Plot units are plotter units, 1015 an
/// inch, y grows upward. Images are not plotted, colours are not written. Each frame after the first is a new page.
class Hpgl final : public FileDevice {
 public:
  Hpgl() { init(); }
  ~Hpgl() override;

  int init() override;
  /// File name, then any of port, land, pcl, nopcl, lj, color, gray, scale=, rot=, lwidth=, sz=w:h (inches), roll= and
  /// paper names.
  int setParam(const char* options) override;
  int open() override;
  int close() override;
  int getCoords(Rect& r) override;
  Rect getCoords() override;
  int drawLine(int cls, float x1, float y1, float x2, float y2) override;
  int drawLine(int cls, const Points& points) override;
  int drawFill(int cls, const Points& points) override;
  int drawImage(const Image&, float, float) override { return 1; }
  int drawImage(const Image&, int, float, float) override { return 1; }
  using FileDevice::setClip;
  int setClip(float x1, float y1, float x2, float y2) override;
  int newFrame(int frame) override;
  int newFrame() override { return newFrame(-1); }

 private:
  enum Pcl { NO_PCL = 0, PCL = 1, LASERJET = 2 };

  bool setOption(const Strings& items, int i);
  void startPage();
  void putPen(int cls);

  Pcl pcl = NO_PCL;
  bool color = false;
  int rotation = 0;  // degrees
  float scale = 1.0f;
  float lwidth = 1.0f;
  bool drawn = false;     // something stands on the page
  bool page_due = false;  // what is drawn next stands on a new one
};

}  // namespace KYV
#endif
