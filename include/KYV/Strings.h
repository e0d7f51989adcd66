#ifndef KYV_STRINGS_H
#define KYV_STRINGS_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "KYV/StrLib.h"

namespace KYV {

/// An owned list of texts with the splitting rules of every list-valued option. A slot may be empty (null), which is
/// not the same as an item of no characters. Outside 0..getNum()-1, and for empty slots, the getters give null, 0, -1
/// or Const::MISS.
class Strings {
 public:
  Strings() = default;
  explicit Strings(int n) { set(n); }
  Strings(int argc, const char* const* argv) { set(argc, argv); }
  explicit Strings(const char* text) { set(text); }
  Strings(const char* text, char sep) { set(text, sep); }
  Strings(const char* text, char sep, int limit) { set(text, sep, limit); }
  Strings(const char* text, char sep, int limit, const char* quotes) { set(text, sep, limit, quotes); }

  /// Room for n items, none in use.
  int set(int n);
  int set(int argc, const char* const* argv);
  /// White-space words; the number of items.
  int set(const char* text);
  /// Splits at sep; empty fields count. A field that begins with a double quote runs to the closing one, and loses
  /// both. With limit >= 0 the last item keeps the rest. The number of items.
  int set(const char* text, char sep, int limit = -1);
  /// The same, but the opening characters of `quotes` (of the double quote, '(', '[' and '{') count anywhere, and
  /// separators up to their closing character do not split.
  int set(const char* text, char sep, int limit, const char* quotes);
  int set(const Strings& other);
  int clear();
  /// Appends a copy; null and empty texts are not added (0).
  int add(const char* text);
  /// Replaces item i, growing the list to hold it; null or empty text empties the slot (0).
  int set(int i, const char* text);
  /// Capacity n; items are kept.
  int expand(int n);

  int getNum() const { return static_cast<int>(vals.size()); }
  /// Capacity.
  int getMax() const { return max; }
  const char* getString(int i) const;
  /// Item i from the first c on.
  const char* getString(int i, char c) const;
  /// Item i from character k on; null when k is at or past its end.
  const char* getString(int i, int k) const;
  char getChar(int i, int k) const;
  /// The text of item i after the first c.
  const char* getStringAfter(int i, char c) const;
  bool valid(int i) const;
  int getLength(int i) const;
  int index(int i, char c) const;
  int occurs(int i, char c) const;
  bool contains(int i, const char* sub) const;
  bool equal(int i, const char* s) const;
  bool iequal(int i, const char* s) const;
  bool equal(int i, const char* s, int n) const;
  bool iequal(int i, const char* s, int n) const;
  /// Compares from character k on.
  bool equal(int i, int k, const char* s) const;
  bool iequal(int i, int k, const char* s) const;
  /// Index of the first item that equals s, else -1.
  int find(const char* s) const;
  int check(int i, const char* pattern) const;
  // Numbers: only when the whole text (of the item, from character k on, after the first c) is one.
  int getInt(int i) const;
  int getInt(int i, int k) const;
  int getIntAfter(int i, char c) const;
  long getLong(int i) const;
  long getLong(int i, int k) const;
  long getLongAfter(int i, char c) const;
  float getFloat(int i) const;
  float getFloat(int i, int k) const;
  float getFloatAfter(int i, char c) const;
  KYV_SCANF(3, 4) int scanf(int i, const char* format, ...) const;
  KYV_SCANF(4, 5) int scanf(int i, int k, const char* format, ...) const;
  /// One line "%d=%s\n" for each item.
  int print() const;

 private:
  std::vector<std::optional<std::string>> vals;
  int max = 0;
};

}  // namespace KYV
#endif
