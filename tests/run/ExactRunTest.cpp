// Pictures that show what the radar measured: every level that has a value, every radial, under their true names.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "NidsBuilder.h"
#include "Program.h"

namespace {

using Bytes = std::vector<unsigned char>;

class ExactRun : public testing::Test {
 protected:
  struct Point {
    double x, y;
  };
  // What a metafile of a map without background has: the corners of the cells' polygons, and the words around the map.
  struct Page {
    std::vector<std::vector<Point>> cells;
    std::set<std::string> texts;
    bool says(const std::string& part) const {
      return std::any_of(texts.begin(), texts.end(), [&](const auto& t) { return t.find(part) != std::string::npos; });
    }
  };
  Page draw(const Bytes& bytes, const std::string& options) {
    program.write("p.nids", bytes);
    const Program::Result r = program.run("-strict -dr=-map -de meta,a.meta,hfont " + options + " p.nids");
    EXPECT_EQ(0, r.status) << r.output;
    Page page;
    std::istringstream in(program.read("a.meta"));
    bool map = true;  // until the border is drawn
    for (std::string line; std::getline(in, line);) {
      map = map && !line.starts_with("L 5 ");
      if (line.starts_with("T ")) page.texts.insert(line.substr(line.find(' ', 2) + 1));
      if (!map || !line.starts_with("F ")) continue;
      std::istringstream words(line.substr(2));
      std::string word;
      words >> word;
      std::vector<Point> cell;
      for (Point p{}; words >> word;) {
        if (std::sscanf(word.c_str(), "%lf,%lf", &p.x, &p.y) == 2) cell.push_back(p);
      }
      page.cells.push_back(cell);
    }
    return page;
  }
  static NidsBuilder begin(int code, const std::vector<int>& halfwords) {
    NidsBuilder b;
    return b.header(code, 1).location(35.333f, -97.278f).thresholds(halfwords).volumeTime(15846, 73003).param(3, 5);
  }
  // A digital product of one radial towards the north, all bins of one level.
  static Bytes one(int code, const std::vector<int>& halfwords, int level, int bins = 100) {
    NidsBuilder b = begin(code, halfwords);
    b.digital(bins).digitalRadial(0.0f, 1.0f, Bytes(static_cast<std::size_t>(bins), static_cast<unsigned char>(level)));
    return b.bytes();
  }

  Program program;
};

TEST_F(ExactRun, WhateverHasAValueHasAColour) {
  const struct {
    const char* what;
    int code;
    std::vector<int> halfwords;
    int level;
    const char* title;
    const char* values;
  } CASES[] = {
      {"the strongest wind towards the radar",
       99,
       {-635, 5, 254},
       2,
       "Digital velocity [m/s]",
       "Rng=300(0.25) El=0.5 Mn,Mx=-63.5,-63.5"},
      {"no wind", 154, {-635, 5, 254}, 129, "Super-resolution velocity [m/s]", "Mx=0.0"},
      {"an echo of unknown range", 99, {-635, 5, 254}, 1, "Digital velocity [m/s]", "Rng=300(0.25)"},
      {"the weakest echo", 94, {-320, 5, 254}, 2, "Digital reflectivity [dBZ]", "Mx=-32.0"},
      {"the lightest rain", 170, {0x3F80, 0, 0, 0, 0, 255, 1, 0}, 1, "Digital one hour accumulation [in]", "Mx=0.01"},
      {"a code without stated name",
       155,
       {0, 5, 254},
       149,
       "Super-resolution spectrum width [m/s]",
       "Rng=300(0.25) El=0.5 Mx=10.0"},
      {"large hail", 165, {0, 0, 0, 0, 0, 150, 0, 0}, 110, "Digital hydrometeor classification", "Rng=300(0.25)"},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    const Bytes bytes = one(c.code, c.halfwords, c.level);
    const Page page = draw(bytes, "-exact");
    EXPECT_FALSE(page.cells.empty());
    EXPECT_TRUE(page.says(c.title));
    EXPECT_TRUE(page.says(c.values));
    EXPECT_FALSE(draw(bytes, "").says(c.title)) << "without being asked for";
  }
  const Page folded = draw(one(99, {-635, 5, 254}, 1), "-exact");
  EXPECT_TRUE(folded.says("RF"));
  // A scale of the user's is taken as it is.
  const Page own = draw(one(99, {-635, 5, 254}, 1), "-exact -cof -100:blue,0:red");
  EXPECT_TRUE(own.cells.empty());
  EXPECT_FALSE(own.says("RF"));
}

TEST_F(ExactRun, LevelsThatAreNoValuesAreNotDrawn) {
  for (const int code : {94, 99, 135, 138, 170}) {
    EXPECT_TRUE(
        draw(one(code, code == 170 ? std::vector<int>{0x3F80, 0, 0, 0, 0, 255, 1, 0} : std::vector<int>{0, 5, 254}, 0),
             "-exact")
            .cells.empty())
        << code;
  }
}

// Radials of a turn and more, with gaps, or narrow: each at its own angle, none in the place of another.
TEST_F(ExactRun, EveryRadialIsDrawnWhereItIs) {
  NidsBuilder b = begin(19, {0x8002, 5, 10});
  b.radials(230);
  for (const float start : {10.3f, 11.3f, 90.0f, 360.1f, 359.3f}) {
    b.radial(start, start == 90.0f ? 0.5f : 1.0f, std::vector<NidsBuilder::Run>{{15, 0}, {1, 2}});
  }
  const Page page = draw(b.bytes(), "-exact");
  ASSERT_EQ(5u, page.cells.size());
  // The second begins where the first ends: they share two corners, to the last digit.
  const auto& first = page.cells[0];
  const auto& second = page.cells[1];
  int shared = 0;
  for (std::size_t i = 0; i + 1 < first.size(); ++i) {
    for (std::size_t k = 0; k + 1 < second.size(); ++k)
      shared += first[i].x == second[k].x && first[i].y == second[k].y;
  }
  EXPECT_EQ(2, shared);
  // East is right of the middle, north above it (the page's y runs down).
  EXPECT_GT(page.cells[2][0].x, 0.51);
  EXPECT_LT(page.cells[3][0].y, page.cells[2][0].y);
}

TEST_F(ExactRun, WhatCannotBeDrawnIsExplained) {
  NidsBuilder b = begin(62, {});
  b.page().text(8, 1, 10, 10, "STORM");
  program.write("p.nids", b.bytes());
  const Program::Result r = program.run("-strict -exact -ou a.png p.nids");
  EXPECT_EQ(10, r.status);
  EXPECT_NE(std::string::npos, r.output.find("p.nids is product 62, Storm structure: its text is not drawn\n"))
      << r.output;
  EXPECT_NE(std::string::npos,
            program.run("-products").output.find("153  N0B ...         Super-resolution reflectivity"));
}

// Words that are no levels cost no memory and draw nothing.
TEST_F(ExactRun, LongLevelsAreLimited) {
  NidsBuilder b = begin(176, {0x447A, 0, 0, 0, 0, 0xFFFF, 0, 0});
  b.generic({{2500, 0x7E500000, 1, 0}});
  const Page page = draw(b.bytes(), "-exact");
  EXPECT_EQ(2u, page.cells.size());
  EXPECT_TRUE(page.says("Mx=2.50"));
}

// Half of the cells on either side of the radar, in both directions.
TEST_F(ExactRun, TheRadarIsInTheMiddleOfAGrid) {
  NidsBuilder b = begin(37, {0x8002, 5, 10});
  b.raster();
  for (int i = 0; i < 40; ++i) b.gridRow({{15, 2}, {15, 2}, {10, 2}});
  const Page page = draw(b.bytes(), "-exact -pd KTLX,0.05");
  double left = 1.0, right = 0.0, top = 1.0, bottom = 0.0;
  for (const auto& cell : page.cells) {
    for (const Point& p : cell) {
      left = std::min(left, p.x), right = std::max(right, p.x), top = std::min(top, p.y),
      bottom = std::max(bottom, p.y);
    }
  }
  const Page site = draw(one(94, {-320, 5, 254}, 90, 1), "-exact -pd KTLX,0.05");
  ASSERT_FALSE(site.cells.empty());
  double radar = 0.0;  // the near edge of the first bin is the radar itself
  for (const Point& p : site.cells[0]) radar = std::max(radar, p.y);
  EXPECT_NEAR(0.5, (left + right) / 2.0, 1e-4);
  EXPECT_NEAR(radar, (top + bottom) / 2.0, 1e-4);
}

}  // namespace
