#include "KYV/Points.h"

#include <gtest/gtest.h>

#include <limits>

#include "KYV/Const.h"

namespace KYV {

namespace {

constexpr float LIFT = Const::MISS;

Points make(std::initializer_list<Point> list) {
  Points points;
  for (const Point& p : list) points.add(p);
  return points;
}

}  // namespace

TEST(Points, RefusesIndicesOutside) {
  Points points = make({{1, 2}, {3, 4}});
  Point p;
  EXPECT_EQ(0, points.get(2, p));
  EXPECT_TRUE(p.isMissing());
  EXPECT_TRUE(points.get(-1).isMissing());
  EXPECT_EQ(0, points.set(-1, p));
  EXPECT_EQ(0, points.insert(3, p));
  EXPECT_EQ(0, points.remove(2));
  EXPECT_EQ(1, points.insert(2, Point(5, 6)));
  EXPECT_EQ(1, points.remove(0));
  EXPECT_EQ(2, points.getNum());
  EXPECT_FLOAT_EQ(3.0f, points[0].x);
  EXPECT_FLOAT_EQ(6.0f, points[1].y);
}

TEST(Points, OffsetLeavesPenLifts) {
  Points points = make({{1, 2}, {LIFT, LIFT}});
  points.offset(10, 20);
  EXPECT_FLOAT_EQ(11.0f, points[0].x);
  EXPECT_FLOAT_EQ(22.0f, points[0].y);
  EXPECT_FLOAT_EQ(LIFT, points[1].x);
}

TEST(Points, WithinCountsEvenAndOdd) {
  // A square with a square hole, and beside it a triangle.
  const Points points = make({{0, 0},
                              {10, 0},
                              {10, 10},
                              {0, 10},
                              {LIFT, 0},
                              {4, 4},
                              {6, 4},
                              {6, 6},
                              {4, 6},
                              {LIFT, 0},
                              {20, 0},
                              {24, 0},
                              {20, 4}});
  struct Case {
    const char* what;
    float x, y;
    bool inside;
  };
  constexpr Case CASES[] = {
      {"in the square", 1, 1, true},     {"in the hole", 5, 5, false}, {"left", -1, 2, false},
      {"beside the hole", 8, 5, true},   {"between", 15, 1, false},    {"in the triangle", 21, 1, true},
      {"beyond its slope", 23, 3, false}};
  for (const Case& c : CASES) EXPECT_EQ(c.inside, points.within(Point(c.x, c.y))) << c.what;
  EXPECT_FALSE(Points().within(Point(0, 0)));
}

TEST(Points, CentresOfPolygons) {
  constexpr float MAX = std::numeric_limits<float>::max();
  struct Case {
    const char* what;
    Points points;
    Point center, centroid;
  };
  const Case cases[] = {
      {"triangle", make({{0, 0}, {6, 0}, {0, 3}}), {3, 1.5f}, {2, 1}},
      {"clockwise", make({{0, 0}, {0, 3}, {6, 0}}), {3, 1.5f}, {2, 1}},
      {"no area", make({{0, 0}, {1, 1}, {5, 5}}), {2.5f, 2.5f}, {2, 2}},
      {"crossed", make({{0, 0}, {4, 4}, {4, 0}, {0, 4}}), {2, 2}, {2, 2}},
      {"pen lift", make({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {LIFT, 0}, {8, 0}, {10, 0}, {10, 2}, {8, 2}}), {5, 1}, {5, 1}},
      {"far away",
       make({{1000, 1000}, {1001, 1000}, {1001, 1001}, {1000, 1001}}),
       {1000.5f, 1000.5f},
       {1000.5f, 1000.5f}},
      {"widest", make({{-MAX, -MAX}, {MAX, -MAX}, {MAX, MAX}, {-MAX, MAX}}), {0, 0}, {0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Point p;
    EXPECT_EQ(1, c.points.getCenter(p));
    EXPECT_FLOAT_EQ(c.center.x, p.x);
    EXPECT_FLOAT_EQ(c.center.y, p.y);
    EXPECT_EQ(1, c.points.getCentroid(p));
    EXPECT_FLOAT_EQ(c.centroid.x, p.x);
    EXPECT_FLOAT_EQ(c.centroid.y, p.y);
  }
}

TEST(Points, PenLiftsAloneHaveNoCentre) {
  const Points points = make({{LIFT, 0}, {LIFT, 1}});
  Point p(1, 2);
  Rect r;
  EXPECT_EQ(0, points.getBounds(r));
  EXPECT_EQ(0, points.getCenter(p));
  EXPECT_EQ(0, points.getCentroid(p));
  EXPECT_FLOAT_EQ(1.0f, p.x);
}

TEST(Rect, OrdersItsCornersUnlessToldNot) {
  Rect r(3, 4, 1, 2);
  EXPECT_FLOAT_EQ(1.0f, r.xmin);
  EXPECT_FLOAT_EQ(4.0f, r.ymax);
  r.setu(3, 4, 1, 2);
  EXPECT_FLOAT_EQ(3.0f, r.xmin);
  EXPECT_FLOAT_EQ(-2.0f, r.height());
}

}  // namespace KYV
