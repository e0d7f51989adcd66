#ifndef KYV_TEXT_RULES_H
#define KYV_TEXT_RULES_H

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>

#include "KYV/Const.h"

// What the text classes share: how many characters a count means, and what a number is.
namespace KYV::TextRules {

inline bool isSpace(char c) { return std::isspace(static_cast<unsigned char>(c)); }
inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Characters that n stands for: at most n, or for a negative n all but the last -n-1. With n >= 0 the text need not
/// be terminated within its first n characters.
inline std::size_t keptLength(const char* text, int n) {
  if (n >= 0) return strnlen(text, static_cast<std::size_t>(n));
  const std::size_t len = std::strlen(text);
  const std::size_t dropped = static_cast<std::size_t>(-(n + 1));
  return len > dropped ? len - dropped : 0;
}

inline std::size_t countDigits(std::string_view text, std::size_t at) {
  std::size_t n = 0;
  while (at + n < text.size() && isDigit(text[at + n])) ++n;
  return n;
}

inline std::size_t signLength(std::string_view text) {
  return !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
}

/// Length of the integer that the text begins with, 0 when there is none.
inline std::size_t intLength(std::string_view text) {
  const std::size_t sign = signLength(text);
  const std::size_t digits = countDigits(text, sign);
  return digits ? sign + digits : 0;
}

/// Length of the decimal number that the text begins with, 0 when there is none. Hexadecimal numbers, infinities and
/// the like are none.
inline std::size_t floatLength(std::string_view text) {
  std::size_t end = signLength(text);
  std::size_t digits = countDigits(text, end);
  end += digits;
  if (end < text.size() && text[end] == '.') {
    const std::size_t decimals = countDigits(text, end + 1);
    digits += decimals;
    if (digits) end += 1 + decimals;
  }
  if (!digits) return 0;
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const std::size_t power = intLength(text.substr(end + 1));
    if (power) end += 1 + power;
  }
  return end;
}

/// The value of a text for which intLength() is the whole length; missing when it is out of range.
template <class Int>
Int intValue(std::string_view text) {
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  Int value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() ? value : static_cast<Int>(Const::MISS);
}

/// The value of a text for which floatLength() is the whole length; missing when it is out of range.
inline float floatValue(std::string_view text) {
  const float value = std::strtof(std::string(text).c_str(), nullptr);
  return std::isfinite(value) ? value : static_cast<float>(Const::MISS);
}

/// The value of a text that is wholly an integer, else missing.
template <class Int>
Int wholeInt(const char* text) {
  const std::string_view view = text ? text : "";
  const std::size_t len = intLength(view);
  return len && len == view.size() ? intValue<Int>(view) : static_cast<Int>(Const::MISS);
}

}  // namespace KYV::TextRules
#endif
