#ifndef KYV_COLORBAR_H
#define KYV_COLORBAR_H

#include <span>

#include "KYV/ColorFill.h"
#include "KYV/Range.h"

namespace KYV {

struct ParamAnswer;
template <class T>
struct ParamKey;

/// The settings of the colour-scale bar that a plot draws below its map.
class ColorBar {
 public:
  int init();
  int setFill(const ColorFill& f) { return fill = f, 1; }
  /// "ll", "lr": the left or right half of the bar's band; else all of it.
  int setLocate(const char* text);
  /// "lo=" and "ra=min:max" of a comma list.
  int setParam(const char* text);
  /// Whether an item is one of its parameters.
  static void explain(ParamAnswer& answer);
  int setRange(const Range& r) { return range = r, 1; }
  const ColorFill& getFill() const { return fill; }
  const char* getLocate() const { return locate; }
  const Range& getRange() const { return range; }
  int print() const;

 private:
  static std::span<const ParamKey<ColorBar>> getKeys();
  ColorFill fill;
  char locate[20] = "";
  Range range;
};

}  // namespace KYV
#endif
