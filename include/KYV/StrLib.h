#ifndef KYV_STRLIB_H
#define KYV_STRLIB_H

#include <cstdarg>
#include <cstddef>
#include <memory>

/// Lets the compiler check a printf-like call; a non-static member function counts `this` as argument 1.
#define KYV_PRINTF(fmt, first) __attribute__((__format__(__printf__, fmt, first)))
#define KYV_SCANF(fmt, first) __attribute__((__format__(__scanf__, fmt, first)))

namespace KYV {

/// Helpers on plain character arrays. Null pointers are accepted everywhere and give 0 or do nothing. Sizes of
/// destinations count the terminator; what does not fit is cut, and the result is always terminated.
class StrLib {
 public:
  // Editing in place; 1, or 0 for a null text.
  static int clear(char* s);
  static int replace(char* s, char from, char to);
  /// Drops trailing white space.
  static int trimWS(char* s);
  /// Removes every white-space character.
  static int stripWS(char* s);
  /// Drops the last character.
  static int chop(char* s);
  static int upCase(char* s);
  static int lowCase(char* s);
  static int upCaseFirst(char* s);
  /// Trailing control characters (below code 32) are removed, earlier ones become blanks.
  static int clean(char* s);
  /// Sets character i of the text; a negative i counts from the end. 0 when there is no such character.
  static int setChar(char* s, int i, char c);
  /// Replaces n characters at position `at` by text, in a buffer of `max` bytes.
  static int splice(char* s, int max, int at, int n, const char* text);
  static int copy(char* dst, int size, char c);
  static int copy(char* dst, int size, const char* src);
  /// At most n characters of src; a negative n means all but the last -n-1 characters, never below empty.
  static int copy(char* dst, int size, const char* src, int n);
  /// Copies n bytes, terminators included.
  static int bcopy(char* dst, const char* src, int n);
  static int append(char* dst, int size, const char* src);
  static int append(char* dst, int size, const char* src, int n);
  KYV_PRINTF(3, 4) static int printf(char* dst, int size, const char* format, ...);
  KYV_PRINTF(3, 4) static int aprintf(char* dst, int size, const char* format, ...);

  /// The field forms take the size from the array itself; null text empties the field.
  template <std::size_t N>
  static int copy(char (&field)[N], const char* text) {
    return copy(field, static_cast<int>(N), text ? text : "");
  }
  template <std::size_t N>
  KYV_PRINTF(2, 3)
  static int printf(char (&field)[N], const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    const int n = vprintf(field, static_cast<int>(N), format, args);
    va_end(args);
    return n;
  }
  /// The characters written, terminator not counted.
  KYV_PRINTF(3, 0) static int vprintf(char* dst, int size, const char* format, std::va_list args);

  // New texts, owned by the caller; null for null. n as in copy().
  static std::unique_ptr<char[]> acopy(const char* src);
  static std::unique_ptr<char[]> acopy(const char* src, int n);

  // Queries.
  static int length(const char* s);
  static bool valid(const char* s) { return s && *s; }
  static const char* valid(const char* s, const char* dflt) { return valid(s) ? s : dflt; }
  /// Contains a character that is not blank.
  static bool validData(const char* s);
  /// An optional leading '-', then digits alone.
  static bool isNum(const char* s);
  static bool isNum(const char* s, int n);
  /// Contains an alphanumeric character.
  static bool isAlphaNum(const char* s);
  /// Position of the first c, -1 if none.
  static int index(const char* s, char c);
  /// Position of the k-th c, counting from 1; -1 if there are fewer.
  static int index(const char* s, char c, int k);
  static int lastIndex(const char* s, char c);
  static int occurs(const char* s, char c);
  static bool contains(const char* s, const char* sub);
  /// Offset of sub in s, -1 if it does not occur.
  static int where(const char* s, const char* sub);
  /// Character i, 0 when there is none; a negative i counts from the end.
  static char getChar(const char* s, int i);
  static int subString(const char* s, int start, int n, char* dst, int size);
  /// Pointer to the k-th field counting from 0; runs of sep count as one, leading ones are skipped; null past the last.
  static const char* getField(const char* s, char sep, int k);
  /// Whether one of the sep-separated fields equals token.
  static bool hasToken(const char* s, char sep, const char* token);

  // Comparison; null compares unequal.
  static bool equal(const char* a, const char* b);
  static bool iequal(const char* a, const char* b);
  /// n >= 1: the first n characters (a shorter a must end where b does); n <= 0: the tail of a that starts -n
  /// characters before its end against the whole of b.
  static bool equal(const char* a, const char* b, int n);
  static bool iequal(const char* a, const char* b, int n);
  /// Whether b has exactly n characters and a begins with them.
  static bool equal(const char* a, int n, const char* b);
  /// Ordering without regard to case: negative, 0, positive; a null sorts before any text.
  static int icmp(const char* a, const char* b);
  static int icmp(const char* a, const char* b, int n);

  // Numbers. The field of n characters from start, trailing blanks dropped; Const::MISS when it is empty.
  static int toInt(const char* s, int start, int n);
  static int toInt(const char* s, int start);
  static int toInt(const char* s);
  static float toFloat(const char* s, int start, int n);
  static float toFloat(const char* s, int start);
  static float toFloat(const char* s);
  /// Only a text that is wholly a number, else Const::MISS.
  static int getInt(const char* s);
  static float getFloat(const char* s);

  /// Matches a template of character classes (A alphanumeric, a letter, d digit, b blank, c control, l lower case,
  /// u upper case, p punctuation, s white space, g graphic, [...] one of these) from the start of s; 1 when the
  /// whole template matched.
  static int check(const char* s, const char* pattern);
};

}  // namespace KYV
#endif
