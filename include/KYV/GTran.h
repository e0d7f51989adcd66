#ifndef KYV_GTRAN_H
#define KYV_GTRAN_H

#include "KYV/Point.h"
#include "KYV/Rect.h"

namespace KYV {

class Points;

/// One coordinate transform: window (the caller's units) to viewport in NDC (the longer side of the surface is 1, y
/// upward) to plot (the device's units). Results in plot units are clamped to ±30000.
class GTran {
 public:
  static constexpr float LIMIT = 30000.0f;  // devices may hold coordinates in 16 bits

  GTran() { set(Rect(0.0f, 0.0f, 1.0f, 1.0f)); }

  /// Takes the device's rectangle (not put in order); window and viewport become the whole surface.
  int set(const Rect& device);
  int resize(const Rect& device) { return set(device); }
  int setWindow(const Rect& r);
  int setViewport(const Rect& r);
  const Rect& getWindow() const { return win; }
  const Rect& getViewport() const { return vp; }
  const Rect& getNdc() const { return ndc; }
  const Rect& getPlot() const { return plot; }
  /// The viewport in plot units.
  const Rect& getClipRect();

  float tranWindowNdcX(float x) const { return (x - win.xmin) * scale.x + vp.xmin; }
  float tranWindowNdcY(float y) const { return (y - win.ymin) * scale.y + vp.ymin; }
  float tranWindowPlotX(float x) const { return tranNdcPlotX(tranWindowNdcX(x)); }
  float tranWindowPlotY(float y) const { return tranNdcPlotY(tranWindowNdcY(y)); }
  float tranNdcPlotX(float x) const { return clamp(x * kscale.x + plot.xmin); }
  float tranNdcPlotY(float y) const { return clamp((ndc.ymax - y) * kscale.y + plot.ymin); }
  float tranPlotNdcX(float x) const { return (x - plot.xmin) / kscale.x; }
  float tranPlotNdcY(float y) const { return ndc.ymax - (y - plot.ymin) / kscale.y; }
  float tranPlotWindowX(float x) const { return (tranPlotNdcX(x) - vp.xmin) / scale.x + win.xmin; }
  float tranPlotWindowY(float y) const { return (tranPlotNdcY(y) - vp.ymin) / scale.y + win.ymin; }
  /// The size of a plot unit, window units; negative where the two run against each other.
  Point getPlotUnit() const;
  Point tranWindowPlot(const Point& p) const { return {tranWindowPlotX(p.x), tranWindowPlotY(p.y)}; }
  // Window of one transform to window of another.
  static float tranWindowX(const GTran& a, const GTran& b, float x);
  static float tranWindowY(const GTran& a, const GTran& b, float y);
  /// Whether the points' bounding box overlaps the window, touching included.
  bool isPointsInWindow(const Points& points) const;
  bool isPointsInWindow(int n, const Point* points) const;
  int print() const;

 private:
  int setScale();
  static float clamp(float v) {
    // Written so that a value that is no number becomes a bound too.
    return v > -LIMIT ? (v < LIMIT ? v : LIMIT) : -LIMIT;
  }

  Rect plot;  // as the device gives it
  Rect ndc;
  Point scale;   // window to NDC; neither scale is ever 0, infinite or no number
  Point kscale;  // NDC to plot
  Rect win;
  Rect vp;
  Rect clip;
};

}  // namespace KYV
#endif
