#include "KYV/FileDevice.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "ColorByte.h"
#include "DeviceOptions.h"
#include "KYV/FileTool.h"
#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "KYV/Points.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"
#include "TextWriter.h"

namespace KYV {

namespace {

constexpr float POINTS_PER_HUNDREDTH = 0.72f;  // 72 points an inch
constexpr float MAX_HUNDREDTHS = 100.0f * DeviceOptions::MAX_INCHES;
constexpr float CLIP_MARGIN = 0.1f;
// Samples on a line of an image.
constexpr int LINE_SAMPLES = 80;
// Sides of an image: those of the largest page, points, and the margins of its clip.
constexpr float MAX_SAMPLES = DeviceOptions::MAX_INCHES * 72.0f + 2.0f * CLIP_MARGIN + 1.0f;

// An offset in whole pixels; beyond the largest image all offsets are alike.
int wholeOffset(float v) {
  constexpr float FAR = 2.0f * MAX_SAMPLES + Image::MAX_SIZE;
  return static_cast<int>(std::clamp(v, -FAR, FAR));
}

}  // namespace

FileDevice::FileDevice() = default;

FileDevice::~FileDevice() = default;

int FileDevice::initFile(const char* dev, const char* name, float w, float h) {
  device = dev;
  append = false;
  StrLib::copy(filename, name);
  return initSurface("KYV Plot", w, h);
}

int FileDevice::setFilename(const char* name) {
  if (!StrLib::valid(name)) return 0;
  StrLib::copy(filename, name);
  if (!StrLib::equal(filename, name))
    Kyv::report(Kyv::BADPARAM, "Output file name is too long, cut to: %s\n", filename);
  return 1;
}

int FileDevice::openFile() {
  const char* mode = "w";
  const char* name = filename;
  const char* shown = filename;
  const char* what = "Creating";
  append = false;
  if (filename[0] == '|') {
    what = "Spooling to";
    shown = filename + 1;
  } else if (filename[0] == '+') {
    what = "Appending to";
    shown = name = filename + 1;
    mode = "a";
    append = true;
  }
  // A plot on standard output must not begin with a message.
  if (!FileTool::isStdio(name)) {
    std::printf("%s: %s\n", what, shown);
    std::fflush(stdout);
  }
  if (!out.open(name, mode)) {
    std::fprintf(stderr, "%s: unable to output to file\n", device);
    Kyv::note(Kyv::NOWRITE);
    if (out.getReason().valid()) Kyv::outWarning("  %s%s\n", name, out.getReason().get());
    return 0;
  }
  text = std::make_unique<TextWriter>(out);
  return 1;
}

int FileDevice::closeFile() {
  text->flush();
  text.reset();
  opened = false;
  if (out.close()) return 1;
  Kyv::note(Kyv::NOWRITE);
  if (filename[0] == '|') {
    std::fprintf(stderr, "%s: the command \"%s\" has failed or not taken the whole plot\n", device, filename + 1);
  } else {
    std::fprintf(stderr, "%s: unable to write all of %s%s\n", device, filename + (append ? 1 : 0),
                 out.getReason().get());
  }
  return 0;
}

int FileDevice::discard() {
  if (!opened) return 1;
  text.reset();
  opened = false;
  out.discard();
  return 1;
}

int FileDevice::update() {
  if (opened) {
    text->flush();
    out.flush();
  }
  return 1;
}

int FileDevice::setSize(float w, float h) {
  // Written so that a number that is none is refused too.
  if (!(w > 0.0f && h > 0.0f && w <= MAX_HUNDREDTHS && h <= MAX_HUNDREDTHS)) return 0;
  width = w * POINTS_PER_HUNDREDTH;
  height = h * POINTS_PER_HUNDREDTH;
  return 1;
}

int FileDevice::setOffset(float x, float y) {
  xoff = x * POINTS_PER_HUNDREDTH;
  yoff = y * POINTS_PER_HUNDREDTH;
  return 1;
}

bool FileDevice::ready(float x1, float y1, float x2, float y2) const {
  return opened && std::isfinite(x1) && std::isfinite(y1) && std::isfinite(x2) && std::isfinite(y2);
}

bool FileDevice::ready(const Points& points) const {
  return opened && points.getNum() > 0 && std::all_of(points.begin(), points.end(), [](const Point& p) {
           return std::isfinite(p.x) && std::isfinite(p.y);
         });
}

void FileDevice::setWideClip(float x1, float y1, float x2, float y2) {
  // In order first, so that it is wider on every side.
  clip = Rect(x1, y1, x2, y2);
  clip = Rect(clip.xmin - CLIP_MARGIN, clip.ymin - CLIP_MARGIN, clip.xmax + CLIP_MARGIN, clip.ymax + CLIP_MARGIN);
}

bool FileDevice::getSamples(const Image& image, float x, float y, Samples& s) const {
  if (!opened || image.getWidth() <= 0 || image.getHeight() <= 0 || !image.validData()) return false;
  if (std::isnan(x) || std::isnan(y)) return false;
  // Less than a unit in either direction shows nothing, and a scale of 0 stops interpreters.
  const float w = clip.width(), h = clip.height();
  if (!(w >= 1.0f && h >= 1.0f && w < MAX_SAMPLES && h < MAX_SAMPLES)) return false;
  if (std::max(std::fabs(clip.xmin), std::fabs(clip.ymin)) > 1e6f) return false;
  s = {static_cast<int>(clip.xmin),
       static_cast<int>(clip.ymin),
       static_cast<int>(w),
       static_cast<int>(h),
       wholeOffset(x),
       wholeOffset(y)};
  return true;
}

void FileDevice::putSamples(const Image& image, const Samples& s, bool color) {
  RGB rgb;
  for (int row = 0; row < s.height; ++row) {
    for (int i = 0; i < s.width; ++i) {
      if (!image.getRGB(s.left + i, s.top + row, rgb)) rgb.set(1.0f, 1.0f, 1.0f);
      // What is clear shows the paper.
      if (const int seen = image.getAlpha(s.left + i, s.top + row); seen < 255) {
        const float part = static_cast<float>(seen) / 255.0f;
        const auto over = [part](float v) { return 1.0f + part * (v - 1.0f); };
        rgb.set(over(rgb.red), over(rgb.green), over(rgb.blue));
      }
      if (color) {
        for (const float v : {rgb.red, rgb.green, rgb.blue}) text->putHex(colorByte(v));
      } else {
        text->putHex(colorByte(greyOf(rgb.red, rgb.green, rgb.blue)));
      }
      if (i % LINE_SAMPLES == LINE_SAMPLES - 1) text->put('\n');
    }
    text->put('\n');
  }
}

}  // namespace KYV
