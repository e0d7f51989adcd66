// Places along geodesics, and beams above the ground, against PROJ's geod and the formula written out otherwise.
#include "KYV/Geodesic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

#include "TempDir.h"

namespace KYV {
namespace {

constexpr double METRE = 1.0 / 111000.0;  // degrees of latitude
constexpr double PI = 3.14159265358979;

TEST(Geodesic, PlacesAreThoseOfGeod) {
  const struct {
    double lat, lon, azimuth, metres, lat2, lon2;  // as `geod +ellps=WGS84` answers
  } CASES[] = {{18.0, -66.0, 45.0, 460000.0, 20.912289005, -62.874510824},
               {65.0, -150.0, 300.0, 460000.0, 66.804015688, -159.090199049},
               {35.333, -97.278, 90.0, 230000.0, 35.306539287, -94.748763881},
               {35.333, -97.278, 180.0, 100.0, 35.332098666, -97.278000000}};
  for (const auto& c : CASES) {
    const Geodesic::Place p = Geodesic(c.lat, c.lon, c.azimuth).at(c.metres);
    EXPECT_NEAR(c.lat2, p.lat, 1e-8);
    EXPECT_NEAR(c.lon2, p.lon, 1e-8);
  }
}

// Sites from 18 to 65 degrees north, all azimuths, all ranges.
TEST(Geodesic, EveryRangeAndAzimuthAgreesWithTheReferee) {
  if (std::system("command -v geod > /dev/null 2>&1") != 0) GTEST_SKIP() << "geod (proj-bin) is missing";
  const TempDir dir;
  std::string asked, command = "geod +ellps=WGS84 -f '%.9f' < " + dir.path("in") + " > " + dir.path("out");
  for (double lat = 18.0; lat <= 65.0; lat += 9.4) {
    for (int azimuth = 0; azimuth < 360; azimuth += 17) {
      for (const double km : {0.25, 57.3, 230.0, 460.0}) {
        asked += std::to_string(lat) + " -97.278 " + std::to_string(azimuth) + " " + std::to_string(km * 1000.0) + "\n";
      }
    }
  }
  dir.write("in", asked);
  ASSERT_EQ(0, std::system(command.c_str()));
  std::ifstream in(dir.path("in")), out(dir.path("out"));
  double lat = 0.0, lon = 0.0, azimuth = 0.0, metres = 0.0, lat2 = 0.0, lon2 = 0.0, back = 0.0;
  int n = 0;
  while (in >> lat >> lon >> azimuth >> metres && out >> lat2 >> lon2 >> back) {
    const Geodesic::Place p = Geodesic(lat, lon, azimuth).at(metres);
    EXPECT_NEAR(lat2, p.lat, 0.01 * METRE) << lat << " " << azimuth << " " << metres;
    EXPECT_NEAR(lon2, p.lon, 0.03 * METRE) << lat << " " << azimuth << " " << metres;
    const Geodesic::Way way = Geodesic::between({lat, -97.278}, {lat2, lon2});
    EXPECT_NEAR(metres, way.metres, 0.01) << lat << " " << azimuth;
    EXPECT_NEAR(0.0, std::remainder(azimuth - way.azimuth, 360.0), 2e-4) << lat << " " << metres;
    ++n;
  }
  EXPECT_EQ(6 * 22 * 4, n);
}

// The law of cosines in the triangle of earth's centre, antenna and bin, and the angle at the centre by the law of
// sines.
TEST(Beam, StraightAboveAnEarthOfFourThirds) {
  constexpr double R = 4.0 / 3.0 * 6371000.0;
  for (const double elevation : {0.2, 0.5, 4.5, 19.5}) {
    for (const double slant : {250.0, 60000.0, 300000.0, 460000.0}) {
      const Beam beam(elevation, 390.0);
      const double a = R + 390.0, angle = (90.0 + elevation) * PI / 180.0;
      const double far = std::sqrt(a * a + slant * slant - 2.0 * a * slant * std::cos(angle));
      EXPECT_NEAR(far - R, beam.height(slant), 0.01);
      EXPECT_NEAR(R * std::acos((a * a + far * far - slant * slant) / (2.0 * a * far)), beam.groundRange(slant), 2.0);
      EXPECT_NEAR(slant, beam.slantRange(beam.groundRange(slant)), 0.01);
    }
  }
  EXPECT_NEAR(16850.0, Beam(0.5, 390.0).height(460000.0), 20.0);  // 390 m, 4.01 km up and 12.45 km by the bend
}

}  // namespace
}  // namespace KYV
