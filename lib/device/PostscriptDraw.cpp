#include <algorithm>
#include <cmath>
#include <string_view>

#include "ColorByte.h"
#include "DeviceOptions.h"
#include "KYV/Image.h"
#include "KYV/Points.h"
#include "KYV/Postscript.h"
#include "TextWriter.h"

namespace KYV {

namespace {

// By line style; there is none for 0.
constexpr std::string_view DASHES[] = {
    "", "[] 0 setdash\n", "[6] 0 setdash\n", "[3 6] 0 setdash\n", "[6 6 3 6] 0 setdash\n", "[2] 0 setdash\n",
};
constexpr float CLIP_MARGIN = 0.1f;
// Samples on a line of an image.
constexpr int LINE_SAMPLES = 80;
// Sides of an image: those of the largest page, points, and the margins of its clip.
constexpr float MAX_SAMPLES = DeviceOptions::MAX_INCHES * 72.0f + 2.0f * CLIP_MARGIN + 1.0f;

constexpr double greyOf(double r, double g, double b) { return (0.9 * r + g + 0.8 * b) / 2.7; }

bool isFinite(const Points& points) {
  return std::all_of(points.begin(), points.end(),
                     [](const Point& p) { return std::isfinite(p.x) && std::isfinite(p.y); });
}

// An offset in whole pixels; beyond the largest image all offsets are alike.
int wholeOffset(float v) {
  constexpr float FAR = 2.0f * MAX_SAMPLES + Image::MAX_SIZE;
  return static_cast<int>(std::clamp(v, -FAR, FAR));
}

}  // namespace

void Postscript::putColor(int cls) {
  ColorLine& line = lines[static_cast<std::size_t>(cls - 1)];
  const int value = pen(cls)->color;
  if (line.size == 0 || line.color != value) {
    const auto part = [&](int shift) { return static_cast<float>(value >> shift & 0xFF) / 255.0f; };
    const float r = part(16), g = part(8), b = part(0);
    char* at = line.text;
    const auto add = [&](auto item) { at = TextWriter::write(at, item); };
    if (color) {
      for (const float v : {r, g, b}) add(Fixed<2>{v}), add(' ');
      add(std::string_view("setrgbcolor\n"));
    } else {
      add(Fixed<2>{static_cast<float>(greyOf(r, g, b))});
      add(std::string_view(" setgray\n"));
    }
    line.color = value;
    line.size = static_cast<int>(at - line.text);
  }
  text->put(std::string_view(line.text, static_cast<std::size_t>(line.size)));
}

void Postscript::putPen(int cls) {
  if (cls != LINE && cls != MARKER && cls != TEXT) return;
  const Pen& p = *pen(cls);
  putColor(cls);
  if (cls != LINE) text->put(DASHES[SOLID]);
  text->put(Fixed<1>{p.width * lwidth}, " dot lw\n");
  if (cls == LINE && p.style >= SOLID && p.style <= DOT) text->put(DASHES[p.style]);
}

void Postscript::putPath(const Points& points) {
  text->put("np\n");
  std::string_view step = " mv\n";
  for (const Point& p : points) {
    text->put(Fixed<2>{p.x}, ' ', Fixed<2>{p.y}, step);
    step = " ln\n";
  }
}

int Postscript::drawLine(int cls, float x1, float y1, float x2, float y2) {
  if (!opened || !std::isfinite(x1) || !std::isfinite(y1) || !std::isfinite(x2) || !std::isfinite(y2)) return 0;
  startPage();
  text->put("%%PL:2\n");
  putPen(cls);
  text->put("np\n");
  text->put(Fixed<2>{x1}, ' ', Fixed<2>{y1}, " mv\n");
  text->put(Fixed<2>{x2}, ' ', Fixed<2>{y2}, " ln\n");
  text->put("stroke\n");
  return 1;
}

int Postscript::drawLine(int cls, const Points& points) {
  if (!opened || points.getNum() == 0 || !isFinite(points)) return 0;
  startPage();
  text->put("%%PL:", points.getNum(), '\n');
  putPen(cls);
  putPath(points);
  text->put("stroke\n");
  return 1;
}

int Postscript::drawFill(int cls, const Points& points) {
  if (!opened || points.getNum() == 0 || !isFinite(points)) return 0;
  startPage();
  text->put("%%FA:", points.getNum(), '\n');
  if (cls == FILL) putColor(cls);
  putPath(points);
  text->put("cp\nfill\n");
  return 1;
}

int Postscript::setClip(float x1, float y1, float x2, float y2) {
  if (!opened || !std::isfinite(x1) || !std::isfinite(y1) || !std::isfinite(x2) || !std::isfinite(y2)) return 0;
  startPage();
  // In order first, so that it is wider on every side.
  clip = Rect(x1, y1, x2, y2);
  clip = Rect(clip.xmin - CLIP_MARGIN, clip.ymin - CLIP_MARGIN, clip.xmax + CLIP_MARGIN, clip.ymax + CLIP_MARGIN);
  clipped = true;
  putClip();
  return 1;
}

void Postscript::putClip() {
  text->put("initclip\nnp\n");
  text->put(Fixed<2>{clip.xmin}, ' ', Fixed<2>{clip.ymin}, " mv\n");
  text->put(Fixed<2>{clip.xmin}, ' ', Fixed<2>{clip.ymax}, " ln\n");
  text->put(Fixed<2>{clip.xmax}, ' ', Fixed<2>{clip.ymax}, " ln\n");
  text->put(Fixed<2>{clip.xmax}, ' ', Fixed<2>{clip.ymin}, " ln\n");
  text->put("cp\nclip\n");
}

int Postscript::drawImage(const Image& image, float x, float y) {
  if (!opened || image.getWidth() <= 0 || image.getHeight() <= 0 || !image.validData()) return 0;
  if (std::isnan(x) || std::isnan(y)) return 0;
  // Less than a point in either direction shows nothing, and a scale of 0 stops the interpreter.
  const float w = clip.width(), h = clip.height();
  if (!(w >= 1.0f && h >= 1.0f && w < MAX_SAMPLES && h < MAX_SAMPLES)) return 0;
  if (std::max(std::fabs(clip.xmin), std::fabs(clip.ymin)) > 1e6f) return 0;
  const int cx = static_cast<int>(clip.xmin), cy = static_cast<int>(clip.ymin);
  const int cw = static_cast<int>(w), ch = static_cast<int>(h);
  startPage();
  text->put("gsave\n", cx, ' ', cy, " translate\n", cw, ' ', ch, " scale\n");
  text->put("/picstr ", cw, " string def\n");
  text->put(cw, ' ', ch, " 8 [ ", cw, " 0 0 ", -ch, " 0 ", ch, " ]\n");
  text->put("{ currentfile picstr readhexstring pop }\n");
  text->put(color ? "false 3 colorimage\n" : "image\n");
  const int left = wholeOffset(x), top = wholeOffset(y);
  for (int row = 0; row < ch; ++row) putSamples(image, left, top + row, cw);
  text->put("grestore\n");
  return 1;
}

void Postscript::putSamples(const Image& image, int x, int y, int num) {
  RGB rgb;
  for (int i = 0; i < num; ++i) {
    // White where the image has no pixel.
    if (!image.getRGB(x + i, y, rgb)) rgb.set(1.0f, 1.0f, 1.0f);
    if (color) {
      for (const float v : {rgb.red, rgb.green, rgb.blue}) text->putHex(colorByte(v));
    } else {
      text->putHex(colorByte(greyOf(rgb.red, rgb.green, rgb.blue)));
    }
    if (i % LINE_SAMPLES == LINE_SAMPLES - 1) text->put('\n');
  }
  text->put('\n');
}

}  // namespace KYV
