#ifndef KYV_SRC_DATAPLANE_H
#define KYV_SRC_DATAPLANE_H

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
    if (dom.proj != DomainVal::PIXEL) quarter = QUARTER_KM / 100.0f * dom.getMapFactor(radar);
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
  float quarter = 0.0f;  // of a kilometre, units of the data's plane
};

}  // namespace KYV
#endif
