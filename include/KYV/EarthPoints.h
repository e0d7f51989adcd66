#ifndef KYV_EARTHPOINTS_H
#define KYV_EARTHPOINTS_H

#include <cstddef>
#include <vector>

#include "KYV/EarthPoint.h"

namespace KYV {

/// A growing list of places; one whose latitude is missing lifts the pen.
class EarthPoints {
 public:
  void clear() { points.clear(); }
  int getNum() const { return static_cast<int>(points.size()); }
  int add(const EarthPoint& e) { return points.push_back(e), 1; }
  int add(float lat, float lon) { return points.emplace_back(lat, lon), 1; }
  /// 0 and a missing place when there is no place i.
  int get(int i, EarthPoint& e) const {
    if (i < 0 || i >= getNum()) return e.setMissing(), 0;
    return e = points[static_cast<std::size_t>(i)], 1;
  }
  const EarthPoint& operator[](int i) const { return points[static_cast<std::size_t>(i)]; }
  auto begin() const { return points.begin(); }
  auto end() const { return points.end(); }

 private:
  std::vector<EarthPoint> points;
};

}  // namespace KYV
#endif
