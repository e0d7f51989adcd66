#ifndef KYV_CONST_H
#define KYV_CONST_H

namespace KYV {

/// The constants of the library. Distances on a map are in units of 100 km, so are the earth radii.
class Const {
 public:
  static constexpr int MISS = -9999;  // the missing value of every int and float field

  static constexpr double PI = 3.1415926535898;
  static constexpr double TWO_PI = 6.283185307;
  static constexpr double DRC = 0.017453293;     // degrees to radians
  static constexpr double RDC = 57.29577951;     // radians to degrees
  static constexpr double EARTH_MEAN = 63.7122;  // mean earth radius
  static constexpr double EARTH_MAJ = 63.78137;  // semi-major axis
  static constexpr double EARTH_MIN = 63.56752;  // semi-minor axis
  static constexpr double G = 9.8;               // gravity, m/s^2
  static constexpr double R = 287.05;            // gas constant of dry air, J/(kg K)
  static constexpr double CP = 1004.0;           // specific heat at constant pressure, J/(kg K)
  static constexpr double CV = 717.0;            // specific heat at constant volume, J/(kg K)

  static constexpr bool isMissing(int value) { return value == MISS; }
  static constexpr bool isMissing(long value) { return value == MISS; }
  static constexpr bool isMissing(float value) { return value == static_cast<float>(MISS); }
  static constexpr bool isMissing(double value) { return value == static_cast<double>(MISS); }
};

}  // namespace KYV
#endif
