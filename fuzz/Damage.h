#ifndef RADMAP_FUZZ_DAMAGE_H
#define RADMAP_FUZZ_DAMAGE_H

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// What the fuzz programs share: NAME_fuzz [-n flips] [-s seed] FILE|FOLDER... reads each file cut at 200 places and
/// with 5000 seeded random changes. It reports, with what is needed to make it again, every input that takes more than
/// a second or more memory than 512 MB; a crash leaves the input in the file that is named at the start.
class Damage {
 public:
  using Bytes = std::vector<unsigned char>;

  /// @param program  its name
  /// @param reader   reads a file by its name, in one of its ways
  /// @param start    bytes where headers stand; half of the changes go there
  Damage(const char* program, std::vector<std::function<void(const char*)>> reader, std::size_t start)
      : name(program), readers(std::move(reader)), front(start) {
    input = (std::filesystem::temp_directory_path() / (name + "." + std::to_string(getpid()))).string();
  }

  /// Other forms of a file that are damaged as well, by what they are called; empty forms are left out.
  std::function<std::vector<std::pair<std::string, Bytes>>(const Bytes&)> forms;
  /// Puts right what a change has put wrong, for every second input.
  std::function<void(Bytes&)> repair;

  /// Reads one input; for fuzzers that bring their own.
  void readOne(const unsigned char* data, std::size_t size) {
    if (!writeInput(data, size)) return;
    for (const auto& read : readers) read(input.c_str());
  }

  int run(int argc, char** argv) {
    namespace fs = std::filesystem;
    std::vector<fs::path> files;
    for (int i = 1; i < argc; i++) {
      if (std::strcmp(argv[i], "-n") == 0 && i + 1 < argc) {
        flips = std::atoi(argv[++i]);
      } else if (std::strcmp(argv[i], "-s") == 0 && i + 1 < argc) {
        firstSeed = static_cast<unsigned>(std::atoi(argv[++i]));
      } else if (fs::is_directory(argv[i])) {
        for (const auto& entry : fs::directory_iterator(argv[i])) files.push_back(entry.path());
      } else {
        files.emplace_back(argv[i]);
      }
    }
    if (files.empty()) {
      std::fprintf(stderr, "usage: %s [-n flips] [-s seed] FILE|FOLDER...\n", name.c_str());
      return 2;
    }
    std::sort(files.begin(), files.end());
    std::printf("input in hand: %s\n", input.c_str());
    std::fflush(stdout);
    int faults = 0;
    for (const fs::path& path : files) {
      std::ifstream in(path, std::ios::binary);
      const Bytes whole{std::istreambuf_iterator<char>(in), {}};
      faults += damage(path.string(), whole);
      if (forms) {
        for (const auto& [label, form] : forms(whole)) {
          if (!form.empty()) faults += damage(path.string() + " (" + label + ")", form);
        }
      }
      std::printf("%s done\n", path.c_str());
      std::fflush(stdout);
    }
    fs::remove(input);
    std::printf("%d faults, peak %ld kB\n", faults, peakKilobytes());
    return faults ? 1 : 0;
  }

 private:
  static constexpr double MAX_SECONDS = 1.0;
  static constexpr long MAX_KILOBYTES = 512L * 1024;
  static constexpr int CUTS = 200;
#if defined(__SANITIZE_ADDRESS__)
  static constexpr bool CHECK_MEMORY = false;  // its own memory counts
#else
  static constexpr bool CHECK_MEMORY = true;
#endif

  static long peakKilobytes() {
    rusage use{};
    getrusage(RUSAGE_SELF, &use);
    return use.ru_maxrss;
  }

  bool writeInput(const unsigned char* data, std::size_t n) const {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> f(std::fopen(input.c_str(), "wb"), std::fclose);
    return f && (n == 0 || (std::fwrite(data, 1, n, f.get()) == n && std::fflush(f.get()) == 0));
  }

  // 1 when the input was read within the limits.
  int check(const Bytes& content, const std::string& what) {
    if (!writeInput(content.data(), content.size())) {
      std::fprintf(stderr, "%s: cannot write %s\n", name.c_str(), input.c_str());
      std::exit(2);
    }
    int good = 1;
    for (const auto& read : readers) {
      const auto start = std::chrono::steady_clock::now();
      read(input.c_str());
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

  int damage(const std::string& label, const Bytes& whole) {
    int faults = 0;
    for (int i = 0; i < CUTS; i++) {
      const std::size_t n = whole.size() * static_cast<std::size_t>(i) / CUTS;
      faults += !check({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)},
                       label + " cut to " + std::to_string(n));
    }
    for (int i = 0; i < flips; i++) {
      const unsigned seed = firstSeed + static_cast<unsigned>(i);
      std::mt19937 random(seed);
      Bytes changed = whole;
      const unsigned count = 1 + random() % 8;
      for (unsigned k = 0; k < count && !changed.empty(); k++) {
        constexpr unsigned char EXTREMES[] = {0x00, 0xFF, 0x7F, 0x80, 0x01};
        const std::size_t range = random() % 2 ? changed.size() : std::min(changed.size(), front);
        changed[random() % range] =
            random() % 2 ? static_cast<unsigned char>(random()) : EXTREMES[random() % std::size(EXTREMES)];
      }
      if (repair && seed % 2) repair(changed);
      faults += !check(changed, label + " changed with seed " + std::to_string(seed));
    }
    return faults;
  }

  std::string name;
  std::vector<std::function<void(const char*)>> readers;
  std::size_t front;
  std::string input;
  int flips = 5000;
  unsigned firstSeed = 1;
  long reported = MAX_KILOBYTES;
};

// The entry of a fuzz program, whose Damage a function makes.
#ifdef RADMAP_LIBFUZZER
#define RADMAP_FUZZ(makeDamage)                                                        \
  extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) { \
    static Damage damage = makeDamage();                                               \
    damage.readOne(data, size);                                                        \
    return 0;                                                                          \
  }
#else
#define RADMAP_FUZZ(makeDamage) \
  int main(int argc, char** argv) { return makeDamage().run(argc, argv); }
#endif

#endif
