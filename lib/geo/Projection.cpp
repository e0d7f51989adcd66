#include "Projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>

namespace KYV {

namespace {

constexpr double RAD = Const::DRC;
constexpr double DEG = 1.0 / Const::DRC;  // exactly the way back
constexpr double HALF_PI = Const::PI / 2.0;
constexpr double NONE = std::numeric_limits<double>::quiet_NaN();
// Points on the very edge of a map are inside it, though floats and the rounded DRC put them a little beyond.
constexpr double EDGE = 1e-6;
constexpr double KAPPA = 0.285714;     // R / cp of dry air
constexpr double KELVIN = 273.15;      // 0 degrees Celsius
constexpr double P0 = 1000.0;          // hPa, where potential temperature is temperature
constexpr double SKEW = 4.5 / 0.1175;  // degrees per decade of pressure: isotherms climb at 45 degrees on square cells
constexpr double SQRT_HALF = 0.70710678118654752;

double sinD(double degrees) { return std::sin(RAD * degrees); }
double cosD(double degrees) { return std::cos(RAD * degrees); }
double tanD(double degrees) { return std::tan(RAD * degrees); }
double orElse(float value, double dflt) { return Const::isMissing(value) ? dflt : static_cast<double>(value); }
// Arc sine, of 1 for what lies just beyond.
double asinEdge(double sine) { return std::abs(sine) > 1.0 + EDGE ? NONE : std::asin(std::clamp(sine, -1.0, 1.0)); }
// A difference of longitudes reckoned backwards: none beyond the seam.
double withinSeam(double dlon) {
  return std::abs(dlon) > 180.0 * (1.0 + EDGE) ? NONE : std::clamp(dlon, -180.0, 180.0);
}
bool isSouth(const Domain& d) { return !Const::isMissing(d.plat) && d.plat < 0.0f; }

}  // namespace

// What the four constants hold stands above each family.
struct Domain::Formula::Maps {
  // All maps whose scale varies with the direction are measured by their area: the square root of how much the plane
  // enlarges it is the geometric mean of the greatest and the least scale.
  static constexpr double STEP = 0.01;  // degrees

  static double equalArea(const Domain&, Place) { return 1.0; }
  static double upright(const Domain&, Place) { return 0.0; }

  static double areaScale(const Domain& d, Place at) {
    at.lat = std::clamp(at.lat, -89.9, 89.9);
    const Formula& f = of(d.proj);
    const Xy west = f.forward(d, {at.lat, at.dlon - STEP}), east = f.forward(d, {at.lat, at.dlon + STEP});
    const Xy south = f.forward(d, {at.lat - STEP, at.dlon}), north = f.forward(d, {at.lat + STEP, at.dlon});
    const double area = (east.x - west.x) * (north.y - south.y) - (north.x - south.x) * (east.y - west.y);
    const double side = 2.0 * STEP * RAD * d.earth_rad;
    return std::sqrt(std::abs(area) / (side * side * cosD(at.lat)));
  }

  static double meridianTurn(const Domain& d, Place at) {
    const Formula& f = of(d.proj);
    Xy south = f.forward(d, {std::max(at.lat - STEP, -90.0), at.dlon});
    Xy north = f.forward(d, {std::min(at.lat + STEP, 90.0), at.dlon});
    // On the limb of a hemisphere only one side can be seen.
    if (!isUsable(south.x, south.y)) south = f.forward(d, at);
    if (!isUsable(north.x, north.y)) north = f.forward(d, at);
    return DEG * std::atan2(north.x - south.x, north.y - south.y);
  }

  // LATLON.
  static bool latlonPrepare(Domain& d) { return d.xfactor = 1.0, true; }
  static Xy latlonForward(const Domain&, Place at) { return {at.dlon, at.lat}; }
  static Place latlonInverse(const Domain&, Xy p) { return std::abs(p.y) > 90.0 ? Place{NONE, NONE} : Place{p.y, p.x}; }
  static double latlonScale(const Domain& d, Place at) {
    return DEG / (d.earth_rad * std::sqrt(cosD(std::min(std::abs(at.lat), 89.9))));
  }

  // PSTEREO: mult -1 on a northern map, 1 on a southern one; xfactor distance of the equator from the pole.
  static bool stereoPrepare(Domain& d) {
    d.mult = isSouth(d) ? 1.0 : -1.0;
    d.tlat1 = static_cast<float>(orElse(d.param[0], -60.0 * d.mult));
    d.xfactor = (1.0 - d.mult * sinD(d.tlat1)) * d.earth_rad;
    return std::abs(d.tlat1) <= 90.0f && d.xfactor > EDGE;
  }
  // Towards the far pole the map grows without end.
  static double stereoLat(const Domain& d, double lat) { return d.mult * std::min(d.mult * lat, 75.0); }
  static Xy stereoForward(const Domain& d, Place at) {
    const double r = d.xfactor * tanD((d.mult * stereoLat(d, at.lat) + 90.0) / 2.0);
    return {r * sinD(at.dlon), d.mult * r * cosD(at.dlon)};
  }
  static Place stereoInverse(const Domain& d, Xy p) {
    const double lat = d.mult * (2.0 * DEG * std::atan(std::hypot(p.x, p.y) / d.xfactor) - 90.0);
    return {lat, DEG * std::atan2(p.x, d.mult * p.y + 0.0)};
  }
  static double stereoScale(const Domain& d, Place at) {
    return d.xfactor / (d.earth_rad * (1.0 - d.mult * sinD(stereoLat(d, at.lat))));
  }
  static double stereoTurn(const Domain& d, Place at) { return d.mult * at.dlon; }

  // RADIAL: as PSTEREO, and cx, cy where its centre lies on that map.
  static bool radialPrepare(Domain& d) {
    if (!stereoPrepare(d)) return false;
    d.cx = d.cy = 0.0f;
    if (Const::isMissing(d.clat) || Const::isMissing(d.clon)) return true;
    const Xy c = stereoForward(d, of(RADIAL).place(d, EarthPoint(d.clat, d.clon)));
    if (!isUsable(c.x, c.y)) return false;
    d.cx = static_cast<float>(c.x);
    d.cy = static_cast<float>(c.y);
    return true;
  }
  static Xy radialForward(const Domain& d, Place at) {
    const Xy s = stereoForward(d, at);
    const double azimuth = DEG * std::atan2(s.x - d.cx, s.y - d.cy);
    return {azimuth < 0.0 ? azimuth + 360.0 : azimuth, std::hypot(s.x - d.cx, s.y - d.cy)};
  }
  static Place radialInverse(const Domain& d, Xy p) {
    return stereoInverse(d, {d.cx + p.y * sinD(p.x), d.cy + p.y * cosD(p.x)});
  }

  // MERC: xfactor radius times the scale of the true latitude; mult eccentricity, 0 on the sphere.
  static bool mercPrepare(Domain& d) {
    d.mult = d.ellipse ? std::sqrt(1.0 - d.earth_ratio2) : 0.0;
    d.xfactor = d.earth_rad;
    if (d.ellipse) {
      const double lat = orElse(d.plat, 0.0), e = d.mult * sinD(lat);
      d.xfactor = Const::EARTH_MAJ * cosD(lat) / std::sqrt(1.0 - e * e);
    }
    return d.xfactor > EDGE;
  }
  static double mercEllipse(const Domain& d, double sine) {
    return d.mult > 0.0 ? std::pow((1.0 - d.mult * sine) / (1.0 + d.mult * sine), d.mult / 2.0) : 1.0;
  }
  static Xy mercForward(const Domain& d, Place at) {
    const double lat = std::clamp(at.lat, -89.9, 89.9);
    return {d.xfactor * RAD * at.dlon, -d.xfactor * std::log(tanD((90.0 - lat) / 2.0) / mercEllipse(d, sinD(lat)))};
  }
  static Place mercInverse(const Domain& d, Xy p) {
    const double t = std::exp(-p.y / d.xfactor);
    double lat = HALF_PI - 2.0 * std::atan(t);
    // Each round gains more than two digits, the eccentricity being small.
    for (int round = 0; d.mult > 0.0 && round < 8; ++round) {
      lat = HALF_PI - 2.0 * std::atan(t * mercEllipse(d, std::sin(lat)));
    }
    return {DEG * lat, DEG * p.x / d.xfactor};
  }
  static double mercScale(const Domain& d, Place at) {
    const double lat = std::clamp(at.lat, -89.9, 89.9), e = d.mult * sinD(lat);
    const double radius = d.ellipse ? Const::EARTH_MAJ : d.earth_rad;
    return d.xfactor * std::sqrt(1.0 - e * e) / (radius * cosD(lat));
  }

  // The true latitudes of a conic map; one alone is both.
  static void conicLats(Domain& d) {
    const double s = isSouth(d) ? -1.0 : 1.0;
    d.tlat1 = static_cast<float>(orElse(d.param[0], 30.0 * s));
    d.tlat2 = Const::isMissing(d.param[0]) ? static_cast<float>(60.0 * s)
                                           : static_cast<float>(orElse(d.param[1], d.param[0]));
  }
  static double conicLat(double s, double lat) { return s * std::max(s * lat, -89.99); }

  // LAMB: mult cone constant, xfactor R F, yfactor 1 on a northern map and -1 on a southern one.
  static bool lambPrepare(Domain& d) {
    conicLats(d);
    const double s = isSouth(d) ? -1.0 : 1.0, t1 = s * d.tlat1, t2 = s * d.tlat2;
    const double slope = std::log(tanD((90.0 - t1) / 2.0));
    d.mult = d.tlat1 == d.tlat2
                 ? cosD(90.0 - t1)
                 : (std::log(cosD(t1)) - std::log(cosD(t2))) / (slope - std::log(tanD((90.0 - t2) / 2.0)));
    d.xfactor = d.earth_rad * cosD(t1) / (d.mult * std::exp(d.mult * slope));
    d.yfactor = s;
    return std::abs(t1) <= 90.0 && std::abs(t2) <= 90.0 && std::isfinite(d.mult) && std::abs(d.mult) > EDGE &&
           std::isfinite(d.xfactor) && std::abs(d.xfactor) > EDGE;
  }
  static double lambRadius(const Domain& d, double lat) {
    return d.xfactor * std::pow(tanD((90.0 - d.yfactor * conicLat(d.yfactor, lat)) / 2.0), d.mult);
  }
  static Xy lambForward(const Domain& d, Place at) {
    const double r = lambRadius(d, at.lat);
    return {r * sinD(d.mult * at.dlon), -d.yfactor * r * cosD(d.mult * at.dlon)};
  }
  static Place lambInverse(const Domain& d, Xy p) {
    const double sign = std::copysign(1.0, d.mult);
    const double t = std::pow(sign * std::hypot(p.x, p.y) / d.xfactor, 1.0 / d.mult);
    const double angle = std::atan2(sign * p.x, -sign * d.yfactor * p.y + 0.0);
    return {d.yfactor * (90.0 - 2.0 * DEG * std::atan(t)), withinSeam(DEG * angle / d.mult)};
  }
  static double lambScale(const Domain& d, Place at) {
    const double lat = std::clamp(at.lat, -89.99, 89.99);
    return d.mult * lambRadius(d, lat) / (d.earth_rad * cosD(lat));
  }
  static double lambTurn(const Domain& d, Place at) { return -d.yfactor * d.mult * at.dlon; }

  // ALBERS: mult n, scale C, xfactor R / n, yfactor distance of the apex from the origin.
  static bool albersPrepare(Domain& d) {
    conicLats(d);
    d.mult = (sinD(d.tlat1) + sinD(d.tlat2)) / 2.0;
    d.scale = cosD(d.tlat1) * cosD(d.tlat1) + 2.0 * d.mult * sinD(d.tlat1);
    d.xfactor = d.earth_rad / d.mult;
    d.yfactor = albersRadius(d, orElse(d.plat, 0.0));
    return std::abs(d.tlat1) <= 90.0f && std::abs(d.tlat2) <= 90.0f && std::abs(d.mult) > EDGE &&
           std::isfinite(d.yfactor);
  }
  static double albersRadius(const Domain& d, double lat) {
    const double square = d.scale - 2.0 * d.mult * sinD(lat);
    return square < -EDGE ? NONE : d.xfactor * std::sqrt(std::max(square, 0.0));
  }
  static Xy albersForward(const Domain& d, Place at) {
    const double r = albersRadius(d, conicLat(isSouth(d) ? -1.0 : 1.0, at.lat));
    return {r * sinD(d.mult * at.dlon), d.yfactor - r * cosD(d.mult * at.dlon)};
  }
  static Place albersInverse(const Domain& d, Xy p) {
    const double sign = std::copysign(1.0, d.mult), down = d.yfactor - p.y;
    const double r = std::hypot(p.x, down) / d.xfactor;
    return {DEG * asinEdge((d.scale - r * r) / (2.0 * d.mult)),
            withinSeam(DEG * std::atan2(sign * p.x, sign * down + 0.0) / d.mult)};
  }
  static double albersTurn(const Domain& d, Place at) { return -d.mult * at.dlon; }

  // ORTHO, GNOM, LAMBAZ: xfactor R, mult and yfactor sine and cosine of the latitude in the middle.
  static bool azimuthPrepare(Domain& d) {
    d.xfactor = d.earth_rad;
    d.mult = sinD(orElse(d.plat, 0.0));
    d.yfactor = cosD(orElse(d.plat, 0.0));
    return true;
  }
  static double cosFromMiddle(const Domain& d, Place at) {
    return d.mult * sinD(at.lat) + d.yfactor * cosD(at.lat) * cosD(at.dlon);
  }
  static Xy azimuthForward(const Domain& d, Place at, double k) {
    return {k * cosD(at.lat) * sinD(at.dlon), k * (d.yfactor * sinD(at.lat) - d.mult * cosD(at.lat) * cosD(at.dlon))};
  }
  // c  angle from the middle, radians
  static Place azimuthInverse(const Domain& d, Xy p, double c) {
    const double r = std::hypot(p.x, p.y), sine = std::sin(c), cosine = std::cos(c);
    if (r == 0.0) return {DEG * std::atan2(d.mult, d.yfactor), 0.0};
    return {DEG * asinEdge(cosine * d.mult + p.y * sine * d.yfactor / r),
            DEG * std::atan2(p.x * sine, r * d.yfactor * cosine - p.y * d.mult * sine)};
  }
  static Xy orthoForward(const Domain& d, Place at) {
    return azimuthForward(d, at, cosFromMiddle(d, at) < -EDGE ? NONE : d.xfactor);
  }
  static Place orthoInverse(const Domain& d, Xy p) {
    return azimuthInverse(d, p, asinEdge(std::hypot(p.x, p.y) / d.xfactor));
  }
  static double orthoScale(const Domain& d, Place at) { return std::sqrt(std::max(cosFromMiddle(d, at), 0.0)); }
  static Xy gnomForward(const Domain& d, Place at) {
    const double cosine = cosFromMiddle(d, at);
    return azimuthForward(d, at, cosine < EDGE ? NONE : d.xfactor / cosine);
  }
  static Place gnomInverse(const Domain& d, Xy p) {
    return azimuthInverse(d, p, std::atan(std::hypot(p.x, p.y) / d.xfactor));
  }
  static double gnomScale(const Domain& d, Place at) { return std::pow(cosFromMiddle(d, at), -1.5); }
  static Xy lambazForward(const Domain& d, Place at) {
    const double whole = 1.0 + cosFromMiddle(d, at);  // 0 at the antipode
    return azimuthForward(d, at, whole < 1e-12 ? NONE : d.xfactor * std::sqrt(2.0 / whole));
  }
  static Place lambazInverse(const Domain& d, Xy p) {
    return azimuthInverse(d, p, 2.0 * asinEdge(std::hypot(p.x, p.y) / (2.0 * d.xfactor)));
  }

  // MOLL: xfactor R.
  static bool mollPrepare(Domain& d) { return d.xfactor = d.earth_rad, true; }
  static Xy mollForward(const Domain& d, Place at) {
    if (std::abs(at.lat) > 89.99) return {0.0, std::copysign(d.xfactor, at.lat)};
    const double target = Const::PI * sinD(at.lat);
    double twice = RAD * at.lat;
    for (int round = 0; round < 15; ++round) {
      const double step = (twice + std::sin(twice) - target) / (1.0 + std::cos(twice));
      twice -= step;
      if (std::abs(step) < 1e-10) break;
    }
    return {d.xfactor * at.dlon / 90.0 * std::cos(twice / 2.0), d.xfactor * std::sin(twice / 2.0)};
  }
  static Place mollInverse(const Domain& d, Xy p) {
    const double angle = asinEdge(p.y / d.xfactor), cosine = std::cos(angle);
    const double lat = DEG * asinEdge((2.0 * angle + std::sin(2.0 * angle)) / Const::PI);
    return {lat, cosine > EDGE ? withinSeam(90.0 * p.x / (d.xfactor * cosine)) : 0.0 * lat};
  }
  // Equal areas all over, half of those on the earth.
  static double mollScale(const Domain&, Place) { return SQRT_HALF; }

  // SAT: the derived members say all; xfactor orbit radius, mult 1 when the plane holds scan angles.
  static bool satPrepare(Domain& d) {
    d.sat_rad = orElse(d.param[0], 421.64);
    d.sat_rad2 = d.sat_rad * d.sat_rad;
    d.sat_rad4 = d.sat_rad2 * d.sat_rad2;
    const double radius = d.ellipse ? Const::EARTH_MAJ : d.earth_rad;
    d.sat2_earth2 = d.sat_rad2 - radius * radius;
    d.earth_sat_ratio = d.earth_rad / d.sat_rad;
    d.xfactor = d.sat_rad;
    d.mult = d.param[1] == 1.0f ? 1.0 : 0.0;
    return d.sat_rad > std::max(radius, d.earth_rad) && d.sat_rad < 1e6;
  }
  static Xy satForward(const Domain& d, Place at) {
    double lat = RAD * at.lat, r = d.earth_rad;
    if (d.ellipse) {
      lat = std::atan(d.earth_ratio2 * std::tan(lat));
      r = Const::EARTH_MIN / std::sqrt(1.0 - (1.0 - d.earth_ratio2) * std::cos(lat) * std::cos(lat));
    }
    const double facing = std::cos(lat) * cosD(at.dlon);
    if (facing < d.earth_sat_ratio) return {NONE, NONE};  // below the satellite's horizon
    const double x = d.sat_rad - r * facing, y = -r * std::cos(lat) * sinD(at.dlon), z = r * std::sin(lat);
    if (d.mult > 0.0) return {d.sat_rad * std::asin(-y / std::hypot(x, y, z)), d.sat_rad * std::atan(z / x)};
    return {d.sat_rad * (-y / std::hypot(x, z)), d.sat_rad * z / x};
  }
  static Place satInverse(const Domain& d, Xy p) {
    double u = p.x / d.sat_rad, v = p.y / d.sat_rad;
    if (d.mult > 0.0) {
      if (std::abs(u) >= HALF_PI || std::abs(v) >= HALF_PI) return {NONE, NONE};
      u = std::tan(u);
      v = std::tan(v);
    }
    // The line of sight (1, u sqrt(1 + v^2), v) k meets the earth where k solves a quadratic.
    const double flat = d.ellipse ? 1.0 / d.earth_ratio2 : 1.0, side = u * std::sqrt(1.0 + v * v);
    const double a = 1.0 + side * side + flat * v * v;
    const double under = d.sat_rad2 - a * d.sat2_earth2;
    if (under < -EDGE * d.sat_rad2) return {NONE, NONE};
    const double k = (d.sat_rad - std::sqrt(std::max(under, 0.0))) / a;
    const double x = d.sat_rad - k, y = k * side, z = k * v;
    return {DEG * std::atan(flat * z / std::hypot(x, y)), DEG * std::atan2(y, x)};
  }
};

// Planes that are no map: first and second coordinate as the user reads them.
struct Domain::Formula::Diagrams {
  static bool prepare(Domain& d) { return d.xfactor = 1.0, true; }
  static double unity(const Domain&, Place) { return 1.0; }
  static double positive(double value) { return value > 0.0 ? value : NONE; }

  static Xy same(const Domain&, Place at) { return {at.lat, at.dlon}; }
  static Place sameBack(const Domain&, Xy p) { return {p.x, p.y}; }
  // Image rows grow downward.
  static Xy pixel(const Domain&, Place at) { return {at.lat, -at.dlon}; }
  static Place pixelBack(const Domain&, Xy p) { return {p.x, -p.y}; }
  // Angle in degrees and radius.
  static Xy polar(const Domain&, Place at) { return {at.dlon * sinD(at.lat), at.dlon * cosD(at.lat)}; }
  static Place polarBack(const Domain&, Xy p) {
    const double angle = DEG * std::atan2(p.x, p.y);
    return {angle < 0.0 ? angle + 360.0 : angle, std::hypot(p.x, p.y)};
  }
  // Second coordinate pressure, hPa, upwards.
  static Xy pressure(const Domain&, Place at) { return {at.lat, -positive(at.dlon)}; }
  static Place pressureBack(const Domain&, Xy p) { return {p.x, positive(-p.y)}; }
  static Xy logPressure(const Domain&, Place at) { return {at.lat, -std::log(positive(at.dlon))}; }
  static Place logPressureBack(const Domain&, Xy p) { return {p.x, std::exp(-p.y)}; }
  static Xy stuve(const Domain&, Place at) { return {at.lat, -std::pow(positive(at.dlon), KAPPA)}; }
  static Place stuveBack(const Domain&, Xy p) { return {p.x, std::pow(positive(-p.y), 1.0 / KAPPA)}; }
  // Height in decades of pressure; isotherms lean to the right and meet 1000 hPa at their temperature.
  static Xy skewt(const Domain&, Place at) {
    const double decades = std::log10(positive(at.dlon));
    return {at.lat + SKEW * (std::log10(P0) - decades), -decades};
  }
  static Place skewtBack(const Domain&, Xy p) { return {p.x - SKEW * (std::log10(P0) + p.y), std::pow(10.0, -p.y)}; }
  // Temperature, degrees Celsius, against entropy, whose unit makes both axes alike at 0 degrees.
  static Xy teph(const Domain&, Place at) {
    const double theta = positive(at.lat + KELVIN) * std::pow(P0 / positive(at.dlon), KAPPA);
    return {at.lat, KELVIN * std::log(theta / KELVIN)};
  }
  static Place tephBack(const Domain&, Xy p) {
    const double theta = KELVIN * std::exp(p.y / KELVIN);
    return {p.x, P0 * std::pow(positive(p.x + KELVIN) / theta, 1.0 / KAPPA)};
  }
  // Turned by 45 degrees, so that isobars lie nearly level.
  static Xy rteph(const Domain& d, Place at) {
    const Xy p = teph(d, at);
    return {(p.x + p.y) * SQRT_HALF, (p.y - p.x) * SQRT_HALF};
  }
  static Place rtephBack(const Domain& d, Xy p) {
    return tephBack(d, {(p.x - p.y) * SQRT_HALF, (p.x + p.y) * SQRT_HALF});
  }
};

constexpr Domain::Formula Domain::Formula::ROWS[] = {
    // clang-format off
    {PSTEREO, true, "pstereo", Maps::stereoPrepare, Maps::stereoForward, Maps::stereoInverse, Maps::stereoScale, Maps::stereoTurn},
    {LATLON, true, "latlon", Maps::latlonPrepare, Maps::latlonForward, Maps::latlonInverse, Maps::latlonScale, Maps::upright},
    {MERC, true, "merc", Maps::mercPrepare, Maps::mercForward, Maps::mercInverse, Maps::mercScale, Maps::upright},
    {LAMB, true, "lamb", Maps::lambPrepare, Maps::lambForward, Maps::lambInverse, Maps::lambScale, Maps::lambTurn},
    {ORTHO, true, "ortho", Maps::azimuthPrepare, Maps::orthoForward, Maps::orthoInverse, Maps::orthoScale, Maps::meridianTurn},
    {GNOM, true, "gnom", Maps::azimuthPrepare, Maps::gnomForward, Maps::gnomInverse, Maps::gnomScale, Maps::meridianTurn},
    {MOLL, true, "moll", Maps::mollPrepare, Maps::mollForward, Maps::mollInverse, Maps::mollScale, Maps::meridianTurn},
    {LAMBAZ, true, "lambaz", Maps::azimuthPrepare, Maps::lambazForward, Maps::lambazInverse, Maps::equalArea, Maps::meridianTurn},
    {ALBERS, true, "albers", Maps::albersPrepare, Maps::albersForward, Maps::albersInverse, Maps::equalArea, Maps::albersTurn},
    {SAT, true, "sat", Maps::satPrepare, Maps::satForward, Maps::satInverse, Maps::areaScale, Maps::meridianTurn},
    {RADIAL, true, "radial", Maps::radialPrepare, Maps::radialForward, Maps::radialInverse, Maps::stereoScale, Maps::stereoTurn},
    {PIXEL, false, "pixel", Diagrams::prepare, Diagrams::pixel, Diagrams::pixelBack, Diagrams::unity, Maps::upright},
    {XY, false, "xy", Diagrams::prepare, Diagrams::same, Diagrams::sameBack, Diagrams::unity, Maps::upright},
    {XZ, false, "xz", Diagrams::prepare, Diagrams::same, Diagrams::sameBack, Diagrams::unity, Maps::upright},
    {XP, false, "", Diagrams::prepare, Diagrams::pressure, Diagrams::pressureBack, Diagrams::unity, Maps::upright},
    {XLOGP, false, "xlogp", Diagrams::prepare, Diagrams::logPressure, Diagrams::logPressureBack, Diagrams::unity, Maps::upright},
    {POLAR, false, "polar", Diagrams::prepare, Diagrams::polar, Diagrams::polarBack, Diagrams::unity, Maps::upright},
    {CAT, false, "cat", Diagrams::prepare, Diagrams::same, Diagrams::sameBack, Diagrams::unity, Maps::upright},
    {SKEWT, false, "skewt", Diagrams::prepare, Diagrams::skewt, Diagrams::skewtBack, Diagrams::unity, Maps::upright},
    {STUVE, false, "stuve", Diagrams::prepare, Diagrams::stuve, Diagrams::stuveBack, Diagrams::unity, Maps::upright},
    {EMA, false, "ema", Diagrams::prepare, Diagrams::logPressure, Diagrams::logPressureBack, Diagrams::unity, Maps::upright},
    {TEPH, false, "teph", Diagrams::prepare, Diagrams::teph, Diagrams::tephBack, Diagrams::unity, Maps::upright},
    {RTEPH, false, "rteph", Diagrams::prepare, Diagrams::rteph, Diagrams::rtephBack, Diagrams::unity, Maps::upright},
    {ZOOM, false, "zoom", Diagrams::prepare, Diagrams::same, Diagrams::sameBack, Diagrams::unity, Maps::upright},
    {SIZE, false, "", Diagrams::prepare, Diagrams::same, Diagrams::sameBack, Diagrams::unity, Maps::upright},
    // The identity, for codes without rule and for domains without projection.
    {Const::MISS, false, "", Diagrams::prepare, Diagrams::same, Diagrams::sameBack, Diagrams::unity, Maps::upright},
    // clang-format on
};

const Domain::Formula& Domain::Formula::of(int code) {
  static constexpr int CODES = SIZE + 1, LAST = std::size(ROWS) - 1;
  // The row of each code, so that a transformation does not search.
  static constexpr std::array<int, CODES> rows = [] {
    std::array<int, CODES> table = {};
    table.fill(LAST);
    for (int row = 0; row < LAST; ++row) table[static_cast<std::size_t>(ROWS[row].code)] = row;
    return table;
  }();
  return ROWS[code >= 0 && code < CODES ? rows[static_cast<std::size_t>(code)] : LAST];
}

double Domain::Formula::wrap(double degrees) {
  return degrees >= -180.0 && degrees <= 180.0 ? degrees : std::remainder(degrees, 360.0);
}

bool Domain::Formula::isReady(const Domain& d) { return !d.isSet() || !Const::isMissing(d.xfactor); }

double Domain::Formula::revolution(const Domain& d) {
  return d.proj == LATLON ? OFFSET_LL : d.proj == MERC && isReady(d) ? Const::TWO_PI * d.xfactor : 0.0;
}

bool Domain::Formula::isUsable(double a, double b) { return std::abs(a) <= 1e9 && std::abs(b) <= 1e9; }

Domain::Formula::Place Domain::Formula::place(const Domain& d, const EarthPoint& e) const {
  if (!earth) return {e.lat, e.lon};
  if (!(std::abs(e.lat) <= 90.0f && std::abs(e.lon) <= 3600.0f)) return {NONE, NONE};
  return {e.lat, wrap(wrap(e.lon) - orElse(d.plon, 0.0))};
}

EarthPoint Domain::Formula::point(const Domain& d, Place at) const {
  const double lon = earth ? wrap(at.dlon + orElse(d.plon, 0.0)) : at.dlon;
  return {static_cast<float>(at.lat), static_cast<float>(lon)};
}

const char* DomainVal::getProjName(int code) { return Domain::Formula::of(code).name; }

}  // namespace KYV
