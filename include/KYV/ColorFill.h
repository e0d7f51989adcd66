#ifndef KYV_COLORFILL_H
#define KYV_COLORFILL_H

#include <vector>

#include "KYV/Const.h"
#include "KYV/PlotAttr.h"
#include "KYV/Strings.h"

namespace KYV {

class ColorMap;

/// A fill scale: thresholds in rising order, each with the attributes of the values from it up to the next,
/// "-100:off,5:blue,10:lblue". A scale without thresholds repeats, by base and interval.
class ColorFill {
 public:
  static constexpr int MAX_ENTRY = 256;

  ColorFill() { init(); }
  ColorFill(ColorMap& map, const char* text) { set(map, text); }

  int init();
  /// A list of items, or the name of a fill file (of a single word that could be either, the file); no text: the fill
  /// colours of the map. 0, without a message, when nothing was set.
  int set(ColorMap& map, const char* text);
  int set(const char* text);
  /// The resource `color_fill` (2), or the default where it is unset, "miss" or "def" (1); 0 on failure.
  int setFill(ColorMap& map, const char* dflt);
  /// Appends one item: "from-to", "value:attributes" or attributes alone.
  int decode(ColorMap& map, const char* item);
  int decode(const char* item);
  /// A fill file found along the database path, in place of what was set; 0 when it has no entry.
  [[nodiscard]] int readFile(ColorMap& map, const char* name);
  [[nodiscard]] int readFile(const char* name);
  /// Fills unset thresholds between set ones in.
  int validateValues();
  int setValues(const float* values, int n);
  bool areValuesSet() const;
  /// The entries' attributes that are none.
  const Strings& getBadItems() const { return bad; }
  /// Whether any entry has a colour.
  bool isVisible() const;
  int getNum() const { return static_cast<int>(attrs.size()); }
  float getBaseVal() const { return base; }
  float getInterval() const { return interval; }
  /// Threshold i, missing when unset or there is none.
  float getValue(int i) const;
  int setBase(float v) { return base = v, 1; }
  int setInterval(float v) { return interval = v, 1; }
  const char* getName() const { return name; }
  /// The entry of a value: Const::MISS for a missing one, -1 below the first threshold.
  int getInd(float v) const;
  /// The attributes of a value, or of entry i; without colour where nothing is drawn.
  const PlotAttr& get(float v) const { return get(getInd(v)); }
  const PlotAttr& get(int i) const;
  /// Colour index, negative where nothing is drawn.
  int getColor(float v) const;
  int getColor(int i) const;
  const char* getColorName(int i) const;
  bool validLabel(int i) const;
  const char* getLabel(int i) const;
  int print() const;

 private:
  int decodeItem(ColorMap* map, const char* item);
  int setText(ColorMap* map, const char* text);
  int readLines(ColorMap* map, const char* file);
  int append(const PlotAttr& attr, float value);
  int getRepeated(float v) const;

  std::vector<PlotAttr> attrs;
  std::vector<float> thres;  // as many
  Strings bad;
  int num_set = 0;  // thresholds before the first unset one, where the search ends
  char name[20] = "";
  float base = Const::MISS;
  float interval = Const::MISS;
};

}  // namespace KYV
#endif
