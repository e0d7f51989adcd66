// The levels of an image as they stand in the product.
#include "KYV/NidsRaw.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "KYV/NidsFile.h"
#include "KYV/NidsRadial.h"
#include "NidsLimits.h"

namespace KYV {

namespace {

using Bytes = std::span<const unsigned char>;
using Row = std::span<std::int32_t>;

// Writes pairs of run and level into a row, cut at its end.
template <class Next>
void fill(Row row, std::size_t n, Next next) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < n && at < row.size(); ++i) {
    const auto [run, level] = next(i);
    const std::size_t end = std::min(at + run, row.size());
    std::fill(row.begin() + static_cast<std::ptrdiff_t>(at), row.begin() + static_cast<std::ptrdiff_t>(end), level);
    at = end;
  }
}

struct Run {
  std::size_t run;
  std::int32_t level;
};

void fillNibbles(Row row, Bytes line) {
  fill(row, line.size(), [line](std::size_t i) { return Run{static_cast<std::size_t>(line[i] >> 4), line[i] & 15}; });
}

void fillPairs(Row row, Bytes line) {
  fill(row, line.size() / 2, [line](std::size_t i) { return Run{line[2 * i], line[2 * i + 1]}; });
}

}  // namespace

int NidsFile::readLevels(NidsRaw& image) {
  image = NidsRaw();
  if (!opened) return 0;
  const bool radial = isPacketRadial();
  if (!radial && !isPacketRastor() && !isPacketDpa()) return 0;
  const int width = radial ? nbin : isPacketDpa() ? ncol : nx;
  const int most = radial ? std::min(nrad, MAX_RADIALS) : nrow;
  if (width < 1 || width > MAX_BINS || !spend(CELLS, std::int64_t{width} * most)) return 0;
  image.grid = !radial;
  image.width = width;
  image.first = radial ? bin0 : 0;
  NidsRadial radial_head;
  while (image.rows < most) {
    const int stat = radial ? readRadial(radial_head) : readRastor();
    if (stat <= 0) break;
    const int got = fetchLine();
    const Bytes encoded(line.data(), static_cast<std::size_t>(got));
    image.levels.resize(image.levels.size() + static_cast<std::size_t>(width), NidsRaw::NONE);
    const Row cells = Row(image.levels).last(static_cast<std::size_t>(width));
    if (radial) {
      float start = std::fmod(radial_head.ang0, 360.0f);
      if (start < 0.0f) start += 360.0f;
      image.rays.push_back({start, radial_head.ang1});
    }
    if (pk_code == 16) {
      std::copy_n(encoded.begin(), std::min(encoded.size(), cells.size()), cells.begin());
    } else if (isPacketDpa() || (isPacketRastor() && pack == 1)) {
      fillPairs(cells, encoded);
    } else {
      fillNibbles(cells, encoded);
    }
    ++image.rows;
    if (got < len) break;
  }
  noteImage(image.rows, most, !radial);
  return 1;
}

}  // namespace KYV
