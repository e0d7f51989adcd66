#ifndef KYV_STRING_H
#define KYV_STRING_H

#include <string_view>
#include <vector>

#include "KYV/StrLib.h"

namespace KYV {

/// An owned text that grows, with a read cursor for scanp(). Always terminated; a null source is the empty text.
class String {
 public:
  String();
  /// An empty text with room for n bytes, the terminator included.
  explicit String(int n);
  String(const char* text);
  String(const char* text, int n);
  // Copies alone: a text that was moved from would have no terminator left.
  String(const String&) = default;
  String& operator=(const String&) = default;

  // Access.
  const char* get() const { return data.data(); }
  /// Pointer to character i; past the end the last character, a negative i counts from the end.
  const char* get(int i) const;
  char getChar(int i) const;
  int length() const { return len; }
  int maxLength() const { return static_cast<int>(data.size()); }
  bool valid() const { return len > 0; }
  bool isAlphaNum() const { return StrLib::isAlphaNum(get()); }
  int index(char c) const { return StrLib::index(get(), c); }
  int occurs(char c) const { return StrLib::occurs(get(), c); }
  bool contains(const char* sub) const { return StrLib::contains(get(), sub); }
  bool equal(const char* s) const { return StrLib::equal(get(), s); }
  bool iequal(const char* s) const { return StrLib::iequal(get(), s); }
  bool equal(const char* s, int n) const { return StrLib::equal(get(), s, n); }
  bool iequal(const char* s, int n) const { return StrLib::iequal(get(), s, n); }
  std::string_view view() const { return {data.data(), static_cast<std::size_t>(len)}; }
  /// The text on standard output, with a newline.
  int print() const;

  // Change.
  int copy(const char* text);
  /// At most n characters; a negative n counts from the end as in StrLib::acopy.
  int copy(const char* text, int n);
  int copy(const String& s) { return copy(s.get()); }
  int set(const char* text) { return copy(text); }
  int set(const char* text, int n) { return copy(text, n); }
  int set(const String& s) { return copy(s.get()); }
  int append(const char* text);
  int append(const char* text, int n);
  int append(const String& s);
  int append(char c);
  int clear();
  /// Keeps the first n characters; a negative n drops the last -n.
  int trunc(int n);
  int replace(char from, char to);
  int trimWS();
  int stripWS();
  int chop();
  int upCase();
  int lowCase();
  /// Capacity n, the text kept as far as it fits.
  int resize(int n);
  int resize() { return resize(2 * maxLength()); }
  /// Recomputes the length from the buffer.
  int reset();
  int rewind() { return cursor = 0, 1; }

  // Formatting into the buffer as it is: cut at its capacity less one. Size the text first.
  KYV_PRINTF(2, 3) int printf(const char* format, ...);
  KYV_PRINTF(2, 3) int aprintf(const char* format, ...);

  // Reading.
  KYV_SCANF(2, 3) int scanf(const char* format, ...) const;
  /// Scans on from the cursor: literals must match, "%Ns" copies up to N characters of a word, "%Nf" reads a float
  /// of up to N digits; other conversions are skipped. The number of conversions stored.
  int scanp(const char* format, ...);

 private:
  void grow(int room);

  std::vector<char> data;  // terminated; its size is the capacity
  int len = 0;
  int cursor = 0;
};

}  // namespace KYV
#endif
