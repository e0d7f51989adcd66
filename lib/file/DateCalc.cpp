#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <iterator>

#include "KYV/Date.h"
#include "KYV/StrLib.h"

namespace KYV {

namespace {

constexpr std::int64_t MINUTE = 60;
constexpr std::int64_t HOUR = 3600;
constexpr std::int64_t DAY = 86400;

// Below this a year would be taken for one of two digits.
constexpr std::int64_t FIRST_YEAR = 200;

bool isYear(std::int64_t y) { return y >= FIRST_YEAR && y <= INT_MAX; }

// A daylight rule: from a Sunday at 02:00 to another. A Sunday is named by the earliest day of the month that it can
// be: 1 the first one, 8 the second, 25 the last one of 31 days.
struct Rule {
  char type;
  int firstYear, lastYear;
  int startMonth, startDay;
  int endMonth, endDay;
};
constexpr Rule RULES[] = {
    {'U', INT_MIN, 2006, 4, 1, 10, 25},
    {'U', 2007, INT_MAX, 3, 8, 11, 1},
    {'E', INT_MIN, INT_MAX, 3, 25, 10, 25},
    {'a', INT_MIN, INT_MAX, 9, 24, 4, 1},
};
constexpr int SWITCH_HOUR = 2;

}  // namespace

int Date::addYears(int n) {
  const std::int64_t y = std::int64_t{year} + n;
  if (Const::isMissing(year) || !isYear(y)) return 0;
  year = static_cast<int>(y);
  return computeSecs();
}

int Date::addMonths(int n) {
  if (Const::isMissing(month)) return 0;
  const std::int64_t total = std::int64_t{month} - 1 + n;
  const std::int64_t mo = (total % 12 + 12) % 12;
  if (!Const::isMissing(year)) {
    const std::int64_t y = year + (total - mo) / 12;
    if (!isYear(y)) return 0;
    year = static_cast<int>(y);
  }
  month = static_cast<int>(mo) + 1;
  return computeSecs();
}

int Date::addDays(int n) { return shift(n * DAY, true); }

int Date::addHours(int n) { return shift(n * HOUR, true); }

int Date::addMinutes(int n) { return shift(n * MINUTE, true); }

int Date::addSeconds(float n) {
  constexpr float MOST = 9.0e18f;  // what a 64-bit count holds
  if (!(std::fabs(n) < MOST)) return 0;
  return shift(static_cast<std::int64_t>(n), true);
}

Date& Date::operator+=(int seconds) {
  shift(seconds, false);
  return *this;
}

int Date::operator-(const Date& other) const {
  std::int64_t seconds = 0;
  if (__builtin_sub_overflow(secs, other.secs, &seconds)) return secs < other.secs ? INT_MIN : INT_MAX;
  return static_cast<int>(std::clamp<std::int64_t>(seconds, INT_MIN, INT_MAX));
}

int Date::shift(std::int64_t seconds, bool keepMissing) {
  std::int64_t moved = 0;
  if (!isSet() || __builtin_add_overflow(secs, seconds, &moved)) return 0;
  rebuild(moved, keepMissing);
  return 1;
}

int Date::changeTimezone(int offset, const char* name) {
  if (!shift(std::int64_t{offset} - off, true)) return 0;
  off = offset;
  StrLib::copy(zone, sizeof zone, StrLib::valid(name, ""), 3);
  return 1;
}

int Date::setDaylightType(char type) { return dtype = type, 1; }

int Date::isDaylight() const {
  const auto rule = std::find_if(std::begin(RULES), std::end(RULES), [this](const Rule& r) {
    return r.type == dtype && year >= r.firstYear && year <= r.lastYear;
  });
  if (rule == std::end(RULES) || Const::isMissing(month)) return 0;

  // Whether the switch on the Sunday that can first be on that day is over; the latest Sunday so far tells.
  const auto isOver = [this](int firstDay) {
    if (Const::isMissing(day) || Const::isMissing(wday)) return false;
    const int sunday = day - wday;
    if (sunday < firstDay) return false;
    return wday != 0 || sunday >= firstDay + 7 || (!Const::isMissing(hour) && hour >= SWITCH_HOUR);
  };
  if (month == rule->startMonth) return isOver(rule->startDay);
  if (month == rule->endMonth) return !isOver(rule->endDay);
  const bool between =
      month > std::min(rule->startMonth, rule->endMonth) && month < std::max(rule->startMonth, rule->endMonth);
  // In the southern hemisphere the standard time lies between the two.
  return between == (rule->startMonth < rule->endMonth);
}

int Date::adjustHour(int h) {
  if (h < 0 || h > 23) return 0;
  const int later = Const::isMissing(hour) ? 0 : h - hour;
  hour = h;
  computeSecs();
  if (later > 12) return addDays(-1);
  if (later < -12) return addDays(1);
  return 1;
}

int Date::adjustHour(int d, int h) {
  if (d < 1 || d > 31 || h < 0 || h > 23) return 0;
  setHour(h);
  if (Const::isMissing(day)) return setDay(d);
  const int later = d - day;
  if (std::abs(later) <= 5) return addDays(later);
  setDay(d);
  return addMonths(later > 0 ? -1 : 1);
}

int Date::adjustMinute(int h, int mi) {
  if (mi < 0 || mi > 59 || !adjustHour(h)) return 0;
  return setMinute(mi);
}

int Date::adjustMinute(int d, int h, int mi) {
  if (mi < 0 || mi > 59 || !adjustHour(d, h)) return 0;
  return setMinute(mi);
}

}  // namespace KYV
