#ifndef KYV_DATEVAL_H
#define KYV_DATEVAL_H

#include <array>
#include <cstdint>

#include "KYV/Const.h"

namespace KYV {

/// A broken-down date; every field may be missing.
struct DateVal {
  int year = Const::MISS;   // four digits
  int month = Const::MISS;  // 1 to 12
  int day = Const::MISS;    // 1 to 31
  int hour = Const::MISS;   // 0 to 23
  int min = Const::MISS;    // 0 to 60
  float sec = Const::MISS;  // 0 to 60 with fraction

  // Days before month m at index m - 1, the year's length at index 12.
  static constexpr std::array<int, 13> num_day = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
  static constexpr std::array<int, 13> num_day_leap = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366};

  int init() { return *this = DateVal(), 1; }
  int set(int y, int mo, int d, int h, int mi, float s);
  /// Brings fields that are out of range back into it; 0 for a date without any field.
  int validate();
  /// Seconds since 1970 (within the year when there is none); Const::MISS for an invalid date.
  std::int64_t computeSecs() const;
  int getYear() const { return year; }
  int getMonth() const { return month; }
  int getDay() const { return day; }
  int getHour() const { return hour; }
  int getMinute() const { return min; }
  float getSecond() const { return sec; }
  int setYear(int v) { return year = v, 1; }
  int setMonth(int v) { return month = v, 1; }
  int setDay(int v) { return day = v, 1; }
  int setHour(int v) { return hour = v, 1; }
  int setMinute(int v) { return min = v, 1; }
  int setSecond(float v) { return sec = v, 1; }
  int print() const;
};

}  // namespace KYV
#endif
