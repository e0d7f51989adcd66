// The entries of a map list that are no map files.
#include <cmath>
#include <cstdio>
#include <string_view>

#include "KYV/DataPath.h"
#include "KYV/File.h"
#include "KYV/Kyv.h"
#include "KYV/MapPlot.h"
#include "KYV/Number.h"
#include "KYV/Plot.h"
#include "MapEntry.h"

namespace KYV {

namespace {

constexpr const char* STANDARD_COLOR = "white";
constexpr float SYMBOL_SIZE = 0.03f;  // of the plot's height
constexpr int MAX_GRID_LINES = 1000;
constexpr int MAX_RAW_POINTS = 100000;
constexpr int MAX_RAW_LINE = 200;  // characters

// The pen of an entry, white without attributes, as it stands out on the paper that there is.
PlotAttr getPen(Plot& plot, const char* attr) {
  PlotAttr pen(StrLib::valid(attr) ? attr : STANDARD_COLOR);
  if (plot.getInverse()) pen.turnGreys();
  return pen;
}

}  // namespace

// Points "lat lon [name]", a line each.
int MapPlot::drawRawFile(Plot& plot, const char* entry) {
  String name, attr, path;
  splitEntry(entry, name, attr);
  plot.message("Map-rawfile: %s", name.get());
  File file;
  DataPath::find(name.get(), path);
  if (!file.openData(path.get())) {
    Kyv::report(Kyv::MISC, "Map-rawfile: unable to open %s\n", name.get());
    return 0;
  }
  const PlotAttr pen = getPen(plot, attr.get());
  useText(plot, pen);
  plot.setMark(pen);
  plot.setMarkType("pnt");
  if (!in_list) labels.clear();
  char text[MAX_RAW_LINE];
  for (int n = 0; n < MAX_RAW_POINTS && file.getLine(text, sizeof text) > 0; ++n) {
    std::string_view rest = text;
    EarthPoint e;
    Point p;
    if (!takeNumber(rest, e.lat) || !takeNumber(rest, e.lon) || !plot.getDomain().tran(e, p)) continue;
    rest = trimFront(rest);
    const String label(rest.data(), static_cast<int>(rest.find_last_not_of(BLANKS) + 1));
    plot.getDomain().adjust(p);
    if (label.valid()) {
      drawName(plot, p, label.get());
    } else if (plot.withinDomain(p)) {
      plot.setMarkSize(SYMBOL_SIZE / 6.0f * plot.getVert());
      plot.drawMark(p);
    }
  }
  return 1;
}

// "lat:lon:symbol".
int MapPlot::drawMarker(Plot& plot, const char* entry) {
  EarthPoint e;
  char symbol[41] = "";
  if (std::sscanf(entry, "%f:%f:%40s", &e.lat, &e.lon, symbol) < 3) return 0;
  Point p;
  if (!plot.getDomain().tran(e, p)) return 0;
  plot.getDomain().adjust(p);
  if (!plot.withinDomain(p)) return 0;
  useText(plot, getPen(plot, nullptr));
  plot.setTextAlign(2, 3);
  return plot.drawSymbol(p, symbol, SYMBOL_SIZE * plot.getVert());
}

// "grid:step[:attributes]": lines of the plane, a step (plot units) apart; without one those of every 100 km.
int MapPlot::drawGrid(Plot& plot, const char* entry) {
  char step[20] = "", attr[100] = "";
  std::sscanf(*entry == ':' ? entry + 1 : entry, "%19[^:]:%99s", step, attr);
  plot.message("Map-grid: %s", step);
  float width = 1.0f;
  std::sscanf(step, "%f", &width);
  const Rect window = plot.getGraph().getWindow();
  if (!(width * MAX_GRID_LINES > window.width() && width * MAX_GRID_LINES > window.height())) return 0;
  useText(plot, getPen(plot, attr));
  const auto first = [width](float low) { return std::ceil(low / width); };
  const auto count = [&](float low, float high) { return static_cast<int>(std::floor(high / width) - first(low)); };
  for (int i = 0; i <= count(window.xmin, window.xmax); ++i) {
    const float x = (first(window.xmin) + static_cast<float>(i)) * width;
    plot.drawLine(x, window.ymin, x, window.ymax);
  }
  for (int i = 0; i <= count(window.ymin, window.ymax); ++i) {
    const float y = (first(window.ymin) + static_cast<float>(i)) * width;
    plot.drawLine(window.xmin, y, window.xmax, y);
  }
  return 1;
}

// "lat:lon[:attributes]" or "lat:lon[attributes]".
int MapPlot::drawLatLonEntry(Plot& plot, const char* entry) {
  float lat = 0.0f, lon = 0.0f;
  int used = 0;
  if (std::sscanf(entry, "%f%n:%f%n", &lat, &used, &lon, &used) < 2) lon = lat;
  if (used == 0) return 0;
  String name, attr;
  splitEntry(entry + used, name, attr);
  plot.message("Map-lalo: %.1f,%.1f", static_cast<double>(lat), static_cast<double>(lon));
  useText(plot, PlotAttr(attr.valid() ? attr.get() : LATLON_ATTR));
  return drawLatLon(plot, lat, lon);
}

// "colour" or "colour]".
int MapPlot::drawBackground(Plot& plot, const char* entry) {
  const PlotAttr pen(
      String(entry, StrLib::index(entry, ']') < 0 ? StrLib::length(entry) : StrLib::index(entry, ']')).get());
  if (!pen.validColor()) return 0;
  plot.setFill();
  plot.setFillStyle(0);
  plot.setFill(pen);
  return plot.drawFill(plot.getGraph().getWindow());
}

}  // namespace KYV
