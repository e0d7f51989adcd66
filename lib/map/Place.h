#ifndef KYV_LIB_MAP_PLACE_H
#define KYV_LIB_MAP_PLACE_H

#include <cmath>

#include "KYV/EarthPoint.h"

namespace KYV {

// Degrees beyond which a number of a file is none: two revolutions.
inline constexpr double MAX_DEGREES = 720.0;

/// The place of two numbers out of a file; missing where they are none.
inline EarthPoint makePlace(double lat, double lon) {
  if (!(std::abs(lat) <= MAX_DEGREES && std::abs(lon) <= MAX_DEGREES)) return EarthPoint();
  return EarthPoint(static_cast<float>(lat), static_cast<float>(lon));
}

}  // namespace KYV
#endif
