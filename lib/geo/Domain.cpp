#include "KYV/Domain.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "KYV/EarthPoints.h"
#include "KYV/Number.h"
#include "KYV/Points.h"
#include "KYV/String.h"
#include "KYV/Strings.h"
#include "Projection.h"

namespace KYV {

namespace {

constexpr int TEXT_PARAMS = 3;                   // parameters that a direct domain text carries
constexpr int TEXT_FIELDS = 7;                   // projection part, clat, clon, nx, ny, dx, dy
constexpr int TEXT_ITEMS = 2 + 2 + TEXT_PARAMS;  // of the projection part: name, "e", plat, plon, parameters

// "name:plat:plon:p0:p1:p2" or "name:e:plat:...", where empty items are missing.
bool readProjection(DomainVal& val, const char* text) {
  const Strings items(text, ':');
  if (items.getNum() > TEXT_ITEMS) return false;
  val.proj = DomainVal::getProj(items.getString(0));
  val.ellipse = items.iequal(1, "e");
  int at = val.ellipse ? 2 : 1;
  const auto next = [&](float& value) {
    return !items.valid(at) ? (++at, true) : readNumber(items.getString(at++), value);
  };
  return val.proj != -1 && next(val.plat) && next(val.plon) && next(val.param[0]) && next(val.param[1]) &&
         next(val.param[2]) && at >= items.getNum();
}

bool isFinite(const DomainVal& val) {
  const auto finite = [](float value) { return std::isfinite(value); };
  return std::ranges::all_of(val.param, finite) && finite(val.plat) && finite(val.plon) && finite(val.clat) &&
         finite(val.clon) && finite(val.dx) && finite(val.dy);
}

// From the first to the last of n points, 0 when number or spacing is missing.
double span(int n, float step) { return n < 1 || Const::isMissing(step) ? 0.0 : (n - 1.0) * static_cast<double>(step); }

// Width of a cell; 0 when it is missing.
double cell(float step) { return Const::isMissing(step) ? 0.0 : std::abs(static_cast<double>(step)); }

}  // namespace

int Domain::set(const char* text) {
  const Strings fields(text, ',');
  DomainVal val;
  if ((fields.getNum() != 1 && fields.getNum() != TEXT_FIELDS) || !readProjection(val, fields.getString(0))) return 0;
  if (fields.getNum() == TEXT_FIELDS &&
      !(readNumber(fields.getString(1), val.clat) && readNumber(fields.getString(2), val.clon) &&
        readNumber(fields.getString(3), val.nx) && readNumber(fields.getString(4), val.ny) &&
        readNumber(fields.getString(5), val.dx) && readNumber(fields.getString(6), val.dy))) {
    return 0;
  }
  return set(val);
}

int Domain::set(const DomainVal& val) {
  Domain next;
  static_cast<DomainVal&>(next) = val;
  if (!next.setParam()) return 0;
  *this = next;
  return 1;
}

int Domain::set(int columns, int rows) {
  if (columns < 1 || rows < 1) return 0;
  DomainVal val;
  val.proj = XY;
  val.clat = val.clon = 0.0f;
  val.dx = val.dy = 1.0f;
  val.nx = columns;
  val.ny = rows;
  return set(val);
}

int Domain::set(const EarthPoint& corner1, const EarthPoint& corner2, int columns, int rows) {
  if (columns < 1 || rows < 1 || corner1.isMissing() || corner2.isMissing()) return 0;
  Domain next = *this;
  next.clat = (corner1.lat + corner2.lat) / 2.0f;
  next.clon = (corner1.lon + corner2.lon) / 2.0f;
  if (!next.isSet()) {
    next.proj = LATLON;
    next.plat = next.plon = Const::MISS;
  }
  Point p1, p2;
  EarthPoint centre;
  if (!next.setParam() || !next.tran(corner1, p1) || !next.tran(corner2, p2) ||
      !next.tran(Point((p1.x + p2.x) / 2.0f, (p1.y + p2.y) / 2.0f), centre)) {
    return 0;
  }
  next.clat = centre.lat;
  next.clon = centre.lon;
  next.nx = columns;
  next.ny = rows;
  next.dx = std::abs(p2.x - p1.x) / static_cast<float>(std::max(columns - 1, 1));
  next.dy = std::abs(p2.y - p1.y) / static_cast<float>(std::max(rows - 1, 1));
  if (!next.setParam()) return 0;
  *this = next;
  return 1;
}

int Domain::setParam() {
  if (Const::isMissing(plat)) plat = clat;
  if (Const::isMissing(plon)) plon = clon;
  xfactor = mult = yfactor = scale = Const::MISS;
  view = Rect(0.0f, 0.0f, 1.0f, 1.0f);
  limits = Rect();
  earth_rad = Const::isMissing(param[2]) ? Const::EARTH_MEAN : static_cast<double>(param[2]);
  const Formula& formula = Formula::of(proj);
  const bool usable = isFinite(*this) && (!formula.earth || ((Const::isMissing(plat) || std::abs(plat) <= 90.0f) &&
                                                             (Const::isMissing(plon) || std::abs(plon) <= 3600.0f) &&
                                                             earth_rad > 1e-3 && earth_rad < 1e5));
  if (!usable || !formula.prepare(*this)) return xfactor = Const::MISS, 0;
  return setLimits();
}

int Domain::setLimits() {
  // Without a centre the map lies about the origin of the plane.
  Point c;
  if (!tranCenter(c)) return limits = Rect(), 0;
  if (c.isMissing()) c.set(0.0f, 0.0f);
  const double half_width = span(nx, dx) / 2.0, half_height = span(ny, dy) / 2.0;
  if (!Formula::isUsable(half_width, half_height)) return limits = Rect(), 0;
  limits = Rect(static_cast<float>(c.x - half_width), static_cast<float>(c.y - half_height),
                static_cast<float>(c.x + half_width), static_cast<float>(c.y + half_height));
  return 1;
}

int Domain::tran(const EarthPoint& e, Point& p) const {
  p.setMissing();
  if (e.isMissing()) return 1;
  if (!Formula::isReady(*this)) return 0;
  const Formula& formula = Formula::of(proj);
  const Formula::Xy xy = formula.forward(*this, formula.place(*this, e));
  if (!Formula::isUsable(xy.x, xy.y)) return 0;
  p.set(static_cast<float>(xy.x), static_cast<float>(xy.y));
  return 1;
}

int Domain::tran(const Point& p, EarthPoint& e) const {
  e.setMissing();
  if (p.isMissing()) return 1;
  if (!Formula::isReady(*this)) return 0;
  const Formula& formula = Formula::of(proj);
  const Formula::Place at = formula.inverse(*this, {p.x, p.y});
  if (!Formula::isUsable(at.lat, at.dlon)) return 0;
  e = formula.point(*this, at);
  return 1;
}

int Domain::tran(const GridPoint& g, Point& p) const {
  p.setMissing();
  if (g.isMissing()) return 1;
  const double x = g.x * cell(dx), y = g.y * cell(dy);
  const double left = proj == RADIAL ? x : limits.xmin + x, top = proj == RADIAL ? y : limits.ymax - y;
  if (Const::isMissing(dx) || Const::isMissing(dy) || !Formula::isUsable(left, top)) return 0;
  p.set(static_cast<float>(left), static_cast<float>(top));
  return 1;
}

int Domain::tran(const Point& p, GridPoint& g) const {
  g.setMissing();
  if (p.isMissing()) return 1;
  const double width = cell(dx), height = cell(dy);
  if (!(width > 0.0 && height > 0.0)) return 0;
  Point q = p;
  adjust(q);
  double column = (q.x - static_cast<double>(limits.xmin)) / width;
  double row = (static_cast<double>(limits.ymax) - q.y) / height;
  if (proj == RADIAL) {
    double azimuth = std::fmod(p.x, 360.0);
    if (azimuth < 0.0) azimuth += 360.0;
    // A hair left of north rounds to a whole turn, which is north.
    column = static_cast<float>(azimuth) < 360.0f ? azimuth / width : 0.0;
    row = p.y / height;
  }
  if (!Formula::isUsable(column, row)) return 0;
  g = GridPoint(static_cast<float>(column), static_cast<float>(row));
  return 1;
}

int Domain::tran(const EarthPoint& e, GridPoint& g) const {
  Point p;
  if (!tran(e, p)) return g.setMissing(), 0;
  return tran(p, g);
}

int Domain::tran(const GridPoint& g, EarthPoint& e) const {
  Point p;
  if (!tran(g, p)) return e.setMissing(), 0;
  return tran(p, e);
}

int Domain::tran(const EarthPoints& es, Points& ps) const {
  ps.clear();
  int all = 1;
  for (const EarthPoint& e : es) {
    Point p;
    all &= tran(e, p);
    ps.add(p);
  }
  return all;
}

int Domain::tran(const EarthPoints& es, GridPoints& gs) const {
  gs.clear();
  int all = 1;
  for (const EarthPoint& e : es) {
    GridPoint g;
    all &= tran(e, g);
    gs.push_back(g);
  }
  return all;
}

int Domain::tran(int i, GridPoint& g) const {
  g.setMissing();
  if (i < 0 || nx < 1 || ny < 1 || i / nx >= ny) return 0;
  const int column = i % nx, row = i / nx;
  g = GridPoint(static_cast<float>(column), static_cast<float>(row));
  return 1;
}

int Domain::tran(int i, Point& p) const {
  GridPoint g;
  if (!tran(i, g)) return p.setMissing(), 0;
  return tran(g, p);
}

int Domain::tran(int i, EarthPoint& e) const {
  GridPoint g;
  if (!tran(i, g)) return e.setMissing(), 0;
  return tran(g, e);
}

int Domain::tranCenter(Point& p) const { return tran(EarthPoint(clat, clon), p); }

float Domain::getAspect() const {
  return limits.width() > 0.0f && limits.height() > 0.0f ? limits.width() / limits.height() : 1.0f;
}

bool Domain::within(const Point& p) const { return withinExt(p, 0); }

bool Domain::within(const EarthPoint& e) const { return withinExt(e, 0); }

bool Domain::withinExt(const Point& p, int n) const {
  if (!isSet()) return true;
  const double width = n * cell(dx), height = n * cell(dy);
  return !p.isMissing() && p.x >= limits.xmin - width && p.x <= limits.xmax + width && p.y >= limits.ymin - height &&
         p.y <= limits.ymax + height;
}

bool Domain::withinExt(const EarthPoint& e, int n) const {
  if (!isSet()) return true;
  Point p;
  if (!tran(e, p)) return false;
  adjust(p);
  return withinExt(p, n);
}

int Domain::where(const Point& p) const {
  if (!isSet() || p.isMissing()) return 0;
  const int column = p.x < limits.xmin ? 0 : p.x > limits.xmax ? 2 : 1;
  const int row = p.y > limits.ymax ? 0 : p.y < limits.ymin ? 2 : 1;
  return 1 + 3 * row + column;
}

int Domain::where(const EarthPoint& e) const {
  Point p;
  if (!isSet() || !tran(e, p)) return 0;
  adjust(p);
  return where(p);
}

}  // namespace KYV
