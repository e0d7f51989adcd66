#include "KYV/DomainTool.h"

#include <gtest/gtest.h>
#include <string>

#include "KYV/Domain.h"
#include "KYV/Kyv.h"
#include "KYV/Region.h"
#include "KYV/String.h"
#include "KYV/Strings.h"
#include "TempDir.h"

using namespace KYV;

namespace {

constexpr int NONE = Const::MISS;

// A database of a few stations and regions.
class DomainToolTest : public testing::Test {
 protected:
  DomainToolTest() {
    dir.write("sao.cty",
              "Oklahoma_City OK US KTLX 0 35.25 -97.25 370 72357 1\nOmaha NE US OMA 0 41.5 -96 300 72550 2\n");
    dir.write("own.cty", "Here XX YY HERE 0 10 20 0 1 1\n");
    dir.write("kyv.reg",
              "# a comment line\nus United 1 ps,40,-100,90,60,0.6,0.6\nSPC x 2 lc:25:-95:25:25,35,-95,40,30,1,1\n"
              "station x 3 id:KTLX\ntwice x 4 us\nloop x 5 loop\nping x 6 pong\npong x 7 ping\nbad x 8 ps,95,0\n"
              "nonsense x 9 what,ever\nlong x 10 " +
                  std::string(500, 'x') + "\nlast x 11 25,-95\n");
    dir.write("own.reg", "first x 1 ll,10,20\nsecond x 2 ll,30,40\n");
    Kyv::setDatabasePath(dir.path().c_str());
  }
  ~DomainToolTest() override {
    Kyv::setDatabasePath("");
    Kyv::resrc.clear();
  }
  // The result of decoding, and in `messages` all that was printed.
  int decode(DomainVal& val, const char* text) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = DomainTool::decode(val, text);
    messages = testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    return result;
  }

  TempDir dir;
  std::string messages;
};

TEST_F(DomainToolTest, FieldListsInTheirOrder) {
  const struct {
    const char* text;
    int proj;
    float clat, clon;
    int nx, ny;
    float dx, dy;
  } cases[] = {
      {"ps,40,-100,640,480,0.05,0.06", 1, 40, -100, 640, 480, 0.05f, 0.06f},
      {"merc,KTLX,64,48,0.5,0.6", 3, 35.25f, -97.25f, 64, 48, 0.5f, 0.6f},
      {"ll,40,-100,0.5,0.6", 2, 40, -100, 25, 17, 0.5f, 0.6f},
      {"ps,40,-100,640,480,0.05", 1, 40, -100, 640, 480, 0.05f, 0.05f},
      {"40,-100,640,480,0.05,0.06", 1, 40, -100, 640, 480, 0.05f, 0.06f},
      {"40,-100,640,480,0.05", 1, 40, -100, 640, 480, 0.05f, 0.05f},
      {"ll,KTLX,0.5,0.6", 2, 35.25f, -97.25f, 25, 17, 0.5f, 0.6f},
      {"ll,40,-100,0.5", 2, 40, -100, 25, 17, 0.5f, 0.5f},
      {"skewt,0,500,9", 40, 0, 500, 12, 11, 9.0f, 0.235f},
      {"40,-100,64,48", 1, 40, -100, 64, 48, 1.2f, 1.2f},
      {"40,-100,2", 1, 40, -100, 25, 17, 2.0f, 2.0f},
      {"ll,40,-100", 2, 40, -100, 25, 17, 1.2f, 1.2f},
      {"skewt,0,500", 40, 0, 500, 12, 11, 4.5f, 0.1175f},
      {"zoom,40,-100", 50, 40, -100, 25, 17, 1.0f, 1.0f},
      {"zoom,40,-100,3", 50, 40, -100, 25, 17, 3.0f, 3.0f},
      {"size,640.9,480", 51, NONE, NONE, 640, 480, NONE, NONE},
      {"25,-95", 1, 25, -95, 25, 17, 1.2f, 1.2f},
      {" 25, -95 ", 1, 25, -95, 25, 17, 1.2f, 1.2f},
      {"OMA,2", 1, 41.5f, -96, 25, 17, 2.0f, 2.0f},
      {"KTLX", 1, 35.25f, -97.25f, 25, 17, 1.2f, 1.2f},
      {"id:ktlx", 1, 35.25f, -97.25f, 25, 17, 1.2f, 1.2f},
      {"id:own.cty:here,3", 1, 10, 20, 25, 17, 3.0f, 3.0f},
      // Regions, of the own file and of others.
      {"us", 1, 40, -100, 90, 60, 0.6f, 0.6f},
      {"US", 1, 40, -100, 90, 60, 0.6f, 0.6f},
      {"SPC", 4, 35, -95, 40, 30, 1, 1},
      {"station", 1, 35.25f, -97.25f, 25, 17, 1.2f, 1.2f},
      {"twice", 1, 40, -100, 90, 60, 0.6f, 0.6f},
      {"last", 1, 25, -95, 25, 17, 1.2f, 1.2f},
      {"own.reg:second", 2, 30, 40, 25, 17, 1.2f, 1.2f},
      {"fi:own.reg:second", 2, 30, 40, 25, 17, 1.2f, 1.2f},
      {"fi:own.reg", 2, 10, 20, 25, 17, 1.2f, 1.2f},
      {"lc:25:-95:25:26", 4, 25, -95, 25, 17, 1.2f, 1.2f},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    DomainVal val;
    ASSERT_EQ(1, decode(val, c.text)) << messages;
    EXPECT_EQ("", messages);
    EXPECT_EQ(c.proj, val.proj);
    EXPECT_EQ(c.clat, val.clat);
    EXPECT_EQ(c.clon, val.clon);
    EXPECT_EQ(c.nx, val.nx);
    EXPECT_EQ(c.ny, val.ny);
    EXPECT_FLOAT_EQ(c.dx, val.dx);
    EXPECT_FLOAT_EQ(c.dy, val.dy);
  }
}

TEST_F(DomainToolTest, WhatMeansNothingIsToldOnce) {
  const auto invalid = [](const std::string& text) {
    return "DomainTool::decode: Invalid plot domain: " + text + "\n";
  };
  const std::string unfound = "DomainTool::setParam: Unable to find: ";
  const struct {
    std::string text;
    std::string told;
  } cases[] = {
      {"", ""},
      {"nowhere", invalid("nowhere")},
      {"QQQQ", unfound + "QQQQ\n" + invalid("QQQQ")},
      {"id:QQ", unfound + "id:QQ\n" + invalid("id:QQ")},
      {"id:/dev/zero:QQ", unfound + "id:/dev/zero:QQ\n" + invalid("id:/dev/zero:QQ")},
      {"id:|echo x:QQ", unfound + "id:|echo x:QQ\n" + invalid("id:|echo x:QQ")},
      {"missing.reg:us", "Unable to open region file: missing.reg\n" + invalid("missing.reg:us")},
      {"fi:|echo us x 1 25", "Unable to open region file: |echo us x 1 25\n" + invalid("fi:|echo us x 1 25")},
      {"fi:own.reg:third", invalid("fi:own.reg:third")},
      {"loop", invalid("loop")},
      {"ping", invalid("pong")},
      {"nonsense", invalid("what,ever")},
      {"ps,40,-100,640,480,0.05,0.05,1", invalid("ps,40,-100,640,480,0.05,0.05,1")},
      {"lc:25:-95:25:25,35,-95,abc,300,0.05,0.05", invalid("lc:25:-95:25:25,35,-95,abc,300,0.05,0.05")},
      {"ps,40,-9999", invalid("ps,40,-9999")},
      {"40,nan", invalid("40,nan")},
      {"40,-100,0,480", invalid("40,-100,0,480")},
      {"40,-100,99999999999,480", invalid("40,-100,99999999999,480")},
      {"size,1e30,1", invalid("size,1e30,1")},
      {"size,0,0", invalid("size,0,0")},
      {"what:1:2", invalid("what:1:2")},
      {",", invalid(",")},
      {":::", invalid(":::")},
      {"%s%n", invalid("%s%n")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    DomainVal val;
    val.clat = 7.0f;
    EXPECT_EQ(0, decode(val, c.text.c_str()));
    EXPECT_EQ(c.told, messages);
    EXPECT_EQ(7.0f, val.clat);
  }
  DomainVal val;
  EXPECT_EQ(0, decode(val, nullptr));
  EXPECT_EQ(0, decode(val, std::string(200000, ',').c_str()));
  EXPECT_EQ(0, decode(val, std::string(200000, ':').c_str()));
}

TEST_F(DomainToolTest, MissSetsNothing) {
  for (const char* text : {"miss", "MISS", "none", "None"}) {
    DomainVal val;
    EXPECT_EQ(1, decode(val, text)) << text;
    EXPECT_FALSE(val.isSet());
    EXPECT_EQ("", messages);
  }
}

TEST_F(DomainToolTest, ProjectionTextsCarryPolesAndParameters) {
  const struct {
    const char* text;
    int result, proj;
    float plat, plon, p0, p1, p3;
    bool ellipse;
  } cases[] = {
      {"ps", 1, 1, NONE, NONE, NONE, NONE, NONE, false},
      {"ps:-95", 1, 1, NONE, -95, NONE, NONE, NONE, false},
      {"lc:25:-95", 1, 4, 25, -95, NONE, NONE, NONE, false},
      {"lc:25:-95:33:45:63.9:4", 1, 4, 25, -95, 33, 45, 4, false},
      {"merc:e:20:10", 1, 3, 20, 10, NONE, NONE, NONE, true},
      {"merc:e", 1, 3, NONE, NONE, NONE, NONE, NONE, true},
      {"pstereo:40.000000:-100.000000:::", 1, 1, 40, -100, NONE, NONE, NONE, false},
      {"lc:25:-95:33:45:63.9:4:5", 0, NONE, NONE, NONE, NONE, NONE, NONE, false},
      {"lc:x", 0, NONE, NONE, NONE, NONE, NONE, NONE, false},
      {"huh:25:-95", 0, NONE, NONE, NONE, NONE, NONE, NONE, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    DomainVal val;
    EXPECT_EQ(c.result, DomainTool::setParam(val, c.text, "proj"));
    EXPECT_EQ(c.proj, val.proj);
    EXPECT_EQ(c.plat, val.plat);
    EXPECT_EQ(c.plon, val.plon);
    EXPECT_EQ(c.p0, val.param[0]);
    EXPECT_EQ(c.p1, val.param[1]);
    EXPECT_EQ(c.p3, val.param[3]);
    EXPECT_EQ(c.ellipse, val.ellipse);
  }
  DomainVal val;
  EXPECT_EQ(1, DomainTool::setParam(val, "anything", "unknown"));
  EXPECT_EQ(1, DomainTool::setParam(val, "12.5", "plon"));
  EXPECT_EQ(12.5f, val.plon);
  EXPECT_EQ(0, DomainTool::setParams(val, Strings("1,2", ','), "clat"));
  EXPECT_EQ(0, DomainTool::setParams(val, Strings("1,x", ','), "clat,clon"));
  EXPECT_EQ(NONE, val.clat);
}

TEST_F(DomainToolTest, DomainsAreMadeOfTextsAndOfTheResource) {
  Domain d;
  EXPECT_EQ(0, DomainTool::set(d));
  Kyv::setResrc("plot_domain", "us");
  ASSERT_EQ(1, DomainTool::set(d));
  EXPECT_EQ(40.0f, d.plat);
  EXPECT_EQ(-100.0f, d.plon);
  EXPECT_NEAR(89 * 0.6, d.getLimits().width(), 1e-4);
  // What is written can be read.
  String text;
  d.toString(text);
  Domain again;
  ASSERT_EQ(1, DomainTool::set(again, text.get()));
  EXPECT_TRUE(Domain::compare(d, again));
  // A text that reads well and still is no map.
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, DomainTool::set(d, "bad"));
  EXPECT_EQ("DomainTool::decode: Invalid plot domain: bad\n",
            testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr());
  EXPECT_TRUE(Domain::compare(d, again));
}

TEST_F(DomainToolTest, RegionsAreFoundInAnyCase) {
  String text;
  EXPECT_EQ(1, Region::get(nullptr, "uS", text));
  EXPECT_STREQ("ps,40,-100,90,60,0.6,0.6", text.get());
  EXPECT_EQ(1, Region::get(nullptr, "long", text));
  EXPECT_EQ(79, text.length());
  EXPECT_EQ(0, Region::get(nullptr, "nowhere", text));
  EXPECT_EQ(0, text.length());
  EXPECT_EQ(0, Region::get("own.reg", nullptr, text));
  EXPECT_EQ(1, Region::get("own.reg:second", text));
  EXPECT_STREQ("ll,30,40", text.get());
}

}  // namespace
