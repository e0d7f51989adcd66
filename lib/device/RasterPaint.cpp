#include "RasterPaint.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace KYV {

namespace {

constexpr int MAX_DASHES = 200000;     // pieces of a dashed line
constexpr std::size_t MAX_CONVEX = 8;  // corners of a polygon that the quick way is tried for

// What a line starts with: half way between two pixels it goes on to the next one, as X servers do.
int startError(int length) { return (length - 1) / 2; }

}  // namespace

void RasterPaint::setTarget(unsigned char* pixels, int w, int h, int bytes) {
  data = pixels;
  width = w;
  height = h;
  depth = bytes;
}

// Pixels x0 to x1 of a row, cut at the clip.
void RasterPaint::span(int y, int x0, int x1) {
  if (y < clip.y0 || y > clip.y1) return;
  x0 = std::max(x0, clip.x0);
  x1 = std::min(x1, clip.x1);
  if (x0 > x1) return;
  unsigned char* row =
      data + (static_cast<std::size_t>(y) * static_cast<std::size_t>(width)) * static_cast<std::size_t>(depth);
  const std::uint8_t bits = pattern ? (*pattern)[static_cast<std::size_t>(y & 7)] : 0xFF;
  if (depth == 1 && bits == 0xFF) {
    // Most cells are a few pixels wide, which a call would cost more than.
    if (x1 - x0 < 8) {
      for (int x = x0; x <= x1; ++x) row[x] = static_cast<unsigned char>(ink);
      return;
    }
    std::memset(row + x0, static_cast<int>(ink & 0xFF), static_cast<std::size_t>(x1 - x0 + 1));
    return;
  }
  for (int x = x0; x <= x1; ++x) {
    if (!(bits >> (x & 7) & 1)) continue;
    if (depth == 1) {
      row[x] = static_cast<unsigned char>(ink);
    } else {
      unsigned char* p = row + 3 * static_cast<std::ptrdiff_t>(x);
      p[0] = static_cast<unsigned char>(ink >> 16);
      p[1] = static_cast<unsigned char>(ink >> 8);
      p[2] = static_cast<unsigned char>(ink);
    }
  }
}

void RasterPaint::rect(const Box& box) {
  for (int y = std::max(box.y0, clip.y0); y <= std::min(box.y1, clip.y1); ++y) span(y, box.x0, box.x1);
}

// A line one pixel wide, both ends included.
void RasterPaint::thin(Pixel a, Pixel b) {
  if (std::max(a.y, b.y) < clip.y0 || std::min(a.y, b.y) > clip.y1) return;
  if (std::max(a.x, b.x) < clip.x0 || std::min(a.x, b.x) > clip.x1) return;
  const int dx = std::abs(b.x - a.x), dy = std::abs(b.y - a.y);
  if (dy == 0) return span(a.y, std::min(a.x, b.x), std::max(a.x, b.x));
  const int sx = a.x < b.x ? 1 : -1, sy = a.y < b.y ? 1 : -1;
  if (dx >= dy) {
    // Whole runs of a row.
    int error = startError(dx), from = a.x;
    for (int i = 0; i <= dx; ++i) {
      const int x = a.x + sx * i;
      error -= dy;
      if (error < 0 || i == dx) {
        span(a.y, std::min(from, x), std::max(from, x));
        from = x + sx;
        a.y += sy;
        error += dx;
      }
    }
    return;
  }
  int error = startError(dy);
  for (int i = 0; i <= dy; ++i) {
    span(a.y, a.x, a.x);
    a.y += sy;
    error -= dx;
    if (error < 0) {
      a.x += sx;
      error += dy;
    }
  }
}

// Widens rows by the pixels of an edge, a line one pixel wide. Rows are counted from `top`, `num` of them.
void RasterPaint::mark(Pixel a, Pixel b, int top, int num, Run* runs) {
  const int dx = std::abs(b.x - a.x), dy = std::abs(b.y - a.y);
  const int sx = a.x < b.x ? 1 : -1, sy = a.y < b.y ? 1 : -1;
  const auto widen = [&](int y, int x) {
    const auto row = static_cast<unsigned>(y - top);
    if (row >= static_cast<unsigned>(num)) return;
    runs[row].from = std::min(runs[row].from, x);
    runs[row].to = std::max(runs[row].to, x);
  };
  if (dx >= dy) {
    int error = startError(dx);
    for (int i = 0;; ++i) {
      widen(a.y, a.x);
      if (i == dx) return;
      a.x += sx;
      error -= dy;
      if (error < 0) {
        a.y += sy;
        error += dx;
      }
    }
  }
  int error = startError(dy);
  for (int i = 0;; ++i) {
    widen(a.y, a.x);
    if (i == dy) return;
    a.y += sy;
    error -= dx;
    if (error < 0) {
      a.x += sx;
      error += dy;
    }
  }
}

// All turns to one side, and once around: going across it changes its way but twice.
bool RasterPaint::isConvex(std::span<const Pixel> points) {
  int turn = 0, way = 0, changes = 0;
  const std::size_t n = points.size();
  Pixel a = points[n - 2], b = points[n - 1];
  for (const Pixel& c : points) {
    const std::int64_t cross = std::int64_t{b.x - a.x} * (c.y - b.y) - std::int64_t{b.y - a.y} * (c.x - b.x);
    const int sign = (cross > 0) - (cross < 0);
    if (sign * turn < 0) return false;
    if (sign) turn = sign;
    const int step = (c.x > b.x) - (c.x < b.x);
    changes += step * way < 0;
    if (step) way = step;
    a = b;
    b = c;
  }
  return changes <= 2;
}

// A convex polygon with its outline: from the leftmost to the rightmost pixel of the outline in each row of the box.
void RasterPaint::fillConvex(std::span<const Pixel> points, int top, int bottom) {
  top = std::max(top, clip.y0);
  bottom = std::min(bottom, clip.y1);
  const int num = bottom - top + 1;
  if (num <= 0) return;
  std::array<Run, FEW_ROWS> few;
  Run* runs = few.data();
  if (num > FEW_ROWS) {
    many.resize(static_cast<std::size_t>(num));
    runs = many.data();
  }
  std::fill_n(runs, num, Run{INT_MAX, INT_MIN});
  Pixel before = points.back();
  for (const Pixel& p : points) {
    mark(before, p, top, num, runs);
    before = p;
  }
  for (int i = 0; i < num; ++i) {
    if (runs[i].from <= runs[i].to) span(top + i, runs[i].from, runs[i].to);
  }
}

// Any polygon by the even-odd rule: pixels whose centre lies inside, then its outline.
void RasterPaint::fillAny(std::span<const Pixel> points) {
  int top = INT_MAX, bottom = INT_MIN;
  for (const Pixel& p : points) {
    top = std::min(top, p.y);
    bottom = std::max(bottom, p.y);
  }
  const std::size_t n = points.size();
  for (int y = std::max(top, clip.y0); y < std::min(bottom, clip.y1 + 1); ++y) {
    crossings.clear();
    for (std::size_t i = 0; i < n; ++i) {
      Pixel a = points[i], b = points[(i + 1) % n];
      if (a.y == b.y) continue;
      if (a.y > b.y) std::swap(a, b);
      if (y < a.y || y >= b.y) continue;
      // The first pixel whose centre is not left of the edge.
      const std::int64_t dy = b.y - a.y, part = std::int64_t{b.x - a.x} * (y - a.y);
      crossings.push_back(a.x + static_cast<int>(part >= 0 ? (part + dy - 1) / dy : -(-part / dy)));
    }
    std::sort(crossings.begin(), crossings.end());
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) span(y, crossings[i], crossings[i + 1] - 1);
  }
  for (std::size_t i = 0; i < n; ++i) thin(points[i], points[(i + 1) % n]);
}

void RasterPaint::fill(std::span<const Pixel> points) {
  if (points.empty()) return;
  Box box = {points[0].x, points[0].y, points[0].x, points[0].y};
  for (const Pixel& p : points) {
    box.x0 = std::min(box.x0, p.x);
    box.x1 = std::max(box.x1, p.x);
    box.y0 = std::min(box.y0, p.y);
    box.y1 = std::max(box.y1, p.y);
  }
  if (box.x1 < clip.x0 || box.x0 > clip.x1 || box.y1 < clip.y0 || box.y0 > clip.y1) return;
  // The outline of what is one pixel wide or high is all of it.
  if (box.y0 == box.y1) return span(box.y0, box.x0, box.x1);
  if (box.x0 == box.x1) return rect(box);
  if (!pattern && points.size() <= MAX_CONVEX && isConvex(points)) return fillConvex(points, box.y0, box.y1);
  fillAny(points);
}

// A disc, the joint and the end of wide lines of text.
void RasterPaint::dot(Pixel p, int w) {
  const float r = static_cast<float>(w) / 2.0f;
  for (int y = static_cast<int>(-r); y <= static_cast<int>(r); ++y) {
    const float fy = static_cast<float>(y);
    const int x = static_cast<int>(std::sqrt(std::max(r * r - fy * fy, 0.0f)));
    span(p.y + y, p.x - x, p.x + x);
  }
}

// A convex polygon whose corners lie between pixels: those whose centres it holds, the left and upper edges included.
void RasterPaint::fillReal(std::span<const Place> corners) {
  double top = corners[0].y, bottom = top;
  for (const Place& c : corners) top = std::min(top, c.y), bottom = std::max(bottom, c.y);
  const auto first = [](double v) { return static_cast<int>(std::ceil(v)); };
  const int last = std::min(first(bottom) - 1, clip.y1);
  for (int y = std::max(first(top), clip.y0); y <= last; ++y) {
    double left = INFINITY, right = -INFINITY;
    Place before = corners.back();
    for (const Place& c : corners) {
      const Place high = before.y < c.y ? before : c, low = before.y < c.y ? c : before;
      before = c;
      if (high.y == low.y || y < high.y || y > low.y) continue;
      const double x = high.x + (low.x - high.x) * (y - high.y) / (low.y - high.y);
      left = std::min(left, x);
      right = std::max(right, x);
    }
    if (left < right) span(y, first(left), first(right) - 1);
  }
}

// Half the width of a line across its direction.
RasterPaint::Place RasterPaint::across(Pixel a, Pixel b, int w) {
  const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
  if (length == 0.0) return {0.0, 0.0};
  return {-dy / length * w / 2.0, dx / length * w / 2.0};
}

void RasterPaint::wide(Pixel a, Pixel b, int w) {
  const Place n = across(a, b, w);
  const Place corners[] = {
      {a.x + n.x, a.y + n.y}, {b.x + n.x, b.y + n.y}, {b.x - n.x, b.y - n.y}, {a.x - n.x, a.y - n.y}};
  fillReal(corners);
}

// The mitred corner between two pieces of a wide line.
void RasterPaint::join(Pixel a, Pixel b, Pixel c, int w) {
  Place n = across(a, b, w), m = across(b, c, w);
  // The outer side of the turn.
  const double turn = n.x * m.y - n.y * m.x;
  if (turn == 0.0) return;
  if (turn > 0.0) n = {-n.x, -n.y}, m = {-m.x, -m.y};
  const double sx = n.x + m.x, sy = n.y + m.y, square = sx * sx + sy * sy, half = w / 2.0;
  // Where the outer edges meet; sharper turns than 11 degrees are cut off.
  constexpr double LIMIT = 0.0093;  // square of the sine of half of them
  const double stretch = square > 4.0 * half * half * LIMIT ? 2.0 * half * half / square : 0.0;
  const double bx = b.x, by = b.y;
  const Place corners[] = {
      {bx, by}, {bx + n.x, by + n.y}, {bx + stretch * sx, by + stretch * sy}, {bx + m.x, by + m.y}};
  const Place bevel[] = {corners[0], corners[1], corners[3]};
  if (stretch > 0.0) {
    fillReal(corners);
  } else {
    fillReal(bevel);
  }
}

void RasterPaint::segment(Pixel a, Pixel b, int w) {
  if (w <= 1) return thin(a, b);
  const int reach = w;
  if (std::max(a.y, b.y) + reach < clip.y0 || std::min(a.y, b.y) - reach > clip.y1) return;
  if (std::max(a.x, b.x) + reach < clip.x0 || std::min(a.x, b.x) - reach > clip.x1) return;
  wide(a, b, w);
}

void RasterPaint::line(std::span<const Pixel> points, int w, std::span<const std::uint8_t> dashes, bool round) {
  const bool solid = dashes.empty();
  if (solid) {
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
      segment(points[i], points[i + 1], w);
      if (w > 2 && round) dot(points[i], w);
      if (w > 1 && !round && i > 0) join(points[i - 1], points[i], points[i + 1], w);
    }
    if (w > 2 && round) dot(points.back(), w);
    return;
  }
  std::size_t dash = 0;
  float rest = dashes[0];
  int pieces = 0;
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const Pixel a = points[i], b = points[i + 1];
    const float length = std::hypot(static_cast<float>(b.x - a.x), static_cast<float>(b.y - a.y));
    float at = 0.0f;
    while (at < length && ++pieces < MAX_DASHES) {
      const float end = std::min(at + rest, length);
      const auto point = [&](float t) {
        return Pixel{a.x + static_cast<int>(std::lround(static_cast<float>(b.x - a.x) * t / length)),
                     a.y + static_cast<int>(std::lround(static_cast<float>(b.y - a.y) * t / length))};
      };
      // A thin dash, which has both its ends, stops one pixel before the gap.
      const float back = w <= 1 && end < length ? 1.0f : 0.0f;
      if (dash % 2 == 0) segment(point(at), point(std::max(at, end - back)), w);
      rest -= end - at;
      at = end;
      if (rest <= 0.0f) {
        dash = (dash + 1) % dashes.size();
        rest = dashes[dash];
      }
    }
  }
}

}  // namespace KYV
