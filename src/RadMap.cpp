#include "KYV/RadMap.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "ExactImage.h"
#include "KYV/CityData.h"
#include "KYV/CityTool.h"
#include "KYV/DateTool.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/MapPlot.h"
#include "KYV/OwnResrc.h"
#include "KYV/ParamTable.h"
#include "KYV/Plot.h"
#include "KYV/ProductInfo.h"
#include "KYV/TimeSpec.h"

namespace KYV {

namespace {

constexpr float NAUTICAL_MILE = 1.852f;    // km
constexpr float DEFAULT_RING = 100.0f;     // km
constexpr float DEFAULT_RING_NM = 185.2f;  // km: 100 nautical miles
constexpr int DEFAULT_CLUTTER = 25;        // km
constexpr int DEFAULT_RAMP_RANGE = 200;    // bins or km

// Keys of the name convention.
constexpr char STATION_KEY = 'i';
constexpr char TYPE_KEY = 't';

// The domain around a station when there is no product: 90 by 60 points of some 12 km.
constexpr int STATION_NX = 90;
constexpr int STATION_NY = 60;
constexpr float SYMBOLS_EXTENT = 460.0f;  // of a map of tracks, symbols or contours, km
constexpr float STATION_DX = 0.11899f;

bool isOnEarth(const NidsInfo& info) { return std::abs(info.lat) <= 90.0f && std::abs(info.lon) <= 360.0f; }

}  // namespace

int RadMap::init() {
  id[0] = type[0] = '\0';
  site = table = map = clutter = shadow = sync = 0;
  std::fill(std::begin(dist), std::end(dist), 0.0f);
  ramp[0] = Const::MISS;
  plot = data = true;
  setNameConv("nids");
  setFile();

  if (const char* v = Kyv::resrc.get("color_fill")) color_fill.copy(v);
  if (const char* v = Kyv::resrc.get("color_data")) color_data.copy(v);
  if (const char* v = Kyv::resrc.get("identifier")) setId(v);
  if (const char* v = Kyv::resrc.get("type")) setType(v);
  if (const char* v = Kyv::resrc.get("variable")) setVariable(v);
  if (const char* v = Kyv::resrc.get("timezone")) tz.set(v);
  return setParam(Kyv::resrc.get("parameter"));
}

int RadMap::setFile() {
  if (const char* v = Kyv::resrc.get("input")) setInput(v);
  if (const char* v = Kyv::resrc.get("in_file")) setNameConv(v);
  if (const char* v = Kyv::resrc.get("hour")) setHour(v);
  if (const char* v = Kyv::resrc.get("num_hour")) file.setNumFiles(v);
  return 1;
}

int RadMap::setNameConv(const char* conv) {
  file.setNameConv(conv);
  // A convention starts without keys.
  if (*id) file.setKey(STATION_KEY, id);
  if (*type) file.setKey(TYPE_KEY, type);
  if (const char* v = Kyv::resrc.get("num_hour")) file.setNumFiles(v);
  return 1;
}

int RadMap::setId(const char* text) {
  StrLib::copy(id, text);
  return file.setKey(STATION_KEY, id);
}

int RadMap::setType(const char* text) {
  StrLib::copy(type, text);
  return file.setKey(TYPE_KEY, type);
}

int RadMap::setFilename() {
  const int there = settle(file.setFile());
  file.getDate(newest);
  return there;
}

int RadMap::setFilename(const char* name) { return settle(file.setFile(name) && file.exist()); }

// Where the very minute that was asked for has no file, the one that is valid then serves; where there is none, says
// where the search has looked. The figure asks more than once, the answer is given once.
int RadMap::settle(int there) {
  String search;
  if (there || !file.getSearch(search)) return there;
  Date date;
  file.getDate(date);
  if (date.isSet() && !file.isLatest() && file.setFile(date)) return 1;
  if (search.equal(reported.get())) return 0;
  reported.copy(search);
  Kyv::report(Kyv::NOFILE, "RadMap: No file found\n%s", search.get());
  Kyv::outWarning(
      "  Choose with -id STATION -ty PRODUCT -cu DATE, say where with -dp DIRECTORY, which names with -if, "
      "or name a file\n");
  return 0;
}

// A frame without its file is passed over by the figure; of a file that the user has named it should be said.
int RadMap::setFilename(Date& date, const char* name) {
  const int there = file.setFile(date, name);
  if (!there && file.isFixed() && file.getNumFiles() > 1) {
    Kyv::report(Kyv::NOFILE, "RadMap: Unable to open file: %s\n", file.getName());
  }
  return there;
}

int RadMap::getInitDate(Date& date) {
  if (!file.isSet()) setFilename("la");
  return file.getDate(date);
}

bool RadMap::getDataTime(Date& date) {
  if (!file.isFixed() || !lookAhead() || !ahead_info.date.isSet()) return false;
  date = ahead_info.date;
  return true;
}

// The parameter string with the names that follow "va=" made one item of, "va=cid,comp,site" to "va=cid/comp","site":
// some of them begin as keys do. Every item is quoted, as those that hold commas were.
String RadMap::joinVariables(const char* params) {
  const Strings items(params, ',');
  String joined;
  bool open = false;
  for (int i = 0; i < items.getNum(); ++i) {
    const char* item = items.getString(i);
    if (!StrLib::valid(item)) continue;
    const bool begins = StrLib::equal(item, "va", 2);
    const bool goesOn = open && !begins && isVariable(item);
    if (joined.valid()) joined.append(goesOn ? "/" : "\",");
    if (!goesOn) joined.append('"');
    joined.append(item);
    open = begins || goesOn;
  }
  if (joined.valid()) joined.append('"');
  return joined;
}

std::span<const ParamKey<RadMap>> RadMap::getKeys() {
  using enum ParamMatch;
  using Key = ParamKey<RadMap>;
  // The first key that fits acts, so "distm" stands before "dist".
  static constexpr Key KEYS[] = {
      {"ct", Begins, [](RadMap& m, const ParamItem& i) { m.setColorTable(i.after()); }},
      {"co", Begins, [](RadMap& m, const ParamItem& i) { m.setColorFill(i.after()); }, ParamForm::Fill},
      {"va", Begins, [](RadMap& m, const ParamItem& i) { m.setVariable(i.after()); }},
      {"if", Begins, [](RadMap& m, const ParamItem& i) { m.setNameConv(i.after()); }, ParamForm::Convention},
      {"nc", Begins, [](RadMap& m, const ParamItem& i) { m.setNameConv(i.after()); }, ParamForm::Convention},
      {"ho", Begins, [](RadMap& m, const ParamItem& i) { m.setHour(i.after()); }, ParamForm::Hour},
      {"tz", Begins, [](RadMap& m, const ParamItem& i) { m.tz.set(i.from(3)); }, ParamForm::Zone},
      {"pa", Begins, [](RadMap& m, const ParamItem& i) { m.setPath(i.after()); }},
      {"id", Begins, [](RadMap& m, const ParamItem& i) { m.setId(i.from(3)); }},
      {"ty", Begins, [](RadMap& m, const ParamItem& i) { m.setType(i.from(3)); }},
      {"plot", Is, [](RadMap& m, const ParamItem&) { m.plot = true, m.data = false; }},
      {"data", Is, [](RadMap& m, const ParamItem&) { m.plot = false, m.data = true; }},
      {"site", Is, [](RadMap& m, const ParamItem&) { m.site = 1; }},
      {"distm", IBegins, [](RadMap& m, const ParamItem& i) { m.setRings(i, 5, DEFAULT_RING_NM, NAUTICAL_MILE); },
       ParamForm::Numbers},
      {"dist", IBegins, [](RadMap& m, const ParamItem& i) { m.setRings(i, 4, DEFAULT_RING, 1.0f); },
       ParamForm::Numbers},
      {"map", Is, [](RadMap& m, const ParamItem&) { m.map = 1; }},
      {"nodist", Is, [](RadMap& m, const ParamItem&) { m.dist[0] = 0.0f; }},
      {"notable", Is, [](RadMap& m, const ParamItem&) { m.table = 0; }},
      {"table", Is, [](RadMap& m, const ParamItem&) { m.table = 1; }},
      {"clutter", IBegins,
       [](RadMap& m, const ParamItem& i) {
         if (i.length <= 7) m.clutter = DEFAULT_CLUTTER;
         std::sscanf(i.from(8), "%9d", &m.clutter);
       },
       ParamForm::Numbers},
      {"noclutter", Is, [](RadMap& m, const ParamItem&) { m.clutter = 0; }},
      {"shadow", Begins, [](RadMap& m, const ParamItem& i) { std::sscanf(i.from(7), "%9d", &m.shadow); },
       ParamForm::Number},
      {"ramp", IBegins,
       [](RadMap& m, const ParamItem& i) {
         std::sscanf(i.from(5), "%9d:%9d", &m.ramp[0], &m.ramp[1]);
         if (m.ramp[1] < 1) m.ramp[1] = DEFAULT_RAMP_RANGE;
       },
       ParamForm::Numbers},
  };
  return KEYS;
}

int RadMap::setParam(const char* params) { return setParams(getKeys(), joinVariables(params).get(), *this); }

void RadMap::explain(ParamAnswer& answer) { answer.ask(getKeys()); }

// Range rings "dist" or "dist=50:100", the key having n characters, in units of `unit` km.
void RadMap::setRings(const ParamItem& item, int n, float standard, float unit) {
  if (item.length <= n) {
    dist[0] = standard;
    return;
  }
  std::sscanf(item.from(n + 1), "%f:%f:%f:%f", &dist[0], &dist[1], &dist[2], &dist[3]);
  for (float& d : dist) {
    if (!Const::isMissing(d)) d *= unit;
  }
}

// Reads the header of the present file, for those who ask before it is drawn; drawing goes on from there.
bool RadMap::lookAhead() {
  if (!file.isSet()) return false;
  if (ahead && ahead_name.equal(file.getName())) return true;
  auto product = std::make_unique<NidsFile>();
  product->setQuiet(true);  // what is wrong with the file is said when it is drawn
  ahead.reset();
  if (!product->open(file.getName()) || !product->readHeader(ahead_info)) return false;
  ahead = std::move(product);
  ahead_name.copy(file.getName());
  return true;
}

int RadMap::getDomain(Domain& domain) {
  ahead.reset();  // the file may be another one by now
  if (lookAhead()) {
    DomainVal val = ahead->getDomainVal();
    if (!ahead_info.isMultiRadar() && !ahead->isVAD() && !ahead->isDPA()) val.nx = val.ny * 3 / 2 + 1;
    // Of tracks and contours the bins' size tells nothing: their products show the whole range. So do the radials of
    // a generic packet, whose last bins end where the map does: its points span one cell less than there are.
    const bool image = ahead->isPacketRadial() || ahead->isPacketRastor() || ahead->isPacketDpa();
    const int cells = ahead->isPacketGeneric() ? val.ny - 1 : val.ny;
    const float extent = static_cast<float>(cells) * ahead_info.res;
    if (!image && !ahead_info.isMultiRadar() && !ahead->isVAD() && extent > 0.0f && extent < SYMBOLS_EXTENT) {
      val.dx *= SYMBOLS_EXTENT / extent;
      val.dy *= SYMBOLS_EXTENT / extent;
    }
    ExactImage::fit(ahead_info, image, val);
    domain.set(val);
    if (Kyv::checkMessage(8)) {
      Kyv::outMessage(8, "NIDS Domain: ");
      domain.print();
    }
    return 1;
  }
  if (!*id) return 0;
  DomainVal val;
  val.proj = DomainVal::PSTEREO;
  val.nx = STATION_NX, val.ny = STATION_NY;
  val.dx = val.dy = STATION_DX;
  CityData station;
  if (CityTool::search("rad.cty", id, station)) {
    val.plat = val.clat = station.lat;
    val.plon = val.clon = station.lon;
  }
  domain.set(val);
  return 1;
}

// One of the map layers; the latitude-longitude lines, which their parameter text gives to all three, belong to the one
// after the image.
void RadMap::drawMap(Plot& surface, const char* layer) {
  MapPlot background(layer);
  background.draw(surface);
}

void RadMap::readVariables() {
  if (vars.setFile("radmap.var")) vars.process(variable.get());
}

int RadMap::draw(Plot& surface) {
  surface.addCallback("AnyEvent", this, nullptr);
  if (!file.isSet()) setFilename("la");
  // What was looked for in vain has been told of; its name is made up.
  if (reported.valid() && !file.isFixed() && !file.exist()) return 0;
  // A reader that has something to say reads again now that it may.
  const bool begun = ahead && ahead_name.equal(file.getName()) && !ahead->hasKeptQuiet();
  if (begun) {
    nids = std::move(ahead);
    nids->setQuiet(false);
    info = ahead_info;
  } else if (!nids->open(file.getName())) {
    Kyv::report(Kyv::NOFILE, "RadMap: Unable to open file: %s\n", file.getName());
    if (FileTool::isFifo(file.getName())) {
      Kyv::outWarning("  It is a pipe and no file; - reads standard input, <(COMMAND) what a command writes\n");
    }
    return 0;
  }
  ahead.reset();
  Kyv::outMessage(8, "RadMap: reading file: %s\n", file.getName());
  if (!begun && !nids->readHeader(info)) return Kyv::note(Kyv::NODATA), 0;
  readVariables();
  measured = ExactImage::isMeant(info);
  const ProductInfo* product = measured ? ProductInfo::find(info.code) : nullptr;
  if (product && !product->isDrawn()) {
    Kyv::report(Kyv::NODATA, "%s is product %d, %s: its %s is not drawn\n", file.getName(), product->code,
                product->name, product->drawn + std::string_view("nothing: ").size());
    return 0;
  }
  if (measured && !product) {
    Kyv::report(Kyv::MISC, "%s is product %d, which the format does not have; it is drawn by its packets alone\n",
                file.getName(), info.code);
  }
  excess.reset();
  has_shapes = false;
  // A user's list of maps takes the place of the layer's own.
  const bool maps = map && !vars.isMap();
  if (maps) drawMap(surface, "under,nolalo");
  const bool placed = isOnEarth(info);
  if (placed) drawImage(surface);
  if (maps) drawMap(surface, "default");
  if (placed) drawData(surface);
  if (maps) drawMap(surface, "over,nolalo");
  tellDamage(surface);
  tellSite(surface);
  tellAge(surface);
  return 1;
}

// Whether the latest data are asked for, neither those of a date nor those of a while ago.
bool RadMap::asksForNow() {
  if (StrLib::valid(Kyv::resrc.get("hour"))) return false;
  const TimeSpec time(Kyv::resrc.get("current", "la"));
  return !time.isDated() && !time.named && time.offset == 0 && time.shift == 0;
}

// What the picture lacks is said, and shown on it.
void RadMap::tellDamage(Plot& surface) {
  if (!isOnEarth(info)) {
    Kyv::report(Kyv::NODATA, "%s has its radar at %.3f, %.3f, which is not on the earth; nothing of it is drawn\n",
                file.getName(), static_cast<double>(info.lat), static_cast<double>(info.lon));
    surface.addNotice("NO DATA: radar not on the earth");
    return;
  }
  if (nids->isEncrypted()) {
    Kyv::note(Kyv::NODATA);
    surface.addNotice("NO DATA: encrypted");
    return;
  }
  NidsDamage damage;
  if (!nids->getDamage(damage)) {
    if (!excess) return;
    damage = *excess;
  }
  if (has_shapes) damage.empty = false;
  Kyv::report(damage.empty ? Kyv::NODATA : Kyv::NOINPUT, "%s %s; what was read is drawn\n", file.getName(),
              damage.toText().get());
  surface.addNotice(damage.toLabel().get());
}

// A product that lies under the name of another radar is drawn where it belongs, and marked.
void RadMap::tellSite(Plot& surface) {
  constexpr float NEAR = 0.5f;  // degrees within which positions of one radar differ
  if (!*id || info.isMultiRadar() || !isOnEarth(info)) return;
  char key[20];
  StrLib::printf(key, "%05d", info.src);
  CityData source, asked;
  const bool known = CityTool::search("rad.cty", key, source) != 0;
  // KTLX is TLX as well.
  if (known && (StrLib::iequal(source.id, id) || StrLib::iequal(source.id + 1, id))) return;
  const bool placed = CityTool::search("rad.cty", id, asked) != 0;
  const bool here = placed && std::abs(asked.lat - info.lat) < NEAR && std::abs(asked.lon - info.lon) < NEAR;
  if (here || (!known && !placed)) return;
  char name[60];
  if (known) {
    StrLib::copy(name, source.id);
  } else {
    StrLib::printf(name, "%d AT %.2f, %.2f", info.src, static_cast<double>(info.lat), static_cast<double>(info.lon));
  }
  Kyv::report(Kyv::NODATA, "%s is a product of radar %s, not of %s\n", file.getName(), name, id);
  char label[100];
  StrLib::printf(label, "RADAR %s, NOT %s", name, id);
  surface.addNotice(label);
}

// Data older than the user takes for present are marked with their age.
void RadMap::tellAge(Plot& surface) {
  constexpr long MINUTE = 60, HOUR = 60 * MINUTE, DAY = 24 * HOUR;
  constexpr struct {
    long seconds;
    const char* name;
  } UNITS[] = {{DAY, "DAYS"}, {HOUR, "H"}, {MINUTE, "MIN"}};
  const char* limit = Kyv::resrc.get("max_age");
  const int minutes = limit ? OwnResrc::getMinutes(limit) : Const::MISS;
  const bool limited = !Const::isMissing(minutes);
  // Who asks for the present picture takes what is found for it.
  Date found;
  file.getDate(found);
  const bool present = !file.isFixed() && !told_age && found.secs == newest.secs && asksForNow();
  Date now;
  if ((!limited && !present) || !info.date.isSet() || !DateTool::getNow(now)) return;
  const long age = now.secs - info.date.secs;
  if (age <= (limited ? MINUTE * minutes : HOUR)) return;
  // Two of a unit at least, so that no more than a third of the age is rounded off.
  const auto* unit = UNITS;
  while (unit != std::end(UNITS) - 1 && age < 2 * unit->seconds) ++unit;
  char text[60];
  StrLib::printf(text, "DATA %ld %s OLD", age / unit->seconds, unit->name);
  if (!limited) {
    Kyv::outWarning("%s: %s; -mx AGE marks the picture of such data\n", file.getName(), text);
    told_age = true;
    return;
  }
  Kyv::report(Kyv::MISC, "%s: %s, more than max_age %s\n", file.getName(), text, limit);
  surface.addNotice(text);
}

void RadMap::callback(const char* name, const char* value, const void*) {
  if (!StrLib::equal(name, "QueryLoc") || !value) return;
  EarthPoint e;
  if (std::sscanf(value, "%f,%f", &e.lat, &e.lon) != 2) return;
  if (exact) {
    std::printf("RadMap value [%.3f,%.3f]: %s\n", static_cast<double>(e.lat), static_cast<double>(e.lon),
                exact->describe(e).c_str());
    return;
  }
  Point p;
  ndata.domain.tran(e, p);
  const float factor = ndata.domain.getMapFactor(e);
  const float range = Const::isMissing(factor) || factor == 0.0f ? p.y : 100.0f * p.y / factor;
  std::printf("RadMap value [%.2f,%.2f]: %f\n", static_cast<double>(p.x), static_cast<double>(range),
              static_cast<double>(ndata.getValue(e)));
}

int RadMap::print() {
  std::printf("RadMap\n");
  std::printf("  Filename: %s\n", file.getName());
  std::printf("  Color table: %s\n", color_table.get());
  std::printf("  Color fill: %s\n", color_fill.get());
  std::printf("  Color data: %s\n", color_data.get());
  std::printf("  Variable: %s\n", variable.get());
  std::printf("  Draw plot: %d\n", plot);
  std::printf("  Draw data: %d\n", data);
  std::printf("  Plot site: %d\n", site);
  std::printf("  Plot table: %d\n", table);
  std::printf("  Clutter radius: %d\n", clutter);
  return 1;
}

}  // namespace KYV
