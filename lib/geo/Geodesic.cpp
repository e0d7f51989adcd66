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

Beam::Beam(double elevation, double antenna)
    : sin_e(std::sin(elevation * DEGREE)), cos_e(std::cos(elevation * DEGREE)), start(BENT + antenna) {}

double Beam::height(double slant) const {
  return std::sqrt(slant * slant + start * start + 2.0 * slant * start * sin_e) - BENT;
}

double Beam::groundRange(double slant) const { return BENT * std::asin(slant * cos_e / (BENT + height(slant))); }

}  // namespace KYV
