#include "KYV/GTran.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "KYV/Points.h"

namespace KYV {
namespace {

constexpr float NAN_F = std::numeric_limits<float>::quiet_NaN();
constexpr float INF = std::numeric_limits<float>::infinity();

void expectRect(const Rect& r, float x1, float y1, float x2, float y2) {
  EXPECT_FLOAT_EQ(x1, r.xmin);
  EXPECT_FLOAT_EQ(y1, r.ymin);
  EXPECT_FLOAT_EQ(x2, r.xmax);
  EXPECT_FLOAT_EQ(y2, r.ymax);
}

TEST(GTran, LongerSideOfTheSurfaceIsOne) {
  struct Case {
    const char* what;
    float x1, y1, x2, y2;  // surface
    float ax, ay;
    float topLeftY;  // plot y of the upper edge
  };
  constexpr Case CASES[] = {
      {"wide screen", 0, 0, 800, 600, 1.0f, 0.75f, 0},
      {"tall screen", 0, 0, 600, 800, 0.75f, 1.0f, 0},
      {"wide paper, y upward", 0, 576, 756, 0, 1.0f, 576.0f / 756.0f, 576},
      {"tall paper, y upward", 0, 756, 576, 0, 576.0f / 756.0f, 1.0f, 756},
      {"square", 10, 20, 110, 120, 1.0f, 1.0f, 20},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    GTran t;
    Rect surface;
    surface.setu(c.x1, c.y1, c.x2, c.y2);
    t.set(surface);
    expectRect(t.getNdc(), 0, 0, c.ax, c.ay);
    expectRect(t.getWindow(), 0, 0, c.ax, c.ay);
    expectRect(t.getViewport(), 0, 0, c.ax, c.ay);
    EXPECT_FLOAT_EQ(c.x1, t.tranNdcPlotX(0));
    EXPECT_FLOAT_EQ(c.x2, t.tranNdcPlotX(c.ax));
    EXPECT_FLOAT_EQ(c.topLeftY, t.tranNdcPlotY(c.ay));
    EXPECT_NEAR(c.y1 + c.y2 - c.topLeftY, t.tranNdcPlotY(0), 1e-3);
  }
}

TEST(GTran, WindowGoesToTheViewportAndBack) {
  GTran t;
  t.set(Rect(0, 0, 800, 600));
  t.setWindow(Rect(-10, -10, 10, 10));
  t.setViewport(Rect(0.25f, 0.25f, 0.5f, 0.75f));
  // The middle of the viewport: NDC 0.375, 0.5, which is 200 plot units from the upper edge.
  EXPECT_FLOAT_EQ(300, t.tranWindowPlotX(0));
  EXPECT_FLOAT_EQ(200, t.tranWindowPlotY(0));
  EXPECT_FLOAT_EQ(400, t.tranWindowPlotX(10));
  EXPECT_FLOAT_EQ(0, t.tranWindowPlotY(10));
  EXPECT_FLOAT_EQ(10, t.tranPlotWindowX(400));
  EXPECT_FLOAT_EQ(-10, t.tranPlotWindowY(400));
  expectRect(t.getClipRect(), 200, 0, 400, 400);
  EXPECT_FLOAT_EQ(0.1f, t.getPlotUnit().x);
  EXPECT_FLOAT_EQ(-0.05f, t.getPlotUnit().y);

  GTran other;
  other.set(Rect(0, 0, 800, 600));
  other.setViewport(Rect(0.25f, 0.25f, 0.5f, 0.75f));
  other.setWindow(Rect(0, 0, 1, 1));
  EXPECT_FLOAT_EQ(0.75f, GTran::tranWindowX(t, other, 5));
  EXPECT_FLOAT_EQ(0.25f, GTran::tranWindowY(t, other, -5));
}

TEST(GTran, PlotUnitsStayWithin16Bits) {
  GTran t;
  t.set(Rect(0, 0, 800, 600));
  t.setWindow(Rect(0, 0, 1e-3f, 1e-3f));
  for (const float far : {1e6f, 1e30f, INF}) {
    EXPECT_FLOAT_EQ(30000, t.tranWindowPlotX(far));
    EXPECT_FLOAT_EQ(-30000, t.tranWindowPlotX(-far));
    EXPECT_FLOAT_EQ(-30000, t.tranWindowPlotY(far));
  }
  EXPECT_TRUE(std::isfinite(t.tranWindowPlotX(NAN_F)));
}

TEST(GTran, RectanglesWithoutExtentKeepNumbersFinite) {
  constexpr float BAD[] = {0.0f, INF, NAN_F};
  for (const float size : BAD) {
    SCOPED_TRACE(size);
    GTran t;
    Rect r;
    r.setu(0, 0, size, size);
    t.set(r);
    t.setWindow(r);
    EXPECT_TRUE(std::isfinite(t.tranWindowPlotX(0.5f)));
    t.set(Rect(0, 0, 800, 600));
    t.setWindow(r);
    EXPECT_TRUE(std::isfinite(t.tranWindowPlotX(0.5f)));
    EXPECT_TRUE(std::isfinite(t.tranPlotWindowX(0.5f)));
    EXPECT_TRUE(std::isfinite(t.getPlotUnit().y));
    t.setViewport(Rect(0.2f, 0.2f, 0.2f, 0.2f));
    EXPECT_TRUE(std::isfinite(t.tranPlotWindowY(0.5f)));
  }
}

TEST(GTran, BoxesThatTouchTheWindowOverlapIt) {
  struct Case {
    const char* what;
    Rect box;
    bool inside;
  };
  const Case cases[] = {
      {"within", Rect(1, 1, 2, 2), true},         {"around", Rect(-9, -9, 19, 19), true},
      {"touching", Rect(-5, 3, 0, 4), true},      {"left of it", Rect(-5, 3, -0.1f, 4), false},
      {"above it", Rect(1, 10.1f, 2, 11), false}, {"corner", Rect(10, 10, 11, 11), true},
      {"right of it", Rect(11, 1, 12, 2), false},
  };
  GTran t;
  t.setWindow(Rect(0, 0, 10, 10));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Points points;
    points.add(c.box.xmin, c.box.ymax);
    points.add(c.box.xmax, c.box.ymin);
    EXPECT_EQ(c.inside, t.isPointsInWindow(points));
  }
  EXPECT_FALSE(t.isPointsInWindow(Points()));
}

}  // namespace
}  // namespace KYV
