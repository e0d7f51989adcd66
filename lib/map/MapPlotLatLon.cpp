// Parallels and meridians with their labels.
#include <cmath>
#include <cstdio>

#include "KYV/Domain.h"
#include "KYV/Kyv.h"
#include "KYV/MapPlot.h"
#include "KYV/Plot.h"
#include "MapView.h"

namespace KYV {

namespace {

constexpr float TEXT_HEIGHT = 0.015f;  // of the plot's height
constexpr float MARGIN = 0.01f;        // of the window's width
constexpr int TRACE = 1;               // degrees between the points of a parallel
constexpr float SEGMENT = 2.5f;        // degrees of latitude of a piece of a meridian
constexpr float LARGE = 90.0f;         // heights of maps that are labelled in their middle as well, plot units
constexpr float LARGE_MERC = 140.0f;

// "EQ", "30S", "30N".
void nameLatitude(float lat, char (&text)[20]) {
  if (lat == 0.0f) {
    StrLib::copy(text, "EQ");
  } else {
    StrLib::printf(text, lat < 0.0f ? "%.0fS" : "%.0fN", static_cast<double>(std::fabs(lat)));
  }
}

// "PM", "DL", "100W", "20E".
void nameLongitude(float lon, char (&text)[20]) {
  if (lon == 0.0f) {
    StrLib::copy(text, "PM");
  } else if (std::fabs(lon) == 180.0f) {
    StrLib::copy(text, "DL");
  } else {
    StrLib::printf(text, lon < 0.0f ? "%.0fW" : "%.0fE", static_cast<double>(std::fabs(lon)));
  }
}

// Whether the piece from a to b of a line crosses x = at; then the y of the crossing.
bool crossesX(const Point& a, const Point& b, float at, float& y) {
  if ((a.x < at) == (b.x < at)) return false;
  y = a.y + (b.y - a.y) * (at - a.x) / (b.x - a.x);
  return std::isfinite(y);
}

}  // namespace

void MapPlot::useText(Plot& plot, const PlotAttr& attr) {
  plot.setLine();
  plot.setLine(attr);
  plot.setText();
  plot.setText(attr);
  plot.setDropShadow(0);
  plot.setTextHeight(Const::isMissing(attr.height) ? TEXT_HEIGHT * plot.getVert() : attr.height);
}

int MapPlot::drawLatLon(Plot& plot, float lat, float lon) {
  if (!isMapProjection(plot.getProj()) || Const::isMissing(lat) || Const::isMissing(lon)) return 0;
  if (!(lat >= MIN_STEP && lon >= MIN_STEP)) {
    Kyv::outWarning("Map: latitude-longitude lines stand at least %.1f degree apart\n", static_cast<double>(MIN_STEP));
    return 0;
  }
  plot.setTextAlign(1, 3);
  // Counted, so that the spacing's rounding does not add up.
  for (int i = 1; static_cast<float>(i) * lat < 180.0f; ++i) drawParallel(plot, -90.0f + static_cast<float>(i) * lat);
  const bool both = plot.getProj() == DomainVal::LATLON || plot.getProj() == DomainVal::MERC;
  for (int i = 0; static_cast<float>(i) * lon <= 360.0f; ++i) {
    const float at = -180.0f + static_cast<float>(i) * lon;
    if (at < 180.0f || both) drawMeridian(plot, at, 90.0f - lat);
  }
  return 1;
}

void MapPlot::drawParallel(Plot& plot, float lat) {
  const Domain& domain = plot.getDomain();
  const Rect window = plot.getGraph().getWindow();
  const bool middle = domain.proj == DomainVal::SAT || domain.proj == DomainVal::MOLL;
  const float edge = middle ? 0.0f : window.xmin + MARGIN * window.width();
  char label[20];
  nameLatitude(lat, label);
  const auto finish = [&] {
    if (line.getNum() > 1) plot.drawLine(line);
    line.clear();
  };

  line.clear();
  bool labelled = false;
  Point last;
  last.setMissing();
  for (int lon = -180; lon <= 180; lon += TRACE) {
    Point p;
    if (!domain.tran(EarthPoint(lat, static_cast<float>(lon)), p)) {
      finish();
      last.setMissing();
      continue;
    }
    line.add(p);
    float y = 0.0f;
    // Far jumps are the seam of the map, no crossing.
    if (!labelled && !last.isMissing() && std::fabs(p.x - last.x) < window.width() / 2.0f &&
        crossesX(last, p, edge, y) && y >= window.ymin && y <= window.ymax) {
      plot.drawText(edge, y, label);
      labelled = true;
    }
    last = p;
  }
  finish();

  const float vert = domain.getVert();
  const bool large =
      (domain.proj == DomainVal::LATLON && vert > LARGE) || (domain.proj == DomainVal::MERC && vert > LARGE_MERC);
  Point p;
  if (large && domain.tran(EarthPoint(lat, domain.clon), p) && p.y >= window.ymin && p.y <= window.ymax) {
    plot.drawText(window.xmin + window.width() / 2.0f, p.y, label);
  }
  if (domain.proj == DomainVal::PSTEREO && vert > LARGE && domain.tran(EarthPoint(lat, domain.plon), p) &&
      domain.within(p)) {
    plot.drawText(p, label);
  }
}

// Between the latitudes -high and high.
void MapPlot::drawMeridian(Plot& plot, float lon, float high) {
  const Domain& domain = plot.getDomain();
  const Rect window = plot.getGraph().getWindow();
  const float edge = window.ymin + MARGIN * window.width();
  char label[20];
  nameLongitude(lon, label);
  const auto at = [&](float lat, Point& p) {
    // The meridian 180 is the right edge of cylindrical maps, -180 the left one.
    return domain.tran(EarthPoint(lat, lon), p) && !p.isMissing();
  };

  bool labelled = false;
  const float low = -high;
  for (int i = 0; low + static_cast<float>(i) * SEGMENT < high; ++i) {
    const float south = low + static_cast<float>(i) * SEGMENT;
    Point p, q;
    if (!at(south, p) || !at(std::fmin(south + SEGMENT, high), q)) continue;
    plot.drawLine(p, q);
    if (labelled || (p.y < edge) == (q.y < edge)) continue;
    Point crossing(p.x + (q.x - p.x) * (edge - p.y) / (q.y - p.y), edge);
    domain.adjust(crossing);
    if (crossing.x >= window.xmin && crossing.x <= window.xmax) {
      plot.drawText(crossing, label);
      labelled = true;
    }
  }

  const float vert = domain.getVert();
  const bool large =
      (domain.proj == DomainVal::LATLON && vert > LARGE) || (domain.proj == DomainVal::MERC && vert > LARGE_MERC);
  Point p;
  if (large && at(domain.clat, p)) {
    domain.adjust(p);
    if (p.x >= window.xmin && p.x <= window.xmax) plot.drawText(p.x, window.ymin + window.height() / 2.0f, label);
  }
  if (domain.proj == DomainVal::PSTEREO && vert > LARGE && at(0.0f, p) && domain.within(p)) plot.drawText(p, label);
}

}  // namespace KYV
