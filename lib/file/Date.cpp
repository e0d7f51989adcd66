#include "KYV/Date.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "KYV/StrLib.h"

namespace KYV {

namespace {

bool isIn(int value, int least, int most) { return Const::isMissing(value) || (value >= least && value <= most); }

// The calendar of a count of seconds; false when its year is beyond int.
bool breakDown(std::int64_t seconds, std::tm& tm) {
  const std::time_t t = static_cast<std::time_t>(seconds);
  return gmtime_r(&t, &tm) && tm.tm_year <= INT_MAX - 1900;
}

// Whole days from 1970-01-01 to the first of a year, Gregorian.
std::int64_t daysBefore(std::int64_t y) {
  const std::int64_t past = y - 1;
  const auto down = [](std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); };
  return (y - 1970) * 365 + down(past, 4) - down(past, 100) + down(past, 400) - 477;  // 477 leap days before 1970
}

}  // namespace

// Takes a count of seconds and shows it in the fields. With keepMissing those of second, minute, hour and day that
// were missing stay so: an hourly date stays hourly.
int Date::rebuild(std::int64_t seconds, bool keepMissing) {
  const DateVal old = *this;
  DateVal::init();
  secs = seconds;
  wday = jday = Const::MISS;
  std::tm tm = {};
  if (!isSet() || !breakDown(seconds, tm)) return 0;
  DateVal::set(tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, static_cast<float>(tm.tm_sec));
  wday = tm.tm_wday;
  jday = tm.tm_yday + 1;
  if (!keepMissing) return 1;
  if (Const::isMissing(old.sec)) sec = Const::MISS;
  if (Const::isMissing(old.min)) min = Const::MISS;
  if (Const::isMissing(old.hour)) hour = Const::MISS;
  if (Const::isMissing(old.day)) day = Const::MISS;
  return 1;
}

// Brings the seconds after the fields; 0 for a date without any field.
int Date::computeSecs() {
  secs = wday = jday = Const::MISS;
  if (!validate()) return 0;
  secs = DateVal::computeSecs();
  std::tm tm = {};
  if (breakDown(secs, tm)) {
    wday = tm.tm_wday;
    jday = tm.tm_yday + 1;
  }
  return 1;
}

int Date::set(long seconds) { return rebuild(seconds, false); }

int Date::setCurrent() { return rebuild(getCurrentSeconds(), false); }

std::int64_t Date::getCurrentSeconds() { return std::time(nullptr); }

int Date::set(const char* text) {
  if (!text) return init(), 0;
  if (std::strncmp(text, "cu", 2) == 0) return init(), setCurrent();
  if (*text == '#') ++text;
  DateVal v;
  // Fields of a few digits cannot overflow, and the seconds are checked for their range.
  int num = std::sscanf(text, "%4d-%2d-%2dT%2d:%2d:%f", &v.year, &v.month, &v.day, &v.hour, &v.min, &v.sec);
  if (num < 3) {
    v.init();
    num = std::sscanf(text, "%4d%2d%2d_%2d%2d%f", &v.year, &v.month, &v.day, &v.hour, &v.min, &v.sec);
    if (num < 4) {
      v.init();
      std::sscanf(text, "%4d%2d%2d%2d%2d%f", &v.year, &v.month, &v.day, &v.hour, &v.min, &v.sec);
    }
  }
  return set(v);
}

int Date::set(const DateVal& vals) {
  const DateVal v = vals;  // may be our own fields
  init();
  static_cast<DateVal&>(*this) = v;
  if (!Const::isMissing(year) && !Const::isMissing(day) && Const::isMissing(month)) {
    int mo = 0;
    int d = 0;
    if (setJulian(year, day, mo, d)) {
      month = mo;
      day = d;
    }
  }
  return computeSecs();
}

int Date::set(const DateVal& vals, int offset, const char* zoneName) {
  const int result = set(vals);
  off = offset;
  StrLib::copy(zone, sizeof zone, StrLib::valid(zoneName, ""), 3);
  return result;
}

int Date::set(const DateVal& vals, const char* offset, const char* zoneName) {
  const int result = set(vals);
  if (offset) {
    char* end = nullptr;
    const long hours = std::strtol(offset, &end, 10);
    if (hours >= INT_MIN / 3600 && hours <= INT_MAX / 3600) off = static_cast<int>(hours * 3600);
    if (end != offset && *end) dtype = *end;
  }
  StrLib::copy(zone, zoneName);
  return result;
}

int Date::set(int y, int mo, int d, int h, int mi, float s) {
  DateVal v;
  v.set(y, mo, d, h, mi, s);
  return set(v);
}

int Date::getVals(DateVal& vals) const { return vals = *this, 1; }

int Date::setYear(int v) {
  if (v < 0 && !Const::isMissing(v)) return 0;
  year = v;  // computeSecs() gives two digits their century
  computeSecs();
  return 1;
}

int Date::setMonth(int v) {
  if (!isIn(v, 1, 12)) return 0;
  month = v;
  computeSecs();
  return 1;
}

int Date::setDay(int v) {
  if (!isIn(v, 1, 31)) return 0;
  day = v;
  computeSecs();
  return 1;
}

int Date::setHour(int v) {
  if (!isIn(v, 0, 23)) return 0;
  hour = v;
  computeSecs();
  return 1;
}

int Date::setMinute(int v) {
  if (!isIn(v, 0, 59)) return 0;
  min = v;
  computeSecs();
  return 1;
}

int Date::setSecond(float v) {
  if (!Const::isMissing(v) && !(v >= 0.0f && v <= 59.99999f)) return 0;
  sec = v;
  computeSecs();
  return 1;
}

int Date::setFractionalSecond(float fraction) {
  if (Const::isMissing(fraction) || Const::isMissing(sec)) return 1;
  if (!(fraction >= 0.0f && fraction < 1.0f) || sec + fraction >= 60.0f) return 0;
  sec += fraction;
  computeSecs();
  return 1;
}

int Date::setTime(int h, int mi, float s) { return set(Const::MISS, Const::MISS, Const::MISS, h, mi, s); }

int Date::setTime(float secondsOfDay) {
  if (!(secondsOfDay >= 0.0f && secondsOfDay < 86400.0f)) return 0;
  const int whole = static_cast<int>(secondsOfDay);
  const int minutes = whole / 60;
  return setTime(minutes / 60, minutes % 60, secondsOfDay - static_cast<float>(minutes * 60));
}

int Date::setDays(int n) {
  if (n < 1) return 0;
  constexpr int CYCLE = 146097;  // days of 400 years
  int y = 1970 + (n - 1) / CYCLE * 400;
  int d = (n - 1) % CYCLE + 1;
  while (!setJulian(y, d, month, day)) d -= isYearLeap(y++) ? num_day_leap[12] : num_day[12];
  year = y;
  return computeSecs();
}

int Date::getDays() const {
  if (Const::isMissing(year) || Const::isMissing(month) || Const::isMissing(day)) return Const::MISS;
  const std::int64_t days = daysBefore(year) + getJulian(year, month, day);
  return days >= INT_MIN && days <= INT_MAX ? static_cast<int>(days) : Const::MISS;
}

int Date::setJulian(int dayOfYear) {
  int mo = 0;
  int d = 0;
  if (!setJulian(year, dayOfYear, mo, d)) return 0;
  month = mo;
  day = d;
  return computeSecs();
}

int Date::setJulian(int y, int dayOfYear, int& mo, int& d) {
  const auto& table = isYearLeap(y) ? num_day_leap : num_day;
  if (dayOfYear < 1 || dayOfYear > table[12]) return 0;
  const auto month1 = std::lower_bound(table.begin(), table.end(), dayOfYear);  // the first day count that holds it
  mo = static_cast<int>(month1 - table.begin());
  d = dayOfYear - month1[-1];
  return 1;
}

int Date::getJulian(int y, int mo, int d) {
  const auto& table = isYearLeap(y) ? num_day_leap : num_day;
  const std::int64_t days = std::int64_t{table[static_cast<std::size_t>(std::clamp(mo, 1, 12) - 1)]} + d;
  return static_cast<int>(std::min<std::int64_t>(days, INT_MAX));
}

bool Date::isYearLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int Date::fix() {
  if (Const::isMissing(sec)) sec = 0.0f;
  if (Const::isMissing(min)) min = 0;
  if (Const::isMissing(day)) day = 1;
  if (Const::isMissing(month)) month = 1;
  if (Const::isMissing(year)) year = 1970;
  return computeSecs();
}

}  // namespace KYV
