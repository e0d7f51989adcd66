#ifndef KYV_DATE_H
#define KYV_DATE_H

#include <cstdint>

#include "KYV/DateVal.h"

namespace KYV {

class String;

/// A date with its seconds since 1970 and its zone. The fields show the date's own clock: secs is UTC plus off.
/// A date with missing fields keeps them missing through arithmetic and labels (an hourly date stays hourly).
/// Operations return 1, or 0 when they refuse, and then change nothing.
class Date : public DateVal {
 public:
  int wday = Const::MISS;           // 0 Sunday to 6 Saturday
  int jday = Const::MISS;           // 1 = 1 January
  std::int64_t secs = Const::MISS;  // since 1970 of the date's own clock; missing: not set
  int off = 0;                      // zone offset from UTC, seconds
  char dtype = ' ';                 // daylight rule: ' ' none, 'U' United States, 'E' Europe, 'a' Australia
  char zone[14] = "Z";              // zone name in labels

  Date() = default;
  explicit Date(long seconds) { set(seconds); }
  explicit Date(const char* text) { set(text); }
  explicit Date(const DateVal& vals) { set(vals); }
  Date(int y, int mo, int d, int h, int mi, float s) { set(y, mo, d, h, mi, s); }

  int init() { return *this = Date(), 1; }
  bool isSet() const { return !Const::isMissing(static_cast<long>(secs)); }
  /// Fields that the calendar cannot hold (years beyond int) are missing, and the result is 0.
  int set(long seconds);
  /// The current time.
  int set() { return setCurrent(); }
  int setCurrent();
  static std::int64_t getCurrentSeconds();
  /// "2024-02-29T12:30:15.5", "20240229_1230", "202402291230", each with an optional '#' in front; "cu..." is now.
  /// A text without any field gives an empty date and 0.
  int set(const char* text);
  int set(const DateVal& vals);
  int set(const DateVal& vals, int offset, const char* zoneName);
  /// @param offset  whole hours and an optional daylight rule, "-6U"
  int set(const DateVal& vals, const char* offset, const char* zoneName);
  int set(int y, int mo, int d, int h, int mi, float s);
  int getVals(DateVal& vals) const;
  DateVal get() const { return *this; }

  int setYear(int v);
  int setMonth(int v);
  int setDay(int v);
  int setHour(int v);
  int setMinute(int v);
  int setSecond(float v);
  int setFractionalSecond(float fraction);
  int setTime(int h, int mi, float s);
  int setTime(float secondsOfDay);
  /// Day number, 1 = 1970-01-01, as radar products count; the time of day is kept.
  int setDays(int n);
  int getDays() const;
  int setJulian(int dayOfYear);
  static int setJulian(int y, int dayOfYear, int& mo, int& d);
  static int getJulian(int y, int mo, int d);
  int getJulian() const { return jday; }
  int getDayOfWeek() const { return wday; }
  bool isLeap() const { return isYearLeap(year); }
  static bool isYearLeap(int y);

  int addYears(int n);
  int addMonths(int n);
  int addDays(int n);
  int addHours(int n);
  int addMinutes(int n);
  int addSeconds(float n);
  Date& operator+=(int seconds);
  /// Seconds, held at the ends of int.
  int operator-(const Date& other) const;
  bool operator<(const Date& other) const { return secs < other.secs; }
  bool operator>(const Date& other) const { return secs > other.secs; }

  int changeTimezone(int offset, const char* name);
  int setDaylightType(char type);
  int isDaylight() const;
  /// Moves to the nearest date with these fields.
  int adjustHour(int h);
  int adjustHour(int d, int h);
  int adjustMinute(int h, int mi);
  int adjustMinute(int d, int h, int mi);
  /// Replaces missing fields (not the hour) by defaults.
  int fix();

  /// Formats by % codes; "RFC1123" and "ISO8601" name two formats.
  int toText(const char* format, String& text) const;
  int toText(String& text) const;
  int toString(String& text) const;
  int print() const;
  int printSeconds() const;

 private:
  int computeSecs();
  int rebuild(std::int64_t seconds, bool keepMissing);
  int shift(std::int64_t seconds, bool keepMissing);
};

}  // namespace KYV
#endif
