#include "KYV/NidsData.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "NidsBuilder.h"
#include "NidsTestFile.h"

namespace {

using namespace KYV;

struct Image {
  explicit Image(const NidsBuilder& b) {
    const TestFile f(b.bytes());
    NidsFile file(f.name());
    EXPECT_EQ(1, file.readHeader(info));
    EXPECT_EQ(1, file.readData(data));
    dom = file.getDomainVal();
  }
  NidsInfo info;
  NidsData data;
  DomainVal dom;
};

NidsBuilder levels() {
  NidsBuilder b = NidsBuilder().header(19);
  for (int i = 0; i < 16; i++) b.threshold(i, i);
  return b;
}

TEST(NidsData, RadialsGoToTheNearestSlot) {
  struct Case {
    float start;
    int slot;
  };
  for (const Case& c :
       {Case{0.4f, 0}, {359.6f, 0}, {359.5f, 0}, {359.4f, 359}, {0.5f, 1}, {360.0f, 0}, {123.0f, 123}}) {
    const Image i(levels().radial(c.start, 1.0f, {{2, 7}}));
    EXPECT_EQ(360, i.data.nrad);
    EXPECT_EQ(2, i.data.nbin);
    EXPECT_FLOAT_EQ(7.0f, i.data.getValue(c.slot, 1)) << c.start;
    EXPECT_FLOAT_EQ(-200.0f, i.data.getValue((c.slot + 1) % 360, 0)) << c.start;
  }
}

TEST(NidsData, ManyRadialsHaveHalfDegreeSlots) {
  NidsBuilder b = levels();
  for (int a = 0; a < 720; a++) b.radial(static_cast<float>(a) / 2.0f + 0.25f, 0.5f, {{1, a % 16}});
  const Image i(b);
  EXPECT_EQ(720, i.data.nrad);
  EXPECT_FLOAT_EQ(0.5f, i.data.getDx());
  // Tenths on the wire: 180.25 is sent as 180.3.
  EXPECT_FLOAT_EQ(360 % 16, i.data.getValue(361, 0));
}

TEST(NidsData, SingleGapsAreFilled) {
  const auto at = [](float first, float second) {
    return Image(levels().radial(first, 1.0f, {{2, 3}}).radial(second, 1.0f, {{2, 4}}));
  };
  EXPECT_FLOAT_EQ(3.0f, at(9.0f, 11.0f).data.getValue(10, 1));
  EXPECT_FLOAT_EQ(3.0f, at(359.0f, 1.0f).data.getValue(0, 1));
  EXPECT_FLOAT_EQ(-200.0f, at(9.0f, 12.0f).data.getValue(10, 1));
  EXPECT_FLOAT_EQ(-200.0f, at(9.0f, 12.0f).data.getValue(11, 1));
}

TEST(NidsData, WildAnglesEndTheRadials) {
  for (float wild : {-0.1f, 360.1f}) {
    testing::internal::CaptureStderr();
    const Image i(levels().radial(5.0f, 1.0f, {{2, 3}}).radial(wild, 1.0f, {{2, 4}}).radial(7.0f, 1.0f, {{2, 4}}));
    char expected[80];
    std::snprintf(expected, sizeof expected, "NidsFile::readData bad radial angle: %.2f\n", wild);
    EXPECT_EQ(expected, testing::internal::GetCapturedStderr());
    EXPECT_FLOAT_EQ(3.0f, i.data.getValue(5, 0));
    EXPECT_FLOAT_EQ(-200.0f, i.data.getValue(7, 0));
  }
}

TEST(NidsData, RunsStopAtTheRowsEnd) {
  const Image runs(levels().radials(4).radial(5.0f, 1.0f, {{3, 3}, {15, 4}, {15, 5}}).radial(7.0f, 1.0f, {{2, 6}}));
  EXPECT_FLOAT_EQ(4.0f, runs.data.getValue(5, 3));
  EXPECT_FLOAT_EQ(3.0f, runs.data.getValue(6, 0)) << "the filled gap";
  EXPECT_FLOAT_EQ(-200.0f, runs.data.getValue(7, 2)) << "a short radial";
  const Image odd(NidsBuilder().header(94).thresholds({0, 10}).digital(3).digitalRadial(5.0f, 1.0f, {7, 8, 9}));
  EXPECT_EQ(3, odd.data.nbin);
  EXPECT_FLOAT_EQ(9.0f, odd.data.getValue(5, 2));
  EXPECT_FLOAT_EQ(-200.0f, odd.data.getValue(6, 0)) << "the pad byte is in no bin";
}

TEST(NidsData, GridsKeepUncoveredCells) {
  NidsBuilder b = levels().header(37).raster();
  for (int r = 0; r < 464; r++) b.gridRow({{r, 2}, {10, 5}});
  const Image i(b);
  EXPECT_EQ(1, i.data.type);
  EXPECT_EQ(464, i.data.getNx());
  EXPECT_EQ(464, i.data.getNy());
  EXPECT_FLOAT_EQ(2.0f, i.data.getValue(99, 100));
  EXPECT_FLOAT_EQ(5.0f, i.data.getValue(100, 100));
  EXPECT_FLOAT_EQ(-100.0f, i.data.getValue(110, 100));
  EXPECT_FLOAT_EQ(-9999.0f, i.data.getValue(464, 0));
  EXPECT_FLOAT_EQ(-9999.0f, i.data.getValue(0, 464));
  EXPECT_FLOAT_EQ(-9999.0f, i.data.getValue(-1, 0));
}

TEST(NidsData, ArraysAreReusedAndMoved) {
  const TestFile large(levels().radial(0.0f, 1.0f, {{20, 3}}).bytes());
  const TestFile small(levels().radial(0.0f, 1.0f, {{10, 4}}).bytes());
  const TestFile none(NidsBuilder().header(48).text(8, 1, 1, 1, "x").bytes());
  NidsFile file;
  NidsInfo info;
  NidsData d;
  for (const TestFile* f : {&large, &small, &none}) {
    ASSERT_EQ(1, file.open(f->name()));
    ASSERT_EQ(1, file.readHeader(info));
    ASSERT_EQ(1, file.readData(d));
    EXPECT_EQ(7200, d.data_size);
  }
  EXPECT_EQ(10, d.nbin) << "no image: the array stays";
  EXPECT_EQ(48, d.code);
  EXPECT_FLOAT_EQ(4.0f, d.getValue(0, 9));
  EXPECT_FLOAT_EQ(-9999.0f, d.getValue(360, 0));
  NidsData copy(d);
  copy.offset(1.0f);
  EXPECT_FLOAT_EQ(-199.0f, copy.getValue(1, 0));
  EXPECT_FLOAT_EQ(-200.0f, d.getValue(1, 0));
}

TEST(NidsData, DatesAreOfTheVolumeScan) {
  // The label of an accumulation is made of another date.
  const Image i(NidsBuilder().header(138).volumeTime(19724, 60).param(1, 10).digitalRadial(0.0f, 1.0f, {2}));
  EXPECT_EQ(19723LL * 86400 + 60, i.data.date.secs);
}

// Whether a place lies in a drawn cell, on the plane.
bool contains(const std::array<Point, 4>& cell, const Point& p) {
  int side = 0;
  for (std::size_t i = 0; i < 4; i++) {
    const Point& a = cell[i];
    const Point& b = cell[(i + 1) % 4];
    const float cross = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    const int s = cross > 0.0f ? 1 : -1;
    if (side != 0 && s != side) return false;
    side = s;
  }
  return true;
}

// A hundred places over and around a product.
std::vector<EarthPoint> places(float degrees) {
  std::vector<EarthPoint> list;
  for (int i = 0; i < 100; i++) {
    const float u = std::fmod(static_cast<float>(i) * 0.618034f, 1.0f) - 0.5f;
    const float v = (static_cast<float>(i) + 0.5f) / 100.0f - 0.5f;
    list.emplace_back(35.0f + degrees * u, -97.0f + degrees * v);
  }
  return list;
}

TEST(NidsData, PlacesHaveTheValueOfTheBinDrawnThere) {
  constexpr int BINS = 12;
  NidsBuilder b = NidsBuilder().header(21).location(35.0f, -97.0f);  // bins of 4 km
  for (int i = 0; i < 16; i++) b.threshold(i, i);
  for (int a = 0; a < 360; a++) {
    std::vector<NidsBuilder::Run> runs(BINS, {1, 0});
    for (std::size_t j = 0; j < BINS; j++) runs[j].level = (a * 7 + static_cast<int>(j) * 3) % 16;
    b.radial(static_cast<float>(a), 1.0f, runs);
  }
  const Image image(b);
  const Domain map(image.dom);
  Point centre;
  ASSERT_EQ(1, map.tran(EarthPoint(35.0f, -97.0f), centre));
  int inside = 0;
  for (const EarthPoint& e : places(1.2f)) {
    Point p;
    ASSERT_EQ(1, map.tran(e, p));
    std::vector<float> drawn;
    for (int a = 0; a < 360; a++) {
      const float dir = map.adjustDir(static_cast<float>(a), EarthPoint(35.0f, -97.0f));
      const auto at = [&](int bin, float angle) {
        const float r = static_cast<float>(bin) * image.data.getDy();
        const float rad = angle * std::numbers::pi_v<float> / 180.0f;
        return Point(centre.x + r * std::sin(rad), centre.y + r * std::cos(rad));
      };
      for (int j = 0; j < BINS; j++) {
        if (contains({at(j, dir), at(j + 1, dir), at(j + 1, dir + 1.0f), at(j, dir + 1.0f)}, p)) {
          drawn.push_back(image.data.getValue(a, j));
        }
      }
    }
    if (drawn.size() > 1) continue;  // on an edge
    inside += !drawn.empty();
    EXPECT_FLOAT_EQ(drawn.empty() ? -9999.0f : drawn[0], image.data.getValue(e)) << e.lat << " " << e.lon;
  }
  EXPECT_LT(40, inside);
  EXPECT_GT(95, inside);
}

TEST(NidsData, PlacesHaveTheValueOfTheCellDrawnThere) {
  constexpr int CELLS = 25;
  NidsBuilder b = NidsBuilder().header(41).location(35.0f, -97.0f).raster();  // cells of 4 km
  for (int i = 0; i < 16; i++) b.threshold(i, i);
  for (int r = 0; r < CELLS; r++) {
    std::vector<NidsBuilder::Run> runs(CELLS, {1, 0});
    for (std::size_t k = 0; k < CELLS; k++) runs[k].level = (r * 7 + static_cast<int>(k) * 3) % 16;
    b.gridRow(runs);
  }
  const Image image(b);
  const Domain map(image.dom);
  Point centre;
  ASSERT_EQ(1, map.tran(EarthPoint(35.0f, -97.0f), centre));
  const float c = image.info.cres;
  const float x0 = centre.x - static_cast<float>(CELLS - 1) * 0.5f * c;
  const float y0 = centre.y + static_cast<float>(CELLS - 1) * 0.5f * c;
  int inside = 0;
  for (const EarthPoint& e : places(1.4f)) {
    Point p;
    ASSERT_EQ(1, map.tran(e, p));
    float drawn = -9999.0f;
    for (int r = 0; r < CELLS; r++) {
      for (int k = 0; k < CELLS; k++) {
        const float x = x0 + static_cast<float>(k) * c;
        const float y = y0 - static_cast<float>(r) * c;
        if (p.x >= x && p.x < x + c && p.y <= y && p.y > y - c) drawn = image.data.getValue(k, r);
      }
    }
    inside += drawn != -9999.0f;
    EXPECT_FLOAT_EQ(drawn, image.data.getValue(e)) << e.lat << " " << e.lon;
  }
  EXPECT_LT(40, inside);
  EXPECT_GT(95, inside);
}

}  // namespace
