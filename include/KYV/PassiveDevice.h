#ifndef KYV_PASSIVEDEVICE_H
#define KYV_PASSIVEDEVICE_H

#include <array>
#include <cstddef>

#include "KYV/Device.h"

namespace KYV {

/// What all devices that nobody watches share, files and pictures in memory: no window, events, cursor, bell, frames or
/// fonts (success without effect), and the pens of the four attribute classes, title, size, inverse flag and clip.
class PassiveDevice : public Device, public Listener {
 public:
  int getDevice(String& name) override;
  int resize(float, float) override { return 1; }
  int manage() override { return 1; }
  int unmanage() override { return 1; }
  int addCallback(const char*, Listener*, const void*) override { return 1; }
  int doCallback(const char*, const char*) override { return 1; }
  void callback(const char*, const char*, const void*) override {}
  int update() override { return 1; }
  int clear() override { return 1; }
  int clearRect(const Rect&) override { return 1; }
  int setTitle(const char* text) override;
  int setIcon(bool) override { return 1; }
  int setFixed(bool) override { return 1; }
  int setInverse(bool on) override { return inverse = on, 1; }
  bool getInverse() override { return inverse; }
  int setBackground(const char*) override { return 1; }
  int getSize(float& w, float& h) override { return w = width, h = height, 1; }
  float getWidth() override { return width; }
  float getHeight() override { return height; }
  int setOffset(float x, float y) override { return xoff = x, yoff = y, 1; }
  int getOffset(float& x, float& y) override { return x = xoff, y = yoff, 1; }
  /// 0xRRGGBB.
  int allocColor(float r, float g, float b) override;
  int setColor(int cls, int value) override;
  /// A width that is not positive, or beyond 10000, counts as 1.
  int setLineWidth(int cls, float w) override;
  int setLineStyle(int cls, int style) override;
  int setFillStyle(int cls, int style) override;
  int setImageAlign(int, int) override { return 1; }
  int getImage(Image& image) override;
  int setFont(const char*) override { return 1; }
  int setTextAlign(int, int) override { return 1; }
  int drawText(const Point&, const char*) override { return 1; }
  Rect getClip() override { return clip; }
  using Device::setClip;
  int setClip(const Rect& r) override { return setClip(r.xmin, r.ymin, r.xmax, r.ymax); }
  int setCursor(int) override { return 1; }
  int copyFrame(int, int) override { return 1; }
  int displayFrame(int) override { return 1; }
  int clearFrame(int) override { return 1; }
  int newFrame(int) override { return 1; }
  int newFrame() override { return 1; }
  bool isLooping() override { return false; }
  int getFrame() override { return 0; }
  int setFrame(int) override { return 1; }
  int incFrame(int) override { return 1; }
  int deleteFrame(int) override { return 1; }
  int getNumFrames() override { return 0; }
  int message(const char*) override { return 1; }
  int bell(int) override { return 1; }

 protected:
  struct Pen {
    int color = 0;
    int style = 1;
    float width = 1.0f;
  };
  /// The pen of an attribute class, null for a class that does not exist.
  Pen* pen(int cls) { return cls >= 1 && cls <= 4 ? &pens[static_cast<std::size_t>(cls - 1)] : nullptr; }
  /// Title, pens, size and clip as they are before any option.
  int initSurface(const char* name, float w, float h);

  bool opened = false;
  bool inverse = false;
  float width = 0.0f;  // surface, plot units
  float height = 0.0f;
  float xoff = 0.0f;
  float yoff = 0.0f;
  char title[60] = "";
  Rect clip;

 private:
  std::array<Pen, 4> pens;
};

}  // namespace KYV
#endif
