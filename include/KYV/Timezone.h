#ifndef KYV_TIMEZONE_H
#define KYV_TIMEZONE_H

#include <cstdint>
#include <string>

#include "KYV/Const.h"

namespace KYV {

class NearWord;

/// The user's display zone, "CDT:-5": 24-hour clock; "+CDT:-5": AM and PM; "-CDT:-5": AM and PM, and UTC in brackets.
/// In place of name and hours a zone of the system's data may stand by a name with a '/', "America/Chicago", whose
/// rules then tell the offset and the name of every moment.
class Timezone {
 public:
  Timezone() = default;
  explicit Timezone(const char* text) { set(text); }

  /// 0 (and no zone) for an empty text.
  int set(const char* text);
  bool isSet() const { return !Const::isMissing(offset) || !zone.empty(); }
  int getPM() const { return pm; }
  /// Seconds from UTC; Const::MISS for a zone with rules, which has no one offset.
  int getOffset() const { return offset; }
  const char* getName() const { return name; }
  /// Offset and name as they are at a moment.
  struct Local {
    int offset;
    std::string name;
  };
  /// @param secs  seconds since 1970
  Local at(std::int64_t secs) const;
  /// Offers the zones of the system's data.
  static void offerZones(NearWord& near);
  /// "%s %d %d\n" on standard output: name, clock style, offset.
  int print() const;

 private:
  char name[10] = "";
  int pm = 0;  // 0 24-hour clock, 1 AM/PM, -1 AM/PM and UTC in brackets
  int offset = Const::MISS;
  std::string zone;  // of the system's data
};

}  // namespace KYV
#endif
