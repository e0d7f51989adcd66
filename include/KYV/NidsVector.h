#ifndef KYV_NIDSVECTOR_H
#define KYV_NIDSVECTOR_H

namespace KYV {

/// A line of a vector packet, in I and J of its two ends.
struct NidsVector {
  float val = 0.0f;  // the packet's value
  float x1 = 0.0f;
  float y1 = 0.0f;
  float x2 = 0.0f;
  float y2 = 0.0f;
  int print() const;
};

}  // namespace KYV
#endif
