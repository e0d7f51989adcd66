#include "KYV/Hpgl.h"

#include <algorithm>
#include <string_view>

#include "DeviceOptions.h"
#include "KYV/Points.h"
#include "KYV/Strings.h"
#include "TextWriter.h"

namespace KYV {

namespace {

constexpr float UNITS_PER_INCH = 1015.0f;
constexpr float MAX_FACTOR = 1000.0f;  // of scale and line width
constexpr float ROLL_WIDTH = 23.0f;    // inches

constexpr Paper PAPERS[] = {
    {"letter", 10.5f, 8.0f}, {"legal", 13.5f, 8.0f}, {"11x17", 16.5f, 10.5f},
    {"a4", 11.2f, 7.8f},     {"a3", 15.4f, 11.2f},   {"ansid", 30.0f, 21.5f},
};

// By line style; there is none for 0.
constexpr std::string_view LINE_TYPES[] = {"", "LT;\n", "LT2,5,1;\n", "LT5,8,1;\n", "LT6,10,1;\n", "LT2,1,1;\n"};
// Printer reset, HP-GL/2, landscape page; and back.
constexpr std::string_view ENTER_HPGL = "\033E\033%1B\033&l1O\n";
constexpr std::string_view LEAVE_HPGL = "\033%0A\033E";

}  // namespace

Hpgl::~Hpgl() { close(); }

int Hpgl::init() {
  if (opened) close();
  pcl = NO_PCL;
  color = false;
  rotation = 0;
  scale = lwidth = 1.0f;
  return initFile("Hpgl", "kyv.hpgl", 756.0f, 576.0f);
}

int Hpgl::setParam(const char* options) {
  const Strings items(options, ',');
  if (items.valid(0)) setFilename(items.getString(0));
  static constexpr const char* WORDS[] = {"port",  "land",   "pcl",  "nopcl",  "lj",    "color", "gray",
                                          "scale", "lwidth", "rot",  "letter", "legal", "11x17", "a4",
                                          "a3",    "ansid",  "roll", "sz",     "hfont"};
  for (int i = 1; i < items.getNum(); ++i) {
    if (items.valid(i) && !setOption(items, i)) DeviceOptions::refuseItem("Hpgl", items.getString(i), WORDS);
  }
  return 1;
}

bool Hpgl::setOption(const Strings& items, int i) {
  struct Word {
    const char* name;
    void (*set)(Hpgl& h);
  };
  static constexpr Word WORDS[] = {
      {"port", [](Hpgl& h) { h.rotation = 90; }}, {"land", [](Hpgl& h) { h.rotation = 0; }},
      {"pcl", [](Hpgl& h) { h.pcl = PCL; }},      {"nopcl", [](Hpgl& h) { h.pcl = NO_PCL; }},
      {"lj", [](Hpgl& h) { h.pcl = LASERJET; }},  {"color", [](Hpgl& h) { h.color = h.inverse = true; }},
      {"gray", [](Hpgl& h) { h.color = false; }},
  };
  for (const Word& word : WORDS) {
    if (items.iequal(i, word.name)) return word.set(*this), true;
  }
  float number = 0.0f;
  if (items.iequal(i, "hfont")) return true;  // the graph's
  if (items.iequal(i, "scale", 5)) return DeviceOptions::getNumber(items, i, 6, 0.0f, MAX_FACTOR, scale);
  if (items.iequal(i, "lwidth", 6)) return DeviceOptions::getNumber(items, i, 7, 0.0f, MAX_FACTOR, lwidth);
  if (items.iequal(i, "rot", 3)) {
    if (!DeviceOptions::getNumber(items, i, 4, -360.0f, 360.0f, number)) return false;
    rotation = static_cast<int>(number);
    return true;
  }

  float w = 0.0f, h = 0.0f;
  if (const Paper* paper = DeviceOptions::findPaper(PAPERS, items.getString(i))) {
    w = paper->width;
    h = paper->height;
  } else if (items.iequal(i, "roll", 4)) {
    if (!DeviceOptions::getNumber(items, i, 5, DeviceOptions::MIN_INCHES, DeviceOptions::MAX_INCHES, w)) return false;
    h = ROLL_WIDTH;
  } else if (!items.iequal(i, "sz", 2) || !DeviceOptions::getSize(items, i, 3, w, h)) {
    return false;
  }
  width = w * UNITS_PER_INCH;
  height = h * UNITS_PER_INCH;
  return true;
}

int Hpgl::open() {
  if (opened) return 1;
  if (!openFile()) return 0;
  clip = Rect(0.0f, 0.0f, width, height);
  drawn = page_due = false;
  if (!append) {
    if (pcl != NO_PCL) text->put(ENTER_HPGL);
    text->put("IN;SP1;PA;\n");
    if (pcl == LASERJET) text->put("RO90;\n");
    if (rotation == 90 || rotation == 180 || rotation == 270) text->put("RO", rotation, ";\n");
  }
  text->put("PW", Fixed<1>{lwidth}, ";SV;LT;\n");
  opened = true;
  return 1;
}

int Hpgl::close() {
  if (!opened) return 0;
  if (!append) {
    text->put("SP;PG;\n");
    if (pcl != NO_PCL) text->put(LEAVE_HPGL);
  }
  return closeFile();
}

int Hpgl::getCoords(Rect& r) { return r = getCoords(), 1; }

Rect Hpgl::getCoords() {
  Rect r;
  r.setu(0.0f, height, width, 0.0f);
  return r;
}

int Hpgl::newFrame(int frame) {
  if (opened && frame == -1) page_due = drawn;
  return 1;
}

void Hpgl::startPage() {
  drawn = true;
  if (!page_due) return;
  page_due = false;
  text->put("PG;\nSP1;\n");
}

void Hpgl::putPen(int cls) {
  const Pen* p = pen(cls);
  if (!p || cls == FILL) return;
  text->put("SV;\n");
  if (cls != LINE) text->put(LINE_TYPES[SOLID]);
  text->put("PW", Fixed<1>{p->width * lwidth}, ";\n");
  if (cls == LINE && p->style >= SOLID && p->style <= DOT) text->put(LINE_TYPES[p->style]);
}

int Hpgl::drawLine(int cls, float x1, float y1, float x2, float y2) {
  if (!ready(x1, y1, x2, y2)) return 0;
  startPage();
  putPen(cls);
  text->put("PU", Fixed<0>{x1}, ',', Fixed<0>{y1}, ";PD", Fixed<0>{x2}, ',', Fixed<0>{y2}, ';');
  return 1;
}

int Hpgl::drawLine(int cls, const Points& points) {
  if (!ready(points)) return 0;
  startPage();
  putPen(cls);
  std::string_view move = "PU";
  for (const Point& p : points) {
    text->put(move, Fixed<0>{p.x}, ',', Fixed<0>{p.y}, ';');
    move = "PD";
  }
  return 1;
}

int Hpgl::drawFill(int cls, const Points& points) {
  if (!ready(points)) return 0;
  startPage();
  if (cls == FILL) text->put("SV;\n");
  bool first = true;
  for (const Point& p : points) {
    text->put(first ? std::string_view("PU") : std::string_view("PD"), Fixed<0>{p.x}, ',', Fixed<0>{p.y}, ';');
    if (first) text->put("PM0;");
    first = false;
  }
  text->put("PM1;PM2;FP;\n");
  return 1;
}

int Hpgl::setClip(float x1, float y1, float x2, float y2) {
  if (!ready(x1, y1, x2, y2)) return 0;
  setWideClip(x1, y1, x2, y2);
  text->put("IW ", Fixed<0>{clip.xmin}, ',', Fixed<0>{clip.ymin}, ',', Fixed<0>{clip.xmax}, ',', Fixed<0>{clip.ymax});
  text->put(";\n");
  return 1;
}

}  // namespace KYV
