#include "KYV/RadMap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "KYV/Domain.h"
#include "KYV/Figure.h"
#include "KYV/Kyv.h"
#include "NidsBuilder.h"
#include "TempDir.h"

namespace KYV {
namespace {

constexpr float LAT = 35.333f;
constexpr float LON = -97.278f;

std::string toString(const NidsBuilder::Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

class RadMapLayer : public testing::Test {
 protected:
  void SetUp() override {
    Kyv::resrc.clear();
    Kyv::setMessageLevel(3);
    Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
    Kyv::setResrc("device", "postscript,/dev/null,color");
  }
  void TearDown() override {
    Kyv::resrc.clear();
    Kyv::setDatabasePath("");
  }
  std::string write(const NidsBuilder& product) { return dir.write("product.nids", toString(product.bytes())); }
  // What the layer says of its settings.
  static std::string settings(RadMap& layer) {
    testing::internal::CaptureStdout();
    layer.print();
    return testing::internal::GetCapturedStdout();
  }

  TempDir dir;
};

TEST_F(RadMapLayer, ParametersSetTheirFieldAndTheLaterWins) {
  struct Case {
    const char* params;
    const char* line;
  };
  constexpr Case CASES[] = {
      {"", "  Draw plot: 1\n  Draw data: 1\n  Plot site: 0\n  Plot table: 0\n  Clutter radius: 0\n"},
      {"plot", "  Draw plot: 1\n  Draw data: 0\n"},
      {"plot,data", "  Draw plot: 0\n  Draw data: 1\n"},
      {"SITE", "  Plot site: 1\n"},
      {"table", "  Plot table: 1\n"},
      {"table,notable", "  Plot table: 0\n"},
      {"clutter", "  Clutter radius: 25\n"},
      {"clutter=10", "  Clutter radius: 10\n"},
      {"clutter=10,noclutter", "  Clutter radius: 0\n"},
      {"clutter=x", "  Clutter radius: 0\n"},
      {"cof=nws_ref.fil", "  Color fill: nws_ref.fil\n"},
      {"ct=my.clr,va=cid", "  Color table: my.clr\n  Color fill: \n  Color data: \n  Variable: cid\n"},
      {"CT=my.clr", "  Color table: \n"},  // letter case counts in the short keys
      {"what=ever,,", "  Clutter radius: 0\n"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.params);
    RadMap layer(c.params);
    EXPECT_NE(std::string::npos, settings(layer).find(c.line)) << settings(layer);
  }
}

TEST_F(RadMapLayer, ResourcesComeBeforeParameters) {
  Kyv::setResrc("color_fill", "0:red");
  Kyv::setResrc("variable", "tvs");
  Kyv::setResrc("parameter", "clutter=7,va=meso");
  RadMap layer;
  const std::string text = settings(layer);
  EXPECT_NE(std::string::npos, text.find("  Color fill: 0:red\n"));
  EXPECT_NE(std::string::npos, text.find("  Variable: meso\n"));
  EXPECT_NE(std::string::npos, text.find("  Clutter radius: 7\n"));
}

TEST_F(RadMapLayer, DefaultDomainIsTheProductsMadeWide) {
  RadMap layer;
  Domain domain;
  EXPECT_EQ(0, layer.getDomain(domain));  // neither file nor station
  EXPECT_FALSE(domain.isSet());

  layer.setFilename(write(NidsBuilder().header(19, 9).location(LAT, LON).radials(230).radial(0, 1, {{1, 1}})).c_str());
  ASSERT_EQ(1, layer.getDomain(domain));
  EXPECT_EQ(DomainVal::PSTEREO, domain.proj);
  EXPECT_EQ(461, domain.ny);
  EXPECT_EQ(461 * 3 / 2 + 1, domain.nx);
  EXPECT_FLOAT_EQ(LAT, domain.clat);
  EXPECT_FLOAT_EQ(LON, domain.plon);

  // A wind profile keeps its page.
  layer.setFilename(write(NidsBuilder().header(48, 9).vectors(10, 1, {{0, 0, 1, 1}})).c_str());
  ASSERT_EQ(1, layer.getDomain(domain));
  EXPECT_EQ(DomainVal::PIXEL, domain.proj);
  EXPECT_EQ(512, domain.nx);
}

TEST_F(RadMapLayer, AStationServesWhereThereIsNoFile) {
  RadMap layer("id=ktlx");
  Domain domain;
  ASSERT_EQ(1, layer.getDomain(domain));
  EXPECT_EQ(90, domain.nx);
  EXPECT_EQ(60, domain.ny);
  EXPECT_FLOAT_EQ(0.11899f, domain.dx);
  EXPECT_NEAR(LAT, domain.clat, 0.01f);
  EXPECT_NEAR(LON, domain.plon, 0.01f);
}

TEST_F(RadMapLayer, AQueryAnswersWithTheBinThatIsDrawnThere) {
  NidsBuilder product;
  product.header(19, 9).location(LAT, LON).thresholds({0x8000, 5, 10, 15, 20, 25, 30, 35, 40}).radials(100);
  for (int i = 0; i < 360; ++i) {
    // 40 dBZ in bin 50 of the radials between 85 and 95 degrees, 10 dBZ elsewhere.
    product.radial(
        static_cast<float>(i), 1.0f,
        {{15, 2}, {15, 2}, {15, 2}, {5, 2}, {1, i >= 85 && i < 95 ? 8 : 2}, {15, 2}, {15, 2}, {15, 2}, {4, 2}});
  }
  RadMap layer;
  layer.setFilename(write(product).c_str());
  Figure figure;
  testing::internal::CaptureStdout();
  ASSERT_EQ(1, figure.open());
  Domain domain;
  layer.getDomain(domain);
  figure.startPlot(domain);
  figure.draw(layer);
  testing::internal::GetCapturedStdout();

  // 50.5 km to the east: a degree of longitude has 111.2 km times the cosine of the latitude.
  const double lon = LON + 50.5 / (111.2 * std::cos(LAT * 3.14159265 / 180.0));
  const std::string place = std::to_string(LAT) + "," + std::to_string(lon);
  testing::internal::CaptureStdout();
  layer.callback("QueryLoc", place.c_str(), nullptr);
  const std::string answer = testing::internal::GetCapturedStdout();
  float azimuth = 0.0f, range = 0.0f, value = 0.0f;
  ASSERT_EQ(3, std::sscanf(answer.c_str(), "RadMap value [%f,%f]: %f\n", &azimuth, &range, &value)) << answer;
  EXPECT_NEAR(90.0f, azimuth, 0.5f);
  EXPECT_NEAR(50.5f, range, 0.3f);
  EXPECT_EQ(40.0f, value);

  testing::internal::CaptureStdout();
  layer.callback("KeyPress", place.c_str(), nullptr);
  layer.callback("QueryLoc", "somewhere", nullptr);
  EXPECT_EQ("", testing::internal::GetCapturedStdout());
}

// 300 bins of 250 m towards the south: wind up to 50 km, then an echo of unknown range.
TEST_F(RadMapLayer, AnExactPictureAnswersWithUnitStateAndBeam) {
  Kyv::setResrc("exact", "yes");
  NidsBuilder product;
  product.header(99, 9).location(LAT, LON).thresholds({-635, 5, 254}).height(1000).param(3, 5);
  std::vector<unsigned char> levels(200, 149);
  levels.resize(300, 1);
  product.digital(300).digitalRadial(179.5f, 1.0f, levels);
  RadMap layer;
  layer.setFilename(write(product).c_str());
  Figure figure;
  testing::internal::CaptureStdout();
  ASSERT_EQ(1, figure.open());
  Domain domain;
  layer.getDomain(domain);
  figure.startPlot(domain);
  figure.draw(layer);
  testing::internal::GetCapturedStdout();
  // South of the radar a degree of latitude has 110.95 km; 40 km away the beam is 0.3 km above the antenna and has
  // risen by 0.09 km more.
  const struct {
    float km;
    const char* answer;
  } CASES[] = {{40.0f, ": 10.0 m/s, azimuth 180.0, range 40.0 km, beam height 0.75 km"},
               {60.0f, ": range folded, azimuth 180.0, range 60.0 km"},
               {90.0f, ": no data, azimuth 180.0, range 90.0 km"}};
  for (const auto& c : CASES) {
    testing::internal::CaptureStdout();
    layer.callback("QueryLoc", (std::to_string(LAT - c.km / 110.95f) + "," + std::to_string(LON)).c_str(), nullptr);
    const std::string answer = testing::internal::GetCapturedStdout();
    EXPECT_NE(std::string::npos, answer.find(c.answer)) << answer;
  }
}

// Files at 10:00 and 10:07, now is 10:30.
TEST_F(RadMapLayer, StationAndProductFindFilesByAnyConvention) {
  const std::string content = toString(NidsBuilder().header(19, 9).location(LAT, LON).bytes());
  dir.write("TLX_N0Q_2024_05_01_10_00_13", content);
  dir.write("TLX_N0Q_2024_05_01_10_07_02", content);
  Kyv::setResrc("data_path", dir.path().c_str());
  Kyv::setInitTime(Date(2024, 5, 1, 10, 30, 0.0f).secs);
  const auto minute = [](RadMap& layer) {
    Date d;
    layer.getDate(d);
    return d.isSet() ? d.hour * 100 + d.min : 0;
  };
  for (const char* params : {"id=ktlx,ty=n0q,if=cloud", "nc=cloud,ty=n0q,id=ktlxxx"}) {
    SCOPED_TRACE(params);
    RadMap layer(params);
    Date first;
    EXPECT_EQ(1, layer.getInitDate(first));  // looks for the latest on its own
    EXPECT_EQ(1007, minute(layer));
    EXPECT_EQ(60, layer.getDateOffset());
    EXPECT_EQ(1, layer.getNumFrames());
    Date between(2024, 5, 1, 10, 6, 0.0f);
    EXPECT_EQ(1, layer.setFilename(between));
    EXPECT_EQ(1000, minute(layer));
    Date before(2024, 5, 1, 9, 59, 0.0f);
    EXPECT_EQ(0, layer.setFilename(before, ""));
    EXPECT_EQ(1, layer.setFilename("la"));
    EXPECT_EQ(1007, minute(layer));
    // A minute without a file is that of the file before.
    EXPECT_EQ(1, layer.setFilename("la-0:03"));
    EXPECT_EQ(1000, minute(layer));
  }
  Kyv::setResrc("in_file", "cloud");
  Kyv::setResrc("identifier", "TLX");
  Kyv::setResrc("type", "N0Q");
  Kyv::setResrc("hour", "-6:-2");  // 06:30
  Kyv::setResrc("num_hour", "1,0:15");
  RadMap layer;
  EXPECT_EQ(5, layer.getNumFrames());
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, layer.setFilename());
  EXPECT_EQ(0, layer.setFilename());
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_NE(std::string::npos, said.find("Times: 2024-05-01 06:30 to 2024-04-30 06:30"));
  EXPECT_EQ(said.find("No file found"), said.rfind("No file found"));  // said once
  EXPECT_EQ(900, layer.getDateOffset());
  Kyv::setInitTime(Const::MISS);
}

}  // namespace
}  // namespace KYV
