#include "KYV/Resrc.h"

#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <system_error>
#include <utility>

#include "KYV/String.h"

namespace KYV {

namespace {

constexpr char NEWLINE = '\n';

// The number at the start of a text that begins with a digit; dflt where there is none or it is out of range.
template <class Number>
Number toNumber(const std::string& text, Number dflt) {
  if (text.empty() || text[0] < '0' || text[0] > '9') return dflt;
  Number number{};
  const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() ? number : dflt;
}

// How the listing shows where a value came from, by Resrc::Source.
constexpr const char* SOURCE_LABELS[] = {": ", ": ", " (file): ", " (env): ", " (cmd): ", ": "};

const char* sourceLabel(int source) {
  const bool known = source >= 0 && source < static_cast<int>(std::size(SOURCE_LABELS));
  return SOURCE_LABELS[known ? source : Resrc::NONE];
}

}  // namespace

const Resrc::Entry* Resrc::find(const char* name) const {
  if (!name) return nullptr;
  const auto found = places.find(name);
  return found != places.end() ? &entries[found->second] : nullptr;
}

Resrc::Entry* Resrc::find(const char* name) { return const_cast<Entry*>(std::as_const(*this).find(name)); }

int Resrc::add(const char* name, const char* value, int source, const std::string& place) {
  if (!name) return 0;
  // Copied before the old value goes: the new one may be a part of it.
  std::optional<std::string> text;
  if (value) text = value;
  if (Entry* entry = find(name)) {
    entry->value = std::move(text);
    entry->source = source;
    entry->place = place;
    return 1;
  }
  places.emplace(name, entries.size());
  entries.push_back({name, std::move(text), source, place});
  return 1;
}

int Resrc::set(const char* name, const String& value) { return add(name, value.get(), CODE); }

int Resrc::append(const char* name, const char* value, char sep) {
  Entry* entry = find(name);
  if (!entry || !entry->value) return join(name, value);
  const std::string text = StrLib::valid(value, "");
  *entry->value += sep ? sep : NEWLINE;
  *entry->value += text;
  return 1;
}

int Resrc::prepend(const char* name, const char* value, char sep) {
  Entry* entry = find(name);
  if (!entry || !entry->value) return join(name, value);
  std::string text = StrLib::valid(value, "");
  text += sep ? sep : NEWLINE;
  entry->value = text + *entry->value;
  return 1;
}

// The first text of an entry needs no separator.
int Resrc::join(const char* name, const char* value) {
  Entry* entry = find(name);
  if (!entry) return add(name, value, CODE);
  if (value) entry->value = value;
  return 1;
}

const char* Resrc::get(const char* name) const {
  const Entry* entry = find(name);
  if (!entry) return nullptr;
  return entry->value ? entry->value->c_str() : "";
}

const char* Resrc::get(const char* name, const char* dflt) const {
  const char* value = get(name);
  return value ? value : dflt;
}

int Resrc::get(const char* name, int dflt) const {
  const Entry* entry = find(name);
  return entry && entry->value ? toNumber(*entry->value, dflt) : dflt;
}

float Resrc::get(const char* name, float dflt) const {
  const Entry* entry = find(name);
  return entry && entry->value ? toNumber(*entry->value, dflt) : dflt;
}

int Resrc::getBool(const char* name) const {
  const char* value = get(name);
  if (!value) return 0;
  for (const char* no : {"no", "off", "false"}) {
    if (StrLib::iequal(value, no)) return 0;
  }
  return 1;
}

int Resrc::scanf(const char* name, const char* format, ...) const {
  const char* value = get(name);
  if (!value || !format) return 0;
  std::va_list args;
  va_start(args, format);
  const int num = std::vsscanf(value, format, args);
  va_end(args);
  return num;
}

int Resrc::getType(const char* name) const {
  const Entry* entry = find(name);
  return entry ? entry->source : NONE;
}

std::string Resrc::getPlace(const char* name) const {
  const Entry* entry = find(name);
  return entry && !entry->place.empty() ? entry->place : StrLib::valid(name, "");
}

int Resrc::getValues(String& name, String& value, int next) {
  if (!next) rewind();
  name.clear();
  value.clear();
  if (cursor >= entries.size()) return 0;
  const Entry& entry = entries[cursor++];
  name.copy(entry.name.c_str());
  if (entry.value) value.copy(entry.value->c_str());
  return 1;
}

int Resrc::rewind() {
  cursor = 0;
  return 1;
}

const char* Resrc::getNext() { return cursor < entries.size() ? entries[cursor++].name.c_str() : nullptr; }

int Resrc::print(const char* name) const {
  if (!name) return 0;
  if (const char* value = get(name)) {
    std::printf("%s: %s\n", name, value);
  } else {
    std::printf("%s: not set\n", name);
  }
  return 1;
}

int Resrc::printAll() const {
  for (const Entry& entry : entries) {
    std::printf("%s%s%s\n", entry.name.c_str(), sourceLabel(entry.source), entry.value ? entry.value->c_str() : "");
  }
  return 1;
}

int Resrc::clear() {
  entries.clear();
  places.clear();
  return rewind();
}

}  // namespace KYV
