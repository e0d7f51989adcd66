// What the plot does when the device tells of a key.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "KYV/Kyv.h"
#include "KYV/Plot.h"
#include "PlotEvent.h"

namespace KYV {

namespace {

constexpr int KEY_LENGTH = 5;      // "v-Alt"
constexpr int POSITION_START = 6;  // of the text of a key, where the pointer's position begins

// What is told of a place, by the projection of the map that shows it.
enum class Readout { EARTH, SOUNDING, RADIAL, PLANE };
struct ReadoutRow {
  int first, last;  // projection codes
  Readout readout;
};
// The first row that holds the code counts.
constexpr ReadoutRow READOUTS[] = {{40, 44, Readout::SOUNDING}, {25, 25, Readout::RADIAL}, {20, 26, Readout::PLANE}};

Readout findReadout(int proj) {
  const ReadoutRow* row = std::find_if(std::begin(READOUTS), std::end(READOUTS),
                                       [proj](const ReadoutRow& r) { return proj >= r.first && proj <= r.last; });
  return row == std::end(READOUTS) ? Readout::EARTH : row->readout;
}

}  // namespace

void Plot::callback(const char* name, const char* value, const void* data) {
  const PlotEvent event(name, value, data);
  if (event.is("DeleteFrame") && event.text) dropFrameText(StrLib::toInt(event.text));
  if (!event.is("KeyPress") || !event.text) return;
  const auto isKey = [&event](const char* key) { return StrLib::equal(event.text, key, KEY_LENGTH); };
  if (StrLib::equal(event.text, "Ret", 3)) {
    graph.bell();
    graph.unmanage();
    end_due = true;
  } else if (isKey("v-Alt")) {
    if (StrLib::length(event.text) > POSITION_START) tellPlace(event.text + POSITION_START);
  } else if (isKey("s-Alt")) {
    saveByKey("GIF");
  } else if (isKey("S-Alt")) {
    saveByKey("PNG");
  }
}

// Prints what is at a position of the surface, and asks the layers.
void Plot::tellPlace(const char* position) {
  float px = 0.0f, py = 0.0f;
  if (std::sscanf(position, "%f:%f", &px, &py) != 2 || !std::isfinite(px) || !std::isfinite(py)) return;
  // The panel that is pointed at.
  float nx = 0.0f, ny = 0.0f;
  graph.tranPlotView(px, py, nx, ny);
  const Rect page = graph.getMaxViewport();
  const int old = panel;
  for (int n = num_panel - 1; n >= 0; --n) {
    const PanelRec& record = panels[static_cast<std::size_t>(n)];
    if (page.width() > 0.0f && page.height() > 0.0f &&
        record.panel.withinLimits(Point(nx / page.width(), ny / page.height()))) {
      setPanel(n);
      break;
    }
  }
  graph.setTran(MAP);
  Point p;
  graph.tranPlotWindow(px, py, p.x, p.y);
  const Domain& domain = getDomain();
  EarthPoint e;
  GridPoint g;
  domain.tran(p, e);
  domain.tran(p, g);
  const double values[] = {e.lat, e.lon, p.x, p.y, g.x, g.y, px, py};
  const auto& [lat, lon, x, y, gx, gy, pixelX, pixelY] = values;
  switch (findReadout(domain.proj)) {
    case Readout::SOUNDING:
      std::printf("Temp: %.4f Pres: %.4f XY: %.3f %.3f Pixel: %.0f %.0f\n", lat, lon, x, y, pixelX, pixelY);
      break;
    case Readout::RADIAL:
      std::printf("A: %.4f R: %.4f XY: %.3f %.3f Grid: %.2f %.2f Pixel: %.0f %.0f\n", lat, lon, x, y, gx, gy, pixelX,
                  pixelY);
      break;
    case Readout::PLANE:
      std::printf("X: %.4f Y: %.4f XY: %.3f %.3f Grid: %.2f %.2f Pixel: %.0f %.0f\n", lat, lon, x, y, gx, gy, pixelX,
                  pixelY);
      break;
    case Readout::EARTH:
      std::printf("Lat: %.4f Lon: %.4f XY: %.3f %.3f Grid: %.2f %.2f Pixel: %.0f %.0f\n", lat, lon, x, y, gx, gy,
                  pixelX, pixelY);
      break;
  }
  std::fflush(stdout);
  if (panel != old) setPanel(old);
  char place[60];
  StrLib::printf(place, "%f,%f", lat, lon);
  graph.doCallback("QueryLoc", place);
}

}  // namespace KYV
