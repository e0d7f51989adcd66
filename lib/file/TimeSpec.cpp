// Reads the text that says which time, and so which file, is meant.
#include "KYV/TimeSpec.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "KYV/Date.h"
#include "KYV/DateTool.h"
#include "KYV/StrLib.h"

namespace KYV {

namespace {

constexpr int MIN_DATE = 8;  // characters of a text that may begin with a date
constexpr const char* DIGITS = "0123456789";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isLetter(char c, char lower) { return std::tolower(static_cast<unsigned char>(c)) == lower; }

// Passes one character; false when it is another one.
bool take(const char*& text, char c) {
  if (*text != c) return false;
  ++text;
  return true;
}

// A field of a date, of at most so many digits.
bool takeField(const char*& text, int most, int& value) {
  if (!isDigit(*text)) return false;
  value = 0;
  for (int n = 0; n < most && isDigit(*text); ++n) value = value * 10 + (*text++ - '0');
  return true;
}

void takeSeconds(const char*& text, float& value) {
  const std::string digits(text, std::strspn(text, "0123456789."));
  char* end = nullptr;
  const float seconds = std::strtof(digits.c_str(), &end);
  if (end == digits.c_str()) return;
  value = seconds;
  text += end - digits.c_str();
}

// The time of day behind a date, as far as it goes: 'T', or an optional '_', and fields with or without ':'.
void takeTime(const char*& text, bool iso, DateVal& v) {
  const char* at = text;
  if (!take(at, iso ? 'T' : '_') && iso) return;
  if (!takeField(at, 2, v.hour)) return;
  text = at;
  if ((iso && !take(at, ':')) || !takeField(at, 2, v.min)) return;
  text = at;
  if (iso && !(take(at, ':') && isDigit(*at))) return;
  takeSeconds(at, v.sec);
  text = at;
}

// The date that a text begins with, which is passed; no text that begins with an offset in days does.
void takeDate(const char*& text, DateVal& date) {
  const char* at = text;
  if (!take(at, '#') && StrLib::length(text) < MIN_DATE) return;
  if (isLetter(at[std::strspn(at, DIGITS)], 'd')) return;
  DateVal v;
  if (!takeField(at, 4, v.year)) return;
  const bool iso = take(at, '-');
  if (!takeField(at, 2, v.month) || (iso && !take(at, '-')) || !takeField(at, 2, v.day)) return;
  takeTime(at, iso, v);
  text = at;
  date = v;
}

int takeSign(const char*& text) {
  if (take(text, '+')) return TimeSpec::FORWARD;
  take(text, '-');
  return TimeSpec::BACKWARD;
}

std::int64_t takeNumber(const char*& text) {
  constexpr std::int64_t MOST = 1000000;
  std::int64_t value = 0;
  for (; isDigit(*text); ++text) value = std::min(value * 10 + (*text - '0'), MOST);
  return value;
}

// ":30": minutes or seconds.
std::int64_t takePart(const char*& text) { return text[0] == ':' && isDigit(text[1]) ? takeNumber(++text) : 0; }

// In seconds.
int takeOffset(const char*& text) {
  std::int64_t days = 0;
  std::int64_t hours = takeNumber(text);
  if (isLetter(*text, 'd')) {
    days = hours;
    hours = takeNumber(++text);
  }
  const std::int64_t minutes = takePart(text);
  const std::int64_t seconds = takePart(text);
  return static_cast<int>(std::min<std::int64_t>(days * 86400 + hours * 3600 + minutes * 60 + seconds, INT_MAX));
}

}  // namespace

TimeSpec::TimeSpec(const char* text) {
  const char* at = StrLib::valid(text, "");
  output = take(at, '>');
  named = take(at, '@');
  if (named) {
    name.copy(at);
    return;
  }
  takeDate(at, date);
  direction = takeSign(at);
  if (isDigit(*at)) {
    offset = direction * takeOffset(at);
    direction = takeSign(at);
  }
  latest = isLetter(*at, 'l');
  whole = latest || !*at;
  if (!latest) return;
  ++at;
  if (isLetter(*at, 'a')) ++at;
  if (take(at, '#')) periods = static_cast<int>(takeNumber(at));
  rest.copy(at);
  if (*at == '+' || *at == '-') {
    const int sign = takeSign(at);
    shift = sign * takeOffset(at);
  }
  whole = !*at;
}

int TimeSpec::getDate(Date& d) const {
  if (isDated()) {
    d.set(date);
  } else {
    DateTool::getNow(d);
  }
  if (offset) d += offset;
  // What is given in minutes stays so.
  if (isDated() && Const::isMissing(date.sec) && offset % 60 == 0) d.setSecond(Const::MISS);
  return 1;
}

}  // namespace KYV
