#ifndef KYV_VARSPEC_H
#define KYV_VARSPEC_H

#include "KYV/String.h"

namespace KYV {

class Date;
class Timezone;

/// What a plot's labels say of a variable.
class VarSpec {
 public:
  VarSpec() = default;
  explicit VarSpec(const char* text) : title(text) {}

  int setTitle(const char* text) { return title.copy(text); }
  const char* getTitle() const { return title.get(); }

  /// "Maximum hail size [in]"; the title alone when there are no units.
  int toInfoLabel(const char* units, String& label) const;
  /// The date label of DateTool::createLabel, "1830Z  1 MAY 24".
  /// @param format  text before the date, "Valid"; null or empty for none
  /// @return 1; 0 and an empty label for a date that is not set
  int toDateLabel(const Date& date, const Timezone& tz, const char* format, String& label) const;

 private:
  String title;
};

}  // namespace KYV
#endif
