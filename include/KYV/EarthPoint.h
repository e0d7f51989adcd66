#ifndef KYV_EARTHPOINT_H
#define KYV_EARTHPOINT_H

#include "KYV/Const.h"

namespace KYV {

/// A place on the earth: degrees, north and east positive.
struct EarthPoint {
  float lat = Const::MISS;
  float lon = Const::MISS;
  float elev = Const::MISS;

  constexpr EarthPoint() = default;
  constexpr EarthPoint(float latitude, float longitude) : lat(latitude), lon(longitude) {}
  constexpr EarthPoint(float latitude, float longitude, float elevation)
      : lat(latitude), lon(longitude), elev(elevation) {}
  constexpr void set(float latitude, float longitude) { lat = latitude, lon = longitude; }
  constexpr void setMissing() { lat = lon = elev = Const::MISS; }
  constexpr bool isMissing() const { return Const::isMissing(lat) || Const::isMissing(lon); }
};

}  // namespace KYV
#endif
