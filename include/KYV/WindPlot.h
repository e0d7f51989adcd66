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
  /// @param speed      knots for barbs, km/h for tracks
  /// @param mapFactor  plot units for 100 km (Domain::getMapFactor), used by tracks
  int setWind(float direction, float speed, float mapFactor = 1.0f);
  /// The side of the barbs: clockwise of the staff as seen from the station outward in the northern hemisphere.
  int setSouthern(bool on) { return southern = on, 1; }
  /// A barb: half barb 5, full barb 10, pennant 50 knots, rounded to the nearest 5; a circle below 2.5 knots.
  /// @param size    length of the staff, plot units of the domain
  /// @param offset  free distance between the station and the staff
  int drawBarb(const Point& p, float size, float offset);
  /// The way ahead of a storm that comes from the wind's direction: a line from p as long as the storm moves in `ticks`
  /// quarters of an hour, a tick at the end of each quarter and an arrow head at the last. A line of more than
  /// MAX_TRACK sizes ends with the last quarter that fits; when not even the first does, it is cut there.
  /// @param size   plot units of the domain; heads and ticks are fractions of it
  /// @param ticks  1 to 24 quarters of an hour, 4 for an hour
  /// @param arrow  the head: 0 open, 1 filled
  /// @return 1; 0 when nothing was drawn: a wind that is missing or calm, no map factor
  int drawTrack(const Point& p, float size, int ticks, int arrow);
  static constexpr float MAX_TRACK = 5.0f;

 private:
  Plot& plot;
  float dir = 0.0f;
  float spd = 0.0f;
  float factor = 1.0f;
  bool southern = false;
};

}  // namespace KYV
#endif
