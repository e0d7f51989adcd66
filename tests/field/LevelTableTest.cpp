// What levels stand for, by the header's own words, against values worked out from the published format.
#include "KYV/LevelTable.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <vector>

#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "KYV/ProductInfo.h"
#include "NidsBuilder.h"
#include "TempDir.h"

namespace KYV {
namespace {

using State = LevelTable::State;

// The halfwords of a 32-bit float.
std::vector<int> halves(float v) {
  const auto bits = std::bit_cast<std::uint32_t>(v);
  return {static_cast<int>(bits >> 16), static_cast<int>(bits & 0xFFFF)};
}

std::vector<int> floats(float scale, float offset, int greatest, int leading, int trailing) {
  std::vector<int> h = halves(scale);
  const std::vector<int> o = halves(offset);
  h.insert(h.end(), o.begin(), o.end());
  h.insert(h.end(), {0, greatest, leading, trailing});
  return h;
}

TEST(LevelTable, EveryCodingGivesTheValuesOfTheFormat) {
  const struct {
    const char* what;
    int code;
    std::vector<int> halfwords;
    int level;
    State state;
    float value;
  } CASES[] = {
      {"below threshold", 94, {-320, 5, 254}, 0, State::Below, 0.0f},
      {"range folded", 99, {-635, 5, 254}, 1, State::Folded, 0.0f},
      {"the first level is the least value", 94, {-320, 5, 254}, 2, State::Value, -32.0f},
      {"reflectivity", 153, {-320, 5, 254}, 66, State::Value, 0.0f},
      {"the strongest wind towards the radar", 99, {-635, 5, 254}, 2, State::Value, -63.5f},
      {"no wind", 99, {-635, 5, 254}, 129, State::Value, 0.0f},
      {"the strongest away", 99, {-635, 5, 254}, 255, State::Value, 63.0f},
      {"width of the spectrum", 155, {0, 5, 254}, 129, State::Value, 0.0f},
      {"width of the spectrum", 155, {0, 5, 254}, 149, State::Value, 10.0f},
      {"rain of a hundredth of an inch", 170, floats(1.0f, 0.0f, 255, 1, 0), 1, State::Value, 0.01f},
      {"no rain", 170, floats(1.0f, 0.0f, 255, 1, 0), 0, State::Below, 0.0f},
      {"differences on both sides", 174, floats(10.0f, 130.0f, 255, 1, 0), 30, State::Value, -0.1f},
      {"differential reflectivity", 159, floats(16.0f, 128.0f, 255, 2, 0), 130, State::Value, 0.125f},
      {"folded", 159, floats(16.0f, 128.0f, 255, 2, 0), 1, State::Folded, 0.0f},
      {"flags at the end", 161, floats(300.0f, -60.5f, 255, 2, 3), 253, State::NoData, 0.0f},
      {"correlation", 161, floats(300.0f, -60.5f, 255, 2, 0), 240, State::Value, 1.0016667f},
      {"classes", 165, floats(0.0f, 0.0f, 150, 0, 0), 100, State::Class, 100.0f},
      {"rate of rain, longer than a byte", 176, floats(1000.0f, 0.0f, 65535, 1, 0), 2500, State::Value, 2.5f},
      {"the lightest rate", 176, floats(1000.0f, 0.0f, 65535, 0, 0), 1, State::Value, 0.001f},
      {"tops", 135, {0x7F, 1, 2, 0x80}, 52, State::Value, 50.0f},
      {"topped", 135, {0x7F, 1, 2, 0x80}, 0x80 + 52, State::Topped, 50.0f},
      {"storm total", 138, {0, 1, 256}, 150, State::Value, 1.5f},
      {"accumulation in decibels", 81, {-60, 125, 256}, 48, State::Value, 1.0f / 25.4f},  // 0 dBA: 1 mm
      {"outside", 81, {-60, 125, 256}, 255, State::Outside, 0.0f},
      {"coded", 19, {0x8002, 5, 10}, 2, State::Value, 10.0f},
      {"coded, below threshold", 19, {0x8001, 5, 10}, 0, State::Below, 0.0f},
      {"coded, no data", 19, {0x8002, 5, 10}, 0, State::NoData, 0.0f},
      {"coded, folded", 27, {0x8001, 0x0140, 10, 0x8003}, 3, State::Folded, 0.0f},
      {"coded, negative", 27, {0x8001, 0x0140, 10}, 1, State::Value, -64.0f},
      {"coded, tenths", 78, {0x8001, 0x1005}, 1, State::Value, 0.5f},
      {"coded, twentieths", 78, {0x8001, 0x2005}, 1, State::Value, 0.25f},
      {"coded, hundredths", 78, {0x8001, 0x4005}, 1, State::Value, 0.05f},
      {"coded, a class", 164, {0x8001, 0x800D}, 1, State::Class, 13.0f},
      {"coded, beyond its levels", 19, {0x8001, 5}, 16, State::Outside, 0.0f},
  };
  const TempDir dir;
  for (const auto& c : CASES) {
    SCOPED_TRACE(std::string(c.what) + " " + std::to_string(c.code) + " " + std::to_string(c.level));
    NidsBuilder b;
    b.header(c.code, 1).thresholds(c.halfwords).radials(10).radial(0.0f, 1.0f, std::vector<NidsBuilder::Run>{{1, 1}});
    const auto bytes = b.bytes();
    NidsFile file(dir.write("p.nids", std::string(bytes.begin(), bytes.end())).c_str());
    NidsInfo header;
    ASSERT_EQ(1, file.readHeader(header));
    const ProductInfo* info = ProductInfo::find(c.code);
    ASSERT_TRUE(info);
    const LevelTable::Level level = LevelTable(file, *info).get(c.level);
    EXPECT_EQ(c.state, level.state);
    EXPECT_FLOAT_EQ(c.value, level.state == State::Class || level.hasValue() ? level.value : 0.0f);
  }
}

TEST(LevelTable, SignsAndWordsOfCodedLevels) {
  const TempDir dir;
  NidsBuilder b;
  b.header(27, 1).thresholds({0x8001, 0x0500 | 64, 0x0800 | 64, 0x8003, 0x8002});
  b.radials(10).radial(0.0f, 1.0f, std::vector<NidsBuilder::Run>{{1, 1}});
  const auto bytes = b.bytes();
  NidsFile file(dir.write("p.nids", std::string(bytes.begin(), bytes.end())).c_str());
  NidsInfo header;
  ASSERT_EQ(1, file.readHeader(header));
  const LevelTable table(file, *ProductInfo::find(27));
  EXPECT_STREQ("TH", table.get(0).flag);
  EXPECT_STREQ("<", table.get(1).sign);
  EXPECT_STREQ(">", table.get(2).sign);
  EXPECT_STREQ("RF", table.get(3).flag);
  EXPECT_STREQ("ND", table.get(4).flag);
  EXPECT_EQ(State::Outside, table.get(-1).state);
  EXPECT_EQ(State::Outside, table.get(300).state);
}

}  // namespace
}  // namespace KYV
