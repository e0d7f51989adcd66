#include "KYV/Points.h"

#include <algorithm>

#include "KYV/Const.h"

namespace KYV {

namespace {

bool liftsPen(const Point& p) { return Const::isMissing(p.x); }

// Calls visit(a, b) for every edge of every ring; pen lifts part the rings, and each ring closes on its first point.
template <class Visit>
void eachEdge(const std::vector<Point>& points, Visit visit) {
  for (auto first = points.begin(); first != points.end();) {
    const auto last = std::find_if(first, points.end(), liftsPen);
    for (auto p = first; p != last; ++p) visit(*p, p + 1 != last ? p[1] : *first);
    first = std::find_if_not(last, points.end(), liftsPen);
  }
}

// The part of a polygon on one side of a line: side(p) is positive there, and changes linearly.
template <class Side>
std::vector<Point> cut(const std::vector<Point>& polygon, Side side) {
  std::vector<Point> part;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point& a = polygon[i];
    const Point& b = polygon[i + 1 < polygon.size() ? i + 1 : 0];
    const float da = side(a), db = side(b);
    if (da >= 0.0f) part.push_back(a);
    if ((da >= 0.0f) != (db >= 0.0f)) {
      const float t = da / (da - db);
      part.emplace_back(a.x + t * (b.x - a.x), a.y + t * (b.y - a.y));
    }
  }
  return part;
}

}  // namespace

int Points::set(int i, const Point& p) {
  if (i < 0 || i >= getNum()) return 0;
  (*this)[i] = p;
  return 1;
}

int Points::get(int i, Point& p) const {
  p = get(i);
  return i >= 0 && i < getNum() ? 1 : 0;
}

Point Points::get(int i) const {
  if (i >= 0 && i < getNum()) return (*this)[i];
  Point none;
  none.setMissing();
  return none;
}

int Points::insert(int i, const Point& p) {
  if (i < 0 || i > getNum()) return 0;
  points.insert(points.begin() + i, p);
  return 1;
}

int Points::remove(int i) {
  if (i < 0 || i >= getNum()) return 0;
  points.erase(points.begin() + i);
  return 1;
}

int Points::offset(float dx, float dy) {
  for (Point& p : points) {
    if (liftsPen(p)) continue;
    p.x += dx;
    p.y += dy;
  }
  return 1;
}

bool Points::within(const Point& p) const {
  bool inside = false;
  eachEdge(points, [&](const Point& a, const Point& b) {
    if ((a.y > p.y) == (b.y > p.y)) return;
    const double x =
        a.x + (static_cast<double>(p.y) - a.y) * (static_cast<double>(b.x) - a.x) / (static_cast<double>(b.y) - a.y);
    if (p.x < x) inside = !inside;
  });
  return inside;
}

Points Points::clip(const Rect& r) const {
  Points part;
  part.points = cut(points, [&](const Point& p) { return p.x - r.xmin; });
  part.points = cut(part.points, [&](const Point& p) { return r.xmax - p.x; });
  part.points = cut(part.points, [&](const Point& p) { return p.y - r.ymin; });
  part.points = cut(part.points, [&](const Point& p) { return r.ymax - p.y; });
  return part;
}

int Points::getBounds(Rect& r) const {
  auto p = std::find_if_not(points.begin(), points.end(), liftsPen);
  if (p == points.end()) return 0;
  Rect box(p->x, p->y, p->x, p->y);
  for (; p != points.end(); ++p) {
    if (liftsPen(*p)) continue;
    box.xmin = std::min(box.xmin, p->x);
    box.ymin = std::min(box.ymin, p->y);
    box.xmax = std::max(box.xmax, p->x);
    box.ymax = std::max(box.ymax, p->y);
  }
  r = box;
  return 1;
}

int Points::getCenter(Point& p) const {
  Rect box;
  if (!getBounds(box)) return 0;
  // Halved before they are added: the sum of two large coordinates could overflow.
  p = Point(0.5f * box.xmin + 0.5f * box.xmax, 0.5f * box.ymin + 0.5f * box.ymax);
  return 1;
}

int Points::getCentroid(Point& p) const {
  Rect box;
  if (!getBounds(box)) return 0;
  // Relative to the box, so that a small polygon far from the origin keeps its digits.
  double area = 0.0, x = 0.0, y = 0.0, sumx = 0.0, sumy = 0.0;
  int n = 0;
  eachEdge(points, [&](const Point& a, const Point& b) {
    const double ax = static_cast<double>(a.x) - box.xmin, ay = static_cast<double>(a.y) - box.ymin;
    const double bx = static_cast<double>(b.x) - box.xmin, by = static_cast<double>(b.y) - box.ymin;
    const double cross = ax * by - bx * ay;
    area += cross;
    x += (ax + bx) * cross;
    y += (ay + by) * cross;
    sumx += ax;
    sumy += ay;
    n++;
  });
  const double width = static_cast<double>(box.xmax) - box.xmin;
  const double height = static_cast<double>(box.ymax) - box.ymin;
  const double cx = area != 0.0 ? x / (3.0 * area) : -1.0;
  const double cy = area != 0.0 ? y / (3.0 * area) : -1.0;
  // Edges that cross can cancel most of the area, which throws its centre out of the box.
  if (cx >= 0.0 && cx <= width && cy >= 0.0 && cy <= height) {
    p = Point(static_cast<float>(box.xmin + cx), static_cast<float>(box.ymin + cy));
  } else {
    p = Point(static_cast<float>(box.xmin + sumx / n), static_cast<float>(box.ymin + sumy / n));
  }
  return 1;
}

}  // namespace KYV
