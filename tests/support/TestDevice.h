#ifndef KYV_TESTS_TESTDEVICE_H
#define KYV_TESTS_TESTDEVICE_H

#include <string>
#include <vector>

#include "KYV/FileDevice.h"
#include "KYV/Points.h"
#include "KYV/StrLib.h"

/// A device without output that notes what it is told, one text a call: "color 1 5", "line 1 (0,600) (800,0)". By
/// default a screen of 800 by 600, y downward.
class TestDevice : public KYV::FileDevice {
 public:
  using Log = std::vector<std::string>;
  using Device::setClip;
  using FileDevice::newFrame;

  explicit TestDevice(Log& calls, float w = 800.0f, float h = 600.0f) : log(calls) {
    surface.setu(0.0f, 0.0f, w, h);
    width = w;
    height = h;
  }
  /// y upward, as on paper.
  TestDevice& turn() { return surface.setu(0.0f, height, width, 0.0f), *this; }

  int init() override { return 1; }
  int setParam(const char* options) override { return note("param %s", options); }
  int open() override { return openResult; }
  int close() override { return note("close"), closeResult; }
  int getCoords(KYV::Rect& r) override { return r = surface, 1; }
  KYV::Rect getCoords() override { return surface; }
  int setColor(int cls, int value) override { return note("color %d %d", cls, value); }
  int setLineWidth(int cls, float w) override { return note("width %d %g", cls, static_cast<double>(w)); }
  int setLineStyle(int cls, int style) override { return note("style %d %d", cls, style); }
  int setFillStyle(int cls, int style) override { return note("pattern %d %d", cls, style); }
  int drawLine(int cls, float x1, float y1, float x2, float y2) override {
    KYV::Points points;
    points.add(x1, y1);
    points.add(x2, y2);
    return drawLine(cls, points);
  }
  int drawLine(int cls, const KYV::Points& points) override { return notePath("line", cls, points); }
  int drawFill(int cls, const KYV::Points& points) override { return notePath("fill", cls, points); }
  int drawImage(const KYV::Image&, float x, float y) override {
    return note("image (%g,%g)", static_cast<double>(x), static_cast<double>(y));
  }
  int drawImage(const KYV::Image& image, int, float x, float y) override { return drawImage(image, x, y); }
  int setClip(float x1, float y1, float x2, float y2) override {
    return note("clip (%g,%g) (%g,%g)", static_cast<double>(x1), static_cast<double>(y1), static_cast<double>(x2),
                static_cast<double>(y2));
  }
  int setClip(const KYV::Rect& r) override { return setClip(r.xmin, r.ymin, r.xmax, r.ymax); }
  int setFont(const char* spec) override { return note("font %s", spec), fontResult; }
  int setTextAlign(int h, int v) override { return note("align %d %d", h, v); }
  int drawText(const KYV::Point& p, const char* line) override {
    return note("text (%g,%g) %s", static_cast<double>(p.x), static_cast<double>(p.y), line);
  }
  int addCallback(const char* event, KYV::Listener*, const void*) override { return note("listen %s", event); }
  int displayFrame(int frame) override { return note("display %d", frame); }
  int clear() override { return note("clear"); }
  int newFrame(int frame) override { return frames < room ? (++frames, note("new %d", frame)) : 0; }
  int deleteFrame(int frame) override { return frames -= frames > 0, note("delete %d", frame); }
  int getNumFrames() override { return frames; }
  int setFrame(int frame) override { return note("frame %d", frame); }
  int message(const char* what) override { return note("message %s", what); }

  KYV::Rect surface;
  int openResult = 1;
  int closeResult = 1;
  int fontResult = 1;
  int frames = 0;
  int room = 100000;  // for frames

 private:
  KYV_PRINTF(2, 3) int note(const char* format, ...) {
    char call[200];
    std::va_list args;
    va_start(args, format);
    KYV::StrLib::vprintf(call, sizeof call, format, args);
    va_end(args);
    log.emplace_back(call);
    return 1;
  }
  int notePath(const char* what, int cls, const KYV::Points& points) {
    std::string call = std::string(what) + " " + std::to_string(cls);
    for (const KYV::Point& p : points) {
      char at[60];
      KYV::StrLib::printf(at, " (%.5g,%.5g)", static_cast<double>(p.x), static_cast<double>(p.y));
      call += at;
    }
    log.push_back(call);
    return 1;
  }

  Log& log;
};

#endif
