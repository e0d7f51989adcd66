#ifndef KYV_RADIALARRAY_H
#define KYV_RADIALARRAY_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "KYV/NidsData.h"

namespace KYV {

// Gives radials their rows in the array of a record, which is of the radial kind.
class RadialArray {
 public:
  explicit RadialArray(NidsData& d)
      : data(d.data),
        width(static_cast<std::size_t>(d.nbin)),
        slots(d.nrad),
        step(360.0f / static_cast<float>(d.nrad)) {}

  static bool isAzimuth(float start) { return start >= 0.0f && start <= 360.0f; }
  // The row of the next radial, by its start (an azimuth): the nearest slot. A single slot skipped since the last
  // radial takes that one's values.
  std::span<float> next(float start) {
    const int slot = static_cast<int>(std::floor(start / step + 0.5f)) % slots;
    if (prev >= 0 && (slot - prev == 2 || slot - prev == 2 - slots)) {
      const std::span<float> from = row(prev);
      std::copy(from.begin(), from.end(), row((prev + 1) % slots).begin());
    }
    prev = slot;
    return row(slot);
  }

 private:
  std::span<float> row(int slot) const { return {data + static_cast<std::size_t>(slot) * width, width}; }

  float* data;
  std::size_t width;
  int slots;
  float step;  // degrees
  int prev = -1;
};

}  // namespace KYV
#endif
