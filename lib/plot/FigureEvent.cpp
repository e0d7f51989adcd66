// What the figure does when the device tells of a key, a new size or idle time.
#include <cmath>
#include <cstdio>

#include "KYV/DateTool.h"
#include "KYV/Drawing.h"
#include "KYV/Figure.h"
#include "KYV/Kyv.h"
#include "PlotEvent.h"

namespace KYV {

namespace {

constexpr float ZOOM_IN = 2.0f;
constexpr float ZOOM_OUT = 0.5f;
constexpr int MIN_REFRESH = 2;  // seconds

}  // namespace

// A key of the keyboard, compared by the first characters of its name, where the pointer's position begins in the text
// (0: the key does not ask for it), and what the key does.
struct Figure::KeyAction {
  static constexpr int LENGTH = 5;
  const char* name;
  int position;
  void (*act)(Figure& figure, const char* event, const char* position);
};

int Figure::manage() {
  last_refresh = Date::getCurrentSeconds();
  return plot.manage();
}

void Figure::callback(const char* name, const char* value, const void* data) {
  const PlotEvent event(name, value, data);
  if (event.is("Idle")) {
    checkRefresh();
    return;
  }
  if (!event.text) return;
  if (event.is("Redraw")) {
    int width = 0, height = 0;
    std::sscanf(event.text, "%9d:%9d", &width, &height);
    Kyv::outDebug(2, "Figure-resize window: %d %d\n", width, height);
    draw();
    return;
  }
  if (!event.is("KeyPress")) return;

  static constexpr KeyAction KEYS[] = {
      {"r-Alt", 0,
       [](Figure& f, const char*, const char*) {
         Kyv::outDebug(2, "Figure-redraw window\n");
         f.draw();
       }},
      {"z-Alt", 6, [](Figure& f, const char* key, const char* at) { f.zoom(key, at, ZOOM_IN, "zoom"); }},
      {"Z-Alt", 11, [](Figure& f, const char* key, const char* at) { f.zoom(key, at, ZOOM_OUT, "unzoom"); }},
      {"p-Alt", 6, [](Figure& f, const char* key, const char* at) { f.pan(key, at); }},
      {"u-Alt", 0, [](Figure& f, const char*, const char*) { f.unzoom(); }},
  };
  for (const KeyAction& key : KEYS) {
    if (!StrLib::equal(event.text, key.name, KeyAction::LENGTH)) continue;
    if (StrLib::length(event.text) >= key.position) key.act(*this, event.name, event.text + key.position);
    return;
  }
}

// The place on the map of a position on the surface, "%d:%d".
bool Figure::toWindow(const char* position, Point& p) {
  int x = 0, y = 0;
  if (std::sscanf(position, "%9d:%9d", &x, &y) != 2) return false;
  plot.setPanel(0);
  plot.tranPlotWindow(static_cast<float>(x), static_cast<float>(y), p.x, p.y);
  return std::isfinite(p.x) && std::isfinite(p.y);
}

void Figure::zoom(const char* event, const char* position, float factor, const char* what) {
  Point p;
  Domain domain;
  if (!toWindow(position, p) || !plot.getPanelDomain(0, domain)) return;
  Kyv::outDebug(2, "Figure-%s window: %s %.2f %.2f\n", what, event, static_cast<double>(p.x), static_cast<double>(p.y));
  if (!domain.zoom(p, factor)) return;
  if (Kyv::checkMessage(6)) {
    Kyv::outMessage(6, "New domain: ");
    domain.print();
  }
  plot.setPanelDomain(0, domain);
  draw();
}

void Figure::pan(const char* event, const char* position) {
  Point p;
  Domain domain;
  if (!toWindow(position, p) || !plot.getPanelDomain(0, domain)) return;
  Kyv::outDebug(2, "Figure-pan window: %s %.2f %.2f\n", event, static_cast<double>(p.x), static_cast<double>(p.y));
  if (!domain.pan(p)) return;
  plot.setPanelDomain(0, domain);
  draw();
}

void Figure::unzoom() {
  Kyv::outDebug(2, "Figure-unzoom window\n");
  if (start_domain.isSet()) plot.setPanelDomain(0, start_domain);
  draw();
}

// Looks for new data when it is time to.
void Figure::checkRefresh() {
  if (refresh < MIN_REFRESH || redraw_depth > 0 || Date::getCurrentSeconds() - last_refresh < refresh) return;
  last_refresh += refresh;
  Drawing* layer = nullptr;
  for (Item& item : queue) {
    if (!layer && item.drawing && item.drawing->getLoopType() != Drawing::LOOP_NONE) layer = item.drawing;
  }
  if (!layer) return;
  Date now;
  DateTool::getNow(now);
  const bool found = layer->setFilename(now, "") != 0;
  Date dataDate;
  layer->getDate(dataDate);
  if ((loop_type == Drawing::LOOP_DATE || num_sync == 1) && dataDate.secs == data_date.secs) {
    Kyv::outDebug(2, "Figure-refresh %d\n", 0);
    return;
  }
  Kyv::outDebug(2, "Figure-refresh %d\n", found);
  if (found) updateLoop(now);
}

}  // namespace KYV
