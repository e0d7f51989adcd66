#include "KYV/WindPlot.h"

#include <cmath>

#include "KYV/Plot.h"

namespace KYV {

namespace {

// Parts of a barb in fractions of the staff.
constexpr float FEATHER = 0.4f;      // length of a full barb
constexpr float SPACING = 0.13f;     // between barbs
constexpr float SLANT = 0.15f;       // how far a barb's end lies beyond its foot
constexpr float CALM = 0.2f;         // radius of the calm circle
constexpr float MAX_SPEED = 500.0f;  // knots; what is beyond is no wind and would make an endless row of pennants

}  // namespace

int WindPlot::setWind(float direction, float speed) {
  dir = direction;
  spd = speed;
  return 1;
}

int WindPlot::drawBarb(const Point& p, float size, float offset) {
  if (p.isMissing() || Const::isMissing(dir) || Const::isMissing(spd)) return 0;
  if (!std::isfinite(dir) || !(spd >= 0.0f && spd <= MAX_SPEED)) return 0;
  if (spd < 2.5f) return plot.drawCircle(p, CALM * size);

  // Along the staff, outward, and across it, to the side of the feathers.
  const double angle = dir * Const::DRC;
  const Point along(static_cast<float>(std::sin(angle)), static_cast<float>(std::cos(angle)));
  const float side = southern ? -1.0f : 1.0f;
  const Point across(side * along.y, -side * along.x);
  const auto at = [&](float s, float t) {
    const float a = offset + s * size;
    const float b = t * size;
    return Point(p.x + a * along.x + b * across.x, p.y + a * along.y + b * across.y);
  };

  plot.drawLine(at(0.0f, 0.0f), at(1.0f, 0.0f));
  int fives = static_cast<int>(std::lround(spd / 5.0f));
  // A long row of pennants is pressed together so that it stays on the staff.
  const int feathers = fives / 10 + (fives % 10) / 2 + fives % 2;
  const float gap = std::fmin(SPACING, 0.9f / static_cast<float>(feathers + 1));
  float s = 1.0f;
  for (; fives >= 10; fives -= 10, s -= gap * 1.3f) {
    Points pennant;
    pennant.add(at(s, 0.0f));
    pennant.add(at(s, FEATHER));
    pennant.add(at(s - gap, 0.0f));
    pennant.add(at(s, 0.0f));
    plot.drawFill(pennant);
    plot.drawLine(pennant);
  }
  // A lone half barb stands one step in, so that it cannot be taken for the end of the staff.
  if (fives == 1 && s == 1.0f) s -= gap;
  for (; fives >= 2; fives -= 2, s -= gap) plot.drawLine(at(s, 0.0f), at(s + SLANT, FEATHER));
  if (fives == 1) plot.drawLine(at(s, 0.0f), at(s + SLANT / 2, FEATHER / 2));
  return 1;
}

}  // namespace KYV
