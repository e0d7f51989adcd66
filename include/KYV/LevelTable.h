#ifndef KYV_LEVELTABLE_H
#define KYV_LEVELTABLE_H

#include <vector>

namespace KYV {

class NidsFile;
struct ProductInfo;

/// What the levels of a product's image stand for, by the published format: every level has a state, and most have a
/// value in the unit of ProductInfo.
class LevelTable {
 public:
  enum class State {
    Value,
    Below,    // the threshold of what is sent; nothing was received, or nothing fell
    NoData,   // not measured, or beyond the reach of the algorithm
    Folded,   // an echo of which nobody knows the range
    Class,    // of hydrometeors and the like: the value is its number
    Topped,   // the value is the least: the top lies above the highest beam
    Outside,  // the coding has no such level
  };
  struct Level {
    State state = State::Outside;
    float value = 0.0f;     // of Value, Class and Topped
    const char* flag = "";  // the format's word for a level without value or class: "TH", "ND", "RF", "BI", "GC" ...
    const char* sign = "";  // "<" or ">" in front of a value that stands for all beyond it
    bool hasValue() const { return state == State::Value || state == State::Class || state == State::Topped; }
  };

  /// @param info  of the product's code
  LevelTable(const NidsFile& product, const ProductInfo& info);
  /// Level n of the image; Outside for any that the coding does not have.
  Level get(int n) const;

 private:
  std::vector<Level> levels;  // those of a byte
  bool longer = false;        // those of more than a byte go on by scale and offset, up to the greatest
  int greatest = 0;
  float scale = 1.0f, offset = 0.0f;
};

}  // namespace KYV
#endif
