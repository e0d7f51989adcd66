#ifndef KYV_NUMBER_H
#define KYV_NUMBER_H

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace KYV {

inline constexpr std::string_view BLANKS = " \t\r\n\v\f";

inline std::string_view trimFront(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(BLANKS), text.size()));
}

/// Takes the number that a text begins with, blanks before it included, off the text. False, with nothing changed,
/// where there is none, and for numbers that are not finite or do not fit their type.
template <class T>
bool takeNumber(std::string_view& text, T& value) {
  std::string_view rest = trimFront(text);
  if (rest.starts_with('+')) rest.remove_prefix(rest.starts_with("+-") ? 0 : 1);
  T number{};
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
  if (error != std::errc()) return false;
  if constexpr (std::is_floating_point_v<T>) {
    if (!std::isfinite(number)) return false;
  }
  value = number;
  text = rest.substr(static_cast<std::size_t>(end - rest.data()));
  return true;
}

/// The number that is, but for blanks around it, the whole text; else false, with nothing changed.
template <class T>
bool readNumber(const char* text, T& value) {
  std::string_view rest = text ? text : "";
  T number{};
  if (!takeNumber(rest, number) || !trimFront(rest).empty()) return false;
  value = number;
  return true;
}

}  // namespace KYV
#endif
