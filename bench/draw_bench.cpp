// A whole page: product file to PostScript, cells a second.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "KYV/Domain.h"
#include "KYV/Figure.h"
#include "KYV/Kyv.h"
#include "KYV/RadMap.h"
#include "NidsBuilder.h"

namespace {

// A product with every bin filled: half-degree radials of 8-bit levels, or one-degree radials of run-length levels.
std::string makeProduct(bool digital, int bins) {
  NidsBuilder b;
  if (digital) {
    b.header(153).thresholds({-320, 5, 254}).digital(bins);
    for (int i = 0; i < 720; ++i) {
      NidsBuilder::Bytes levels;
      for (int j = 0; j < bins; ++j) levels.push_back(static_cast<unsigned char>(80 + (i / 8 + j / 16) % 130));
      b.digitalRadial(0.5f * static_cast<float>(i), 0.5f, levels);
    }
    b.body(NidsBuilder::Body::Bzip2);
  } else {
    std::vector<int> levels = {0x8000};
    for (int i = 1; i < 16; ++i) levels.push_back(5 * i);
    b.header(19).thresholds(levels).radials(bins);
    for (int i = 0; i < 360; ++i) {
      std::vector<NidsBuilder::Run> runs;
      for (int j = 0; j < bins; j += 5) runs.push_back({5, 1 + (i / 20 + j / 5) % 15});
      b.radial(static_cast<float>(i), 1.0f, runs);
    }
  }
  const std::string file = std::string(std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp") + "/radmap-bench.nids";
  return b.write(file.c_str()) ? file : "";
}

// Page after page to /dev/null, in the radar's own projection or another one.
void drawPage(benchmark::State& state, bool digital, int bins, const char* domainText) {
  const std::string file = makeProduct(digital, bins);
  KYV::Kyv::setMessageLevel(0);
  KYV::Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
  KYV::Kyv::setResrc("device", "postscript,/dev/null,color");
  KYV::Kyv::setResrc("filename", file.c_str());
  for (auto _ : state) {
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
  const int radials = digital ? 720 : 360;
  state.counters["cells/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * radials * bins, benchmark::Counter::kIsRate);
  std::remove(file.c_str());
}

constexpr const char* LATLON = "ll,35.333,-97.278,41,33,0.25,0.25";

BENCHMARK_CAPTURE(drawPage, runs_230, false, 230, nullptr)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawPage, bytes_1840, true, 1840, nullptr)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawPage, bytes_1840_other_projection, true, 1840, LATLON)->Unit(benchmark::kMillisecond);

}  // namespace
