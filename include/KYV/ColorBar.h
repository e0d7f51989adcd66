#ifndef KYV_COLORBAR_H
#define KYV_COLORBAR_H

#include "KYV/ColorFill.h"
#include "KYV/Range.h"

namespace KYV {

/// The settings of the colour-scale bar that a plot draws below its map.
class ColorBar {
 public:
  int init();
  int setFill(const ColorFill& f) { return fill = f, 1; }
  /// "ll", "lr": the left or right half of the bar's band; else all of it.
  int setLocate(const char* text);
  /// "lo=" and "ra=min:max" of a comma list.
  int setParam(const char* text);
  int setRange(const Range& r) { return range = r, 1; }
  const ColorFill& getFill() const { return fill; }
  const char* getLocate() const { return locate; }
  const Range& getRange() const { return range; }
  int print() const;

 private:
  ColorFill fill;
  char locate[20] = "";
  Range range;
};

}  // namespace KYV
#endif
