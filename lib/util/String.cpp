#include "KYV/String.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>

#include "TextRules.h"

namespace KYV {

namespace {

constexpr int DEFAULT_CAPACITY = 32;
constexpr int NO_WIDTH = 9999;  // a conversion of scanp() that gives no width

// A conversion's width, from its first digit on; moves the format to its letter.
std::size_t scanWidth(const char*& format) {
  if (!TextRules::isDigit(*format)) return NO_WIDTH;
  int width = 0;
  for (; TextRules::isDigit(*format); ++format) width = std::min(width * 10 + (*format - '0'), NO_WIDTH);
  return static_cast<std::size_t>(width);
}

std::size_t wordLength(std::string_view text, std::size_t width) {
  const std::size_t most = std::min(width, text.size());
  std::size_t n = 0;
  while (n < most && !TextRules::isSpace(text[n])) ++n;
  return n;
}

// The width bounds the digits before the point alone; 0 when there is no digit at all.
std::size_t decimalLength(std::string_view text, std::size_t width) {
  const std::size_t sign = !text.empty() && text[0] == '-' ? 1 : 0;
  const std::size_t digits = std::min(TextRules::countDigits(text, sign), width);
  const std::size_t point = sign + digits;
  if (point >= text.size() || text[point] != '.') return digits ? point : 0;
  const std::size_t decimals = TextRules::countDigits(text, point + 1);
  return digits + decimals ? point + 1 + decimals : 0;
}

}  // namespace

String::String() : String(DEFAULT_CAPACITY) {}

String::String(int n) : data(static_cast<std::size_t>(std::max(n, 1))) {}

String::String(const char* text) : String(1) { copy(text); }

String::String(const char* text, int n) : String(1) { copy(text, n); }

const char* String::get(int i) const {
  const int last = std::max(len - 1, 0);
  return data.data() + std::clamp(i < 0 ? i + len : i, 0, last);
}

char String::getChar(int i) const { return *get(i); }

int String::print() const {
  std::printf("%s\n", get());
  return 1;
}

void String::grow(int room) {
  if (room > maxLength()) data.resize(static_cast<std::size_t>(room));
}

int String::copy(const char* text) { return copy(text, -1); }

int String::copy(const char* text, int n) {
  cursor = 0;
  const std::size_t count = text ? TextRules::keptLength(text, n) : 0;
  if (!text || count >= INT_MAX) {
    clear();
    return 0;
  }
  grow(static_cast<int>(count) + 1);  // never when the text lies in this buffer
  std::memmove(data.data(), text, count);
  len = static_cast<int>(count);
  data[count] = '\0';
  return 1;
}

int String::append(const char* text) { return append(text, -1); }

int String::append(const char* text, int n) {
  if (!text) return 0;
  const std::size_t count = TextRules::keptLength(text, n);
  const std::size_t used = static_cast<std::size_t>(len);
  if (count >= INT_MAX - used) return 0;
  std::string own;  // growing would take away the ground of a text that lies in this buffer
  if (!std::less<>()(text, get()) && !std::less<>()(get() + len, text)) text = own.assign(text, count).c_str();
  grow(static_cast<int>(used + count) + 1);
  std::memcpy(data.data() + used, text, count);
  len = static_cast<int>(used + count);
  data[used + count] = '\0';
  return 1;
}

int String::append(const String& s) { return append(s.get(), s.length()); }

int String::append(char c) { return append(&c, 1); }

int String::clear() {
  data[0] = '\0';
  len = cursor = 0;
  return 1;
}

int String::trunc(int n) {
  len = n < 0 ? std::max(len + n, 0) : std::min(n, len);
  data[static_cast<std::size_t>(len)] = '\0';
  cursor = std::min(cursor, len);
  return 1;
}

int String::replace(char from, char to) {
  StrLib::replace(data.data(), from, to);
  return reset();
}

int String::trimWS() {
  StrLib::trimWS(data.data());
  return reset();
}

int String::stripWS() {
  StrLib::stripWS(data.data());
  return reset();
}

int String::chop() { return trunc(-1); }

int String::upCase() { return StrLib::upCase(data.data()); }

int String::lowCase() { return StrLib::lowCase(data.data()); }

int String::resize(int n) {
  if (n <= 0) return 0;
  data.resize(static_cast<std::size_t>(n));
  return reset();
}

int String::reset() {
  data.back() = '\0';
  len = static_cast<int>(std::strlen(data.data()));
  cursor = std::min(cursor, len);
  return 1;
}

int String::printf(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  const int n = StrLib::vprintf(data.data(), maxLength(), format, args);
  va_end(args);
  cursor = 0;
  reset();
  return n;
}

int String::aprintf(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  const int n = StrLib::vprintf(data.data() + len, maxLength() - len, format, args);
  va_end(args);
  reset();
  return n;
}

int String::scanf(const char* format, ...) const {
  if (!format) return 0;
  std::va_list args;
  va_start(args, format);
  const int n = std::vsscanf(get(), format, args);
  va_end(args);
  return n;
}

int String::scanp(const char* format, ...) {
  if (!format) return 0;
  int stored = 0;
  bool going = true;
  std::va_list args;
  va_start(args, format);
  while (going && *format) {
    const bool conversion = *format == '%' && format[1] != '%';
    if (!conversion) {
      if (*format == '%') ++format;
      going = cursor < len && data[static_cast<std::size_t>(cursor)] == *format;
      if (going) ++cursor;
      ++format;
      continue;
    }
    ++format;
    const std::size_t width = scanWidth(format);
    const char letter = *format;
    if (letter) ++format;
    if (letter != 's' && letter != 'f') continue;
    while (cursor < len && TextRules::isSpace(data[static_cast<std::size_t>(cursor)])) ++cursor;
    const std::string_view rest = view().substr(static_cast<std::size_t>(cursor));
    const std::size_t taken = letter == 's' ? wordLength(rest, width) : decimalLength(rest, width);
    if (letter == 's') {
      char* word = va_arg(args, char*);
      going = word && taken > 0;
      if (going) StrLib::copy(word, static_cast<int>(taken) + 1, rest.data(), static_cast<int>(taken));
    } else {
      float* number = va_arg(args, float*);
      going = number && taken > 0;
      if (going) *number = TextRules::floatValue(rest.substr(0, taken));
    }
    if (going) {
      cursor += static_cast<int>(taken);
      ++stored;
    }
  }
  va_end(args);
  return stored;
}

}  // namespace KYV
