#include "KYV/ResrcFile.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/Resrc.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr std::size_t MAX_TAGS = 10;
constexpr int MAX_TAG = 19;            // characters
constexpr std::size_t MAX_DEPTH = 12;  // open IFs that count
constexpr int MAX_FULL_NAME = 59;      // characters

// The tag that an IF takes as defined in every program of this version.
constexpr const char* VERSION_TAG = "V6";

// Resource files of a directory, in the order of trying.
constexpr const char* STANDARD_NAMES[] = {"kyv.cfg", ".kyvdef", "Kyv.res"};

// What the line of a file can be, read as a name and a value.
struct Words {
  char name[50] = "";
  char value[250] = "";
  int num = 0;
};

Words scanWords(const String& line) {
  Words words;
  words.num = std::max(line.scanf("%49s %249s", words.name, words.value), 0);
  if (words.value[0] != '"') return words;
  // Quotes with nothing between them give no second word to this scan: they are an empty value.
  words.value[0] = '\0';
  (void)line.scanf("%49s \"%249[^\"]", words.name, words.value);
  return words;
}

// Text after the last '.' or '*'.
std::string_view bareName(std::string_view name) {
  const std::size_t last = name.find_last_of(".*");
  return last == std::string_view::npos ? name : name.substr(last + 1);
}

// Tags are kept cut, so a longer one is compared by what is kept of it.
bool isSameTag(const std::string& tag, const char* other) {
  char kept[MAX_TAG + 1];
  StrLib::copy(kept, other);
  return StrLib::iequal(tag.c_str(), kept);
}

// A '*' takes the name to the first occurrence of the text that follows it, up to the next '*': the first alone, so
// "*map" does not match "mapmap".
bool matches(std::string_view pattern, std::string_view name) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < pattern.size();) {
    if (pattern[i] != '*') {
      if (at >= name.size() || name[at] != pattern[i]) return false;
      ++at;
      ++i;
      continue;
    }
    const std::size_t end = std::min(pattern.find('*', i + 1), pattern.size());
    if (i + 1 == pattern.size()) return false;
    const std::string_view piece = pattern.substr(i + 1, end - i - 1);
    at = name.find(piece, at);
    if (at == std::string_view::npos) return false;
    at += piece.size();
    i = end;
  }
  return at == name.size();
}

// What would never come to an end: a device, or a fifo that nobody may write. Those below /dev and /proc are pipes
// that the shell has laid.
bool isEndless(const char* path) {
  const std::string_view name = path;
  const bool piped = name.starts_with("/dev/") || name.starts_with("/proc/");
  return FileTool::isDevice(path) || (FileTool::isFifo(path) && !piped);
}

}  // namespace

int ResrcFile::init() {
  close();
  prog[0] = second[0] = '\0';
  tags.clear();
  states.clear();
  return 1;
}

int ResrcFile::set(const Resrc& r) { return set(r.get("prog"), r.get("name")); }

int ResrcFile::set(const char* progName, const char* secondName) {
  StrLib::copy(prog, progName);
  StrLib::copy(second, secondName);
  return 1;
}

int ResrcFile::setTag(const char* tag) {
  if (!StrLib::valid(tag) || tags.size() >= MAX_TAGS) return 0;
  char kept[MAX_TAG + 1];
  StrLib::copy(kept, tag);
  tags.emplace_back(kept);
  return 1;
}

int ResrcFile::openAs(const char* name, bool data) {
  path_read = name;
  line_number = 0;
  return data ? file.openData(name) : file.open(name, "r");
}

int ResrcFile::open(const char* path) {
  close();
  tooDeep = false;
  if (!StrLib::valid(path)) return FileTool::isFile(STANDARD_NAMES[0]) ? openAs(STANDARD_NAMES[0], true) : 0;
  if (!FileTool::isDir(path)) return isEndless(path) ? 0 : openAs(path, false);
  for (const char* name : STANDARD_NAMES) {
    String full(path);
    FileTool::addPathDelim(full);
    full.append(name);
    // What somebody left in a directory of the list is read as a file alone: opening a fifo would wait for its writer.
    if (FileTool::isFile(full.get())) return openAs(full.get(), true);
  }
  return 0;
}

int ResrcFile::close() { return file.close(); }

int ResrcFile::get(String& name, String& value) {
  name.clear();
  value.clear();
  String line;
  while (isOpen() && file.getLine(line) > 0) {
    ++line_number;
    while (line.valid() && (line.view().back() == '\n' || line.view().back() == '\r')) line.chop();
    if (line.getChar(0) == '#') continue;
    Words words = scanWords(line);
    if (words.num < 1) continue;
    const bool passed = directive(words.name, words.value, words.num);
    if (!passed || words.num < 2 || !isTaken()) continue;
    StrLib::lowCase(words.name);
    if (std::string_view(words.name).ends_with(':')) StrLib::chop(words.name);
    name.copy(words.name);
    value.copy(words.value);
    return 1;
  }
  return -1;
}

// Obeys a line when its first word is a directive; whether the line may be a resource line as well.
bool ResrcFile::directive(const char* word, const char* tag, int words) {
  struct Directive {
    const char* word;
    int words;  // fewer are no directive
    int (ResrcFile::*obey)(const char* tag);
    bool isResource;
  };
  static constexpr Directive DIRECTIVES[] = {
      {"DEF", 2, &ResrcFile::setTag, true},      {"UNDEF", 2, &ResrcFile::dropTag, true},
      {"IF", 2, &ResrcFile::beginIf, false},     {"ELIF", 2, &ResrcFile::elseIf, false},
      {"ELSE", 1, &ResrcFile::otherwise, false}, {"END", 1, &ResrcFile::endIf, false},
  };
  for (const Directive& d : DIRECTIVES) {
    if (!StrLib::iequal(word, d.word)) continue;
    if (words >= d.words) (this->*d.obey)(tag);
    return d.isResource;
  }
  return true;
}

int ResrcFile::dropTag(const char* tag) {
  const auto found = std::find_if(tags.begin(), tags.end(), [&](const std::string& t) { return isSameTag(t, tag); });
  if (found != tags.end()) tags.erase(found);
  return 1;
}

int ResrcFile::beginIf(const char* tag) {
  if (states.size() < MAX_DEPTH) {
    states.push_back(StrLib::iequal(tag, VERSION_TAG) || isTag(tag) ? State::True : State::False);
    return 1;
  }
  // Done, so that no ELSE of it lets lines through.
  states.push_back(State::Done);
  if (!tooDeep) Kyv::outWarning("ResrcFile::get: too many nested ifs\n");
  tooDeep = true;
  return 0;
}

int ResrcFile::elseIf(const char* tag) { return nextBranch("ResrcFile::get: elif without an if\n", isTag(tag)); }

int ResrcFile::otherwise(const char*) { return nextBranch("ResrcFile::get: else without an if\n", true); }

int ResrcFile::nextBranch(const char* warning, bool take) {
  if (states.empty()) return Kyv::outWarning("%s", warning), 0;
  State& state = states.back();
  if (state != State::False) {
    state = State::Done;
  } else if (take) {
    state = State::True;
  }
  return 1;
}

int ResrcFile::endIf(const char*) {
  if (states.empty()) return Kyv::outWarning("ResrcFile::get: end without an if\n"), 0;
  states.pop_back();
  return 1;
}

bool ResrcFile::isTag(const char* tag) const {
  return std::any_of(tags.begin(), tags.end(), [&](const std::string& t) { return isSameTag(t, tag); });
}

bool ResrcFile::isTaken() const {
  return std::all_of(states.begin(), states.end(), [](State state) { return state == State::True; });
}

// A resource's name as it is qualified for this program.
std::string ResrcFile::fullName(std::string_view resource) const {
  std::string full = second[0] == '+' ? std::string(prog) + "." + (second + 1) : second[0] ? second : prog;
  full += ".";
  full += resource;
  if (full.size() > MAX_FULL_NAME) full.resize(MAX_FULL_NAME);
  return full;
}

bool ResrcFile::valid(const char* name) const { return name && matches(name, fullName(bareName(name))); }

bool ResrcFile::compare(const char* resource, const char* pattern) const {
  return resource && pattern && matches(pattern, fullName(resource));
}

int ResrcFile::parseName(const char* name, String& out) {
  const std::string bare(bareName(StrLib::valid(name, "")));
  return out.copy(bare.c_str());
}

int ResrcFile::getValid(String& name, String& value) {
  int result = get(name, value);
  while (result > 0 && !valid(name.get())) result = get(name, value);
  if (result > 0) {
    name.trunc(MAX_FULL_NAME);
    parseName(name.get(), name);
  }
  return result;
}

int ResrcFile::readFile(Resrc& r, const char* path) {
  if (!open(path)) return 0;
  String name;
  String value;
  while (getValid(name, value) > 0) r.set(name.get(), value);
  close();
  return 1;
}

}  // namespace KYV
