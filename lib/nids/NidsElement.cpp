#include <algorithm>
#include <cmath>
#include <iterator>

#include "KYV/Const.h"
#include "KYV/Kyv.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsRadial.h"
#include "KYV/NidsRun.h"
#include "KYV/NidsText.h"
#include "KYV/NidsVector.h"
#include "KYV/NidsWind.h"
#include "NidsRead.h"
#include "ProductTable.h"

namespace KYV {

namespace {

constexpr int VECTOR_LENGTH = 8;  // bytes of an element
constexpr int BARB_LENGTH = 10;
constexpr int PAIR_LENGTH = 2;
constexpr int PAIR_PACKING = 1;    // raster rows of (count, level) pairs
constexpr float MAX_WIDTH = 5.0f;  // of a radial, degrees

}  // namespace

int NidsFile::readRadial(NidsRadial& r) {
  if (!opened || rad >= nrad) return 0;
  if (len > num && readBytes(nullptr, len - num) != 1) return -1;
  len = num = 0;
  unsigned short count = 0;
  short start = 0;
  short width = 0;
  if (!readFields(*this, count, start, width)) return -1;
  // Run-length radials count halfwords, digital ones bytes.
  len = pk_code == RADIAL ? count * 2 : count;
  ang0 = static_cast<float>(start) / 10.0f;
  ang1 = static_cast<float>(width) / 10.0f;
  ++rad;
  if (ang1 <= 0.0f || ang1 > MAX_WIDTH) {
    Kyv::outDebug(3, "Bad angle\n");
    return 0;
  }
  r = {ang0, ang1};
  Kyv::outDebug(4, "Length: %d\n", len);
  Kyv::outDebug(4, "Start angle: %.1f\n", ang0);
  Kyv::outDebug(4, "Angle delta: %.1f\n", ang1);
  return 1;
}

int NidsFile::readRastor() {
  if (!opened || row >= nrow) return 0;
  if (len > num && readBytes(nullptr, len - num) != 1) return -1;
  len = num = col = 0;
  unsigned short count = 0;
  if (readUshort(count) != 1) return -1;
  len = count;
  Kyv::outDebug(4, "Row: %d\n", row);
  Kyv::outDebug(4, "Length: %d\n", len);
  ++row;
  return 1;
}

// What a raw level of the current image packet means in data units: the one place for the scaling rules.
float NidsFile::levelValue(int level) const {
  const float n = static_cast<float>(level);
  float v = Const::MISS;
  if (pk_code == 16) {
    if (level < 2) return v;
    const Product& product = findProduct(code);
    switch (product.levels) {
      case Levels::Vil:
        v = n < thres[2] ? (n - thres[1]) / thres[0] : std::exp((n - thres[4]) / thres[3]);
        break;
      case Levels::Tops:
        v = static_cast<float>(level & ithres[0]) / thres[1] - thres[2];
        break;
      case Levels::FloatPair:
        v = (n - thres[2]) / thres[0];
        break;
      default:
        v = n * thres[1] + thres[0];
        break;
    }
    if ((product.family & DPREC) && !Const::isMissing(v)) v /= 100.0f;
  } else if (pk_code == 17) {
    constexpr int NO_DATA = 255;
    if (level != NO_DATA) v = n * thres[1] + thres[0];
  } else if (pk_code == RASTOR && pack == PAIR_PACKING) {
    v = static_cast<float>(level >> 4) * 100.0f + thres[level & 15];
  } else {
    v = thres[level & 15];
  }
  return std::isfinite(v) ? v : static_cast<float>(Const::MISS);
}

int NidsFile::readRun(NidsRun& r) {
  if (!opened) return 0;
  const bool boxes = pk_code == 17;
  const bool pairs = boxes || (pk_code == RASTOR && pack == PAIR_PACKING);
  const int size = pairs ? PAIR_LENGTH : 1;
  if (num + size > len || (boxes && col >= ncol)) return 0;
  unsigned char b[PAIR_LENGTH] = {};
  if (readBytes(b, size) != 1) return -1;
  num += size;
  if (pairs) {
    r.run = b[0];
    r.ival = b[1];
    if (boxes) col += r.run;
  } else if (pk_code == 16) {
    r.run = 1;
    r.ival = b[0];
  } else {
    r.run = b[0] >> 4;
    r.ival = b[0] & 15;
  }
  r.val = levelValue(r.ival);
  return 1;
}

float NidsFile::thresValue(int level) const {
  return level >= 0 && level < static_cast<int>(std::size(thres)) ? thres[level] : static_cast<float>(Const::MISS);
}

int NidsFile::readVector(NidsVector& v) {
  if (!opened || !isPacketVector() || num + VECTOR_LENGTH > len || !spend(POINTS, 2)) return 0;
  short x1 = 0;
  short y1 = 0;
  short x2 = 0;
  short y2 = 0;
  if (!readFields(*this, x1, y1, x2, y2)) return -1;
  v.val = static_cast<float>(val);
  v.x1 = x1;
  v.y1 = y1;
  v.x2 = x2;
  v.y2 = y2;
  num += VECTOR_LENGTH;
  return 1;
}

int NidsFile::skipVector() {
  NidsVector v;
  while (readVector(v) > 0) {
  }
  return 1;
}

int NidsFile::readText(NidsText& t) {
  if (!opened || !text_pending) return 0;
  text_pending = false;
  const int n = std::min(len, static_cast<int>(sizeof t.data) - 1);
  if (!spend(TEXTS, 1) || !spend(CHARACTERS, n)) return 0;
  unsigned char text[sizeof t.data] = {};
  if (readBytes(text, n) != 1) return -1;
  std::copy_n(text, sizeof t.data, t.data);
  t.val = thresValue(val);
  t.x = static_cast<float>(col);
  t.y = static_cast<float>(row);
  const int rest = len - n;
  num = len;
  return readBytes(nullptr, rest) == 1 ? 1 : -1;
}

int NidsFile::skipText() {
  NidsText t;
  return readText(t);
}

int NidsFile::readWind(NidsWind& w) {
  if (!opened || !isPacketWindbarb() || num + BARB_LENGTH > len || !spend(BARBS, 1)) return 0;
  short level = 0;
  short x = 0;
  short y = 0;
  short dir = 0;
  short spd = 0;
  if (!readFields(*this, level, x, y, dir, spd)) return -1;
  w.val = thresValue(level);
  w.x = x;
  w.y = y;
  w.dir = dir;
  w.spd = spd;
  num += BARB_LENGTH;
  return 1;
}

int NidsFile::skipWind() {
  NidsWind w;
  while (readWind(w) > 0) {
  }
  return 1;
}

}  // namespace KYV
