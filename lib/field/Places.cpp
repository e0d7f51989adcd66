#include "KYV/Places.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "KYV/EarthPoint.h"

namespace KYV {

namespace {

// Node k of n on -1 to 1, Chebyshev's: a polynomial through them nowhere swings out.
double nodeAt(int k, int n) { return -std::cos(std::numbers::pi * (2.0 * k + 1.0) / (2.0 * n)); }

// The weights of n nodes at t in -1 to 1.
template <class Weights>
void setWeights(double t, Weights& weights) {
  const int n = static_cast<int>(weights.size());
  for (int k = 0; k < n; ++k) {
    double w = 1.0;
    for (int i = 0; i < n; ++i) {
      if (i != k) w *= (t - nodeAt(i, n)) / (nodeAt(k, n) - nodeAt(i, n));
    }
    weights[static_cast<std::size_t>(k)] = static_cast<typename Weights::value_type>(w);
  }
}

Point project(const Domain& map, const Geodesic::Place& at) {
  Point p;
  const EarthPoint e(static_cast<float>(at.lat), static_cast<float>(at.lon));
  if (!map.tran(e, p)) p.setMissing();
  return p;
}

// Whether points of a line follow each other as those of a smooth map do: no step turns back or is out of proportion to
// those of the nodes.
template <class Get>
bool isSmooth(int n, Get get) {
  constexpr float MOST = 6.0f;  // times the step between the middle nodes
  const Point a = get(n / 2 - 1), b = get(n / 2);
  if (a.isMissing() || b.isMissing()) return false;
  const float dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
  for (int k = 1; k < n; ++k) {
    const Point p = get(k - 1), q = get(k);
    if (p.isMissing() || q.isMissing()) return false;
    const float ex = q.x - p.x, ey = q.y - p.y;
    if (ex * ex + ey * ey > MOST * square || dx * ex + dy * ey < 0.0f) return false;
  }
  return true;
}

}  // namespace

RadialPlaces::RadialPlaces(const RadarSite& site, double near, double bin, int bins, const Domain& map)
    : radar(site), beam(site.elevation, site.antenna), first(near), step(bin), plane(map) {
  const double length = bin * bins;
  for (int k = 0; k < NODES; ++k) {
    const double slant = near + length * (1.0 + nodeAt(k, NODES)) / 2.0;
    nodes[k] = site.elevated ? beam.groundRange(slant) : slant;
  }
  for (int i = 0; i <= bins; ++i) {
    std::array<float, NODES> w{};
    setWeights(bins > 0 ? 2.0 * i / bins - 1.0 : 0.0, w);
    for (std::size_t k = 0; k < NODES; ++k) weights[k].push_back(w[k]);
  }
}

double RadialPlaces::ground(int edge) const {
  const double slant = first + step * edge;
  return radar.elevated ? beam.groundRange(slant) : slant;
}

void RadialPlaces::along(double azimuth, std::size_t from, std::span<Point> corners) {
  const Geodesic line(radar.lat, radar.lon, azimuth);
  std::array<Point, NODES> at;
  for (std::size_t k = 0; k < NODES; ++k) at[k] = project(plane, line.at(nodes[k]));
  const std::size_t all = weights[0].size();
  const std::size_t n = std::min(corners.size(), all - std::min(from, all));
  if (!isSmooth(NODES, [&at](int k) { return at[static_cast<std::size_t>(k)]; })) {
    for (std::size_t i = 0; i < n; ++i) corners[i] = project(plane, line.at(ground(static_cast<int>(from + i))));
    return;
  }
  // Node by node, so that the inner loops are plain sums over arrays.
  xs.assign(n, 0.0f);
  ys.assign(n, 0.0f);
  for (std::size_t k = 0; k < NODES; ++k) {
    const float* w = weights[k].data() + from;
    const float px = at[k].x, py = at[k].y;
    for (std::size_t i = 0; i < n; ++i) xs[i] += w[i] * px;
    for (std::size_t i = 0; i < n; ++i) ys[i] += w[i] * py;
  }
  for (std::size_t i = 0; i < n; ++i) corners[i].set(xs[i], ys[i]);
}

GridPlaces::GridPlaces(const RadarSite& site, double cell, int columns, int rows, const Domain& map)
    : radar(site), size(cell), nx(columns), ny(rows), plane(map) {
  const auto weigh = [](int n, auto& table) {
    table.resize(static_cast<std::size_t>(n) + 1);
    for (int i = 0; i <= n; ++i) setWeights(2.0 * i / n - 1.0, table[static_cast<std::size_t>(i)]);
  };
  weigh(nx, across);
  weigh(ny, down);
  for (int j = 0; j < NODES; ++j) {
    for (int i = 0; i < NODES; ++i) {
      nodes[j][i] = place(0.5 * nx * cell * nodeAt(i, NODES), -0.5 * ny * cell * nodeAt(j, NODES));
    }
    smooth = smooth && isSmooth(NODES, [this, j](int i) { return nodes[j][i]; });
  }
  for (int i = 0; i < NODES; ++i) {
    smooth = smooth && isSmooth(NODES, [this, i](int j) { return nodes[j][i]; });
  }
}

// Metres east and north of the radar.
Point GridPlaces::place(double x, double y) const {
  const double azimuth = std::atan2(x, y) * 180.0 / std::numbers::pi;
  return project(plane, Geodesic(radar.lat, radar.lon, azimuth).at(std::hypot(x, y)));
}

void GridPlaces::row(int j, std::span<Point> corners) const {
  std::array<double, NODES> x{}, y{};
  const auto& w = down[static_cast<std::size_t>(j)];
  for (std::size_t i = 0; i < NODES; ++i) {
    for (std::size_t k = 0; k < NODES; ++k) {
      x[i] += w[k] * static_cast<double>(nodes[k][i].x);
      y[i] += w[k] * static_cast<double>(nodes[k][i].y);
    }
  }
  for (std::size_t c = 0; c < std::min(corners.size(), across.size()); ++c) {
    if (!smooth) {
      corners[c] = place((static_cast<double>(c) - 0.5 * nx) * size, (0.5 * ny - j) * size);
      continue;
    }
    double px = 0.0, py = 0.0;
    for (std::size_t i = 0; i < NODES; ++i) {
      px += across[c][i] * x[i];
      py += across[c][i] * y[i];
    }
    corners[c].set(static_cast<float>(px), static_cast<float>(py));
  }
}

namespace {

// Of the national grid.
constexpr double DEGREE = std::numbers::pi / 180.0;
constexpr double POLE_X = 401.0, POLE_Y = 1601.0, MERIDIAN = -105.0;
const double EQUATOR = 6371.2 * (1.0 + std::sin(60.0 * DEGREE)) / 4.7625;  // cells from the pole

}  // namespace

NationalPlaces::NationalPlaces(const RadarSite& site, int cells, const Domain& map) : plane(map) {
  const double r = EQUATOR * std::tan((90.0 - site.lat) / 2.0 * DEGREE), turn = (site.lon - MERIDIAN) * DEGREE;
  west = std::floor(POLE_X + r * std::sin(turn)) - cells / 2;
  north = std::floor(POLE_Y - r * std::cos(turn)) + 1.0 + cells / 2;
}

void NationalPlaces::row(int j, std::span<Point> corners) const {
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const double x = west + static_cast<double>(i) - POLE_X, y = POLE_Y - (north - j);
    const double lat = 90.0 - 2.0 * std::atan(std::hypot(x, y) / EQUATOR) / DEGREE;
    corners[i] = project(plane, {lat, MERIDIAN + std::atan2(x, y) / DEGREE});
  }
}

}  // namespace KYV
