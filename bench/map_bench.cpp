// The default background by the size of the map, without a display: maps of many heights around a radar, with what each
// draws. Culling must make the cost follow what is in view.
#include <benchmark/benchmark.h>

#include <string>

#include "KYV/Domain.h"
#include "KYV/EarthPoints.h"
#include "KYV/Kyv.h"
#include "KYV/MapFile.h"
#include "KYV/MapPlot.h"
#include "KYV/Plot.h"

namespace {

constexpr const char* DATA = RADMAP_SOURCE_DIR "/data";

// A surface of 900 by 600 pixels whose map is so many km high.
class Surface {
 public:
  explicit Surface(long km) {
    KYV::Kyv::setMessageLevel(0);
    KYV::Kyv::setDatabasePath(DATA);
    KYV::Kyv::setResrc("device", "raster");
    KYV::Kyv::setResrc("geometry", "900x600");
    good = plot.open() != 0;
    char domain[80];
    KYV::StrLib::printf(domain, "ps:90:-97.28,35.33,-97.28,%ld,%ld,0.01,0.01", km * 3 / 2, km);
    plot.setPanel();
    plot.setDomain(KYV::Domain(domain));
  }
  KYV::Plot plot;
  bool good = false;
};

void drawDefault(benchmark::State& state) {
  Surface surface(state.range(0));
  if (!surface.good) return state.SkipWithError("no device");
  for (auto _ : state) {
    KYV::MapPlot layer("default");
    layer.draw(surface.plot);
  }
}

// One file: the segments passed over and those drawn.
void drawCounties(benchmark::State& state) {
  Surface surface(state.range(0));
  if (!surface.good) return state.SkipWithError("no device");
  const std::string file = std::string(DATA) + "/maps/us_counties.map";
  for (auto _ : state) {
    KYV::MapPlot layer;
    layer.draw(surface.plot, file.c_str());
  }
  constexpr double SEGMENTS = 8113.0;
  state.counters["segments/s"] = benchmark::Counter(SEGMENTS, benchmark::Counter::kIsIterationInvariantRate);
}

void readFile(benchmark::State& state, const char* name) {
  const std::string file = std::string(DATA) + "/maps/" + name;
  double segments = 0.0, points = 0.0;
  for (auto _ : state) {
    KYV::MapFile map;
    if (!map.open(file.c_str())) return state.SkipWithError("no map");
    KYV::MapFileHeader header;
    KYV::EarthPoints list;
    while (map.readHeader(header) > 0) {
      map.readData(list);
      segments += 1.0;
      points += list.getNum();
    }
  }
  state.counters["segments/s"] = benchmark::Counter(segments, benchmark::Counter::kIsRate);
  state.counters["points/s"] = benchmark::Counter(points, benchmark::Counter::kIsRate);
}

BENCHMARK(drawDefault)
    ->Arg(50)
    ->Arg(100)
    ->Arg(200)
    ->Arg(460)
    ->Arg(920)
    ->Arg(1800)
    ->Arg(4000)
    ->Arg(12000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(drawCounties)
    ->Arg(50)
    ->Arg(100)
    ->Arg(200)
    ->Arg(460)
    ->Arg(920)
    ->Arg(1800)
    ->Arg(4000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, us_counties, "us_counties.map")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, coast, "coast.map")->Unit(benchmark::kMillisecond);

}  // namespace
