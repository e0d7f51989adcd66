#ifndef KYV_NIDSRADIAL_H
#define KYV_NIDSRADIAL_H

namespace KYV {

/// The header of one radial.
struct NidsRadial {
  float ang0 = 0.0f;  // start angle, degrees clockwise from north
  float ang1 = 0.0f;  // width, degrees
  int print() const;
};

}  // namespace KYV
#endif
