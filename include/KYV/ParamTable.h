#ifndef KYV_PARAMTABLE_H
#define KYV_PARAMTABLE_H

#include <span>

#include "KYV/NearWord.h"
#include "KYV/Strings.h"

namespace KYV {

/// How an item of a parameter string is compared with a key.
enum class ParamMatch {
  Begins,   // begins with the key, letter case counts
  IBegins,  // begins with the key in any case
  Is,       // is the key in any case
};

/// What may stand behind a key, for those who check it.
enum class ParamForm {
  Any,         // nothing, or a text that only the data or the picture can tell to be of use
  Number,      // one number
  Numbers,     // nothing, or up to four numbers with ':' between them
  Color,       // a colour with attributes
  Background,  // a colour alone
  Fill,        // a fill scale
  Zone,        // a time zone
  Convention,  // of file names
  Time,        // which file is meant
  Hour,
  Window,  // of time, from which all files are frames
  Bar      // the colour bar's own parameters
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
  ParamForm form = ParamForm::Any;

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

/// The first key that fits an item, null without one.
template <class T>
const ParamKey<T>* findParam(std::span<const ParamKey<T>> keys, const ParamItem& item) {
  for (const ParamKey<T>& row : keys) {
    if (row.fits(item)) return &row;
  }
  return nullptr;
}

/// Splits the text at commas and lets the first key that fits an item act on the target; items that fit none are
/// passed over. 1.
template <class T>
int setParams(std::span<const ParamKey<T>> keys, const char* text, T& target) {
  const Strings items(text, ',');
  for (int i = 0; i < items.getNum(); ++i) {
    const char* item = items.getString(i);
    if (!StrLib::valid(item)) continue;
    const ParamItem param{item, StrLib::length(item)};
    if (const ParamKey<T>* row = findParam(keys, param)) row->set(target, param);
  }
  return 1;
}

/// What a class answers of an item: the form of its value, or its keys among which the one that was meant may be.
struct ParamAnswer {
  ParamItem item;
  NearWord near;
  bool known = false;
  ParamForm form = ParamForm::Any;

  explicit ParamAnswer(const char* text)
      : item{text, StrLib::length(text)}, near(std::string_view(text).substr(0, std::string_view(text).find('='))) {}

  template <class T>
  void ask(std::span<const ParamKey<T>> keys) {
    const ParamKey<T>* row = findParam(keys, item);
    if (row && !known) form = row->form;
    known = known || row;
    for (const ParamKey<T>& other : keys) {
      const std::string_view key = other.key;
      near.offer(key.substr(0, key.find('=')));
    }
  }
};

}  // namespace KYV
#endif
