// Lists the files that a convention may mean.
#include <glob.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "KYV/FileTool.h"
#include "KYV/Filename.h"
#include "KYV/Kyv.h"
#include "NameLookup.h"
#include "NameTemplate.h"

namespace KYV {

namespace {

constexpr std::size_t MAX_PATTERNS = 16;  // of one template, whose station may stand there several times

// A name of which parts are open, as patterns of the shell are.
struct Part {
  std::string text;
  bool isOpen;
};
using Pattern = std::vector<Part>;

void add(Pattern& pattern, std::string text, bool isOpen) {
  if (!pattern.empty() && pattern.back().isOpen == isOpen) {
    pattern.back().text += text;
  } else if (!text.empty()) {
    pattern.push_back({std::move(text), isOpen});
  }
}

// A form of a key, in either case.
void addSpellings(Pattern& pattern, const std::string& form) {
  for (const char c : form) {
    const auto letter = static_cast<unsigned char>(c);
    if (c == ANY_LETTER) {
      add(pattern, "[A-Za-z]", true);
    } else if (std::isalpha(letter)) {
      const char both[] = {'[', static_cast<char>(std::tolower(letter)), static_cast<char>(std::toupper(letter)), ']'};
      add(pattern, std::string(both, sizeof both), true);
    } else {
      add(pattern, std::string(1, c), false);
    }
  }
}

// As one word of a shell command, which no program takes for an option.
std::string toWord(const Pattern& pattern) {
  std::string word;
  for (const Part& part : pattern) {
    if (part.isOpen) {
      word += part.text;
      continue;
    }
    word += '\'';
    for (const char c : part.text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    word += '\'';
  }
  return word.starts_with("'-") || word.starts_with('?') ? "./" + word : word;
}

// The files that fit a pattern, sorted.
std::vector<std::string> findFiles(const Pattern& pattern) {
  std::string text;
  for (const Part& part : pattern) {
    for (const char c : part.text) {
      if (!part.isOpen && std::strchr("*?[\\", c)) text += '\\';
      text += c;
    }
  }
  glob_t names = {};
  std::vector<std::string> files;
  if (glob(text.c_str(), 0, nullptr, &names) == 0) files.assign(names.gl_pathv, names.gl_pathv + names.gl_pathc);
  globfree(&names);
  return files;
}

// Names in as many columns as fit, along the lines, as ls -x writes them: a command line could not hold so many. Bytes
// that a terminal could take for commands are shown as '?'.
void writeColumns(std::vector<std::string> names) {
  constexpr std::size_t WIDTH = 80, GAP = 2;  // characters of a line; between columns
  for (std::string& name : names) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
  }
  std::vector<std::size_t> widths;
  std::size_t columns = std::min(names.size(), WIDTH / (GAP + 1));
  for (; columns > 1; --columns) {
    widths.assign(columns, 0);
    for (std::size_t i = 0; i < names.size(); ++i) {
      std::size_t& width = widths[i % columns];
      width = std::max(width, names[i].size() + (i % columns + 1 < columns ? GAP : 0));
    }
    if (std::accumulate(widths.begin(), widths.end(), std::size_t{0}) < WIDTH) break;
  }
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const bool last = columns < 2 || i % columns + 1 == columns || i + 1 == names.size();
    text += names[i];
    if (last) {
      text += '\n';
    } else {
      text.append(widths[i % columns] - names[i].size(), ' ');
    }
  }
  Kyv::print(text.c_str());
}

// The names of a convention in directory i of its lists: one pattern or, in any spelling, one for each form of a key.
std::vector<Pattern> getPatterns(const NameConv& conv, int i, bool anySpelling) {
  std::vector<Pattern> patterns(1);
  const auto addAll = [&patterns](const std::string& text, bool isOpen) {
    for (Pattern& pattern : patterns) add(pattern, text, isOpen);
  };
  NameTemplate walk(conv.getFile());
  NameCode code;
  while (walk.next(code)) {
    switch (code.kind) {
      case NameCode::TEXT:
        addAll(std::string(code.text), false);
        break;
      case NameCode::DIRECTORY: {
        String list, dir, path;
        conv.getDirectories(code.text, list);
        FileTool::getPath(list.get(), i, dir);
        FileTool::addUserPath(StrLib::valid(dir.get(), "."), path);
        addAll(path.get(), false);
        break;
      }
      case NameCode::KEY: {
        const NamePiece key = {code.kind, code.letter, code.n, StrLib::valid(conv.getKey(code.letter), "0")};
        if (!anySpelling) {
          addAll(std::string(key.shown()), false);
          break;
        }
        std::vector<Pattern> spelled;
        for (const std::string& form : getForms(key)) {
          if (form.empty() || spelled.size() + patterns.size() > MAX_PATTERNS) continue;
          for (Pattern pattern : patterns) {
            addSpellings(pattern, form);
            spelled.push_back(std::move(pattern));
          }
        }
        patterns = std::move(spelled);
        break;
      }
      case NameCode::EXTENSION:
        addAll(conv.getExt(), false);
        break;
      case NameCode::FORECAST:
      case NameCode::ANY:
      case NameCode::DATE: {
        const DateCode* row = DateCode::find(code.letter);
        const int width = std::clamp(row ? row->width : code.n, 1, NameConv::MAX_ANY);
        addAll(std::string(static_cast<std::size_t>(width), '?'), true);
        break;
      }
    }
  }
  return patterns;
}

// Directories of the longest list that a template names.
int countDirectories(const NameConv& conv) {
  int num = 1;
  NameTemplate walk(conv.getFile());
  NameCode code;
  while (walk.next(code)) {
    if (code.kind != NameCode::DIRECTORY) continue;
    String list;
    conv.getDirectories(code.text, list);
    num = std::max(num, FileTool::numPath(list.get()));
  }
  return num;
}

// The patterns that have files, looked for as the search does: along the directories, first with the keys as they were
// given. Without any that of the first directory.
std::vector<Pattern> findPatterns(const NameConv& conv) {
  const int num = countDirectories(conv);
  for (const bool anySpelling : {false, true}) {
    for (int i = 0; i < num; ++i) {
      std::vector<Pattern> patterns = getPatterns(conv, i, anySpelling);
      std::erase_if(patterns, [](const Pattern& pattern) { return findFiles(pattern).empty(); });
      if (!patterns.empty()) return patterns;
    }
  }
  return getPatterns(conv, 0, false);
}

}  // namespace

void Filename::listFile() {
  std::string command = "ls -x";
  std::vector<std::string> names;
  for (const Pattern& pattern : findPatterns(conv)) {
    command += " " + toWord(pattern);
    const std::vector<std::string> more = findFiles(pattern);
    names.insert(names.end(), more.begin(), more.end());
  }
  Kyv::outMessage(4, "SEARCH: %s\n", command.c_str());
  writeColumns(names);
  if (names.empty()) Kyv::outMessage(4, "No file fits\n");
  Kyv::exit(names.empty() && Kyv::getResrcBool("strict") ? Kyv::NOFILE : Kyv::NOERR);
}

}  // namespace KYV
