#ifndef KYV_PANEL_H
#define KYV_PANEL_H

#include "KYV/Point.h"
#include "KYV/Rect.h"

namespace KYV {

/// A part of the page that holds one map.
struct Panel {
  Rect limits{0.0f, 0.0f, 1.0f, 1.0f};  // of the panel, fractions of the page
  Rect view;                            // of the map, NDC
  Rect window;                          // of the map, plot units of its domain

  const Rect& getView() const { return view; }
  const Rect& getWindow() const { return window; }
  /// Whether a place on the page (fractions) lies in the panel.
  bool withinLimits(const Point& p) const {
    return p.x >= limits.xmin && p.x <= limits.xmax && p.y >= limits.ymin && p.y <= limits.ymax;
  }
  /// The three rectangles on standard output.
  int print() const;
};

}  // namespace KYV
#endif
