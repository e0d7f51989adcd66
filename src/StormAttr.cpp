#include "KYV/StormAttr.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "KYV/StrLib.h"

namespace KYV {

namespace {

// Columns of the attribute table, from 0.
constexpr int PROBABILITIES = 26;
constexpr int SIZE_SIGN = 34;  // '<'; in column 35 where a blank stands before each line
constexpr int SIZE = 35;
constexpr int VALUES = 42;
constexpr int MOVEMENT = 62;

constexpr float SMALL_HAIL = 0.25f;  // stands for "<0.50", inches
constexpr int TVS_FOUND = 10;        // of a table that tells no number
constexpr int HAIL_POSITIVE = 100, HAIL_PROBABLE = 50;

// What a header line tells the layout by, tried in this order.
constexpr struct {
  const char* mark;
  StormAttr::Type type;
} LAYOUTS[] = {{"VLOW", StormAttr::STRUCTURE}, {"VIL", StormAttr::ATTRIBUTES}, {"NO STORM", StormAttr::NONE}};

// The number of a word of digits alone, 0 for any other.
int digits(const char* word) {
  const std::size_t n = std::strlen(word);
  if (n == 0 || n > 9 || std::strspn(word, "0123456789") != n) return 0;
  int value = 0;
  std::sscanf(word, "%9d", &value);
  return value;
}

}  // namespace

int StormAttr::init() {
  id[0] = '\0';
  ang = rad = dir = spd = Const::MISS;
  tvs = meso = hail = shail = 0;
  hsize = vil = dbzm = dbzht = vlow = tops = mass = 0.0f;
  kft = false;
  return 1;
}

int StormAttr::checkType(const char* line) {
  for (const auto& layout : LAYOUTS) {
    if (line && std::strstr(line, layout.mark)) return type = layout.type, 1;
  }
  return 0;
}

int StormAttr::decode(const char* line) {
  init();
  checkType(line);
  if (!line) return 0;
  switch (type) {
    case STRUCTURE:
      return decodeStructure(line);
    case ATTRIBUTES:
      return decodeAttributes(line);
    default:
      return 1;
  }
}

int StormAttr::decodeStructure(const char* line) {
  char words[3][20] = {};
  const int n = std::sscanf(line, "%3s %f %f %19s %19s %19s %f %f %f%*[ >]%f %f %f", id, &ang, &rad, words[0], words[1],
                            words[2], &dbzm, &dbzht, &vlow, &tops, &dir, &spd);
  if (n < 2) return 0;
  tvs = StrLib::equal(words[0], "YES") ? 1 : 0;
  meso = StrLib::equal(words[1], "YES") ? 1 : 0;
  hail = StrLib::equal(words[2], "POS") ? HAIL_POSITIVE : StrLib::equal(words[2], "PRO") ? HAIL_PROBABLE : 0;
  return 1;
}

int StormAttr::decodeAttributes(const char* line) {
  char words[2][20] = {};
  const int n = std::sscanf(line, "%3s %f/%f %19s %19s", id, &ang, &rad, words[0], words[1]);
  if (n <= 3) {
    // Neither a header nor a half-read line is a storm.
    ang = rad = Const::MISS;
    return 0;
  }
  const auto isOneOf = [](const char* word, const char* a, const char* b) {
    return StrLib::equal(word, a) || StrLib::equal(word, b);
  };
  tvs = isOneOf(words[0], "YES", "TVS") ? TVS_FOUND : digits(words[0]);
  meso = isOneOf(words[1], "YES", "MESO") ? 1 : digits(words[1]);
  const int length = StrLib::length(line);
  const auto from = [&](int column) { return column < length ? line + column : ""; };
  std::sscanf(from(PROBABILITIES), "%9d/%9d", &shail, &hail);
  std::sscanf(from(SIZE), "%f", &hsize);
  if (*from(SIZE_SIGN) == '<' || *from(SIZE) == '<') hsize = SMALL_HAIL;
  // '>' stands before a top that lies above the highest beam.
  char values[MOVEMENT - VALUES + 1];
  StrLib::copy(values, from(VALUES));
  std::replace(values, values + StrLib::length(values), '>', ' ');
  std::sscanf(values, "%f %f %f %f", &vil, &dbzm, &dbzht, &tops);
  kft = std::strchr(values, '.') != nullptr;
  std::sscanf(from(MOVEMENT), "%f/%f", &dir, &spd);
  return 1;
}

int StormAttr::print() const {
  std::printf("Type: %d\n", type);
  std::printf("ID: %s\n", id);
  std::printf("Ang: %f\n", static_cast<double>(ang));
  std::printf("Rad: %f\n", static_cast<double>(rad));
  std::printf("TVS: %d\n", tvs);
  std::printf("Meso: %d\n", meso);
  std::printf("Hail: %d\n", hail);
  std::printf("SHail: %d\n", shail);
  std::printf("HSize: %f\n", static_cast<double>(hsize));
  std::printf("VIL: %f\n", static_cast<double>(vil));
  std::printf("Max dBZ: %f\n", static_cast<double>(dbzm));
  std::printf("Max dBZ Hgt: %f\n", static_cast<double>(dbzht));
  std::printf("VLow: %f\n", static_cast<double>(vlow));
  std::printf("Tops: %f\n", static_cast<double>(tops));
  std::printf("Dir: %f\n", static_cast<double>(dir));
  std::printf("Spd: %f\n", static_cast<double>(spd));
  std::printf("Mass Vol: %f\n", static_cast<double>(mass));
  return 1;
}

}  // namespace KYV
