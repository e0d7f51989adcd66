#ifndef KYV_FORETIME_H
#define KYV_FORETIME_H

#include "KYV/Const.h"

namespace KYV {

class String;

/// A forecast time, hours after the data's date; missing when unset.
struct ForeTime {
  float hour = Const::MISS;

  /// "6 hour", "2 day", "1.5 day"; empty when unset.
  int toTimeLabel(String& label) const;
};

}  // namespace KYV
#endif
