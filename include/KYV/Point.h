#ifndef KYV_POINT_H
#define KYV_POINT_H

#include "KYV/Const.h"

namespace KYV {

/// A point of a plane, in whatever units its plane has; z is optional.
struct Point {
  float x = 0.0f;
  float y = 0.0f;
  float z = Const::MISS;

  constexpr Point() = default;
  constexpr Point(float px, float py) : x(px), y(py) {}
  constexpr Point(float px, float py, float pz) : x(px), y(py), z(pz) {}
  constexpr void set(float px, float py) { x = px, y = py; }
  constexpr void set(float px, float py, float pz) { x = px, y = py, z = pz; }
  constexpr void setMissing() { x = y = z = Const::MISS; }
  constexpr bool isMissing() const { return Const::isMissing(x) || Const::isMissing(y); }
};

}  // namespace KYV
#endif
