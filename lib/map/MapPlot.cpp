#include "KYV/MapPlot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "KYV/ColorFile.h"
#include "KYV/DataPath.h"
#include "KYV/Domain.h"
#include "KYV/DomainTool.h"
#include "KYV/File.h"
#include "KYV/Kyv.h"
#include "KYV/ParamTable.h"
#include "KYV/Plot.h"
#include "KYV/Strings.h"
#include "MapEntry.h"

namespace KYV {

namespace {

constexpr const char* DEFAULT_LIST = "kyv.map";
constexpr const char* LIST_ENDING = "mpl";
constexpr float DEFAULT_STEP = 5.0f;  // degrees
constexpr int MAX_WORD = 79;          // characters of a word of a list file
constexpr int MAX_ENTRIES = 10000;    // of a list file; a list is read for every frame

bool endsWith(const char* text, const char* end) {
  const int length = StrLib::length(text), n = StrLib::length(end);
  return length >= n && StrLib::equal(text + length - n, end);
}

// Whether an item of a map list names a list file: the default list does in spite of its ending.
bool isList(const char* item) {
  const char* slash = std::strrchr(item, '/');
  return endsWith(item, LIST_ENDING) || StrLib::equal(slash ? slash + 1 : item, DEFAULT_LIST);
}

}  // namespace

int MapPlot::init() {
  def = 1;
  type = flag = fill_cont = fill = map_in = index = 0;
  lat_step = lon_step = Const::MISS;
  map_files.copy("");
  color_line.copy("");
  color_table.copy(Kyv::resrc.get("color_table", ""));
  color.copy(Kyv::resrc.get("color_map", ""));
  color_latlon.copy(Kyv::resrc.get("color_latlon", ""));
  return setParam(Kyv::resrc.get("parameter", ""));
}

std::span<const ParamKey<MapPlot>> MapPlot::getKeys() {
  using enum ParamMatch;
  using Key = ParamKey<MapPlot>;
  // The first key that fits acts: "coll" and "coln" stand before "co=", "fill_cont" before "fill".
  static constexpr Key KEYS[] = {
      {"ct", Begins, [](MapPlot& m, const ParamItem& i) { m.setColorTable(i.after()); }},
      {"coll", Begins, [](MapPlot& m, const ParamItem& i) { m.setColorLatLon(i.after()); }, ParamForm::Color},
      {"coln", Begins, [](MapPlot& m, const ParamItem& i) { m.setColorLine(i.after()); }, ParamForm::Color},
      {"co=", Begins, [](MapPlot& m, const ParamItem& i) { m.setColor(i.from(3)); }, ParamForm::Color},
      {"mf", Begins, [](MapPlot& m, const ParamItem& i) { m.setMapFiles(i.after()); }},
      {"fill_cont", Is, [](MapPlot& m, const ParamItem&) { m.fill_cont = 1; }},
      {"fc", Is, [](MapPlot& m, const ParamItem&) { m.fill_cont = 1; }},
      {"fill", Is, [](MapPlot& m, const ParamItem&) { m.fill = 1; }},
      {"map_in", Is, [](MapPlot& m, const ParamItem&) { m.map_in = 1; }},
      {"index", Is, [](MapPlot& m, const ParamItem&) { m.index = 1; }},
      {"lalo", Begins, [](MapPlot& m, const ParamItem& i) { m.setStep(i.from(5)); }, ParamForm::Numbers},
      {"nolalo", Is, [](MapPlot& m, const ParamItem&) { m.lat_step = m.lon_step = Const::MISS; }},
      {"default", Is, [](MapPlot& m, const ParamItem&) { m.def = 2; }},
      {"nodefault", Is, [](MapPlot& m, const ParamItem&) { m.def = m.type == 0 ? 1 : 0; }},
      {"over", Is,
       [](MapPlot& m, const ParamItem&) {
         m.type = OVER;
         if (m.def != 2) m.def = 0;
       }},
      {"under", Is,
       [](MapPlot& m, const ParamItem&) {
         m.type = UNDER;
         if (m.def != 2) m.def = 0;
       }},
  };
  return KEYS;
}

int MapPlot::setParam(const char* params) { return setParams(getKeys(), params, *this); }

void MapPlot::explain(ParamAnswer& answer) { answer.ask(getKeys()); }

// "%f:%f", one value for both, none for the default; a spacing of no use leaves the lines out.
void MapPlot::setStep(const char* text) {
  lat_step = lon_step = DEFAULT_STEP;
  const int n = std::sscanf(text, "%f:%f", &lat_step, &lon_step);
  if (n == 1) lon_step = lat_step;
  if (!(lat_step > 0.0f && lon_step > 0.0f)) lat_step = lon_step = Const::MISS;
}

int MapPlot::getDomain(Domain& domain) { return DomainTool::decode(domain, "globe") ? 1 : 0; }

// Whether something with this sign is drawn: '+' over the data, '-' under it.
bool MapPlot::admits(char sign, int layerType) const {
  switch (sign) {
    case '+':
      return (layerType & OVER) != 0;
    case '-':
      return (layerType & UNDER) != 0;
    default:
      return def != 0;
  }
}

int MapPlot::draw(Plot& plot) {
  if (!plot.isDrawing(Plot::DRAW_MAP)) return 0;
  plot.setDropShadow(0);
  if (color_table.valid()) {
    ColorMap colors;
    plot.getColorMap(colors);
    if (ColorFile::read(color_table.get(), colors)) plot.setColorMap(colors);
  }
  const char* list = map_files.valid() ? map_files.get() : Kyv::resrc.get("map_file", DEFAULT_LIST);
  const Strings items(list, ',', -1, "\"[");
  labels.clear();
  in_list = true;
  for (int i = 0; i < items.getNum(); ++i) {
    const char* item = items.getString(i);
    if (StrLib::valid(item)) drawItem(plot, item);
  }
  in_list = false;
  if (!Const::isMissing(lat_step) && !Const::isMissing(lon_step)) {
    useText(plot, PlotAttr(color_latlon.valid() ? color_latlon.get() : LATLON_ATTR));
    drawLatLon(plot, lat_step, lon_step);
  }
  return 1;
}

// An item of the map list: a list file, of which all is drawn or nothing, or an entry.
void MapPlot::drawItem(Plot& plot, const char* item) {
  const char sign = *item == '+' || *item == '-' ? *item : '\0';
  const char* name = sign ? item + 1 : item;
  const bool named = StrLib::equal(name, "fi:", 3);
  if (!named && !isList(name)) {
    process(plot, item, type);
    return;
  }
  // The entries of a list without sign have signs of their own.
  if (sign && !admits(sign, type)) return;
  drawList(plot, named ? name + 3 : name, sign != 0);
}

void MapPlot::drawList(Plot& plot, const char* name, bool signedList) {
  String path;
  File file;
  DataPath::find(name, path);
  if (!file.openData(path.get())) {
    // Of three layers only the one that draws entries without sign tells it.
    if (def != 0 || signedList) Kyv::report(Kyv::MISC, "MapPlot_draw: Unable to open map list file: %s\n", name);
    return;
  }
  Kyv::outDebug("MapPlot_draw: list file: %s\n", path.get());
  char word[MAX_WORD + 1];
  String text;
  for (int n = 0; file.getLine(text) > 0;) {
    const char* rest = text.get();
    int used = 0;
    while (n < MAX_ENTRIES && std::sscanf(rest, "%79s%n", word, &used) == 1) {
      if (*word == '#') break;  // a comment
      process(plot, word, type);
      rest += used;
      ++n;
    }
  }
}

// The kinds of entries that a prefix tells; names of pictures and the like tell the rest.
struct MapPlot::Keyword {
  const char* prefix;  // taken off the entry
  const char* within;  // or a part of its name, which stays
  int (MapPlot::*draw)(Plot&, const char*);

  bool fits(const char* entry) const {
    return prefix ? StrLib::equal(entry, prefix, StrLib::length(prefix)) : StrLib::contains(entry, within) != 0;
  }
};

std::span<const MapPlot::Keyword> MapPlot::getKinds() {
  static constexpr Keyword KINDS[] = {
      {"im:", nullptr, &MapPlot::drawMapImage},      {"if:", nullptr, &MapPlot::drawPageImage},
      {"mf:", nullptr, &MapPlot::drawMetafile},      {"rf:", nullptr, &MapPlot::drawRawFile},
      {"mk:", nullptr, &MapPlot::drawMarker},        {"grid", nullptr, &MapPlot::drawGrid},
      {"lalo:", nullptr, &MapPlot::drawLatLonEntry}, {"bg:", nullptr, &MapPlot::drawBackground},
      {"bg[", nullptr, &MapPlot::drawBackground},    {nullptr, ".gif", &MapPlot::drawMapImage},
      {nullptr, ".png", &MapPlot::drawMapImage},     {nullptr, ".meta", &MapPlot::drawMetafile},
      {nullptr, ".raw", &MapPlot::drawRawFile},
  };
  return KINDS;
}

bool MapPlot::isFileEntry(const char* entry) {
  return std::none_of(getKinds().begin(), getKinds().end(), [entry](const Keyword& kind) { return kind.fits(entry); });
}

int MapPlot::process(Plot& plot, const char* entry, int layerType) {
  if (!StrLib::valid(entry)) return 0;
  Kyv::outDebug(4, "MapPlot_process: %s %d %d\n", entry, layerType, def);
  const char sign = *entry == '+' || *entry == '-' ? *entry : '\0';
  if (!admits(sign, layerType)) return 0;
  bool holds = false;
  const char* rest = passConditions(sign ? entry + 1 : entry, plot.getDomain(), holds);
  if (!holds || !*rest) return 0;
  for (const Keyword& kind : getKinds()) {
    if (kind.fits(rest)) return (this->*kind.draw)(plot, rest + StrLib::length(kind.prefix));
  }
  return drawMapFile(plot, rest);
}

int MapPlot::print() {
  std::printf("MapPlot\n");
  std::printf("Def: %d\n", def);
  std::printf("Type: %d\n", type);
  std::printf("Fill cont: %d\n", fill_cont);
  std::printf("Fill: %d\n", fill);
  std::printf("Index: %d\n", index);
  std::printf("LaLo: %.0f, %.0f\n", static_cast<double>(lat_step), static_cast<double>(lon_step));
  return 1;
}

}  // namespace KYV
