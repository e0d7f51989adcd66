// Whole runs on real products, where there are any: every image draws, and as many cells as other decoders count.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "Program.h"
#include "PsPage.h"

namespace {

using Json = nlohmann::json;

class SampleRun : public testing::Test {
 protected:
  void SetUp() override {
    const char* given = std::getenv("RADMAP_SAMPLES");
    folder = given ? given : std::string(RADMAP_SOURCE_DIR) + "/../shared/samples";
    if (!std::filesystem::exists(folder + "/truth.json")) {
      GTEST_SKIP() << "no samples: set RADMAP_SAMPLES to their folder";
    }
    folder = std::filesystem::absolute(folder).lexically_normal().string();
    truth = Json::parse(std::ifstream(folder + "/truth.json"));
  }

  bool draw(const std::string& name, PsPage& page) {
    const Program::Result r = program.run("-de postscript,out.ps,land,color '" + folder + "/" + name + "'");
    EXPECT_EQ(0, r.status) << r.output;
    return page.read(program.path("out.ps"));
  }

  std::string folder;
  Json truth;
  Program program;
};

TEST_F(SampleRun, AsManyCellsAreDrawnAsLevelsReachTheScale) {
  // Base and composite reflectivity draw from 5 dBZ on. The bar has a box for each of 15 classes.
  struct Case {
    const char* file;
    int firstLevel;  // the lowest raw level of 5 dBZ or more
  };
  constexpr Case CASES[] = {
      {"KTLX_N0R_20130520_2016.nids", 1},        // coded, level 1 is 5 dBZ
      {"KLSX_NCR_20211211_0215.nids", 1},        // the same as a grid
      {"KTLX_N0Q_20130520_2016.nids", 74},       // -32 + 0.5 N
      {"KFTG_N0B_20220304_1820_frame.nids", 74}  // the same, half-degree radials
  };
  constexpr int BAR = 15;
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.file);
    int expected = BAR;
    for (const auto& [level, count] : truth.at(c.file).at("image").at("level_counts").items()) {
      if (std::stoi(level) >= c.firstLevel) expected += count.get<int>();
    }
    PsPage page;
    ASSERT_TRUE(draw(c.file, page));
    int drawn = 0;
    for (const auto& [color, count] : page.countFills()) drawn += count;
    EXPECT_EQ(expected, drawn);
  }
}

TEST_F(SampleRun, EveryImageMakesAPage) {
  int pages = 0;
  for (const auto& [name, facts] : truth.items()) {
    if (!facts.contains("image") || !facts["image"].contains("level_counts")) continue;
    SCOPED_TRACE(name);
    PsPage page;
    ASSERT_TRUE(draw(name, page));
    EXPECT_EQ(5u, page.getBorder().points.size());
    EXPECT_FALSE(page.countFills().empty());
    ++pages;
  }
  EXPECT_GT(pages, 40);
}

}  // namespace
