#ifndef KYV_TEXTWRITER_H
#define KYV_TEXTWRITER_H

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace KYV {

class File;

/// A number with that many decimals, written as "%.2f" writes it, to the digit. (6 ns; snprintf needs 150,
/// to_chars 40.)
template <int DECIMALS>
struct Fixed {
  float value;
};

/// Collects the text of a file and hands it to the file in large pieces. Errors are the file's to remember.
class TextWriter {
 public:
  static constexpr std::size_t PIECE = 65536;

  explicit TextWriter(File& file) : out(file), buf(PIECE) {}
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;

  /// Writes texts, characters, whole numbers and Fixed numbers, one after the other.
  template <class... Item>
  void put(const Item&... items) {
    char* at = room((bound(items) + ...));
    ((at = write(at, items)), ...);
    used = static_cast<std::size_t>(at - buf.data());
  }
  /// Text from outside: line breaks and other control characters become blanks, so that it stays on its line.
  void putPlain(const char* text);
  /// A byte as two hexadecimal digits.
  void putHex(unsigned char byte);
  /// Hands over what is still here.
  void flush();

  /// The most characters that an item takes.
  static constexpr std::size_t bound(std::string_view text) { return text.size(); }
  static constexpr std::size_t bound(char) { return 1; }
  static constexpr std::size_t bound(int) { return 11; }
  template <int DECIMALS>
  static constexpr std::size_t bound(Fixed<DECIMALS>) {
    return MAX_WHOLE + 1 + DECIMALS + 1;  // snprintf adds a terminator
  }
  /// Writes an item to where its bound has room; the end of what was written.
  static char* write(char* at, std::string_view text) {
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
  }
  static char* write(char* at, char c) {
    *at = c;
    return at + 1;
  }
  static char* write(char* at, int number) { return std::to_chars(at, at + bound(number), number).ptr; }
  template <int DECIMALS>
  static char* write(char* at, Fixed<DECIMALS> number);

 private:
  // Sign and digits of the largest float.
  static constexpr std::size_t MAX_WHOLE = 40;
  static constexpr std::int64_t tenTo(int n) { return n > 0 ? 10 * tenTo(n - 1) : 1; }
  static char* writeWide(char* at, float value, int decimals);

  // Where n more characters have room.
  char* room(std::size_t n) {
    if (buf.size() - used < n) makeRoom(n);
    return buf.data() + used;
  }
  void makeRoom(std::size_t n);

  File& out;
  std::vector<char> buf;
  std::size_t used = 0;
};

template <int DECIMALS>
char* TextWriter::write(char* at, Fixed<DECIMALS> number) {
  static_assert(DECIMALS >= 0 && DECIMALS <= 6);
  constexpr auto UNIT = static_cast<std::uint64_t>(tenTo(DECIMALS));
  // 2^52, up to which adding and taking it away again rounds to a whole number. (Larger numbers are in no plot.)
  constexpr double LARGE = 4503599627370496.0;
  // The product is exact: a float has 24 bits, 10^6 has 14 beside its power of two. Rounded half to even it has the
  // digits that printf finds in the number's exact decimal expansion.
  const double scaled = std::fabs(static_cast<double>(number.value)) * static_cast<double>(UNIT);
  if (!(scaled < LARGE)) return writeWide(at, number.value, DECIMALS);
  const auto units = static_cast<std::uint64_t>((scaled + LARGE) - LARGE);
  if (std::signbit(number.value)) *at++ = '-';
  at = std::to_chars(at, at + MAX_WHOLE, units / UNIT).ptr;
  if constexpr (DECIMALS > 0) {
    *at = '.';
    std::uint64_t rest = units % UNIT;
    for (int i = DECIMALS; i > 0; --i, rest /= 10) at[i] = static_cast<char>('0' + rest % 10);
    at += 1 + DECIMALS;
  }
  return at;
}

}  // namespace KYV
#endif
