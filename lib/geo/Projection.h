#ifndef KYV_LIB_GEO_PROJECTION_H
#define KYV_LIB_GEO_PROJECTION_H

#include "KYV/Domain.h"

namespace KYV {

/// One row of the table of projections: all that follows from the projection code alone. Where a formula has no answer,
/// its result is not a number.
struct Domain::Formula {
  /// Degrees, the longitude counted from the central meridian and within 180 of it. Where the plane is no map of the
  /// earth, the two coordinates as they stand (temperature and pressure, angle and radius).
  struct Place {
    double lat;
    double dlon;
  };
  struct Xy {
    double x;
    double y;
  };
  struct Maps;      // the formulas of the maps
  struct Diagrams;  // and of the other planes, both in Projection.cpp

  int code;
  bool earth;                // a map of the earth
  const char* name;          // as written in domain texts; empty: none
  bool (*prepare)(Domain&);  // sets the constants; false when the parameters make no map
  Xy (*forward)(const Domain&, Place);
  Place (*inverse)(const Domain&, Xy);
  double (*scale)(const Domain&, Place);  // distance on the plane per distance on the earth
  double (*turn)(const Domain&, Place);   // direction of north, degrees clockwise from the y axis

  static const Formula ROWS[];
  /// The row of a code; the identity for a code that has none.
  static const Formula& of(int code);
  /// Whether the constants of its projection stand.
  static bool isReady(const Domain& d);
  /// The width of the whole earth on a map whose meridians are upright lines; 0 on all others.
  static double revolution(const Domain& d);
  /// Brings a difference of longitudes into -180..180.
  static double wrap(double degrees);
  /// Whether both coordinates can be stored and reckoned with: finite, and far from where floats overflow.
  static bool isUsable(double a, double b);
  /// Earth position to what the formulas take; not a number when it is no place of the earth.
  Place place(const Domain& d, const EarthPoint& e) const;
  /// And back.
  EarthPoint point(const Domain& d, Place at) const;
};

}  // namespace KYV
#endif
