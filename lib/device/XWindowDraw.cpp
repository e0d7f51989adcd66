// Drawing into the pixmap in hand.
#include <X11/Xutil.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>

#include "ColorByte.h"
#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "KYV/Points.h"
#include "KYV/StrLib.h"
#include "KYV/XWindow.h"
#include "Patterns.h"
#include "XWindowState.h"

namespace KYV {

namespace {

constexpr int MAX_FONTS = 1000;  // names that a server is asked for
constexpr int MAX_SPEC = 199;    // characters of a font's name
constexpr int SIZE_FIELD = 7;    // of a font's name, counted by '-'
constexpr float MAX_WIDTH = 1000.0f;

// A coordinate as the protocol carries it.
short toShort(float v) { return static_cast<short>(std::floor(std::clamp(v, -32767.0f, 32767.0f) + 0.5f)); }

// The value of a colour's parts under the masks of a visual.
unsigned long packMask(unsigned long mask, unsigned byte) {
  if (mask == 0) return 0;
  const int shift = std::countr_zero(mask);
  const unsigned long most = mask >> shift;
  return ((byte * most + 127) / 255) << shift;
}
std::uint32_t partMask(unsigned long mask, unsigned long pixel) {
  if (mask == 0) return 0;
  const int shift = std::countr_zero(mask);
  const unsigned long most = mask >> shift;
  return static_cast<std::uint32_t>(((pixel & mask) >> shift) * 255 / most);
}

// The size in pixels that a font's name gives, the text after its k-th '-'.
int fontSize(const std::string& name) {
  const int at = StrLib::index(name.c_str(), '-', SIZE_FIELD);
  return at < 0 ? -1 : std::atoi(name.c_str() + at + 1);
}

}  // namespace

int XWindow::allocColor(float r, float g, float b) {
  if (!alive()) return 0;
  const State& s = *state;
  const unsigned red = colorByte(r), green = colorByte(g), blue = colorByte(b);
  if (s.visual->c_class == TrueColor) {
    return static_cast<int>(packMask(s.visual->red_mask, red) | packMask(s.visual->green_mask, green) |
                            packMask(s.visual->blue_mask, blue));
  }
  XColor color = {};
  color.red = static_cast<unsigned short>(red * 257);
  color.green = static_cast<unsigned short>(green * 257);
  color.blue = static_cast<unsigned short>(blue * 257);
  if (!XAllocColor(Shared::get().display, s.colormap, &color)) return static_cast<int>(s.foreground);
  return static_cast<int>(color.pixel);
}

int XWindow::setColor(int cls, int value) {
  if (!alive()) return 0;
  XSetForeground(Shared::get().display, state->contexts[contextOf(cls)],
                 static_cast<unsigned long>(value) & 0xFFFFFFFFul);
  return 1;
}

// Attribute classes beyond those that are named are drawn as by default.
std::size_t XWindow::contextOf(int cls) {
  return cls >= LINE && cls <= TEXT ? static_cast<std::size_t>(cls) : static_cast<std::size_t>(State::DEFAULT);
}

int XWindow::setLineWidth(int cls, float width) {
  if (!alive()) return 0;
  XGCValues values = {};
  values.line_width = static_cast<int>(std::lround(std::clamp(width, 0.0f, MAX_WIDTH)));
  XChangeGC(Shared::get().display, state->contexts[contextOf(cls)], GCLineWidth, &values);
  return 1;
}

int XWindow::setLineStyle(int cls, int style) {
  if (!alive()) return 0;
  Display* display = Shared::get().display;
  const GC gc = state->contexts[contextOf(cls)];
  const auto row = static_cast<std::size_t>(style);
  const bool dashed = style > 0 && row < std::size(SCREEN_DASHES) && !SCREEN_DASHES[row].get().empty();
  XGCValues values = {};
  values.line_style = dashed ? LineOnOffDash : LineSolid;
  XChangeGC(display, gc, GCLineStyle, &values);
  if (dashed) {
    const auto dashes = SCREEN_DASHES[row].get();
    char lengths[4] = {};
    std::copy(dashes.begin(), dashes.end(), lengths);
    XSetDashes(display, gc, 0, lengths, static_cast<int>(dashes.size()));
  }
  return 1;
}

int XWindow::setFillStyle(int cls, int style) {
  if (!alive()) return 0;
  Display* display = Shared::get().display;
  const GC gc = state->contexts[contextOf(cls)];
  const auto row = static_cast<std::size_t>(style);
  const bool patterned = style > 0 && row < state->stipples.size();
  if (patterned) XSetStipple(display, gc, state->stipples[row]);
  XSetFillStyle(display, gc, patterned ? FillStippled : FillSolid);
  return 1;
}

// The points as the protocol carries them; false when one of them is nowhere.
bool XWindow::toPixels(const Points& points) {
  state->work.clear();
  for (const Point& p : points) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return false;
    state->work.push_back({toShort(p.x), toShort(p.y)});
  }
  return !state->work.empty();
}

// A polyline in as many requests as the server wants it; pieces share a point.
void XWindow::putLine(int cls) {
  Display* display = Shared::get().display;
  const GC gc = state->contexts[contextOf(cls)];
  std::vector<XPoint>& work = state->work;
  if (work.size() == 1) {
    XDrawPoint(display, state->target, gc, work[0].x, work[0].y);
    return;
  }
  const auto most = static_cast<std::size_t>(std::max(XMaxRequestSize(display) - 4, 100L));
  for (std::size_t at = 0; at + 1 < work.size(); at += most - 1) {
    const std::size_t num = std::min(most, work.size() - at);
    XDrawLines(display, state->target, gc, work.data() + at, static_cast<int>(num), CoordModeOrigin);
  }
}

int XWindow::drawLine(int cls, float x1, float y1, float x2, float y2) {
  Points points;
  points.add(x1, y1);
  points.add(x2, y2);
  return drawLine(cls, points);
}

int XWindow::drawLine(int cls, const Points& points) {
  if (!alive() || !toPixels(points)) return 0;
  putLine(cls);
  return 1;
}

int XWindow::drawFill(int cls, const Points& points) {
  if (!alive() || !toPixels(points)) return 0;
  Display* display = Shared::get().display;
  if (static_cast<long>(state->work.size()) > XMaxRequestSize(display) - 4) {
    Kyv::outDebug(2, "XWindow: a polygon of %d points is left out\n", points.getNum());
    return 0;
  }
  XFillPolygon(display, state->target, state->contexts[contextOf(cls)], state->work.data(),
               static_cast<int>(state->work.size()), Complex, CoordModeOrigin);
  state->work.push_back(state->work.front());
  putLine(cls);
  return 1;
}

int XWindow::clear() {
  if (!alive()) return 0;
  return fillRect(0, 0, state->width, state->height);
}

int XWindow::clearRect(const Rect& r) {
  if (!alive() || !std::isfinite(r.xmin + r.xmax) || !std::isfinite(r.ymin + r.ymax)) return 0;
  const int x0 = toShort(std::min(r.xmin, r.xmax)), x1 = toShort(std::max(r.xmin, r.xmax));
  const int y0 = toShort(std::min(r.ymin, r.ymax)), y1 = toShort(std::max(r.ymin, r.ymax));
  return fillRect(x0, y0, x1 - x0 + 1, y1 - y0 + 1);
}

// With the ground, whatever the clip.
int XWindow::fillRect(int x, int y, int w, int h) {
  Display* display = Shared::get().display;
  const GC gc = state->contexts[State::COPY];
  XSetForeground(display, gc, state->background);
  XFillRectangle(display, state->target, gc, x, y, static_cast<unsigned>(w), static_cast<unsigned>(h));
  return 1;
}

int XWindow::setClip(float x1, float y1, float x2, float y2) {
  if (!alive() || !std::isfinite(x1 + x2) || !std::isfinite(y1 + y2)) return 0;
  const int x0 = toShort(std::min(x1, x2)), y0 = toShort(std::min(y1, y2));
  const int w = toShort(std::max(x1, x2)) - x0 + 1, h = toShort(std::max(y1, y2)) - y0 + 1;
  state->clip = {static_cast<short>(x0), static_cast<short>(y0), static_cast<unsigned short>(w),
                 static_cast<unsigned short>(h)};
  for (const int cls : {0, 1, 2, 3, 4}) {
    XSetClipRectangles(Shared::get().display, state->contexts[contextOf(cls)], 0, 0, &state->clip, 1, Unsorted);
  }
  return 1;
}

Rect XWindow::getClip() {
  const XRectangle& c = state->clip;
  return {static_cast<float>(c.x), static_cast<float>(c.y), static_cast<float>(c.x + c.width - 1),
          static_cast<float>(c.y + c.height - 1)};
}

// Text.

int XWindow::setFont(const char* spec) {
  if (!alive() || !StrLib::valid(spec)) return 0;
  Display* display = Shared::get().display;
  const std::string wanted = std::string(spec).substr(0, MAX_SPEC);
  const int size = fontSize(wanted);
  std::string pattern = wanted;
  const int at = StrLib::index(wanted.c_str(), '-', SIZE_FIELD);
  if (at >= 0) {
    const std::size_t from = static_cast<std::size_t>(at) + 1;
    const std::size_t end = std::min(wanted.find('-', from), wanted.size());
    pattern = wanted.substr(0, from) + "*" + wanted.substr(end);
  }
  int num = 0;
  char** names = XListFonts(display, pattern.c_str(), MAX_FONTS, &num);
  Kyv::outDebug(3, "setFont: %s count: %d rsize: %d\n", pattern.c_str(), num, size);
  // The scalable one, else the one whose size is nearest.
  std::string best;
  int least = 0;
  for (int i = 0; i < num; ++i) {
    const int has = fontSize(names[i]);
    Kyv::outDebug(3, "  %d %d %s\n", i, has, names[i]);
    const int away = has == 0 ? -1 : std::abs(has - size);
    if (best.empty() || away < least) {
      best = has == 0 && at >= 0 ? wanted : names[i];
      least = away;
    }
  }
  if (names) XFreeFontNames(names);
  if (best.empty()) return 0;
  Kyv::outDebug(3, "Loading %s %d %s\n", wanted.c_str(), size, best.c_str());
  XFontStruct* font = XLoadQueryFont(display, best.c_str());
  if (!font) {
    Kyv::outDebug(1, "Unable to load font\n");
    return 0;
  }
  if (state->font) XFreeFont(display, state->font);
  state->font = font;
  XSetFont(display, state->contexts[TEXT], font->fid);
  return 1;
}

int XWindow::setTextAlign(int h, int v) {
  state->halign = h;
  state->valign = v;
  return 1;
}

int XWindow::drawText(const Point& p, const char* text) {
  if (!alive() || !StrLib::valid(text) || !std::isfinite(p.x) || !std::isfinite(p.y)) return 0;
  const State& s = *state;
  const int length = StrLib::length(text);
  int x = toShort(p.x), y = toShort(p.y);
  if (s.font) {
    const int width = XTextWidth(s.font, text, length);
    if (s.halign == 2) x -= width / 2;
    if (s.halign == 3) x -= width;
    if (s.valign == 1) y += s.font->ascent;
    if (s.valign == 2) y += s.font->ascent / 2;
    if (s.valign == 3) y -= s.font->descent;
  }
  XDrawString(Shared::get().display, s.target, s.contexts[TEXT], x, y, text, length);
  return 1;
}

// Images.

int XWindow::setImageAlign(int h, int v) {
  state->image_halign = h;
  state->image_valign = v;
  return 1;
}

int XWindow::drawImage(const Image& image, float x, float y) {
  if (!alive() || !image.validData() || !std::isfinite(x) || !std::isfinite(y)) return 0;
  const State& s = *state;
  Display* display = Shared::get().display;
  const int w = image.getWidth(), h = image.getHeight();
  const int left = toShort(x) - (s.image_halign - 1) * w / 2;
  const int top = toShort(y) - (3 - s.image_valign) * h / 2;
  const int x0 = std::max(left, 0), y0 = std::max(top, 0);
  const int x1 = std::min(left + w, s.width), y1 = std::min(top + h, s.height);
  if (x0 >= x1 || y0 >= y1) return 1;
  // What is transparent shows what is there.
  XImage* part = XGetImage(display, s.target, x0, y0, static_cast<unsigned>(x1 - x0), static_cast<unsigned>(y1 - y0),
                           AllPlanes, ZPixmap);
  if (!part) return 0;
  std::unordered_map<std::uint32_t, unsigned long> pixels;
  RGB rgb;
  for (int py = y0; py < y1; ++py) {
    for (int px = x0; px < x1; ++px) {
      if (image.isPixelTrans(px - left, py - top) || !image.getRGB(px - left, py - top, rgb)) continue;
      std::uint32_t packed = static_cast<std::uint32_t>(packColor(rgb.red, rgb.green, rgb.blue));
      if (const int seen = image.getAlpha(px - left, py - top); seen < 255) {
        packed = image.blend(px - left, py - top, colorOf(XGetPixel(part, px - x0, py - y0)));
        const auto channel = [packed](int shift) { return static_cast<float>(packed >> shift & 255) / 255.0f; };
        rgb.set(channel(16), channel(8), channel(0));
      }
      const auto [at, isNew] = pixels.try_emplace(packed, 0);
      if (isNew) at->second = static_cast<unsigned>(allocColor(rgb.red, rgb.green, rgb.blue));
      XPutPixel(part, px - x0, py - y0, at->second);
    }
  }
  XPutImage(display, s.target, s.contexts[State::DEFAULT], part, 0, 0, x0, y0, static_cast<unsigned>(x1 - x0),
            static_cast<unsigned>(y1 - y0));
  XDestroyImage(part);
  return 1;
}

int XWindow::getImage(Image& image) {
  image.init();
  if (!alive()) return 0;
  const State& s = *state;
  Display* display = Shared::get().display;
  XImage* all = XGetImage(display, s.shown, 0, 0, static_cast<unsigned>(s.width), static_cast<unsigned>(s.height),
                          AllPlanes, ZPixmap);
  if (!all) return 0;
  // Colours in the order of their appearance, as long as an index can tell them.
  constexpr std::size_t MOST = 256;
  std::unordered_map<unsigned long, std::uint32_t> indices;
  std::vector<std::uint32_t> colors;
  std::vector<std::uint32_t> values(static_cast<std::size_t>(s.width) * static_cast<std::size_t>(s.height));
  std::size_t i = 0;
  for (int y = 0; y < s.height; ++y) {
    for (int x = 0; x < s.width; ++x) {
      const unsigned long pixel = XGetPixel(all, x, y);
      const auto [at, isNew] = indices.try_emplace(pixel, static_cast<std::uint32_t>(colors.size()));
      if (isNew) colors.push_back(colorOf(pixel));
      values[i++] = at->second;
    }
  }
  XDestroyImage(all);
  const bool indexed = colors.size() <= MOST;
  image.set(s.width, s.height, indexed ? 8 : 24);
  image.setByteOrder(1);
  image.setColorType(indexed ? Image::INDEXED : Image::DIRECT);
  if (!image.allocData()) return 0;
  if (indexed) {
    image.allocColors(static_cast<int>(colors.size()));
    for (std::size_t k = 0; k < colors.size(); ++k) image.setColorVal(static_cast<int>(k), colors[k]);
  }
  i = 0;
  for (int y = 0; y < s.height; ++y) {
    for (int x = 0; x < s.width; ++x, ++i) image.setPixel(x, y, indexed ? values[i] : colors[values[i]]);
  }
  return 1;
}

// 0xRRGGBB of a pixel value.
std::uint32_t XWindow::colorOf(unsigned long pixel) const {
  const State& s = *state;
  if (s.visual->c_class == TrueColor) {
    return partMask(s.visual->red_mask, pixel) << 16 | partMask(s.visual->green_mask, pixel) << 8 |
           partMask(s.visual->blue_mask, pixel);
  }
  XColor color = {};
  color.pixel = pixel;
  XQueryColor(Shared::get().display, s.colormap, &color);
  return static_cast<std::uint32_t>((color.red >> 8) << 16 | (color.green >> 8) << 8 | color.blue >> 8);
}

}  // namespace KYV
