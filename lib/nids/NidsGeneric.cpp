#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "KYV/Const.h"
#include "KYV/Kyv.h"
#include "KYV/NidsData.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsRaw.h"
#include "NidsLimits.h"
#include "NidsRead.h"
#include "NidsSource.h"
#include "ProductTable.h"
#include "RadialArray.h"

namespace KYV {

namespace {

constexpr int WORD = 4;  // bytes: everything in the packet is a multiple of it
constexpr int RADIAL_COMPONENT = 1;
constexpr int MAX_COMPONENTS = 100;
constexpr int MAX_PARAMETERS = 1000;
constexpr float METRES = 1000.0f;  // in a kilometre
constexpr float MAX_BIN = 100.0f;  // kilometres

// The external data representation (RFC 4506) of a packet: words, floats, texts that are padded to words. After the
// end or a count that is too large, nothing more is good.
class Xdr {
 public:
  // @param length  bytes of the packet
  Xdr(NidsFile& from, int length) : file(from), left(length) {}

  explicit operator bool() const { return good; }
  bool read(unsigned char* to, int n) {
    good = good && n >= 0 && n <= left && file.readBytes(to, n) == 1;
    if (good) left -= n;
    return good;
  }
  int word() {
    std::array<unsigned char, WORD> b{};
    return read(b.data(), WORD) ? toWord(b.data()) : 0;
  }
  float real() { return std::bit_cast<float>(word()); }
  void skip(int words) { read(nullptr, words * WORD); }
  int count(int limit) {
    const int n = word();
    good = good && n >= 0 && n <= limit;
    return good ? n : 0;
  }
  // Its first characters.
  std::string_view text() {
    const int n = count(left);
    const int kept = std::min(n, static_cast<int>(characters.size()));
    read(characters.data(), kept);
    read(nullptr, (n + WORD - 1) / WORD * WORD - kept);
    return {reinterpret_cast<const char*>(characters.data()), static_cast<std::size_t>(kept)};
  }
  // A list tells its length a second time when it has elements.
  int list(int limit) {
    const int n = count(limit);
    if (n > 0 && word() != n) good = false;
    return good ? n : 0;
  }
  // Names and values.
  void skipParameters() {
    for (int n = 2 * list(MAX_PARAMETERS); n > 0 && good; n--) text();
  }
  static int toWord(const unsigned char* b) {
    return static_cast<int>(static_cast<std::uint32_t>(b[0]) << 24 | static_cast<std::uint32_t>(b[1]) << 16 |
                            static_cast<std::uint32_t>(b[2]) << 8 | b[3]);
  }

 private:
  NidsFile& file;
  int left;
  bool good = true;
  std::array<unsigned char, 100> characters{};
};

// Passes over the product description; false when its components cannot be read.
bool skipDescription(Xdr& xdr) {
  xdr.text();   // name
  xdr.text();   // description
  xdr.skip(3);  // product code, type, time of generation
  xdr.text();   // radar
  // Latitude, longitude, height; times of the volume and elevation scan; elevation angle, volume number, mode, volume
  // coverage pattern, elevation number.
  xdr.skip(10);
  const int compression = xdr.word();
  xdr.skip(1);  // size before compression
  xdr.skipParameters();
  return xdr && compression == 0;
}

}  // namespace

// Reads the radial component: calls begin(radials, bins, kilometres of a bin) for the first radial, which may be
// refused, and take(start, width, words of the bins) for every one, as long as it answers true. Whether there was one.
template <class Begin, class Take>
bool NidsFile::readComponent(Begin begin, Take take) {
  short spare = 0;
  int length = 0;
  if (!opened || pk_code != GENERIC || !readFields(*this, spare, length)) return false;
  pk_code = 0;  // the packet is read once
  Xdr xdr(*this, std::clamp(length, 0, MAX_BODY));
  if (!skipDescription(xdr) || xdr.list(MAX_COMPONENTS) < 1) return false;
  const int present = xdr.word();
  if (present != 1 || xdr.word() != RADIAL_COMPONENT) return false;
  xdr.text();  // description of the component
  const float bin_km = xdr.real() / METRES;
  xdr.skip(1);  // range of the first bin's middle
  xdr.skipParameters();
  const int radials = xdr.list(MAX_RADIALS);
  if (!xdr || radials < 1) return false;

  bool begun = false;
  int n = 0;
  for (; n < radials; n++) {
    const float start = xdr.real();
    xdr.skip(1);  // elevation
    const float width = xdr.real();
    const int bins = xdr.count(MAX_BINS);
    const bool whole = xdr.text().find("float") == std::string_view::npos;
    if (bins > 0 && xdr.word() != bins) break;
    if (!xdr || !whole) break;
    if (!begun && !begin(radials, bins, bin_km)) return false;
    begun = true;
    if (!RadialArray::isAzimuth(start)) {
      warn("%s: a radial of %.2f degrees cannot be\n", file->getName(), static_cast<double>(start));
      bad_angle = start;
      break;
    }
    line.resize(static_cast<std::size_t>(bins) * WORD);
    const bool read = xdr.read(line.data(), bins * WORD);
    take(start, width, read ? static_cast<std::size_t>(bins) : 0);
    if (!read) break;
  }
  if (begun) noteImage(n, radials, false);
  return begun;
}

int NidsFile::readGeneric(NidsData& d) {
  // Which levels are values: flags stand below and above them.
  constexpr int HALF = 0xFFFF;
  const bool scaled = findProduct(code).levels == Levels::FloatPair;
  const int lowest = scaled ? std::max(ithres[6], 0) : 0;
  const int highest = scaled && ithres[5] != 0 ? (ithres[5] & HALF) - std::max(ithres[7], 0) : HALF;
  const auto value = [&](int level) {
    if (level < lowest || level > highest) return static_cast<float>(Const::MISS);
    const float n = static_cast<float>(level);
    const float v = scaled ? (n - thres[2]) / thres[0] : n;
    return std::isfinite(v) ? v : static_cast<float>(Const::MISS);
  };

  std::optional<RadialArray> array;
  const auto begin = [&](int radials, int bins, float bin_km) {
    describe(d);
    const bool sized = bin_km > 0.0f && bin_km < MAX_BIN && res > 0.0f;
    startRadials(d, radials, bins, sized ? dom.dy * bin_km / res : dom.dy);
    array.emplace(d);
    return true;
  };
  return readComponent(begin, [&](float start, float, std::size_t bins) {
    const std::span<float> to = array->next(start);
    for (std::size_t i = 0; i < std::min(to.size(), bins); i++) to[i] = value(Xdr::toWord(&line[i * WORD]));
  });
}

int NidsFile::readGeneric(NidsRaw& image) {
  image = NidsRaw();
  const auto begin = [&](int radials, int bins, float bin_km) {
    if (bins < 1 || !spend(CELLS, std::int64_t{radials} * bins)) return false;
    image.width = bins;
    if (bin_km > 0.0f && bin_km < MAX_BIN) image.bin = bin_km * METRES;
    return true;
  };
  return readComponent(begin, [&](float start, float width, std::size_t bins) {
    image.rays.push_back({std::fmod(start, 360.0f), width});
    image.levels.resize(image.levels.size() + static_cast<std::size_t>(image.width), NidsRaw::NONE);
    std::int32_t* to = &image.levels[image.levels.size() - static_cast<std::size_t>(image.width)];
    const std::size_t n = std::min(bins, static_cast<std::size_t>(image.width));
    for (std::size_t i = 0; i < n; i++) {
      const int level = Xdr::toWord(&line[i * WORD]);
      to[i] = level >= 0 && level <= NidsRaw::MAX_LEVEL ? level : NidsRaw::NONE;
    }
    ++image.rows;
  });
}

}  // namespace KYV
