#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>

#include "KYV/Const.h"
#include "KYV/Kyv.h"
#include "KYV/NidsData.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsRadial.h"
#include "NidsLimits.h"
#include "NidsSource.h"
#include "RadialArray.h"

namespace KYV {

namespace {

constexpr int LEVELS = 256;        // a raw level is a byte
constexpr int FINE_RADIALS = 700;  // more radials than this have slots of half a degree

using Values = std::array<float, LEVELS>;
using Bytes = std::span<const unsigned char>;

// Writes value into row[at, at + run), cut at the row's end; returns the cell after the last.
int fillRun(std::span<float> row, int at, int run, float value) {
  const int size = static_cast<int>(row.size());
  const int end = std::min(at + run, size);
  std::fill(row.begin() + std::min(at, size), row.begin() + end, value);
  return end;
}

// The encodings of a radial or row: a byte for each bin; nibbles of run and level; pairs of run and level, of which
// `cells` cells count.
void decodeBytes(Bytes line, std::span<float> row, const Values& values) {
  const std::size_t n = std::min(line.size(), row.size());
  std::transform(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(n), row.begin(),
                 [&](unsigned char level) { return values[level]; });
}
void decodeNibbles(Bytes line, std::span<float> row, const Values& values) {
  int at = 0;
  for (const unsigned char b : line) at = fillRun(row, at, b >> 4, values[b & 15]);
}
void decodePairs(Bytes line, std::span<float> row, const Values& values, int cells) {
  int at = 0;
  int covered = 0;
  for (std::size_t i = 0; i + 1 < line.size() && covered < cells; i += 2) {
    at = fillRun(row, at, line[i], values[line[i + 1]]);
    covered += line[i];
  }
}

}  // namespace

// The encoded bytes of the radial or row whose header was read; fewer when the data ends. The count.
int NidsFile::fetchLine() {
  line.resize(static_cast<std::size_t>(std::max(len, 0)));
  const int got = len > 0 ? deliver(line.data(), len) : 0;
  bytes += got;
  num = got;
  return got;
}

// All of the record but its array and domain.
void NidsFile::describe(NidsData& d) {
  d.date = date;
  d.lat = lat;
  d.lon = lon;
  d.mode = mode;
  d.code = code;
  d.vcp = vcp;
  d.seq = seq;
  const Date volume = date;
  setInfo(d.info);
  setMisc(d.misc);
  date = volume;
}

int NidsFile::readData(NidsData& d) {
  describe(d);
  if (!opened) return 1;
  if (isPacketRadial() && spend(CELLS, std::int64_t{std::min(nrad, MAX_RADIALS)} * nbin)) readRadials(d);
  if ((isPacketRastor() || isPacketDpa()) && spend(CELLS, std::int64_t{nx} * nx)) readRows(d);
  return 1;
}

// An array without radials yet, and its domain.
// @param bin_size  plot units
void NidsFile::startRadials(NidsData& d, int radials, int bins, float bin_size) const {
  DomainVal polar;
  polar.proj = DomainVal::RADIAL;
  polar.plat = polar.clat = lat;
  polar.plon = polar.clon = lon;
  const bool fine = radials > FINE_RADIALS;
  polar.nx = fine ? 720 : 360;
  polar.dx = fine ? 0.5f : 1.0f;
  polar.ny = bins;
  polar.dy = bin_size;
  d.domain.set(polar);
  Kyv::outMessage(8, "Radial data\n");

  const std::size_t size = static_cast<std::size_t>(polar.nx) * static_cast<std::size_t>(bins);
  d.allocate(size);
  d.type = 0;
  d.nrad = polar.nx;
  d.nbin = bins;
  std::fill_n(d.data, size, NidsData::NO_RADIAL);
}

void NidsFile::readRadials(NidsData& d) {
  startRadials(d, nrad, nbin, dom.dy);
  RadialArray array(d);
  Values values;
  for (int level = 0; level < LEVELS; level++) values[static_cast<std::size_t>(level)] = levelValue(level);
  NidsRadial radial;
  const int wanted = std::min(nrad, MAX_RADIALS);
  int n = 0;
  for (; n < MAX_RADIALS && readRadial(radial) > 0; n++) {
    if (!RadialArray::isAzimuth(radial.ang0)) {
      warn("NidsFile::readData bad radial angle: %.2f\n", radial.ang0);
      bad_angle = radial.ang0;
      break;
    }
    const std::span<float> bins = array.next(radial.ang0);
    const int got = fetchLine();
    const Bytes encoded(line.data(), static_cast<std::size_t>(got));
    if (pk_code == RADIAL) {
      decodeNibbles(encoded, bins, values);
    } else {
      decodeBytes(encoded, bins, values);
    }
    if (got < len) break;
  }
  noteImage(n, wanted, false);
}

// A grid that is larger than any of the feed is believed only when its rows can be there: two bytes are the least of a
// row. Of compressed data nobody knows.
bool NidsFile::canHoldGrid() {
  if (nx <= LARGE_GRID || data_type != 0 || seg_type != 0) return true;
  const std::int64_t rest = file->getRest() + raw.getAvail() + in.getAvail();
  if (rest / 2 >= nx) return true;
  warn("%s claims a grid of %d cells, more than its data can hold\n", file->getName(), nx);
  return false;
}

void NidsFile::readRows(NidsData& d) {
  if (!canHoldGrid()) return;
  DomainVal grid = dom;
  grid.nx = grid.ny = nx;  // the array, so that grid points name the cells that are drawn
  d.domain.set(grid);
  const std::size_t width = static_cast<std::size_t>(std::max(nx, 0));
  d.allocate(width * width);
  d.type = 1;
  d.nrad = 0;
  d.nbin = nx;
  const std::span<float> all(d.data, width * width);
  std::fill(all.begin(), all.end(), NidsData::NO_RUN);

  Values values;
  for (int level = 0; level < LEVELS; level++) values[static_cast<std::size_t>(level)] = levelValue(level);
  const int wanted = std::min(nrow, nx);
  std::size_t r = 0;
  for (; r < width && readRastor() > 0; r++) {
    const int got = fetchLine();
    const Bytes encoded(line.data(), static_cast<std::size_t>(got));
    const std::span<float> cells = all.subspan(r * width, width);
    if (isPacketDpa()) {
      decodePairs(encoded, cells, values, ncol);
    } else if (pack == 1) {
      decodePairs(encoded, cells, values, MAX_GRID);
    } else {
      decodeNibbles(encoded, cells, values);
    }
    if (got < len) break;
  }
  noteImage(static_cast<int>(r), wanted, true);
}

}  // namespace KYV
