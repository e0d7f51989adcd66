#include "KYV/Domain.h"

#include <gtest/gtest.h>
#include <cmath>
#include <string>

#include "KYV/EarthPoints.h"
#include "KYV/Points.h"
#include "KYV/String.h"

using namespace KYV;

namespace {

std::string textOf(const DomainVal& val) {
  String text;
  val.toString(text);
  return text.get();
}

TEST(DomainVal, NamesAreReadByTheirBeginning) {
  const struct {
    const char* name;
    int code;
  } cases[] = {{"latlon", 2},   {"LL", 2},       {"rectangular", 2}, {"ps", 1},      {"pstereo", 1},
               {"polar", 1},    {"stuve", 1},    {"satellite", 10},  {"lambaz", 8},  {"Lambert", 4},
               {"lc", 4},       {"la", 8},       {"azimuth", 8},     {"albers", 9},  {"gnom", 6},
               {"ortho", 5},    {"moll", 7},     {"mercator", 3},    {"radial", 11}, {"pixel", 20},
               {"xy", 21},      {"xlogy", 24},   {"xlogp", 24},      {"cat", 26},    {"skewt", 40},
               {"ema", 42},     {"teph", 43},    {"rteph", 44},      {"thermo", 40}, {"hodograph", 25},
               {"vert", 24},    {"xp", 23},      {"xpress", -1},     {"zoom", 50},   {"size", 51},
               {"MISS", -9999}, {"missing", -1}, {"xz", -1},         {"", -1},       {nullptr, -1}};
  for (const auto& c : cases) EXPECT_EQ(c.code, DomainVal::getProj(c.name)) << (c.name ? c.name : "null");
}

TEST(Domain, TextsAreReadAndWrittenBack) {
  const struct {
    const char* text;
    const char* written;
  } cases[] = {
      {"ps,40,-100,640,480,0.05,0.05",
       "pstereo:40.000000:-100.000000:::,40.000000,-100.000000,640,480,0.050000,0.050000"},
      {"lc:25:-95:25:25,35,-95,400,300,0.05,0.05",
       "lamb:25.000000:-95.000000:25.000000:25.000000:,35.000000,-95.000000,400,300,0.050000,0.050000"},
      {"merc:e:20, 10, 5, 3, 3, 1, -1", "merc:e:20.000000:5.000000:::,10.000000,5.000000,3,3,1.000000,-1.000000"},
      {"ps:90:0:::63.9,80,0,2,2,1,1",
       "pstereo:90.000000:0.000000:::63.900002,80.000000,0.000000,2,2,1.000000,1.000000"},
      {"sat::-75,0,-75,2,2,1,1", "sat:0.000000:-75.000000:::,0.000000,-75.000000,2,2,1.000000,1.000000"},
      {"ll:0:0", "latlon:0.000000:0.000000:::,-9999.000000,-9999.000000,-9999,-9999,-9999.000000,-9999.000000"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Domain d, again;
    ASSERT_EQ(1, d.set(c.text));
    EXPECT_EQ(c.written, textOf(d));
    ASSERT_EQ(1, again.set(c.written));
    EXPECT_TRUE(Domain::compare(d, again));
  }
}

TEST(Domain, OtherTextsAreRefusedAndLeaveItAsItWas) {
  const std::string tooLong(100000, '1');
  Domain d("ps,40,-100,640,480,0.05,0.05");
  const std::string before = textOf(d);
  for (const char* text :
       {"", "nowhere", "nowhere,1,2,3,4,5,6", "ps,40,-100", "ps,40,-100,640,480,0.05", "ps,40,-100,640,480,0.05,0.05,1",
        "ps,nan,0,2,2,1,1", "ps,inf,0,2,2,1,1", "ps,40,1e999,2,2,1,1", "ps,40,0,99999999999,2,1,1", "ps,40,0,2.5,2,1,1",
        "ps,,0,2,2,1,1", "ps,40,0,2,2,1,1x", "ps:1:2:3:4:5:6,40,0,2,2,1,1", "ps:a,40,0,2,2,1,1",
        // Not on the earth, or too large for a plane of floats.
        "ps,95,0,2,2,1,1", "ps:95:0,40,0,2,2,1,1", "ps:90:0:95,40,0,2,2,1,1", "ps,40,0,2147483647,2147483647,1e30,1e30",
        "ll:0:1e9,0,0,2,2,1,1",
        // Parameters that make no map.
        "lc:0:0:30:-30,30,0,2,2,1,1", "alb:0:0:30:-30,30,0,2,2,1,1", "lc:0:0:90:30,30,0,2,2,1,1",
        "lc:0:0:90:90,30,0,2,2,1,1", "ps:90:0:-90,40,0,2,2,1,1", "ps:90:0:60::0,40,0,2,2,1,1", "sat:0:0:10,0,0,2,2,1,1",
        "sat:0:0:0,0,0,2,2,1,1", "merc:e:90,0,0,2,2,1,1", "ortho:0:0,0,170,2,2,1,1"}) {
    EXPECT_EQ(0, d.set(text)) << text;
    EXPECT_EQ(before, textOf(d)) << text;
  }
  EXPECT_EQ(0, d.set(static_cast<const char*>(nullptr)));
  EXPECT_EQ(0, d.set(("ps," + tooLong + ",0,2,2,1,1").c_str()));
  DomainVal val = d.get();
  val.clat = NAN;
  EXPECT_EQ(0, d.set(val));
  EXPECT_EQ(before, textOf(d));
}

TEST(Domain, FailedChangeOfFieldsProjectsNothing) {
  Domain d("ps,40,-100,640,480,0.05,0.05");
  d.param[2] = 0.0f;
  EXPECT_EQ(0, d.setParam());
  Point p;
  EarthPoint e;
  EXPECT_EQ(0, d.tran(EarthPoint(40.0f, -100.0f), p));
  EXPECT_EQ(0, d.tran(Point(0.0f, 0.0f), e));
  EXPECT_TRUE(Const::isMissing(d.getMapFactor(EarthPoint(40.0f, -100.0f))));
  EXPECT_EQ(1.0f, d.getAspect());
}

TEST(Domain, LimitsLieAroundTheCentre) {
  const struct {
    const char* text;
    Rect limits;
    float aspect;
  } cases[] = {
      {"ps,90,0,5,3,2,1", Rect(-4, -1, 4, 1), 4.0f},
      {"ps,90,0,5,3,-2,-1", Rect(-4, -1, 4, 1), 4.0f},
      {"ll:0:0,10,20,11,21,1,0.5", Rect(15, 5, 25, 15), 1.0f},
      {"ll:0:0,10,20,1,1,1,1", Rect(20, 10, 20, 10), 1.0f},
      {"size,-9999,-9999,640,480,-9999,-9999", Rect(0, 0, 0, 0), 1.0f},
      {"ps,-9999,-9999,5,3,2,1", Rect(-4, -1, 4, 1), 4.0f},
      {"pix,100,100,201,201,1,1", Rect(0, -200, 200, 0), 1.0f},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Domain d;
    ASSERT_EQ(1, d.set(c.text));
    const Rect& r = d.getLimits();
    EXPECT_NEAR(c.limits.xmin, r.xmin, 1e-4);
    EXPECT_NEAR(c.limits.ymin, r.ymin, 1e-4);
    EXPECT_NEAR(c.limits.xmax, r.xmax, 1e-4);
    EXPECT_NEAR(c.limits.ymax, r.ymax, 1e-4);
    EXPECT_FLOAT_EQ(c.aspect, d.getAspect());
    EXPECT_FLOAT_EQ(c.limits.height(), d.getVert());
  }
}

TEST(Domain, CellsAndCorners) {
  Domain d;
  ASSERT_EQ(1, d.set(5, 3));
  EXPECT_EQ(DomainVal::XY, d.proj);
  EXPECT_EQ(-2.0f, d.getLimits().xmin);
  EXPECT_EQ(1.0f, d.getLimits().ymax);
  EXPECT_EQ(0, d.set(0, 3));
  EXPECT_EQ(5, d.nx);

  Domain map("ll:0:0");
  ASSERT_EQ(1, map.set(EarthPoint(50.0f, -120.0f), EarthPoint(20.0f, -60.0f), 61, 31));
  EXPECT_EQ(1.0f, map.dx);
  EXPECT_EQ(1.0f, map.dy);
  EXPECT_EQ(35.0f, map.clat);
  EXPECT_EQ(-90.0f, map.clon);
  EXPECT_EQ(-120.0f, map.getLimits().xmin);
  EXPECT_EQ(50.0f, map.getLimits().ymax);
  EXPECT_EQ(0, map.set(EarthPoint(50.0f, -120.0f), EarthPoint(), 61, 31));
  EXPECT_EQ(0, map.set(EarthPoint(50.0f, -120.0f), EarthPoint(20.0f, -60.0f), 0, 31));
  EXPECT_EQ(61, map.nx);
  Domain unset;
  ASSERT_EQ(1, unset.set(EarthPoint(50.0f, -120.0f), EarthPoint(20.0f, -60.0f), 61, 31));
  EXPECT_EQ(DomainVal::LATLON, unset.proj);
}

TEST(Domain, WhereIsAKeypad) {
  const Domain d("ll:0:0,0,0,3,3,10,10");  // -10 to 10
  int key = 1;
  for (const float lat : {20.0f, 0.0f, -20.0f}) {
    for (const float lon : {-20.0f, 0.0f, 20.0f}) {
      EXPECT_EQ(key, d.where(Point(lon, lat)));
      EXPECT_EQ(key, d.where(EarthPoint(lat, lon)));
      EXPECT_EQ(key == 5, d.within(Point(lon, lat)));
      EXPECT_EQ(key == 5, d.within(EarthPoint(lat, lon)));
      EXPECT_TRUE(d.withinExt(Point(lon, lat), 1));
      ++key;
    }
  }
  EXPECT_TRUE(d.within(Point(10.0f, -10.0f)));
  EXPECT_FALSE(d.withinExt(EarthPoint(20.5f, 0.0f), 1));
  EXPECT_FALSE(d.within(Point(NAN, 0.0f)));
  EXPECT_FALSE(d.within(EarthPoint()));
  EXPECT_EQ(0, d.where(EarthPoint(91.0f, 0.0f)));
  const Domain unset;
  EXPECT_TRUE(unset.within(Point(1e9f, 0.0f)));
  EXPECT_TRUE(unset.within(EarthPoint(500.0f, 0.0f)));
  EXPECT_EQ(0, unset.where(Point(0.0f, 0.0f)));
  // Beyond the seam: 170 W is at 190.
  const Domain pacific("ll:0:0,0,180,3,3,20,20");
  EXPECT_TRUE(pacific.within(EarthPoint(0.0f, -170.0f)));
  EXPECT_EQ(5, pacific.where(EarthPoint(0.0f, -170.0f)));
  EXPECT_FALSE(pacific.within(EarthPoint(0.0f, -150.0f)));
}

TEST(Domain, GridRowsRunFromTheNorth) {
  const Domain d("ll:0:0,10,20,11,21,1,0.5");  // 15 to 25 E, 5 to 15 N
  const struct {
    float lat, lon, column, row;
  } cases[] = {{15, 15, 0, 0}, {5, 25, 10, 20}, {10, 20, 5, 10}, {14.75f, 15.25f, 0.25f, 0.5f}};
  for (const auto& c : cases) {
    GridPoint g;
    EarthPoint e;
    ASSERT_EQ(1, d.tran(EarthPoint(c.lat, c.lon), g));
    EXPECT_NEAR(c.column, g.x, 1e-5);
    EXPECT_NEAR(c.row, g.y, 1e-5);
    ASSERT_EQ(1, d.tran(GridPoint(c.column, c.row), e));
    EXPECT_NEAR(c.lat, e.lat, 1e-5);
    EXPECT_NEAR(c.lon, e.lon, 1e-5);
  }
  GridPoint g;
  Point p;
  EarthPoint e;
  ASSERT_EQ(1, d.tran(12, g));
  EXPECT_EQ(1.0f, g.x);
  EXPECT_EQ(1.0f, g.y);
  ASSERT_EQ(1, d.tran(230, p));
  EXPECT_EQ(25.0f, p.x);
  EXPECT_EQ(5.0f, p.y);
  EXPECT_EQ(0, d.tran(231, p));
  EXPECT_EQ(0, d.tran(-1, e));
  EXPECT_TRUE(e.isMissing());
  // No cells: no division by them.
  EXPECT_EQ(0, Domain("ll:0:0,10,20,11,21,0,0").tran(Point(1.0f, 1.0f), g));
  EXPECT_EQ(0, Domain("ll:0:0").tran(Point(1.0f, 1.0f), g));
  EXPECT_EQ(0, Domain("ll:0:0").tran(GridPoint(1.0f, 1.0f), p));
  EXPECT_EQ(0, d.tran(GridPoint(1e30f, 1.0f), p));
}

TEST(Domain, RadialGridIsAzimuthSlotAndRangeBin) {
  const Domain d("rad:35:-97,35,-97,720,460,0.5,0.0112");
  // East of the radar: the same range and a quarter turn, from where the radar's own map puts them.
  const Domain map("ps:35:-97,35,-97,461,461,1,1");
  Point centre;
  ASSERT_EQ(1, map.tranCenter(centre));
  const struct {
    const char* what;
    float east, north, slot;
  } cases[] = {{"north", 0, 1, 0},   {"east", 1, 0, 180},        {"south", 0, -1, 360},
               {"west", -1, 0, 540}, {"north-west", -1, 1, 630}, {"a hair west of north", -1e-4f, 1, 720}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EarthPoint e, back;
    GridPoint g;
    ASSERT_EQ(1, map.tran(Point(centre.x + c.east, centre.y + c.north), e));
    ASSERT_EQ(1, d.tran(e, g));
    EXPECT_NEAR(c.slot, g.x, 0.02);
    EXPECT_LT(g.x, 720.0f);
    EXPECT_NEAR(std::hypot(c.east, c.north) / 0.0112, g.y, 0.01);
    ASSERT_EQ(1, d.tran(g, back));
    EXPECT_LT(d.calcEarthDist(e, back), 1e-4f);
  }
  GridPoint g;
  ASSERT_EQ(1, d.tran(Point(-90.0f, 0.0f), g));
  EXPECT_EQ(540.0f, g.x);
}

TEST(Domain, ListsKeepTheirHoles) {
  const Domain d("ortho:0:0,0,0,3,3,10,10");
  EarthPoints es;
  es.add(0.0f, 0.0f);
  es.add(0.0f, 170.0f);
  es.add(EarthPoint());
  Points ps;
  GridPoints gs;
  EXPECT_EQ(0, d.tran(es, ps));
  ASSERT_EQ(3, ps.getNum());
  EXPECT_EQ(0.0f, ps[0].x);
  EXPECT_TRUE(ps[1].isMissing());
  EXPECT_TRUE(ps[2].isMissing());
  EXPECT_EQ(0, d.tran(es, gs));
  ASSERT_EQ(3u, gs.size());
  EXPECT_EQ(1.0f, gs[0].x);
  EXPECT_TRUE(gs[1].isMissing());
}

TEST(Domain, SameProjectionMeansSamePlane) {
  const Domain a("ps:40:-100,35,-97,11,11,1,1");
  EXPECT_TRUE(Domain::compareProj(a, Domain("ps:40:-100,20,10,640,480,2,2")));
  EXPECT_TRUE(Domain::compareProj(a, Domain("ps,40,-100,640,480,2,2")));
  EXPECT_FALSE(Domain::compare(a, Domain("ps:40:-100,35,-97,11,11,1,2")));
  for (const char* other : {"ll:40:-100", "ps:41:-100", "ps:40:-99", "ps:40:-100:50", "ps:e:40:-100"}) {
    EXPECT_FALSE(Domain::compareProj(a, Domain(other))) << other;
  }
  EXPECT_FALSE(Domain::compareProj(Domain("rad:35:-97,35,-97,9,9,1,1"), Domain("rad:35:-97,35,-96,9,9,1,1")));
}

}  // namespace
