#ifndef KYV_LIB_MAP_MAPVIEW_H
#define KYV_LIB_MAP_MAPVIEW_H

#include "KYV/Domain.h"
#include "KYV/EarthRange.h"

namespace KYV {

/// Whether a plot is a map of the earth.
inline bool isMapProjection(int proj) { return proj >= DomainVal::PSTEREO && proj <= DomainVal::SAT; }

/// What part of the earth a domain shows, for passing over most segments of a map file without projecting them.
class MapView {
 public:
  explicit MapView(const Domain& dom);

  /// Whether a segment may be seen: not all four corners of its range lie above, below, left of or right of the domain.
  bool mayShow(const EarthRange& r) const;
  /// Whether all four corners lie in the domain.
  bool holds(const EarthRange& r) const;

 private:
  bool misses(const EarthRange& r) const;

  const Domain& domain;
  // Latitudes, and longitudes from the centre's, that surely hold the domain; whether they are known.
  bool bounded = false;
  double south = -90.0, north = 90.0;
  double west = -180.0, east = 180.0;
  double centre = 0.0;
};

}  // namespace KYV
#endif
