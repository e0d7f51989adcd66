#ifndef KYV_RESRC_H
#define KYV_RESRC_H

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "KYV/StrLib.h"

namespace KYV {

class String;

/// A store of named option values. Names match exactly; later writes win. A value's text stays where it is until this
/// very value changes.
class Resrc {
 public:
  /// Where a value came from.
  enum Source { NONE = 0, PROGRAM = 1, FILE = 2, ENVIRON = 3, CMDLINE = 4, CODE = 5 };

  /// Replaces the value (which may be null: set without value) and source of an entry, or appends a new one.
  /// @param place  how a message names the place that it came from, "-col" or "kyv.cfg:3: color_label"
  int add(const char* name, const char* value, int source, const std::string& place = {});
  int set(const char* name, const char* value, int source) { return add(name, value, source); }
  int set(const char* name, const char* value) { return add(name, value, CODE); }
  int set(const char* name, const String& value);
  int put(const char* name, const char* value) { return add(name, value, CODE); }
  /// Joins new text behind (before) the value with a separator, 0 meaning newline; the source of an entry stays.
  int append(const char* name, const char* value, char sep);
  int prepend(const char* name, const char* value, char sep);

  /// The value; empty for an entry without value, null without entry.
  const char* get(const char* name) const;
  const char* get(const char* name, const char* dflt) const;
  /// The number at the start of the value, only when its first character is a digit.
  int get(const char* name, int dflt) const;
  float get(const char* name, float dflt) const;
  /// 0 without entry and for "no", "off", "false" in any case; else 1, the empty value included.
  int getBool(const char* name) const;
  KYV_SCANF(3, 4) int scanf(const char* name, const char* format, ...) const;
  /// The entry's source, 0 without entry.
  int getType(const char* name) const;
  /// How a message names the place that the value came from; the name of the entry itself where nobody has said.
  std::string getPlace(const char* name) const;
  /// Iteration over all entries, from the head when next is 0; 0 at the end.
  int getValues(String& name, String& value, int next);
  int rewind();
  /// The next name, null at the end.
  const char* getNext();
  /// "%s: %s\n" or "%s: not set\n" on standard output.
  int print(const char* name) const;
  /// One line an entry with its source.
  int printAll() const;
  int clear();

 private:
  struct Entry {
    std::string name;
    std::optional<std::string> value;
    int source;
    std::string place;
  };
  const Entry* find(const char* name) const;
  Entry* find(const char* name);
  int join(const char* name, const char* value);

  std::deque<Entry> entries;
  std::map<std::string, std::size_t, std::less<>> places;  // of the entries, by name
  std::size_t cursor = 0;
};

}  // namespace KYV
#endif
