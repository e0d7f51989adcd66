#include "KYV/Graph.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <memory>

#include "../resrc/Restore.h"
#include "KYV/Image.h"
#include "TempDir.h"
#include "TestDevice.h"

namespace KYV {
namespace {

using Log = TestDevice::Log;

// A graph on a screen of 800 by 600 whose window is 0 to 80 by 0 to 60: ten plot units each.
class GraphTest : public testing::Test {
 protected:
  void SetUp() override {
    Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
    graph.setDevice(std::make_unique<TestDevice>(log));
    ASSERT_EQ(1, graph.open());
    graph.setWindow(Rect(0, 0, 80, 60));
    log.clear();
  }
  FreshKyv fresh;
  Log log;
  Graph graph;
};

Points makePoints(std::initializer_list<Point> list) {
  Points points;
  for (const Point& p : list) points.add(p);
  return points;
}

TEST_F(GraphTest, DeviceIsToldOfChangesAlone) {
  struct Case {
    const char* call;
    int (*set)(Graph& g);
  };
  const Case cases[] = {
      {"color 1 7", [](Graph& g) { return g.setLineColor(7); }},
      {"width 1 0", [](Graph& g) { return g.setLineWidth(0.0f); }},
      {"style 1 2", [](Graph& g) { return g.setLineStyle(2); }},
      {"color 3 7", [](Graph& g) { return g.setFillColor(7); }},
      {"pattern 3 5", [](Graph& g) { return g.setFillStyle(5); }},
      {"color 4 7", [](Graph& g) { return g.setTextColor(7); }},
      {"width 4 2.5", [](Graph& g) { return g.setTextWeight(2.5f); }},
      {"color 2 7", [](Graph& g) { return g.setMarkColor(7); }},
      {"width 2 3", [](Graph& g) { return g.setMarkWeight(3.0f); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.call);
    log.clear();
    EXPECT_EQ(1, c.set(graph));
    EXPECT_EQ(Log{c.call}, log);
    EXPECT_EQ(0, c.set(graph));
    EXPECT_EQ(1u, log.size());
  }
  EXPECT_EQ(0, Graph().setLineColor(7)) << "without a device";
}

TEST_F(GraphTest, PolylineThatMissesTheWindowIsDropped) {
  EXPECT_EQ(0, graph.drawLine(makePoints({{-20, 0}, {-10, 60}})));
  EXPECT_EQ(0, graph.drawLine(makePoints({{5, 5}})));
  EXPECT_EQ(0, graph.drawFill(makePoints({{81, 0}, {90, 0}, {90, 60}})));
  EXPECT_EQ(0, graph.drawFill(Rect(0, 61, 80, 70)));
  EXPECT_EQ(Log{}, log);
  EXPECT_EQ(1, graph.drawLine(makePoints({{-10, 0}, {10, 60}})));
  EXPECT_EQ(1, graph.drawFill(makePoints({{0, 0}, {10, 0}, {10, 20}})));
  EXPECT_EQ(1, graph.drawFill(Rect(10, 20, 20, 30)));
  EXPECT_EQ((Log{"line 1 (-100,600) (100,0)", "fill 3 (0,600) (100,600) (100,400)",
                 "fill 3 (100,400) (100,300) (200,300) (200,400) (100,400)"}),
            log);
}

TEST_F(GraphTest, ShadowIsDrawnFirstAndShifted) {
  graph.setLineColor(7);
  graph.setLineWidth(3.0f);
  graph.setDropColor(9);
  graph.setDropWidth(2);
  graph.setDropShadow(2);
  log.clear();
  graph.drawLine(makePoints({{0, 0}, {10, 0}}));
  EXPECT_EQ((Log{"color 1 9", "width 1 2", "line 1 (1,601) (101,601)", "line 1 (2,602) (102,602)", "width 1 3",
                 "color 1 7", "line 1 (0,600) (100,600)"}),
            log);
  // Single segments and outlines have none.
  log.clear();
  graph.drawLine(0, 0, 10, 0);
  graph.drawRect(0, 0, 10, 20);
  EXPECT_EQ((Log{"line 1 (0,600) (100,600)", "line 1 (0,600) (100,600) (100,400) (0,400) (0,600)"}), log);
}

TEST_F(GraphTest, WildShadowCountEnds) {
  graph.setDropShadow(std::numeric_limits<int>::max());
  graph.drawLine(makePoints({{0, 0}, {10, 0}}));
  EXPECT_LT(log.size(), 200u);
  graph.setDropShadow(-5);
  log.clear();
  graph.drawLine(makePoints({{0, 0}, {10, 0}}));
  EXPECT_EQ(1u, log.size());
}

TEST_F(GraphTest, CircleHas73PointsAndCloses) {
  graph.drawCircle(40, 30, 10);
  ASSERT_EQ(1u, log.size());
  const std::string& call = log[0];
  EXPECT_EQ(73, std::count(call.begin(), call.end(), '('));
  EXPECT_TRUE(call.starts_with("line 1 (500,300)")) << call;
  EXPECT_TRUE(call.ends_with(" (500,300)")) << call;
  EXPECT_NE(call.npos, call.find(" (400,200)")) << call;
}

TEST_F(GraphTest, FramesAndImagesReachTheDevice) {
  graph.newFrame();
  graph.drawImage(Image(), 10, 20);
  graph.message("%s", std::string(150, 'a').c_str());
  EXPECT_EQ((Log{"display -1", "new -1", "frame -1", "image (100,400)", "message " + std::string(100, 'a')}), log);
}

TEST_F(GraphTest, ViewportKeepsItsAspect) {
  struct Case {
    const char* what;
    float x1, y1, x2, y2;
    float aspect;
    int h, v;
    Rect view;
  };
  const Case cases[] = {
      {"inward, own shape", -0.05f, -0.05f, -0.05f, -0.05f, 0, 2, 2, Rect(0.05f, 0.05f, 0.95f, 0.70f)},
      {"wide, centred", 0, 0, 0.5f, 0.5f, 2, 2, 2, Rect(0, 0.125f, 0.5f, 0.375f)},
      {"wide, bottom", 0, 0, 0.5f, 0.5f, 2, 2, 1, Rect(0, 0, 0.5f, 0.25f)},
      {"wide, top", 0, 0, 0.5f, 0.5f, 2, 1, 3, Rect(0, 0.25f, 0.5f, 0.5f)},
      {"tall, left", 0, 0, 0.5f, 0.5f, 0.5f, 1, 2, Rect(0, 0, 0.25f, 0.5f)},
      {"tall, right", 0, 0, 0.5f, 0.5f, 0.5f, 3, 2, Rect(0.25f, 0, 0.5f, 0.5f)},
      {"tall, centred", 0, 0, 0.5f, 0.5f, 0.5f, 2, 2, Rect(0.125f, 0, 0.375f, 0.5f)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Rect r;
    r.setu(c.x1, c.y1, c.x2, c.y2);
    EXPECT_EQ(1, graph.setViewportAspect(r, c.aspect, c.h, c.v));
    const Rect view = graph.getViewport();
    EXPECT_NEAR(c.view.xmin, view.xmin, 1e-6);
    EXPECT_NEAR(c.view.ymin, view.ymin, 1e-6);
    EXPECT_NEAR(c.view.xmax, view.xmax, 1e-6);
    EXPECT_NEAR(c.view.ymax, view.ymax, 1e-6);
  }
  for (const float bad : {0.0f, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
    Rect r;
    r.setu(0, 0, bad, 0.5f);
    EXPECT_EQ(0, graph.setViewportAspect(r, 1.0f));
    EXPECT_NEAR(0.375f, graph.getViewport().xmax, 1e-6);
  }
}

TEST_F(GraphTest, TransformsAreNumbered0To3) {
  EXPECT_EQ(1, graph.setWindow(1, Rect(0, 0, 8, 6)));
  EXPECT_EQ(0, graph.setWindow(4, Rect()));
  EXPECT_EQ(0, graph.setViewport(-1, Rect()));
  EXPECT_EQ(0, graph.activateTran(4));
  EXPECT_EQ(0, graph.getTran());
  float x = 0, y = 0;
  EXPECT_EQ(1, graph.tranWindow(0, 20, 30, 1, x, y));
  EXPECT_FLOAT_EQ(2, x);
  EXPECT_FLOAT_EQ(3, y);
  EXPECT_EQ(0, graph.tranWindow(0, 20, 30, 7, x, y));
  graph.setViewport(1, Rect(0, 0, 0.5f, 0.375f));
  log.clear();
  EXPECT_EQ(1, graph.activateTran(1));
  EXPECT_EQ(Log{"clip (0,300) (400,600)"}, log);
}

TEST_F(GraphTest, RedrawTakesTheNewSurface) {
  auto device = std::make_unique<TestDevice>(log);
  TestDevice& screen = *device;
  graph.setDevice(std::move(device));
  ASSERT_EQ(1, graph.open());
  screen.surface.setu(0, 0, 600, 800);
  graph.callback("window", "KeyPress", "q");
  EXPECT_FLOAT_EQ(1.0f, graph.getMaxViewport().xmax);
  graph.callback("window", "Redraw", "600:800");
  EXPECT_FLOAT_EQ(0.75f, graph.getMaxViewport().xmax);
  EXPECT_FLOAT_EQ(1.0f, graph.getWindow().ymax);
  EXPECT_EQ("clip (0,0) (600,800)", log.back());
}

TEST_F(GraphTest, CallbacksEndWithTheDevicesLoop) {
  EXPECT_EQ(1, graph.addCallback("AnyEvent", &graph, nullptr));
  EXPECT_EQ(1, graph.manage());
  EXPECT_EQ(0, graph.addCallback("AnyEvent", &graph, nullptr));
  EXPECT_EQ(Log{"listen AnyEvent"}, log);
}

TEST_F(GraphTest, OpenForgetsAttributes) {
  graph.setLineColor(7);
  graph.setDropShadow(3);
  ASSERT_EQ(1, graph.open());
  log.clear();
  EXPECT_EQ(1, graph.setLineColor(7));
  EXPECT_EQ(0, graph.getDropShadow());
}

TEST_F(GraphTest, CloseTellsOfLostOutput) {
  auto device = std::make_unique<TestDevice>(log);
  device->closeResult = 0;
  graph.setDevice(std::move(device));
  ASSERT_EQ(1, graph.open());
  EXPECT_EQ(0, graph.close());
  EXPECT_FALSE(graph.isOpen());
  EXPECT_EQ(1, graph.close());
  EXPECT_EQ(0, graph.drawRect(0, 0, 1, 1));
}

TEST(GraphDevice, DeviceThatCannotOpenLeavesNone) {
  FreshKyv fresh;
  Log log;
  Graph graph;
  auto device = std::make_unique<TestDevice>(log);
  device->openResult = 0;
  graph.setDevice(std::move(device));
  EXPECT_EQ(0, graph.open());
  EXPECT_FALSE(graph.isOpen());
  EXPECT_EQ(0, graph.drawLine(0, 0, 1, 1));
}

TEST(GraphDevice, AnyOtherNameIsTheWindow) {
  FreshKyv fresh;
  for (const char* name : {"display", "paper"}) {
    Graph graph(name, ":987");
    EXPECT_EQ(Graph::XWINDOW, graph.getDeviceType());
    testing::internal::CaptureStderr();
    EXPECT_EQ(0, graph.open());
    EXPECT_EQ("XWindow: unable to connect to display\n", testing::internal::GetCapturedStderr());
  }
}

TEST(GraphDevice, PostscriptWritesItsFile) {
  FreshKyv fresh;
  Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
  TempDir dir;
  const std::string file = dir.path("out.ps");
  testing::internal::CaptureStdout();
  Graph graph;
  ASSERT_EQ(1, graph.open("postscript", (file + ",eps,hfont").c_str()));
  EXPECT_EQ(Graph::POSTSCRIPT, graph.getDeviceType());
  // A file draws no letters of its own, so a font of the device must not make the text vanish.
  testing::internal::CaptureStderr();
  graph.setFont("#helv-{12}");
  EXPECT_EQ("setFont: unable to load font: #helv-{12}, using modern\n", testing::internal::GetCapturedStderr());
  graph.drawText(0.5f, 0.5f, "A");
  EXPECT_EQ(1, graph.close());
  EXPECT_EQ("Creating: " + file + "\n", testing::internal::GetCapturedStdout());
  const std::string text = TempDir::read(file);
  EXPECT_TRUE(text.starts_with("%!PS-Adobe-3.0 EPSF-3.0\n"));
  EXPECT_NE(text.npos, text.find("stroke\n")) << "a letter is strokes";
}

}  // namespace
}  // namespace KYV
