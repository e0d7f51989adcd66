#include "KYV/VarSpec.h"

#include "KYV/Date.h"
#include "KYV/DateTool.h"
#include "KYV/Timezone.h"

namespace KYV {

int VarSpec::toInfoLabel(const char* units, String& label) const {
  label.copy(title);
  if (StrLib::valid(units)) {
    label.append(" [");
    label.append(units);
    label.append("]");
  }
  return 1;
}

int VarSpec::toDateLabel(const Date& date, const Timezone& tz, const char* format, String& label) const {
  return StrLib::valid(format) ? DateTool::createLabel(format, date, tz, label)
                               : DateTool::createLabel(date, tz, label);
}

}  // namespace KYV
