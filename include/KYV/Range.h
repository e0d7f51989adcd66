#ifndef KYV_RANGE_H
#define KYV_RANGE_H

#include "KYV/Const.h"

namespace KYV {

/// A range of values; missing ends are open.
struct Range {
  float min = Const::MISS;
  float max = Const::MISS;
};

}  // namespace KYV
#endif
