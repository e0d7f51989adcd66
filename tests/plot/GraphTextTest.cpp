#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "../resrc/Restore.h"
#include "KYV/Graph.h"
#include "TempDir.h"
#include "TestDevice.h"

namespace KYV {
namespace {

using Log = TestDevice::Log;

// A screen of 800 by 800 whose window is 0 to 800 too, and a text height of 105: a font unit is a plot unit, y turned.
// In the font, T is 20 wide with one stroke from (0,0) to (10,100), U one of 30 from (0,0) to (30,0).
class GraphTextTest : public testing::Test {
 protected:
  void SetUp() override {
    dir.write("modern.fnt", "0 T 128 0 10 100 148 0 255 U 128 0 30 0 158 0 255 V 128 0 254");
    dir.write("wx.smb", "flag 0,0 0,1 L 0,0.5 1,1 1,0.5 F $");
    Kyv::setDatabasePath(dir.path().c_str());
    auto own = std::make_unique<TestDevice>(log, 800.0f, 800.0f);
    device = own.get();
    graph.setDevice(std::move(own));
    ASSERT_EQ(1, graph.open());
    graph.setWindow(Rect(0, 0, 800, 800));
    graph.setTextHeight(105);
    graph.setTextAlign(1, 5);
    log.clear();
  }
  const Log& draw(float x, float y, const char* text) {
    log.clear();
    graph.drawText(x, y, text);
    return log;
  }
  FreshKyv fresh;
  TempDir dir;
  Log log;
  Graph graph;
  TestDevice* device = nullptr;
};

TEST_F(GraphTextTest, StrokesFollowTheAnchor) {
  EXPECT_EQ(Log{"line 4 (100,600) (110,500)"}, draw(100, 200, "T"));
  // Width 20 and spacing 25, then the next letter.
  EXPECT_EQ((Log{"line 4 (100,600) (110,500)", "line 4 (145,600) (175,600)"}), draw(100, 200, "TU"));
  // A blank is 40 and spacing; a letter that is not there takes no room.
  EXPECT_EQ(Log{"line 4 (165,600) (175,500)"}, draw(100, 200, " T"));
  EXPECT_EQ(Log{"line 4 (100,600) (110,500)"}, draw(100, 200, "?T"));
  EXPECT_EQ(Log{}, draw(100, 200, ""));
  EXPECT_EQ(Log{}, draw(100, 200, nullptr));
}

TEST_F(GraphTextTest, AlignmentsMoveTheLine) {
  struct Case {
    int h, v;
    const char* stroke;
  };
  constexpr Case CASES[] = {
      {0, 5, "line 4 (100,600) (130,600)"},  {2, 5, "line 4 (85,600) (115,600)"},  {3, 5, "line 4 (70,600) (100,600)"},
      {9, 5, "line 4 (100,600) (130,600)"},  {1, 0, "line 4 (100,635) (130,635)"}, {1, 1, "line 4 (100,760) (130,760)"},
      {1, 2, "line 4 (100,740) (130,740)"},  {1, 3, "line 4 (100,685) (130,685)"}, {1, 4, "line 4 (100,635) (130,635)"},
      {1, -1, "line 4 (100,600) (130,600)"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(testing::Message() << c.h << " " << c.v);
    graph.setTextAlign(c.h, c.v);
    EXPECT_EQ(Log{c.stroke}, draw(100, 200, "U"));
  }
}

TEST_F(GraphTextTest, ExpansionSpacingAndPitch) {
  graph.setTextExpansion(2);
  graph.setTextAlign(3, 5);
  // (20 + 25 + 30) * 2 wide.
  EXPECT_EQ((Log{"line 4 (350,600) (370,500)", "line 4 (440,600) (500,600)"}), draw(500, 200, "TU"));
  EXPECT_FLOAT_EQ(150, graph.getTextWidth("TU"));
  graph.setTextExpansion(1);
  graph.setTextAlign(1, 5);
  graph.setTextSpacing(0.5f);
  EXPECT_EQ("line 4 (170,600) (200,600)", draw(100, 200, "TU")[1]);
  // Fixed pitch: each letter in the middle of a cell of 60, then the spacing.
  graph.setTextCharWidth(0.6f);
  EXPECT_EQ((Log{"line 4 (120,600) (130,500)", "line 4 (225,600) (255,600)"}), draw(100, 200, "TU"));
  // A blank: (50 + 100) * 0.6.
  EXPECT_EQ(Log{"line 4 (210,600) (220,500)"}, draw(100, 200, " T"));
}

TEST_F(GraphTextTest, TextTurnsWithItsDirection) {
  graph.setTextDirection(-2, 0);
  EXPECT_EQ(Log{"line 4 (100,600) (0,590)"}, draw(100, 200, "T")) << "up is left: reads upward";
  EXPECT_EQ(0, graph.setTextDirection(0, 0));
  EXPECT_EQ(0, graph.setTextDirection(std::numeric_limits<float>::quiet_NaN(), 1));
  EXPECT_EQ(Log{"line 4 (100,600) (0,590)"}, draw(100, 200, "T"));
}

TEST_F(GraphTextTest, LinesStepDown) {
  struct Case {
    const char* text;
    int v;
    float first;  // y of the first line, in line steps above the anchor
    std::size_t lines;
  };
  constexpr Case CASES[] = {{"U\nU", 3, 0, 2}, {"U\nU\nU", 3, 1, 3}, {"U\nU\nU", 5, 2, 3},
                            {"U\nU", 1, 0, 2}, {"U\n\nU", 2, 0, 2},  {"U\n", 5, 1, 1}};
  for (const Case& c : CASES) {
    SCOPED_TRACE(testing::Message() << c.text << " " << c.v);
    graph.setTextAlign(1, c.v);
    const float one = std::stof(draw(100, 400, "U")[0].substr(12));
    const Log& calls = draw(100, 400, c.text);
    ASSERT_EQ(c.lines, calls.size());
    EXPECT_NEAR(one - c.first * 136.5f, std::stof(calls[0].substr(12)), 0.1f);
  }
}

TEST_F(GraphTextTest, ShadowsOfTextStartAtItsPlace) {
  graph.setDropShadow(2);
  graph.setDropColor(9);
  EXPECT_EQ((Log{"color 4 9", "line 4 (100,600) (130,600)", "line 4 (101,601) (131,601)", "color 4 1",
                 "line 4 (100,600) (130,600)"}),
            draw(100, 200, "U"));
}

TEST_F(GraphTextTest, DeviceFontsFollowTheTextHeight) {
  graph.setTextHeight(20);  // a fortieth of the window
  EXPECT_EQ(1, graph.setFont("#helv-{12}"));
  EXPECT_EQ(Log{"font helv-24"}, log);
  graph.setTextHeight(40);
  EXPECT_EQ("font helv-48", log.back());
  graph.setTextAlign(2, 3);
  EXPECT_EQ((Log{"align 2 2", "text (100,548) a", "text (100,600) b", "text (100,652) c"}), draw(100, 200, "a\nb\nc"));
  draw(100, 200, std::string(200, 'x').c_str());
  EXPECT_EQ("text (100,600) " + std::string(99, 'x'), log.back());
  // Braces that do not close, windows without height: no size, but no harm.
  graph.setWindow(Rect(0, 5, 1, 5));
  EXPECT_EQ(1, graph.setFont("#times-{"));
  EXPECT_EQ("font times-0", log.back());
}

TEST_F(GraphTextTest, FontListNamesFonts) {
  dir.write("kyv.fnl", "other U.fnt\nbig  my font.fnt\nscreen #times-14\n" + std::string(3000, 'x') + "\n");
  dir.write("my font.fnt", "0 T 128 0 99 0 128 0 254");
  EXPECT_EQ(1, graph.setFont("big"));
  EXPECT_EQ(0, graph.setFont("big"));
  EXPECT_EQ(Log{"line 4 (100,600) (199,600)"}, draw(100, 200, "T"));
  log.clear();
  EXPECT_EQ(1, graph.setFont("screen"));
  EXPECT_EQ(Log{"font times-14"}, log);
  EXPECT_EQ(0, graph.setFont(""));
  EXPECT_EQ(0, graph.setFont(nullptr));
}

TEST_F(GraphTextTest, FontThatCannotBeHadIsReplaced) {
  device->fontResult = 0;
  dir.write("my.fnt", "0 T 128 0 50 0 128 0 254");
  for (const std::string& name : {std::string("#helv-{12}"), std::string("nosuch.fnt"), "#" + std::string(300, 'f')}) {
    SCOPED_TRACE(name);
    graph.setFont("my.fnt");
    testing::internal::CaptureStderr();
    EXPECT_EQ(1, graph.setFont(name.c_str()));
    EXPECT_EQ("setFont: unable to load font: " + name.substr(0, 119) + ", using modern\n",
              testing::internal::GetCapturedStderr());
    EXPECT_EQ(Log{"line 4 (100,600) (110,500)"}, draw(100, 200, "T"));
    EXPECT_EQ(0, graph.setFont("modern.fnt")) << "it is in use already";
  }
}

TEST_F(GraphTextTest, MarkersAreLinesOfTheirClass) {
  struct Case {
    int type;
    Log lines;
  };
  const Case cases[] = {
      {1, {"line 2 (100,600) (102,600) (102,598) (100,598) (100,600)"}},
      {2, {"line 2 (90,600) (110,600)", "line 2 (100,610) (100,590)"}},
      {5, {"line 2 (90,610) (110,590)", "line 2 (110,610) (90,590)"}},
      {7, {"line 2 (90,610) (110,610) (100,590) (90,610)"}},
      {8, {"line 2 (100,600) (101,599)"}},
      {10, {"line 2 (100,590) (105,600) (95,600) (100,610)"}},
      {11, {}},
      {0, {}},
  };
  graph.setMarkSize(20);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.type);
    graph.setMarkType(c.type);
    log.clear();
    EXPECT_EQ(1, graph.drawMark(100, 200));
    EXPECT_EQ(c.lines, log);
  }
  graph.setMarkType(4);
  log.clear();
  graph.drawMark(100, 200);
  EXPECT_EQ(13, std::count(log[0].begin(), log[0].end(), '('));
  graph.setMarkType(8);
  graph.setDropShadow(1);
  log.clear();
  graph.drawMark(100, 200);
  EXPECT_EQ((Log{"color 2 1", "line 2 (100,600) (101,599)", "color 2 1", "line 2 (100,600) (101,599)"}), log);
}

TEST_F(GraphTextTest, SymbolsAreLinesAndFills) {
  log.clear();
  EXPECT_EQ(1, graph.drawSymbol(100, 200, "flag", 10));
  EXPECT_EQ((Log{"line 1 (100,600) (100,590)", "fill 3 (100,595) (110,590) (110,595)"}), log);
  graph.setTextAlign(2, 3);
  log.clear();
  graph.drawSymbol(100, 200, "flag", 10);
  EXPECT_EQ("line 1 (95,605) (95,595)", log[0]);
  graph.setTextAlign(3, 1);
  log.clear();
  graph.drawSymbol(100, 200, "flag", 10);
  EXPECT_EQ("line 1 (90,610) (90,600)", log[0]);
  EXPECT_EQ(0, graph.drawSymbol(100, 200, "none", 10));
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, graph.setSymbol("nosuch.smb"));
  EXPECT_NE("", testing::internal::GetCapturedStderr());
  EXPECT_EQ(1, graph.drawSymbol(100, 200, "flag", 10)) << "the former ones stay";
}

TEST(GraphText, GraphWithoutFontIsUsable) {
  FreshKyv fresh;
  TempDir dir;
  dir.write("modern.fnt", "");
  dir.write("wx.smb", "");
  Kyv::setDatabasePath(dir.path().c_str());
  Log log;
  Graph graph;
  graph.setDevice(std::make_unique<TestDevice>(log));
  testing::internal::CaptureStderr();
  EXPECT_EQ(1, graph.open());
  EXPECT_NE(std::string::npos, testing::internal::GetCapturedStderr().find("modern.fnt"));
  EXPECT_EQ(1, graph.drawText(0.5f, 0.5f, "text"));
  EXPECT_EQ(1, graph.drawLine(0, 0, 1, 1));
}

}  // namespace
}  // namespace KYV
