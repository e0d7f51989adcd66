// What lies over a product's image: site, range rings, tabular pages, storms, labels of variables.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "DataPlane.h"
#include "KYV/Kyv.h"
#include "KYV/NidsText.h"
#include "KYV/NidsVector.h"
#include "KYV/NidsWind.h"
#include "KYV/Plot.h"
#include "KYV/RadMap.h"
#include "KYV/StormAttr.h"
#include "KYV/StormTable.h"
#include "KYV/WindPlot.h"

namespace KYV {

namespace {

constexpr int SITE_MARK = 2;
constexpr float SITE_SIZE = 0.03f;  // of the plot's height
constexpr int PAGE_SIDE = 512;      // pixels of the shorter side of a tabular page
constexpr float PAGE_STEP = 50.0f;  // lines between pages
constexpr float PAGE_TEXT = 7.0f;   // height of a character, lines
constexpr float PAGE_EXPANSION = 0.85f;
constexpr float PAGE_BARB = 20.0f;

// A product's text as a terminal may show it: control characters could be commands to it.
std::string toPrintable(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c > '~'; }, '?');
  return text;
}

// The plane of tabular pages as large as the map: column 0 at the left, line 0 at the top.
Domain pageDomain(float aspect) {
  DomainVal val;
  val.proj = DomainVal::PIXEL;
  val.dx = val.dy = 1.0f;
  val.nx = val.ny = PAGE_SIDE;
  if (aspect > 0.0f && aspect <= 1.0f) val.ny = static_cast<int>(PAGE_SIDE / aspect);
  if (aspect > 1.0f) val.nx = static_cast<int>(aspect * PAGE_SIDE);
  val.clat = static_cast<float>(val.nx - 1) / 2.0f;
  val.clon = static_cast<float>(val.ny - 1) / 2.0f;
  return Domain(val);
}

}  // namespace

PlotAttr RadMap::getDataAttr(Plot& surface) const {
  const char* standard = surface.getInverse() ? "black" : "white";
  return PlotAttr(color_data.valid() ? color_data.get() : Kyv::resrc.get("color_data", standard));
}

int RadMap::drawData(Plot& surface) {
  const EarthPoint radar(info.lat, info.lon);
  if (!surface.isDrawing(Plot::DRAW_DATA)) data = false;
  const PlotAttr attr = getDataAttr(surface);
  surface.setLine();
  surface.setLine(attr);
  drawRings(surface, radar, attr);
  if (data) drawShapes(surface);
  drawPages(surface, attr);
  surface.setTextCharWidth(0.0f);
  drawVariableLabels(surface);
  return 1;
}

void RadMap::drawRings(Plot& surface, const EarthPoint& radar, const PlotAttr& attr) {
  if (site) {
    const float size = SITE_SIZE * surface.getVert();
    PlotAttr mark = attr;
    mark.height = size;
    surface.setMarkType(SITE_MARK);
    surface.setMark(mark);
    surface.drawMark(radar);
  }
  if (dist[0] == 0.0f) return;
  const DataPlane plane(nids->getDomainVal(), radar, surface, measured);
  for (const float km : dist) {
    if (km == 0.0f || Const::isMissing(km)) continue;
    if (plane.geodesic) {
      surface.drawLine(plane.ring(km));
    } else {
      surface.drawCircle(radar, km);
    }
  }
}

// The pages of the graphic block: drawn when the table is wanted, and searched for storms.
void RadMap::drawPages(Plot& surface, const PlotAttr& attr) {
  if (!nids->findGraphic()) return;
  Domain saved;
  const int panel = surface.getPanel();
  surface.getPanelDomain(panel, saved);
  const Domain page = pageDomain(saved.getAspect());
  surface.setPanelDomain(panel, page);

  const PlotAttr lineAttr(Kyv::resrc.get("color_grid", "red"));
  PlotAttr textAttr = attr;
  textAttr.height = PAGE_TEXT;
  const bool legible = attr.validColor();
  std::vector<StormAttr> storms;
  StormAttr storm;
  StormTable columns;
  const auto at = [&page](float i, float j) {
    Point p;
    page.tran(EarthPoint(i, j), p);
    return p;
  };

  float offset = 0.0f;
  for (; nids->graphicLayer(); offset += PAGE_STEP) {
    columns.clear();
    while (nids->nextPacket() > 0) {
      if (nids->isPacketVector()) {
        surface.setLine();
        surface.setLine(lineAttr);
        NidsVector v;
        while (nids->readVector(v) > 0) {
          if (table) surface.drawLine(at(v.x1, v.y1 + offset), at(v.x2, v.y2 + offset));
        }
      } else if (nids->isPacketWindbarb()) {
        WindPlot winds(surface);
        NidsWind w;
        while (nids->readWind(w) > 0) {
          winds.setWind(w.dir, w.spd);
          if (table) winds.drawBarb(at(w.x, w.y + offset), PAGE_BARB, 0.0f);
        }
      } else if (nids->isPacketText()) {
        NidsText text;
        if (nids->readText(text) <= 0) continue;
        if (table && legible) {
          surface.setLine(attr);
          surface.setFill(attr);
          surface.setText();
          surface.setText(textAttr);
          surface.setTextCharWidth(1.0f);
          surface.setTextAlign(1, 2);
          surface.setTextExpansion(PAGE_EXPANSION);
          surface.drawText(at(text.x, text.y + offset), text.data);
        }
        Kyv::outMessage(6, "%s\n", toPrintable(text.data).c_str());
        if (storm.decode(text.data) && !Const::isMissing(storm.ang)) storms.push_back(storm);
        columns.add(text.data);
      }
    }
    const std::vector<StormAttr> more = columns.getStorms();
    storms.insert(storms.end(), more.begin(), more.end());
  }
  surface.setPanelDomain(panel, saved);
  surface.setTextCharWidth(0.0f);
  if (!data) return;
  for (const StormAttr& cell : storms) drawStorm(surface, cell);
}

// Variables of layer 0 label the plot.
void RadMap::drawVariableLabels(Plot& surface) {
  for (int k = 0; k < vars.getNum(); ++k) {
    if (vars.getLayer(k) != 0) continue;
    const VarSpec& spec = vars.getVarSpec(k);
    const char* units = StrLib::valid(vars.getUnits(k)) ? vars.getUnits(k) : getUnits(vars.getName(k));
    String label;
    spec.toInfoLabel(units, label);
    surface.addLabel("ul", label.get());
    spec.toDateLabel(info.date, tz, "", label);
    surface.addLabel("ur", label.get());
    surface.done();
  }
}

}  // namespace KYV
