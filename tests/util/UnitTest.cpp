#include "KYV/Unit.h"

#include <gtest/gtest.h>

#include "KYV/Const.h"

namespace KYV {
namespace {

TEST(Unit, ConvertsWithinAQuantity) {
  struct Case {
    const char* from;
    const char* to;
    float value, expected;
  };
  constexpr Case CASES[] = {
      {"in", "mm", 1.75f, 44.45f},        {"in", "cm", 2.0f, 5.08f},
      {"100ft", "km", 300.0f, 9.144f},    {"100ft", "kft", 425.0f, 42.5f},
      {"100FT", "M", 10.0f, 304.8f},      {"kft", "ft", 1.5f, 1500.0f},
      {"mi", "ft", 1.0f, 5280.0f},        {"nmi", "km", 10.0f, 18.52f},
      {"knt", "km/h", 50.0f, 92.6f},      {"kt", "m/s", 36.0f, 18.52f},
      {"mph", "km/h", 100.0f, 160.9344f}, {"m/s", "knt", 463.0f, 900.0f},
      {"kg/m^2", "mm", 62.0f, 62.0f},     {"kg/m2", "in", 25.4f, 1.0f},
      {"knt", "kts", 7.0f, 7.0f},         {"dBZ", "dbz", 55.0f, 55.0f},
      {"%", "percent", 30.0f, 30.0f},     {"", "km", 5.0f, 5.0f},
      {nullptr, "km", 5.0f, 5.0f},        {"km", nullptr, 5.0f, 5.0f},
      {"parsec", "parsec", 5.0f, 5.0f},   {"in", "mm", Const::MISS, Const::MISS},
  };
  const Unit unit;
  for (const Case& c : CASES) {
    SCOPED_TRACE(std::string(c.from ? c.from : "null") + " to " + (c.to ? c.to : "null"));
    float result = -1.0f;
    EXPECT_EQ(1, unit.convert(c.from, c.to, c.value, result));
    EXPECT_FLOAT_EQ(c.expected, result);
  }
}

TEST(Unit, LeavesWhatCannotBeConverted) {
  const char* const cases[][2] = {{"in", "knt"}, {"deg", "%"}, {"in", "parsec"}, {"parsec", "in"}, {"dBZ", "m"}};
  const Unit unit;
  for (const auto& c : cases) {
    SCOPED_TRACE(c[0]);
    float result = -1.0f;
    EXPECT_EQ(0, unit.convert(c[0], c[1], 12.5f, result));
    EXPECT_EQ(12.5f, result);
  }
  float result = -1.0f;
  EXPECT_EQ(0, unit.convert("km", "mm", 3.0e38f, result));  // beyond a float
  EXPECT_EQ(3.0e38f, result);
}

}  // namespace
}  // namespace KYV
