#ifndef RADMAP_BENCH_PRODUCTS_H
#define RADMAP_BENCH_PRODUCTS_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "NidsBuilder.h"

/// The products that the benchmarks read: every bin or cell of them is filled.
enum class Kind { Runs230, Bytes460, Bytes1840, Raster464 };

struct BenchProduct {
  NidsBuilder builder;
  int rows;   // radials, or rows of a grid
  int cells;  // in a row
};

inline std::vector<int> benchLevels() {
  std::vector<int> levels = {0x8000};
  for (int i = 1; i < 16; ++i) levels.push_back(5 * i);  // dBZ
  return levels;
}

// Runs of five levels after each other, as weather has them.
inline std::vector<NidsBuilder::Run> benchRuns(int row, int cells) {
  std::vector<NidsBuilder::Run> runs;
  for (int at = 0; at < cells; at += 5) runs.push_back({cells - at < 5 ? cells - at : 5, 1 + (row / 20 + at / 5) % 15});
  return runs;
}

inline BenchProduct makeBytes(int code, int radials, int bins) {
  BenchProduct p{NidsBuilder(), radials, bins};
  p.builder.header(code).thresholds({-320, 5, 254}).digital(bins);
  const float step = 360.0f / static_cast<float>(radials);
  // The last bits of a level are noise, which is what the compression has to carry.
  unsigned noise = 1;
  for (int i = 0; i < radials; ++i) {
    NidsBuilder::Bytes levels;
    for (int j = 0; j < bins; ++j) {
      noise = noise * 1664525u + 1013904223u;
      levels.push_back(static_cast<unsigned char>(80 + (i / 8 + j / 16) % 120 + (noise >> 30)));
    }
    p.builder.digitalRadial(step * static_cast<float>(i), step, levels);
  }
  p.builder.body(NidsBuilder::Body::Bzip2);
  return p;
}

inline BenchProduct makeProduct(Kind kind) {
  switch (kind) {
    case Kind::Bytes460:
      return makeBytes(94, 360, 460);
    case Kind::Bytes1840:
      return makeBytes(153, 720, 1840);
    case Kind::Raster464: {
      BenchProduct p{NidsBuilder(), 464, 464};
      p.builder.header(37).thresholds(benchLevels()).raster(0xBA07);
      for (int r = 0; r < p.rows; ++r) p.builder.gridRow(benchRuns(r, p.cells));
      return p;
    }
    case Kind::Runs230:
      break;
  }
  BenchProduct p{NidsBuilder(), 360, 230};
  p.builder.header(19).thresholds(benchLevels()).radials(p.cells);
  for (int i = 0; i < p.rows; ++i) p.builder.radial(static_cast<float>(i), 1.0f, benchRuns(i, p.cells));
  return p;
}

/// A product as a file of its own, removed with the object.
class BenchFile {
 public:
  explicit BenchFile(const BenchProduct& product) {
    const char* folder = std::getenv("TMPDIR");
    name = std::string(folder ? folder : "/tmp") + "/radmap-bench-" + std::to_string(product.cells) + ".nids";
    if (!product.builder.write(name.c_str())) name.clear();
  }
  ~BenchFile() { std::remove(name.c_str()); }
  BenchFile(const BenchFile&) = delete;
  BenchFile& operator=(const BenchFile&) = delete;
  const char* getName() const { return name.c_str(); }

 private:
  std::string name;
};

#endif
