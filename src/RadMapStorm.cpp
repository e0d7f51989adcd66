// Storm cells: their values and symbols, their tracks, and the symbols that a product's packets hold.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "DataPlane.h"
#include "KYV/Datum.h"
#include "KYV/DatumPlot.h"
#include "KYV/Kyv.h"
#include "KYV/NidsShape.h"
#include "KYV/Plot.h"
#include "KYV/RadMap.h"
#include "KYV/StormAttr.h"
#include "KYV/Unit.h"
#include "KYV/WindPlot.h"

namespace KYV {

namespace {

constexpr float NAUTICAL_MILE = 1.852f;  // km
constexpr float TRACK_SIZE = 0.1f;       // of the plot's height
constexpr int TRACK_QUARTERS = 4;        // an hour
constexpr int LIKELY = 50;               // percent from which on hail has its symbol
constexpr int STRONG_MESO = 5;
constexpr int CONTOUR_PACKETS = 0x0802;  // from here on lines are contours

// Units of the attributes in the tables of the products.
constexpr struct {
  const char* attr;
  const char* units;
} UNITS[] = {{"poh", "%"},       {"posh", "%"},     {"hsize", "in"}, {"vil", "kg/m^2"}, {"dbzm", "dBZ"},
             {"dbzht", "100ft"}, {"ctop", "100ft"}, {"cdir", "deg"}, {"cspd", "knt"},   {"cmvmt", "knt"}};

// Status symbols of a cell and of the packets of storm products.
constexpr const char* SEVERE_HAIL = "co=lgreen,wi=2";
constexpr const char* HAIL = "co=green,wi=2";
constexpr const char* MESO = "co=yellow,wi=2";
constexpr const char* TVS = "co=red,wi=2";
constexpr const char* ETVS = "co=lred,wi=2";
constexpr const char* NOTHING = "co=white,wi=2";

// Positions of a track, by NidsShape::Time.
constexpr const char* MARKS[] = {"circle", "x", "plus"};

}  // namespace

const char* RadMap::getUnits(const char* attr) {
  const auto* row =
      std::find_if(std::begin(UNITS), std::end(UNITS), [attr](const auto& r) { return StrLib::iequal(attr, r.attr); });
  return row != std::end(UNITS) ? row->units : "";
}

// One storm in hand: what each name of a variable draws of it.
struct RadMap::Cell {
  Plot& plot;
  const StormAttr& storm;
  DatumPlot data;
  EarthPoint place;
  Point point;
  const char* name = "";
  const char* units = "";  // asked for
  const char* format = "";

  struct Name {
    const char* name;
    bool exact;  // letter case counts
    void (*draw)(Cell& c);
  };
  static const Name NAMES[];

  // A value in the units asked for.
  float convert(float value, const char* from) const {
    static const Unit unit;
    float result = value;
    if (StrLib::valid(units)) unit.convert(from, units, value, result);
    return result;
  }
  float convert(float value) const { return convert(value, getUnits(name)); }

  void draw(int type, const char* how, float value, float second, const char* text) {
    Datum d;
    d.point = point;
    d.place = place;
    d.type = type;
    d.val[0] = value;
    d.val[1] = second;
    StrLib::copy(d.text, text);
    StrLib::copy(d.format, how);
    data.draw(d);
  }
  void number(float value, const char* text = "") { draw(Datum::NUMBER, format, value, Const::MISS, text); }
  void text(const char* what) { draw(Datum::TEXT, format, Const::MISS, Const::MISS, what); }
  void symbol(const char* what, const char* how) { draw(Datum::SYMBOL, how, Const::MISS, Const::MISS, what); }
  void probability(int percent) {
    constexpr int HIGH = 74, MIDDLE = 49;
    if (percent > 0) number(static_cast<float>(percent), percent > HIGH ? "*" : percent > MIDDLE ? "X" : "");
  }
  void status() {
    bool hail = true;
    if (storm.shail >= LIKELY) {
      symbol("tri", SEVERE_HAIL);
    } else if (storm.hail >= LIKELY) {
      symbol("tri", HAIL);
    } else {
      hail = false;
    }
    if (storm.meso != 0) symbol("circle", MESO);
    if (storm.tvs != 0) {
      symbol("itri", TVS);
    } else if (!hail && storm.meso == 0) {
      symbol("plus", NOTHING);
    }
  }
  void summary() {
    draw(Datum::MOVEMENT, "", storm.dir, storm.spd, "");
    draw(Datum::TEXT, "ul", Const::MISS, Const::MISS, storm.id);
    draw(Datum::NUMBER, "ur,fm=%.0f", storm.tops, Const::MISS, "");
    status();
  }
  void track() {
    if (Const::isMissing(storm.spd)) return;
    const Domain& domain = plot.getDomain();
    WindPlot wind(plot);
    wind.setWind(domain.adjustDir(storm.dir, place), storm.spd * NAUTICAL_MILE, domain.getMapFactor(place));
    wind.drawTrack(point, TRACK_SIZE * plot.getVert(), TRACK_QUARTERS, 0);
  }
};

const RadMap::Cell::Name RadMap::Cell::NAMES[] = {
    {"cid", false, [](Cell& c) { c.text(c.storm.id); }},
    {"tvs", false,
     [](Cell& c) {
       if (c.storm.tvs != 0) c.number(1.0f, "TVS");
     }},
    {"meso", false,
     [](Cell& c) {
       if (c.storm.meso != 0) c.number(static_cast<float>(c.storm.meso), "MESO");
     }},
    {"meso5", false,
     [](Cell& c) {
       if (c.storm.meso >= STRONG_MESO) c.number(static_cast<float>(c.storm.meso), "MESO");
     }},
    {"poh", false, [](Cell& c) { c.probability(c.storm.hail); }},
    {"poh5", false,
     [](Cell& c) {
       if (c.storm.hail > LIKELY) c.text("X");
     }},
    {"posh", false, [](Cell& c) { c.probability(c.storm.shail); }},
    {"hsize", false, [](Cell& c) { c.number(c.convert(c.storm.hsize)); }},
    {"vil", false, [](Cell& c) { c.number(c.convert(c.storm.vil)); }},
    {"dbzm", false, [](Cell& c) { c.number(c.storm.dbzm); }},
    {"dbzht", false, [](Cell& c) { c.number(c.convert(c.storm.dbzht, c.storm.getHeightUnits())); }},
    {"ctop", false, [](Cell& c) { c.number(c.convert(c.storm.tops, c.storm.getHeightUnits())); }},
    {"cdir", false, [](Cell& c) { c.number(c.storm.dir); }},
    {"cspd", false, [](Cell& c) { c.number(c.convert(c.storm.spd)); }},
    {"cmvmt", false, [](Cell& c) { c.draw(Datum::MOVEMENT, c.format, c.storm.dir, c.convert(c.storm.spd), ""); }},
    {"cstat", false, [](Cell& c) { c.status(); }},
    {"comp", true, [](Cell& c) { c.summary(); }},
    {"track", true, [](Cell& c) { c.track(); }},
};

// Whether an item of a parameter string is the name of a storm attribute.
bool RadMap::isVariable(const char* item) {
  return std::any_of(std::begin(Cell::NAMES), std::end(Cell::NAMES),
                     [item](const Cell::Name& row) { return StrLib::iequal(item, row.name); });
}

int RadMap::drawStorm(Plot& surface, const StormAttr& storm) {
  // draw() has read them for the frame.
  if (vars.getNum() == 0 && variable.valid()) readVariables();
  if (Const::isMissing(storm.ang) || vars.getNum() == 0) return 1;
  const PlotAttr attr = getDataAttr(surface);
  Cell cell{surface, storm, DatumPlot(surface), EarthPoint(), Point()};
  cell.data.setAttr(attr);
  const DataPlane plane(nids->getDomainVal(), EarthPoint(info.lat, info.lon), surface, measured);
  const float range = Const::isMissing(storm.rad) ? storm.rad : storm.rad * NAUTICAL_MILE;
  if (!plane.fromPolar(storm.ang, range, cell.place)) return 1;
  cell.point = plane.seen(cell.place);
  if (cell.point.isMissing()) return 1;

  for (int k = 0; k < vars.getNum(); ++k) {
    cell.name = vars.getName(k);
    cell.units = vars.getUnits(k);
    cell.format = vars.getFormat(k);
    surface.setLine();
    surface.setLine(attr);
    if (shadow != 0) surface.setDropShadow(shadow);
    for (const Cell::Name& row : Cell::NAMES) {
      if (row.exact ? StrLib::equal(cell.name, row.name) : StrLib::iequal(cell.name, row.name)) row.draw(cell);
    }
  }
  surface.setDropShadow(0);
  return 1;
}

// The symbols, tracks and contours of the symbology block, which the packet loop has passed over. Where variables are
// asked for, those tell what is written at the cells.
void RadMap::drawShapes(Plot& surface) {
  if (!passed_over) return;
  NidsFile again;
  std::vector<NidsShape> shapes;
  again.setQuiet(true);
  if (!again.open(file.getName()) || again.readShapes(shapes) <= 0) return;

  has_shapes = true;
  NidsDamage damage;
  if (again.getDamage(damage) && damage.kind == NidsDamage::EXCESS) excess = damage;
  const DataPlane plane(nids->getDomainVal(), EarthPoint(info.lat, info.lon), surface, measured);
  const PlotAttr attr = getDataAttr(surface);
  DatumPlot datums(surface);
  datums.setAttr(attr);
  const bool bare = vars.getNum() == 0;
  PlotAttr dashed = attr;
  dashed.parse("st=dsh");
  PlotAttr error("co=white,st=dsh");
  if (surface.getInverse()) error.turnGreys();
  // A colour for each level of contours, in their order; the first stands out on the paper that there is.
  const char* const contours[] = {
      surface.getInverse() ? "black" : "white", "lcyan", "yellow", "lred", "lgreen", "lmagenta"};
  std::vector<int> levels;

  const auto datum = [&](const Point& p, int kind, const char* text, const char* format) {
    Datum d;
    d.point = p;
    d.type = kind;
    StrLib::copy(d.text, text);
    StrLib::copy(d.format, format);
    datums.draw(d);
  };
  const auto circle = [&](const NidsShape& s, const Point& p, const PlotAttr& how) {
    surface.setLine();
    surface.setLine(how);
    EarthPoint e;
    if (s.radius > 0.0f && surface.getDomain().tran(p, e)) surface.drawCircle(e, s.radius);
  };
  for (const NidsShape& s : shapes) {
    if (s.points.getNum() == 0) continue;
    const Point p = plane.symbolAt(s.points[0].x, s.points[0].y);
    switch (s.kind) {
      case NidsShape::LINE: {
        surface.setLine();
        surface.setLine(s.time == NidsShape::FORECAST ? dashed : attr);
        if (s.packet >= CONTOUR_PACKETS) {
          auto known = std::find(levels.begin(), levels.end(), s.level);
          if (known == levels.end()) known = levels.insert(known, s.level);
          surface.setLineColor(contours[static_cast<std::size_t>(known - levels.begin()) % std::size(contours)]);
        }
        Points line;
        for (const Point& q : s.points) line.add(plane.fromIJ(q.x, q.y));
        surface.drawLine(line);
        break;
      }
      case NidsShape::TEXT:
        if (bare) datum(p, Datum::TEXT, s.text, "cc");
        break;
      case NidsShape::CELL:
        if (bare) datum(p, Datum::TEXT, s.text, "ul");
        break;
      case NidsShape::MARK:
        datum(p, Datum::SYMBOL, MARKS[s.time], "hi=0.5");
        break;
      case NidsShape::MESO:
        circle(s, p, PlotAttr(MESO));
        if (!(s.radius > 0.0f)) datum(p, Datum::SYMBOL, "circle", MESO);
        break;
      case NidsShape::TVS:
        datum(p, Datum::SYMBOL, "itri", TVS);
        break;
      case NidsShape::ETVS:
        datum(p, Datum::SYMBOL, "itri", ETVS);
        break;
      case NidsShape::HAIL: {
        const bool severe = s.posh >= LIKELY;
        if (severe || s.poh >= LIKELY) datum(p, Datum::SYMBOL, "tri", severe ? SEVERE_HAIL : HAIL);
        break;
      }
      case NidsShape::CIRCLE:
        circle(s, p, error);
        break;
    }
  }
}

}  // namespace KYV
