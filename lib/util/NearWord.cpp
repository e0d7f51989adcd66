// The nearest of some words.
#include "KYV/NearWord.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <vector>

namespace KYV {

namespace {

constexpr std::size_t MAX_LETTERS = 40;  // longer words are nobody's slip

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

}  // namespace

int NearWord::distance(std::string_view a, std::string_view b) {
  // Three rows of the usual table: a swap looks back two.
  std::vector<int> before(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
  for (std::size_t k = 0; k <= b.size(); ++k) last[k] = static_cast<int>(k);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = static_cast<int>(i);
    for (std::size_t k = 1; k <= b.size(); ++k) {
      const bool same = lower(a[i - 1]) == lower(b[k - 1]);
      row[k] = std::min({last[k] + 1, row[k - 1] + 1, last[k - 1] + (same ? 0 : 1)});
      const bool swapped = i > 1 && k > 1 && lower(a[i - 1]) == lower(b[k - 2]) && lower(a[i - 2]) == lower(b[k - 1]);
      if (swapped) row[k] = std::min(row[k], before[k - 2] + 1);
    }
    std::swap(before, last);
    std::swap(last, row);
  }
  return last[b.size()];
}

void NearWord::offer(std::string_view word) {
  if (word.empty() || given.empty() || word.size() > MAX_LETTERS || given.size() > MAX_LETTERS) return;
  const int apart = distance(given, word);
  // A slip in three letters; more is another word.
  const int most = std::max(1, static_cast<int>(std::max(given.size(), word.size())) / 3);
  if (apart > most || apart >= least || apart >= static_cast<int>(given.size())) return;
  least = apart;
  best = word;
}

std::string NearWord::question(std::string_view before) const {
  return best.empty() ? "" : "; did you mean " + std::string(before) + best + "?";
}

std::string NearWord::explain(std::string_view what, std::string_view instead, std::string_view before) const {
  std::string rest(instead);
  if (!best.empty() && !rest.empty()) {
    rest[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(rest[0])));
  }
  return "no such " + std::string(what) + question(before) + (best.empty() ? "; " : " ") + rest;
}

}  // namespace KYV
