#include "KYV/ColorMap.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "../resrc/Restore.h"
#include "KYV/ColorBar.h"
#include "KYV/ColorFile.h"
#include "TempDir.h"

namespace KYV {
namespace {

ColorMap makeMap() {
  ColorMap map(8);
  map.add("black", 0, 0, 0);
  map.add("red", 1, 0, 0);
  map.add("3green", 0, 1, 0);
  return map;
}

void expectColor(const ColorMap& map, int i, float r, float g, float b) {
  RGB rgb;
  map.get(i, rgb);
  EXPECT_NEAR(r, rgb.red, 1e-3);
  EXPECT_NEAR(g, rgb.green, 1e-3);
  EXPECT_NEAR(b, rgb.blue, 1e-3);
}

TEST(ColorMap, NamesHaveIndices) {
  struct Case {
    const char* name;
    int index;
  };
  constexpr Case CASES[] = {
      {"", -9999},     {"end", -2},        {"OFF", -1},
      {"none", -1},    {"Back", -1},       {"pblk", 500},
      {"ptgry", 508},  {"RED", 1},         {"red", 1},
      {"12", 12},      {"1", 1},           {"3green", 2},
      {"4blue", 4},    {"unknown", -1},    {"-5", -1},
      {"#12", -1},     {"#gg0000", -1},    {"#-10000", -1},
      {"# 1 2 3", -1}, {"#12345678x", -1}, {"99999999999999999999", INT_MAX},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.name);
    ColorMap map = makeMap();
    EXPECT_EQ(c.index, map.getInd(c.name));
    EXPECT_EQ(3, map.getNum()) << "nothing is added";
  }
  EXPECT_EQ(-9999, makeMap().getInd(nullptr));
}

TEST(ColorMap, ColorsByNumbersAreAddedOnce) {
  ColorMap map = makeMap();
  EXPECT_EQ(3, map.getInd("#ff8000"));
  EXPECT_EQ(3, map.getInd("#FF8000"));
  expectColor(map, 3, 1, 0.502f, 0);
  EXPECT_STREQ("#ff8000", map.getName(3));
  EXPECT_EQ(4, map.getInd("#255128000"));
  expectColor(map, 4, 1, 0.502f, 0);
  EXPECT_EQ(5, map.getInd("#999000000"));
  expectColor(map, 5, 1, 0, 0);
}

TEST(ColorMap, RedefinedColorKeepsItsPlace) {
  ColorMap map = makeMap();
  map.setValue(1, 77);
  EXPECT_EQ(1, map.add("Red", 0.5f, 0, 0));
  expectColor(map, 1, 0.5f, 0, 0);
  EXPECT_EQ(-1, map.getValue(1)) << "the device has to make the new one";
}

TEST(ColorMap, FullMapRefuses) {
  FreshKyv fresh;
  ColorMap map(1);
  EXPECT_EQ(0, map.add("abcdefghijklmnopqrstuvwxyz", 1, 1, 1));
  EXPECT_EQ(0, map.getInd("abcdefghijklmnopqrstuvwxyz")) << "a long name is cut on both sides";
  testing::internal::CaptureStderr();
  EXPECT_EQ(-1, map.getInd("#112233"));
  EXPECT_EQ("Color map size exceeded 2 > 1\n", testing::internal::GetCapturedStderr());
}

TEST(ColorMap, IndicesBeyondTheEndMeanTheLast) {
  ColorMap map = makeMap();
  map.setValue(2, 9);
  EXPECT_EQ(0, map.setValue(3, 5));
  EXPECT_EQ(9, map.getValue(500));
  EXPECT_STREQ("3green", map.getName(INT_MAX));
  expectColor(map, 12, 0, 1, 0);
  expectColor(map, -1, -1, -1, -1);
  map.setValue(0, 6);
  EXPECT_EQ(6, map.getValue(-1));
  int r = 0, g = 0, b = 0;
  map.add("half", 0.999f, 0.5f, 1);
  map.getIRGB(3, r, g, b);
  EXPECT_EQ(254, r);
  EXPECT_EQ(127, g);
  EXPECT_EQ(255, b);
  EXPECT_TRUE(map.isColorNear(1, RGB(0.995f, 0, 0.004f)));
  EXPECT_FALSE(map.isColorNear(1, RGB(0.99f, 0, 0.004f)));
  EXPECT_FALSE(map.isColorNear(-1, RGB(-1, -1, -1)));
  // An empty map has no last entry.
  expectColor(ColorMap(), 0, -1, -1, -1);
  EXPECT_EQ(-1, ColorMap().getValue(3));
}

TEST(ColorFile, LinesHaveFourForms) {
  FreshKyv fresh;
  TempDir dir;
  const std::string file = dir.write("my.clr",
                                     "# comment\n"
                                     "7 lgreen 0.5 1.0 0.5\n"
                                     "  8 orange #FF8000  \r\n"
                                     "\n"
                                     "off1 2 -1 nan\n"
                                     "End\n"
                                     "12 only\n"
                                     "broken 0.5 0.5\n"
                                     "grey 0.25 0.25 0.25\n"
                                     "lgreen #80FF80\n"
                                     "dark 2 -1 0.5");
  ColorMap map;
  ASSERT_EQ(1, ColorFile::readFile(file.c_str(), map));
  EXPECT_EQ(256, map.getMax());
  EXPECT_EQ(2, map.getNumFill());
  ASSERT_EQ(4, map.getNum());
  EXPECT_STREQ("lgreen", map.getName(0));
  expectColor(map, 0, 0.502f, 1, 0.502f);
  expectColor(map, 1, 1, 0.502f, 0);
  expectColor(map, 2, 0.25f, 0.25f, 0.25f);
  expectColor(map, 3, 1, 0, 0.5f);
}

TEST(ColorFile, ListTakesWhatItFinds) {
  FreshKyv fresh;
  TempDir dir;
  dir.write("a.clr", "one 1 0 0\ntwo 0 1 0\n");
  dir.write("b.clr", "three 0 0 1\n");
  Kyv::setDatabasePath(dir.path().c_str());
  ColorMap map;
  testing::internal::CaptureStderr();
  EXPECT_EQ(1, ColorFile::read("a.clr,none.clr,b.clr", map));
  EXPECT_NE(std::string::npos, testing::internal::GetCapturedStderr().find("none.clr"));
  EXPECT_EQ(3, map.getNum());
  EXPECT_EQ(2, map.getNumFill()) << "all colours of the first file";
  EXPECT_EQ(0, ColorFile::read("none.clr", map));
  EXPECT_EQ(0, ColorFile::read(nullptr, map));
  EXPECT_EQ(0, ColorFile::readFile(dir.path("none.clr").c_str(), map));
}

TEST(ColorFile, HostileTablesEnd) {
  FreshKyv fresh;
  TempDir dir;
  std::string text = std::string(100000, 'x') + " 1 1 1\n";
  for (int i = 0; i < 5000; ++i) text += "c" + std::to_string(i) + " #000000\n";
  const std::string file = dir.write("big.clr", text);
  ColorMap map;
  testing::internal::CaptureStderr();
  EXPECT_EQ(1, ColorFile::readFile(file.c_str(), map));
  EXPECT_EQ("Color map size exceeded 257 > 256\n", testing::internal::GetCapturedStderr());
  EXPECT_STREQ("c0", map.getName(0));
}

TEST(ColorFile, ShippedTableHasWhatDefaultsUse) {
  FreshKyv fresh;
  ColorMap map;
  ASSERT_EQ(1, ColorFile::readFile(RADMAP_SOURCE_DIR "/data/kyv.clr", map));
  EXPECT_EQ(16, map.getNumFill());
  for (const char* name : {"white", "black", "dgreen", "lgray"}) EXPECT_GE(map.getInd(name), 0) << name;
}

TEST(ColorBar, ReadsPlaceAndRange) {
  ColorBar bar;
  bar.setParam("LO=ll,ra=-10:40.5,xx=1");
  EXPECT_STREQ("ll", bar.getLocate());
  EXPECT_FLOAT_EQ(-10, bar.getRange().min);
  EXPECT_FLOAT_EQ(40.5f, bar.getRange().max);
  bar.setParam("ra=5,ra=nan:1,ra");
  EXPECT_FLOAT_EQ(-10, bar.getRange().min) << "half a range is none";
}

}  // namespace
}  // namespace KYV
