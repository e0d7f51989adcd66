#ifndef KYV_DOMAIN_H
#define KYV_DOMAIN_H

#include <vector>

#include "KYV/DomainVal.h"
#include "KYV/EarthPoint.h"
#include "KYV/GridPoint.h"
#include "KYV/Point.h"
#include "KYV/Rect.h"

namespace KYV {

class EarthPoints;
class Points;
class String;

/// A map: projects places of the earth onto a plane and back, and knows which part of the plane it covers. Geometry
/// alone: it reads no option and no file. The fields of DomainVal may be read at any time; whoever changes one calls
/// setParam() afterwards, which renews everything derived from them.
class Domain : public DomainVal {
 public:
  static constexpr float OFFSET_LL = 360.0f;        // one revolution, degrees
  static constexpr float OFFSET_MERC = 400.31558f;  // one revolution, 100 km: 2 pi times the mean earth radius

  Domain() = default;
  explicit Domain(const DomainVal& val) { set(val); }
  explicit Domain(const char* text) { set(text); }

  int init() { return *this = Domain(), 1; }
  /// A direct domain text, "ps:90:-100,40,-100,640,480,0.05,0.05"; 0 (and unchanged) for any other.
  int set(const char* text);
  int set(const DomainVal& val);
  /// An XY domain of nx by ny unit cells centred on 0,0.
  int set(int nx, int ny);
  /// In the present projection, the domain between two corners with this grid.
  int set(const EarthPoint& corner1, const EarthPoint& corner2, int nx, int ny);
  /// Renews all derived values, the view and the limits.
  int setParam();
  DomainVal get() const { return *this; }

  // Transformations: 1; 0 when the point cannot be projected, the result is then missing. A missing place gives a
  // missing point and 1. For codes 1 to 10 latitudes lie within 90 and longitudes within 3600 degrees, else 0.
  int tran(const EarthPoint& e, Point& p) const;
  int tran(const Point& p, EarthPoint& e) const;
  int tran(const GridPoint& g, Point& p) const;
  int tran(const Point& p, GridPoint& g) const;
  int tran(const EarthPoint& e, GridPoint& g) const;
  int tran(const GridPoint& g, EarthPoint& e) const;
  int tran(const EarthPoints& es, Points& ps) const;
  int tran(const EarthPoints& es, GridPoints& gs) const;
  // Grid point i, row by row from the northern row on; 0 when there is none.
  int tran(int i, EarthPoint& e) const;
  int tran(int i, GridPoint& g) const;
  int tran(int i, Point& p) const;
  int tranCenter(Point& p) const;

  // Extent.
  int setLimits();
  int getLimits(Rect& r) const { return r = limits, 1; }
  const Rect& getLimits() const { return limits; }
  /// The part of the page used, fractions.
  int setView(const Rect& r) { return view = r, 1; }
  const Rect& getView() const { return view; }
  /// Width over height of the limits, 1 when it has none.
  float getAspect() const;
  /// Inside the limits, their edges included; always for a domain without projection.
  bool within(const Point& p) const;
  bool within(const EarthPoint& e) const;
  /// The limits widened by n grid cells.
  bool withinExt(const Point& p, int n) const;
  bool withinExt(const EarthPoint& e, int n) const;
  /// Keypad position: 1 above left, 2 above, 3 above right, 4 left, 5 inside, 6 right, 7 below left, 8 below, 9 below
  /// right; 0 for a domain without projection.
  int where(const Point& p) const;
  int where(const EarthPoint& e) const;
  /// Vertical extent, plot units.
  float getVert() const { return limits.height(); }

  // Map operations.
  /// Centre to p, spacing divided by factor; 0 for a factor that is not positive or a p without place.
  int zoom(const Point& p, float factor);
  int pan(const Point& p);
  /// The same extent on another grid, the narrower side matched; nx and ny at least 1.
  int scaleSize(int nx, int ny);
  /// Grid spacing times factor, with as many points as cover the extent.
  int scaleGrid(float factor);
  /// A plot point of one domain as a plot point of another.
  static int translate(const Domain& from, const Point& p, const Domain& to, Point& q);
  /// Moves a point by whole revolutions to where the limits show it.
  int adjust(Point& p) const;
  int adjust(Points& ps) const;
  /// Turns a direction (degrees clockwise) relative to north at a place into one relative to the plot's y axis.
  float adjustDir(float dir, const EarthPoint& e) const;
  float adjustDir(float dir, const Point& p) const;
  float unadjustDir(float dir, const EarthPoint& e) const;
  float unadjustDir(float dir, const Point& p) const;
  /// The place `dist` km from e along the great circle that leaves in direction `dir` (degrees from north); on a plane
  /// that is no map of the earth a straight step. 0 where e or the step is missing or longer than once around the
  /// earth.
  int offsetLatLon(const EarthPoint& e, float dir, float dist, EarthPoint& to) const;
  /// The same from and to plot points.
  int offset(const Point& p, float dir, float dist, Point& to) const;
  /// Initial great-circle direction from a to b, degrees from north.
  static float direct(const EarthPoint& a, const EarthPoint& b);
  /// Plot units for 100 km at a place, the scale of the map; where it depends on the direction, the geometric mean of
  /// the greatest and the least scale (the root of how much areas grow). Const::MISS where nothing can be projected.
  float getMapFactor(const EarthPoint& e) const;
  /// Great-circle distance, units of 100 km.
  float calcEarthDist(const EarthPoint& a, const EarthPoint& b) const;
  /// Cuts a line with pen lifts where it crosses the map's seam (the meridian opposite to plon).
  /// @return revolutions (-1, 0, 1) by which offsetLine() brings the part of the line that the limits show beyond the
  /// seam into view
  int wrapLine(Points& points) const;
  int offsetLine(Points& points, int n) const;
  /// Cuts a filled outline at the seam; one around a pole is closed along it.
  /// @param pieces  receives its parts on the map, and those again that the limits show beyond the seam
  /// @return false when the outline can be filled as it is: it does not reach the seam, nor do the limits
  bool wrapFill(const Points& outline, std::vector<Points>& pieces) const;

  using DomainVal::print;
  /// "(%f,%f)-(%f,%f)\n" on standard output.
  int printLimits() const { return limits.print(); }

 private:
  struct Seam;              // where the map is cut open
  struct Formula;           // the projections' formulas, one table row each, seen by the sources alone
  friend struct DomainVal;  // whose names stand in the same rows

  double earth_rad = Const::EARTH_MEAN;
  double sat_rad = 421.64;  // geostationary orbit, 100 km
  double sat_rad2 = 177780.2896;
  double sat_rad4 = 31605831370.0;
  double sat2_earth2 = 173720.943;
  double earth_sat_ratio = Const::EARTH_MEAN / 421.64;
  double earth_ratio = Const::EARTH_MIN / Const::EARTH_MAJ;
  double earth_ratio2 = earth_ratio * earth_ratio;
  float tlat1 = 30.0f;
  float tlat2 = 60.0f;
  float cx = 0.0f;  // PSTEREO position of the centre of a RADIAL domain
  float cy = 0.0f;
  double xfactor = Const::MISS;  // constants of the projection, set with the parameters
  double mult = Const::MISS;
  double yfactor = Const::MISS;
  double scale = Const::MISS;
  Rect limits;
  Rect view{0.0f, 0.0f, 1.0f, 1.0f};
};

}  // namespace KYV
#endif
