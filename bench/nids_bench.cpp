// Reading of a product: header, packets and data into an array, and what the decompression alone takes.
#include <benchmark/benchmark.h>

#include "KYV/BZlib.h"
#include "KYV/Kyv.h"
#include "KYV/NidsData.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "Products.h"

namespace {

void readProduct(benchmark::State& state, Kind kind) {
  const BenchProduct product = makeProduct(kind);
  const BenchFile file(product);
  KYV::Kyv::setMessageLevel(0);
  KYV::NidsFile nids;
  KYV::NidsData data;
  while (state.KeepRunning()) {
    KYV::NidsInfo info;
    if (!nids.open(file.getName()) || !nids.readHeader(info)) return state.SkipWithError("not readable");
    nids.readData(data);
    benchmark::DoNotOptimize(data.data);
  }
  const double runs = static_cast<double>(state.iterations());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(product.builder.message().size()));
  state.counters["bins/s"] = benchmark::Counter(runs * product.rows * product.cells, benchmark::Counter::kIsRate);
}

// The same body through the decompressor, into a buffer as large as it.
void inflateBody(benchmark::State& state, Kind kind) {
  constexpr std::size_t DESCRIPTION_END = 120;
  const BenchProduct product = makeProduct(kind);
  const NidsBuilder::Bytes message = product.builder.message();
  NidsBuilder::Bytes packed =
      NidsBuilder::bzip2Stream(NidsBuilder::Bytes(message.begin() + DESCRIPTION_END, message.end()));
  NidsBuilder::Bytes body(message.size());
  while (state.KeepRunning()) {
    KYV::BZlib bz;
    bz.setIn(packed.data(), static_cast<int>(packed.size()));
    bz.setOut(body.data(), static_cast<int>(body.size()));
    benchmark::DoNotOptimize(bz.decomp());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(message.size()));
}

BENCHMARK_CAPTURE(readProduct, runs_360x230, Kind::Runs230)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(readProduct, raster_464x464, Kind::Raster464)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(readProduct, bytes_360x460, Kind::Bytes460)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(inflateBody, bytes_360x460, Kind::Bytes460)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(readProduct, bytes_720x1840, Kind::Bytes1840)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(inflateBody, bytes_720x1840, Kind::Bytes1840)->Unit(benchmark::kMicrosecond);

}  // namespace
