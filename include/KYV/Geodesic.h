#ifndef KYV_GEODESIC_H
#define KYV_GEODESIC_H

namespace KYV {

/// Geodesics on the WGS84 ellipsoid. Latitudes are geodetic; degrees, north and east positive.
class Geodesic {
 public:
  struct Place {
    double lat;
    double lon;
  };

  /// @param lat, lon  of the start
  /// @param azimuth   degrees from north, clockwise
  Geodesic(double lat, double lon, double azimuth);
  /// Distance and azimuth from one place to another: degrees from north, clockwise; 0 for places that are the same.
  struct Way {
    double metres;
    double azimuth;
  };
  /// Good to a millimetre for places that are not on opposite sides of the earth.
  static Way between(const Place& from, const Place& to);
  /// The place so many metres along it, up to half the earth's circumference; good to a millimetre.
  Place at(double metres) const;

 private:
  double lon;
  double sin_u, cos_u;    // reduced latitude of the start
  double sin_az, cos_az;  // azimuth there
  double sigma;           // angular distance from the equator to the start, on the auxiliary sphere
  double sin_a, cos2_a;   // azimuth where the geodesic crosses the equator
  double scale;           // metres on the auxiliary sphere for a radian
  double big_b, big_c;    // coefficients of the series for distance and longitude
};

/// The path of a radar's beam in a standard atmosphere, as a straight line above an earth of 4/3 its radius. The height
/// of the antenna counts, that of the ground does not.
class Beam {
 public:
  /// @param elevation  degrees
  /// @param antenna    metres above sea level
  Beam(double elevation, double antenna);
  /// Metres along the sea level, and above it, of the point so many metres along the beam.
  double groundRange(double slant) const;
  double height(double slant) const;
  /// Metres along the beam of the point above a place so many metres away.
  double slantRange(double ground) const;

 private:
  double sin_e, cos_e, start;
};

}  // namespace KYV
#endif
