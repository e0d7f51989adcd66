#include <gtest/gtest.h>

#include <cmath>

#include "KYV/Kyv.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "KYV/NidsRadial.h"
#include "KYV/NidsRun.h"
#include "KYV/NidsText.h"
#include "KYV/NidsVector.h"
#include "KYV/NidsWind.h"
#include "NidsBuilder.h"
#include "NidsTestFile.h"

namespace {

using namespace KYV;

// A product opened and read up to its first packet.
struct Open {
  explicit Open(const NidsBuilder& b) : content(b.bytes()), file(content.name()) {
    EXPECT_EQ(1, file.readHeader(info));
  }
  TestFile content;
  NidsFile file;
  NidsInfo info;
};

TEST(NidsPacket, RunsOfEveryEncoding) {
  struct Case {
    const char* what;
    NidsBuilder product;
    int run;
    int level;
    float value;
  };
  const NidsBuilder grid = NidsBuilder().header(81).thresholds({-60, 125, 256});
  const Case cases[] = {
      {"nibbles", NidsBuilder().header(19).threshold(5, 25).radial(0.0f, 1.0f, {{3, 5}}), 3, 5, 25.0f},
      {"raster", NidsBuilder().header(37).threshold(5, 25).raster(0xBA07).gridRow({{3, 5}}), 3, 5, 25.0f},
      {"raster pairs", NidsBuilder().header(37).threshold(2, 25).raster(0xBA0F, 1).gridRow({{77, 0x32}}), 77, 0x32,
       325.0f},
      {"boxes", NidsBuilder(grid).precip(4).gridRow({{4, 8}}), 4, 8, 0.94f},
      {"boxes without data", NidsBuilder(grid).precip(4).gridRow({{4, 255}}), 4, 255, -9999.0f},
      {"digital", NidsBuilder().header(94).thresholds({-320, 5, 254}).digitalRadial(0.0f, 1.0f, {2}), 1, 2, -31.0f},
      {"digital missing", NidsBuilder().header(94).thresholds({-320, 5, 254}).digitalRadial(0.0f, 1.0f, {1}), 1, 1,
       -9999.0f},
      {"dual", NidsBuilder().header(159).thresholds({0x4180, 0, 0x4300, 0}).digitalRadial(0.0f, 1.0f, {160}), 1, 160,
       2.0f},
      {"accumulation", NidsBuilder().header(170).thresholds({0x3F80, 0, 0, 0}).digitalRadial(0.0f, 1.0f, {150}), 1, 150,
       1.5f},
      {"tops", NidsBuilder().header(135).thresholds({127, 1, 2, 128}).digitalRadial(0.0f, 1.0f, {0x83}), 1, 0x83, 1.0f},
      {"tops without scale", NidsBuilder().header(135).thresholds({127, 0, 2}).digitalRadial(0.0f, 1.0f, {5}), 1, 5,
       -9999.0f},
      {"liquid, linear",
       NidsBuilder().header(134).thresholds({0x4400, 0x4000, 20, 0x4200, 0xC000}).digitalRadial(0.0f, 1.0f, {11}), 1,
       11, 5.0f},
      {"liquid, logarithmic",
       NidsBuilder().header(134).thresholds({0x4400, 0x4000, 10, 0x4200, 0xC000}).digitalRadial(0.0f, 1.0f, {11}), 1,
       11, std::exp(8.0f)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Open o(c.product);
    NidsRadial radial;
    ASSERT_EQ(1, o.file.isPacketRadial() ? o.file.readRadial(radial) : o.file.readRastor());
    NidsRun r;
    ASSERT_EQ(1, o.file.readRun(r));
    EXPECT_EQ(c.run, r.run);
    EXPECT_EQ(c.level, r.ival);
    EXPECT_FLOAT_EQ(c.value, r.val);
  }
}

TEST(NidsPacket, RastersHaveOneCode) {
  EXPECT_EQ(NidsFile::RASTOR, Open(NidsBuilder().header(37).raster(0xBA07).gridRow({{1, 1}})).info.type);
  EXPECT_EQ(NidsFile::RASTOR, Open(NidsBuilder().header(37).raster(0xBA0F).gridRow({{1, 1}})).info.type);
}

TEST(NidsPacket, ElementsOfEveryKind) {
  Open o(NidsBuilder()
             .header(48)
             .thresholds({0x8000, 10, 20, 30})
             .text(8, 2, -5, 7, "hello")
             .text(1, 0, 3, 4, std::string(120, 'a'))
             .barbs({{3, 10, 20, 270, 35}, {16, 1, 2, 3, 4}})
             .vectors(7, 0, {{1, 2, 3, 4}})
             .vectors(10, 9, {{-1, -2, -3, -4}, {5, 6, 7, 8}}));
  NidsText t;
  ASSERT_EQ(1, o.file.readText(t));
  EXPECT_STREQ("hello", t.getData());
  EXPECT_FLOAT_EQ(20.0f, t.val);
  EXPECT_FLOAT_EQ(-5.0f, t.x);
  EXPECT_FLOAT_EQ(7.0f, t.y);
  EXPECT_EQ(0, o.file.readText(t)) << "once";
  ASSERT_EQ(1, o.file.readPacket());
  ASSERT_EQ(1, o.file.readText(t));
  EXPECT_EQ(std::string(99, 'a'), t.getData());
  EXPECT_FLOAT_EQ(-100.0f, t.val) << "no value of its own: level 0";
  ASSERT_EQ(4, o.file.readPacket());
  NidsWind w;
  ASSERT_EQ(1, o.file.readWind(w));
  EXPECT_FLOAT_EQ(30.0f, w.val);
  EXPECT_FLOAT_EQ(270.0f, w.dir);
  EXPECT_FLOAT_EQ(35.0f, w.spd);
  ASSERT_EQ(1, o.file.readWind(w));
  EXPECT_FLOAT_EQ(-9999.0f, w.val) << "there are 16 levels";
  EXPECT_EQ(0, o.file.readWind(w));
  ASSERT_EQ(7, o.file.readPacket());
  NidsVector v;
  ASSERT_EQ(1, o.file.readVector(v));
  EXPECT_FLOAT_EQ(0.0f, v.val);
  EXPECT_FLOAT_EQ(4.0f, v.y2);
  EXPECT_EQ(0, o.file.readVector(v));
  ASSERT_EQ(10, o.file.readPacket());
  ASSERT_EQ(1, o.file.readVector(v));
  ASSERT_EQ(1, o.file.readVector(v));
  EXPECT_FLOAT_EQ(9.0f, v.val);
  EXPECT_FLOAT_EQ(5.0f, v.x1);
  EXPECT_EQ(0, o.file.readVector(v));
  EXPECT_EQ(-1, o.file.readPacket());
}

TEST(NidsPacket, WhatTheCallerPassesOverIsSkipped) {
  std::vector<int> codes;
  NidsBuilder b = NidsBuilder().header(37);
  b.radial(0.0f, 1.0f, {{3, 5}}).radial(1.0f, 1.0f, {{30, 5}}).text(8, 1, 1, 1, "some text").text(1, 0, 1, 1, "");
  b.packet(3, {1, 2, 3, 4}).barbs({{1, 2, 3, 4, 5}}).arrows({{1, 2, 3, 4, 5}}).linked(6, 0, {{1, 2}, {3, 4}});
  b.vectors(7, 0, {{1, 2, 3, 4}}).linked(9, 1, {{1, 2}}).vectors(10, 1, {{1, 2, 3, 4}}).packet(11, {1, 2});
  b.packet(12, {}).packet(13, {1, 2}).packet(14, {1, 2}).packet(15, {1, 2, 3, 4, 'A', '1'});
  b.digital(4).digitalRadial(0.0f, 0.0f, {1, 2, 3}).digitalRadial(0.0f, 1.0f, {1, 2, 3, 4});  // no width
  b.precip(4).gridRow({{4, 1}}).packet(18, {0, 1}).raster().gridRow({{20, 1}}).gridRow({{1, 1}}).text(8, 1, 1, 1, "x");
  Open o(b);
  for (int code = o.info.type; code > 0; code = o.file.readPacket()) codes.push_back(code);
  EXPECT_EQ((std::vector<int>{0xAF1F, 8, 1, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 0xBA0F, 8}), codes);
}

TEST(NidsPacket, UnknownCodesEndTheLoop) {
  for (int code : {0, 2, 19, 28, 0x0802, 0xFFFF}) {
    const auto high = static_cast<unsigned char>(code >> 8);
    const auto low = static_cast<unsigned char>(code & 255);
    Open o(NidsBuilder().header(58).text(8, 1, 1, 1, "a").raw({high, low, 0, 4}).text(8, 1, 1, 1, "b"));
    EXPECT_EQ(0, o.file.readPacket()) << code;
    EXPECT_EQ(0, o.file.readPacket()) << "what follows is no packet";
  }
}

TEST(NidsPacket, FurtherLayersAreNotOfTheFirst) {
  const NidsBuilder two =
      NidsBuilder().header(138).digitalRadial(0.0f, 1.0f, {1, 2}).layer().text(1, 0, 1, 1, "second");
  Open o(two);
  EXPECT_EQ(0, o.file.readPacket());
  EXPECT_EQ(0, o.file.readPacket());
  // The layer's own length ends it where no divider does.
  Open claimed(NidsBuilder().header(138).text(8, 1, 1, 1, "aa").text(8, 1, 1, 1, "bb").layerLength(12));
  EXPECT_EQ(8, claimed.info.type);
  EXPECT_EQ(0, claimed.file.readPacket());
  // An implausible length does not.
  Open wild(NidsBuilder().header(138).text(8, 1, 1, 1, "aa").text(8, 1, 1, 1, "bb").layerLength(999999));
  EXPECT_EQ(8, wild.file.readPacket());
}

TEST(NidsPacket, RadialsWithoutWidthEndThePacket) {
  for (float width : {0.0f, -1.0f, 5.1f}) {
    Open o(NidsBuilder().header(19).radial(0.0f, width, {{3, 5}}));
    NidsRadial r;
    EXPECT_EQ(0, o.file.readRadial(r)) << width;
  }
  Open o(NidsBuilder().header(19).radial(0.0f, 5.0f, {{3, 5}}));
  NidsRadial r;
  EXPECT_EQ(1, o.file.readRadial(r));
  EXPECT_EQ(0, o.file.readRadial(r));
}

TEST(NidsPacket, GraphicPages) {
  NidsBuilder b = NidsBuilder().header(58).packet(15, {0, 0, 0, 0, 'A', '1'}).raw({0, 19, 0, 2, 9, 9});
  b.page().text(8, 1, 1, 2, "page one").vectors(10, 3, {{1, 2, 3, 4}}).text(8, 1, 1, 2, "more");
  b.page().text(8, 1, 1, 2, "page two");
  struct Case {
    const char* what;
    int packets;  // read of the symbology block
  };
  for (const Case& c : {Case{"at once", 0}, Case{"after the loop", 9}}) {
    SCOPED_TRACE(c.what);
    Open o(b);
    for (int i = 0; i < c.packets && o.file.readPacket() > 0; i++) {
    }
    ASSERT_EQ(1, o.file.graphic());
    EXPECT_EQ(1, o.file.graphicLayer());
    EXPECT_EQ(8, o.file.readPacket());
    EXPECT_EQ(2, o.file.graphicLayer()) << "the rest of the page is passed over";
    NidsText t;
    EXPECT_EQ(8, o.file.readPacket());
    EXPECT_EQ(1, o.file.readText(t));
    EXPECT_STREQ("page two", t.getData());
    EXPECT_EQ(0, o.file.readPacket()) << "end of the page";
    EXPECT_EQ(0, o.file.graphicLayer());
  }
  Open none(NidsBuilder().header(58).page().text(8, 1, 1, 2, "no symbology"));
  EXPECT_EQ(0, none.info.type);
  EXPECT_EQ(0, none.file.graphic());
}

TEST(NidsPacket, OffsetsCountFromTheCode) {
  // Without a heading the code is read by itself; the block must be found all the same.
  for (const auto heading : {NidsBuilder::Heading::None, NidsBuilder::Heading::Wmo, NidsBuilder::Heading::Frame}) {
    Open o(NidsBuilder().header(58).raw({0, 2, 0, 0}).page().text(8, 1, 1, 2, "x").heading(heading));
    EXPECT_EQ(1, o.file.gotoGraphic());
    EXPECT_EQ(1, o.file.graphic());
    EXPECT_EQ(1, o.file.graphicLayer());
  }
}

TEST(NidsPacket, ProductsWithoutDividerWarn) {
  testing::internal::CaptureStderr();
  Open o(NidsBuilder().header(74).offsets(60, 0, 0).tabular({'t', 'e', 'x', 't', ' ', ' '}));
  EXPECT_EQ("No divider in symbology block\n", testing::internal::GetCapturedStderr());
}

}  // namespace
