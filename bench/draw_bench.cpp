// A whole page: product file to PostScript, polygons a second.
#include <benchmark/benchmark.h>

#include "KYV/Domain.h"
#include "KYV/Figure.h"
#include "KYV/Kyv.h"
#include "KYV/RadMap.h"
#include "Products.h"

namespace {

// Page after page to /dev/null, in the radar's own projection or another one.
void drawPage(benchmark::State& state, Kind kind, const char* domainText) {
  const BenchProduct product = makeProduct(kind);
  const BenchFile file(product);
  KYV::Kyv::setMessageLevel(0);
  KYV::Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
  KYV::Kyv::setResrc("filename", file.getName());
  KYV::Kyv::setResrc("device", "postscript,/dev/null,color");
  while (state.KeepRunning()) {
    KYV::RadMap radar;
    radar.setFilename();
    KYV::Domain domain;
    if (!domainText || !domain.set(domainText)) radar.getDomain(domain);
    KYV::Figure figure;
    if (!figure.open()) return state.SkipWithError("no device");
    figure.startPlot(domain);
    figure.addDrawing(radar);
    figure.endPlot();
    figure.close();
  }
  state.counters["polygons/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * product.rows * product.cells, benchmark::Counter::kIsRate);
}

constexpr const char* LATLON = "ll,35.333,-97.278,41,33,0.25,0.25";

BENCHMARK_CAPTURE(drawPage, runs_360x230, Kind::Runs230, nullptr)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawPage, raster_464x464, Kind::Raster464, nullptr)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawPage, bytes_360x460, Kind::Bytes460, nullptr)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawPage, bytes_720x1840, Kind::Bytes1840, nullptr)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawPage, bytes_720x1840_latlon, Kind::Bytes1840, LATLON)->Unit(benchmark::kMillisecond);

}  // namespace
