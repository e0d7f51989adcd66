#ifndef KYV_WINDPLOT_H
#define KYV_WINDPLOT_H

namespace KYV {

class Plot;
struct Point;

/// Draws winds in the usual meteorological form, with the plot's line and fill attributes.
class WindPlot {
 public:
  explicit WindPlot(Plot& surface) : plot(surface) {}

  /// @param direction  where the wind comes from, degrees clockwise from the plot's y axis
  /// @param speed      knots
  int setWind(float direction, float speed);
  /// The side of the barbs: clockwise of the staff as seen from the station outward in the northern hemisphere.
  int setSouthern(bool on) { return southern = on, 1; }
  /// A barb: half barb 5, full barb 10, pennant 50 knots, rounded to the nearest 5; a circle below 2.5 knots.
  /// @param size    length of the staff, plot units of the domain
  /// @param offset  free distance between the station and the staff
  int drawBarb(const Point& p, float size, float offset);

 private:
  Plot& plot;
  float dir = 0.0f;
  float spd = 0.0f;
  bool southern = false;
};

}  // namespace KYV
#endif
