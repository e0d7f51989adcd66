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
  if (from.isMissing() || Const::isMissing(dir) || Const::isMissing(dist) || !Formula::isReady(*this)) return 0;
  if (!Formula::of(proj).earth) {
    Point p, q;
    return tran(from, p) && offset(p, dir, dist, q) && tran(q, to);
  }
  // The great circle that leaves in this direction.
  const double angle = dist / 100.0 / earth_rad, azimuth = RAD * dir, lat = RAD * from.lat;
  if (!(std::abs(angle) <= 2.0 * Const::PI) || !std::isfinite(azimuth) || !(std::abs(from.lat) <= 90.0f)) return 0;
  const double north = std::cos(angle) * std::sin(lat) + std::sin(angle) * std::cos(lat) * std::cos(azimuth);
  const double dlon = std::atan2(std::sin(angle) * std::sin(azimuth),
                                 std::cos(angle) * std::cos(lat) - std::sin(angle) * std::sin(lat) * std::cos(azimuth));
  to = EarthPoint(static_cast<float>(std::asin(std::clamp(north, -1.0, 1.0)) / RAD),
                  static_cast<float>(Formula::wrap(from.lon + dlon / RAD)));
  return 1;
}

int Domain::offset(const Point& p, float dir, float dist, Point& to) const {
  const Point from = p;
  EarthPoint e;
  to.setMissing();
  if (!tran(from, e)) return 0;
  if (Formula::of(proj).earth) return offsetLatLon(e, dir, dist, e) ? tran(e, to) : 0;
  const float factor = getMapFactor(e), angle = adjustDir(dir, e);
  if (Const::isMissing(dist) || Const::isMissing(factor) || Const::isMissing(angle)) return 0;
  const double length = dist / 100.0 * factor;
  const double x = from.x + length * std::sin(RAD * angle), y = from.y + length * std::cos(RAD * angle);
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

}  // namespace KYV
