#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>

#include "KYV/Points.h"
#include "KYV/Postscript.h"

// Filled cells of a radar image: five points each, as a radial product gives them.

namespace {

void drawCells(benchmark::State& state, const std::string& file) {
  const bool changing = state.range(0) != 0;
  KYV::Postscript ps;
  ps.setParam((file + ",color").c_str());
  if (!ps.open()) return state.SkipWithError("cannot open the output file");
  KYV::Points cell;
  for (int i = 0; i < 5; ++i) cell.add(0.0f, 0.0f);
  float angle = 0.0f;
  int color = 0x336699;
  while (state.KeepRunning()) {
    angle += 0.01f;
    const float x = 378.0f + 250.0f * angle / (1.0f + angle), y = 288.0f - 200.0f / (1.0f + angle);
    cell.set(0, x, y);
    cell.set(1, x + 1.13f, y + 0.27f);
    cell.set(2, x + 1.41f, y + 1.53f);
    cell.set(3, x + 0.22f, y + 1.39f);
    cell.set(4, x, y);
    if (changing) color = (color + 0x10305) & 0xFFFFFF;
    ps.setColor(3, color);
    ps.drawFill(3, cell);
  }
  ps.close();
  state.SetItemsProcessed(state.iterations());
}

void toNull(benchmark::State& state) { drawCells(state, "/dev/null"); }

void toFile(benchmark::State& state) {
  namespace fs = std::filesystem;
  const fs::path file = fs::temp_directory_path() / "kyv_bench.ps";
  drawCells(state, file.string());
  std::error_code failed;
  const auto size = fs::file_size(file, failed);
  if (!failed) state.SetBytesProcessed(static_cast<std::int64_t>(size));
  fs::remove(file, failed);
}

BENCHMARK(toNull)->ArgName("changing")->Arg(0)->Arg(1);
BENCHMARK(toFile)->ArgName("changing")->Arg(0)->Arg(1)->Iterations(200000);

}  // namespace
