#include "KYV/NameConv.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "KYV/DataPath.h"
#include "KYV/File.h"
#include "KYV/Kyv.h"
#include "KYV/Strings.h"
#include "NameTemplate.h"

namespace KYV {

namespace {

constexpr int MIN_LINE = 20;  // characters of a line of the convention file
constexpr int MAX_VALUE = 19;

// The place of the first ":k=" of a convention, where its keys begin; its length without any. Other colons belong to
// the name.
int findKeys(const char* text) {
  const int length = StrLib::length(text);
  for (int i = 0; i + 2 < length; ++i) {
    if (text[i] == ':' && text[i + 2] == '=') return i;
  }
  return length;
}

// A number at the start of the text.
bool readNumber(const char* text, std::int64_t& value) {
  char* end = nullptr;
  const std::int64_t number = std::strtoll(text, &end, 10);
  if (end == text) return false;
  value = number;
  return true;
}

// The convention file; a warning when there is none.
bool openList(File& in) {
  String list;
  if (!DataPath::find(Kyv::getResrc("name_conv", "name.cnv"), list)) {
    String other;
    if (DataPath::find("name_conv", other)) list.copy(other);
  }
  if (!in.openData(list.get())) {
    Kyv::report(Kyv::BADPARAM, "NameConv: No file name convention file: %s\n", list.get());
    return false;
  }
  Kyv::outDebug("Opening name convention file: %s\n", list.get());
  return true;
}

// A line of it.
struct Line {
  char label[21] = "", file[81] = "", header[81] = "", size[31] = "", options[51] = "";

  // False for a comment, and for what is too short.
  bool decode(String& text) {
    text.trimWS();
    if (text.getChar(0) == '#' || text.length() < MIN_LINE) return false;
    return std::sscanf(text.get(), "%20s %80s %80s %30s %50s", label, file, header, size, options) >= 2;
  }
  // Whether the label begins a name.
  bool begins(const char* name) const { return StrLib::iequal(name, label, StrLib::length(label)); }
};

bool isSize(const char* item) { return StrLib::iequal(item, "size=", 5); }
bool isMin(const char* item) { return StrLib::iequal(item, "min=", 4); }

template <std::size_t N>
void copyTemplate(char (&field)[N], const char* text) {
  StrLib::copy(field, text);
  if (!StrLib::equal(field, text)) Kyv::report(Kyv::BADPARAM, "NameConv: Template is too long, cut to: %s\n", field);
}

}  // namespace

void NameConv::setOptions(const char* list) {
  const Strings items(list, ',');
  for (int i = 0; i < items.getNum(); ++i) {
    const char* item = items.getString(i);
    std::int64_t minutes = 0;
    if (isSize(item)) readNumber(item + 5, min_size);
    if (isMin(item) && readNumber(item + 4, minutes)) {
      min_time = static_cast<int>(std::clamp<std::int64_t>(minutes, 0, MAX_LIMIT));
    }
  }
}

int NameConv::set(const char* spec) {
  // Directories and dates belong to the user's choice, not to the convention.
  NameConv fresh;
  fresh.path.copy(path);
  fresh.fix_date = fix_date;
  fresh.late_date = late_date;
  fresh.fore_time = fore_time;
  fresh.output = output;
  fresh.limit = limit;
  *this = fresh;
  if (!StrLib::valid(spec)) return 0;
  if (StrLib::iequal(spec, "none")) return 1;
  if (*spec == '@') {
    literal = true;
    copyTemplate(file, spec + 1);
    return 1;
  }
  const Strings fields(spec, ',');
  const char* first = StrLib::valid(fields.getString(0), "");
  const int end = findKeys(first);
  const String name(first, end);
  const Strings keys(first + std::min(end + 1, StrLib::length(first)), ':');
  for (int i = 0; i < keys.getNum(); ++i) {
    if (keys.getChar(i, 1) == '=') setKey(keys.getChar(i, 0), keys.getString(i, 2));
  }
  const int listed = readFile(name.get());
  if (listed <= 0) {
    copyTemplate(file, name.get());
    const auto isName = [&fields](int i) {
      const char* item = fields.getString(i);
      return StrLib::valid(item) && !isSize(item) && !isMin(item) && !StrLib::equal(item, "-");
    };
    if (isName(1)) copyTemplate(hdr, fields.getString(1));
    if (isName(2)) StrLib::copy(type, fields.getString(2));
    off = NameTemplate::getPeriod(file);
  }
  // After the line of the file, so that the user's word counts.
  String options;
  for (int i = 1; i < fields.getNum(); ++i) {
    options.append(StrLib::valid(fields.getString(i), ""));
    options.append(',');
  }
  setOptions(options.get());
  return listed >= 0 ? 1 : 0;
}

// The line of the convention file for a name: 1 when there is one, 0 when not, -1 without a file.
int NameConv::readFile(const char* name) {
  File in;
  if (!openList(in)) return -1;
  String text;
  while (in.getLine(text) > 0) {
    Line line;
    if (!line.decode(text)) continue;
    const auto& [label, file_name, header, size, options] = line;
    const bool exact = StrLib::iequal(name, label);
    if (!exact && !line.begins(name)) continue;

    copyTemplate(file, file_name);
    if (!StrLib::equal(header, "-")) copyTemplate(hdr, header);
    if (exact) {
      Kyv::outDebug("File name match for: %s\n", name);
    } else {
      const int at = StrLib::lastIndex(name, '_');
      if (at >= 0) setExt(name + at + 1);
      Kyv::outDebug("File name partial match for: %s-%s ext: %s\n", label, file, ext);
    }
    long bytes = 0;
    char word[31] = "";
    const bool sizeFirst = size[0] >= '0' && size[0] <= '9';
    const int num =
        sizeFirst ? std::sscanf(size, "%18ld,%30s", &bytes, word) : std::sscanf(size, "%30[^,],%18ld", word, &bytes);
    if (sizeFirst || num == 2) min_size = bytes;
    if (!StrLib::equal(word, "-")) StrLib::copy(type, word);
    if (!StrLib::equal(options, "-")) StrLib::copy(param, options);
    setOptions(param);
    off = NameTemplate::getPeriod(file);
    return 1;
  }
  Kyv::outDebug("No file name conversion for: %s\n", name);
  return 0;
}

bool NameConv::isKnown(const char* spec, String& known) {
  const Strings fields(spec, ',');
  const char* first = StrLib::valid(fields.getString(0), "");
  const String name(first, findKeys(first));
  if (*first == '@' || name.iequal("none") || name.index('%') >= 0 || name.index('/') >= 0) return true;
  File in;
  String text;
  if (!openList(in)) return false;
  while (in.getLine(text) > 0) {
    Line line;
    if (!line.decode(text)) continue;
    if (line.begins(name.get())) return true;
    if (known.valid()) known.append(", ");
    known.append(line.label);
  }
  return false;
}

int NameConv::setPath(const char* list) {
  const char* name = nullptr;
  if (StrLib::valid(list) && *list == '+') name = list + 1;
  if (StrLib::equal(list, "res=", 4) || StrLib::equal(list, "res:", 4)) name = list + 4;
  if (!name) return path.copy(list), 1;
  const char* value = Kyv::resrc.get(name);
  if (!StrLib::valid(value)) return 0;
  path.copy(value);
  return 1;
}

int NameConv::setKey(char letter, const char* value) {
  int i = static_cast<int>(std::find(key, key + numkey, letter) - key);
  if (i == MAX_KEY) return 0;
  if (i == numkey) key[numkey++] = letter;
  StrLib::copy(keyval[i], sizeof keyval[i], StrLib::valid(value, ""), MAX_VALUE);
  return 1;
}

int NameConv::addKeys(const NameConv& other) {
  for (int i = 0; i < other.numkey; ++i) {
    if (!*getKey(other.key[i])) setKey(other.key[i], other.keyval[i]);
  }
  return 1;
}

const char* NameConv::getKey(char letter) const {
  const auto i = std::find(key, key + numkey, letter) - key;
  return i < numkey ? keyval[i] : "";
}

int NameConv::setFixDate(const char* text) {
  fix_date.init();
  if (!StrLib::valid(text)) return 0;
  int& day = fix_date.day;
  int& hour = fix_date.hour;
  int& min = fix_date.min;
  const int length = StrLib::length(text);
  const bool colon = StrLib::index(text, ':') >= 0;
  const bool dayMark = StrLib::index(text, 'd') >= 0;
  const bool digit = *text >= '0' && *text <= '9';
  if (*text == '#') {
    int* const fields[] = {&fix_date.month, &day, &hour, &min};
    if (std::sscanf(text + 1, "%4d", &fix_date.year) != 1) return 1;
    for (int i = 0; i < 4 && StrLib::isNum(text + std::min(5 + 2 * i, length), 2) && length >= 7 + 2 * i; ++i) {
      std::sscanf(text + 5 + 2 * i, "%2d", fields[i]);
    }
  } else if (length == 6 && !colon) {
    std::sscanf(text, "%2d%2d%2d", &day, &hour, &min);
  } else if (length == 4 && digit && !colon) {
    std::sscanf(text, "%2d%2d", &hour, &min);
  } else if (length == 3 && digit && !colon) {
    std::sscanf(text, "%1d%2d", &hour, &min);
  } else if (dayMark) {
    std::sscanf(text, "%9dd%9d:%9d", &day, &hour, &min);
  } else if (*text == ':') {
    std::sscanf(text, ":%9d", &min);
  } else if (text[0] == '-' && text[1] == ':') {
    if (std::sscanf(text, "-:%9d", &min) == 1) min = -min;
  } else if (std::sscanf(text, "%9d:%9d", &hour, &min) == 2 && *text == '-' && hour == 0) {
    min = -min;
  }
  return 1;
}

int NameConv::print() const {
  std::printf("NameConv\n");
  std::printf("  File: %s\n", file);
  std::printf("  Header: %s\n", hdr);
  std::printf("  Extension: %s\n", ext);
  for (int i = 0; i < numkey; ++i) std::printf("  Key: %c = %s\n", key[i], keyval[i]);
  std::printf("  Path: %s\n", path.get());
  std::printf("  Date: ");
  date.print();
  std::printf("  Min size: %ld\n", static_cast<long>(min_size));
  std::printf("  Min time: %d\n", min_time);
  std::printf("  Offset: %d\n", off);
  std::printf("  File format: %s\n", type);
  std::printf("  Fore time: %d\n", fore_time);
  std::printf("  Params: %s\n", param);
  return 1;
}

}  // namespace KYV
