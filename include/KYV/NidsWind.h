#ifndef KYV_NIDSWIND_H
#define KYV_NIDSWIND_H

namespace KYV {

/// A wind of a wind-barb packet.
struct NidsWind {
  float val = 0.0f;  // its level as a data level; Const::MISS when it names none
  float x = 0.0f;    // I
  float y = 0.0f;    // J
  float dir = 0.0f;  // where it comes from, degrees
  float spd = 0.0f;  // knots
  int print() const;
};

}  // namespace KYV
#endif
