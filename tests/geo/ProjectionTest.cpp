#include <gtest/gtest.h>
#include <cmath>

#include "KYV/Domain.h"

using namespace KYV;

namespace {

constexpr double R = 63.7122;
constexpr double S = 421.64;  // orbit of the satellites
constexpr double A = 63.78137;
const double ROOT3 = std::sqrt(3.0);
// Plane distance of the equator from the pole, true at 60 degrees.
const double F = R * (1.0 + ROOT3 / 2.0);

Domain domainOf(const char* text) {
  Domain d;
  EXPECT_EQ(1, d.set(text)) << text;
  return d;
}

TEST(Projection, KnownPointsLieWhereGeometryPutsThem) {
  const double t = std::tan(Const::PI / 6.0);
  const double asin37 = std::asin((Const::PI / 3.0 + ROOT3 / 2.0) / Const::PI) * 180.0 / Const::PI;
  const struct {
    const char* what;
    const char* domain;
    double lat, lon, x, y;
  } cases[] = {
      {"north pole", "ps:90:-100", 90, 17, 0, 0},
      {"the true circle is that of the globe", "ps:90:-100", 60, -100, 0, -R / 2},
      {"a quarter turn east", "ps:90:-100", 60, -10, R / 2, 0},
      {"equator", "ps:90:-100", 0, -100, 0, -F},
      {"turned to a radar's meridian, not tangent there", "ps:35:-97", 60, -97, 0, -R / 2},
      {"longitude beyond a revolution", "ps:90:-100", 60, 350, R / 2, 0},
      {"true at the equator", "ps:90:0:0", 0, 0, 0, -R},
      {"own earth", "ps:90:0:60::100", 60, 0, 0, -50},
      {"80 S as 75 S", "ps:90:0", -80, 0, 0, -F * std::tan(82.5 * Const::PI / 180)},
      {"south pole", "ps:-90:0", -90, 0, 0, 0},
      {"southern true circle", "ps:-90:0", -60, 0, 0, R / 2},
      {"southern quarter turn", "ps:-90:0", -60, 90, R / 2, 0},
      {"80 N on a southern map", "ps:-90:0", 80, 0, 0, F * std::tan(82.5 * Const::PI / 180)},
      {"longitude 190 of the plate carree", "ll:0:0", 12, 190, -170, 12},
      {"plate carree about 170", "ll:0:170", -5, -170, 20, -5},
      {"equator of Mercator", "merc:0:0", 0, 90, R * Const::PI / 2, 0},
      {"Mercator at 45", "merc:0:0", 45, 0, 0, R * std::log(1 + std::sqrt(2.0))},
      {"Mercator stops before the pole", "merc:0:0", 90, 0, 0, -R * std::log(std::tan(0.05 * Const::PI / 180))},
      // Numerical examples of the U.S. Geological Survey's manual on map projections (1987), spheres of 1 or 3; the
      // Lambert one is measured from the apex: 1.5071429 to the origin, less 0.2462112.
      {"Lambert conformal 33/45", "lc:23:-96:33:45:1", 35, -75, 0.2966785, 0.2462112 - 1.5071429},
      {"Albers 29.5/45.5", "alb:23:-96:29.5:45.5:1", 35, -75, 0.2952720, 0.2416774},
      {"Lambert azimuthal", "lambaz:40:-100:::3", -20, 100, -4.2339303, 4.0257775},
      {"orthographic", "ortho:40:-100:::1", 30, -110, -0.1503837, -0.1651911},
      {"one parallel touches the cone", "lc:30:0:30:30:1", 30, 90, ROOT3 / std::sqrt(2.0), -ROOT3 / std::sqrt(2.0)},
      {"a second parallel left out is the first", "lc:30:0:30::1", 30, 90, ROOT3 / std::sqrt(2.0),
       -ROOT3 / std::sqrt(2.0)},
      {"southern cone", "lc:-30:0:-30:-30:1", -30, 90, ROOT3 / std::sqrt(2.0), ROOT3 / std::sqrt(2.0)},
      {"apex of the southern cone", "lc:-30:0:-30:-30:1", -90, 90, 0, 0},
      {"limb of the orthographic", "ortho:0:0", 0, 90, R, 0},
      {"gnomonic from the pole", "gnom:90:0", 45, 90, R, 0},
      {"gnomonic from the equator", "gnom:0:0", 30, 0, 0, R * t},
      {"Mollweide equator", "moll:0:10", 0, -80, -R, 0},
      {"Mollweide seam", "moll:0:0", 0, 180, 2 * R, 0},
      {"Mollweide where the angle is 30", "moll:0:0", asin37, 90, R * ROOT3 / 2, R / 2},
      {"Mollweide pole", "moll:0:0", -90, 123, 0, -R},
      {"under the satellite", "sat:0:-75", 0, -75, 0, 0},
      {"30 east of it", "sat:0:-75", 0, -45, S * R / 2 / (S - R * ROOT3 / 2), 0},
      {"30 north of it", "sat:0:-75", 30, -75, 0, S * R / 2 / (S - R * ROOT3 / 2)},
      {"as scan angle", "sat:0:-75:421.64:1", 0, -45, S * std::atan(R / 2 / (S - R * ROOT3 / 2)), 0},
      {"from a nearer orbit", "sat:0:0:200", 0, 30, 200 * R / 2 / (200 - R * ROOT3 / 2), 0},
      {"on the ellipsoid's equator", "sat:e:0:-75", 0, -45, S * A / 2 / (S - A * ROOT3 / 2), 0},
      {"rows of an image grow downward", "pix", 3, 4, 3, -4},
      {"plain plane", "xy", 3, 4, 3, 4},
      {"pressure grows downward", "xp", 5, 850, 5, -850},
      {"emagram", "ema", 5, 1, 5, 0},
      {"skew-T at 1000 hPa", "skewt", 20, 1000, 20, -3},
      {"isotherms of the skew-T climb", "skewt", 20, 100, 20 + 4.5 / 0.1175, -2},
      {"hodograph: wind to the east", "hodo", 90, 7, 7, 0},
      {"tephigram at the freezing point", "teph", 0, 1000, 0, 0},
      {"turned: warmer is to the lower right", "rteph", 10, 1000 * std::pow(283.15 / 273.15, 1 / 0.285714),
       std::sqrt(50.0), -std::sqrt(50.0)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Point p;
    EXPECT_EQ(1, domainOf(c.domain).tran(EarthPoint(static_cast<float>(c.lat), static_cast<float>(c.lon)), p));
    const double tolerance = 2e-6 * (1.0 + std::abs(c.x) + std::abs(c.y));
    EXPECT_NEAR(c.x, p.x, tolerance);
    EXPECT_NEAR(c.y, p.y, tolerance);
  }
}

// y' = (1 - e^2) / ((1 - e^2 sin^2) cos) from the equator on, by Simpson's rule.
TEST(Projection, MercatorOfTheEllipsoidKeepsAngles) {
  const double e2 = 1.0 - std::pow(63.56752 / A, 2.0), lat = Const::PI / 4.0;
  double sum = 0.0;
  constexpr int N = 2000;
  for (int i = 0; i <= N; ++i) {
    const double s = std::sin(lat * i / N);
    sum += (i == 0 || i == N ? 1 : i % 2 ? 4 : 2) * (1 - e2) / ((1 - e2 * s * s) * std::cos(lat * i / N));
  }
  Point p;
  ASSERT_EQ(1, domainOf("merc:e:0:0").tran(EarthPoint(45.0f, 90.0f), p));
  EXPECT_NEAR(A * sum * lat / N / 3.0, p.y, 1e-5);
  EXPECT_NEAR(A * Const::PI / 2.0, p.x, 1e-5);
  // True at 60: the parallel there has its length on the ellipsoid.
  ASSERT_EQ(1, domainOf("merc:e:60:0").tran(EarthPoint(60.0f, 180.0f), p));
  EXPECT_NEAR(A * Const::PI * 0.5 / std::sqrt(1.0 - e2 * 0.75), p.x, 1e-4);
}

TEST(Projection, HiddenAndImpossiblePlacesAreRefused) {
  const struct {
    const char* what;
    const char* domain;
    float lat, lon;
  } cases[] = {
      {"far side", "ortho:0:0", 0, 120},
      {"horizon of the gnomonic", "gnom:0:0", 0, 90.1f},
      {"antipode", "lambaz:0:0", 0, 180},
      {"below the satellite's horizon", "sat:0:0", 0, 82},
      {"latitude beyond the pole", "ps:90:0", 90.5f, 0},
      {"longitude beyond reason", "ll:0:0", 0, 3601},
      {"radial too", "rad,35,-97,360,230,1,0.01", 91, 0},
      {"not a number", "ll:0:0", NAN, 0},
      {"infinite", "xy", INFINITY, 0},
      {"no pressure", "xp", 0, 0},
      {"no pressure", "xlogp", 0, -5},
      {"no pressure", "skewt", 0, 0},
      {"no pressure", "teph", 0, 0},
      {"below absolute zero", "teph", -300, 500},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Point p(1.0f, 1.0f);
    EXPECT_EQ(0, domainOf(c.domain).tran(EarthPoint(c.lat, c.lon), p));
    EXPECT_TRUE(p.isMissing());
  }
  const struct {
    const char* what;
    const char* domain;
    float x, y;
  } back[] = {
      {"off the globe", "ortho:0:0", 64, 0},
      {"off the disc", "lambaz:0:0", 0, 128},
      {"beside the cone", "lc:30:0:30:30", 0, 50},
      {"beside Albers' cone", "alb:0:0:30:30", 0, 250},
      {"off the ellipse", "moll:0:0", 127, 10},
      {"above the ellipse", "moll:0:0", 0, 64},
      {"past the earth", "sat:0:0", 80, 0},
      {"turned away", "sat:0:0:421.64:1", 700, 0},
      {"above the pole", "ll:0:0", 0, 90.1f},
      {"not a number", "ps:90:0", NAN, 0},
      {"no pressure", "xp", 0, 1},
  };
  for (const auto& c : back) {
    SCOPED_TRACE(c.what);
    EarthPoint e(1.0f, 1.0f);
    EXPECT_EQ(0, domainOf(c.domain).tran(Point(c.x, c.y), e));
    EXPECT_TRUE(e.isMissing());
  }
}

struct MapCase {
  const char* domain;
  float south, north;  // latitudes between which everything is asked
  float reach;         // distance from the map's middle, 100 km
};
constexpr float ALL = 1000.0f;
constexpr MapCase MAPS[] = {
    {"ps:90:-100", -74, 90, ALL},
    {"ps:-90:20:-71", -90, 74, ALL},
    {"ps:35:-97", -74, 90, ALL},
    {"ll:0:170", -89, 89, ALL},
    {"merc:0:-40", -89, 89, ALL},
    {"merc:e:20:-40", -89, 89, ALL},
    {"lc:90:-98:33:45:63.9", -80, 89, ALL},
    {"lc:-30:140", -89, 80, ALL},
    {"lc:40:0:-20:-40", -80, 80, ALL},
    {"ortho:40:-100", -90, 90, 80},
    {"ortho:-90:30", -90, 90, 80},
    {"gnom:40:-100", -90, 90, 80},
    {"moll:0:100", -88, 88, ALL},
    {"lambaz:40:-100", -90, 90, 170},
    {"alb:23:-96", -80, 89, ALL},
    {"alb:-23:25", -89, 80, ALL},
    {"sat:0:-75", -90, 90, 70},
    {"sat:0:-75:421.64:1", -90, 90, 70},
    {"sat:e:0:140", -90, 90, 70},
    {"sat:e:0:140:300:1", -90, 90, 65},
    {"rad,35,-97,360,230,1,0.01", -74, 90, ALL},
};

// Calls check(domain, place) over the part of each map that its case names.
template <class Check>
void overMaps(float margin, const Check& check) {
  for (const MapCase& c : MAPS) {
    SCOPED_TRACE(c.domain);
    const Domain d = domainOf(c.domain);
    int tried = 0;
    const float south = c.south + margin, height = c.north - margin - south;
    for (int row = 0; row <= 20; ++row) {
      for (int column = 0; column <= 32; ++column) {
        const EarthPoint e(south + height * static_cast<float>(row) / 20.0f,
                           static_cast<float>(column) * 11.25f - 180.0f);
        if (c.reach < ALL && d.calcEarthDist(EarthPoint(d.plat, d.plon), e) > c.reach) continue;
        ++tried;
        check(d, e);
        if (testing::Test::HasFailure()) return;
      }
    }
    EXPECT_GT(tried, 50);
  }
}

// Floats hold plane positions to about 1 m; tolerance 20 m, for the strong reductions near the seams and limbs.
TEST(Projection, ThereAndBackOverEveryMap) {
  overMaps(0.0f, [](const Domain& d, const EarthPoint& e) {
    Point p;
    EarthPoint back;
    ASSERT_EQ(1, d.tran(e, p)) << e.lat << ' ' << e.lon;
    ASSERT_EQ(1, d.tran(p, back)) << e.lat << ' ' << e.lon;
    ASSERT_LT(d.calcEarthDist(e, back), 2e-4f) << e.lat << ' ' << e.lon << " -> " << back.lat << ' ' << back.lon;
    ASSERT_LE(std::abs(back.lon), 180.0f);
  });
}

TEST(Projection, ThereAndBackOverEveryDiagram) {
  for (const char* text : {"xy", "pix", "cat", "xp", "xlogp", "skewt", "ema", "teph", "rteph"}) {
    const Domain d = domainOf(text);
    for (const float t : {-90.0f, -40.0f, 0.0f, 15.0f, 45.0f}) {
      for (const float p : {1050.0f, 1000.0f, 500.0f, 100.0f, 10.0f}) {
        SCOPED_TRACE(testing::Message() << text << ' ' << t << ' ' << p);
        Point xy;
        EarthPoint e;
        ASSERT_EQ(1, d.tran(EarthPoint(t, p), xy));
        ASSERT_EQ(1, d.tran(xy, e));
        ASSERT_NEAR(t, e.lat, 1e-3);
        ASSERT_NEAR(p, e.lon, 1e-5 * p);
      }
    }
  }
  Point xy;
  EarthPoint e;
  DomainVal val;
  for (const int code : {DomainVal::STUVE, DomainVal::POLAR}) {
    val.proj = code;
    const Domain d(val);
    ASSERT_TRUE(d.tran(EarthPoint(40.0f, 500.0f), xy) && d.tran(xy, e));
    EXPECT_NEAR(40.0, e.lat, 1e-4);
    EXPECT_NEAR(500.0, e.lon, 1e-2);
  }
}

TEST(Projection, MissingPlacesStayMissing) {
  const Domain d = domainOf("ortho:0:0");
  Point p(1.0f, 2.0f);
  EarthPoint e(1.0f, 2.0f);
  EXPECT_EQ(1, d.tran(EarthPoint(), p));
  EXPECT_TRUE(p.isMissing());
  p.setMissing();
  EXPECT_EQ(1, d.tran(p, e));
  EXPECT_TRUE(e.isMissing());
}

TEST(Projection, MapFactorAtKnownPlaces) {
  const struct {
    const char* what;
    const char* domain;
    float lat, lon;
    double factor;
  } cases[] = {
      {"true at 60", "ps:90:0", 60, 10, 1.0},
      {"pole", "ps:90:0", 90, 0, (1 + ROOT3 / 2) / 2},
      {"at a radar", "ps:30:-97", 30, -97, (1 + ROOT3 / 2) / 1.5},
      {"radial as its map", "rad,30,-97,360,230,1,0.01", 30, -97, (1 + ROOT3 / 2) / 1.5},
      {"another true latitude", "ps:90:0:30", 30, 10, 1.0},
      {"south", "ps:-90:0", -30, 0, (1 + ROOT3 / 2) / 1.5},
      {"Mercator doubles at 60", "merc:0:0", 60, 0, 2.0},
      {"true parallels of the cone", "lc:90:-98:33:45:63.9", 33, 20, 1.0},
      {"both of them", "lc:90:-98:33:45:63.9", 45, -100, 1.0},
      {"equal areas", "alb:23:-96", 10, 0, 1.0},
      {"degrees for 100 km", "ll:0:0", 0, 0, 180.0 / Const::PI / R},
      {"and at 60", "ll:0:0", 60, 0, 180.0 / Const::PI / R * std::sqrt(2.0)},
      {"satellite's nadir", "sat:0:0", 0, 0, S / (S - R)},
      {"middle of the gnomonic", "gnom:40:9", 40, 9, 1.0},
      {"no map", "xy", 40, 9, 1.0},
      {"hidden", "ortho:0:0", 0, 170, -9999.0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_NEAR(c.factor, domainOf(c.domain).getMapFactor(EarthPoint(c.lat, c.lon)), 1e-6 * std::abs(c.factor) + 1e-6);
  }
}

// What the plane does with a small quadrangle and with a step north is what factor and direction say.
TEST(Projection, MapFactorAndNorthAgreeWithThePlane) {
  constexpr float STEP = 0.25f;
  overMaps(4.0f, [](const Domain& d, const EarthPoint& e) {
    if (std::abs(e.lat) > 85.0f) return;
    DomainVal val = d.get();
    if (val.proj == DomainVal::RADIAL) val.proj = DomainVal::PSTEREO;
    Domain plane(val);
    Point w, ea, s, n;
    ASSERT_TRUE(plane.tran(EarthPoint(e.lat, e.lon - STEP), w) && plane.tran(EarthPoint(e.lat, e.lon + STEP), ea) &&
                plane.tran(EarthPoint(e.lat - STEP, e.lon), s) && plane.tran(EarthPoint(e.lat + STEP, e.lon), n));
    if (std::hypot(ea.x - w.x, ea.y - w.y) > 20.0f) return;  // over the seam
    const double radius = Const::isMissing(d.param[2]) ? (d.ellipse ? A : R) : d.param[2];
    const double side = 2.0 * STEP * Const::PI / 180.0 * radius;
    const double area = std::abs((ea.x - w.x) * (n.y - s.y) - (n.x - s.x) * (ea.y - w.y));
    const double factor = std::sqrt(area / (side * side * std::cos(e.lat * Const::PI / 180.0)));
    ASSERT_NEAR(1.0, d.getMapFactor(e) / factor, d.ellipse ? 8e-3 : 3e-3) << e.lat << ' ' << e.lon;
    const double north = std::atan2(n.x - s.x, n.y - s.y) * 180.0 / Const::PI;
    ASSERT_NEAR(0.0, std::remainder(d.adjustDir(0.0f, e) - north, 360.0), 0.05) << e.lat << ' ' << e.lon;
    ASSERT_NEAR(0.0, std::remainder(d.unadjustDir(d.adjustDir(77.0f, e), e) - 77.0f, 360.0), 1e-3);
  });
}

TEST(Projection, OnTheCentralMeridianDirectionsStayExactly) {
  for (const MapCase& c : MAPS) {
    const Domain d = domainOf(c.domain);
    for (const float dir : {0.0f, 0.5f, 123.4f, 359.5f}) {
      EXPECT_EQ(dir, d.adjustDir(dir, EarthPoint(d.plat, d.plon))) << c.domain;
      EXPECT_EQ(dir, d.unadjustDir(dir, EarthPoint(d.plat, d.plon))) << c.domain;
    }
    EXPECT_TRUE(Const::isMissing(d.adjustDir(Const::MISS, EarthPoint(d.plat, d.plon)))) << c.domain;
    EXPECT_TRUE(Const::isMissing(d.adjustDir(10.0f, EarthPoint()))) << c.domain;
  }
  // 10 degrees east of the central meridian north leans 10 degrees to the left of the map's up, south of the equator
  // to the right; on the cone less by its constant.
  EXPECT_FLOAT_EQ(350.0f, domainOf("ps:90:0").adjustDir(0.0f, EarthPoint(40.0f, 10.0f)));
  EXPECT_FLOAT_EQ(10.0f, domainOf("ps:-90:0").adjustDir(0.0f, EarthPoint(-40.0f, 10.0f)));
  EXPECT_FLOAT_EQ(355.0f, domainOf("lc:30:0:30").adjustDir(0.0f, EarthPoint(40.0f, 10.0f)));
}

}  // namespace
