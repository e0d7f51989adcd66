#include "KYV/Postscript.h"

#include "DeviceOptions.h"
#include "KYV/DateTool.h"
#include "KYV/Kyv.h"
#include "KYV/String.h"
#include "KYV/Strings.h"
#include "TextWriter.h"

namespace KYV {

namespace {

// Less would be written as "0.00", and a page without extent cannot be rendered.
constexpr float MIN_SCALE = 0.01f;
constexpr float MAX_SCALE = 100.0f;
constexpr float MAX_LWIDTH = 1000.0f;
constexpr float POINTS_PER_INCH = 72.0f;

constexpr Paper PAPERS[] = {
    {"letter", 10.5f, 8.0f}, {"legal", 13.5f, 8.0f}, {"11x17", 16.5f, 10.5f},
    {"a4", 11.2f, 7.8f},     {"a3", 15.4f, 11.2f},   {"ansid", 33.5f, 21.5f},
};

constexpr const char* PROCEDURES =
    "/inch {72 mul} def\n"
    "/dot {.33 mul} def\n"
    "/mv {moveto} def\n"
    "/ln {lineto} def\n"
    "/lw {setlinewidth} def\n"
    "/np {newpath} def\n"
    "/cp {closepath} def\n";

// Showing a page resets the coordinates; those of the beginning come back for the next one.
constexpr const char* END_PAGE = "showpage\ngrestore\n";

// By portrait, EPS.
constexpr const char* ORIENTATION[2][2] = {
    {"90 rotate\n.25 inch -8.25 inch translate\n", "90 rotate\n0. inch -8.5 inch translate\n"},
    {".25 inch .25 inch translate\n", ""},
};

}  // namespace

Postscript::~Postscript() { close(); }

int Postscript::init() {
  if (opened) close();
  initFile("Postscript", "kyv.ps", 756.0f, 576.0f);
  eps = color = portrait = false;
  scale = lwidth = 1.0f;
  lines = {};
  return 1;
}

int Postscript::setParam(const char* options) {
  const Strings items(options, ',');
  if (items.valid(0)) setFilename(items.getString(0));
  static constexpr const char* WORDS[] = {"port",   "land",  "eps",   "noeps", "color", "gray",  "scale", "lwidth",
                                          "letter", "legal", "11x17", "a4",    "a3",    "ansid", "sz",    "hfont"};
  for (int i = 1; i < items.getNum(); ++i) {
    if (items.valid(i) && !setOption(items, i)) DeviceOptions::refuseItem("Postscript", items.getString(i), WORDS);
  }
  // The colour lines are those of the colour flag.
  lines = {};
  return 1;
}

bool Postscript::setOption(const Strings& items, int i) {
  struct Flag {
    const char* name;
    bool Postscript::*field;
    bool value;
  };
  static constexpr Flag FLAGS[] = {
      {"port", &Postscript::portrait, true}, {"land", &Postscript::portrait, false},
      {"eps", &Postscript::eps, true},       {"noeps", &Postscript::eps, false},
      {"color", &Postscript::color, true},   {"color", &Postscript::inverse, true},
      {"gray", &Postscript::color, false},
  };
  bool known = items.iequal(i, "hfont");  // the graph's
  for (const Flag& flag : FLAGS) {
    if (!items.iequal(i, flag.name)) continue;
    this->*flag.field = flag.value;
    known = true;
  }
  if (known) return true;
  if (items.iequal(i, "scale", 5)) return DeviceOptions::getNumber(items, i, 6, MIN_SCALE, MAX_SCALE, scale);
  if (items.iequal(i, "lwidth", 6)) return DeviceOptions::getNumber(items, i, 7, 0.0f, MAX_LWIDTH, lwidth);

  float w = 0.0f, h = 0.0f;
  if (const Paper* paper = DeviceOptions::findPaper(PAPERS, items.getString(i))) {
    w = paper->width;
    h = paper->height;
  } else if (!items.iequal(i, "sz", 2) || !DeviceOptions::getSize(items, i, 3, w, h)) {
    return false;
  }
  width = w * POINTS_PER_INCH;
  height = h * POINTS_PER_INCH;
  return true;
}

int Postscript::open() {
  if (opened) return 1;
  if (!openFile()) return 0;
  clip = Rect(0.0f, 0.0f, width, height);
  clipped = page_due = false;
  page = 0;
  String now;
  DateTool::getCurrent(now);

  if (eps) {
    text->put("%!PS-Adobe-3.0 EPSF-3.0\n");
    text->put(portrait ? "%%BoundingBox: 0 0 756 576\n" : "%%BoundingBox: 0 0 576 756\n");
  } else {
    text->put("%!PS-Adobe-1.0\n");
  }
  text->put("%%Title: KYV Graphics Display: ");
  text->putPlain(title);
  text->put("\n%%Creator: KYV Postscript Processor-5.5\n");
  text->put("%%CreationDate: ", now.view(), "\n");
  text->put("%%EndComments\n%%Postscript initialization\n");
  if (!eps) text->put("30 dict begin\n/saveobj save def\n");
  text->put(PROCEDURES, ORIENTATION[portrait][eps]);
  text->put(color ? "0 0 0 setrgbcolor\n" : "0 setgray\n");
  text->put("2 setlinejoin\n1 dot lw\n[] 0 setdash\n");
  if (scale != 1.0f) text->put(Fixed<2>{scale}, ' ', Fixed<2>{scale}, " scale\n");
  text->put("%%Begin plot\n%%KYV Plot: ");
  text->putPlain(title);
  text->put('\n');
  opened = true;
  return 1;
}

int Postscript::close() {
  if (!opened) return 0;
  text->put("%%End of plot\n");
  // The last page is shown like the others, so that each can be viewed alone.
  if (page > 0) text->put(END_PAGE);
  if (!append) {
    if (page > 0) text->put("%%Trailer\n%%Pages: ", page, '\n');
    if (!eps) text->put("saveobj restore\n");
    if (page == 0) text->put("showpage\n");
    if (!eps) text->put("end\n");
    text->put("%%EOF\n");
  }
  return closeFile();
}

int Postscript::newFrame(int frame) {
  if (opened && frame == -1) page_due = true;
  return 1;
}

// A page begins with the first thing that is drawn on it.
void Postscript::beginPage() {
  page_due = false;
  if (page > 0) text->put(END_PAGE);
  ++page;
  if (page == 2 && eps) {
    Kyv::outWarning("Postscript: an EPS file holds one page, for a loop of frames leave eps out of -de\n");
  }
  text->put("%%Page: ", page, ' ', page, "\ngsave\n");
  // Who draws sets a clip once and counts on it.
  if (clipped) putClip();
}

int Postscript::getCoords(Rect& r) {
  r = getCoords();
  return 1;
}

Rect Postscript::getCoords() {
  Rect r;
  r.setu(0.0f, height, width, 0.0f);
  return r;
}

int Postscript::message(const char* comment) {
  if (!opened) return 0;
  startPage();
  text->put("%% ");
  text->putPlain(comment);
  text->put('\n');
  return 1;
}

}  // namespace KYV
