#include "KYV/GTran.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "KYV/Points.h"

namespace KYV {

namespace {

// A scale that can be multiplied and divided by: 1 where a rectangle has no extent.
float ratio(float a, float b) {
  const float r = a / b;
  return std::isnormal(r) ? r : 1.0f;
}

}  // namespace

int GTran::set(const Rect& device) {
  plot = device;
  const float w = std::fabs(plot.width());
  const float h = std::fabs(plot.height());
  const float ax = w > h ? 1.0f : ratio(w, h);
  const float ay = w > h ? ratio(h, w) : 1.0f;
  win = vp = ndc = Rect(0.0f, 0.0f, ax, ay);
  scale.set(1.0f, 1.0f);
  kscale.set(ratio(plot.width(), ax), ratio(plot.height(), ay));
  return 1;
}

int GTran::setWindow(const Rect& r) {
  win = r;
  return setScale();
}

int GTran::setViewport(const Rect& r) {
  vp = r;
  return setScale();
}

int GTran::setScale() {
  scale.set(ratio(vp.width(), win.width()), ratio(vp.height(), win.height()));
  return 1;
}

const Rect& GTran::getClipRect() {
  clip.set(tranNdcPlotX(vp.xmin), tranNdcPlotY(vp.ymax), tranNdcPlotX(vp.xmax), tranNdcPlotY(vp.ymin));
  return clip;
}

Point GTran::getPlotUnit() const {
  return {1.0f / ratio(scale.x * kscale.x, 1.0f), -1.0f / ratio(scale.y * kscale.y, 1.0f)};
}

float GTran::tranWindowX(const GTran& a, const GTran& b, float x) {
  return (a.tranWindowNdcX(x) - b.vp.xmin) / b.scale.x + b.win.xmin;
}

float GTran::tranWindowY(const GTran& a, const GTran& b, float y) {
  return (a.tranWindowNdcY(y) - b.vp.ymin) / b.scale.y + b.win.ymin;
}

bool GTran::isPointsInWindow(const Points& points) const {
  return points.getNum() > 0 && isPointsInWindow(points.getNum(), &points[0]);
}

bool GTran::isPointsInWindow(int n, const Point* points) const {
  if (n < 1 || !points) return false;
  float x1 = points[0].x, x2 = x1, y1 = points[0].y, y2 = y1;
  for (const Point* p = points + 1; p != points + n; ++p) {
    x1 = std::min(x1, p->x);
    x2 = std::max(x2, p->x);
    y1 = std::min(y1, p->y);
    y2 = std::max(y2, p->y);
  }
  // A window may run backward.
  return x2 >= std::min(win.xmin, win.xmax) && x1 <= std::max(win.xmin, win.xmax) &&
         y2 >= std::min(win.ymin, win.ymax) && y1 <= std::max(win.ymin, win.ymax);
}

int GTran::print() const {
  struct Row {
    const char* name;
    const Rect& rect;
  };
  for (const Row& row : {Row{"Window: ", win}, Row{"View: ", vp}, Row{"NDC: ", ndc}, Row{"Plot: ", plot}}) {
    std::fputs(row.name, stdout);
    row.rect.print();
  }
  return 1;
}

}  // namespace KYV
