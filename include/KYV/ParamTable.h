#ifndef KYV_PARAMTABLE_H
#define KYV_PARAMTABLE_H

#include <cstddef>

#include "KYV/Strings.h"

namespace KYV {

/// How an item of a parameter string is compared with a key.
enum class ParamMatch {
  Begins,   // begins with the key, letter case counts
  IBegins,  // begins with the key in any case
  Is,       // is the key in any case
};

/// One item of a parameter string, "wi=2".
struct ParamItem {
  const char* text;  // never null, not empty
  int length;

  /// The text from character k on, empty when it ends before.
  const char* from(int k) const { return k < length ? text + k : ""; }
  /// The text after the first '=', empty without one.
  const char* after() const {
    const int at = StrLib::index(text, '=');
    return at < 0 ? "" : text + at + 1;
  }
};

/// One key of a class's parameter string and what it sets.
template <class T>
struct ParamKey {
  const char* key;
  ParamMatch match;
  void (*set)(T& target, const ParamItem& item);

  bool fits(const ParamItem& item) const {
    switch (match) {
      case ParamMatch::Begins:
        return StrLib::equal(item.text, key, StrLib::length(key));
      case ParamMatch::IBegins:
        return StrLib::iequal(item.text, key, StrLib::length(key));
      case ParamMatch::Is:
        break;
    }
    return StrLib::iequal(item.text, key);
  }
};

/// Splits the text at commas and lets the first key that fits an item act on the target; items that fit none are
/// passed over. 1.
template <class T, std::size_t N>
int setParams(const ParamKey<T> (&keys)[N], const char* text, T& target) {
  const Strings items(text, ',');
  for (int i = 0; i < items.getNum(); ++i) {
    const char* item = items.getString(i);
    if (!StrLib::valid(item)) continue;
    const ParamItem param{item, StrLib::length(item)};
    for (const ParamKey<T>& row : keys) {
      if (!row.fits(param)) continue;
      row.set(target, param);
      break;
    }
  }
  return 1;
}

}  // namespace KYV
#endif
