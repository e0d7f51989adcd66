#include "KYV/PassiveDevice.h"

#include "ColorByte.h"
#include "KYV/Image.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr float MAX_PEN = 10000.0f;

}  // namespace

int PassiveDevice::initSurface(const char* name, float w, float h) {
  opened = inverse = false;
  width = w;
  height = h;
  xoff = yoff = 0.0f;
  StrLib::copy(title, name);
  clip = Rect(0.0f, 0.0f, w, h);
  pens = {};
  pen(FILL)->style = FILL_SOLID;
  return 1;
}

int PassiveDevice::getDevice(String& name) { return name.clear(), 1; }

int PassiveDevice::setTitle(const char* name) { return StrLib::copy(title, name), 1; }

int PassiveDevice::allocColor(float r, float g, float b) { return packColor(r, g, b); }

int PassiveDevice::setColor(int cls, int value) {
  Pen* p = pen(cls);
  if (!p) return 0;
  p->color = value;
  return 1;
}

int PassiveDevice::setLineWidth(int cls, float w) {
  Pen* p = pen(cls);
  if (!p) return 0;
  if (cls != FILL) p->width = w > 0.0f && w <= MAX_PEN ? w : 1.0f;
  return 1;
}

int PassiveDevice::setLineStyle(int cls, int style) {
  Pen* p = pen(cls);
  if (!p) return 0;
  if (cls == LINE) p->style = style;
  return 1;
}

int PassiveDevice::setFillStyle(int cls, int style) {
  Pen* p = pen(cls);
  if (!p) return 0;
  if (cls == FILL) p->style = style;
  return 1;
}

int PassiveDevice::getImage(Image& image) { return image.init(); }

}  // namespace KYV
