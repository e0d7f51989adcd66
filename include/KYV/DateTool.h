#ifndef KYV_DATETOOL_H
#define KYV_DATETOOL_H

#include <cstdint>

namespace KYV {

class Date;
class String;
class Timezone;

/// Date texts: reading of times, names of months and days, the date labels of plots and pictures.
class DateTool {
 public:
  static const char* const day_of_week[7];  // "SUN" ...
  static const char* const months[12];      // "JAN" ...
  static const char* const months_lc[12];   // "jan" ...

  /// "#YYYYMMDDhhmm" as seconds since 1970, else the number.
  static std::int64_t getSeconds(const char* text);
  /// The moment that counts as now when data are chosen: the fixed time of the program (Kyv::setInitTime), else that of
  /// the environment variable "kyvcurtime" ("#YYYYMMDDhhmm", cut anywhere after the year), else the clock.
  static int getNow(Date& date);
  /// "h" or "h:m" in minutes.
  static int getMinutes(const char* text);
  static int getCurrent(String& text);
  /// @param style  "RFC1123", "ISO8601"
  static int getCurrent(const char* style, String& text);
  /// 1 to 12, 0 for no month.
  static int decodeMonth(const char* text);
  /// Reads a date label back.
  static int decode(const char* text, Date& date);
  // Names; empty when out of range (months 1 to 12, days 0 to 6).
  static const char* getMonth(int m);
  static const char* getMonthLower(int m);
  static const char* getMonthLong(int m);
  static const char* getDayWeek(int d);
  /// Date label, "1830Z  1 MAY 24"; 0 and empty for a date that is not set.
  /// @param weekday  1: with the day of the week
  static int createLabel(const char* prefix, const Date& date, const Timezone& tz, int weekday, String& label);
  static int createLabel(const char* prefix, const Date& date, const Timezone& tz, String& label);
  static int createLabel(const Date& date, const Timezone& tz, String& label);
  static int createLabel(const Date& date, String& label);
  static int print(std::int64_t secs);
};

}  // namespace KYV
#endif
