#include "KYV/FileDevice.h"

#include <cstdio>

#include "ColorByte.h"
#include "DeviceOptions.h"
#include "KYV/FileTool.h"
#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"
#include "TextWriter.h"

namespace KYV {

namespace {

constexpr float POINTS_PER_HUNDREDTH = 0.72f;  // 72 points an inch
constexpr float MAX_HUNDREDTHS = 100.0f * DeviceOptions::MAX_INCHES;
constexpr float MAX_PEN = 10000.0f;

}  // namespace

FileDevice::FileDevice() = default;

FileDevice::~FileDevice() = default;

int FileDevice::initFile(const char* dev, const char* name, float w, float h) {
  device = dev;
  opened = inverse = append = false;
  width = w;
  height = h;
  xoff = yoff = 0.0f;
  StrLib::copy(filename, name);
  StrLib::copy(title, "KYV Plot");
  clip = Rect(0.0f, 0.0f, w, h);
  pens = {};
  pen(FILL)->style = FILL_SOLID;
  return 1;
}

int FileDevice::setFilename(const char* name) {
  if (!StrLib::valid(name)) return 0;
  StrLib::copy(filename, name);
  if (!StrLib::equal(filename, name)) Kyv::outWarning("Output file name is too long, cut to: %s\n", filename);
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
  if (filename[0] == '|') {
    std::fprintf(stderr, "%s: the command \"%s\" has failed or not taken the whole plot\n", device, filename + 1);
  } else {
    std::fprintf(stderr, "%s: unable to write all of %s, check the space on its disk\n", device,
                 filename + (append ? 1 : 0));
  }
  return 0;
}

int FileDevice::getDevice(String& name) { return name.clear(), 1; }

int FileDevice::update() {
  if (opened) {
    text->flush();
    out.flush();
  }
  return 1;
}

int FileDevice::setTitle(const char* name) { return StrLib::copy(title, name), 1; }

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

int FileDevice::allocColor(float r, float g, float b) { return packColor(r, g, b); }

int FileDevice::setColor(int cls, int value) {
  Pen* p = pen(cls);
  if (!p) return 0;
  p->color = value;
  return 1;
}

int FileDevice::setLineWidth(int cls, float w) {
  Pen* p = pen(cls);
  if (!p) return 0;
  if (cls != FILL) p->width = w > 0.0f && w <= MAX_PEN ? w : 1.0f;
  return 1;
}

int FileDevice::setLineStyle(int cls, int style) {
  Pen* p = pen(cls);
  if (!p) return 0;
  if (cls == LINE) p->style = style;
  return 1;
}

int FileDevice::setFillStyle(int cls, int style) {
  Pen* p = pen(cls);
  if (!p) return 0;
  if (cls == FILL) p->style = style;
  return 1;
}

int FileDevice::getImage(Image& image) { return image.init(); }

}  // namespace KYV
