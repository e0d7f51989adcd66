#include "KYV/NidsData.h"

#include <cmath>
#include <cstdio>

#include "KYV/EarthPoint.h"
#include "KYV/StrLib.h"

namespace KYV {

NidsData::NidsData(const NidsData& other) : NidsData() { *this = other; }

NidsData& NidsData::operator=(const NidsData& other) {
  if (this == &other) return *this;
  StrLib::copy(info, other.info);
  StrLib::copy(misc, other.misc);
  src = other.src;
  lat = other.lat;
  lon = other.lon;
  mode = other.mode;
  code = other.code;
  type = other.type;
  vcp = other.vcp;
  seq = other.seq;
  date = other.date;
  domain = other.domain;
  nrad = other.nrad;
  nbin = other.nbin;
  values = other.values;
  data = values.data();
  data_size = static_cast<int>(values.size());
  return *this;
}

int NidsData::initClass() {
  nrad = nbin = data_size = 0;
  values.clear();
  values.shrink_to_fit();
  data = nullptr;
  return 1;
}

int NidsData::allocate(std::size_t n) {
  if (n > values.size()) {
    values = {};  // released first: both arrays need not fit
    values.resize(n);
  }
  data = values.data();
  data_size = static_cast<int>(values.size());
  return 1;
}

int NidsData::offset(float dv) {
  for (float& v : values) v += dv;
  return 1;
}

float NidsData::getValue(const EarthPoint& p) const {
  GridPoint g;
  if (domain.tran(p, g) != 1 || g.isMissing()) return Const::MISS;
  // A place west or north of the grid is in no cell: rounding toward zero would find one.
  const auto inside = [](float v, int n) { return v >= 0.0f && v < static_cast<float>(n); };
  const bool radial = type == 0;
  if (!inside(g.x, radial ? nrad : nbin) || !inside(g.y, nbin)) return Const::MISS;
  return getValue(static_cast<int>(g.x), static_cast<int>(g.y));
}

int NidsData::print() const {
  std::printf("Info: %s\n", info);
  std::printf("Misc: %s\n", misc);
  std::printf("Src: %d\n", src);
  std::printf("Lat: %f\n", lat);
  std::printf("Lon: %f\n", lon);
  std::printf("Mode: %d\n", mode);
  std::printf("Code: %d\n", code);
  std::printf("Type: %d\n", type);
  std::printf("Vcp: %d\n", vcp);
  std::printf("Seq: %d\n", seq);
  std::printf("Date: ");
  date.print();
  std::printf("Domain: ");
  domain.print();
  return 1;
}

}  // namespace KYV
