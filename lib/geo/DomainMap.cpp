#include <algorithm>
#include <cmath>
#include <utility>

#include "KYV/Domain.h"
#include "KYV/Points.h"
#include "Projection.h"

namespace KYV {

namespace {

constexpr double RAD = Const::DRC;
constexpr int MAX_GRID = 1000000;  // points a side that scaling may ask for

// A direction in 0..360, 360 excluded; missing for what is no number.
float direction(double degrees) {
  if (!std::isfinite(degrees)) return Const::MISS;
  double turned = std::fmod(degrees, 360.0);
  if (turned < 0.0) turned += 360.0;
  const float result = static_cast<float>(turned);
  return result < 360.0f ? result : 0.0f;
}

}  // namespace

int Domain::zoom(const Point& p, float factor) {
  EarthPoint e;
  if (!(factor > 0.0f) || !std::isfinite(factor) || !tran(p, e) || e.isMissing()) return 0;
  Domain next = *this;
  next.clat = e.lat;
  next.clon = e.lon;
  if (!Const::isMissing(dx)) next.dx /= factor;
  if (!Const::isMissing(dy)) next.dy /= factor;
  if (!next.setParam()) return 0;
  // Not so far in that floats no longer tell the sides of the map apart.
  if ((limits.width() > 0.0f && !(next.limits.width() > 0.0f)) ||
      (limits.height() > 0.0f && !(next.limits.height() > 0.0f))) {
    return 0;
  }
  next.view = view;
  *this = next;
  return 1;
}

int Domain::pan(const Point& p) { return zoom(p, 1.0f); }

int Domain::scaleSize(int columns, int rows) {
  if (columns < 1 || rows < 1 || !(limits.width() > 0.0f || limits.height() > 0.0f)) return 0;
  // One spacing for both directions, as the plane has it; that of the side which needs the wider one.
  const float across = columns > 1 ? limits.width() / static_cast<float>(columns - 1) : 0.0f;
  const float down = rows > 1 ? limits.height() / static_cast<float>(rows - 1) : 0.0f;
  const float step = std::max(across, down);
  Domain next = *this;
  next.nx = columns;
  next.ny = rows;
  if (step > 0.0f) {
    next.dx = std::copysign(step, dx);
    next.dy = std::copysign(step, dy);
  }
  if (!next.setLimits()) return 0;
  *this = next;
  return 1;
}

int Domain::scaleGrid(float factor) {
  if (!(factor > 0.0f) || !std::isfinite(factor) || nx < 1 || ny < 1 || Const::isMissing(dx) || Const::isMissing(dy)) {
    return 0;
  }
  // The last cell counts only when more than rounding asks for it.
  const double columns = std::ceil((nx - 1.0) / factor - 1e-4) + 1.0,
               rows = std::ceil((ny - 1.0) / factor - 1e-4) + 1.0;
  if (columns > MAX_GRID || rows > MAX_GRID) return 0;
  Domain next = *this;
  next.nx = static_cast<int>(columns);
  next.ny = static_cast<int>(rows);
  next.dx *= factor;
  next.dy *= factor;
  if (!std::isfinite(next.dx) || !std::isfinite(next.dy) || !next.setLimits()) return 0;
  *this = next;
  return 1;
}

int Domain::translate(const Domain& from, const Point& p, const Domain& to, Point& q) {
  if (compareProj(from, to)) return q = p, 1;
  EarthPoint e;
  if (!from.tran(p, e)) return q.setMissing(), 0;
  return to.tran(e, q);
}

int Domain::adjust(Point& p) const {
  const double turn = Formula::revolution(*this);
  if (p.isMissing()) return 0;
  if (!(turn > 0.0) || (p.x >= limits.xmin && p.x <= limits.xmax)) return 1;
  const double x = p.x + turn * std::ceil((limits.xmin - static_cast<double>(p.x)) / turn);
  if (x <= limits.xmax) p.x = static_cast<float>(x);
  return 1;
}

int Domain::adjust(Points& ps) const {
  for (Point& p : ps) adjust(p);
  return 1;
}

float Domain::adjustDir(float dir, const EarthPoint& e) const {
  if (Const::isMissing(dir) || e.isMissing() || !Formula::isReady(*this)) return Const::MISS;
  const Formula& formula = Formula::of(proj);
  return direction(dir + formula.turn(*this, formula.place(*this, e)));
}

float Domain::adjustDir(float dir, const Point& p) const {
  EarthPoint e;
  tran(p, e);
  return adjustDir(dir, e);
}

float Domain::unadjustDir(float dir, const EarthPoint& e) const {
  if (Const::isMissing(dir) || e.isMissing() || !Formula::isReady(*this)) return Const::MISS;
  const Formula& formula = Formula::of(proj);
  return direction(dir - formula.turn(*this, formula.place(*this, e)));
}

float Domain::unadjustDir(float dir, const Point& p) const {
  EarthPoint e;
  tran(p, e);
  return unadjustDir(dir, e);
}

int Domain::offsetLatLon(const EarthPoint& e, float dir, float dist, EarthPoint& to) const {
  const EarthPoint from = e;  // may be the same object
  to.setMissing();
  // Azimuth and range are no plane to step on; the map they are taken from is.
  const Formula& formula = Formula::of(proj == RADIAL ? static_cast<int>(PSTEREO) : proj);
  const float factor = getMapFactor(from), angle = adjustDir(dir, from);
  if (Const::isMissing(dist) || Const::isMissing(factor) || Const::isMissing(angle)) return 0;
  const Formula::Xy xy = formula.forward(*this, formula.place(*this, from));
  const double step = dist / 100.0 * factor;
  const double x = xy.x + step * std::sin(RAD * angle), y = xy.y + step * std::cos(RAD * angle);
  const Formula::Place at = formula.inverse(*this, {x, y});
  if (!Formula::isUsable(x, y) || !Formula::isUsable(at.lat, at.dlon)) return 0;
  to = formula.point(*this, at);
  return 1;
}

int Domain::offset(const Point& p, float dir, float dist, Point& to) const {
  const Point from = p;
  EarthPoint e;
  to.setMissing();
  if (!tran(from, e)) return 0;
  if (proj == RADIAL) return offsetLatLon(e, dir, dist, e) ? tran(e, to) : 0;
  const float factor = getMapFactor(e), angle = adjustDir(dir, e);
  if (Const::isMissing(dist) || Const::isMissing(factor) || Const::isMissing(angle)) return 0;
  const double step = dist / 100.0 * factor;
  const double x = from.x + step * std::sin(RAD * angle), y = from.y + step * std::cos(RAD * angle);
  if (!Formula::isUsable(x, y)) return 0;
  to.set(static_cast<float>(x), static_cast<float>(y));
  return 1;
}

float Domain::direct(const EarthPoint& a, const EarthPoint& b) {
  if (a.isMissing() || b.isMissing()) return Const::MISS;
  const double lat1 = RAD * a.lat, lat2 = RAD * b.lat, dlon = RAD * (static_cast<double>(b.lon) - a.lon);
  const double east = std::sin(dlon) * std::cos(lat2);
  const double north = std::cos(lat1) * std::sin(lat2) - std::sin(lat1) * std::cos(lat2) * std::cos(dlon);
  return direction(std::atan2(east, north) / RAD);
}

float Domain::getMapFactor(const EarthPoint& e) const {
  if (e.isMissing() || !Formula::isReady(*this)) return Const::MISS;
  const Formula& formula = Formula::of(proj);
  const Formula::Place at = formula.place(*this, e);
  const Formula::Xy xy = formula.forward(*this, at);
  const double factor = formula.scale(*this, at);
  if (!Formula::isUsable(xy.x, xy.y) || !Formula::isUsable(factor, factor)) return Const::MISS;
  return static_cast<float>(factor);
}

float Domain::calcEarthDist(const EarthPoint& a, const EarthPoint& b) const {
  if (a.isMissing() || b.isMissing()) return Const::MISS;
  const double lat1 = RAD * a.lat, lat2 = RAD * b.lat;
  const double dlat = std::sin((lat2 - lat1) / 2.0);
  const double dlon = std::sin(RAD * (static_cast<double>(b.lon) - a.lon) / 2.0);
  // The half-angle form stays exact for places near each other.
  const double half = std::sqrt(dlat * dlat + std::cos(lat1) * std::cos(lat2) * dlon * dlon);
  const double dist = 2.0 * earth_rad * std::asin(std::min(half, 1.0));
  return std::isfinite(dist) ? static_cast<float>(dist) : static_cast<float>(Const::MISS);
}

namespace {

// Where a segment leaves the map over the seam, and where it comes in again.
struct Crossing {
  Point out;
  Point in;
};

// The line with both ends of every crossing and a pen lift between them.
template <class Find>
void cutLine(Points& points, const Find& find) {
  Points cut;
  bool crossed = false;
  for (int i = 1; i < points.getNum(); ++i) {
    Crossing at;
    if (points[i - 1].isMissing() || points[i].isMissing() || !find(points[i - 1], points[i], at)) {
      if (crossed) cut.add(points[i]);
      continue;
    }
    if (!crossed) {
      for (int k = 0; k < i; ++k) cut.add(points[k]);
      crossed = true;
    }
    cut.add(at.out);
    cut.add(Point(Const::MISS, Const::MISS));
    cut.add(at.in);
    cut.add(points[i]);
  }
  if (crossed) points = std::move(cut);
}

// On a map that is half to either side of the central meridian.
bool crossCylinder(const Point& a, const Point& b, double half, Crossing& at) {
  const double jump = static_cast<double>(b.x) - a.x;
  if (std::abs(jump) <= half) return false;
  const double side = a.x > 0.0f ? 1.0 : -1.0, way = jump + side * 2.0 * half;
  const double part = way != 0.0 ? std::clamp((side * half - a.x) / way, 0.0, 1.0) : 0.0;
  const float y = static_cast<float>(a.y + part * (static_cast<double>(b.y) - a.y));
  at = {Point(static_cast<float>(side * half), y), Point(static_cast<float>(-side * half), y)};
  return true;
}

}  // namespace

int Domain::wrapLine(Points& points) const {
  if (const double half = Formula::revolution(*this) / 2.0; half > 0.0) {
    cutLine(points, [half](const Point& a, const Point& b, Crossing& at) { return crossCylinder(a, b, half, at); });
    return limits.xmax > half ? 1 : limits.xmin < -half ? -1 : 0;
  }
  if ((proj != LAMB && proj != ALBERS && proj != MOLL) || !Formula::isReady(*this)) return 0;
  const Formula& formula = Formula::of(proj);
  cutLine(points, [&](const Point& a, const Point& b, Crossing& at) {
    // Both ends on one side of the central meridian: by far the most lines.
    if ((a.x < 0.0f) == (b.x < 0.0f)) return false;
    const Formula::Place p = formula.inverse(*this, {a.x, a.y}), q = formula.inverse(*this, {b.x, b.y});
    const double side = p.dlon > 0.0 ? 180.0 : -180.0, way = q.dlon - p.dlon + 2.0 * side;
    if (!(std::abs(q.dlon - p.dlon) > 180.0)) return false;
    const double part = way != 0.0 ? std::clamp((side - p.dlon) / way, 0.0, 1.0) : 0.0;
    const double lat = p.lat + part * (q.lat - p.lat);
    const Formula::Xy out = formula.forward(*this, {lat, side}), in = formula.forward(*this, {lat, -side});
    if (!Formula::isUsable(out.x, out.y) || !Formula::isUsable(in.x, in.y)) return false;
    at = {Point(static_cast<float>(out.x), static_cast<float>(out.y)),
          Point(static_cast<float>(in.x), static_cast<float>(in.y))};
    return true;
  });
  return 0;
}

int Domain::offsetLine(Points& points, int n) const {
  const double turn = Formula::revolution(*this);
  if (turn > 0.0 && n != 0) points.offset(static_cast<float>(n * turn), 0.0f);
  return 1;
}

}  // namespace KYV
