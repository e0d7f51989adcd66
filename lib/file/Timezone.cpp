#include "KYV/Timezone.h"

#include <climits>
#include <cmath>
#include <cstdio>

#include "KYV/StrLib.h"

namespace KYV {

int Timezone::set(const char* text) {
  *this = Timezone();
  if (!StrLib::valid(text)) return 0;
  if (*text == '-' || *text == '+') pm = *text++ == '-' ? -1 : 1;
  float hours = 0.0f;
  if (std::sscanf(text, "%4[^:]:%f", name, &hours) == 2) {
    const double seconds = static_cast<double>(hours) * 3600.0;
    if (std::fabs(seconds) < INT_MAX) offset = static_cast<int>(seconds);
  }
  return 1;
}

int Timezone::print() const {
  std::printf("%s %d %d\n", name, pm, offset);
  return 1;
}

}  // namespace KYV
