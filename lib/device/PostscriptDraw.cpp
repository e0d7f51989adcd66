#include <string_view>

#include "ColorByte.h"
#include "KYV/Points.h"
#include "KYV/Postscript.h"
#include "TextWriter.h"

namespace KYV {

namespace {

// By line style; there is none for 0.
constexpr std::string_view DASHES[] = {
    "", "[] 0 setdash\n", "[6] 0 setdash\n", "[3 6] 0 setdash\n", "[6 6 3 6] 0 setdash\n", "[2] 0 setdash\n",
};

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
  if (!ready(x1, y1, x2, y2)) return 0;
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
  if (!ready(points)) return 0;
  startPage();
  text->put("%%PL:", points.getNum(), '\n');
  putPen(cls);
  putPath(points);
  text->put("stroke\n");
  return 1;
}

int Postscript::drawFill(int cls, const Points& points) {
  if (!ready(points)) return 0;
  startPage();
  text->put("%%FA:", points.getNum(), '\n');
  if (cls == FILL) putColor(cls);
  putPath(points);
  text->put("cp\nfill\n");
  return 1;
}

int Postscript::setClip(float x1, float y1, float x2, float y2) {
  if (!ready(x1, y1, x2, y2)) return 0;
  startPage();
  setWideClip(x1, y1, x2, y2);
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
  Samples s;
  if (!getSamples(image, x, y, s)) return 0;
  startPage();
  text->put("gsave\n", s.x, ' ', s.y, " translate\n", s.width, ' ', s.height, " scale\n");
  text->put("/picstr ", s.width, " string def\n");
  text->put(s.width, ' ', s.height, " 8 [ ", s.width, " 0 0 ", -s.height, " 0 ", s.height, " ]\n");
  text->put("{ currentfile picstr readhexstring pop }\n");
  text->put(color ? "false 3 colorimage\n" : "image\n");
  putSamples(image, s, color);
  text->put("grestore\n");
  return 1;
}

}  // namespace KYV
