#include "KYV/ColorFill.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "../resrc/Restore.h"
#include "KYV/ColorMap.h"
#include "TempDir.h"

namespace KYV {
namespace {

// Colours c0 to c9, of which c4 and c9 are called blue and red; the first three make the default scale.
ColorMap makeMap() {
  ColorMap map(300);
  for (int i = 0; i < 10; ++i) {
    const std::string name = "c" + std::to_string(i);
    map.add(i == 4 ? "blue" : i == 9 ? "red" : name.c_str(), 0, 0, static_cast<float>(i) / 10);
  }
  map.add("light-red", 1, 0.5f, 0.5f);
  map.setNumFill(3);
  return map;
}

// "threshold:index name label" of every entry, without what is not set.
std::string describe(const ColorFill& fill) {
  std::string text;
  for (int i = 0; i < fill.getNum(); ++i) {
    char part[80];
    if (i) text += ' ';
    if (!Const::isMissing(fill.getValue(i))) {
      std::snprintf(part, sizeof part, "%g:", static_cast<double>(fill.getValue(i)));
      text += part;
    }
    text += std::to_string(fill.getColor(i));
    if (fill.validLabel(i)) text += std::string("(") + fill.getLabel(i) + ")";
  }
  return text;
}

TEST(ColorFill, TextsMakeEntries) {
  struct Case {
    const char* text;
    const char* entries;
  };
  constexpr Case CASES[] = {
      {"-100:off,5:blue,10:red", "-100:-1 5:4 10:9"},
      {"0:blue,red,c1,30:c2", "0:4 10:9 20:1 30:2"},
      {"blue,0:red,5:c1", "4 0:9 5:1"},
      {"0:blue,red", "0:4 9"},
      {"blue-red", "4 5 6 7 8 9"},
      {"red-c7", "9 8 7"},
      {"4-6", "4 5 6"},
      {"12", "12"},
      {"5:blue", "5:4"},
      {" 5 :blue, 6 dBZ:red", "5:4 6:9"},
      {"-100:off:la=_,10:red:la=BI", "-100:-1(_) 10:9(BI)"},
      {"1e-3:red,+2:blue,.5:c1", "0.001:9 2:4 0.5:1"},
      {"5:blue-x", "5:-1"},
      {"-7:blue:la=a-b", "-7:4(a-b)"},
      {"light-red", "10"},
      {"0:light-red,what-red", "0:10 -1"},
      {"blue", "4"},
      {"blue:wi=2", "4"},
      {"#ff8000", "11"},
      {"off", "-1"},
      {"", "0 1 2"},
      {"blue,,red,", "4 9"},
      {"no/such-file", ""},
      {"nosuchfile.fil", ""},
      {"nan:red", ""},
      {",", ""},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text);
    ColorMap map = makeMap();
    ColorFill fill;
    EXPECT_EQ(*c.entries ? 1 : 0, fill.set(map, c.text));
    EXPECT_EQ(c.entries, describe(fill));
  }
}

TEST(ColorFill, RangeCopiesTheFirstSide) {
  ColorMap map = makeMap();
  ColorFill fill(map, "blue:wi=2-c6");
  ASSERT_EQ(3, fill.getNum());
  EXPECT_STREQ("5", fill.getColorName(1));
  EXPECT_FLOAT_EQ(2, fill.get(2).width);
}

TEST(ColorFill, ScaleEndsAt256Entries) {
  ColorMap map = makeMap();
  ColorFill fill(map, "0-2000000000,blue");
  EXPECT_EQ(256, fill.getNum());
  EXPECT_EQ(0, fill.decode(map, "blue"));
}

TEST(ColorFill, ValuesFindTheirEntry) {
  constexpr float NAN_F = std::numeric_limits<float>::quiet_NaN();
  constexpr float INF = std::numeric_limits<float>::infinity();
  struct Case {
    const char* text;
    float value;
    int entry;
  };
  constexpr const char* RADAR = "-100:off,5:blue,10:red";
  constexpr const char* FALLS = "0:c0,5:c1,3:c2,8:c3";  // searched interval by interval
  constexpr const char* OPEN = "0:c0,5:c1,c2,c3";       // ends with the last threshold
  constexpr Case CASES[] = {
      {RADAR, -9999, -9999}, {RADAR, NAN_F, -9999}, {RADAR, -150, -1}, {RADAR, -100, 0}, {RADAR, -20, 0},
      {RADAR, 4.999f, 0},    {RADAR, 5, 1},         {RADAR, 7, 1},     {RADAR, 10, 2},   {RADAR, 1000, 2},
      {RADAR, INF, 2},       {RADAR, -INF, -1},     {"5:blue", 4, -1}, {"5:blue", 9, 0}, {FALLS, 4, 0},
      {FALLS, 6, 2},         {FALLS, 9, 3},         {OPEN, 99, 1},     {OPEN, 4, 0},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(std::string(c.text) + " " + std::to_string(c.value));
    ColorMap map = makeMap();
    const ColorFill fill(map, c.text);
    EXPECT_EQ(c.entry, fill.getInd(c.value));
    EXPECT_EQ(c.entry < 0 ? c.entry : fill.getColor(c.entry), fill.getColor(c.value));
    EXPECT_EQ(c.entry >= 0 && fill.getColor(c.entry) >= 0, fill.get(c.value).validColor());
  }
}

TEST(ColorFill, ScaleWithoutThresholdsRepeats) {
  ColorMap map = makeMap();
  ColorFill fill(map, "c0,c1,c2");
  EXPECT_EQ(0, fill.getInd(55.0f)) << "no interval";
  fill.setInterval(0.0f);
  EXPECT_EQ(0, fill.getColor(55.0f));
  fill.setInterval(5.0f);
  EXPECT_EQ(1, fill.getInd(5.0f)) << "no base is 0";
  fill.setBase(10.0f);
  struct Case {
    float value;
    int entry;
  };
  constexpr Case CASES[] = {{10, 0}, {14.9f, 0}, {14.96f, 1}, {15, 1}, {20, 2}, {25, 0}, {9, 2}, {0, 1}, {-5, 0}};
  for (const Case& c : CASES) EXPECT_EQ(c.entry, fill.getInd(c.value)) << c.value;
  fill.setInterval(1e-38f);
  for (const float far : {3e38f, -3e38f, std::numeric_limits<float>::infinity()}) {
    const int entry = fill.getInd(far);
    EXPECT_TRUE(entry >= 0 && entry < 3) << far;
  }
  EXPECT_EQ(-1, ColorFill().getInd(5.0f)) << "no entry at all";
}

TEST(ColorFill, ProductLevelsFillAScaleOfColors) {
  ColorMap map = makeMap();
  ColorFill fill(map, "c0-c3");
  EXPECT_FALSE(fill.areValuesSet());
  constexpr float LEVELS[] = {0, -9999, 10, 20, 30, 40};
  fill.setValues(LEVELS, 6);
  EXPECT_TRUE(fill.areValuesSet());
  EXPECT_EQ("0:0 5:1 10:2 20:3", describe(fill));
  EXPECT_EQ(3, fill.getInd(25.0f));
  EXPECT_EQ(0, fill.setValues(nullptr, 6));
}

TEST(ColorFill, FilesAreReadLineByLine) {
  FreshKyv fresh;
  TempDir dir;
  dir.write("my.fil",
            "# comment\n@name  my scale\n@units dBZ\n  0:blue:la=low  \r\n\nc1\n20:red\n"
            "30:c2:la=" +
                std::string(500, 'x') + "\n");
  dir.write("my-own.fil", "5:red\n");
  dir.write("empty.fil", "# nothing\n");
  dir.write("blue", "1:red\n");
  Kyv::setDatabasePath(dir.path().c_str());
  ColorMap map = makeMap();
  ColorFill fill;
  ASSERT_EQ(1, fill.set(map, "my.fil"));
  EXPECT_EQ("0:4(low) 10:1 20:9 30:2(" + std::string(19, 'x') + ")", describe(fill));
  EXPECT_STREQ(" my scale", fill.getName());
  EXPECT_EQ(1, fill.set(map, "my-own.fil"));
  EXPECT_EQ("5:9", describe(fill));
  EXPECT_EQ(1, fill.set(map, "blue"));
  EXPECT_EQ("1:9", describe(fill)) << "a file goes before a colour";
  EXPECT_EQ(0, fill.readFile(map, "empty.fil"));
  EXPECT_EQ(0, fill.readFile("none.fil"));
  EXPECT_EQ(0, fill.readFile(nullptr));
}

TEST(ColorFill, ResourceChoosesTheScale) {
  struct Case {
    const char* resource;
    int result;
    const char* entries;
  };
  constexpr Case CASES[] = {{nullptr, 1, "1:9"}, {"", 1, "1:9"},       {"MISS", 1, "1:9"},
                            {"def", 1, "1:9"},   {"2:blue", 2, "2:4"}, {"nosuchfile.fil", 0, ""}};
  FreshKyv fresh;
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.resource ? c.resource : "unset");
    Kyv::resrc.clear();
    if (c.resource) Kyv::resrc.put("color_fill", c.resource);
    ColorMap map = makeMap();
    ColorFill fill;
    EXPECT_EQ(c.result, fill.setFill(map, "1:red"));
    EXPECT_EQ(c.entries, describe(fill));
  }
}

TEST(ColorFill, WithoutAMapNamesAreKept) {
  ColorFill fill;
  EXPECT_EQ(1, fill.set("0:blue,5:red"));
  EXPECT_STREQ("red", fill.getColorName(1));
  EXPECT_EQ(Const::MISS, fill.getColor(1));
  EXPECT_EQ(1, fill.set("3-5"));
  EXPECT_EQ("3 4 5", describe(fill));
}

}  // namespace
}  // namespace KYV
