#ifndef KYV_PLACES_H
#define KYV_PLACES_H

#include <array>
#include <span>
#include <vector>

#include "KYV/Domain.h"
#include "KYV/Geodesic.h"
#include "KYV/Point.h"

namespace KYV {

/// Where a radar stands and how its beam goes.
struct RadarSite {
  double lat = 0.0;  // degrees
  double lon = 0.0;
  double antenna = 0.0;    // metres above sea level
  double elevation = 0.0;  // degrees
  bool elevated = false;   // ranges are those along the beam of that elevation, else along the ground
};

/// Where the edges between range bins lie on a map: along the geodesic at the azimuth of an edge, at the ground range
/// of the beam. Nodes of every radial are computed, a polynomial between them gives the edges: within 5 m where the map
/// is smooth; edge by edge where it has a seam or an end.
class RadialPlaces {
 public:
  /// @param near, bin  metres from the radar to the first edge, and between edges
  /// @param bins       edges but one
  RadialPlaces(const RadarSite& site, double near, double bin, int bins, const Domain& map);
  /// Edges from near to far on the map's plane, missing where the map cannot show them.
  /// @param from     the first edge that is wanted
  /// @param corners  as many as are wanted
  void along(double azimuth, std::size_t from, std::span<Point> corners);

 private:
  static constexpr int NODES = 8;
  double ground(int edge) const;

  RadarSite radar;
  Beam beam;
  double first, step;
  const Domain& plane;
  double nodes[NODES];                // ground ranges, metres
  std::vector<float> weights[NODES];  // of each node, for all edges
  std::vector<float> xs, ys;          // reused
};

/// The corners of a grid's cells on a map, row by row from the north.
class RowPlaces {
 public:
  virtual ~RowPlaces() = default;
  /// The corners above row j from west to east; j may be the number of rows.
  /// @param corners  columns + 1
  virtual void row(int j, std::span<Point> corners) const = 0;
};

/// Cells whose middle is at the radar, on a plane that keeps distances and directions from it.
class GridPlaces : public RowPlaces {
 public:
  /// @param cell  metres
  GridPlaces(const RadarSite& site, double cell, int columns, int rows, const Domain& map);
  void row(int j, std::span<Point> corners) const override;

 private:
  static constexpr int NODES = 10;
  Point place(double x, double y) const;

  RadarSite radar;
  double size;
  int nx, ny;
  const Domain& plane;
  bool smooth = true;  // the map shows all nodes, without a seam between them
  Point nodes[NODES][NODES];
  std::vector<std::array<double, NODES>> across, down;  // weights for columns and rows
};

/// The cells of the national precipitation grid around a radar: a polar stereographic plane, true at 60 degrees north
/// and upright at 105 degrees west, of a sphere of 6371.2 km, with cells of 4.7625 km and the pole at (401, 1601).
class NationalPlaces : public RowPlaces {
 public:
  /// @param cells  a side; the radar is in the middle one
  NationalPlaces(const RadarSite& site, int cells, const Domain& map);
  void row(int j, std::span<Point> corners) const override;

 private:
  double west, north;
  const Domain& plane;
};

}  // namespace KYV
#endif
