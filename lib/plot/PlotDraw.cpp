// The primitives, in plane, earth and grid coordinates.
#include <cstdarg>

#include "KYV/Plot.h"

namespace KYV {

namespace {

constexpr int MAX_TEXT = 400;      // characters of a formatted text
constexpr int SPLINE_STEPS = 8;    // pieces between two points of a curve
constexpr int CIRCLE_STEPS = 180;  // of a circle on the earth: 0.2 pixels off a radius of 1,000 at most

// Clips the segment a-b to a rectangle (Liang and Barsky); false when nothing of it lies inside.
bool clipSegment(const Rect& r, Point& a, Point& b) {
  const float dx = b.x - a.x;
  const float dy = b.y - a.y;
  const float p[4] = {-dx, dx, -dy, dy};
  const float q[4] = {a.x - r.xmin, r.xmax - a.x, a.y - r.ymin, r.ymax - a.y};
  float t0 = 0.0f;
  float t1 = 1.0f;
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0.0f) {
      if (q[i] < 0.0f) return false;
      continue;
    }
    const float t = q[i] / p[i];
    if (p[i] < 0.0f) {
      if (t > t1) return false;
      if (t > t0) t0 = t;
    } else {
      if (t < t0) return false;
      if (t < t1) t1 = t;
    }
  }
  const Point from = a;
  a.set(from.x + t0 * dx, from.y + t0 * dy);
  b.set(from.x + t1 * dx, from.y + t1 * dy);
  return true;
}

bool samePlace(const Point& a, const Point& b) { return a.x == b.x && a.y == b.y; }

void liftPen(Points& points) { points.add(Const::MISS, Const::MISS); }

}  // namespace

int Plot::cropLine(Points& points) const {
  const Rect& limits = getDomain().getLimits();
  Points cropped;
  for (int i = 1; i < points.getNum(); ++i) {
    if (points[i - 1].isMissing() || points[i].isMissing()) continue;
    Point a = points[i - 1];
    Point b = points[i];
    if (!clipSegment(limits, a, b)) continue;
    const int n = cropped.getNum();
    if (n > 0 && !samePlace(cropped[n - 1], a)) liftPen(cropped);
    if (n == 0 || !samePlace(cropped[n - 1], a)) cropped.add(a);
    cropped.add(b);
  }
  points = cropped;
  return 1;
}

// Draws a polyline piece by piece, from one pen lift to the next.
int Plot::drawPieces(Points& points) {
  if (getProj() == DomainVal::LATLON || getProj() == DomainVal::MERC) cropLine(points);
  piece.clear();
  for (const Point& p : points) {
    if (!p.isMissing()) {
      piece.add(p);
      continue;
    }
    if (piece.getNum() > 1) graph.drawLine(piece);
    piece.clear();
  }
  if (piece.getNum() > 1) graph.drawLine(piece);
  return 1;
}

int Plot::drawLine(const Points& points) {
  if (isOff(line_index)) return 0;
  if (graph.getTran() != MAP) return graph.drawLine(points);
  Points line = points;
  const int n = getDomain().wrapLine(line);
  Points shifted;
  if (n != 0) shifted = line;
  drawPieces(line);
  if (n != 0) {
    getDomain().offsetLine(shifted, n);
    drawPieces(shifted);
  }
  return 1;
}

int Plot::drawLine(const Point& p1, const Point& p2) {
  if (p1.isMissing() || p2.isMissing()) return 0;
  work.clear();
  work.add(p1);
  work.add(p2);
  return drawLine(work);
}

int Plot::drawLine(const EarthPoints& points) {
  Points line(points.getNum());
  getDomain().tran(points, line);
  return drawLine(line);
}

int Plot::drawLine(const EarthPoint& e1, const EarthPoint& e2) {
  Point p1, p2;
  if (!getDomain().tran(e1, p1) || !getDomain().tran(e2, p2)) return 0;
  return drawLine(p1, p2);
}

int Plot::drawLine(const GridPoint& g1, const GridPoint& g2) {
  Point p1, p2;
  if (!getDomain().tran(g1, p1) || !getDomain().tran(g2, p2)) return 0;
  return drawLine(p1, p2);
}

int Plot::drawLine(const GridPoints& points) {
  Points line(static_cast<int>(points.size()));
  for (const GridPoint& g : points) {
    Point p;
    getDomain().tran(g, p);
    line.add(p);
  }
  return drawLine(line);
}

int Plot::drawSpline(const Points& points) {
  const int n = points.getNum();
  if (n < 3) return drawLine(points);
  // Catmull-Rom: through every point, its tangent along its neighbours. Pen lifts end a curve.
  Points curve(n * SPLINE_STEPS);
  for (int i = 0; i + 1 < n; ++i) {
    const Point b = points[i];
    const Point c = points[i + 1];
    if (b.isMissing() || c.isMissing()) {
      liftPen(curve);
      continue;
    }
    const Point a = i > 0 && !points[i - 1].isMissing() ? points[i - 1] : b;
    const Point d = i + 2 < n && !points[i + 2].isMissing() ? points[i + 2] : c;
    for (int k = 0; k <= SPLINE_STEPS; ++k) {
      const float t = static_cast<float>(k) / SPLINE_STEPS;
      const auto at = [t](float p0, float p1, float p2, float p3) {
        return 0.5f * (2.0f * p1 + (p2 - p0) * t + (2.0f * p0 - 5.0f * p1 + 4.0f * p2 - p3) * t * t +
                       (3.0f * p1 - p0 - 3.0f * p2 + p3) * t * t * t);
      };
      curve.add(at(a.x, b.x, c.x, d.x), at(a.y, b.y, c.y, d.y));
    }
  }
  return drawLine(curve);
}

int Plot::drawSpline(const EarthPoints& points) {
  Points line(points.getNum());
  getDomain().tran(points, line);
  return drawSpline(line);
}

int Plot::drawRect(const Rect& r) { return isOff(line_index) ? 0 : graph.drawRect(r); }

int Plot::drawCircle(const Point& p, float r) {
  if (isOff(line_index) || p.isMissing()) return 0;
  return graph.drawCircle(p, r);
}

int Plot::drawCircle(const EarthPoint& e, float r) {
  if (isOff(line_index)) return 0;
  EarthPoints circle;
  for (int i = 0; i <= CIRCLE_STEPS; ++i) {
    EarthPoint at;
    getDomain().offsetLatLon(e, 360.0f * static_cast<float>(i % CIRCLE_STEPS) / CIRCLE_STEPS, r, at);
    circle.add(at);
  }
  return drawLine(circle);
}

int Plot::drawFill(const Points& points) {
  if (isOff(fill_index)) return 0;
  if (graph.getTran() != MAP || !getDomain().wrapFill(points, parts)) return graph.drawFill(points);
  for (const Points& part : parts) graph.drawFill(part);
  return 1;
}

int Plot::drawArea(const Points& outline) {
  if (isOff(fill_index)) return 0;
  if (!getDomain().wrapFill(outline, parts)) parts.assign(1, outline);
  const Rect window = graph.getWindow();
  for (const Points& part : parts) {
    const Points shown = part.clip(window);
    if (shown.getNum() > 2) graph.drawFill(shown);
  }
  return 1;
}

int Plot::drawFill(const Rect& r) { return isOff(fill_index) ? 0 : graph.drawFill(r); }

int Plot::drawFill(const EarthPoints& points) {
  Points polygon(points.getNum());
  for (const EarthPoint& e : points) {
    Point p;
    // A polygon that leaves the map's face cannot be filled.
    if (!getDomain().tran(e, p) || p.isMissing()) return 0;
    polygon.add(p);
  }
  return drawFill(polygon);
}

int Plot::drawText(const Point& p, const char* text) {
  if (isOff(text_index) || p.isMissing()) return 0;
  return graph.drawText(p, text);
}

int Plot::drawText(const EarthPoint& e, const char* text) {
  Point p;
  return getDomain().tran(e, p) ? drawText(p, text) : 0;
}

int Plot::drawText(const GridPoint& g, const char* text) {
  Point p;
  return getDomain().tran(g, p) ? drawText(p, text) : 0;
}

int Plot::drawFormText(const Point& p, const char* format, ...) {
  char text[MAX_TEXT];
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, MAX_TEXT, format, args);
  va_end(args);
  return drawText(p, text);
}

int Plot::drawFormText(const EarthPoint& e, const char* format, ...) {
  char text[MAX_TEXT];
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, MAX_TEXT, format, args);
  va_end(args);
  return drawText(e, text);
}

int Plot::drawMark(const Point& p) {
  if (isOff(mark_index) || p.isMissing()) return 0;
  return graph.drawMark(p);
}

int Plot::drawMark(const EarthPoint& e) {
  Point p;
  return getDomain().tran(e, p) ? drawMark(p) : 0;
}

int Plot::drawMark(const GridPoint& g) {
  Point p;
  return getDomain().tran(g, p) ? drawMark(p) : 0;
}

int Plot::drawSymbol(const Point& p, const char* name, float size) {
  if (isOff(line_index) || p.isMissing()) return 0;
  return graph.drawSymbol(p, name, size);
}

}  // namespace KYV
