// Where cells lie on a map: no edge of a bin more than 50 m, and no corner of a grid more than 100 m, from where PROJ's
// geod and a beam above an earth of 4/3 its radius put it.
#include "KYV/Places.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "KYV/DomainTool.h"
#include "KYV/EarthPoint.h"
#include "TempDir.h"

namespace KYV {
namespace {

constexpr double PI = 3.14159265358979;
constexpr float KM = 0.01f;  // plane units

struct Polar {
  double azimuth, metres;
};

// The ground range of a slant range, by the sides of the triangle of earth's centre, antenna and bin.
double groundRange(double slant, double elevation, double antenna) {
  constexpr double R = 4.0 / 3.0 * 6371000.0;
  const double a = R + antenna, angle = (90.0 + elevation) * PI / 180.0;
  const double b = std::sqrt(a * a + slant * slant - 2.0 * a * slant * std::cos(angle));
  return R * std::acos((a * a + b * b - slant * slant) / (2.0 * a * b));
}

class Places : public testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v geod > /dev/null 2>&1") != 0) GTEST_SKIP() << "geod (proj-bin) is missing";
  }
  // The plane points of places so far from a site, by geod.
  std::vector<Point> ask(const RadarSite& site, const std::vector<Polar>& places, const Domain& map) {
    std::string asked;
    char line[200];
    for (const Polar& p : places) {
      std::snprintf(line, sizeof line, "%.6f %.6f %.9f %.4f\n", site.lat, site.lon, p.azimuth, p.metres);
      asked += line;
    }
    dir.write("in", asked);
    EXPECT_EQ(0, std::system(("geod +ellps=WGS84 -f '%.9f' < " + dir.path("in") + " > " + dir.path("out")).c_str()));
    std::ifstream out(dir.path("out"));
    std::vector<Point> points;
    double lat = 0.0, lon = 0.0, back = 0.0;
    while (out >> lat >> lon >> back) {
      Point p;
      EXPECT_TRUE(map.tran(EarthPoint(static_cast<float>(lat), static_cast<float>(lon)), p));
      points.push_back(p);
    }
    EXPECT_EQ(places.size(), points.size());
    points.resize(places.size());
    return points;
  }
  static float apart(const Point& a, const Point& b) { return std::hypot(a.x - b.x, a.y - b.y); }

  TempDir dir;
};

constexpr RadarSite SITES[] = {{18.116, -66.078, 870.0, 0.5, true},
                               {25.611, -80.413, 10.0, 0.0, false},
                               {35.333, -97.278, 390.0, 19.5, true},
                               {48.195, -122.496, 162.0, 0.2, true},
                               {64.511, -165.293, 20.0, 4.5, true}};
// A map of a projection that is tangent at a site, with a point there in its middle.
std::string mapAt(const std::string& projection, const RadarSite& site) {
  const std::string lat = std::to_string(site.lat), lon = std::to_string(site.lon), at = "," + lat + "," + lon;
  if (projection == "ps") return "ps:90:" + lon + at + ",100,100,0.1,0.1";
  if (projection == "lc") return "lc:90:" + lon + ":33:45" + at + ",100,100,0.1,0.1";
  return projection + ":" + lat + ":" + lon + at + ",100,100,0.1,0.1";
}

TEST_F(Places, EdgesOfBinsLieWithinFiftyMetres) {
  constexpr int BINS = 1840;
  for (const RadarSite& site : SITES) {
    for (const char* projection : {"ps", "lc", "ortho"}) {
      const std::string text = mapAt(projection, site);
      SCOPED_TRACE(text);
      Domain map;
      ASSERT_TRUE(DomainTool::decode(map, text.c_str()));
      RadialPlaces places(site, 0.0, 250.0, BINS, map);
      std::vector<Polar> asked;
      std::vector<Point> got, corners(BINS + 1);
      for (double azimuth = 0.3; azimuth < 360.0; azimuth += 41.0) {
        places.along(azimuth, 0, corners);
        for (int i = 1; i <= BINS; i += 73) {
          const double slant = 250.0 * i;
          asked.push_back({azimuth, site.elevated ? groundRange(slant, site.elevation, site.antenna) : slant});
          got.push_back(corners[static_cast<std::size_t>(i)]);
        }
      }
      const std::vector<Point> right = ask(site, asked, map);
      float worst = 0.0f;
      for (std::size_t i = 0; i < right.size(); ++i) worst = std::max(worst, apart(right[i], got[i]));
      EXPECT_GT(0.05f * KM, worst);
    }
  }
}

TEST_F(Places, CornersOfGridsLieWithinHundredMetres) {
  constexpr int CELLS = 232;
  constexpr double SIZE = 4000.0;
  for (const RadarSite& site : SITES) {
    const std::string text = mapAt("ps", site);
    SCOPED_TRACE(text);
    Domain map;
    ASSERT_TRUE(DomainTool::decode(map, text.c_str()));
    const GridPlaces places(site, SIZE, CELLS, CELLS, map);
    std::vector<Polar> asked;
    std::vector<Point> got, corners(CELLS + 1);
    for (int j = 0; j <= CELLS; j += 29) {
      places.row(j, corners);
      for (int i = 0; i <= CELLS; i += 29) {
        const double x = (i - CELLS / 2) * SIZE, y = (CELLS / 2 - j) * SIZE;
        asked.push_back({std::atan2(x, y) * 180.0 / PI, std::hypot(x, y)});
        got.push_back(corners[static_cast<std::size_t>(i)]);
      }
    }
    const std::vector<Point> right = ask(site, asked, map);
    float worst = 0.0f;
    for (std::size_t i = 0; i < right.size(); ++i) worst = std::max(worst, apart(right[i], got[i]));
    EXPECT_GT(0.1f * KM, worst);
  }
}

// The grid's own coordinates of its pole side and meridian, and of a radar.
TEST_F(Places, TheNationalGridLiesWhereItIs) {
  const RadarSite site = {35.333, -97.278, 390.0, 0.0, false};
  Domain map;
  ASSERT_TRUE(DomainTool::decode(map, mapAt("ps", site).c_str()));
  const NationalPlaces places(site, 131, map);
  std::vector<Point> corners(132), below(132);
  places.row(65, corners);
  places.row(66, below);
  Point radar;
  map.tran(EarthPoint(35.333f, -97.278f), radar);
  // The radar is in the middle cell. The map is true at 60 degrees as well, where a side has 4.7625 km.
  EXPECT_GT(radar.x, corners[65].x - 0.01f);
  EXPECT_LT(radar.x, below[66].x + 0.01f);
  EXPECT_LT(radar.y, corners[65].y + 0.01f);
  EXPECT_GT(radar.y, below[66].y - 0.01f);
  EXPECT_NEAR(4.7625f * KM, apart(corners[65], corners[66]), 0.002f * KM);
}

// Over the seam of a map of degrees, and over the pole, edges are computed one by one.
TEST_F(Places, SeamsAndPolesAreNoCurves) {
  const RadarSite site = {64.511, 179.5, 20.0, 0.5, true};
  Domain map;
  ASSERT_TRUE(DomainTool::decode(map, "ll,65,175,100,100,0.2,0.2"));
  RadialPlaces places(site, 0.0, 1000.0, 460, map);
  std::vector<Point> corners(461);
  places.along(90.0, 0, corners);
  const std::vector<Point> right = ask(site, {{90.0, groundRange(300000.0, 0.5, 20.0)}}, map);
  EXPECT_GT(0.001f, apart(right[0], corners[300]));
}

}  // namespace
}  // namespace KYV
