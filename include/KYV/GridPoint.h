#ifndef KYV_GRIDPOINT_H
#define KYV_GRIDPOINT_H

#include <vector>

#include "KYV/Const.h"

namespace KYV {

/// A place in the array that a domain describes: x the column, y the row, row 0 the northern one; for a radial domain
/// x the azimuth slot, y the range bin. The whole part names the cell, the fraction the place within it.
struct GridPoint {
  float x = Const::MISS;
  float y = Const::MISS;

  constexpr GridPoint() = default;
  constexpr GridPoint(float column, float row) : x(column), y(row) {}
  constexpr void setMissing() { x = y = Const::MISS; }
  constexpr bool isMissing() const { return Const::isMissing(x) || Const::isMissing(y); }
};

using GridPoints = std::vector<GridPoint>;

}  // namespace KYV
#endif
