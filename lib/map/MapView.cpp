#include "MapView.h"

#include <algorithm>
#include <cmath>

namespace KYV {

namespace {

constexpr int SAMPLES = 24;        // places across the domain, each way
constexpr double MARGIN = 0.1;     // of the extent found, for what lies between the places
constexpr double MAX_EXTENT = 60;  // degrees; on larger maps the corners of the segments tell alone

// Degrees from -180 to 180.
double wrap(double degrees) { return std::remainder(degrees, 360.0); }

}  // namespace

MapView::MapView(const Domain& dom) : domain(dom) {
  const Rect& limits = domain.getLimits();
  EarthPoint middle;
  if (!domain.tran(Point(limits.xmin + limits.width() / 2, limits.ymin + limits.height() / 2), middle)) return;
  centre = middle.lon;
  south = north = middle.lat;
  west = east = 0.0;
  for (int i = 0; i <= SAMPLES; ++i) {
    for (int k = 0; k <= SAMPLES; ++k) {
      EarthPoint e;
      const Point p(limits.xmin + limits.width() * static_cast<float>(i) / SAMPLES,
                    limits.ymin + limits.height() * static_cast<float>(k) / SAMPLES);
      if (!domain.tran(p, e) || e.isMissing()) return;
      const double turn = wrap(static_cast<double>(e.lon) - centre);
      south = std::min<double>(south, e.lat);
      north = std::max<double>(north, e.lat);
      west = std::min(west, turn);
      east = std::max(east, turn);
    }
  }
  const double height = MARGIN * (north - south), width = MARGIN * (east - west);
  south -= height, north += height, west -= width, east += width;
  // Meridians meet at the poles: a map that comes near one may show every longitude.
  bounded = north - south < MAX_EXTENT && east - west < MAX_EXTENT && north < 89.0 && south > -89.0;
}

bool MapView::misses(const EarthRange& r) const {
  if (!bounded) return false;
  if (r.max_lat < south || r.min_lat > north) return true;
  const double start = wrap(static_cast<double>(r.min_lon) - centre);
  const double width = static_cast<double>(r.max_lon) - r.min_lon;
  return (start > east || start + width < west) && start + width < west + 360.0;
}

bool MapView::mayShow(const EarthRange& r) const {
  if (misses(r)) return false;
  bool above = true, below = true, left = true, right = true;
  for (const float lat : {r.min_lat, r.max_lat}) {
    for (const float lon : {r.min_lon, r.max_lon}) {
      const int key = domain.where(EarthPoint(lat, lon));
      if (key == 0) return true;
      const int column = (key - 1) % 3, row = (key - 1) / 3;
      above = above && row == 0;
      below = below && row == 2;
      left = left && column == 0;
      right = right && column == 2;
      if (!above && !below && !left && !right) return true;
    }
  }
  return false;
}

bool MapView::holds(const EarthRange& r) const {
  for (const float lat : {r.min_lat, r.max_lat}) {
    for (const float lon : {r.min_lon, r.max_lon}) {
      if (domain.where(EarthPoint(lat, lon)) != 5) return false;
    }
  }
  return true;
}

}  // namespace KYV
