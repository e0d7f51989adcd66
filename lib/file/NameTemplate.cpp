#include "NameTemplate.h"

#include <algorithm>
#include <iterator>

#include "KYV/StrLib.h"

namespace KYV {

namespace {

constexpr int DAY = 86400;
constexpr int HOUR = 3600;
constexpr int MINUTE = 60;
constexpr int MAX_NUMBER = 9999;

// clang-format off
constexpr DateCode DATE_CODES[] = {
    {'Y', 4, &DateVal::year,  DateCode::NUMBER,      "0000", 0},
    {'y', 2, &DateVal::year,  DateCode::SHORT_YEAR,  "00",   0},
    {'m', 2, &DateVal::month, DateCode::NUMBER,      "00",   0},
    {'b', 3, &DateVal::month, DateCode::LOWER_MONTH, "xxx",  0},
    {'B', 3, &DateVal::month, DateCode::UPPER_MONTH, "XXX",  0},
    {'d', 2, &DateVal::day,   DateCode::NUMBER,      "00",   DAY},
    {'j', 3, &DateVal::day,   DateCode::DAY_OF_YEAR, "000",  DAY},
    {'h', 2, &DateVal::hour,  DateCode::NUMBER,      "00",   HOUR},
    {'n', 2, &DateVal::min,   DateCode::NUMBER,      "00",   MINUTE},
};
// clang-format on

struct PathCode {
  char letter;
  const char* resource;
};
constexpr PathCode PATH_CODES[] = {
    {'C', "con_path"},   {'D', "data_path"}, {'F', "file_path"}, {'G', "grid_path"}, {'I', "image_path"},
    {'M', "model_path"}, {'R', "raw_path"},  {'S', "sat_path"},  {'T', "text_path"}, {'W', "watch_path"},
};

template <class Row, std::size_t N>
const Row* findRow(const Row (&rows)[N], char letter) {
  const Row* row = std::find_if(std::begin(rows), std::end(rows), [=](const Row& r) { return r.letter == letter; });
  return row == std::end(rows) ? nullptr : row;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

const DateCode* DateCode::find(char letter) { return findRow(DATE_CODES, letter); }

const char* findPathResource(char letter) {
  const PathCode* row = findRow(PATH_CODES, letter);
  return row ? row->resource : nullptr;
}

bool NameTemplate::next(NameCode& code) {
  while (!rest.empty()) {
    const char c = rest.front();
    if (c == '%') {
      rest.remove_prefix(1);
      if (nextCode(code)) return true;
      continue;
    }
    code = {NameCode::TEXT, c, 0, c == ' ' ? std::string_view("_") : rest.substr(0, 1)};
    rest.remove_prefix(1);
    if (c != '{' && c != '}') return true;
  }
  return false;
}

// A code whose '%' is passed; false for a '%' at the very end.
bool NameTemplate::nextCode(NameCode& code) {
  int n = 0;
  const bool negative = !rest.empty() && rest.front() == '-';
  if (negative) rest.remove_prefix(1);
  for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1)) {
    n = std::min(n * 10 + (rest.front() - '0'), MAX_NUMBER);
  }
  if (rest.empty()) return false;
  const char letter = rest.front();
  code = {NameCode::KEY, letter, negative ? 0 : n, {}};
  if (letter == '{') {
    const std::size_t end = std::min(rest.find('}'), rest.size());
    code.kind = NameCode::DIRECTORY;
    code.text = rest.substr(1, end - 1);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return true;
  }
  if (letter == '%') {
    code.kind = NameCode::TEXT;
    code.text = rest.substr(0, 1);
  } else if (DateCode::find(letter)) {
    code.kind = NameCode::DATE;
  } else if (const char* resource = findPathResource(letter)) {
    code.kind = NameCode::DIRECTORY;
    code.text = resource;
  } else if (letter == 'e') {
    code.kind = NameCode::EXTENSION;
  } else if (letter == 'f') {
    code.kind = NameCode::FORECAST;
  } else if (letter == '?') {
    code.kind = NameCode::ANY;
  }
  rest.remove_prefix(1);
  return true;
}

int NameTemplate::getPeriod(const char* text) {
  int period = Const::MISS;
  NameTemplate walk(StrLib::valid(text, ""));
  NameCode code;
  while (walk.next(code)) {
    if (code.kind != NameCode::DATE) continue;
    const int unit = DateCode::find(code.letter)->period;
    const int secs = unit * std::max(code.n, 1);
    if (unit && (Const::isMissing(period) || secs < period)) period = secs;
  }
  return period;
}

bool NameTemplate::has(const char* text, NameCode::Kind kind) {
  NameTemplate walk(StrLib::valid(text, ""));
  NameCode code;
  while (walk.next(code)) {
    if (code.kind == kind) return true;
  }
  return false;
}

}  // namespace KYV
