#ifndef KYV_DOMAINVAL_H
#define KYV_DOMAINVAL_H

#include "KYV/Const.h"

namespace KYV {

class String;

/// The textual content of a map domain: projection, centre and grid. Plot distances are in units of 100 km (degrees for
/// LATLON).
struct DomainVal {
  /// Projection codes.
  enum Projection {
    PSTEREO = 1,
    LATLON = 2,
    MERC = 3,
    LAMB = 4,
    ORTHO = 5,
    GNOM = 6,
    MOLL = 7,
    LAMBAZ = 8,
    ALBERS = 9,
    SAT = 10,
    RADIAL = 11,
    PIXEL = 20,
    XY = 21,
    XZ = 22,
    XP = 23,
    XLOGP = 24,
    POLAR = 25,
    CAT = 26,
    SKEWT = 40,
    STUVE = 41,
    EMA = 42,
    TEPH = 43,
    RTEPH = 44,
    ZOOM = 50,
    SIZE = 51
  };

  int proj = Const::MISS;
  float plat = Const::MISS;  // projection latitude: pole side, tangent point; clat when missing
  float plon = Const::MISS;  // projection longitude: central meridian; clon when missing
  // True latitudes (conics: two; PSTEREO, RADIAL: one) or satellite radius and scan mode; [2] the earth's radius.
  float param[5] = {Const::MISS, Const::MISS, Const::MISS, Const::MISS, Const::MISS};
  float clat = Const::MISS;  // centre of the map
  float clon = Const::MISS;
  float dx = Const::MISS;  // grid spacing
  float dy = Const::MISS;
  int nx = Const::MISS;  // grid points
  int ny = Const::MISS;
  bool ellipse = false;  // ellipsoidal earth, where the projection knows one

  int init() { return *this = DomainVal(), 1; }
  bool isSet() const { return !Const::isMissing(proj); }
  /// The code of a projection name, matched by its beginning; Const::MISS for "miss", -1 for an unknown one.
  static int getProj(const char* name);
  /// The written name of a code; empty when it has none.
  static const char* getProjName(int code);
  /// "pstereo:40.000000:-100.000000:::,40.000000,...", accepted by Domain::set.
  int toString(String& text) const;
  /// The text of toString with a newline on standard output.
  int print() const;
  /// Whether all fields are equal.
  static bool compare(const DomainVal& a, const DomainVal& b);
  /// Whether the projections (code, latitudes, longitude, parameters, earth) are equal, so that plot points of one are
  /// plot points of the other.
  static bool compareProj(const DomainVal& a, const DomainVal& b);
};

}  // namespace KYV
#endif
