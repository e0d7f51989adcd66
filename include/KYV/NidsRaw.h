#ifndef KYV_NIDSRAW_H
#define KYV_NIDSRAW_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KYV {

/// An image's levels as they stand in the product: nothing is scaled, and every radial has its own angles.
struct NidsRaw {
  struct Ray {
    float start;  // degrees from north, clockwise, 0 to 360
    float width;  // degrees
  };
  static constexpr int NONE = -1;          // a bin or cell that the product says nothing of
  static constexpr int MAX_LEVEL = 65535;  // more than two bytes are no level

  bool grid = false;                 // rows of cells from the north-west, else radials
  int width = 0;                     // bins of a radial, cells of a row
  int first = 0;                     // range bins between the radar and the first one of a radial
  float bin = 0.0f;                  // metres between bins where the packet tells, else 0
  std::vector<Ray> rays;             // of radials
  int rows = 0;                      // of a grid, or radials
  std::vector<std::int32_t> levels;  // row by row

  int get(int row, int column) const {
    return levels[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) + static_cast<std::size_t>(column)];
  }
};

}  // namespace KYV
#endif
