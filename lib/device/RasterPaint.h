#ifndef KYV_RASTERPAINT_H
#define KYV_RASTERPAINT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace KYV {

/// Paints whole pixels as an X server does: polygons, lines, dashes, patterns. Knows no devices; a picture has one or
/// three bytes a pixel, row 0 on top.
class RasterPaint {
 public:
  struct Pixel {
    int x, y;
  };
  struct Box {
    int x0, y0, x1, y1;  // edges included
  };

  /// The picture that is painted.
  void setTarget(unsigned char* pixels, int w, int h, int bytes);
  void setClip(const Box& box) { clip = box; }
  const Box& getClip() const { return clip; }
  /// The bytes of the pixels painted from now on.
  void setInk(std::uint32_t value) { ink = value; }
  /// The pattern of what is painted, null for all of it.
  void setPattern(const std::array<std::uint8_t, 8>* rows) { pattern = rows; }

  /// A polygon with its outline.
  void fill(std::span<const Pixel> points);
  /// A polyline; width 0 and 1 are thin.
  void line(std::span<const Pixel> points, int width, std::span<const std::uint8_t> dashes, bool round);
  void rect(const Box& box);

 private:
  static constexpr int FEW_ROWS = 32;
  struct Run {
    int from, to;
  };

  void span(int y, int x0, int x1);
  void thin(Pixel a, Pixel b);
  struct Place {
    double x, y;
  };

  void fillReal(std::span<const Place> corners);
  static Place across(Pixel a, Pixel b, int width);
  void wide(Pixel a, Pixel b, int width);
  void join(Pixel a, Pixel b, Pixel c, int width);
  void dot(Pixel p, int width);
  void segment(Pixel a, Pixel b, int width);
  static bool isConvex(std::span<const Pixel> points);
  void fillConvex(std::span<const Pixel> points, int top, int bottom);
  void fillAny(std::span<const Pixel> points);
  static void mark(Pixel a, Pixel b, int top, int num, Run* runs);

  unsigned char* data = nullptr;
  int width = 0;
  int height = 0;
  int depth = 1;  // bytes a pixel
  Box clip{};
  std::uint32_t ink = 0;
  const std::array<std::uint8_t, 8>* pattern = nullptr;
  std::vector<Run> many;  // rows of a large convex polygon
  std::vector<int> crossings;
};

}  // namespace KYV
#endif
