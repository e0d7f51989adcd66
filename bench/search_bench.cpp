// The search for the latest file: time of one candidate name, in trees where nothing is found before the end.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "KYV/Date.h"
#include "KYV/Kyv.h"
#include "KYV/NameConv.h"
#include "KYV/NameConvFile.h"

namespace {

constexpr int PERIODS = 500;

// Directories without the files that are looked for; the last one has the file of the last period.
class Tree {
 public:
  Tree(int directories, int others) {
    std::string name = (std::filesystem::temp_directory_path() / "kyvbenchXXXXXX").string();
    root = mkdtemp(name.data());
    for (int i = 0; i < directories; ++i) {
      const std::string dir = root + "/" + std::to_string(i);
      std::filesystem::create_directory(dir);
      for (int k = 0; k < others; ++k) write(dir + "/FDR_N0Q_2024_05_02_" + std::to_string(100000 + k));
      list += (i ? ":" : "") + dir;
    }
    write(root + "/" + std::to_string(directories - 1) + "/TLX_N0Q_2024_05_02_03_41_07");
  }
  ~Tree() { std::filesystem::remove_all(root); }

  std::string list;

 private:
  static void write(const std::string& file) { std::ofstream(file) << std::string(200, 'x'); }
  std::string root;
};

void search(benchmark::State& state, const char* pattern) {
  KYV::Kyv::resrc.set("message", "none");
  const auto directories = static_cast<int>(state.range(0));
  const Tree tree(directories, static_cast<int>(state.range(1)));
  KYV::NameConv conv;
  conv.set(pattern);
  conv.setKey('i', "ktlx");
  conv.setKey('t', "N0Q");
  conv.setPath(tree.list.c_str());
  conv.setLateDate(KYV::Date(2024, 5, 2, 12, 0, 0.0f));
  KYV::NameConvFile file;
  for (auto _ : state) benchmark::DoNotOptimize(conv.setLatest("la", file));
  state.counters["names/s"] =
      benchmark::Counter(static_cast<double>(directories) * PERIODS, benchmark::Counter::kIsIterationInvariantRate);
}

}  // namespace

BENCHMARK_CAPTURE(search, status_calls, "%D/%i_%t_%Y_%m_%d_%h_%n")->Args({1, 1000})->Args({10, 1000});
BENCHMARK_CAPTURE(search, listing, "%D/%i_%t_%Y_%m_%d_%h_%n_%2?")->Args({1, 1000})->Args({10, 1000})->Args({10, 10000});
