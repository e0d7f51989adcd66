#ifndef KYV_METAFILE_H
#define KYV_METAFILE_H

#include "KYV/FileDevice.h"

namespace KYV {

/// The program's own metafile: text, one record a line, a record of the drawing calls that can be played back. Plot
/// units are those of its "SZ" record, y grows downward.
class MetaFile final : public FileDevice {
 public:
  MetaFile() { init(); }
  ~MetaFile() override;

  int init() override;
  /// File name (the first token that is no option), "file=", "sz=WxH".
  int setParam(const char* options) override;
  int open() override;
  int close() override;
  /// Plot units.
  int setSize(float w, float h) override;
  int setOffset(float x, float y) override { return xoff = x, yoff = y, 1; }
  bool getInverse() override { return false; }
  int getCoords(Rect& r) override;
  Rect getCoords() override;
  // Records, written when a value changes.
  int setColor(int cls, int value) override;
  int setLineWidth(int cls, float w) override;
  int setLineStyle(int cls, int style) override;
  int setFillStyle(int cls, int style) override;
  int setFont(const char* spec) override;
  int setTextAlign(int h, int v) override;
  int setImageAlign(int h, int v) override;
  int drawLine(int cls, float x1, float y1, float x2, float y2) override;
  int drawLine(int cls, const Points& points) override;
  int drawFill(int cls, const Points& points) override;
  int drawText(const Point& p, const char* text) override;
  int drawImage(const Image& image, float x, float y) override;
  int drawImage(const Image& image, int, float x, float y) override { return drawImage(image, x, y); }
  using FileDevice::setClip;
  int setClip(float x1, float y1, float x2, float y2) override;
  int message(const char* text) override;
  /// A comment tells where a frame begins.
  int newFrame(int frame) override;
  int newFrame() override { return newFrame(-1); }

 private:
  template <class... Item>
  int put(const Item&... items);
  template <class Value, class Shown>
  int change(Value& value, Value next, const char* name, Shown shown);

  int putPath(char what, const Points& points);

  bool frame_due = false;
  int frame = 0;
};

}  // namespace KYV
#endif
