#ifndef KYV_POINTS_H
#define KYV_POINTS_H

#include <vector>

#include "KYV/Point.h"
#include "KYV/Rect.h"

namespace KYV {

/// A growing list of points, a polyline or a polygon. In map polylines a point whose x is missing lifts the pen.
class Points {
 public:
  Points() = default;
  explicit Points(int num) { points.reserve(num > 0 ? num : 0); }

  void clear() { points.clear(); }
  int getNum() const { return static_cast<int>(points.size()); }
  int add(const Point& p) { return points.push_back(p), 1; }
  int add(float x, float y) { return points.emplace_back(x, y), 1; }
  /// Replaces point i, 0 when there is none.
  int set(int i, const Point& p);
  int set(int i, float x, float y) { return set(i, Point(x, y)); }
  /// Copies point i into p; 0 and a missing p when there is none.
  int get(int i, Point& p) const;
  /// A missing point when there is no point i.
  Point get(int i) const;
  /// Puts p before point i (at the end for i = getNum()); 0 when i lies outside the list.
  int insert(int i, const Point& p);
  int remove(int i);
  /// Moves every point; pen lifts stay what they are.
  int offset(float dx, float dy);
  /// Whether p lies inside the polygon of the points (even-odd rule).
  bool within(const Point& p) const;
  /// The part of the polygon that a rectangle shows, which runs along the rectangle's edges where it was cut.
  Points clip(const Rect& r) const;
  /// The bounding box of all points that lift no pen; 0 when there are none.
  int getBounds(Rect& r) const;
  /// The middle of the bounding box; 0 when there are no points.
  int getCenter(Point& p) const;
  /// The centre of area of the polygon; the mean of the points when it has no area; 0 when there are no points.
  int getCentroid(Point& p) const;

  Point& operator[](int i) { return points[static_cast<std::size_t>(i)]; }
  const Point& operator[](int i) const { return points[static_cast<std::size_t>(i)]; }
  auto begin() { return points.begin(); }
  auto end() { return points.end(); }
  auto begin() const { return points.begin(); }
  auto end() const { return points.end(); }

 private:
  std::vector<Point> points;
};

}  // namespace KYV
#endif
