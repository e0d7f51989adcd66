#include "KYV/Raster.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <unordered_map>
#include <vector>

#include "DeviceOptions.h"
#include "KYV/Kyv.h"
#include "KYV/Points.h"
#include "KYV/StrLib.h"
#include "Patterns.h"
#include "RasterPaint.h"

namespace KYV {

namespace {

constexpr float WIDTH = 640.0f;
constexpr float HEIGHT = 512.0f;
constexpr std::size_t MAX_COLORS = 256;  // of an indexed picture
constexpr int MAX_FRAMES = 1500;
constexpr std::uint32_t BLACK = 0x000000;
constexpr std::uint32_t WHITE = 0xFFFFFF;

// Ground colours that go by a name; others are given by their value.
struct Named {
  const char* name;
  std::uint32_t color;
};
constexpr Named NAMES[] = {
    {"black", 0x000000},  {"white", 0xFFFFFF},   {"red", 0xFF0000},    {"green", 0x00FF00},  {"blue", 0x0000FF},
    {"cyan", 0x00FFFF},   {"magenta", 0xFF00FF}, {"yellow", 0xFFFF00}, {"gray", 0xBEBEBE},   {"grey", 0xBEBEBE},
    {"navy", 0x000080},   {"brown", 0xA52A2A},   {"orange", 0xFFA500}, {"purple", 0xA020F0}, {"gray20", 0x333333},
    {"gray50", 0x7F7F7F}, {"gray80", 0xCCCCCC},
};

// "#rgb", "#rrggbb" or a name; false for anything else.
bool readColor(const char* text, std::uint32_t& color) {
  const Named* row =
      std::find_if(std::begin(NAMES), std::end(NAMES), [text](const Named& n) { return StrLib::iequal(n.name, text); });
  if (row != std::end(NAMES)) return color = row->color, true;
  const int digits = StrLib::length(text) - 1;
  unsigned value = 0;
  int n = 0;
  if (!text || *text != '#' || std::sscanf(text + 1, "%6x%n", &value, &n) != 1 || n != digits) return false;
  if (digits == 3) value = (value >> 8 & 15) * 0x110000u | (value >> 4 & 15) * 0x1100u | (value & 15) * 0x11u;
  color = value;
  return digits == 3 || digits == 6;
}

// A coordinate as a pixel, within what a window can take.
constexpr float FARTHEST = 32767.0f;
int nearPixel(float v) {
  constexpr int SHIFT = 32768;  // makes the number positive, whose cut is its floor
  return static_cast<int>(static_cast<double>(v) + (SHIFT + 0.5)) - SHIFT;
}
int toPixel(float v) { return nearPixel(std::clamp(v, -FARTHEST, FARTHEST)); }

}  // namespace

struct Raster::State {
  using Pixels = std::vector<unsigned char>;

  RasterPaint paint;
  std::uint32_t ground = BLACK;
  bool own_ground = false;
  bool direct = false;                                    // three bytes a pixel instead of an index
  std::vector<std::uint32_t> colors;                      // by index, the ground first
  std::unordered_map<std::uint32_t, unsigned char> inks;  // the reverse
  Pixels base;                                            // what is painted without frames
  std::vector<Pixels> frames;
  int target = -1;  // frame that is painted, -1 the base
  int shown = 0;
  int halign = 1;
  int valign = 3;
  std::vector<RasterPaint::Pixel> work;
  // What the pens had last: their colours, and the values of these in the pictures.
  struct PenInk {
    int color = -1;
    std::uint32_t ink = 0;
  };
  std::array<PenInk, 4> pens;

  Pixels& picture(int frame) {
    return frame >= 0 && frame < static_cast<int>(frames.size()) ? frames[static_cast<std::size_t>(frame)] : base;
  }
  int depth() const { return direct ? 3 : 1; }
  /// The packed colour of a pixel of the picture in hand, which is so many pixels wide.
  std::uint32_t colorAt(int x, int y, int width) {
    const Pixels& pixels = picture(target);
    const auto at = static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    if (!direct) return at < pixels.size() ? colors[pixels[at]] : 0;
    if (3 * at + 2 >= pixels.size()) return 0;
    const unsigned char* p = &pixels[3 * at];
    return static_cast<std::uint32_t>(p[0] << 16 | p[1] << 8 | p[2]);
  }

  // The value of a colour in the pictures.
  std::uint32_t ink(std::uint32_t packed) {
    if (direct) return packed;
    const auto known = inks.find(packed);
    if (known != inks.end()) return known->second;
    if (colors.size() == MAX_COLORS) {
      makeDirect();
      return packed;
    }
    inks.emplace(packed, static_cast<unsigned char>(colors.size()));
    colors.push_back(packed);
    return static_cast<std::uint32_t>(colors.size() - 1);
  }

  // One colour more than an index can tell.
  void makeDirect() {
    direct = true;
    pens = {};
    widen(base);
    for (Pixels& frame : frames) widen(frame);
  }
  void widen(Pixels& pixels) const {
    Pixels wide;
    wide.reserve(3 * pixels.size());
    for (const unsigned char index : pixels) put(wide, colors[index]);
    pixels.swap(wide);
  }
  static void put(Pixels& pixels, std::uint32_t packed) {
    for (const int shift : {16, 8, 0}) pixels.push_back(static_cast<unsigned char>(packed >> shift));
  }
  void clear(Pixels& pixels, std::size_t count) const {
    pixels.clear();
    if (!direct) {
      pixels.assign(count, 0);
      return;
    }
    pixels.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i) put(pixels, ground);
  }
};

Raster::Raster() : state(std::make_unique<State>()) { init(); }

Raster::~Raster() = default;

int Raster::init() {
  initSurface("KYV", WIDTH, HEIGHT);
  state = std::make_unique<State>();
  return 1;
}

int Raster::setSize(float w, float h) {
  constexpr float MOST = Image::MAX_SIZE;
  // Written so that a number that is none is refused too.
  if (!(w >= 1.0f && h >= 1.0f && w <= MOST && h <= MOST)) {
    DeviceOptions::refuseSize("Raster", w, h, Image::MAX_SIZE, width, height);
    return 0;
  }
  width = std::floor(w);
  height = std::floor(h);
  return 1;
}

int Raster::setBackground(const char* color) {
  std::uint32_t value = 0;
  if (StrLib::equal(color, "def") || !readColor(color, value)) return 0;
  state->ground = value;
  state->own_ground = true;
  return 1;
}

int Raster::open() {
  if (opened) return 1;
  if (!state->own_ground) state->ground = inverse ? WHITE : BLACK;
  state->ink(state->ground);
  state->clear(state->base, pixelCount());
  opened = true;
  aim();
  return setClip(0.0f, 0.0f, width - 1.0f, height - 1.0f);
}

int Raster::close() {
  if (!opened) return 0;
  opened = false;
  state->base = {};
  state->frames.clear();
  return 1;
}

std::size_t Raster::pixelCount() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }

// Directs the paint at the picture in hand.
void Raster::aim() {
  State::Pixels& pixels = state->picture(state->target);
  state->paint.setTarget(pixels.data(), static_cast<int>(width), static_cast<int>(height), state->depth());
}

int Raster::getCoords(Rect& r) { return r = getCoords(), 1; }

Rect Raster::getCoords() {
  Rect r;
  r.setu(0.0f, 0.0f, width - 1.0f, height - 1.0f);
  return r;
}

// Takes the colour, and for fills the pattern, of a class; false when nothing would be painted.
bool Raster::usePen(int cls) {
  const Pen* p = pen(cls);
  if (!opened || !p) return false;
  State::PenInk& known = state->pens[static_cast<std::size_t>(cls - 1)];
  if (known.color != p->color) {
    const bool before = state->direct;
    const std::uint32_t ink = state->ink(static_cast<std::uint32_t>(p->color) & 0xFFFFFFu);
    known = {p->color, ink};
    if (before != state->direct) aim();
  }
  state->paint.setInk(known.ink);
  const bool patterned = cls == FILL && p->style > 0 && p->style < static_cast<int>(std::size(FILL_PATTERNS));
  state->paint.setPattern(patterned ? &FILL_PATTERNS[p->style] : nullptr);
  return true;
}

int Raster::drawLine(int cls, float x1, float y1, float x2, float y2) {
  Points points;
  points.add(x1, y1);
  points.add(x2, y2);
  return drawLine(cls, points);
}

int Raster::drawLine(int cls, const Points& points) {
  if (points.getNum() == 0 || !take(points) || !usePen(cls)) return 0;
  const Pen& p = *pen(cls);
  std::span<const std::uint8_t> dashes;
  if (cls == LINE && p.style > 0 && p.style < static_cast<int>(std::size(SCREEN_DASHES))) {
    dashes = SCREEN_DASHES[p.style].get();
  }
  state->paint.line(state->work, static_cast<int>(std::lround(std::min(p.width, 1000.0f))), dashes, cls == TEXT);
  return 1;
}

int Raster::drawFill(int cls, const Points& points) {
  if (points.getNum() == 0 || !take(points) || !usePen(cls)) return 0;
  state->paint.fill(state->work);
  return 1;
}

// The points as pixels; false when one of them is nowhere.
bool Raster::take(const Points& points) {
  state->work.resize(static_cast<std::size_t>(points.getNum()));
  RasterPaint::Pixel* to = state->work.data();
  for (const Point& p : points) {
    // Numbers that are none are not within, either.
    const bool within = std::fabs(p.x) <= FARTHEST && std::fabs(p.y) <= FARTHEST;
    if (!within && !(std::isfinite(p.x) && std::isfinite(p.y))) return false;
    *to++ =
        within ? RasterPaint::Pixel{nearPixel(p.x), nearPixel(p.y)} : RasterPaint::Pixel{toPixel(p.x), toPixel(p.y)};
  }
  return true;
}

int Raster::setImageAlign(int h, int v) {
  state->halign = h;
  state->valign = v;
  return 1;
}

int Raster::drawImage(const Image& image, float x, float y) {
  if (!opened || !image.validData() || !std::isfinite(x) || !std::isfinite(y)) return 0;
  const int w = image.getWidth(), h = image.getHeight();
  const int left = toPixel(x) - (state->halign - 1) * w / 2;
  const int top = toPixel(y) - (3 - state->valign) * h / 2;
  const RasterPaint::Box box = state->paint.getClip();
  state->paint.setPattern(nullptr);
  for (int py = std::max(top, box.y0); py <= std::min(top + h - 1, box.y1); ++py) {
    for (int px = std::max(left, box.x0); px <= std::min(left + w - 1, box.x1); ++px) {
      if (image.isPixelTrans(px - left, py - top)) continue;
      const bool before = state->direct;
      const std::uint32_t behind = image.validAlpha() ? state->colorAt(px, py, static_cast<int>(width)) : 0;
      state->paint.setInk(state->ink(image.blend(px - left, py - top, behind)));
      if (before != state->direct) aim();
      state->paint.rect({px, py, px, py});
    }
  }
  return 1;
}

int Raster::getImage(Image& image) {
  image.init();
  if (!opened) return 0;
  const int w = static_cast<int>(width), h = static_cast<int>(height);
  image.set(w, h, state->direct ? 24 : 8);
  image.setByteOrder(1);
  image.setColorType(state->direct ? Image::DIRECT : Image::INDEXED);
  if (!state->direct) {
    image.allocColors(static_cast<int>(state->colors.size()));
    for (std::size_t i = 0; i < state->colors.size(); ++i) image.setColorVal(static_cast<int>(i), state->colors[i]);
  }
  const State::Pixels& pixels = state->picture(state->frames.empty() ? -1 : state->shown);
  if (!image.allocData() || image.getData().size() != pixels.size()) return 0;
  image.getData() = pixels;
  return 1;
}

int Raster::setClip(float x1, float y1, float x2, float y2) {
  if (!std::isfinite(x1) || !std::isfinite(y1) || !std::isfinite(x2) || !std::isfinite(y2)) return 0;
  clip = Rect(x1, y1, x2, y2);
  const auto within = [](float v, float most) { return std::clamp(toPixel(v), 0, static_cast<int>(most) - 1); };
  // Beyond the surface nothing is left.
  const bool outside = clip.xmax < 0.0f || clip.ymax < 0.0f || clip.xmin > width - 1.0f || clip.ymin > height - 1.0f;
  if (outside) {
    state->paint.setClip({0, 0, -1, -1});
  } else {
    state->paint.setClip(
        {within(clip.xmin, width), within(clip.ymin, height), within(clip.xmax, width), within(clip.ymax, height)});
  }
  return 1;
}

int Raster::clear() {
  if (!opened) return 0;
  state->clear(state->picture(state->target), pixelCount());
  aim();
  return 1;
}

int Raster::clearRect(const Rect& r) {
  if (!opened || !std::isfinite(r.xmin) || !std::isfinite(r.ymin) || !std::isfinite(r.xmax) || !std::isfinite(r.ymax)) {
    return 0;
  }
  const RasterPaint::Box box = state->paint.getClip();
  state->paint.setClip({0, 0, static_cast<int>(width) - 1, static_cast<int>(height) - 1});
  state->paint.setPattern(nullptr);
  state->paint.setInk(state->direct ? state->ground : 0);
  state->paint.rect({toPixel(std::min(r.xmin, r.xmax)), toPixel(std::min(r.ymin, r.ymax)),
                     toPixel(std::max(r.xmin, r.xmax)), toPixel(std::max(r.ymin, r.ymax))});
  state->paint.setClip(box);
  return 1;
}

// Frames.

int Raster::getNumFrames() { return static_cast<int>(state->frames.size()); }

int Raster::getFrame() { return state->shown; }

int Raster::newFrame(int frame) {
  if (!opened) return 0;
  const int num = getNumFrames();
  const int n = frame == -1 ? num : frame;
  if (n < 0 || n > num) return 0;
  if (n == num) {
    const std::size_t each = pixelCount() * static_cast<std::size_t>(state->depth());
    if (num >= MAX_FRAMES || each * static_cast<std::size_t>(num + 1) > MAX_BYTES) {
      Kyv::outWarning("Raster: no room for more than %d frames of this size, ask for fewer or smaller ones\n", num);
      return 0;
    }
    state->frames.emplace_back();
    state->clear(state->frames.back(), pixelCount());
  }
  return setFrame(n);
}

int Raster::newFrame() {
  const int before = getNumFrames();
  newFrame(-1);
  return before;
}

int Raster::setFrame(int frame) {
  if (!opened || state->frames.empty()) return 0;
  if (frame == -1) frame = getNumFrames() - 1;
  if (frame == -2) frame = state->shown;
  state->target = frame >= 0 && frame < getNumFrames() ? frame : -1;
  aim();
  return 1;
}

int Raster::displayFrame(int frame) {
  if (state->frames.empty()) return 0;
  if (frame == -1) frame = getNumFrames() - 1;
  if (frame < 0 || frame >= getNumFrames()) return 0;
  state->shown = frame;
  return 1;
}

int Raster::copyFrame(int to, int from) {
  const int num = getNumFrames();
  if (to < 0 || from < 0 || to >= num || from >= num) return 0;
  state->picture(to) = state->picture(from);
  aim();
  return 1;
}

int Raster::clearFrame(int frame) {
  if (frame < 0 || frame >= getNumFrames()) return 0;
  state->clear(state->picture(frame), pixelCount());
  aim();
  return 1;
}

int Raster::incFrame(int step) {
  const int num = getNumFrames();
  if (num == 0) return -1;
  state->shown = ((state->shown + (step ? step % num : 1)) % num + num) % num;
  return state->shown;
}

int Raster::deleteFrame(int frame) {
  if (frame < 0 || frame >= getNumFrames()) return 0;
  state->frames.erase(state->frames.begin() + frame);
  if (state->target == frame) {
    state->target = -1;
  } else if (state->target > frame) {
    --state->target;
  }
  if (state->shown > frame) --state->shown;
  state->shown = std::clamp(state->shown, 0, std::max(getNumFrames() - 1, 0));
  aim();
  return 1;
}

}  // namespace KYV
