#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "KYV/Domain.h"
#include "KYV/Points.h"

using namespace KYV;

namespace {

TEST(DomainMap, ZoomAndPanMoveTheCentre) {
  Domain d("ll:0:0,0,0,21,11,2,1");
  ASSERT_EQ(1, d.setView(Rect(0.0f, 0.0f, 0.5f, 1.0f)));
  ASSERT_EQ(1, d.zoom(Point(4.0f, 3.0f), 2.0f));
  EXPECT_EQ(3.0f, d.clat);
  EXPECT_EQ(4.0f, d.clon);
  EXPECT_EQ(1.0f, d.dx);
  EXPECT_EQ(0.5f, d.dy);
  EXPECT_EQ(-6.0f, d.getLimits().xmin);
  EXPECT_EQ(5.5f, d.getLimits().ymax);
  EXPECT_EQ(0.5f, d.getView().xmax);
  ASSERT_EQ(1, d.pan(Point(0.0f, 0.0f)));
  EXPECT_EQ(1.0f, d.dx);
  EXPECT_EQ(-10.0f, d.getLimits().xmin);
}

TEST(DomainMap, WhatCannotBeZoomedStays) {
  Domain d("ortho:0:0,0,0,11,11,1,1");
  for (const float factor : {0.0f, -1.0f, NAN, INFINITY}) EXPECT_EQ(0, d.zoom(Point(1.0f, 1.0f), factor));
  EXPECT_EQ(0, d.zoom(Point(500.0f, 0.0f), 2.0f));
  EXPECT_EQ(0, d.pan(Point(500.0f, 0.0f)));
  EXPECT_EQ(0.0f, d.clon);
  EXPECT_EQ(1.0f, d.dx);
  // However often, the map keeps an extent and stays finite.
  for (int i = 0; i < 300; ++i) (void)d.zoom(Point(1.0f, 1.0f), 2.0f);
  EXPECT_GT(d.getLimits().width(), 0.0f);
  for (int i = 0; i < 300; ++i) (void)d.zoom(Point(0.0f, 0.0f), 0.5f);
  EXPECT_TRUE(std::isfinite(d.getLimits().width()));
}

TEST(DomainMap, ScaledGridsCoverTheExtent) {
  Domain d("ll:0:0,0,0,21,11,2,2");  // 40 by 20
  ASSERT_EQ(1, d.scaleSize(201, 201));
  EXPECT_EQ(0.2f, d.dx);
  EXPECT_EQ(0.2f, d.dy);
  EXPECT_FLOAT_EQ(40.0f, d.getLimits().width());
  EXPECT_EQ(0, d.scaleSize(0, 5));
  EXPECT_EQ(201, d.nx);
  Domain one("ll:0:0,0,0,21,11,2,2");
  ASSERT_EQ(1, one.scaleSize(1, 1));
  EXPECT_EQ(1.0f, one.getAspect());
  Domain grid("ll:0:0,0,0,21,11,2,2");
  ASSERT_EQ(1, grid.scaleGrid(3.0f));
  EXPECT_EQ(8, grid.nx);  // 7 cells of 6 cover 40
  EXPECT_EQ(5, grid.ny);
  EXPECT_EQ(6.0f, grid.dx);
  EXPECT_EQ(0, grid.scaleGrid(1e-9f));
  EXPECT_EQ(0, grid.scaleGrid(0.0f));
  EXPECT_EQ(8, grid.nx);
}

TEST(DomainMap, PlanesAreTranslated) {
  const Domain stereo("ps:90:-100,40,-100,11,11,1,1"), plain("ll:0:0,0,0,3,3,1,1");
  Point p, q;
  ASSERT_EQ(1, stereo.tran(EarthPoint(45.0f, -80.0f), p));
  ASSERT_EQ(1, Domain::translate(stereo, p, plain, q));
  EXPECT_NEAR(-80.0f, q.x, 1e-4);
  EXPECT_NEAR(45.0f, q.y, 1e-4);
  ASSERT_EQ(1, Domain::translate(stereo, p, stereo, q));
  EXPECT_EQ(p.x, q.x);
  EXPECT_EQ(0, Domain::translate(plain, Point(0.0f, 100.0f), stereo, q));
  EXPECT_TRUE(q.isMissing());
}

TEST(DomainMap, StepsAreKilometresOnTheEarth) {
  for (const char* text :
       {"ps:35:-97,35,-97,11,11,1,1", "rad:35:-97,35,-97,360,230,1,0.01", "lc:25:-95:25:45", "ll:0:0,0,-97,11,11,1,1",
        "moll:0:-30", "lambaz:40:-60", "ortho:35:-67", "alb:40:-100:30:60", "merc:0:0", "gnom:30:-90", "sat:0:-100"}) {
    SCOPED_TRACE(text);
    const Domain d(text);
    const EarthPoint radar(35.0f, -97.0f);
    for (const float dir : {0.0f, 45.0f, 90.0f, 200.0f, 359.0f}) {
      EarthPoint to;
      ASSERT_EQ(1, d.offsetLatLon(radar, dir, 50.0f, to));
      EXPECT_NEAR(0.5f, d.calcEarthDist(radar, to), 0.0001f) << dir;
      EXPECT_NEAR(0.0, std::remainder(Domain::direct(radar, to) - dir, 360.0), 0.01) << dir;
      Point p, step, same;
      ASSERT_TRUE(d.tran(radar, p) && d.tran(to, same));
      ASSERT_EQ(1, d.offset(p, dir, 50.0f, step));
      EXPECT_NEAR(0.0, std::remainder(same.x - step.x, 360.0), 1e-3);
      EXPECT_NEAR(same.y, step.y, 2e-4);
    }
    EarthPoint to(1.0f, 1.0f);
    EXPECT_EQ(0, d.offsetLatLon(radar, 45.0f, Const::MISS, to));
    EXPECT_TRUE(to.isMissing());
    EXPECT_EQ(0, d.offsetLatLon(EarthPoint(), 45.0f, 1.0f, to));
    EXPECT_EQ(0, d.offsetLatLon(radar, 45.0f, 1e30f, to));
  }
}

TEST(DomainMap, GreatCircles) {
  const Domain d;
  const double quarter = 63.7122 * Const::PI / 2.0;
  EXPECT_NEAR(quarter, d.calcEarthDist(EarthPoint(0.0f, 0.0f), EarthPoint(0.0f, 90.0f)), 1e-4);
  EXPECT_NEAR(quarter, d.calcEarthDist(EarthPoint(90.0f, 20.0f), EarthPoint(0.0f, -70.0f)), 1e-4);
  EXPECT_NEAR(2.0 * quarter, d.calcEarthDist(EarthPoint(10.0f, 0.0f), EarthPoint(-10.0f, 180.0f)), 1e-3);
  EXPECT_NEAR(quarter / 90.0 / 128.0, d.calcEarthDist(EarthPoint(60.0f, 0.0f), EarthPoint(60.0078125f, 0.0f)), 1e-8);
  EXPECT_TRUE(Const::isMissing(d.calcEarthDist(EarthPoint(), EarthPoint(0.0f, 0.0f))));
  EXPECT_FLOAT_EQ(90.0f, Domain::direct(EarthPoint(0.0f, 170.0f), EarthPoint(0.0f, -170.0f)));
  EXPECT_FLOAT_EQ(180.0f, Domain::direct(EarthPoint(50.0f, 3.0f), EarthPoint(40.0f, 3.0f)));
}

TEST(DomainMap, PointsMoveByRevolutionsIntoView) {
  const Domain d("ll:0:0,0,180,3,3,20,20");  // 160 to 200
  const struct { float x, moved; } cases[] = {{-170, 190}, {-530, 190}, {170, 170}, {-150, -150}, {550, 190}};
  for (const auto& c : cases) {
    Point p(c.x, 1.0f);
    EXPECT_EQ(1, d.adjust(p));
    EXPECT_EQ(c.moved, p.x);
  }
  Point p;
  p.setMissing();
  EXPECT_EQ(0, d.adjust(p));
  EXPECT_TRUE(p.isMissing());
}

struct WrapCase {
  const char* what;
  const char* domain;
  int shift;
  std::vector<Point> line;
  std::vector<Point> cut;
};

TEST(DomainMap, LinesAreCutAtTheSeam) {
  const Point lift(Const::MISS, Const::MISS);
  const float half = Domain::OFFSET_MERC / 2.0f, quarter = half / 2.0f;
  const WrapCase cases[] = {
      {"nothing crosses", "ll:0:0,0,0,3,3,1,1", 0, {{0, 0}, {170, 10}}, {{0, 0}, {170, 10}}},
      {"eastward",
       "ll:0:0,0,0,3,3,1,1",
       0,
       {{170, 10}, {-170, 20}},
       {{170, 10}, {180, 15}, lift, {-180, 15}, {-170, 20}}},
      {"westward", "ll:0:0,0,0,3,3,1,1", 0, {{-175, 0}, {165, 8}}, {{-175, 0}, {-180, 2}, lift, {180, 2}, {165, 8}}},
      {"along the seam",
       "ll:0:0,0,0,3,3,1,1",
       0,
       {{180, 1}, {-180, 3}},
       {{180, 1}, {180, 1}, lift, {-180, 1}, {-180, 3}}},
      {"pen lift", "ll:0:0,0,0,3,3,1,1", 0, {{170, 1}, lift, {-170, 3}}, {{170, 1}, lift, {-170, 3}}},
      {"seen beyond the east", "ll:0:0,0,170,3,3,20,20", 1, {{0, 0}, {1, 1}}, {{0, 0}, {1, 1}}},
      {"seen beyond the west", "ll:0:0,0,-170,3,3,20,20", -1, {{0, 0}, {1, 1}}, {{0, 0}, {1, 1}}},
      {"Mercator",
       "merc:0:0,0,0,3,3,1,1",
       0,
       {{quarter, 2}, {-half * 0.5f - 1, 4}},
       {{quarter, 2}, {half, 3.01f}, lift, {-half, 3.01f}, {-half * 0.5f - 1, 4}}},
      {"Mercator beyond", "merc:0:0,0,179,3,3,100,100", 1, {{0, 0}}, {{0, 0}}},
      // A cone of half a turn: the seam's edges lie level with the apex, 120 and 150 degrees of longitude 60 and 75
      // of it.
      {"central meridian of a cone", "lc:30:0:30,30,0,3,3,1,1", 0, {{-1, -50}, {1, -50}}, {{-1, -50}, {1, -50}}},
      {"seam of a cone",
       "lc:30:0:30,30,0,3,3,1,1",
       0,
       {{50, -1}, {-50, -1}},
       {{50, -1}, {50.01f, 0}, lift, {-50.01f, 0}, {-50, -1}}},
      {"seam of Albers",
       "alb:0:0:30:30,30,0,3,3,1,1",
       0,
       {{100, 141}, {-100, 141}},
       {{100, 141}, {100.01f, 142.4648f}, lift, {-100.01f, 142.4648f}, {-100, 141}}},
      {"seam of Mollweide",
       "moll:0:0,0,0,3,3,1,1",
       0,
       {{120, 0}, {-120, 0}},
       {{120, 0}, {127.4244f, 0}, lift, {-127.4244f, 0}, {-120, 0}}},
      {"middle of Mollweide", "moll:0:0,0,0,3,3,1,1", 0, {{60, 0}, {-60, 0}}, {{60, 0}, {-60, 0}}},
      {"a cap has no seam", "ps:90:0,90,0,3,3,1,1", 0, {{1, 50}, {-1, 50}}, {{1, 50}, {-1, 50}}},
  };
  for (const WrapCase& c : cases) {
    SCOPED_TRACE(c.what);
    Points points;
    for (const Point& p : c.line) points.add(p);
    EXPECT_EQ(c.shift, Domain(c.domain).wrapLine(points));
    ASSERT_EQ(static_cast<int>(c.cut.size()), points.getNum());
    for (int i = 0; i < points.getNum(); ++i) {
      EXPECT_NEAR(c.cut[static_cast<std::size_t>(i)].x, points[i].x, 0.02) << i;
      EXPECT_NEAR(c.cut[static_cast<std::size_t>(i)].y, points[i].y, 0.02) << i;
    }
  }
}

TEST(DomainMap, FillsAreCutAtTheSeam) {
  const struct {
    const char* what;
    const char* domain;
    std::vector<Point> outline;
    std::vector<std::vector<Point>> pieces;  // none: filled as it is
  } cases[] = {
      {"none", "ll:0:0,0,0,181,91,2,2", {{10, 0}, {20, 0}, {20, 5}}, {}},
      {"astride",
       "ll:0:0,0,0,181,91,2,2",
       {{178, 0}, {-178, 0}, {-178, 4}, {178, 4}},
       {{{178, 0}, {180, 0}, {180, 4}, {178, 4}}, {{-180, 0}, {-178, 0}, {-178, 4}, {-180, 4}}}},
      {"closed, the other way round",
       "merc:0:0,0,0,401,91,1,1",
       {{-200, 0}, {-200, 4}, {200, 4}, {200, 0}, {-200, 0}},
       {{{200, 0}, {200, 4}, {200.15779f, 4}, {200.15779f, 0}},
        {{-200.15779f, 0}, {-200.15779f, 4}, {-200, 4}, {-200, 0}}}},
      {"seen beyond the seam",
       "ll:0:0,0,180,41,25,1,1",
       {{-178, 0}, {-170, 0}, {-170, 5}},
       {{{-178, 0}, {-170, 0}, {-170, 5}}, {{182, 0}, {190, 0}, {190, 5}}}},
      {"around a pole",
       "ll:0:0,0,0,181,91,2,2",
       {{-180, -80}, {-90, -70}, {0, -80}, {90, -70}},
       {{{-180, -80}, {-90, -70}, {0, -80}, {90, -70}, {180, -80}, {180, -90}, {-180, -90}}}},
      {"missing", "ll:0:0,0,180,41,25,1,1", {{178, 0}, {Const::MISS, Const::MISS}, {-178, 4}}, {}},
      {"central meridian of a cone", "lc:30:0:30,30,0,3,3,1,1", {{-1, -50}, {1, -50}, {1, -51}, {-1, -51}}, {}},
      {"no seam", "ps:90:0,90,0,3,3,1,1", {{1, 50}, {-1, 50}, {-1, 51}}, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Points outline;
    for (const Point& p : c.outline) outline.add(p);
    std::vector<Points> pieces;
    EXPECT_EQ(!c.pieces.empty(), Domain(c.domain).wrapFill(outline, pieces));
    ASSERT_EQ(c.pieces.size(), pieces.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      // Each corner where it belongs, and nothing beyond: corners may stand twice.
      for (const Point& corner : c.pieces[i]) {
        EXPECT_TRUE(std::any_of(pieces[i].begin(), pieces[i].end(),
                                [&](const Point& p) { return std::hypot(p.x - corner.x, p.y - corner.y) < 1e-3f; }))
            << corner.x << " " << corner.y;
      }
      Points whole;
      for (const Point& corner : c.pieces[i]) whole.add(corner);
      Rect expected, got;
      ASSERT_TRUE(whole.getBounds(expected) && pieces[i].getBounds(got));
      EXPECT_NEAR(expected.width(), got.width(), 1e-3f);
      EXPECT_NEAR(expected.height(), got.height(), 1e-3f);
    }
  }
}

// The seam of these maps is no upright line: pieces of an outline about it lie at its two ends.
TEST(DomainMap, FillsAreCutWhereTheSeamIsSlantOrCurved) {
  for (const char* text : {"lc:30:0:30", "alb:0:0:30:30", "moll:0:0"}) {
    SCOPED_TRACE(text);
    const Domain d(text);
    Points outline;
    for (const auto& [lat, lon] : {std::pair{10.0f, 170.0f}, {50.0f, 170.0f}, {50.0f, -170.0f}, {10.0f, -170.0f}}) {
      Point p;
      ASSERT_EQ(1, d.tran(EarthPoint(lat, lon), p));
      outline.add(p);
    }
    std::vector<Points> pieces;
    ASSERT_TRUE(d.wrapFill(outline, pieces));
    ASSERT_EQ(2u, pieces.size());
    for (const Points& piece : pieces) {
      EarthPoint first;
      ASSERT_EQ(1, d.tran(Point(piece[0].x * 0.9999f, piece[0].y * 0.9999f), first));
      for (const Point& p : piece) {
        EXPECT_GE(p.x * piece[0].x, 0.0f) << "both sides";
        EarthPoint e;
        // A hair inside, where the way back knows its side.
        ASSERT_EQ(1, d.tran(Point(p.x * 0.9999f, p.y * 0.9999f), e));
        EXPECT_GT(std::abs(e.lon), 169.0f);
        EXPECT_TRUE(e.lat > 9.0f && e.lat < 51.0f);
      }
    }
  }
}

TEST(DomainMap, LinesAreShiftedByRevolutions) {
  Points points;
  points.add(-170.0f, 5.0f);
  points.add(Point(Const::MISS, Const::MISS));
  ASSERT_EQ(1, Domain("ll:0:0").offsetLine(points, 1));
  EXPECT_EQ(190.0f, points[0].x);
  EXPECT_TRUE(points[1].isMissing());
  ASSERT_EQ(1, Domain("merc:0:0").offsetLine(points, -1));
  EXPECT_NEAR(190.0f - Domain::OFFSET_MERC, points[0].x, 1e-4);
  ASSERT_EQ(1, Domain("ps:90:0").offsetLine(points, 1));
  EXPECT_NEAR(190.0f - Domain::OFFSET_MERC, points[0].x, 1e-4);
}

}  // namespace
