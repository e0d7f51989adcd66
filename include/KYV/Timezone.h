#ifndef KYV_TIMEZONE_H
#define KYV_TIMEZONE_H

#include "KYV/Const.h"

namespace KYV {

/// The user's display zone, "CDT:-5": 24-hour clock; "+CDT:-5": AM and PM; "-CDT:-5": AM and PM, and UTC in brackets.
class Timezone {
 public:
  Timezone() = default;
  explicit Timezone(const char* text) { set(text); }

  /// 0 (and no zone) for an empty text.
  int set(const char* text);
  bool isSet() const { return !Const::isMissing(offset); }
  int getPM() const { return pm; }
  /// Seconds from UTC.
  int getOffset() const { return offset; }
  const char* getName() const { return name; }
  /// "%s %d %d\n" on standard output: name, clock style, offset.
  int print() const;

 private:
  char name[10] = "";
  int pm = 0;  // 0 24-hour clock, 1 AM/PM, -1 AM/PM and UTC in brackets
  int offset = Const::MISS;
};

}  // namespace KYV
#endif
