#include "KYV/DateVal.h"

#include <algorithm>
#include <cstdio>

namespace KYV {

namespace {

constexpr std::int64_t MINUTE = 60;
constexpr std::int64_t HOUR = 3600;
constexpr std::int64_t DAY = 86400;

// Resets a field that is present and out of range.
void hold(int& field, int least, int most) {
  if (!Const::isMissing(field) && (field < least || field > most)) field = least;
}

// Rounds down, also below zero.
constexpr std::int64_t divideDown(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

void printField(int field, char after) {
  if (Const::isMissing(field)) {
    std::printf("M%c", after);
  } else {
    std::printf("%d%c", field, after);
  }
}

}  // namespace

int DateVal::set(int y, int mo, int d, int h, int mi, float s) {
  year = y;
  month = mo;
  day = d;
  hour = h;
  min = mi;
  sec = s;
  return 1;
}

int DateVal::validate() {
  if (!Const::isMissing(year)) {
    if (year < 0) {
      year = 1980;
    } else if (year < 50) {
      year += 2000;
    } else if (year < 200) {
      year += 1900;
    }
  } else if (Const::isMissing(month) && Const::isMissing(day) && Const::isMissing(hour) && Const::isMissing(min) &&
             Const::isMissing(sec)) {
    return 0;
  }
  hold(month, 1, 12);
  hold(day, 1, 31);
  hold(hour, 0, 23);
  hold(min, 0, 60);
  // Also not a number.
  if (!Const::isMissing(sec) && !(sec >= 0.0f && sec <= 60.0f)) sec = 0.0f;
  return 1;
}

std::int64_t DateVal::computeSecs() const {
  DateVal v = *this;
  if (!v.validate()) return Const::MISS;
  std::int64_t secs = 0;
  if (!Const::isMissing(v.sec)) secs += static_cast<std::int64_t>(v.sec);
  if (!Const::isMissing(v.min)) secs += v.min * MINUTE;
  if (!Const::isMissing(v.hour)) secs += v.hour * HOUR;
  if (!Const::isMissing(v.day)) secs += (v.day - 1) * DAY;
  if (!Const::isMissing(v.month)) secs += num_day[static_cast<std::size_t>(v.month - 1)] * DAY;
  if (!Const::isMissing(v.year)) {
    // Every fourth year is a leap year here, which is true from 1901 to 2099. A missing month is January.
    const std::int64_t years = std::int64_t{v.year} - 1900;
    const bool beforeLeapDay = v.year % 4 == 0 && v.month <= 2;
    const std::int64_t leapDays = divideDown(years, 4) - 17 - (beforeLeapDay ? 1 : 0);
    secs += ((years - 70) * 365 + leapDays) * DAY;
  }
  return secs;
}

int DateVal::print() const {
  printField(year, '/');
  printField(month, '/');
  printField(day, ' ');
  printField(hour, ':');
  printField(min, ':');
  if (Const::isMissing(sec)) {
    std::printf("M\n");
  } else {
    std::printf("%.3f\n", static_cast<double>(sec));
  }
  return 1;
}

}  // namespace KYV
