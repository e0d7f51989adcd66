#ifndef KYV_SRC_DATAPLANE_H
#define KYV_SRC_DATAPLANE_H

#include <cmath>

#include "KYV/Domain.h"
#include "KYV/EarthPoints.h"
#include "KYV/Geodesic.h"
#include "KYV/Plot.h"

namespace KYV {

/// The plane of a product's data beneath the one of the plot. Where the two have different projections, points are
/// carried over through their latitude and longitude.
struct DataPlane {
  /// @param place    of the radar
  /// @param ellipsoid  azimuths and ranges are those of geodesics, not of steps on the data's plane
  DataPlane(const DomainVal& val, const EarthPoint& place, Plot& surface, bool ellipsoid)
      : dom(val),
        radar(place),
        plot(surface),
        sameProjection(DomainVal::compareProj(surface.getDomain(), dom)),
        geodesic(ellipsoid && val.proj != DomainVal::PIXEL) {
    constexpr float QUARTER_KM = 0.25f;
    dom.tran(radar, centre);
    if (dom.proj == DomainVal::PIXEL) return;
    factor = dom.getMapFactor(radar);
    quarter = QUARTER_KM / 100.0f * factor;
  }

  /// A point of the data's plane on the plot's; missing where the plot's map cannot show it.
  Point toPlot(const Point& p) const {
    if (sameProjection) return p;
    EarthPoint e;
    Point q;
    if (!dom.tran(p, e) || !plot.getDomain().tran(e, q)) q.setMissing();
    return q;
  }
  /// The I and J of packets other than images: quarter kilometres east and north of the radar, display pixels in a wind
  /// profile.
  Point fromIJ(float i, float j) const {
    Point p;
    if (dom.proj == DomainVal::PIXEL) {
      dom.tran(EarthPoint(i, j), p);
      return toPlot(p);
    }
    if (geodesic) {
      constexpr float QUARTERS = 4.0f;
      EarthPoint e;
      Point q;
      q.setMissing();
      if (fromPolar(static_cast<float>(std::atan2(i, j) / Const::DRC), std::hypot(i, j) / QUARTERS, e)) {
        if (!plot.getDomain().tran(e, q)) q.setMissing();
      }
      return q;
    }
    return toPlot(Point(centre.x + i * quarter, centre.y + j * quarter));
  }
  /// The place at an azimuth (degrees) and a range (km) of the radar, stepped on the data's plane as bins are; false,
  /// and missing, where there is none.
  bool fromPolar(float azimuth, float km, EarthPoint& e) const {
    e.setMissing();
    if (Const::isMissing(azimuth) || Const::isMissing(km)) return false;
    if (geodesic) {
      const Geodesic line(static_cast<double>(radar.lat), static_cast<double>(radar.lon), static_cast<double>(azimuth));
      const Geodesic::Place at = line.at(static_cast<double>(km) * 1000.0);
      e = EarthPoint(static_cast<float>(at.lat), static_cast<float>(at.lon));
      return true;
    }
    const double angle = dom.adjustDir(azimuth, centre) * Const::DRC, step = km / 100.0 * factor;
    const Point p(static_cast<float>(centre.x + step * std::sin(angle)),
                  static_cast<float>(centre.y + step * std::cos(angle)));
    return dom.tran(p, e) != 0;
  }
  /// All places so many kilometres from the radar, the first one once more at the end.
  EarthPoints ring(float km) const {
    constexpr int STEPS = 180;
    EarthPoints points;
    for (int i = 0; i <= STEPS; ++i) {
      EarthPoint e;
      if (fromPolar(360.0f * static_cast<float>(i % STEPS) / STEPS, km, e)) points.add(e);
    }
    return points;
  }
  /// Where the plot's map shows a place; missing where it cannot.
  Point seen(const EarthPoint& e) const {
    Point p;
    plot.getDomain().tran(e, p);
    plot.getDomain().adjust(p);
    return p;
  }
  /// The I and J of a symbol, which stands where the map shows its place.
  Point symbolAt(float i, float j) const {
    Point p = fromIJ(i, j);
    plot.getDomain().adjust(p);
    return p;
  }
  /// A column and line of a display page over the whole map, from its upper left corner.
  Point fromPage(float column, float line) const {
    const Rect window = plot.getGraph().getWindow();
    return Point(window.xmin + displayLines(column), window.ymax - displayLines(line));
  }
  /// Lines of a display page in units of the plot's domain.
  float displayLines(float lines) const {
    constexpr float PAGE_LINES = 512.0f;
    return plot.getProj() == DomainVal::PIXEL ? lines : lines / PAGE_LINES * plot.getVert();
  }

  Domain dom;
  EarthPoint radar;
  Plot& plot;
  bool sameProjection;
  bool geodesic;
  Point centre;          // of the radar
  float factor = 0.0f;   // units of the data's plane for 100 km
  float quarter = 0.0f;  // and for a quarter of a kilometre
};

}  // namespace KYV
#endif
