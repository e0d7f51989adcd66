#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

#include "KYV/Date.h"
#include "KYV/DateTool.h"
#include "KYV/String.h"
#include "KYV/Timezone.h"
#include "TextFormat.h"

namespace KYV {

namespace {

constexpr std::size_t MAX_TIME = 24;  // characters of the time part

enum class Precision { Hour, Minute, Second };

// A time of day as labels show it: missing parts are zero and not printed.
struct Clock {
  int hour, min, sec;

  explicit Clock(const Date& date)
      : hour(date.hour),
        min(Const::isMissing(date.min) ? 0 : date.min),
        sec(date.sec >= 0.0f && date.sec <= 60.0f ? static_cast<int>(std::lround(date.sec)) : 0) {}

  // "18", "1830", "18:30:15", or without colons.
  std::string on24(Precision precision, bool colons) const {
    if (precision == Precision::Hour) return textFormat("%2.2d", hour);
    if (precision == Precision::Minute) return textFormat("%2.2d%2.2d", hour, min);
    return colons ? textFormat("%2.2d:%2.2d:%2.2d", hour, min, sec) : textFormat("%2.2d%2.2d%2.2d", hour, min, sec);
  }
  // "6 PM", "6:30 PM", "6:30:15 PM".
  std::string on12(Precision precision) const {
    const int h = hour % 12 == 0 ? 12 : hour % 12;
    const char* half = hour < 12 ? "AM" : "PM";
    if (precision == Precision::Hour) return textFormat("%d %s", h, half);
    if (precision == Precision::Minute) return textFormat("%d:%2.2d %s", h, min, half);
    return textFormat("%d:%2.2d:%2.2d %s", h, min, sec, half);
  }
};

std::string toTime(const Date& local, const Date& utc, const Timezone& tz) {
  const Precision precision = Const::isMissing(local.min)   ? Precision::Hour
                              : Const::isMissing(local.sec) ? Precision::Minute
                                                            : Precision::Second;
  const Clock clock(local);
  std::string out;
  if (!tz.isSet()) {
    out = clock.on24(precision, true) + "Z";
  } else if (tz.getPM() == 0) {
    out = clock.on24(precision, true) + (precision == Precision::Hour ? "" : " ") + local.zone;
  } else {
    out = clock.on12(precision) + " " + local.zone;
  }
  if (tz.isSet() && tz.getPM() == -1) out += " [" + Clock(utc).on24(precision, false) + "Z]";
  return out.substr(0, MAX_TIME);
}

std::string toDay(const Date& date, bool weekday) {
  std::string year = Const::isMissing(date.year) ? "XX" : textFormat("%2.2d", std::abs(date.year % 100));
  if (Const::isMissing(date.month)) return year;
  const char* month = DateTool::getMonth(date.month);
  if (Const::isMissing(date.day)) return textFormat("%3s %s", month, year.c_str());
  const std::string day = textFormat("%2d %3s %s", date.day, month, year.c_str());
  return weekday ? std::string(DateTool::getDayWeek(date.wday)) + " " + day : day;
}

// One way in which a label is written. In a form, '%' and a width are followed by what the characters are: H hour,
// M minute, S seconds, D day, B name of the month, m its number, Y year, W name of the weekday, which is not kept.
// A blank stands for any white space.
struct Pattern {
  std::size_t tail;  // matched at the last so many characters, 0: at the whole text
  const char* form;
  const char* narrow;  // read one character later when the tail begins with a blank: an hour of one digit
};
constexpr Pattern PATTERNS[] = {
    {0, "%2HZ %2D %3B %4Y", nullptr},
    {0, "%2HZ %2D %3B %2Y", nullptr},
    {17, "%2H%2MZ %2D %3B %4Y", "%1H%2M"},
    {15, "%2H%2MZ %2D %3B %2Y", "%1H%2M"},
    {21, "%2H:%2M:%2SZ %2D %3B %4Y", nullptr},
    {19, "%2H:%2M:%2SZ %2D %3B %2Y", nullptr},
    {19, "%2HZ %3W %2D %3B %4Y", nullptr},
    {17, "%2HZ %3W %2D %3B %2Y", nullptr},
    {15, "%2HZ %2D %3B %4Y", nullptr},
    {13, "%2HZ %2D %3B %2Y", nullptr},
    {0, "%2H %2D %2m %2Y", nullptr},
    // The four-digit year also reads two.
    {11, "%2D %3B %4Y", nullptr},
    {0, "%2D %3B %4Y", nullptr},
};

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

void skipSpace(std::string_view& text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
}

// A number of at most `width` characters; false when there is none.
bool takeNumber(std::string_view& text, std::size_t width, int& value) {
  skipSpace(text);
  std::size_t at = !text.empty() && text[0] == '-' ? 1 : 0;
  const std::size_t first = at;
  int sum = 0;
  for (; at < std::min(width, text.size()) && isDigit(text[at]); ++at) sum = sum * 10 + (text[at] - '0');
  if (at == first) return false;
  value = first ? -sum : sum;
  text.remove_prefix(at);
  return true;
}

std::string_view takeWord(std::string_view& text, std::size_t width) {
  skipSpace(text);
  std::size_t n = 0;
  while (n < std::min(width, text.size()) && !isSpace(text[n])) ++n;
  const std::string_view word = text.substr(0, n);
  text.remove_prefix(n);
  return word;
}

bool takeField(std::string_view& text, char what, std::size_t width, DateVal& val) {
  int second = 0;
  switch (what) {
    case 'H':
      return takeNumber(text, width, val.hour);
    case 'M':
      return takeNumber(text, width, val.min);
    case 'S':
      if (!takeNumber(text, width, second)) return false;
      val.sec = static_cast<float>(second);
      return true;
    case 'D':
      return takeNumber(text, width, val.day);
    case 'm':
      return takeNumber(text, width, val.month);
    case 'Y':
      return takeNumber(text, width, val.year);
    case 'B':
      // What names no month is no label.
      val.month = DateTool::decodeMonth(std::string(takeWord(text, width)).c_str());
      return val.month != 0;
    default:
      return !takeWord(text, width).empty();
  }
}

bool match(std::string_view text, const char* form, DateVal& val) {
  for (; *form; ++form) {
    if (*form == '%') {
      if (!takeField(text, form[2], static_cast<std::size_t>(form[1] - '0'), val)) return false;
      form += 2;
    } else if (*form == ' ') {
      skipSpace(text);
    } else {
      if (text.empty() || text.front() != *form) return false;
      text.remove_prefix(1);
    }
  }
  return true;
}

bool match(std::string_view text, const Pattern& pattern, DateVal& val) {
  if (text.size() < pattern.tail) return false;
  const std::size_t at = pattern.tail ? text.size() - pattern.tail : 0;
  // A tail that cuts a number is another kind of label.
  if (at > 0 && isDigit(text[at]) && isDigit(text[at - 1])) return false;
  if (!match(text.substr(at), pattern.form, val)) return false;
  const bool narrow = pattern.narrow && text[at] == ' ' && isDigit(text[at + 1]);
  return !narrow || match(text.substr(at + 1), pattern.narrow, val);
}

}  // namespace

int DateTool::createLabel(const char* prefix, const Date& date, const Timezone& tz, int weekday, String& label) {
  std::string out;
  if (!date.isSet()) return label.clear(), 0;
  if (StrLib::valid(prefix)) out = std::string(prefix) + " ";
  Date local = date;
  if (tz.isSet()) {
    const Timezone::Local zone = tz.at(date.secs);
    local.changeTimezone(zone.offset, zone.name.c_str());
    // A name of the system's data is not cut.
    if (Const::isMissing(tz.getOffset())) StrLib::copy(local.zone, zone.name.c_str());
  }
  const bool timed = !Const::isMissing(local.month) && !Const::isMissing(local.day) && !Const::isMissing(local.hour);
  if (timed) out += toTime(local, date, tz) + " ";
  out += toDay(local, weekday == 1);
  return label.copy(out.c_str()), 1;
}

int DateTool::createLabel(const char* prefix, const Date& date, const Timezone& tz, String& label) {
  return createLabel(prefix, date, tz, 0, label);
}

int DateTool::createLabel(const Date& date, const Timezone& tz, String& label) {
  return createLabel(nullptr, date, tz, 0, label);
}

int DateTool::createLabel(const Date& date, String& label) { return createLabel(nullptr, date, Timezone(), 0, label); }

int DateTool::decode(const char* text, Date& date) {
  const std::string_view label(StrLib::valid(text, ""));
  for (const Pattern& pattern : PATTERNS) {
    DateVal val;
    if (!match(label, pattern, val)) continue;
    if (val.year < 50) val.year += 2000;
    if (val.year < 200) val.year += 1900;
    return date.set(val);
  }
  return 0;
}

}  // namespace KYV
