#ifndef KYV_COLORMAP_H
#define KYV_COLORMAP_H

#include <vector>

#include "KYV/Color.h"
#include "KYV/RGB.h"

namespace KYV {

/// The table of named colours. Indices: Const::MISS for no name, -1 for "off", "none", "back" and unknown names (draw
/// nothing), -2 for "end".
class ColorMap {
 public:
  ColorMap() = default;
  explicit ColorMap(int max) { init(max); }

  int init(int max);
  int set(const ColorMap& other) { return *this = other, 1; }
  /// The index of the new or redefined colour; -1 with a warning when the table is full.
  int add(const char* name, float r, float g, float b);
  int add(const char* name, const RGB& rgb) { return add(name, rgb.red, rgb.green, rgb.blue); }
  /// Whether a name stands for drawing nothing.
  static bool isOff(const char* name);
  /// The colour of "#rrggbb" or "#rrrgggbbb"; false for any other text.
  static bool decode(const char* text, RGB& rgb);
  /// Finds a name; "#rrggbb" and "#rrrgggbbb" (decimal) are added, a number is the index itself.
  int getInd(const char* name);
  // Indices at or beyond the count mean the last entry.
  const char* getName(int i) const;
  int get(int i, RGB& rgb) const;
  int getRGB(int i, float& r, float& g, float& b) const;
  int getIRGB(int i, int& r, int& g, int& b) const;
  int setValue(int i, int value);
  int getValue(int i) const;
  int getValue(const char* name);
  int getNum() const { return static_cast<int>(colors.size()); }
  int getMax() const { return capacity; }
  int setNumFill(int n) { return num_fill = n, 1; }
  /// How many of the first colours make the default fill scale.
  int getNumFill() const { return num_fill; }
  bool isColorNear(int i, const RGB& rgb) const;
  int print() const;

 private:
  int find(const char* name) const;
  const Color* entry(int i) const;

  std::vector<Color> colors;
  int capacity = 0;
  int num_fill = 0;
};

}  // namespace KYV
#endif
