#include "KYV/Plot.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "KYV/ColorFile.h"
#include "KYV/Kyv.h"
#include "KYV/ParamTable.h"
#include "KYV/Prog.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr int COLOR_CAPACITY = 512;
constexpr int MAX_MESSAGE = 100;

// Device names by their first letter; any other letter is the display.
struct DeviceName {
  char letter;
  const char* name;
};
constexpr DeviceName DEVICES[] = {
    {'d', "display"}, {'w', "display"}, {'p', "postscript"}, {'h', "hpgl"}, {'m', "meta"}};

const char* deviceName(char letter) {
  const DeviceName* row = std::find_if(std::begin(DEVICES), std::end(DEVICES),
                                       [letter](const DeviceName& d) { return d.letter == letter; });
  return row == std::end(DEVICES) ? "display" : row->name;
}

// What users call them, each of which may be cut short.
constexpr const char* DEVICE_WORDS[] = {"display", "window", "x11",  "xwindow",  "postscript",
                                        "ps",      "hpgl",   "meta", "metafile", "raster"};

// The drawing flags that a keyword of `draw` stands for.
struct DrawKeyword {
  const char* name;
  int first;
  int last;
};
constexpr DrawKeyword KEYWORDS[] = {
    {"all", 0, 12},    {"plot", 0, 0},    {"sum", 0, 0},     {"data", 1, 1},    {"grid", 2, 2},
    {"map", 2, 2},     {"text", 3, 9},    {"text_ul", 3, 3}, {"text_uc", 4, 4}, {"text_ur", 5, 5},
    {"text_ll", 6, 6}, {"text_lc", 7, 7}, {"text_lr", 8, 8}, {"bord", 9, 9},
};

// The text of the first token that begins with a key, null when there is none.
const char* tokenAfter(const Strings& tokens, const char* key) {
  const int n = StrLib::length(key);
  for (int i = 0; i < tokens.getNum(); ++i) {
    if (tokens.equal(i, key, n)) return tokens.getString(i) + n;
  }
  return nullptr;
}

// Whether the options of a window, or the environment, name the display to draw on.
bool namesDisplay(const char* options) {
  const Strings tokens(options, ',');
  if (tokens.valid(0) && tokens.index(0, '=') < 0) return true;
  return tokenAfter(tokens, "co=") || StrLib::valid(std::getenv("DISPLAY"));
}

}  // namespace

bool Plot::isPicture(const char* output) {
  for (const char* kind : {"gif", "png"}) {
    if (StrLib::iequal(output, kind, 3) || StrLib::iequal(output, kind, -3)) return true;
  }
  return false;
}

bool Plot::isDevice(const char* word, NearWord& near, const char*& used) {
  used = deviceName(*word);
  for (const char* name : DEVICE_WORDS) near.offer(name);
  return std::any_of(std::begin(DEVICE_WORDS), std::end(DEVICE_WORDS),
                     [word](const char* name) { return std::string_view(name).starts_with(word); });
}

bool Plot::isDrawWord(const char* word, NearWord& near) {
  if (StrLib::iequal(word, "none")) return true;
  for (const DrawKeyword& k : KEYWORDS) {
    if (StrLib::iequal(word, k.name)) return true;
    near.offer(k.name);
  }
  return false;
}

Plot::Plot() { init(); }

Plot::~Plot() { close(); }

int Plot::init() {
  labels.clear();
  frame_texts.clear();
  label_rows = panel = num_panel = 0;
  num_done = 0;
  end_due = own_title = false;
  panel_text[0] = trans_color[0] = label_format[0] = data_source[0] = '\0';
  label_date.init();
  fore_hour = Const::MISS;
  bar_on = 0;
  draw.fill(1);
  if (const char* list = Kyv::resrc.get("draw")) setDrawing(list);
  return 1;
}

int Plot::chooseDevice(const Strings& params, const char* text) {
  String device(Kyv::resrc.get("device", ""));
  if (const char* token = tokenAfter(params, "de=")) device.copy(token);
  const char* name = "display";
  const char* options = text;
  if (device.valid()) {
    const int comma = device.index(',');
    name = deviceName(device.getChar(0));
    // The one device of its letter that has to be written out.
    if (Strings(device.get(), ',').equal(0, "raster")) name = "raster";
    if (comma >= 0) options = device.get() + comma + 1;
  } else if (Kyv::resrc.getBool("inter")) {
    name = deviceName(Prog::prompt("Display (D) or Postscript (P): ").getChar(0));
  }
  // A picture needs no display.
  const bool needsDisplay = !image_output || namesDisplay(options == text ? "" : options);
  if (StrLib::equal(name, "display") && !needsDisplay) name = "raster";
  return graph.setDevice(name, options);
}

int Plot::openColors(const Strings& params) {
  color_map.init(COLOR_CAPACITY);
  const char* table = tokenAfter(params, "ct=");
  if (!table) table = Kyv::resrc.get("color_table", "kyv.clr");
  if (!ColorFile::read(table, color_map)) {
    Kyv::report(Kyv::BADPARAM,
                "Plot: no colour table %s; name one with -ct, or the directory of the data files with -fp\n", table);
  }
  for (int i = 0; i < color_map.getNum(); ++i) allocColor(i);
  return 1;
}

// Gives the device that is about to open what resources and parameters say.
void Plot::prepareDevice(const Strings& tokens, const char* text) {
  String geometry(Kyv::resrc.get("geometry", ""));
  if (const char* token = tokenAfter(tokens, "ge=")) geometry.copy(token);
  GeomBox box;
  const int kind = decodeGeometryStr(geometry.get(), box);
  if (kind == 1 || kind == 2) graph.setSize(box.width, box.height);
  if (kind == 2 || kind == 3) graph.setOffset(box.x, box.y);

  if (Kyv::resrc.getBool("inverse")) graph.setInverse(true);
  if (const char* color = Kyv::resrc.get("background")) graph.setBackground(color);
  if (Kyv::resrc.get("icon")) graph.setIcon(true);

  const char* name = Kyv::resrc.get("title");
  if (!name) {
    name = Kyv::resrc.get("name");
    if (!name) name = Kyv::getProgramName();
    if (*name == '+') ++name;
  }
  own_title = Kyv::resrc.get("title") != nullptr;
  StrLib::copy(title, name);
  if (*title) graph.setTitle(title);

  logo.copy(Kyv::resrc.get("logo", ""));
  if (const char* zone = Kyv::resrc.get("timezone")) tz.set(zone);
  setParam(Kyv::resrc.get("parameter"));
  setParam(text);
}

int Plot::open(const char* params) {
  init();
  const char* text = params ? params : "";
  const Strings tokens(text, ',');
  const char* output = Kyv::resrc.get("output", "");
  image_output = isPicture(output) ? 1 : 0;
  if (*output && !image_output) {
    Kyv::report(Kyv::BADPARAM, "Plot: %s is no picture that can be written, use a name that ends in .png or .gif\n",
                output);
  }
  chooseDevice(tokens, text);
  prepareDevice(tokens, text);
  const bool onScreen = graph.getDeviceType() == Graph::XWINDOW;
  bool opened = graph.open() != 0;
  if (!opened && onScreen && image_output) {
    graph.setDevice("raster", nullptr);
    prepareDevice(tokens, text);
    opened = graph.open() != 0;
  }
  if (!opened) {
    if (onScreen) {
      Kyv::outWarning("Plot: no window can be opened; -ou map.png draws a picture, -de postscript,map.ps a page\n");
    }
    return 0;
  }
  openColors(tokens);
  graph.addCallback("AnyEvent", this, "Plot");
  initPanel();
  return 1;
}

std::span<const ParamKey<Plot>> Plot::getKeys() {
  using enum ParamMatch;
  using Key = ParamKey<Plot>;
  static constexpr Key KEYS[] = {
      {"ti", Begins,
       [](Plot& p, const ParamItem& i) {
         StrLib::copy(p.title, i.from(3));
         p.own_title = true;
         p.graph.setTitle(p.title);
       }},
      {"bg", Begins, [](Plot& p, const ParamItem& i) { p.graph.setBackground(i.from(3)); }, ParamForm::Background},
      {"ic", Begins,
       [](Plot& p, const ParamItem& i) {
         if (*i.from(3)) p.graph.setIcon(true);
       }},
      {"col", Begins, [](Plot& p, const ParamItem& i) { p.label_color.copy(i.after()); }, ParamForm::Color},
      {"pan", IBegins, [](Plot& p, const ParamItem& i) { StrLib::copy(p.panel_text, i.after()); }},
      {"full", Is, [](Plot& p, const ParamItem&) { p.full = 1; }},
      {"full_lab", Is, [](Plot& p, const ParamItem&) { p.full = 2; }},
      {"inv", Is, [](Plot& p, const ParamItem&) { p.graph.setInverse(true); }},
      {"bar", IBegins, [](Plot& p, const ParamItem& i) { p.bar.setParam(i.from(4)); }, ParamForm::Bar},
      {"lo", IBegins, [](Plot& p, const ParamItem& i) { p.logo.copy(i.after()); }},
      {"trans_col", IBegins, [](Plot& p, const ParamItem& i) { StrLib::copy(p.trans_color, i.after()); }},
      {"tz", Begins, [](Plot& p, const ParamItem& i) { p.tz.set(i.from(3)); }, ParamForm::Zone},
  };
  return KEYS;
}

int Plot::setParam(const char* params) { return setParams(getKeys(), params, *this); }

void Plot::explain(ParamAnswer& answer) { answer.ask(getKeys()); }

int Plot::setDrawing(const char* list) {
  const Strings words(list, ',');
  std::array<unsigned char, NUM_DRAW> flags{};
  bool valid = false;
  for (int i = 0; i < words.getNum(); ++i) {
    const char* word = words.getString(i);
    if (!word) continue;
    const char sign = *word == '+' || *word == '-' ? *word++ : '\0';
    if (sign == '-' && i == 0) flags.fill(1);
    if (StrLib::iequal(word, "none")) {
      flags.fill(0);
      valid = true;
      continue;
    }
    const DrawKeyword* row = std::find_if(std::begin(KEYWORDS), std::end(KEYWORDS),
                                          [word](const DrawKeyword& k) { return StrLib::iequal(word, k.name); });
    if (row == std::end(KEYWORDS)) continue;
    valid = true;
    std::fill(flags.begin() + row->first, flags.begin() + row->last + 1, static_cast<unsigned char>(sign != '-'));
  }
  if (!valid) flags.fill(1);
  draw = flags;
  return 1;
}

int Plot::isDrawing(int n) const { return n >= 0 && n <= DRAW_BORDER ? draw[static_cast<std::size_t>(n)] : 0; }

int Plot::printDrawing() const {
  for (std::size_t i = 0; i < draw.size(); ++i) std::printf("draw[%d] = %d\n", static_cast<int>(i), draw[i]);
  return 1;
}

int Plot::close() { return graph.close(); }

int Plot::discard() { return (image_output || graph.isFileDevice()) && graph.discard() ? 1 : 0; }

int Plot::manage() {
  if (image_output && !graph.isFileDevice()) return saveOutput();
  const int result = graph.manage();
  // Not from within the device's own loop.
  if (end_due) close();
  return result;
}

int Plot::end() {
  drawBorder();
  drawLabels();
  return manage();
}

int Plot::done() {
  const bool inRow = std::any_of(labels.begin(), labels.end(), [this](const Label& l) { return l.row == label_rows; });
  if (inRow) ++label_rows;
  ++num_done;
  return 1;
}

int Plot::clear() { return graph.clear(); }

int Plot::message(const char* format, ...) {
  char text[MAX_MESSAGE];
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, MAX_MESSAGE, format, args);
  va_end(args);
  return graph.message("%s", text);
}

int Plot::addCallback(const char* event, Listener* listener, const void* data) {
  return graph.addCallback(event, listener, data);
}

}  // namespace KYV
