// The panels of a page and the maps in them.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "KYV/Kyv.h"
#include "KYV/Plot.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

// The map's place in its panel, fractions: labels stand in the bands above and below, the colour bar below those.
constexpr float SIDE = 0.005f;
constexpr float TOP = 0.045f;
constexpr float BOTTOM = 0.10f;
constexpr float BREAK_BAND = 0.04f;  // label band of a panel that newPanel started

const Rect UNIT(0.0f, 0.0f, 1.0f, 1.0f);

bool isFinite(const GeomBox& box) {
  return std::isfinite(box.x) && std::isfinite(box.y) && std::isfinite(box.width) && std::isfinite(box.height);
}

}  // namespace

int Plot::decodeGeometryStr(const char* text, GeomBox& box) {
  box = GeomBox();
  if (!StrLib::valid(text)) return 0;
  float w = 0.0f, h = 0.0f, x = 0.0f, y = 0.0f;
  char sx[2] = "", sy[2] = "";
  const int n = std::sscanf(text, "%fx%f%1[-+]%f%1[-+]%f", &w, &h, sx, &x, sy, &y);
  const auto sign = [](const char* s, float v) { return *s == '-' ? -v : v; };
  int kind = 0;
  if (n == 6) {
    box = {sign(sx, x), sign(sy, y), w, h};
    kind = 2;
  } else if (n == 2) {
    box.width = w, box.height = h;
    kind = 1;
  } else if (std::sscanf(text, "%1[-+]%f%1[-+]%f", sx, &x, sy, &y) == 4) {
    box.x = sign(sx, x), box.y = sign(sy, y);
    kind = 3;
  }
  if (!isFinite(box)) box = GeomBox(), kind = 0;
  return kind;
}

bool Plot::decodePanelStr(const Rect& area, const char* text, GeomBox& box) {
  box = {area.xmin, area.ymin, area.width(), area.height()};
  if (!StrLib::valid(text)) return false;
  float a = 1.0f, b = 1.0f, c = 0.0f, d = 0.0f;
  const int n = std::sscanf(text, "%fx%f+%f+%f", &a, &b, &c, &d);
  if (n != 2 && n != 4) return false;
  GeomBox part;
  if (a <= 1.0f) {
    part = {area.width() * c, area.height() * d, a * area.width(), b * area.height()};
  } else {
    const float columns = std::clamp(a, 1.0f, 8.0f);
    const float rows = std::clamp(b, 1.0f, 8.0f);
    part = {c / columns * area.width(), (1.0f - (d + 1.0f) / rows) * area.height(), area.width() / columns,
            area.height() / rows};
  }
  if (!isFinite(part) || part.width <= 0.0f || part.height <= 0.0f) return false;
  box = part;
  return true;
}

int Plot::initPanel() {
  panel = 0;
  num_panel = 1;
  panels[0] = PanelRec();
  GeomBox box;
  if (*panel_text && decodePanelStr(UNIT, panel_text, box)) {
    panels[0].panel.limits.set(box.x, box.y, box.x + box.width, box.y + box.height);
  }
  return resetPage();
}

// Transform 0 is the whole page.
int Plot::resetPage() {
  graph.setTran(PAGE);
  graph.setViewport(graph.getMaxViewport());
  graph.setWindow(graph.getMaxViewport());
  return graph.activateTran();
}

Rect Plot::pageRect(const Rect& fractions) const {
  const Rect page = graph.getMaxViewport();
  const Rect& limits = rec().panel.limits;
  Rect r;
  r.setu((limits.xmin + limits.width() * fractions.xmin) * page.width(),
         (limits.ymin + limits.height() * fractions.ymin) * page.height(),
         (limits.xmin + limits.width() * fractions.xmax) * page.width(),
         (limits.ymin + limits.height() * fractions.ymax) * page.height());
  return r;
}

int Plot::setPanel(const Rect& r, float aspect, int h, int v) {
  graph.setTran(MAP);
  const Rect target = pageRect(full ? UNIT : r);
  const Rect page = graph.getMaxViewport();
  if (Kyv::isDebug(5)) {
    Kyv::outDebug(5, "Panels %f %f - %f %f\n", r.xmin, r.ymin, r.xmax, r.ymax);
    rec().panel.print();
  }
  graph.setViewportAspect(target, aspect, h, v);
  rec().panel.view = rec().panel.window = graph.getViewport();
  graph.setWindow(rec().panel.window);
  graph.activateTran();
  if (!rec().domain.isSet()) {
    DomainVal plain;
    plain.proj = DomainVal::XY;
    plain.clat = page.width() / 2.0f, plain.clon = page.height() / 2.0f;
    plain.nx = plain.ny = 2;
    plain.dx = page.width(), plain.dy = page.height();
    rec().domain.set(plain);
  }
  return 1;
}

int Plot::setPanel() { return setPanel(Rect(SIDE, BOTTOM, 1.0f - SIDE, 1.0f - TOP)); }

int Plot::setPanel(const Rect& r, const Domain& domain) {
  rec().domain = domain;
  setPanel(r, domain.getAspect());
  return setViewport();
}

int Plot::setPanel(const Domain& domain) { return setPanel(Rect(SIDE, BOTTOM, 1.0f - SIDE, 1.0f - TOP), domain); }

// The map's transform shows the domain of the current panel.
int Plot::setViewport() {
  graph.setTran(MAP);
  PanelRec& p = rec();
  if (p.domain.isSet()) p.panel.window = p.domain.getLimits();
  graph.setViewport(p.panel.view);
  graph.setWindow(p.panel.window);
  return graph.activateTran();
}

int Plot::setPanel(int n) {
  if (n < 0 || n >= num_panel) return 0;
  panel = n;
  return setViewport();
}

int Plot::setPanelDomain(int n, const Domain& domain) {
  if (n < 0 || n >= num_panel) return 0;
  panels[static_cast<std::size_t>(n)].domain = domain;
  if (n == panel) setViewport();
  return 1;
}

int Plot::getPanelDomain(int n, Domain& domain) const {
  if (n < 0 || n >= num_panel) return 0;
  domain = panels[static_cast<std::size_t>(n)].domain;
  return 1;
}

int Plot::getViewDomain(Domain& domain) const {
  domain = getDomain();
  const Rect page = graph.getMaxViewport();
  const Rect& view = rec().panel.view;
  if (page.width() <= 0.0f || page.height() <= 0.0f) return 0;
  return domain.setView(
      Rect(view.xmin / page.width(), view.ymin / page.height(), view.xmax / page.width(), view.ymax / page.height()));
}

int Plot::newPanel(const char* text) {
  if (!labels.empty()) {
    drawBorder();
    drawLabels();
  }
  const Rect page = graph.getMaxViewport();
  GeomBox box;
  decodePanelStr(page, Strings(text, ',').getString(0), box);
  const Rect place(box.x, box.y, box.x + box.width, box.y + box.height);
  graph.setViewport(PAGE, place);
  graph.setWindow(PAGE, place);

  const PanelRec previous = rec();
  if (num_panel < MAX_PANEL) panel = num_panel++;
  rec() = previous;
  Panel& p = rec().panel;
  p.limits.set(place.xmin / page.width(), place.ymin / page.height(), place.xmax / page.width(),
               place.ymax / page.height());

  graph.setTran(MAP);
  const float band = BREAK_BAND * place.height();
  graph.setViewportAspect(Rect(place.xmin, place.ymin + band, place.xmax, place.ymax - band), rec().domain.getAspect());
  p.view = graph.getViewport();
  setViewport();
  if (Kyv::isDebug(5)) {
    Kyv::outDebug(5, "PANEL\n");
    p.print();
  }
  dropLabels();
  fore_hour = Const::MISS;
  data_source[0] = '\0';
  return 1;
}

// A fresh surface has no labels, and one panel: that of the page's first map.
int Plot::firstPanel() {
  dropLabels();
  if (num_panel > 1) {
    panel = 0;
    num_panel = 1;
    rec().panel.limits = UNIT;
    resetPage();
  }
  return setViewport();
}

int Plot::newFrame() {
  if (!graph.newFrame()) return 0;
  frame_texts.emplace_back();
  return firstPanel();
}

int Plot::deleteFrame(int frame) {
  dropFrameText(frame);
  return graph.deleteFrame(frame);
}

int Plot::clearFrame() {
  graph.clear();
  return firstPanel();
}

int Plot::deleteAllFrames() {
  for (int n = graph.getNumFrames(); n > 0; --n) deleteFrame(0);
  frame_texts.clear();
  return 1;
}

}  // namespace KYV
