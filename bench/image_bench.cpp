#include <benchmark/benchmark.h>
#include <cmath>
#include <filesystem>
#include <string>

#include "KYV/GifFile.h"
#include "KYV/Image.h"

// Image files of a plot's size: radials in sixteen colours under thin map lines.

namespace {

constexpr int WIDTH = 900;
constexpr int HEIGHT = 600;

KYV::Image makeMap() {
  KYV::Image image;
  image.set(WIDTH, HEIGHT, 8);
  image.allocData();
  image.allocColors(20);
  for (int i = 0; i < 20; ++i) image.setColorVal(i, static_cast<std::uint32_t>(i) * 0x0C0B0Au);
  for (int y = 0; y < HEIGHT; ++y) {
    for (int x = 0; x < WIDTH; ++x) {
      const double dx = x - WIDTH * 0.5, dy = y - HEIGHT * 0.5, range = std::hypot(dx, dy);
      const int radial = static_cast<int>((std::atan2(dy, dx) + 3.2) * 57.3), bin = static_cast<int>(range) / 2;
      int color = 0;
      if (range < 280.0) color = (radial * 7 + bin * bin / 40 + radial * bin / 900) % 97 % 16;
      if (std::fabs(dy - 60.0 * std::sin(dx / 70.0)) < 1.0 || (x + 3 * y) % 331 == 0) color = 17;
      image.setPixel(x, y, static_cast<std::uint32_t>(color));
    }
  }
  return image;
}

// The file's bytes are counted, so that a smaller file does not look slow.
class Scratch {
 public:
  explicit Scratch(const char* suffix)
      : path(std::filesystem::temp_directory_path() / (std::string("kyv_image_bench.") + suffix)) {}
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  std::string name() const { return path.string(); }
  double size() const { return static_cast<double>(std::filesystem::file_size(path)); }

 private:
  std::filesystem::path path;
};

template <class File>
void writeFile(benchmark::State& state, const char* suffix) {
  const KYV::Image image = makeMap();
  const Scratch scratch(suffix);
  while (state.KeepRunning()) {
    File file;
    if (!file.open(scratch.name().c_str(), File::WRITE) || !file.write(image) || !file.close()) {
      return state.SkipWithError("cannot write");
    }
  }
  state.SetItemsProcessed(state.iterations() * WIDTH * HEIGHT);
  state.counters["file"] = scratch.size();
}

template <class File>
void readFile(benchmark::State& state, const char* suffix) {
  const Scratch scratch(suffix);
  KYV::Image image = makeMap();
  File file;
  if (!file.open(scratch.name().c_str(), File::WRITE) || !file.write(image) || !file.close()) {
    return state.SkipWithError("cannot write");
  }
  while (state.KeepRunning()) {
    if (!file.open(scratch.name().c_str(), File::READ) || !file.read(image)) return state.SkipWithError("cannot read");
  }
  state.SetItemsProcessed(state.iterations() * WIDTH * HEIGHT);
}

// A direct image, in its own colours or in more than a table holds.
void reduceColors(benchmark::State& state) {
  const bool many = state.range(0) != 0;
  const KYV::Image map = makeMap();
  KYV::Image direct;
  direct.set(WIDTH, HEIGHT, 24);
  direct.allocData();
  for (int y = 0; y < HEIGHT; ++y) {
    for (int x = 0; x < WIDTH; ++x) {
      const std::uint32_t smooth =
          static_cast<std::uint32_t>((x * 255 / WIDTH) << 16 | (y * 255 / HEIGHT) << 8 | (x ^ y) % 97);
      direct.setPixel(x, y, many ? smooth : map.getPixel(x, y));
    }
  }
  while (state.KeepRunning()) {
    KYV::Image image = direct;
    if (!image.reduceColors()) return state.SkipWithError("cannot reduce");
  }
}

void writeGif(benchmark::State& state) { writeFile<KYV::GifFile>(state, "gif"); }
void readGif(benchmark::State& state) { readFile<KYV::GifFile>(state, "gif"); }

BENCHMARK(writeGif)->Unit(benchmark::kMillisecond);
BENCHMARK(readGif)->Unit(benchmark::kMillisecond);
BENCHMARK(reduceColors)->ArgName("many")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
