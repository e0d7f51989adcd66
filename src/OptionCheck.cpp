// The checks of option values, one for each form of value.
#include "OptionCheck.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "KYV/ColorBar.h"
#include "KYV/ColorFile.h"
#include "KYV/ColorFill.h"
#include "KYV/ColorMap.h"
#include "KYV/DataPath.h"
#include "KYV/Domain.h"
#include "KYV/DomainTool.h"
#include "KYV/Figure.h"
#include "KYV/FileTool.h"
#include "KYV/Graph.h"
#include "KYV/Kyv.h"
#include "KYV/MapPlot.h"
#include "KYV/NameConv.h"
#include "KYV/NearWord.h"
#include "KYV/ParamTable.h"
#include "KYV/Plot.h"
#include "KYV/PlotAttr.h"
#include "KYV/RadMap.h"
#include "KYV/Region.h"
#include "KYV/Strings.h"
#include "KYV/TimeSpec.h"
#include "KYV/Timezone.h"
#include "KYV/VarList.h"

namespace KYV {

namespace {

constexpr int MAX_ID = 4;     // characters of a station
constexpr int MAX_TYPE = 14;  // of a product type

/// Whether all characters are among some, and one is a digit: times and sizes are read as far as they go.
bool isMadeOf(const char* text, std::string_view letters) {
  const std::string_view all = text;
  return all.find_first_not_of(letters) == std::string_view::npos &&
         all.find_first_of("0123456789") != std::string_view::npos;
}

// Up to four numbers with ':' between them.
bool areNumbers(const char* text) {
  const Strings parts(text, ':');
  for (int i = 0; i < parts.getNum(); ++i) {
    if (Const::isMissing(parts.getFloat(i))) return false;
  }
  return parts.getNum() >= 1 && parts.getNum() <= 4;
}

class Checker {
 public:
  explicit Checker(bool checkAll) : all(checkAll) {}
  void run();

 private:
  using Check = void (Checker::*)(const char* text);
  struct Row {
    const char* resource;
    Check check;
    bool later;  // those who use the value tell what is wrong with it
  };
  struct FormRow {
    ParamForm form;
    Check check;
  };
  static const Row ROWS[];
  static const FormRow FORMS[];

  // The word stands behind its option, "-col redd", or its parameter, "-pa coll=redd".
  void fault(const std::string& word, const std::string& why) const {
    const char* blank = word.empty() || where.ends_with('=') ? "" : " ";
    Kyv::report(Kyv::BADPARAM, "%s: %s%s%s: %s\n", Kyv::getProgramName(), where.c_str(), blank, word.c_str(),
                why.c_str());
  }
  void loadColors();
  void colorName(const char* name);

  void background(const char* text);
  void bar(const char* text) { explain(text, &ColorBar::explain); }
  void color(const char* text);
  void colorTable(const char* text);
  void convention(const char* text);
  void device(const char* text);
  void deviceOptions(const char* text);
  void domain(const char* text);
  void drawing(const char* text);
  void fill(const char* text);
  void flag(const char* text);
  void fontList(const char*) { fault("", "fonts are chosen in kyv.fnl; it is ignored"); }
  void geometry(const char* text);
  void hour(const char* text);
  void id(const char* text) { length(text, MAX_ID); }
  void labels(const char* text);
  void length(const char* text, int most);
  void logo(const char* text);
  void maps(const char* text);
  void message(const char* text);
  void nameFile(const char* text);
  void number(const char* text);
  void numbers(const char* text);
  void output(const char* text);
  void params(const char* text);
  void time(const char* text);
  void type(const char* text) { length(text, MAX_TYPE); }
  void variables(const char* text);
  void window(const char* text);
  void zone(const char* text);
  template <class... Explain>
  void explain(const char* item, Explain... classes);

  bool all;
  std::string where;
  ColorMap colors;
};

// In the order of the help listing.
constexpr Checker::Row Checker::ROWS[] = {
    {"message", &Checker::message, false},
    {"name_conv", &Checker::nameFile, true},
    {"in_file", &Checker::convention, false},
    {"current", &Checker::time, false},
    {"hour", &Checker::hour, false},
    {"num_hour", &Checker::window, false},
    {"timezone", &Checker::zone, false},
    {"output", &Checker::output, true},
    {"plot_domain", &Checker::domain, true},
    {"identifier", &Checker::id, false},
    {"type", &Checker::type, false},
    {"variable", &Checker::variables, true},
    {"map_file", &Checker::maps, true},
    {"parameter", &Checker::params, false},
    {"draw", &Checker::drawing, false},
    {"label", &Checker::labels, false},
    {"font_list", &Checker::fontList, false},
    {"color_table", &Checker::colorTable, true},
    {"color_data", &Checker::color, false},
    {"color_fill", &Checker::fill, false},
    {"color_map", &Checker::color, false},
    {"color_grid", &Checker::color, false},
    {"color_latlon", &Checker::color, false},
    {"color_label", &Checker::color, false},
    {"device", &Checker::device, false},
    {"device", &Checker::deviceOptions, true},
    {"geometry", &Checker::geometry, false},
    {"icon", &Checker::flag, false},
    {"background", &Checker::background, false},
    {"inverse", &Checker::flag, false},
    {"logo", &Checker::logo, true},
};

constexpr Checker::FormRow Checker::FORMS[] = {
    {ParamForm::Number, &Checker::number},
    {ParamForm::Numbers, &Checker::numbers},
    {ParamForm::Color, &Checker::color},
    {ParamForm::Background, &Checker::background},
    {ParamForm::Fill, &Checker::fill},
    {ParamForm::Zone, &Checker::zone},
    {ParamForm::Convention, &Checker::convention},
    {ParamForm::Hour, &Checker::hour},
    {ParamForm::Bar, &Checker::bar},
};

void Checker::run() {
  for (const Row& row : ROWS) {
    const char* text = Kyv::resrc.get(row.resource);
    if (!text || (row.later && !all)) continue;
    where = Kyv::resrc.getPlace(row.resource);
    (this->*row.check)(text);
  }
}

void Checker::message(const char* text) {
  const Strings items(text, ',');
  for (int i = 0; i < items.getNum(); ++i) {
    if (!items.valid(i)) continue;
    const char* item = items.getString(i);
    if (*item == '+' || *item == '-') ++item;
    if (!Kyv::isMessageClass(item))
      fault(item, "no such message class (print, error, warn, mess, out1 to out8, debug1 to debug8); it is ignored");
  }
}

void Checker::nameFile(const char* text) {
  String path;
  if (!DataPath::find(text, path)) fault(text, "no such file of conventions; file names are taken as they are");
}

void Checker::logo(const char* text) {
  const Strings entries(text, ',');
  for (int i = 0; i < entries.getNum(); ++i) {
    const char* entry = StrLib::valid(entries.getString(i), "");
    if (StrLib::equal(entry, "if:", 3) || StrLib::equal(entry, "im:", 3)) entry += 3;
    const int colon = StrLib::index(entry, ':');
    const String name(entry, colon < 0 ? StrLib::length(entry) : colon);
    String path;
    FileTool::addPath(Kyv::resrc.get("image_path", ""), name.get(), path);
    if (name.valid() && !FileTool::isFile(path.get())) fault(entry, "no such picture; no logo is drawn");
  }
}

void Checker::convention(const char* text) {
  String known;
  if (!StrLib::valid(text) || NameConv::isKnown(text, known)) return;
  NearWord near(text);
  const Strings labels(known.get(), ',');
  for (int i = 0; i < labels.getNum(); ++i) near.offer(std::string_view(labels.getString(i)).substr(i > 0 ? 1 : 0));
  fault(text, near.explain("convention", "it is taken as a file name; there are " + std::string(known.get())));
}

void Checker::time(const char* text) {
  if (StrLib::valid(text) && !TimeSpec(text).whole) {
    fault(text, "no time (la, 20240501_1830, 2024-05-01T18:30, 6 for hours, 1d for days); what fits of it is used");
  }
}

void Checker::hour(const char* text) {
  if (StrLib::valid(text) && !isMadeOf(text, "0123456789:d#-")) {
    fault(text, "no hour (18, 18:30, 1830, 011830, #20240501); what fits of it is used");
  }
}

void Checker::window(const char* text) {
  if (StrLib::valid(text) && !isMadeOf(text, "0123456789:-,")) {
    fault(text, "no window of time (2, 2:30, -2, 2,:30); one frame is drawn");
  }
}

void Checker::zone(const char* text) {
  if (!StrLib::valid(text) || Timezone(text).isSet()) return;
  for (const char* none : {"UTC", "GMT", "Z"}) {
    if (StrLib::iequal(text, none)) return;
  }
  NearWord near(text);
  if (StrLib::index(text, '/') >= 0) Timezone::offerZones(near);
  fault(text,
        near.explain("time zone", "UTC is used; give the hours from UTC as CDT:-5, or a name as America/Chicago"));
}

void Checker::domain(const char*) {
  Domain trial;
  if (!DomainTool::set(trial)) explainDomain();
}

void Checker::length(const char* text, int most) {
  if (StrLib::length(text) <= most) return;
  fault(text, "has more than " + std::to_string(most) + " characters; " +
                  (FileTool::isFile(text) ? "a file's name stands alone, or after --" : "the rest is cut off"));
}

void Checker::variables(const char* text) {
  VarList vars;
  if (vars.setFile("radmap.var")) vars.process(text);
}

void Checker::output(const char* text) {
  if (StrLib::valid(text) && !Plot::isPicture(text)) fault(text, "no picture; use a name that ends in .png or .gif");
}

void Checker::maps(const char* text) {
  const Strings missing = MapPlot::findMissing(text);
  for (int i = 0; i < missing.getNum(); ++i) fault(missing.getString(i), "no such map; it is left out");
}

// One parameter text reaches all classes: an item that one of them knows is no slip.
void Checker::params(const char* text) {
  const String joined = RadMap::joinVariables(text);
  const Strings items(joined.get(), ',');
  for (int i = 0; i < items.getNum(); ++i) {
    if (items.valid(i))
      explain(items.getString(i), &RadMap::explain, &Plot::explain, &Figure::explain, &MapPlot::explain);
  }
}

template <class... Explain>
void Checker::explain(const char* item, Explain... classes) {
  ParamAnswer answer(item);
  (classes(answer), ...);
  if (!answer.known) return fault(item, answer.near.explain("parameter", "it is ignored"));
  const std::string outer = where;
  const std::string_view text = item;
  const std::size_t equals = text.find('=');
  if (equals != std::string_view::npos) where += " " + std::string(text.substr(0, equals + 1));
  for (const FormRow& row : FORMS) {
    if (row.form == answer.form) (this->*row.check)(equals == std::string_view::npos ? "" : item + equals + 1);
  }
  where = outer;
}

void Checker::number(const char* text) {
  if (Const::isMissing(Strings(text, ',').getFloat(0))) fault(text, "a number is needed; it is ignored");
}

void Checker::numbers(const char* text) {
  if (StrLib::valid(text) && !areNumbers(text))
    fault(text, "numbers are needed, with ':' between them; what fits of it is used");
}

void Checker::drawing(const char* text) {
  const Strings words(text, ',');
  for (int i = 0; i < words.getNum(); ++i) {
    if (!words.valid(i)) continue;
    const char* word = words.getString(i);
    if (*word == '+' || *word == '-') ++word;
    NearWord near(word);
    if (!Plot::isDrawWord(word, near)) fault(word, near.explain("part of a picture", "it is ignored"));
  }
}

void Checker::labels(const char* text) {
  const Strings entries(text, ',');
  for (int i = 0; i < entries.getNum(); ++i) {
    const char* entry = StrLib::valid(entries.getString(i), "");
    if (StrLib::length(entry) < 3 || entry[2] != ':') continue;
    const String place(entry, 2);
    if (Plot::getLabelPosIndex(place.get()) < 0) {
      fault(entry, "no such place (ul, uc, ur, ll, lc, lr); the label is not drawn");
    }
  }
}

// Colours are those of the tables that the plot reads.
void Checker::loadColors() {
  if (colors.getNum() > 0) return;
  const Strings files(Kyv::resrc.get("color_table", "kyv.clr"), ',');
  for (int i = 0; i < files.getNum(); ++i) {
    String path;
    if (files.valid(i) && DataPath::find(files.getString(i), path)) ColorFile::readFile(path.get(), colors);
  }
}

void Checker::colorTable(const char* text) {
  const Strings files(text, ',');
  for (int i = 0; i < files.getNum(); ++i) {
    String path;
    if (!files.valid(i) || (DataPath::find(files.getString(i), path) && FileTool::isFile(path.get()))) continue;
    fault(files.getString(i), "no such colour table; name its directory with -fp");
  }
}

void Checker::colorName(const char* name) {
  loadColors();
  // Without a table no name is known, which is told when it is missed.
  if (!*name || colors.getNum() == 0 || ColorMap::isOff(name) || colors.getInd(name) != -1) return;
  NearWord near(name);
  for (int i = 0; i < colors.getNum(); ++i) near.offer(colors.getName(i));
  fault(name, near.explain("colour", "nothing is drawn in it"));
}

void Checker::background(const char* text) {
  loadColors();
  if (!StrLib::valid(text) || colors.getNum() == 0 || StrLib::equal(text, "def") || colors.getInd(text) >= 0) return;
  NearWord near(text);
  for (int i = 0; i < colors.getNum(); ++i) near.offer(colors.getName(i));
  fault(text, near.explain("colour", "the device's own background is used"));
}

void Checker::color(const char* text) {
  const PlotAttr attr(text);
  colorName(attr.name);
  const Strings bad = PlotAttr::findBadItems(text);
  for (int i = 0; i < bad.getNum(); ++i) fault(bad.getString(i), "no attribute, or no value of one; it is ignored");
}

void Checker::fill(const char* text) {
  loadColors();
  if (!StrLib::valid(text) || StrLib::iequal(text, "miss") || StrLib::iequal(text, "def") || colors.getNum() == 0)
    return;
  ColorFill scale;
  if (!scale.set(colors, text)) {
    if (all) fault(text, "no such fill scale; the product's default scale is used");
    return;
  }
  for (int i = 0; i < scale.getNum(); ++i) colorName(scale.get(i).name);
  const Strings& bad = scale.getBadItems();
  for (int i = 0; i < bad.getNum(); ++i) fault(bad.getString(i), "no attribute, or no value of one; it is ignored");
  if (all && !scale.isVisible())
    fault(text, "no class of this scale has a colour; the product's default scale is used");
}

void Checker::device(const char* text) {
  const Strings words(text, ',');
  if (!words.valid(0)) return;
  const char* used = nullptr;
  NearWord near(words.getString(0));
  if (Plot::isDevice(words.getString(0), near, used)) return;
  fault(words.getString(0),
        near.explain("device", std::string(used) +
                                   " is used; there are display, postscript, hpgl, meta and raster, and " +
                                   "-ou NAME.png draws a picture"));
}

// A device that is not opened tells of its options.
void Checker::deviceOptions(const char* text) {
  const int comma = StrLib::index(text, ',');
  if (comma < 0) return;
  const Strings words(text, ',');
  const char* used = nullptr;
  NearWord near(StrLib::valid(words.getString(0), ""));
  Plot::isDevice(StrLib::valid(words.getString(0), ""), near, used);
  Graph().setDevice(used, text + comma + 1);
}

void Checker::geometry(const char* text) {
  GeomBox box;
  if (!StrLib::valid(text)) return;
  const std::string_view all_letters = "0123456789.x+-eE";
  if (Plot::decodeGeometryStr(text, box) &&
      std::string_view(text).find_first_not_of(all_letters) == std::string_view::npos)
    return;
  fault(text, "no size (900x600, 900x600+10+20, +10+20 in pixels); the device's own is used");
}

// What stands behind an option is its value: a file's name is easily lost there.
void Checker::flag(const char* text) {
  if (!StrLib::valid(text)) return;
  static constexpr const char* WORDS[] = {"yes", "no", "on", "off", "true", "false", "1", "0"};
  const bool known =
      std::any_of(std::begin(WORDS), std::end(WORDS), [text](const char* w) { return StrLib::iequal(text, w); });
  if (known) return;
  fault(text, FileTool::isFile(text)
                  ? "the file's name is taken as the value of the option; write it first, or yes in between"
                  : "not yes or no; yes is used");
}

}  // namespace

void checkOptions(bool all) { Checker(all).run(); }

void explainDomain() {
  const char* text = Kyv::resrc.get("plot_domain");
  if (!StrLib::valid(text)) return;
  NearWord near(text);
  Region::offerNames(near);
  Kyv::report(Kyv::BADPARAM, "%s: %s %s: %s\n", Kyv::getProgramName(), Kyv::resrc.getPlace("plot_domain").c_str(), text,
              near.explain("domain", "that of the product is used").c_str());
}

}  // namespace KYV
