// The seam of a map, the meridian opposite to its central one: lines and filled outlines are cut there.
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "KYV/Domain.h"
#include "KYV/Points.h"
#include "Projection.h"

namespace KYV {

// A map rolled off its seam: u degrees from the central meridian, v along the meridians (latitudes; on a cylinder,
// whose meridians are upright, the plane's y).
struct Domain::Seam {
  static constexpr double HALF = 180.0;
  static constexpr double STEP = 5.0;  // degrees between the points of a curved seam or pole

  // Where a segment leaves the map over the seam, and where it comes in again.
  struct Crossing {
    Point out;
    Point in;
  };

  explicit Seam(const Domain& d)
      : domain(d),
        formula(Formula::of(d.proj)),
        half(Formula::revolution(d) / 2.0),
        slit((d.proj == LAMB || d.proj == ALBERS || d.proj == MOLL) && Formula::isReady(d)) {}

  bool exists() const { return half > 0.0 || slit; }
  /// Revolutions from the map to what the limits show beyond its seam.
  int beyond() const {
    if (!(half > 0.0)) return 0;
    return domain.limits.xmax > half ? 1 : domain.limits.xmin < -half ? -1 : 0;
  }

  bool crosses(const Point& a, const Point& b) const {
    if (half > 0.0) return std::abs(static_cast<double>(b.x) - a.x) > half;
    // Both ends on one side of the central meridian: by far the most lines.
    if ((a.x < 0.0f) == (b.x < 0.0f)) return false;
    return std::abs(unroll(b).dlon - unroll(a).dlon) > HALF;
  }

  bool cross(const Point& a, const Point& b, Crossing& at) const {
    if (!crosses(a, b)) return false;
    if (half > 0.0) {
      const double side = a.x > 0.0f ? 1.0 : -1.0, way = static_cast<double>(b.x) - a.x + side * 2.0 * half;
      const double part = way != 0.0 ? std::clamp((side * half - a.x) / way, 0.0, 1.0) : 0.0;
      const float y = static_cast<float>(a.y + part * (static_cast<double>(b.y) - a.y));
      at = {Point(static_cast<float>(side * half), y), Point(static_cast<float>(-side * half), y)};
      return true;
    }
    const Formula::Place p = unroll(a), q = unroll(b);
    const double side = p.dlon > 0.0 ? HALF : -HALF, way = q.dlon - p.dlon + 2.0 * side;
    const double part = way != 0.0 ? std::clamp((side - p.dlon) / way, 0.0, 1.0) : 0.0;
    const double lat = p.lat + part * (q.lat - p.lat);
    return roll({lat, side}, at.out) && roll({lat, -side}, at.in);
  }

  Formula::Place unroll(const Point& p) const {
    if (half > 0.0) return {p.y, p.x / half * HALF};
    return formula.inverse(domain, {p.x, p.y});
  }
  bool roll(Formula::Place at, Point& p) const {
    Formula::Xy xy = {at.dlon / HALF * half, at.lat};
    if (slit) xy = formula.forward(domain, at);
    if (!Formula::isUsable(xy.x, xy.y)) return false;
    p.set(static_cast<float>(xy.x), static_cast<float>(xy.y));
    return true;
  }
  double pole(double sign) const { return half > 0.0 ? formula.forward(domain, {sign * 90.0, 0.0}).y : sign * 90.0; }

  /// The outline without jumps, as points u, v; closed along the pole that it goes around. Empty where it cannot be
  /// told.
  Points unroll(const Points& outline) const {
    Points flat;
    double u = 0.0, sum = 0.0;
    const int n = outline.getNum();
    for (int i = 0; i <= n; ++i) {
      const Formula::Place at = unroll(outline[i % n]);
      if (!Formula::isUsable(at.lat, at.dlon)) return Points();
      u = i == 0 ? at.dlon : u + std::remainder(at.dlon - u, 2.0 * HALF);
      flat.add(static_cast<float>(u), static_cast<float>(at.lat));
      sum += at.lat;
    }
    const Point first = flat[0], last = flat[n];
    if (std::abs(last.x - first.x) > HALF) {
      const float v = static_cast<float>(pole(sum < 0.0 ? -1.0 : 1.0));
      flat.add(last.x, v);
      flat.add(first.x, v);
    }
    return flat;
  }

  /// A piece between two seams back on the plane. What lies along a seam or a pole may be curved there.
  Points roll(const Points& flat) const {
    const auto alongEdge = [](const Point& a, const Point& b) {
      return (std::abs(a.x) == HALF && a.x == b.x) || (std::abs(a.y) == 90.0f && a.y == b.y);
    };
    Points piece;
    const int n = flat.getNum();
    for (int i = 0; i < n; ++i) {
      const Point& a = flat[i];
      const Point& b = flat[(i + 1) % n];
      const double length = std::hypot(static_cast<double>(b.x) - a.x, static_cast<double>(b.y) - a.y);
      const int steps = slit && alongEdge(a, b) ? 1 + static_cast<int>(length / STEP) : 1;
      for (int k = 0; k < steps; ++k) {
        const double part = static_cast<double>(k) / steps;
        Point p;
        if (roll({a.y + part * (b.y - a.y), a.x + part * (b.x - a.x)}, p)) piece.add(p);
      }
    }
    return piece;
  }

  const Domain& domain;
  const Formula& formula;
  double half;  // of a revolution on a cylinder, plot units; 0 on others
  bool slit;    // whether the map is one that the seam slits open from a pole
};

int Domain::wrapLine(Points& points) const {
  const Seam seam(*this);
  if (!seam.exists()) return 0;
  Points cut;
  bool crossed = false;
  for (int i = 1; i < points.getNum(); ++i) {
    Seam::Crossing at;
    if (points[i - 1].isMissing() || points[i].isMissing() || !seam.cross(points[i - 1], points[i], at)) {
      if (crossed) cut.add(points[i]);
      continue;
    }
    if (!crossed) {
      for (int k = 0; k < i; ++k) cut.add(points[k]);
      crossed = true;
    }
    cut.add(at.out);
    cut.add(Point(Const::MISS, Const::MISS));
    cut.add(at.in);
    cut.add(points[i]);
  }
  if (crossed) points = std::move(cut);
  return seam.beyond();
}

int Domain::offsetLine(Points& points, int n) const {
  const double turn = Formula::revolution(*this);
  if (turn > 0.0 && n != 0) points.offset(static_cast<float>(n * turn), 0.0f);
  return 1;
}

bool Domain::wrapFill(const Points& outline, std::vector<Points>& pieces) const {
  const Seam seam(*this);
  const int n = outline.getNum(), shift = seam.beyond();
  if (!seam.exists() || n < 3) return false;
  bool crosses = false;
  for (int i = 0; i < n; ++i) {
    const Point& a = outline[i];
    const Point& b = outline[i + 1 < n ? i + 1 : 0];
    if (a.isMissing()) return false;
    crosses = crosses || seam.crosses(a, b);
  }
  if (!crosses && shift == 0) return false;

  pieces.clear();
  if (!crosses) {
    pieces.push_back(outline);
  } else {
    // Outlines that go around more than once are none of this earth.
    constexpr int MAX_TURN = 1;
    constexpr float TOP = 1e9f;
    const Points flat = seam.unroll(outline);
    Rect bounds;
    flat.getBounds(bounds);
    for (int k = -MAX_TURN; k <= MAX_TURN; ++k) {
      const float west = static_cast<float>((2 * k - 1) * Seam::HALF),
                  east = west + static_cast<float>(2.0 * Seam::HALF);
      if (bounds.xmax <= west || bounds.xmin >= east) continue;
      Points part = flat.clip(Rect(west, -TOP, east, TOP));
      part.offset(static_cast<float>(-2.0 * k * Seam::HALF), 0.0f);
      if (part.getNum() > 2) pieces.push_back(seam.roll(part));
    }
  }
  if (shift != 0) {
    for (std::size_t i = 0, base = pieces.size(); i < base; ++i) {
      Points copy = pieces[i];
      offsetLine(copy, shift);
      pieces.push_back(std::move(copy));
    }
  }
  return true;
}

}  // namespace KYV
