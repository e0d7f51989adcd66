// nids_fuzz [-n flips] [-s seed] FILE|FOLDER...
//
// Reads each product cut at 200 places and with 5000 seeded random changes, in every form that it has: as it is, and
// with its bzip2 body unpacked, so that changes reach the packets and not the checksum. Reports, with what is needed
// to make it again, every input that takes more than a second or more memory than 512 MB; a crash leaves the input in
// the file that is named at the start.

#include <bzlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "KYV/Kyv.h"
#include "NidsDecode.h"

namespace {

using Bytes = std::vector<unsigned char>;

std::string inputName() {
  return (std::filesystem::temp_directory_path() / ("nids_fuzz." + std::to_string(getpid()))).string();
}

int writeFile(const std::string& name, const unsigned char* data, std::size_t n) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> f(std::fopen(name.c_str(), "wb"), std::fclose);
  if (!f) return 0;
  return n == 0 || (std::fwrite(data, 1, n, f.get()) == n && std::fflush(f.get()) == 0);
}

}  // namespace

#ifdef RADMAP_LIBFUZZER

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static const std::string name = inputName();
  KYV::Kyv::setMessageLevel(0);
  if (writeFile(name, data, size)) {
    decodeProduct(name.c_str(), false);
    decodeProduct(name.c_str(), true);
  }
  return 0;
}

#else

namespace {

constexpr double MAX_SECONDS = 1.0;
constexpr long MAX_KILOBYTES = 512L * 1024;
constexpr int CUTS = 200;
constexpr std::size_t FRONT = 400;  // bytes where headers stand; half of the changes go there
constexpr std::size_t MAX_UNPACKED = 8UL * 1024 * 1024;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool CHECK_MEMORY = false;  // its own memory counts
#else
constexpr bool CHECK_MEMORY = true;
#endif

struct Options {
  int flips = 5000;
  unsigned seed = 1;
};

long peakKilobytes() {
  rusage use{};
  getrusage(RUSAGE_SELF, &use);
  return use.ru_maxrss;
}

// 1 when the input was read within the limits.
int check(const std::string& name, const Bytes& content, const std::string& what) {
  static long reported = MAX_KILOBYTES;
  if (!writeFile(name, content.data(), content.size())) {
    std::fprintf(stderr, "nids_fuzz: cannot write %s\n", name.c_str());
    std::exit(2);
  }
  int good = 1;
  for (const bool pull : {false, true}) {
    const auto start = std::chrono::steady_clock::now();
    decodeProduct(name.c_str(), pull);
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (took > MAX_SECONDS) {
      std::printf("%s: %.2f seconds\n", what.c_str(), took);
      good = 0;
    }
  }
  if (CHECK_MEMORY && peakKilobytes() > reported) {
    reported = peakKilobytes();
    std::printf("%s: %ld kB\n", what.c_str(), reported);
    good = 0;
  }
  return good;
}

// The same product with its bzip2 body unpacked; empty when it has none.
Bytes unpack(const Bytes& from) {
  constexpr unsigned char BODY[] = {'B', 'Z', 'h'};
  const auto body = std::search(from.begin(), from.end(), std::begin(BODY), std::end(BODY));
  if (body == from.end()) return {};
  std::vector<char> input(body, from.end());
  std::vector<char> output(MAX_UNPACKED);
  unsigned n = static_cast<unsigned>(output.size());
  if (BZ2_bzBuffToBuffDecompress(output.data(), &n, input.data(), static_cast<unsigned>(input.size()), 0, 0) != BZ_OK) {
    return {};
  }
  Bytes to(from.begin(), body);
  to.insert(to.end(), output.begin(), output.begin() + n);
  return to;
}

int damage(const std::string& input, const std::string& label, const Bytes& whole, const Options& options) {
  int faults = 0;
  for (int i = 0; i < CUTS; i++) {
    const std::size_t n = whole.size() * static_cast<std::size_t>(i) / CUTS;
    faults += !check(input, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)},
                     label + " cut to " + std::to_string(n));
  }
  for (int i = 0; i < options.flips; i++) {
    std::mt19937 random(options.seed + static_cast<unsigned>(i));
    Bytes changed = whole;
    const unsigned count = 1 + random() % 8;
    for (unsigned k = 0; k < count && !changed.empty(); k++) {
      constexpr unsigned char EXTREMES[] = {0x00, 0xFF, 0x7F, 0x80, 0x01};
      const std::size_t range = random() % 2 ? changed.size() : std::min(changed.size(), FRONT);
      changed[random() % range] =
          random() % 2 ? static_cast<unsigned char>(random()) : EXTREMES[random() % std::size(EXTREMES)];
    }
    faults +=
        !check(input, changed, label + " changed with seed " + std::to_string(options.seed + static_cast<unsigned>(i)));
  }
  return faults;
}

}  // namespace

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  Options options;
  std::vector<fs::path> files;
  for (int i = 1; i < argc; i++) {
    if (std::strcmp(argv[i], "-n") == 0 && i + 1 < argc) {
      options.flips = std::atoi(argv[++i]);
    } else if (std::strcmp(argv[i], "-s") == 0 && i + 1 < argc) {
      options.seed = static_cast<unsigned>(std::atoi(argv[++i]));
    } else if (fs::is_directory(argv[i])) {
      for (const auto& entry : fs::directory_iterator(argv[i])) files.push_back(entry.path());
    } else {
      files.emplace_back(argv[i]);
    }
  }
  if (files.empty()) {
    std::fprintf(stderr, "usage: nids_fuzz [-n flips] [-s seed] FILE|FOLDER...\n");
    return 2;
  }
  std::sort(files.begin(), files.end());
  KYV::Kyv::setMessageLevel(0);
  const std::string input = inputName();
  std::printf("input in hand: %s\n", input.c_str());
  std::fflush(stdout);
  int faults = 0;
  for (const fs::path& path : files) {
    std::ifstream in(path, std::ios::binary);
    const Bytes whole{std::istreambuf_iterator<char>(in), {}};
    faults += damage(input, path.string(), whole, options);
    const Bytes unpacked = unpack(whole);
    if (!unpacked.empty()) faults += damage(input, path.string() + " (unpacked)", unpacked, options);
    std::printf("%s done\n", path.c_str());
    std::fflush(stdout);
  }
  fs::remove(input);
  std::printf("%d faults, peak %ld kB\n", faults, peakKilobytes());
  return faults ? 1 : 0;
}

#endif
