#include "KYV/Strings.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string_view>
#include <utility>

#include "KYV/Const.h"
#include "TextRules.h"

namespace KYV {

namespace {

constexpr int GROWTH = 10;
constexpr int MAX_SLOT = 1 << 20;  // no list comes near; a wild index must not take the memory

struct QuotePair {
  char open;
  char close;
};
constexpr QuotePair QUOTE_PAIRS[] = {{'"', '"'}, {'(', ')'}, {'[', ']'}, {'{', '}'}};

using Items = std::vector<std::optional<std::string>>;

// An item that both begins and ends with a double quote loses them.
std::string_view unquoted(std::string_view item) {
  const bool quoted = item.size() >= 2 && item.front() == '"' && item.back() == '"';
  return quoted ? item.substr(1, item.size() - 2) : item;
}

// The end of the field that starts at `at`, where a double quote counts at the field's start alone and closes where
// the field does.
std::size_t fieldEnd(std::string_view text, char sep, std::size_t at) {
  if (at < text.size() && text[at] == '"' && sep != '"') {
    std::size_t close = text.find('"', at + 1);
    while (close != std::string_view::npos && close + 1 < text.size() && text[close + 1] != sep) {
      close = text.find('"', close + 1);
    }
    return close != std::string_view::npos ? close + 1 : text.size();
  }
  return std::min(text.find(sep, at), text.size());
}

// The same where the opening characters count anywhere and close at the next closing one.
std::size_t fieldEnd(std::string_view text, char sep, std::size_t at, std::string_view quotes) {
  while (at < text.size() && text[at] != sep) {
    const char c = text[at++];
    if (quotes.find(c) == std::string_view::npos) continue;
    for (const QuotePair& pair : QUOTE_PAIRS) {
      if (pair.open != c) continue;
      const std::size_t close = text.find(pair.close, at);
      at = close != std::string_view::npos ? close + 1 : text.size();
    }
  }
  return at;
}

// End is called with the start of a field and tells its end.
template <class End>
Items split(std::string_view text, int limit, End end) {
  Items items;
  if (text.empty() || limit == 0) return items;
  for (std::size_t at = 0;;) {
    const bool last = limit > 0 && static_cast<int>(items.size()) + 1 == limit;
    const std::size_t stop = last ? text.size() : end(at);
    items.emplace_back(unquoted(text.substr(at, stop - at)));
    if (stop == text.size()) return items;
    at = stop + 1;
  }
}

}  // namespace

// Every filling operation makes its new items before it drops the old ones: the text may be one of them.

int Strings::set(int n) {
  clear();
  max = std::max(n, 0);
  return 1;
}

int Strings::set(int argc, const char* const* argv) {
  Items items;
  for (int i = 0; argv && i < argc; i++) {
    if (argv[i]) {
      items.emplace_back(argv[i]);
    } else {
      items.emplace_back();
    }
  }
  vals = std::move(items);
  return max = getNum();
}

int Strings::set(const char* text) {
  Items items;
  std::string_view rest = text ? text : "";
  for (;;) {
    const auto start = std::find_if_not(rest.begin(), rest.end(), TextRules::isSpace);
    const auto end = std::find_if(start, rest.end(), TextRules::isSpace);
    if (start == end) break;
    items.emplace_back(std::string(start, end));
    rest.remove_prefix(static_cast<std::size_t>(end - rest.begin()));
  }
  vals = std::move(items);
  return max = getNum();
}

int Strings::set(const char* text, char sep, int limit) {
  const std::string_view view = text ? text : "";
  vals = split(view, limit, [&](std::size_t at) { return fieldEnd(view, sep, at); });
  return max = getNum();
}

int Strings::set(const char* text, char sep, int limit, const char* quotes) {
  const std::string_view view = text ? text : "";
  const std::string_view opening = quotes ? quotes : "";
  vals = split(view, limit, [&](std::size_t at) { return fieldEnd(view, sep, at, opening); });
  return max = getNum();
}

int Strings::set(const Strings& other) {
  *this = other;
  return getNum();
}

int Strings::clear() {
  vals.clear();
  max = 0;
  return 1;
}

int Strings::add(const char* text) {
  if (!StrLib::valid(text)) return 0;
  std::string item = text;
  if (getNum() >= max) expand(max + GROWTH);
  vals.emplace_back(std::move(item));
  return 1;
}

int Strings::set(int i, const char* text) {
  if (i < 0 || i >= MAX_SLOT) return 0;
  std::optional<std::string> item;
  if (StrLib::valid(text)) item = text;
  const std::size_t slot = static_cast<std::size_t>(i);
  if (slot >= vals.size()) vals.resize(slot + 1);
  max = std::max(max, getNum());
  vals[slot] = std::move(item);
  return vals[slot] ? 1 : 0;
}

int Strings::expand(int n) {
  max = std::max(n, getNum());
  return 1;
}

const char* Strings::getString(int i) const {
  if (i < 0 || i >= getNum()) return nullptr;
  const std::optional<std::string>& item = vals[static_cast<std::size_t>(i)];
  return item ? item->c_str() : nullptr;
}

const char* Strings::getString(int i, char c) const {
  const int at = index(i, c);
  return at >= 0 ? getString(i) + at : nullptr;
}

const char* Strings::getString(int i, int k) const { return k >= 0 && k < getLength(i) ? getString(i) + k : nullptr; }

char Strings::getChar(int i, int k) const { return StrLib::getChar(getString(i), k); }

const char* Strings::getStringAfter(int i, char c) const {
  const char* at = getString(i, c);
  return at ? at + 1 : nullptr;
}

bool Strings::valid(int i) const { return StrLib::valid(getString(i)); }

int Strings::getLength(int i) const { return StrLib::length(getString(i)); }

int Strings::index(int i, char c) const { return StrLib::index(getString(i), c); }

int Strings::occurs(int i, char c) const { return StrLib::occurs(getString(i), c); }

bool Strings::contains(int i, const char* sub) const { return StrLib::contains(getString(i), sub); }

bool Strings::equal(int i, const char* s) const { return StrLib::equal(getString(i), s); }

bool Strings::iequal(int i, const char* s) const { return StrLib::iequal(getString(i), s); }

bool Strings::equal(int i, const char* s, int n) const { return StrLib::equal(getString(i), s, n); }

bool Strings::iequal(int i, const char* s, int n) const { return StrLib::iequal(getString(i), s, n); }

bool Strings::equal(int i, int k, const char* s) const { return StrLib::equal(getString(i, k), s); }

bool Strings::iequal(int i, int k, const char* s) const { return StrLib::iequal(getString(i, k), s); }

int Strings::find(const char* s) const {
  if (!s) return -1;
  const auto found = std::find_if(vals.begin(), vals.end(), [&](const auto& item) { return item && *item == s; });
  return found != vals.end() ? static_cast<int>(found - vals.begin()) : -1;
}

int Strings::check(int i, const char* pattern) const { return StrLib::check(getString(i), pattern); }

int Strings::getInt(int i) const { return StrLib::getInt(getString(i)); }

int Strings::getInt(int i, int k) const { return StrLib::getInt(getString(i, k)); }

int Strings::getIntAfter(int i, char c) const { return StrLib::getInt(getStringAfter(i, c)); }

long Strings::getLong(int i) const { return TextRules::wholeInt<long>(getString(i)); }

long Strings::getLong(int i, int k) const { return TextRules::wholeInt<long>(getString(i, k)); }

long Strings::getLongAfter(int i, char c) const { return TextRules::wholeInt<long>(getStringAfter(i, c)); }

float Strings::getFloat(int i) const { return StrLib::getFloat(getString(i)); }

float Strings::getFloat(int i, int k) const { return StrLib::getFloat(getString(i, k)); }

float Strings::getFloatAfter(int i, char c) const { return StrLib::getFloat(getStringAfter(i, c)); }

int Strings::scanf(int i, const char* format, ...) const {
  const char* text = getString(i);
  if (!text || !format) return 0;
  std::va_list args;
  va_start(args, format);
  const int n = std::vsscanf(text, format, args);
  va_end(args);
  return n;
}

int Strings::scanf(int i, int k, const char* format, ...) const {
  const char* text = getString(i, k);
  if (!text || !format) return 0;
  std::va_list args;
  va_start(args, format);
  const int n = std::vsscanf(text, format, args);
  va_end(args);
  return n;
}

int Strings::print() const {
  for (int i = 0; i < getNum(); i++) std::printf("%d=%s\n", i, StrLib::valid(getString(i), ""));
  return 1;
}

}  // namespace KYV
