#ifndef KYV_NEARWORD_H
#define KYV_NEARWORD_H

#include <limits>
#include <string>
#include <string_view>

namespace KYV {

/// Finds the word that was meant by one that is not known: the nearest by letters that are missing, added, changed or
/// swapped, letter case aside.
class NearWord {
 public:
  explicit NearWord(std::string_view word) : given(word) {}

  void offer(std::string_view word);
  /// The nearest word offered, of equal ones the first; empty when none is near enough to be meant.
  const std::string& get() const { return best; }
  /// "; did you mean WORD?", with the text that stands before a word, or nothing.
  std::string question(std::string_view before = "") const;
  /// "no such WHAT; did you mean WORD? Instead.", or "no such WHAT; instead".
  std::string explain(std::string_view what, std::string_view instead, std::string_view before = "") const;

  /// Letters that are missing, added, changed or swapped.
  static int distance(std::string_view a, std::string_view b);

 private:
  std::string given;
  std::string best;
  int least = std::numeric_limits<int>::max();
};

}  // namespace KYV
#endif
