#ifndef KYV_ARROW_H
#define KYV_ARROW_H

#include <cmath>

#include "KYV/Const.h"
#include "KYV/Plot.h"

namespace KYV {

/// The unit vector towards where something moves that comes from a direction, degrees clockwise from the y axis.
inline Point towards(float from) {
  const double angle = static_cast<double>(from) * Const::DRC;
  return {static_cast<float>(-std::sin(angle)), static_cast<float>(-std::cos(angle))};
}

/// The point so far along a unit vector, and so far to the right of it.
inline Point moved(const Point& p, const Point& unit, float along, float across = 0.0f) {
  return {p.x + along * unit.x + across * unit.y, p.y + along * unit.y - across * unit.x};
}

/// A line from p along the unit vector, with a head of that length, open or filled.
inline void drawArrow(Plot& plot, const Point& p, const Point& unit, float length, float head, bool filled) {
  constexpr float SPREAD = 0.4f;  // half the head's width, of its length
  Points barbs;
  barbs.add(moved(p, unit, length - head, SPREAD * head));
  barbs.add(moved(p, unit, length));
  barbs.add(moved(p, unit, length - head, -SPREAD * head));
  plot.drawLine(p, barbs[1]);
  if (filled) {
    barbs.add(barbs[0]);
    plot.drawFill(barbs);
  }
  plot.drawLine(barbs);
}

}  // namespace KYV
#endif
