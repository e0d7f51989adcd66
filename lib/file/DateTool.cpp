#include "KYV/DateTool.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "KYV/Date.h"
#include "KYV/Kyv.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr const char* MONTHS_LONG[] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};

// The letters that tell a month: the first one and, where it is not enough, another.
struct MonthLetters {
  char first, other;
  int at;  // place of the other letter, 0: it is the first again
  int month;
};
constexpr MonthLetters LETTERS[] = {
    {'D', 'D', 0, 12}, {'F', 'F', 0, 2}, {'J', 'A', 1, 1}, {'J', 'N', 2, 6},  {'J', 'L', 2, 7},  {'M', 'R', 2, 3},
    {'M', 'Y', 2, 5},  {'A', 'R', 2, 4}, {'A', 'G', 2, 8}, {'N', 'N', 0, 11}, {'O', 'O', 0, 10}, {'S', 'S', 0, 9},
};

// The decimal number that a text begins with, held at the ends of its range; false when it begins with none.
bool takeNumber(const char*& text, std::int64_t& value) {
  char* end = nullptr;
  value = std::strtoll(text, &end, 10);
  if (end == text) return false;
  text = end;
  return true;
}

// The clock, unless SOURCE_DATE_EPOCH fixes it, so that the files of two runs can be compared.
std::int64_t getOutputSeconds() {
  const char* fixed = std::getenv("SOURCE_DATE_EPOCH");
  std::int64_t secs = 0;
  return fixed && takeNumber(fixed, secs) && *fixed == '\0' ? secs : Date::getCurrentSeconds();
}

}  // namespace

const char* const DateTool::day_of_week[7] = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};
const char* const DateTool::months[12] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                          "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
const char* const DateTool::months_lc[12] = {"jan", "feb", "mar", "apr", "may", "jun",
                                             "jul", "aug", "sep", "oct", "nov", "dec"};

std::int64_t DateTool::getSeconds(const char* text) {
  if (!text) return Const::MISS;
  if (text[0] == '#' && text[1] >= '0' && text[1] <= '9') {
    DateVal v;
    std::sscanf(text + 1, "%4d%2d%2d%2d%2d", &v.year, &v.month, &v.day, &v.hour, &v.min);
    return Date(v).secs;
  }
  std::int64_t secs = 0;
  return takeNumber(text, secs) ? secs : Const::MISS;
}

int DateTool::getNow(Date& date) {
  const std::int64_t fixed = Kyv::getInitTime();
  if (!Const::isMissing(static_cast<long>(fixed))) return date.set(static_cast<long>(fixed));
  const char* text = std::getenv("kyvcurtime");
  if (!StrLib::valid(text)) return date.setCurrent();
  if (*text == '#') ++text;
  DateVal v;
  v.set(1980, 1, 1, 0, 0, 0.0f);
  const int digits = static_cast<int>(std::strspn(text, "0123456789"));
  if (digits >= 4) std::sscanf(text, "%4d", &v.year);
  int DateVal::*const fields[] = {&DateVal::month, &DateVal::day, &DateVal::hour, &DateVal::min};
  int at = 4;
  for (const auto field : fields) {
    if (digits > at) std::sscanf(text + at, "%2d", &(v.*field));
    at += 2;
  }
  return date.set(v);
}

int DateTool::getMinutes(const char* text) {
  constexpr std::int64_t MOST = INT_MAX / 120;  // keeps the sum within int
  std::int64_t hours = 0;
  std::int64_t minutes = 0;
  if (!text || !takeNumber(text, hours)) return 0;
  if (*text != ':' || !takeNumber(++text, minutes)) minutes = 0;
  hours = std::clamp(hours, -MOST, MOST);
  minutes = std::clamp(minutes, -MOST, MOST);
  return static_cast<int>(hours * 60 + (hours < 0 ? -minutes : minutes));
}

int DateTool::getCurrent(String& text) { return getCurrent(nullptr, text); }

int DateTool::getCurrent(const char* style, String& text) {
  Date now;
  now.set(getOutputSeconds());
  if (StrLib::equal(style, "RFC1123")) return now.toText("%d %b %Y %H:%M:%S GMT", text);
  if (StrLib::equal(style, "ISO8601")) return now.toText("%Y-%m-%dT%H:%M:%SZ", text);
  return now.toText("%y %b %d  %H:%M:%SZ", text);
}

int DateTool::decodeMonth(const char* text) {
  if (!StrLib::valid(text)) return 0;
  const bool lower = text[0] >= 'a' && text[0] <= 'z';
  const char shift = lower ? 'a' - 'A' : 0;
  for (const MonthLetters& m : LETTERS) {
    if (text[0] == m.first + shift && StrLib::getChar(text, m.at) == m.other + shift) return m.month;
  }
  return 0;
}

const char* DateTool::getMonth(int m) { return m >= 1 && m <= 12 ? months[m - 1] : ""; }

const char* DateTool::getMonthLower(int m) { return m >= 1 && m <= 12 ? months_lc[m - 1] : ""; }

const char* DateTool::getMonthLong(int m) { return m >= 1 && m <= 12 ? MONTHS_LONG[m - 1] : ""; }

const char* DateTool::getDayWeek(int d) { return d >= 0 && d <= 6 ? day_of_week[d] : ""; }

int DateTool::print(std::int64_t secs) {
  Date date;
  date.set(secs);
  return date.print();
}

}  // namespace KYV
