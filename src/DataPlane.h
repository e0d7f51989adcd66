#ifndef KYV_SRC_DATAPLANE_H
#define KYV_SRC_DATAPLANE_H

#include <cmath>

#include "KYV/Domain.h"
#include "KYV/Plot.h"

namespace KYV {

/// The plane of a product's data beneath the one of the plot. Where the two have different projections, points are
/// carried over through their latitude and longitude.
struct DataPlane {
  /// @param place  of the radar
  DataPlane(const DomainVal& val, const EarthPoint& place, Plot& surface)
      : dom(val), radar(place), plot(surface), sameProjection(DomainVal::compareProj(surface.getDomain(), dom)) {
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
    return toPlot(Point(centre.x + i * quarter, centre.y + j * quarter));
  }
  /// The place at an azimuth (degrees) and a range (km) of the radar, stepped on the data's plane as bins are; false,
  /// and missing, where there is none.
  bool fromPolar(float azimuth, float km, EarthPoint& e) const {
    e.setMissing();
    if (Const::isMissing(azimuth) || Const::isMissing(km)) return false;
    const double angle = dom.adjustDir(azimuth, centre) * Const::DRC, step = km / 100.0 * factor;
    const Point p(static_cast<float>(centre.x + step * std::sin(angle)),
                  static_cast<float>(centre.y + step * std::cos(angle)));
    return dom.tran(p, e) != 0;
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
  Point centre;          // of the radar
  float factor = 0.0f;   // units of the data's plane for 100 km
  float quarter = 0.0f;  // and for a quarter of a kilometre
};

}  // namespace KYV
#endif
