#ifndef KYV_EARTHRANGE_H
#define KYV_EARTHRANGE_H

#include "KYV/Const.h"

namespace KYV {

/// A box of latitudes and longitudes, degrees.
struct EarthRange {
  float min_lat = Const::MISS;
  float max_lat = Const::MISS;
  float min_lon = Const::MISS;
  float max_lon = Const::MISS;
};

}  // namespace KYV
#endif
