// A picture of 900 by 600 pixels without a display, in its parts and as a whole cold process. Each part contains those
// above it, so that the differences tell what each costs: decode, map (the cells in pixels, given to a device that does
// nothing), fill (the same painted), all (with labels and colour bar), png (and written). The environment variable
// RADMAP_SAMPLES names a folder with real products, KTLX_N0Q_*.nids and KFTG_N0B_*.nids among them.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "KYV/Domain.h"
#include "KYV/Figure.h"
#include "KYV/Kyv.h"
#include "KYV/NidsData.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "KYV/PassiveDevice.h"
#include "KYV/RadMap.h"
#include "Products.h"

namespace {

constexpr float WIDTH = 900.0f;
constexpr float HEIGHT = 600.0f;
constexpr const char* PICTURE = "/tmp/radmap_picture_bench.png";

enum Part { DECODE, MAP, FILL, ALL, PNG };

// A surface that takes everything and shows nothing.
class Nothing : public KYV::PassiveDevice {
 public:
  using PassiveDevice::setClip;
  int init() override { return initSurface("", WIDTH, HEIGHT); }
  int setParam(const char*) override { return 1; }
  int open() override { return init(); }
  int close() override { return 1; }
  int setSize(float, float) override { return 1; }
  int getCoords(KYV::Rect& r) override { return r = getCoords(), 1; }
  KYV::Rect getCoords() override {
    KYV::Rect r;
    r.setu(0.0f, 0.0f, WIDTH - 1.0f, HEIGHT - 1.0f);
    return r;
  }
  int drawLine(int, float, float, float, float) override { return 1; }
  int drawLine(int, const KYV::Points&) override { return 1; }
  int drawFill(int, const KYV::Points&) override { return 1; }
  int drawImage(const KYV::Image&, float, float) override { return 1; }
  int drawImage(const KYV::Image&, int, float, float) override { return 1; }
  int setClip(float, float, float, float) override { return 1; }
};

// The sample whose name begins so, empty when there is none.
std::string findSample(const std::string& beginning) {
  const char* folder = std::getenv("RADMAP_SAMPLES");
  if (!folder) return {};
  std::error_code failed;
  for (const auto& entry : std::filesystem::directory_iterator(folder, failed)) {
    if (entry.path().filename().string().starts_with(beginning)) return entry.path().string();
  }
  return {};
}

void prepare(const std::string& file) {
  KYV::Kyv::setMessageLevel(0);
  KYV::Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
  KYV::Kyv::setResrc("filename", file.c_str());
  KYV::Kyv::setResrc("geometry", "900x600");
  KYV::Kyv::setResrc("device", "raster");
}

bool decode(const std::string& file) {
  KYV::NidsFile nids;
  KYV::NidsInfo info;
  KYV::NidsData data;
  return nids.open(file.c_str()) && nids.readHeader(info) && nids.readData(data);
}

bool draw(Part part) {
  KYV::Kyv::setResrc("draw", part <= FILL ? "plot" : "all");
  KYV::RadMap radar;
  radar.setFilename();
  radar.setMap(part > FILL);
  KYV::Domain domain;
  radar.getDomain(domain);
  KYV::Figure figure;
  if (!figure.open()) return false;
  KYV::Plot& plot = figure.getPlot();
  if (part == MAP) {
    plot.getGraph().setDevice(std::make_unique<Nothing>());
    if (!plot.getGraph().open()) return false;
    plot.initPanel();
  }
  figure.startPlot(domain);
  figure.addDrawing(radar);
  figure.endPlot();
  return part != PNG || plot.saveImage(PICTURE, "PNG");
}

void runPart(benchmark::State& state, Part part, const std::string& file) {
  if (file.empty()) return state.SkipWithError("no such sample");
  prepare(file);
  for (auto _ : state) {
    if (!(part == DECODE ? decode(file) : draw(part))) return state.SkipWithError("failed");
  }
}

void runSample(benchmark::State& state, Part part, const char* beginning) {
  runPart(state, part, findSample(beginning));
}

void runMade(benchmark::State& state, Part part) {
  const BenchFile file(makeProduct(Kind::Bytes1840));
  runPart(state, part, file.getName());
}

// The program itself, from its start to its end.
// @param exact  "yes" draws what the radar measured
void runProcess(benchmark::State& state, const std::string& file, const char* exact) {
  if (file.empty()) return state.SkipWithError("no such sample");
  long most = 0;
  for (auto _ : state) {
    const pid_t child = fork();
    if (child == 0) {
      const std::string data = RADMAP_SOURCE_DIR "/data";
      execl(RADMAP_EXE, "radmap", "-me", "none", "-fp", data.c_str(), "-de", "raster", "-ge", "900x600", "-exact",
            exact, "-ou", PICTURE, file.c_str(), static_cast<char*>(nullptr));
      _exit(1);
    }
    int status = 0;
    rusage usage = {};
    if (wait4(child, &status, 0, &usage) < 0 || status != 0) return state.SkipWithError("failed");
    most = std::max(most, usage.ru_maxrss);
  }
  state.counters["MB"] = static_cast<double>(most) / 1024.0;
}

void runProcessSample(benchmark::State& state, const char* beginning, const char* exact) {
  runProcess(state, findSample(beginning), exact);
}

void runProcessMade(benchmark::State& state) {
  const BenchFile file(makeProduct(Kind::Bytes1840));
  runProcess(state, file.getName(), "no");
}

#define PICTURE_PARTS(run, name, ...)                                                                        \
  BENCHMARK_CAPTURE(run, name##_1_decode, DECODE __VA_OPT__(, ) __VA_ARGS__)->Unit(benchmark::kMillisecond); \
  BENCHMARK_CAPTURE(run, name##_2_map, MAP __VA_OPT__(, ) __VA_ARGS__)->Unit(benchmark::kMillisecond);       \
  BENCHMARK_CAPTURE(run, name##_3_fill, FILL __VA_OPT__(, ) __VA_ARGS__)->Unit(benchmark::kMillisecond);     \
  BENCHMARK_CAPTURE(run, name##_4_all, ALL __VA_OPT__(, ) __VA_ARGS__)->Unit(benchmark::kMillisecond);       \
  BENCHMARK_CAPTURE(run, name##_5_png, PNG __VA_OPT__(, ) __VA_ARGS__)->Unit(benchmark::kMillisecond)

PICTURE_PARTS(runSample, KTLX_N0Q, "KTLX_N0Q");
PICTURE_PARTS(runSample, KFTG_N0B, "KFTG_N0B");
PICTURE_PARTS(runMade, filled_720x1840);
#define PICTURE_PROCESS(name)                                                                           \
  BENCHMARK_CAPTURE(runProcessSample, name, #name, "no")->Unit(benchmark::kMillisecond)->UseRealTime(); \
  BENCHMARK_CAPTURE(runProcessSample, name##_exact, #name, "yes")->Unit(benchmark::kMillisecond)->UseRealTime()

PICTURE_PROCESS(KTLX_N0Q);
PICTURE_PROCESS(KFTG_N0B);
PICTURE_PROCESS(KLZK_H0W);
PICTURE_PROCESS(KLOT_DTA);
BENCHMARK(runProcessMade)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
