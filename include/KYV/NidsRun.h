#ifndef KYV_NIDSRUN_H
#define KYV_NIDSRUN_H

namespace KYV {

/// Bins or cells of one level.
struct NidsRun {
  int run = 0;       // how many
  int ival = 0;      // raw level
  float val = 0.0f;  // data units, or Const::MISS
  int print() const;
};

}  // namespace KYV
#endif
