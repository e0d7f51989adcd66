#include "KYV/MetaFile.h"

#include <string_view>

#include "DeviceOptions.h"
#include "KYV/DateTool.h"
#include "KYV/Points.h"
#include "KYV/String.h"
#include "KYV/Strings.h"
#include "TextWriter.h"

namespace KYV {

namespace {

constexpr int WHITE = 0xFFFFFF;
constexpr float MIN_SIZE = 1e-3f;
constexpr float MAX_SIZE = 1e6f;

// Records of the attribute classes in the order of their numbers; none where a class lacks the attribute.
constexpr const char* COLORS[] = {"", "LCLR ", "MCLR ", "FCLR ", "TCLR "};
constexpr const char* WIDTHS[] = {"", "LWID ", "MWID ", "", "TWID "};

}  // namespace

MetaFile::~MetaFile() { close(); }

int MetaFile::init() {
  if (opened) close();
  initFile("MetaFile", "meta.out", 1.0f, 1.0f);
  for (const int cls : {LINE, MARKER, FILL, TEXT}) pen(cls)->color = WHITE;
  return 1;
}

int MetaFile::setParam(const char* options) {
  const Strings items(options, ',');
  bool named = false;
  for (int i = 0; i < items.getNum(); ++i) {
    if (items.iequal(i, "sz", 2)) {
      static constexpr const char* WORDS[] = {"sz", "file", "hfont"};
      if (DeviceOptions::getSize(items, i, 3, 'x', MIN_SIZE, MAX_SIZE, width, height)) continue;
      DeviceOptions::refuseItem("MetaFile", items.getString(i), WORDS);
    } else if (items.iequal(i, "file", 4)) {
      named = setFilename(items.getString(i, 5)) || named;
    } else if (items.valid(i) && !named && !items.iequal(i, "hfont")) {
      named = setFilename(items.getString(i)) != 0;
    }
  }
  return 1;
}

int MetaFile::setSize(float w, float h) {
  // Written so that a number that is none is refused too.
  if (!(w >= MIN_SIZE && h >= MIN_SIZE && w <= MAX_SIZE && h <= MAX_SIZE)) return 0;
  width = w;
  height = h;
  return 1;
}

int MetaFile::open() {
  if (opened) return 1;
  if (!openFile()) return 0;
  clip = Rect(0.0f, 0.0f, width, height);
  frame_due = false;
  frame = 0;
  String now;
  DateTool::getCurrent(now);
  text->put("KYVMETA2\n#Title: KYV Graphics Display\n#Creator: KYV MetaFile Processor-2.0\n");
  text->put("#CreationDate: ", now.view(), "\n#Begin plot\n");
  text->put("SZ ", Fixed<6>{width}, ' ', Fixed<6>{height}, "\n#KYV Plot: ");
  text->putPlain(title);
  text->put('\n');
  opened = true;
  return 1;
}

int MetaFile::close() {
  if (!opened) return 0;
  text->put("#End of plot\n");
  return closeFile();
}

int MetaFile::getCoords(Rect& r) { return r = getCoords(), 1; }

Rect MetaFile::getCoords() {
  Rect r;
  r.setu(0.0f, 0.0f, width, height);
  return r;
}

// Writes a record, after the mark of the frame that it is the first of.
template <class... Item>
int MetaFile::put(const Item&... items) {
  if (!opened) return 0;
  if (frame_due) text->put("#Frame ", ++frame, '\n');
  frame_due = false;
  text->put(items...);
  return 1;
}

// Writes the record of an attribute when its value changes.
template <class Value, class Shown>
int MetaFile::change(Value& value, Value next, const char* name, Shown shown) {
  if (value == next || !*name) return 1;
  value = next;
  return put(std::string_view(name), shown, '\n');
}

int MetaFile::setColor(int cls, int value) {
  Pen* p = pen(cls);
  return p ? change(p->color, value, COLORS[cls], value) : 0;
}

int MetaFile::setLineWidth(int cls, float w) {
  Pen* p = pen(cls);
  if (!p) return 0;
  const float good = w > 0.0f && w <= MAX_SIZE ? w : 1.0f;
  return change(p->width, good, WIDTHS[cls], Fixed<2>{good});
}

int MetaFile::setLineStyle(int cls, int style) {
  return cls == LINE ? change(pen(cls)->style, style, "LSTY ", style) : pen(cls) != nullptr;
}

int MetaFile::setFillStyle(int cls, int style) {
  return cls == FILL ? change(pen(cls)->style, style, "FSTY ", style) : pen(cls) != nullptr;
}

int MetaFile::setFont(const char* spec) {
  if (!put("FONT ")) return 0;
  text->putPlain(spec);
  return put('\n');
}

int MetaFile::setTextAlign(int h, int v) { return put("TALIGN ", h, ' ', v, '\n'); }

int MetaFile::setImageAlign(int h, int v) { return put("IALIGN ", h, ' ', v, '\n'); }

int MetaFile::drawLine(int, float x1, float y1, float x2, float y2) {
  if (!ready(x1, y1, x2, y2)) return 0;
  return put("L 2 ", Fixed<6>{x1}, ',', Fixed<6>{y1}, ' ', Fixed<6>{x2}, ',', Fixed<6>{y2}, '\n');
}

int MetaFile::drawLine(int, const Points& points) { return putPath('L', points); }

int MetaFile::drawFill(int, const Points& points) { return putPath('F', points); }

int MetaFile::putPath(char what, const Points& points) {
  if (!ready(points)) return 0;
  put(what, ' ', points.getNum(), ' ');
  for (const Point& p : points) text->put(Fixed<6>{p.x}, ',', Fixed<6>{p.y}, ' ');
  return put('\n');
}

int MetaFile::drawText(const Point& p, const char* line) {
  if (!ready(p.x, p.y, p.x, p.y)) return 0;
  put("T ", Fixed<6>{p.x}, ',', Fixed<6>{p.y}, ' ');
  text->putPlain(line);
  return put('\n');
}

int MetaFile::drawImage(const Image& image, float x, float y) {
  Samples s;
  if (!getSamples(image, x, y, s)) return 0;
  put("I\n", s.x, ' ', s.y, " translate\n", s.width, ' ', s.height, " scale\n");
  putSamples(image, s, true);
  return put("grestore\n");
}

int MetaFile::setClip(float x1, float y1, float x2, float y2) {
  if (!ready(x1, y1, x2, y2)) return 0;
  clip = Rect(x1, y1, x2, y2);
  return put("CL ", Fixed<6>{x1}, ' ', Fixed<6>{y1}, ' ', Fixed<6>{x2}, ' ', Fixed<6>{y2}, '\n');
}

int MetaFile::message(const char* comment) {
  if (!put('#')) return 0;
  text->putPlain(comment);
  return put('\n');
}

int MetaFile::newFrame(int n) {
  if (n == -1) frame_due = opened;
  return 1;
}

}  // namespace KYV
