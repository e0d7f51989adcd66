#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

#include "KYV/Date.h"
#include "KYV/DateTool.h"
#include "KYV/String.h"
#include "TextFormat.h"

namespace KYV {

namespace {

struct Named {
  const char* name;
  const char* format;
};
constexpr Named FORMATS[] = {
    {"RFC1123", "%d %b %Y %H:%M:%S %Z"},
    {"ISO8601", "%Y-%m-%dT%H:%M:%S%Z"},
};

// The codes that print an integer field as it is.
struct Code {
  char letter;
  int Date::*field;
  int width, digits;
  const char* missing;
};
constexpr Code CODES[] = {
    {'Y', &Date::year, 4, 1, "XXXX"}, {'m', &Date::month, 2, 2, "XX"}, {'d', &Date::day, 2, 2, "XX"},
    {'e', &Date::day, 2, 1, "XX"},    {'j', &Date::jday, 3, 1, "XXX"}, {'u', &Date::wday, 1, 1, "X"},
    {'H', &Date::hour, 2, 2, "XX"},   {'M', &Date::min, 2, 2, "XX"},
};

// A field is public and a float can be anything.
bool isSecond(float sec) { return !Const::isMissing(sec) && std::fabs(sec) < 1000.0f; }

// Below ten by its printed value, so that 9.99996 does not get a zero in front of "10.0000".
bool isOneDigit(float sec, double half) { return static_cast<double>(sec) + half < 10.0; }

std::string toName(const char* name) { return StrLib::valid(name, "XXX"); }

// What one code prints; an unknown one its own letter.
std::string toField(const Date& date, char code) {
  const auto row = std::find_if(std::begin(CODES), std::end(CODES), [&](const Code& c) { return c.letter == code; });
  if (row != std::end(CODES)) {
    const int value = date.*row->field;
    return Const::isMissing(value) ? row->missing : textFormat("%*.*d", row->width, row->digits, value);
  }
  const bool noHour = Const::isMissing(date.hour);
  switch (code) {
    case 'y':
      return Const::isMissing(date.year) ? "XX" : textFormat("%2.2d", std::abs(date.year % 100));
    case 'b':
      return toName(DateTool::getMonth(date.month));
    case 'a':
      return toName(DateTool::getDayWeek(date.wday));
    case 'l':
      return noHour ? "XX" : textFormat("%2.2d", date.hour % 12 == 0 ? 12 : date.hour % 12);
    case 'p':
      return noHour ? "XX" : date.hour < 12 ? "AM" : "PM";
    case 'S':
      return isSecond(date.sec) ? textFormat("%2.2d", static_cast<int>(std::lround(date.sec))) : "XX";
    case 's':
      if (!isSecond(date.sec)) return "XX.XXXX";
      if (isOneDigit(date.sec, 0.00005)) return textFormat("0%6.4f", static_cast<double>(date.sec));
      return textFormat("%7.4f", static_cast<double>(date.sec));
    case 'Z':
      return date.zone;
    default:
      return std::string(1, code);
  }
}

}  // namespace

int Date::toText(const char* format, String& text) const {
  const auto named = std::find_if(std::begin(FORMATS), std::end(FORMATS),
                                  [&](const Named& n) { return StrLib::equal(n.name, format); });
  if (named != std::end(FORMATS)) format = named->format;
  std::string out;
  for (const char* c = StrLib::valid(format, ""); *c; ++c) {
    if (*c != '%') {
      out += *c;
    } else if (c[1]) {
      out += toField(*this, *++c);
    }
  }
  text.copy(out.c_str());
  return format ? 1 : 0;
}

int Date::toText(String& text) const {
  const bool hours = !Const::isMissing(hour);
  const bool minutes = !Const::isMissing(min);
  const bool seconds = !Const::isMissing(sec);
  if (!hours && !minutes && !seconds) return toText("%e %b %Y", text);
  if (hours && !minutes && !seconds) return toText("%H%Z %e %b %Y", text);
  if (hours && minutes && !seconds) return toText("%H:%M%Z %e %b %Y", text);
  return toText("%H:%M:%S%Z %e %b %Y", text);
}

int Date::toString(String& text) const { return toText("%Y%m%d%H%M%s", text); }

int Date::print() const {
  std::string out;
  out += Const::isMissing(year) ? "MMMM/" : textFormat("%4.4d/", year);
  out += Const::isMissing(month) ? "MM/" : textFormat("%2.2d/", month);
  out += Const::isMissing(day) ? "MM " : textFormat("%2.2d ", day);
  out += Const::isMissing(hour) ? "MM:" : textFormat("%2.2d:", hour);
  out += Const::isMissing(min) ? "MM:" : textFormat("%2.2d:", min);
  if (!isSecond(sec)) {
    out += "MM";
  } else if (isOneDigit(sec, 0.0005)) {
    out += textFormat("0%5.3f", static_cast<double>(sec));
  } else {
    out += textFormat("%6.3f", static_cast<double>(sec));
  }
  std::printf("%s\n", out.c_str());
  return 1;
}

int Date::printSeconds() const {
  std::printf("%ld\n", static_cast<long>(secs));
  return 1;
}

}  // namespace KYV
