#include "KYV/Geodesic.h"

#include <cmath>
#include <numbers>

namespace KYV {

namespace {

constexpr double RADIUS = 6378137.0;                // WGS84: equatorial radius, metres
constexpr double FLATTENING = 1.0 / 298.257223563;  // WGS84
constexpr double POLAR = RADIUS * (1.0 - FLATTENING);
constexpr double DEGREE = std::numbers::pi / 180.0;
constexpr double EARTH_MEAN = 6371000.0;         // metres
constexpr double BENT = 4.0 / 3.0 * EARTH_MEAN;  // above which beams are straight
constexpr double CLOSE = 1e-12;                  // radians, 6 micrometres

}  // namespace

// The direct solution of T. Vincenty, Survey Review XXIII (1975): a great circle of the auxiliary sphere, with series
// for distance and longitude.
Geodesic::Geodesic(double lat, double start_lon, double azimuth)
    : lon(start_lon), sin_az(std::sin(azimuth * DEGREE)), cos_az(std::cos(azimuth * DEGREE)) {
  const double u = std::atan((1.0 - FLATTENING) * std::tan(lat * DEGREE));
  sin_u = std::sin(u);
  cos_u = std::cos(u);
  sigma = std::atan2(sin_u, cos_u * cos_az);
  sin_a = cos_u * sin_az;
  cos2_a = 1.0 - sin_a * sin_a;
  const double u2 = cos2_a * (RADIUS * RADIUS - POLAR * POLAR) / (POLAR * POLAR);
  scale = POLAR * (1.0 + u2 / 16384.0 * (4096.0 + u2 * (-768.0 + u2 * (320.0 - 175.0 * u2))));
  big_b = u2 / 1024.0 * (256.0 + u2 * (-128.0 + u2 * (74.0 - 47.0 * u2)));
  big_c = FLATTENING / 16.0 * cos2_a * (4.0 + FLATTENING * (4.0 - 3.0 * cos2_a));
}

Geodesic::Place Geodesic::at(double metres) const {
  double arc = metres / scale;
  double sin_arc = 0.0, cos_arc = 0.0, middle = 0.0;
  // Three rounds give a millimetre within a thousand kilometres.
  for (int i = 0; i < 20; ++i) {
    sin_arc = std::sin(arc);
    cos_arc = std::cos(arc);
    middle = std::cos(2.0 * sigma + arc);
    const double m2 = 2.0 * middle * middle - 1.0;
    const double change = big_b * sin_arc *
                          (middle + big_b / 4.0 *
                                        (cos_arc * m2 - big_b / 6.0 * middle * (4.0 * sin_arc * sin_arc - 3.0) *
                                                            (4.0 * middle * middle - 3.0)));
    const double next = metres / scale + change;
    const bool done = std::abs(next - arc) < CLOSE;
    arc = next;
    if (done) break;
  }
  sin_arc = std::sin(arc);
  cos_arc = std::cos(arc);
  middle = std::cos(2.0 * sigma + arc);
  const double across = sin_u * sin_arc - cos_u * cos_arc * cos_az;
  const double lat =
      std::atan2(sin_u * cos_arc + cos_u * sin_arc * cos_az, (1.0 - FLATTENING) * std::hypot(sin_a, across));
  const double turn = std::atan2(sin_arc * sin_az, cos_u * cos_arc - sin_u * sin_arc * cos_az);
  const double east = turn - (1.0 - big_c) * FLATTENING * sin_a *
                                 (arc + big_c * sin_arc * (middle + big_c * cos_arc * (2.0 * middle * middle - 1.0)));
  return {lat / DEGREE, lon + east / DEGREE};
}

// The inverse solution of the same paper.
Geodesic::Way Geodesic::between(const Place& from, const Place& to) {
  const double u1 = std::atan((1.0 - FLATTENING) * std::tan(from.lat * DEGREE));
  const double u2 = std::atan((1.0 - FLATTENING) * std::tan(to.lat * DEGREE));
  const double s1 = std::sin(u1), c1 = std::cos(u1), s2 = std::sin(u2), c2 = std::cos(u2);
  const double turn = std::remainder(to.lon - from.lon, 360.0) * DEGREE;
  double l = turn, sin_arc = 0.0, cos_arc = 1.0, arc = 0.0, cos2 = 0.0, middle = 0.0;
  for (int i = 0; i < 50; ++i) {
    const double across = c2 * std::sin(l), along = c1 * s2 - s1 * c2 * std::cos(l);
    sin_arc = std::hypot(across, along);
    if (sin_arc < CLOSE) return {0.0, 0.0};
    cos_arc = s1 * s2 + c1 * c2 * std::cos(l);
    arc = std::atan2(sin_arc, cos_arc);
    const double sin_a = c1 * c2 * std::sin(l) / sin_arc;
    cos2 = 1.0 - sin_a * sin_a;
    middle = cos2 > CLOSE ? cos_arc - 2.0 * s1 * s2 / cos2 : 0.0;
    const double c = FLATTENING / 16.0 * cos2 * (4.0 + FLATTENING * (4.0 - 3.0 * cos2));
    const double next = turn + (1.0 - c) * FLATTENING * sin_a *
                                   (arc + c * sin_arc * (middle + c * cos_arc * (2.0 * middle * middle - 1.0)));
    const bool done = std::abs(next - l) < CLOSE;
    l = next;
    if (done) break;
  }
  const double q = cos2 * (RADIUS * RADIUS - POLAR * POLAR) / (POLAR * POLAR);
  const double a = 1.0 + q / 16384.0 * (4096.0 + q * (-768.0 + q * (320.0 - 175.0 * q)));
  const double b = q / 1024.0 * (256.0 + q * (-128.0 + q * (74.0 - 47.0 * q)));
  const double m2 = 2.0 * middle * middle - 1.0;
  const double change =
      b * sin_arc *
      (middle +
       b / 4.0 * (cos_arc * m2 - b / 6.0 * middle * (4.0 * sin_arc * sin_arc - 3.0) * (4.0 * middle * middle - 3.0)));
  const double azimuth = std::atan2(c2 * std::sin(l), c1 * s2 - s1 * c2 * std::cos(l)) / DEGREE;
  return {POLAR * a * (arc - change), azimuth < 0.0 ? azimuth + 360.0 : azimuth};
}

Beam::Beam(double elevation, double antenna)
    : sin_e(std::sin(elevation * DEGREE)), cos_e(std::cos(elevation * DEGREE)), start(BENT + antenna) {}

double Beam::height(double slant) const {
  return std::sqrt(slant * slant + start * start + 2.0 * slant * start * sin_e) - BENT;
}

// In the triangle of earth's centre, antenna and point the angle at the centre is known.
double Beam::slantRange(double ground) const {
  const double angle = ground / BENT;
  return start * std::sin(angle) / (cos_e * std::cos(angle) - sin_e * std::sin(angle));
}

double Beam::groundRange(double slant) const { return BENT * std::asin(slant * cos_e / (BENT + height(slant))); }

}  // namespace KYV
