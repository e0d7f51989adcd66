#include "KYV/DatumPlot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>

#include "../resrc/Restore.h"
#include "KYV/ColorFile.h"
#include "KYV/Datum.h"
#include "KYV/Plot.h"
#include "KYV/VarList.h"
#include "KYV/WindPlot.h"
#include "TestDevice.h"

namespace KYV {
namespace {

using Log = TestDevice::Log;

// A map of 10 by 10 units, 60 plot units each, y upward; its middle 0,0 is at 400,300. Texts are those of the device.
class DatumPlotTest : public testing::Test {
 protected:
  DatumPlotTest() {
    Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
    auto device = std::make_unique<TestDevice>(log);
    device->turn();
    plot.getGraph().setDevice(std::move(device));
    EXPECT_EQ(1, plot.getGraph().open());
    ColorMap colors;
    EXPECT_EQ(1, ColorFile::read("kyv.clr", colors));
    plot.setColorMap(colors);
    plot.initPanel();
    Domain domain;
    domain.set(11, 11);
    plot.setPanel(Rect(0.0f, 0.0f, 1.0f, 1.0f), domain);
    plot.setLine("white");
    log.clear();
  }
  static Datum datum(int type, float value, const char* text, const char* format) {
    Datum d;
    d.point.set(0.0f, 0.0f);
    d.type = type;
    d.val[0] = value;
    StrLib::copy(d.text, text);
    StrLib::copy(d.format, format);
    return d;
  }
  // The device's calls of one kind while the datum is drawn.
  Log draw(const Datum& d, const char* kind, int result = 1) {
    DatumPlot data(plot);
    data.setAttr(PlotAttr("white,fo=#device"));
    log.clear();
    EXPECT_EQ(result, data.draw(d));
    return only(kind);
  }
  Log only(const char* kind) const {
    Log some;
    std::copy_if(log.begin(), log.end(), std::back_inserter(some),
                 [kind](const std::string& call) { return call.starts_with(kind); });
    return some;
  }

  FreshKyv fresh;
  Log log;
  Plot plot;
};

TEST_F(DatumPlotTest, FormatsNumbers) {
  struct Case {
    const char* format;
    const char* text;
  };
  constexpr Case CASES[] = {
      {"cc", "12"},
      {"cc,fm=%.2f", "12.35"},
      {"cc,fm=%+6.1f in", "+12.3 in"},
      {"cc,fm=%03.0f%%", "012%"},
      {"fm=%.1e,cc", "1.2e+01"},
      {"cc,fm=%g", "12.346"},
      {"cc,fm=%n", "12"},
      {"cc,fm=%s", "12"},
      {"cc,fm=%f%f", "12"},
      {"cc,fm=%999999f", "12"},
      {"cc,fm=%*f", "12"},
      {"cc,fm=%.99f", "12"},
      {"cc,fm=%", "12"},
      {"cc,fm=", "12"},
      {"cc,fm=%lf", "12"},
      {"cc,fm=dry", "12"},
      {"cc,fm=%.1f,fm=%.3f", "12.346"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.format);
    // Leading blanks of a width stay.
    const std::string text =
        std::string(c.format).find("%+6") == std::string::npos ? c.text : std::string(" ") + c.text;
    EXPECT_EQ(Log{"text (400,300) " + text}, draw(datum(2, 12.346f, "", c.format), "text"));
  }
}

TEST_F(DatumPlotTest, TextsStandAroundThePlace) {
  // Beside the symbol's room: (0.0125 + 0.004) * 10 * 60; its half, a gap of 0.002 and half a text above; a line more.
  constexpr double BESIDE = 9.9, ABOVE = 14.1, LINE = 14.04;
  struct Case {
    const char* format;
    const char* align;
    double x, y;
  };
  constexpr Case CASES[] = {
      {"ul", "align 3 2", -BESIDE, ABOVE},
      {"uc", "align 2 2", 0.0, ABOVE},
      {"ur", "align 1 2", BESIDE, ABOVE},
      {"cl", "align 3 2", -BESIDE, 0.0},
      {"cc", "align 2 2", 0.0, 0.0},
      {"cr", "align 1 2", BESIDE, 0.0},
      {"ll", "align 3 2", -BESIDE, -ABOVE},
      {"lc", "align 2 2", 0.0, -ABOVE},
      {"LR", "align 1 2", BESIDE, -ABOVE},
      {"ul2", "align 3 2", -BESIDE, ABOVE + LINE},
      {"ul,lr3", "align 1 2", BESIDE, -ABOVE - 2.0 * LINE},
      {"", "align 1 2", BESIDE, ABOVE},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.format);
    char expected[60];
    StrLib::printf(expected, "text (%g,%g) A0", 400.0 + c.x, 300.0 + c.y);
    EXPECT_EQ(Log{expected}, draw(datum(3, Const::MISS, "A0", c.format), "text"));
    EXPECT_EQ(Log{c.align}, only("align"));
  }
}

TEST_F(DatumPlotTest, TextComesBeforeNumberAndMissingDrawsNothing) {
  EXPECT_EQ(Log{"text (400,300) *"}, draw(datum(2, 80.0f, "*", "cc"), "text"));
  EXPECT_EQ(Log{}, draw(datum(2, Const::MISS, "", "cc"), "text", 0));
  EXPECT_EQ(Log{}, draw(datum(2, NAN, "", "cc"), "text", 0));
  EXPECT_EQ(Log{}, draw(datum(3, 1.0f, "", "cc"), "text", 0));
  EXPECT_EQ(Log{}, draw(datum(4, 1.0f, "nosuch", ""), "line", 0));
  EXPECT_EQ(Log{}, draw(datum(5, 1.0f, "A", ""), "", 0));
  Datum outside = datum(3, 1.0f, "A", "");
  for (const Point p : {Point(6.0f, 0.0f), Point(NAN, 0.0f), Point(Const::MISS, 0.0f)}) {
    outside.point = p;
    EXPECT_EQ(Log{}, draw(outside, "", 0));
  }
}

TEST_F(DatumPlotTest, SymbolsAreCentredInTheirOwnAttributes) {
  // Size 0.025 * 10 * 60 = 15.
  EXPECT_EQ((Log{"line 1 (392.5,292.5) (407.5,292.5) (400,307.5) (392.5,292.5)"}),
            draw(datum(4, Const::MISS, "tri", "co=green,wi=2"), "line"));
  EXPECT_EQ(Log{"width 1 2"}, only("width"));
  EXPECT_EQ(1U, only("color 1").size());
  // The next one has the base attributes again, and a size of its own.
  EXPECT_EQ((Log{"line 1 (385,300) (415,300)", "line 1 (400,285) (400,315)"}),
            draw(datum(4, Const::MISS, "plus", "hi=2"), "line"));
  EXPECT_EQ(Log{"width 1 0"}, only("width"));
  EXPECT_EQ(1U, only("color 1").size());
  for (const char* hostile : {"hi=nan", "hi=-1e30", "hi=1e38", "sh=99999999", "co=nosuch", "fo=#x,we=1e30"}) {
    SCOPED_TRACE(hostile);
    Datum d = datum(4, 1.0f, "circle", hostile);
    DatumPlot(plot).draw(d);
    d.type = 2;
    DatumPlot(plot).draw(d);
  }
}

TEST_F(DatumPlotTest, MovementPointsWhereTheStormGoes) {
  Datum d = datum(7, 270.0f, "", "");
  d.val[1] = 30.0f;
  // From the west: eastward, from beside the symbol, 0.05 * 10 * 60 long.
  EXPECT_EQ("line 1 (409.9,300) (439.9,300)", draw(d, "line").at(0));
  StrLib::copy(d.format, "fm=%.0f");
  EXPECT_EQ(Log{"text (450.7,300) 30"}, draw(d, "text"));
  d.val[1] = 0.0f;
  EXPECT_EQ(Log{}, draw(d, "line", 0));
  d.val[1] = 30.0f, d.val[0] = Const::MISS;
  EXPECT_EQ(Log{}, draw(d, "line", 0));

  // East of the map's middle meridian, a storm from the north goes along its own.
  DomainVal val;
  val.proj = DomainVal::PSTEREO;
  val.plat = 35.0f, val.plon = -97.0f;
  val.clat = 35.0f, val.clon = -67.0f;
  val.nx = val.ny = 11;
  val.dx = val.dy = 1.0f;
  plot.setPanel(Rect(0.0f, 0.0f, 1.0f, 1.0f), Domain(val));
  d.place.set(35.0f, -67.0f);
  d.point.setMissing();
  d.val[0] = 0.0f;
  float x1 = 0.0f, y1 = 0.0f, x2 = 0.0f, y2 = 0.0f;
  ASSERT_EQ(4, std::sscanf(draw(d, "line").at(0).c_str(), "line 1 (%f,%f) (%f,%f)", &x1, &y1, &x2, &y2));
  Point here, south;
  plot.getDomain().tran(d.place, here);
  plot.getDomain().tran(EarthPoint(34.9f, -67.0f), south);
  EXPECT_NEAR(std::atan2(south.y - here.y, south.x - here.x), std::atan2(y2 - y1, x2 - x1), 0.01);
}

TEST_F(DatumPlotTest, TheGraphsShadowStays) {
  plot.setDropShadow(2);
  EXPECT_EQ(3U, draw(datum(4, 1.0f, "tri", ""), "line").size());
  EXPECT_EQ(1U, draw(datum(4, 1.0f, "tri", "sh=0"), "line").size());
  EXPECT_EQ(2, plot.getGraph().getDropShadow());
}

TEST_F(DatumPlotTest, TextsDoNotCrossTheMapsEdge) {
  DatumPlot data(plot);  // in stroke letters
  for (const char* position : {"ul", "ur", "cl", "cr", "ll", "lr"}) {
    for (const Point corner : {Point(4.99f, 4.99f), Point(-4.99f, -4.99f)}) {
      SCOPED_TRACE(position);
      Datum d = datum(3, 1.0f, "MESO", position);
      d.point = corner;
      log.clear();
      EXPECT_EQ(1, data.draw(d));
      ASSERT_FALSE(only("line").empty());
      for (std::string call : only("line")) {
        for (float x = 0.0f, y = 0.0f; call.find('(') != std::string::npos; call.erase(0, call.find('(') + 1)) {
          if (std::sscanf(call.c_str(), "%f,%f", &x, &y) != 2) continue;
          EXPECT_TRUE(x >= 100.0f && x <= 700.0f && y >= 0.0f && y <= 600.0f) << x << "," << y;
        }
      }
    }
  }
}

TEST_F(DatumPlotTest, ShippedTextsHavePlacesOfTheirOwn) {
  VarList list;
  ASSERT_EQ(1, list.setFile("radmap.var"));
  ASSERT_EQ(1, list.process("cid,tvs,meso,meso5,poh,poh5,posh,hsize,vil,dbzm,dbzht,ctop,cdir,cspd"));
  std::multimap<float, float> places;  // x, y
  for (int i = 0; i < list.getNum(); ++i) {
    SCOPED_TRACE(list.getName(i));
    float x = 0.0f, y = 0.0f;
    const Log texts = draw(datum(2, 88.0f, "", list.getFormat(i)), "text");
    ASSERT_EQ(1U, texts.size());
    ASSERT_EQ(2, std::sscanf(texts[0].c_str(), "text (%f,%f)", &x, &y));
    EXPECT_NE(400.0f, x);  // right or left of the symbol
    for (auto [at, end] = places.equal_range(x); at != end; ++at) EXPECT_GT(std::fabs(y - at->second), 0.018f * 600.0f);
    places.emplace(x, y);
  }
}

TEST_F(DatumPlotTest, TracksAreAsLongAsTheStormMovesInTheTime) {
  WindPlot wind(plot);
  // 40 km/h at 10 plot units for 100 km: 4 units northward in an hour.
  wind.setWind(180.0f, 40.0f, 10.0f);
  EXPECT_EQ(1, wind.drawTrack(Point(0.0f, 0.0f), 1.0f, 4, 0));
  EXPECT_EQ((Log{"line 1 (400,300) (400,540)", "line 1 (403.6,531) (400,540) (396.4,531)", "line 1 (403,360) (397,360)",
                 "line 1 (403,420) (397,420)", "line 1 (403,480) (397,480)"}),
            only("line"));

  struct Case {
    const char* what;
    float dir, speed, factor, size;
    const char* line;  // null: nothing drawn
    std::size_t lines;
  };
  constexpr float MISS = Const::MISS;
  constexpr Case CASES[] = {
      {"two quarters fit in five sizes", 180.0f, 40.0f, 20.0f, 0.9f, "line 1 (400,300) (400,540)", 3},
      {"not even one fits", 270.0f, 40.0f, 1000.0f, 0.5f, "line 1 (400,300) (550,300)", 2},
      {"calm", 180.0f, 0.0f, 10.0f, 1.0f, nullptr, 0},
      {"speed missing", 180.0f, MISS, 10.0f, 1.0f, nullptr, 0},
      {"direction missing", MISS, 40.0f, 10.0f, 1.0f, nullptr, 0},
      {"factor missing", 180.0f, 40.0f, MISS, 1.0f, nullptr, 0},
      {"not a number", NAN, 40.0f, 10.0f, 1.0f, nullptr, 0},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    log.clear();
    wind.setWind(c.dir, c.speed, c.factor);
    EXPECT_EQ(c.line ? 1 : 0, wind.drawTrack(Point(0.0f, 0.0f), c.size, 4, 0));
    ASSERT_EQ(c.lines, only("line").size());
    if (c.line) {
      EXPECT_EQ(c.line, only("line")[0]);
    }
  }
  log.clear();
  wind.setWind(180.0f, 40.0f, 10.0f);
  EXPECT_EQ(1, wind.drawTrack(Point(0.0f, 0.0f), 1.0f, -5, 1));
  EXPECT_EQ(1U, only("fill").size());
}

}  // namespace
}  // namespace KYV
