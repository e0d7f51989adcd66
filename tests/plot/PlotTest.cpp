#include "KYV/Plot.h"

#include <gtest/gtest.h>

#include <string>

#include "KYV/Kyv.h"

namespace KYV {
namespace {

TEST(PlotGeometry, ReadsSizeAndOffset) {
  struct Case {
    const char* text;
    int kind;
    float x, y, width, height;
  };
  constexpr float NONE = Const::MISS;
  constexpr Case CASES[] = {
      {"800x600+10-20", 2, 10.0f, -20.0f, 800.0f, 600.0f},
      {"800x600", 1, NONE, NONE, 800.0f, 600.0f},
      {"+10+20", 3, 10.0f, 20.0f, NONE, NONE},
      {"-5-7", 3, -5.0f, -7.0f, NONE, NONE},
      {"", 0, NONE, NONE, NONE, NONE},
      {"wide", 0, NONE, NONE, NONE, NONE},
      {"800", 0, NONE, NONE, NONE, NONE},
      {"nanx600", 0, NONE, NONE, NONE, NONE},
      {"1e60x600", 0, NONE, NONE, NONE, NONE},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text);
    GeomBox box;
    EXPECT_EQ(c.kind, Plot::decodeGeometryStr(c.text, box));
    EXPECT_EQ(c.x, box.x);
    EXPECT_EQ(c.y, box.y);
    EXPECT_EQ(c.width, box.width);
    EXPECT_EQ(c.height, box.height);
  }
}

TEST(PlotPanel, TakesFractionsAndCellsOfAGrid) {
  struct Case {
    const char* text;
    bool used;
    float x, y, width, height;
  };
  constexpr Case CASES[] = {
      {"2x2+1+0", true, 0.5f, 0.5f, 0.5f, 0.5f},  {"0.5x0.5+0.5+0.5", true, 0.5f, 0.5f, 0.5f, 0.5f},
      {"2x4", true, 0.0f, 0.75f, 0.5f, 0.25f},    {"99x99+0+0", true, 0.0f, 0.875f, 0.125f, 0.125f},
      {"0.25x1", true, 0.0f, 0.0f, 0.25f, 1.0f},  {"2x2+1", false, 0.0f, 0.0f, 1.0f, 1.0f},
      {"0x0", false, 0.0f, 0.0f, 1.0f, 1.0f},     {"-1x1", false, 0.0f, 0.0f, 1.0f, 1.0f},
      {"nanxnan", false, 0.0f, 0.0f, 1.0f, 1.0f}, {"", false, 0.0f, 0.0f, 1.0f, 1.0f},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text);
    GeomBox box;
    EXPECT_EQ(c.used, Plot::decodePanelStr(Rect(0.0f, 0.0f, 1.0f, 1.0f), c.text, box));
    EXPECT_FLOAT_EQ(c.x, box.x);
    EXPECT_FLOAT_EQ(c.y, box.y);
    EXPECT_FLOAT_EQ(c.width, box.width);
    EXPECT_FLOAT_EQ(c.height, box.height);
  }
}

TEST(PlotDrawing, KeywordsChooseWhatIsDrawn) {
  struct Case {
    const char* list;
    const char* flags;  // 0 to 9
  };
  constexpr Case CASES[] = {
      {"", "1111111111"},
      {"rubbish", "1111111111"},
      {"-text", "1110000000"},
      {"map,data", "0110000000"},
      {"none", "0000000000"},
      {"all", "1111111111"},
      {"plot,text_ul,bord", "1001000001"},
      {"-bord,-data", "1011111110"},
      {"all,-text_lr", "1111111101"},
      {"SUM", "1000000000"},
      {"data,none,grid", "0010000000"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.list);
    Plot plot;
    plot.setDrawing(c.list);
    std::string flags;
    for (int i = 0; i < 10; ++i) flags += static_cast<char>('0' + plot.isDrawing(i));
    EXPECT_EQ(c.flags, flags);
    EXPECT_EQ(0, plot.isDrawing(10));
    EXPECT_EQ(0, plot.isDrawing(-1));
  }
}

TEST(PlotLabel, FormatsReplaceEscapes) {
  struct Case {
    const char* format;
    const char* text;
  };
  constexpr Case CASES[] = {
      {"%y%m%d_%h%nZ", "240305 1230Z"},
      {"100%%", "100%"},
      {"%Y %b %a", "2024 MAR TUE"},
      {"%S|", "KTLX|"},
      {"%f h", "36 h"},
      {"%F", "1.5 day"},
      {"%q_%", "%q %"},
      {"%D", "1230Z  5 MAR 24"},
      {"%V", "KTLX 1230Z  5 MAR 24"},
      {"", ""},
  };
  Plot plot;
  plot.setDate(Date(2024, 3, 5, 12, 30, Const::MISS));
  plot.setDataSource("KTLX");
  plot.setForeHour(36.0f);
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.format);
    char text[100];
    plot.formatLabel(c.format, text, sizeof text);
    EXPECT_STREQ(c.text, text);
  }
}

TEST(PlotLabel, OutputStopsAtTheFieldsEnd) {
  Plot plot;
  plot.setDate(Date(2024, 3, 5, 12, 30, Const::MISS));
  char text[8];
  plot.formatLabel("abc%D", text, sizeof text);
  EXPECT_STREQ("abc1230", text);
  plot.formatLabel("abcdefghij", text, sizeof text);
  EXPECT_STREQ("abcdefg", text);
}

TEST(PlotLabel, OneMoreThanThirtyIsRefused) {
  Plot plot;
  for (int i = 0; i < Plot::MAX_LABEL; ++i) EXPECT_TRUE(plot.addLabel("ul", "text"));
  EXPECT_FALSE(plot.addLabel("ul", "text"));
  EXPECT_FALSE(plot.setLabel("ul", "text"));
}

TEST(PlotCrop, KeepsWhatLiesInsideAndLiftsThePenBetween) {
  Plot plot;
  // Without a device there is one panel all the same: 10 by 10 units around the origin.
  plot.initPanel();
  Domain domain;
  domain.set(11, 11);
  ASSERT_EQ(1, plot.setPanelDomain(0, domain));
  Points line;
  line.add(-20.0f, 0.0f);
  line.add(20.0f, 0.0f);   // passes through
  line.add(20.0f, 20.0f);  // outside
  line.add(0.0f, 0.0f);    // comes in
  plot.cropLine(line);
  ASSERT_EQ(5, line.getNum());
  EXPECT_FLOAT_EQ(-5.0f, line[0].x);
  EXPECT_FLOAT_EQ(5.0f, line[1].x);
  EXPECT_TRUE(line[2].isMissing());
  EXPECT_FLOAT_EQ(5.0f, line[3].x);
  EXPECT_FLOAT_EQ(5.0f, line[3].y);
  EXPECT_FLOAT_EQ(0.0f, line[4].x);
}

}  // namespace
}  // namespace KYV
