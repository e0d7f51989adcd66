#include "KYV/ForeTime.h"

#include <cmath>

#include "KYV/String.h"

namespace KYV {

int ForeTime::toTimeLabel(String& label) const {
  label.clear();
  if (Const::isMissing(hour)) return 0;
  char text[40];
  // Whole and half days from half a day on, hours otherwise.
  const float halfDays = hour / 12.0f;
  if (halfDays < 1.0f || halfDays != std::floor(halfDays)) {
    StrLib::printf(text, "%.0f hour", hour);
  } else if (std::fmod(halfDays, 2.0f) == 0.0f) {
    StrLib::printf(text, "%.0f day", halfDays / 2.0f);
  } else {
    StrLib::printf(text, "%.1f day", halfDays / 2.0f);
  }
  return label.copy(text);
}

}  // namespace KYV
