// Draws a product's symbology: cells, lines, barbs and texts, then the labels around the map.
#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "DataPlane.h"
#include "ExactImage.h"
#include "KYV/CityData.h"
#include "KYV/CityTool.h"
#include "KYV/ColorFile.h"
#include "KYV/ColorFill.h"
#include "KYV/DateTool.h"
#include "KYV/Kyv.h"
#include "KYV/NidsRaw.h"
#include "KYV/NidsText.h"
#include "KYV/NidsVector.h"
#include "KYV/NidsWind.h"
#include "KYV/Plot.h"
#include "KYV/RadMap.h"
#include "KYV/WindPlot.h"

namespace KYV {

namespace {

constexpr int SUPER_RES_RADIALS = 701;  // radials of a packet from which on they are half a degree wide
constexpr float HAIRLINE = 0.01f;       // degrees by which radials overlap, so that no gap shows between them
constexpr float TEXT_LINES = 8.0f;      // height of a text, lines of a display page
constexpr float BARB_LINES = 20.0f;     // length of a barb's staff
constexpr int PRECIP_ARRAY = 81;        // its levels are logarithms of rain

// The default fill scale of a product: the first row whose test holds. `levels`: the product's data levels are the
// values of a scale that gives colours only.
struct DefaultScale {
  bool (*test)(const NidsFile& product);
  const char* fill;
  bool levels;
};

constexpr char REFLECTIVITY_SCALE[] =
    "-100:off,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:lgreen,35:brown,40:yellow,45:red,50:lred,55:magenta,"
    "60:lmagenta,65:dgray,70:lgray,75:white";
constexpr char LEVEL_SCALE[] =
    "off,blue,lblue,cyan,lcyan,green,lgreen,brown,yellow,red,lred,magenta,lmagenta,dgray,lgray,white";

constexpr DefaultScale SCALES[] = {
    {[](const NidsFile& p) { return p.isDHR(); }, REFLECTIVITY_SCALE, false},
    {[](const NidsFile& p) { return p.isDigVIL() || p.isEnhTops(); },
     "-100:off,0:blue,5:lblue,10:cyan,15:lcyan,20:green,25:lgreen,30:brown,35:yellow,40:red,45:lred,50:magenta,"
     "55:lmagenta,60:dgray,65:lgray,70:white",
     false},
    {[](const NidsFile& p) { return p.isBRef() || p.isCRef() || p.isTops() || p.isLRef() || p.isVIL(); },
     REFLECTIVITY_SCALE, true},
    {[](const NidsFile& p) { return p.isVAD(); }, "lblue,lcyan,lgreen,yellow,lred", false},
    {[](const NidsFile& p) { return p.isDPA() || p.isDSP(); },
     "0.01:blue,.1:lblue,.2:cyan,.5:lcyan,.8:green,1.0:lgreen,1.2:brown,1.5:yellow,1.8:red,2.0:lred,2.5:magenta,"
     "3.0:lmagenta,4.0:dgray,6.0:lgray,8.0:white",
     false},
    {[](const NidsFile& p) { return p.isSRVel(); },
     "-50:lblue,-40:cyan,-30:lcyan,-22:green,-10:lgreen,-5:dgray,-1:off,0:lgray,5:yellow,10:brown,22:lred,30:red,"
     "40:lmagenta,50:magenta",
     true},
    {[](const NidsFile& p) { return p.isVel(); },
     "-70:blue,-63:lblue,-49:cyan,-35:lcyan,-25:green,-19:lgreen,-9:dgray,0:off,1:lgray,10:yellow,20:brown,26:lred,"
     "36:red,50:lmagenta,64:magenta",
     true},
    {[](const NidsFile& p) { return p.isDRef(); },
     "-7.0:blue,-6.3:lblue,-4.9:cyan,-3.5:lcyan,-2.5:green,-1.9:lgreen,-.9:dgray,0:off,.1:lgray,1.0:yellow,2.0:brown,"
     "2.6:lred,3.6:red,5.0:lmagenta,6.4:magenta",
     false},
    {[](const NidsFile& p) { return p.isPrec(); }, LEVEL_SCALE, true},
    {[](const NidsFile& p) { return p.isDPrec() || p.isDPrRate(); },
     "-100:off,.01:blue,.05:lblue,.1:cyan,.25:lcyan,.5:green,.75:lgreen,1:brown,1.25:yellow,1.5:red,2:lred,"
     "2.5:magenta,3:lmagenta,4:dgray,6:lgray,8:white",
     false},
    {[](const NidsFile& p) { return p.isHydroClass(); },
     "-100:off:la=_,10:magenta:la=BI,20:lmagenta:la=GC,30:cyan:la=IC,40:blue:la=DS,50:lblue:la=WS,60:dgreen:la=RA,"
     "70:green:la=HR,80:lgreen:la=BD,90:lcyan:la=GR,100:red:la=HA,140:dgray:la=UK,150:lgray:la=RF",
     false},
    {[](const NidsFile& p) { return p.isCorrel() || p.getCode() == 163; },
     "-200:off,-1.:blue,-.8:lblue,-.6:cyan,-.4:lcyan,-.2:green,0:yellow,.2:brown,.4:lred,.6:red,.8:lmagenta,"
     "1.:magenta",
     false},
    {[](const NidsFile&) { return true; }, LEVEL_SCALE, true},
};

// Interval of the wind profile's scale, which has no thresholds: five colours, 4 units of root-mean-square error each.
constexpr float VAD_BASE = 0.0f;
constexpr float VAD_INTERVAL = 4.0f;

// Points of one ray or one row of corners, in the units of the plot's domain.
using Corners = std::vector<Point>;

}  // namespace

// Draws the packets of one product. Cells are computed on the plane of the data's domain; where the plot has another
// projection, each corner is carried over through its latitude and longitude, once for all cells that share it.
struct RadMap::Painter : DataPlane {
  Painter(RadMap& layer, Plot& surface);

  void chooseScale();
  bool paintRadials();
  bool paintGeneric();
  void paintArray(float step);
  bool paintGrid();
  bool paintExact(ExactImage& image);
  void paintVectors();
  void paintBarbs();
  void paintText();

  bool isSuppressed(float value, float distance) const;
  int visibleEntry(float value);
  void paintCell(int entry, const Point& a, const Point& b, const Point& c, const Point& d);

  RadMap& map;
  ColorMap colors;
  ColorFill fill;
  bool own = false;  // the scale is the user's
  PlotAttr dataAttr;
  PlotAttr lineAttr;
  std::vector<char> visible;       // of each fill entry, whether it has a colour
  int entryInUse = -1;             // fill entry that the plot's fill attributes show
  float valueFound = Const::MISS;  // the value looked up last
  int entryFound = -1;             // and what it gave
  Points cell;                     // reused
};

RadMap::Painter::Painter(RadMap& layer, Plot& surface)
    : DataPlane(layer.nids->getDomainVal(), EarthPoint(layer.info.lat, layer.info.lon), surface, layer.measured),
      map(layer) {
  if (!plot.isDrawing(Plot::DRAW_PLOT)) map.plot = false;

  plot.getColorMap(colors);
  if (map.color_table.valid() && !ColorFile::read(map.color_table.get(), colors)) {
    Kyv::report(Kyv::BADPARAM, "RadMap: no colour table %s; the colours stay as they are\n", map.color_table.get());
  }
  chooseScale();
  plot.setColorMap(colors);
  visible.resize(static_cast<std::size_t>(fill.getNum()));
  for (int i = 0; i < fill.getNum(); ++i) visible[static_cast<std::size_t>(i)] = fill.get(i).validColor() ? 1 : 0;

  const char* standard = plot.getInverse() ? "black" : "white";
  dataAttr.set(map.color_data.valid() ? map.color_data.get() : Kyv::resrc.get("color_data", standard));
  lineAttr.set(Kyv::resrc.get("color_grid", "red"));
}

void RadMap::Painter::chooseScale() {
  if (map.color_fill.valid() && !map.color_fill.iequal("miss")) {
    const bool read = fill.set(colors, map.color_fill.get()) != 0;
    if (read && fill.isVisible()) {
      own = true;
      if (!fill.areValuesSet()) fill.setValues(map.info.thres, 16);
      return;
    }
    // Nobody wants a map without echoes where there are some.
    Kyv::report(Kyv::BADPARAM,
                read ? "RadMap: the fill scale %s has no colour; the product's default scale is used\n"
                     : "RadMap: no fill scale %s; the product's default scale is used\n",
                map.color_fill.get());
  }
  const NidsFile& product = *map.nids;
  const DefaultScale* row =
      std::find_if(std::begin(SCALES), std::end(SCALES), [&](const DefaultScale& s) { return s.test(product); });
  fill.set(colors, row->fill);
  if (product.isVAD()) {
    fill.setBase(VAD_BASE);
    fill.setInterval(VAD_INTERVAL);
  }
  if (row->levels && !fill.areValuesSet()) fill.setValues(map.info.thres, 16);
}

// Ramp and clutter take weak and near echoes away. Distance in bins of a radial product, km of a grid.
bool RadMap::Painter::isSuppressed(float value, float distance) const {
  if (!Const::isMissing(map.ramp[0])) {
    const float top = static_cast<float>(map.ramp[0]);
    if (value <= std::trunc(top - distance * top / static_cast<float>(map.ramp[1]))) return true;
  }
  return !Const::isMissing(map.clutter) && distance < static_cast<float>(map.clutter);
}

// The fill entry of a value, -1 when nothing is drawn for it. Neighbours are often alike, above all those without data.
int RadMap::Painter::visibleEntry(float value) {
  if (value != valueFound) {
    const int entry = fill.getInd(value);
    valueFound = value;
    entryFound = entry >= 0 && visible[static_cast<std::size_t>(entry)] ? entry : -1;
  }
  return entryFound;
}

void RadMap::Painter::paintCell(int entry, const Point& a, const Point& b, const Point& c, const Point& d) {
  if (!sameProjection && (a.isMissing() || b.isMissing() || c.isMissing() || d.isMissing())) return;
  if (entry != entryInUse) {
    plot.setFill(fill.get(entry));
    entryInUse = entry;
  }
  cell.clear();
  cell.add(a);
  cell.add(b);
  cell.add(c);
  cell.add(d);
  cell.add(a);
  plot.drawFill(cell);
}

bool RadMap::Painter::paintRadials() {
  const float step = map.nids->getNrad() >= SUPER_RES_RADIALS ? 0.5f : 1.0f;
  map.nids->readData(map.ndata);
  paintArray(step);
  return true;
}

bool RadMap::Painter::paintExact(ExactImage& image) {
  NidsRaw raw;
  if (!(map.nids->isPacketGeneric() ? map.nids->readGeneric(raw) : map.nids->readLevels(raw))) return false;
  if (!map.plot) return true;
  const bool any = !Const::isMissing(map.ramp[0]) || (!Const::isMissing(map.clutter) && map.clutter > 0);
  const auto suppressed = [this](float value, float km) { return isSuppressed(value, km); };
  image.paint(std::move(raw), plot, any ? ExactImage::Suppressed(suppressed) : nullptr);
  return true;
}

bool RadMap::Painter::paintGeneric() {
  if (map.nids->readGeneric(map.ndata) <= 0) return false;
  paintArray(map.ndata.domain.dx);
  return true;
}

// The radials of the layer's product data, so many degrees apart.
void RadMap::Painter::paintArray(float step) {
  if (!map.plot) return;
  const NidsData& nd = map.ndata;
  const float dy = nd.domain.dy;
  const int bins = std::min(nd.domain.ny, nd.nbin);
  entryInUse = -1;

  // The fill entries of a radial's bins, with one that draws nothing on either side, and the corners on its two sides,
  // which are computed where a bin is drawn.
  std::vector<int> entries(static_cast<std::size_t>(std::max(bins, 0)) + 2, -1);
  Corners first(entries.size()), second(entries.size());
  const auto ray = [&](double degrees, std::size_t n, Corners& corners) {
    const float ux = static_cast<float>(dy * std::sin(degrees * Const::DRC));
    const float uy = static_cast<float>(dy * std::cos(degrees * Const::DRC));
    for (std::size_t j = 0; j <= n; ++j) {
      if (entries[j] < 0 && entries[j + 1] < 0) continue;
      corners[j] = toPlot(Point(centre.x + static_cast<float>(j) * ux, centre.y + static_cast<float>(j) * uy));
    }
  };

  for (int i = 0; static_cast<float>(i) * step < 360.0f; ++i) {
    std::size_t drawn = 0;  // bins up to the last that is drawn
    for (int j = 0; j < bins; ++j) {
      const float value = nd.getValue(i, j);
      int entry = visibleEntry(value);
      if (entry >= 0 && isSuppressed(value, static_cast<float>(j))) entry = -1;
      const std::size_t k = static_cast<std::size_t>(j) + 1;
      entries[k] = entry;
      if (entry >= 0) drawn = k;
    }
    if (drawn == 0) continue;
    const double azimuth = dom.adjustDir(static_cast<float>(i) * step, centre);
    ray(azimuth, drawn, first);
    ray(azimuth + step + HAIRLINE, drawn, second);
    for (std::size_t k = 0; k < drawn; ++k) {
      const int entry = entries[k + 1];
      if (entry >= 0) paintCell(entry, first[k], first[k + 1], second[k + 1], second[k]);
    }
  }
}

bool RadMap::Painter::paintGrid() {
  map.nids->readData(map.ndata);
  if (!map.plot) return true;
  const NidsData& nd = map.ndata;
  const float c = map.info.cres;
  const float x0 = centre.x - static_cast<float>(map.info.nx - 1) * 0.5f * c;
  const float y0 = centre.y + static_cast<float>(map.info.ny - 1) * 0.5f * c;
  const int n = nd.nbin;
  entryInUse = -1;

  Corners upper, lower;
  const auto corners = [&](int r, Corners& line) {
    line.clear();
    for (int k = 0; k <= n; ++k) {
      line.push_back(toPlot(Point(x0 + static_cast<float>(k) * c, y0 - static_cast<float>(r) * c)));
    }
  };
  corners(0, lower);
  for (int r = 0; r < n; ++r) {
    std::swap(upper, lower);
    corners(r + 1, lower);
    for (int k = 0; k < n; ++k) {
      float value = nd.getValue(k, r);
      if (Const::isMissing(value)) continue;
      if (map.info.code == PRECIP_ARRAY) value = std::pow(10.0f, value / 10.0f) / 100.0f;
      const int entry = visibleEntry(value);
      if (entry < 0) continue;
      const float dx = x0 + static_cast<float>(k) * c - centre.x;
      const float dy = y0 - static_cast<float>(r) * c - centre.y;
      if (isSuppressed(value, 100.0f * std::sqrt(dx * dx + dy * dy))) continue;
      const std::size_t i = static_cast<std::size_t>(k);
      paintCell(entry, upper[i], upper[i + 1], lower[i + 1], lower[i]);
    }
  }
  return true;
}

void RadMap::Painter::paintVectors() {
  plot.setLine(lineAttr);
  NidsVector v;
  while (map.nids->readVector(v) > 0) plot.drawLine(fromIJ(v.x1, v.y1), fromIJ(v.x2, v.y2));
}

void RadMap::Painter::paintBarbs() {
  WindPlot winds(plot);
  NidsWind w;
  while (map.nids->readWind(w) > 0) {
    const int color = fill.getColor(w.val);
    if (color < 0) continue;
    plot.setFillColor(color);
    plot.setLineColor(color);
    winds.setWind(w.dir, w.spd);
    winds.drawBarb(symbolAt(w.x, w.y), displayLines(BARB_LINES), 0.0f);
  }
}

void RadMap::Painter::paintText() {
  NidsText text;
  if (map.nids->readText(text) <= 0 || !dataAttr.validColor()) return;
  PlotAttr attr = dataAttr;
  attr.height = displayLines(TEXT_LINES);
  plot.setText(attr);
  plot.setTextAlign(1, 2);
  plot.drawText(map.nids->isPageText() ? fromPage(text.x, text.y) : symbolAt(text.x, text.y), text.data);
}

int RadMap::drawImage(Plot& surface) {
  Painter painter(*this, surface);
  // The one place that chooses how images are drawn.
  exact = ExactImage::make(*nids, info);
  if (exact) {
    exact->chooseScale(painter.colors, painter.own ? &painter.fill : nullptr);
    painter.fill = exact->getScale();
    surface.setColorMap(painter.colors);
    ndata = NidsData();
  }
  const std::function<bool()> paintImage = [&] {
    if (exact) return painter.paintExact(*exact);
    if (nids->isPacketGeneric()) return painter.paintGeneric();
    return nids->isPacketRadial() ? painter.paintRadials() : painter.paintGrid();
  };
  passed_over = false;
  do {
    const bool image = nids->isPacketRadial() || nids->isPacketRastor() || nids->isPacketDpa();
    if (image || nids->isPacketGeneric()) {
      passed_over |= !paintImage() && !image;
    } else if (nids->isPacketVector()) {
      painter.paintVectors();
    } else if (nids->isPacketWindbarb()) {
      painter.paintBarbs();
    } else if (nids->isPacketText()) {
      painter.paintText();
    } else {
      passed_over = true;
    }
  } while (nids->readPacket() > 0);
  constexpr int DIVIDER = 0xFFFF;
  const int last = nids->getPacketCode();
  passed_over = !nids->hasStopped() && (passed_over || (last > 0 && last != DIVIDER));

  if (measured) ExactImage::name(info);
  if (exact) exact->label(info);
  setLabels(surface);
  // What has no levels needs no key.
  if (!measured || exact || nids->isVAD()) surface.setBar(painter.fill);
  return surface.done();
}

void RadMap::setLabels(Plot& surface) {
  surface.setTextCharWidth(0.0f);
  char label[100];
  if (*id) {
    StrLib::printf(label, "%s %s", id, info.info);
  } else if (!info.isMultiRadar()) {
    char key[20];
    StrLib::printf(key, "%05d", info.src);
    CityData station;
    if (CityTool::search("rad.cty", key, station)) {
      StrLib::printf(label, "Site: %s %s", station.id, info.info);
    } else {
      StrLib::printf(label, "Site: %3.3d %s", info.src, info.info);
    }
  } else {
    StrLib::printf(label, "%s", info.info);
  }
  surface.addLabel("ul", label);

  if (!surface.isDate()) surface.setDate(info.date);
  String date;
  DateTool::createLabel(info.date, tz, date);
  surface.addLabel("ur", date.get());
  surface.addLabel("lr", info.misc);
}

}  // namespace KYV
