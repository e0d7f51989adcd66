#include "KYV/StrLib.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "KYV/Const.h"
#include "TextRules.h"

namespace KYV {

namespace {

using TextRules::isDigit;
using TextRules::isSpace;
using TextRules::keptLength;

char upper(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }
char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

int position(std::size_t found) { return found == std::string_view::npos ? -1 : static_cast<int>(found); }

// Replaces dst[at, ...) by as many of the count characters as the size leaves room for. They may lie in dst.
void put(char* dst, int size, std::size_t at, const char* src, std::size_t count) {
  count = std::min(count, static_cast<std::size_t>(size) - 1 - at);
  std::memmove(dst + at, src, count);
  dst[at + count] = '\0';
}

// Length of the text in a destination; one that was never terminated is full, and is terminated here.
std::size_t usedLength(char* dst, int size) {
  const std::size_t room = static_cast<std::size_t>(size) - 1;
  const std::size_t used = strnlen(dst, room);
  dst[used] = '\0';
  return used;
}

// Index of character i of a text of len characters, a negative i counted from its end; -1 when there is none.
int charIndex(int len, int i) {
  if (i < 0) i += len;
  return i >= 0 && i < len ? i : -1;
}

// The last -n characters of s; null when it has fewer.
const char* tail(const char* s, int n) {
  const long start = s ? static_cast<long>(std::strlen(s)) + n : -1;
  return start >= 0 ? s + start : nullptr;
}

// The next field at or after `rest`, which is left behind it; empty when there is none.
std::string_view nextField(std::string_view& rest, char sep) {
  const std::size_t start = std::min(rest.find_first_not_of(sep), rest.size());
  const std::size_t end = std::min(rest.find(sep, start), rest.size());
  const std::string_view field = rest.substr(start, end - start);
  rest.remove_prefix(end);
  return field;
}

// The characters that a conversion looks at: n of them from start, cut at the text's end, without the blanks around.
std::string_view numberField(const char* s, int start, int n) {
  std::string_view field = s ? s : "";
  if (start < 0 || n < 0 || static_cast<std::size_t>(start) > field.size()) return {};
  field = field.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(n));
  while (!field.empty() && isSpace(field.back())) field.remove_suffix(1);
  while (!field.empty() && isSpace(field.front())) field.remove_prefix(1);
  return field;
}

struct CharClass {
  char letter;
  int (*holds)(int);
};
constexpr CharClass CLASSES[] = {
    {'A', std::isalnum}, {'a', std::isalpha}, {'d', std::isdigit}, {'b', std::isblank}, {'c', std::iscntrl},
    {'l', std::islower}, {'u', std::isupper}, {'p', std::ispunct}, {'s', std::isspace}, {'g', std::isgraph},
};

}  // namespace

int StrLib::clear(char* s) {
  if (!s) return 0;
  *s = '\0';
  return 1;
}

int StrLib::replace(char* s, char from, char to) {
  if (!s) return 0;
  std::replace(s, s + std::strlen(s), from, to);
  return 1;
}

int StrLib::trimWS(char* s) {
  if (!s) return 0;
  std::size_t len = std::strlen(s);
  while (len > 0 && isSpace(s[len - 1])) --len;
  s[len] = '\0';
  return 1;
}

int StrLib::stripWS(char* s) {
  if (!s) return 0;
  *std::remove_if(s, s + std::strlen(s), isSpace) = '\0';
  return 1;
}

int StrLib::chop(char* s) {
  if (!s) return 0;
  if (*s) s[std::strlen(s) - 1] = '\0';
  return 1;
}

int StrLib::upCase(char* s) {
  if (!s) return 0;
  std::transform(s, s + std::strlen(s), s, upper);
  return 1;
}

int StrLib::lowCase(char* s) {
  if (!s) return 0;
  std::transform(s, s + std::strlen(s), s, lower);
  return 1;
}

int StrLib::upCaseFirst(char* s) {
  if (!s) return 0;
  *s = upper(*s);
  return 1;
}

int StrLib::clean(char* s) {
  if (!s) return 0;
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 32; };
  std::size_t len = std::strlen(s);
  while (len > 0 && isControl(s[len - 1])) --len;
  s[len] = '\0';
  std::replace_if(s, s + len, isControl, ' ');
  return 1;
}

int StrLib::setChar(char* s, int i, char c) {
  const int at = charIndex(length(s), i);
  if (at < 0) return 0;
  s[at] = c;
  return 1;
}

int StrLib::splice(char* s, int max, int at, int n, const char* text) {
  if (!s || !text || max <= 0) return 0;
  const std::string_view old(s, usedLength(s, max));
  if (at < 0 || n < 0 || static_cast<std::size_t>(at) > old.size()) return 0;
  std::string result(old);
  result.replace(static_cast<std::size_t>(at), static_cast<std::size_t>(n), text);
  put(s, max, 0, result.data(), result.size());
  return 1;
}

int StrLib::copy(char* dst, int size, char c) {
  const char text[2] = {c, '\0'};
  return copy(dst, size, text);
}

int StrLib::copy(char* dst, int size, const char* src) { return copy(dst, size, src, -1); }

int StrLib::copy(char* dst, int size, const char* src, int n) {
  if (!dst || size <= 0) return 0;
  if (!src) {
    *dst = '\0';
    return 0;
  }
  put(dst, size, 0, src, keptLength(src, n));
  return 1;
}

int StrLib::bcopy(char* dst, const char* src, int n) {
  if (!dst || !src || n < 0) return 0;
  std::memmove(dst, src, static_cast<std::size_t>(n));
  return 1;
}

int StrLib::append(char* dst, int size, const char* src) { return append(dst, size, src, -1); }

int StrLib::append(char* dst, int size, const char* src, int n) {
  if (!dst || !src || size <= 0) return 0;
  const std::size_t used = usedLength(dst, size);
  put(dst, size, used, src, keptLength(src, n));
  return 1;
}

int StrLib::printf(char* dst, int size, const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  const int n = vprintf(dst, size, format, args);
  va_end(args);
  return n;
}

int StrLib::aprintf(char* dst, int size, const char* format, ...) {
  if (!dst || size <= 0) return 0;
  const int used = static_cast<int>(usedLength(dst, size));
  std::va_list args;
  va_start(args, format);
  const int n = vprintf(dst + used, size - used, format, args);
  va_end(args);
  return n;
}

int StrLib::vprintf(char* dst, int size, const char* format, std::va_list args) {
  if (!dst || !format || size <= 0) return 0;
  const int wanted = std::vsnprintf(dst, static_cast<std::size_t>(size), format, args);
  if (wanted < 0) {  // a conversion failed; what was written so far is not defined
    *dst = '\0';
    return 0;
  }
  return std::min(wanted, size - 1);
}

std::unique_ptr<char[]> StrLib::acopy(const char* src) { return acopy(src, -1); }

std::unique_ptr<char[]> StrLib::acopy(const char* src, int n) {
  if (!src) return nullptr;
  const std::size_t count = keptLength(src, n);
  auto text = std::make_unique<char[]>(count + 1);
  std::memcpy(text.get(), src, count);
  return text;
}

int StrLib::length(const char* s) { return s ? static_cast<int>(std::strlen(s)) : 0; }

bool StrLib::validData(const char* s) {
  const std::string_view text = s ? s : "";
  return !std::all_of(text.begin(), text.end(), isSpace);
}

bool StrLib::isNum(const char* s) { return isNum(s, INT_MAX); }

bool StrLib::isNum(const char* s, int n) {
  if (!s || n <= 0) return false;
  std::string_view text(s, keptLength(s, n));
  if (!text.empty() && text[0] == '-') text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

bool StrLib::isAlphaNum(const char* s) {
  const std::string_view text = s ? s : "";
  return std::any_of(text.begin(), text.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)); });
}

int StrLib::index(const char* s, char c) { return index(s, c, 1); }

int StrLib::index(const char* s, char c, int k) {
  if (!s || k < 1) return -1;
  const std::string_view text = s;
  std::size_t found = text.find(c);
  while (--k > 0 && found != std::string_view::npos) found = text.find(c, found + 1);
  return position(found);
}

int StrLib::lastIndex(const char* s, char c) { return s ? position(std::string_view(s).rfind(c)) : -1; }

int StrLib::occurs(const char* s, char c) {
  const std::string_view text = s ? s : "";
  return static_cast<int>(std::count(text.begin(), text.end(), c));
}

bool StrLib::contains(const char* s, const char* sub) { return where(s, sub) >= 0; }

int StrLib::where(const char* s, const char* sub) { return s && sub ? position(std::string_view(s).find(sub)) : -1; }

char StrLib::getChar(const char* s, int i) {
  const int at = charIndex(length(s), i);
  return at >= 0 ? s[at] : '\0';
}

int StrLib::subString(const char* s, int start, int n, char* dst, int size) {
  if (!s || start < 0 || start > length(s)) {
    copy(dst, size, "");
    return 0;
  }
  return copy(dst, size, s + start, n);
}

const char* StrLib::getField(const char* s, char sep, int k) {
  if (!s || k < 0) return nullptr;
  std::string_view rest = s;
  for (;;) {
    const std::string_view field = nextField(rest, sep);
    if (field.empty()) return nullptr;
    if (k-- == 0) return field.data();
  }
}

bool StrLib::hasToken(const char* s, char sep, const char* token) {
  if (!s || !valid(token)) return false;
  std::string_view rest = s;
  for (std::string_view field = nextField(rest, sep); !field.empty(); field = nextField(rest, sep)) {
    if (field == token) return true;
  }
  return false;
}

bool StrLib::equal(const char* a, const char* b) { return a && b && std::strcmp(a, b) == 0; }

bool StrLib::iequal(const char* a, const char* b) { return a && b && strcasecmp(a, b) == 0; }

bool StrLib::equal(const char* a, const char* b, int n) {
  if (n <= 0) return equal(tail(a, n), b);
  return a && b && std::strncmp(a, b, static_cast<std::size_t>(n)) == 0;
}

bool StrLib::iequal(const char* a, const char* b, int n) {
  if (n <= 0) return iequal(tail(a, n), b);
  return a && b && strncasecmp(a, b, static_cast<std::size_t>(n)) == 0;
}

bool StrLib::equal(const char* a, int n, const char* b) {
  return a && b && n == length(b) && std::strncmp(a, b, static_cast<std::size_t>(n)) == 0;
}

int StrLib::icmp(const char* a, const char* b) {
  if (!a || !b) return !a && b ? -1 : 1;  // two nulls are unequal as well, yet neither lies before the other
  return strcasecmp(a, b);
}

int StrLib::icmp(const char* a, const char* b, int n) {
  if (n <= 0) return icmp(tail(a, n), b);
  if (!a || !b) return icmp(a, b);
  return strncasecmp(a, b, static_cast<std::size_t>(n));
}

int StrLib::toInt(const char* s, int start, int n) {
  const std::string_view field = numberField(s, start, n);
  const std::size_t len = TextRules::intLength(field);
  return len ? TextRules::intValue<int>(field.substr(0, len)) : Const::MISS;
}

int StrLib::toInt(const char* s, int start) { return toInt(s, start, INT_MAX); }

int StrLib::toInt(const char* s) { return toInt(s, 0); }

float StrLib::toFloat(const char* s, int start, int n) {
  const std::string_view field = numberField(s, start, n);
  const std::size_t len = TextRules::floatLength(field);
  return len ? TextRules::floatValue(field.substr(0, len)) : static_cast<float>(Const::MISS);
}

float StrLib::toFloat(const char* s, int start) { return toFloat(s, start, INT_MAX); }

float StrLib::toFloat(const char* s) { return toFloat(s, 0); }

int StrLib::getInt(const char* s) { return TextRules::wholeInt<int>(s); }

float StrLib::getFloat(const char* s) {
  const std::string_view text = s ? s : "";
  const std::size_t len = TextRules::floatLength(text);
  return len && len == text.size() ? TextRules::floatValue(text) : static_cast<float>(Const::MISS);
}

int StrLib::check(const char* s, const char* pattern) {
  if (!s || !pattern) return 0;
  std::string_view rest = pattern;
  for (; !rest.empty(); rest.remove_prefix(1), ++s) {
    const char letter = rest.front();
    if (!*s) return 0;
    if (letter == '[') {
      const std::size_t close = rest.find(']');
      if (close == std::string_view::npos || rest.substr(1, close - 1).find(*s) == std::string_view::npos) return 0;
      rest.remove_prefix(close);
      continue;
    }
    const CharClass* row =
        std::find_if(std::begin(CLASSES), std::end(CLASSES), [&](const CharClass& c) { return c.letter == letter; });
    const bool matches = row != std::end(CLASSES) ? row->holds(static_cast<unsigned char>(*s)) != 0 : *s == letter;
    if (!matches) return 0;
  }
  return 1;
}

}  // namespace KYV
