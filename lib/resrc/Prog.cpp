#include "KYV/Prog.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "KYV/Kyv.h"
#include "KYV/ResrcDB.h"
#include "KYV/ResrcDBList.h"
#include "KYV/ResrcFile.h"
#include "Places.h"

namespace KYV {

namespace {

constexpr const char* STANDARD_PLACES = ".:/home/kyv/etc:/usr/local/kyv/etc";
constexpr std::size_t MAX_WORD = 19;  // characters of a command and of the name that it sets
constexpr int ANSWER_SIZE = 160;
constexpr std::string_view BLANKS = " \t\n\v\f\r";
constexpr std::string_view ASSIGNS = "= \t\n\v\f\r";

// Takes the text up to the first of the characters in `end` off the front of the line.
std::string_view takeWord(std::string_view& line, std::string_view end) {
  const std::string_view word = line.substr(0, line.find_first_of(end));
  line.remove_prefix(word.size());
  return word;
}

void skip(std::string_view& line, std::string_view chars) {
  line.remove_prefix(std::min(line.find_first_not_of(chars), line.size()));
}

void trim(std::string& line) {
  std::string_view rest = line;
  skip(rest, BLANKS);
  line = std::string(rest.substr(0, rest.find_last_not_of(BLANKS) + 1));
}

// A line of at most `most` characters from standard input, the rest of a longer one dropped; false at the end.
bool readAnswer(std::size_t most, std::string& line) {
  line.clear();
  int c = std::getchar();
  if (c == EOF) return false;
  for (; c != EOF && c != '\n'; c = std::getchar()) {
    if (line.size() < most) line += static_cast<char>(c);
  }
  return true;
}

}  // namespace

int Prog::readResrcFile(const char* prog, const char* name, const char* tag, const char* path) {
  const char* given = StrLib::valid(path) ? path : std::getenv("kyvdefault");
  // Copies: what is given may be a value of the store, which the files change.
  const std::vector<std::string> places = splitPlaces(given ? given : STANDARD_PLACES);
  const String fileTag(tag);
  ResrcFile file;
  file.set(prog, name);
  for (const std::string& place : places) {
    if (!file.open(place.c_str())) continue;
    if (fileTag.valid()) file.setTag(fileTag.get());
    String entry;
    String value;
    while (file.getValid(entry, value) > 0) Kyv::putResrc(entry.get(), value.get());
  }
  return ResrcDB::apply();
}

int Prog::printProg(int n, const char* title) {
  return Kyv::outMessage(n, "      %s (Ver %s)\n\n", StrLib::valid(title, ""), Kyv::getVersion());
}

int Prog::printHelp(ResrcDBList& keyed, ResrcDBList& positional, const char* text) {
  if (!Kyv::getResrcBool("help")) return 0;
  const String prog(Kyv::getResrc("prog", Kyv::getProgramName()));
  Kyv::outMessage("%s: %s\n", prog.get(), StrLib::valid(text, ""));
  ResrcDB::printHelp(prog.get(), keyed, positional);
  return 1;
}

int Prog::setCommand(const char* line) {
  std::string_view rest = StrLib::valid(line, "");
  if (rest == "exit") Kyv::exit(Kyv::NOERR);
  skip(rest, BLANKS);
  if (takeWord(rest, BLANKS) != "set") return 0;
  skip(rest, BLANKS);
  const std::string name(takeWord(rest, ASSIGNS).substr(0, MAX_WORD));
  if (name.empty()) {
    Kyv::print("Set resources\n");
    Kyv::printAllResrc();
    Kyv::print("\n");
    return 1;
  }
  skip(rest, ASSIGNS);
  Kyv::putResrc(name.c_str(), std::string(rest).c_str());
  return 1;
}

int Prog::prompt(const char* text, char* answer, int n) {
  if (!answer || n < 1) return 0;
  std::string line;
  bool read = false;
  do {
    answer[0] = '\0';
    Kyv::print(text);
    std::fflush(stdout);
    read = readAnswer(static_cast<std::size_t>(std::max(n - 2, 0)), line);
    if (!read) return 0;
    trim(line);
    StrLib::copy(answer, n, line.c_str());
  } while (setCommand(answer));
  return 1;
}

int Prog::prompt(const char* text, String& answer) {
  char line[ANSWER_SIZE];
  const int result = prompt(text, line, ANSWER_SIZE);
  answer.copy(line);
  return result;
}

String Prog::prompt(const char* text) {
  String answer;
  prompt(text, answer);
  return answer;
}

}  // namespace KYV
