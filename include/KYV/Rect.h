#ifndef KYV_RECT_H
#define KYV_RECT_H

namespace KYV {

/// A rectangle given by two corners.
struct Rect {
  float xmin = 0.0f;
  float ymin = 0.0f;
  float xmax = 0.0f;
  float ymax = 0.0f;

  constexpr Rect() = default;
  /// The corners are put in order, so that xmin <= xmax and ymin <= ymax.
  constexpr Rect(float x1, float y1, float x2, float y2) { set(x1, y1, x2, y2); }

  /// As the constructor.
  constexpr void set(float x1, float y1, float x2, float y2) {
    xmin = x1 < x2 ? x1 : x2, xmax = x1 < x2 ? x2 : x1;
    ymin = y1 < y2 ? y1 : y2, ymax = y1 < y2 ? y2 : y1;
  }
  /// Stores the corners as given, for surfaces whose y grows downward.
  constexpr void setu(float x1, float y1, float x2, float y2) { xmin = x1, ymin = y1, xmax = x2, ymax = y2; }

  constexpr float width() const { return xmax - xmin; }
  constexpr float height() const { return ymax - ymin; }
  /// "(%f,%f)-(%f,%f)\n" on standard output.
  int print() const;
};

}  // namespace KYV
#endif
