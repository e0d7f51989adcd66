// image_fuzz [-n flips] [-s seed] FILE|FOLDER...
//
// Reads each GIF or PNG file cut at 200 places and with 5000 seeded random changes, as a picture and as a frame of an
// animation. The changes reach the pixels of a PNG as well: its checksums are made right again for every second input.
// Reports, with what is needed to make it again, every input that takes more than a second or more memory than 512 MB;
// a crash leaves the input in the file that is named at the start.

#include <sys/resource.h>
#include <unistd.h>
#include <zlib.h>

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
#include <tuple>
#include <vector>

#include "KYV/GifFile.h"
#include "KYV/Image.h"
#include "KYV/ImageFile.h"
#include "KYV/Kyv.h"

namespace {

using Bytes = std::vector<unsigned char>;

std::string inputName() {
  return (std::filesystem::temp_directory_path() / ("image_fuzz." + std::to_string(getpid()))).string();
}

int writeFile(const std::string& name, const unsigned char* data, std::size_t n) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> f(std::fopen(name.c_str(), "wb"), std::fclose);
  if (!f) return 0;
  return n == 0 || (std::fwrite(data, 1, n, f.get()) == n && std::fflush(f.get()) == 0);
}

// Reads the file in every way and looks at what came out.
void decodeImage(const char* name) {
  KYV::Image image;
  KYV::ImageFile file;
  if (file.read(name, image)) {
    KYV::RGB rgb;
    image.getRGB(image.getWidth() - 1, image.getHeight() - 1, rgb);
    image.isPixelTrans(0, 0);
  }
  KYV::GifFile animation;
  if (animation.open("/dev/null", KYV::GifFile::WRITE)) std::ignore = animation.write(name);
}

}  // namespace

#ifdef RADMAP_LIBFUZZER

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static const std::string name = inputName();
  KYV::Kyv::setMessageLevel(0);
  if (writeFile(name, data, size)) decodeImage(name.c_str());
  return 0;
}

#else

namespace {

constexpr double MAX_SECONDS = 1.0;
constexpr long MAX_KILOBYTES = 512L * 1024;
constexpr int CUTS = 200;
constexpr std::size_t FRONT = 1000;   // bytes where headers and colours stand; half of the changes go there

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
    std::fprintf(stderr, "image_fuzz: cannot write %s\n", name.c_str());
    std::exit(2);
  }
  int good = 1;
  const auto start = std::chrono::steady_clock::now();
  decodeImage(name.c_str());
  const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (took > MAX_SECONDS) {
    std::printf("%s: %.2f seconds\n", what.c_str(), took);
    good = 0;
  }
  if (CHECK_MEMORY && peakKilobytes() > reported) {
    reported = peakKilobytes();
    std::printf("%s: %ld kB\n", what.c_str(), reported);
    good = 0;
  }
  return good;
}

// Gives every chunk of a PNG file the checksum of what it holds now.
void repair(Bytes& png) {
  constexpr unsigned char SIGNATURE[] = {0x89, 'P', 'N', 'G'};
  constexpr std::size_t HEAD = 8, FRAME = 12;  // signature; length, name and checksum of a chunk
  if (png.size() < HEAD || !std::equal(std::begin(SIGNATURE), std::end(SIGNATURE), png.begin())) return;
  for (std::size_t at = HEAD; png.size() - at >= FRAME;) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < 4; i++) length = length << 8 | png[at + i];
    if (length > png.size() - at - FRAME) return;
    const uLong sum = crc32(0, &png[at + 4], static_cast<uInt>(length + 4));
    at += length + FRAME;
    for (std::size_t i = 1; i <= 4; i++) png[at - i] = static_cast<unsigned char>(sum >> (8 * (i - 1)));
  }
}

int damage(const std::string& input, const std::string& label, const Bytes& whole, const Options& options) {
  int faults = 0;
  for (int i = 0; i < CUTS; i++) {
    const std::size_t n = whole.size() * static_cast<std::size_t>(i) / CUTS;
    faults += !check(input, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)},
                     label + " cut to " + std::to_string(n));
  }
  for (int i = 0; i < options.flips; i++) {
    const unsigned seed = options.seed + static_cast<unsigned>(i);
    std::mt19937 random(seed);
    Bytes changed = whole;
    const unsigned count = 1 + random() % 8;
    for (unsigned k = 0; k < count && !changed.empty(); k++) {
      constexpr unsigned char EXTREMES[] = {0x00, 0xFF, 0x7F, 0x80, 0x01};
      const std::size_t range = random() % 2 ? changed.size() : std::min(changed.size(), FRONT);
      changed[random() % range] =
          random() % 2 ? static_cast<unsigned char>(random()) : EXTREMES[random() % std::size(EXTREMES)];
    }
    if (seed % 2) repair(changed);
    faults += !check(input, changed, label + " changed with seed " + std::to_string(seed));
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
    std::fprintf(stderr, "usage: image_fuzz [-n flips] [-s seed] FILE|FOLDER...\n");
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
    std::printf("%s done\n", path.c_str());
    std::fflush(stdout);
  }
  fs::remove(input);
  std::printf("%d faults, peak %ld kB\n", faults, peakKilobytes());
  return faults ? 1 : 0;
}

#endif
