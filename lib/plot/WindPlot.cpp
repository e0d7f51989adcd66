#include "KYV/WindPlot.h"

#include <algorithm>
#include <cmath>

#include "Arrow.h"
#include "KYV/Plot.h"

namespace KYV {

namespace {

// Parts of a barb in fractions of the staff.
constexpr float FEATHER = 0.4f;      // length of a full barb
constexpr float SPACING = 0.13f;     // between barbs
constexpr float SLANT = 0.15f;       // how far a barb's end lies beyond its foot
constexpr float CALM = 0.2f;         // radius of the calm circle
constexpr float MAX_SPEED = 500.0f;  // knots; what is beyond is no wind and would make an endless row of pennants

// Parts of a track in fractions of its size.
constexpr float HEAD = 0.15f;  // length of the arrow head
constexpr float TICK = 0.05f;  // from the line to the end of a tick
constexpr int MAX_TICKS = 24;  // quarters of an hour

}  // namespace

int WindPlot::setWind(float direction, float speed, float mapFactor) {
  dir = direction;
  spd = speed;
  factor = mapFactor;
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

int WindPlot::drawTrack(const Point& p, float size, int ticks, int arrow) {
  if (p.isMissing() || Const::isMissing(dir) || !std::isfinite(dir) || !(spd > 0.0f && spd <= MAX_SPEED)) return 0;
  if (!(factor > 0.0f && std::isfinite(factor)) || !(size > 0.0f && std::isfinite(size))) return 0;

  // The way of a quarter of an hour.
  const float limit = MAX_TRACK * size;
  const float step = std::min(spd / 4.0f / 100.0f * factor, limit);
  int quarters = std::clamp(ticks, 1, MAX_TICKS);
  while (quarters > 1 && static_cast<float>(quarters) * step > limit) --quarters;
  const float length = static_cast<float>(quarters) * step;

  const Point unit = towards(dir);
  drawArrow(plot, p, unit, length, std::min(HEAD * size, length / 2.0f), arrow == 1);
  const float tick = std::min(TICK * size, step / 2.0f);
  for (int k = 1; k < quarters; ++k) {
    const float along = static_cast<float>(k) * step;
    plot.drawLine(moved(p, unit, along, tick), moved(p, unit, along, -tick));
  }
  return 1;
}

}  // namespace KYV
