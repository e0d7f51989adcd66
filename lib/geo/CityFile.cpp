#include "KYV/CityFile.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <string_view>

#include "DataOpen.h"
#include "KYV/CityData.h"
#include "KYV/FileTool.h"
#include "KYV/Number.h"

namespace KYV {

namespace {

constexpr int MAX_LINE = 120;        // characters
constexpr int FIELDS_TO_WMO = 9;     // of the ten fields of a line
constexpr float MAX_ELEV = 9000.0f;  // what lies above stands for unknown
constexpr const char* NO_WMO = "99999";

// The next word, at most `width` characters of it; empty at the end.
std::string_view takeWord(std::string_view& text, std::size_t width) {
  text = trimFront(text);
  const std::string_view word = text.substr(0, std::min(text.find_first_of(BLANKS), width));
  text.remove_prefix(word.size());
  return word;
}

template <std::size_t N>
bool takeText(std::string_view& text, std::size_t width, char (&field)[N]) {
  const std::string_view word = takeWord(text, width);
  if (word.empty()) return false;
  field[word.copy(field, N - 1)] = '\0';
  return true;
}

// '*' before the digit is allowed.
bool takePriority(std::string_view& text, int& priority) {
  std::string_view word = takeWord(text, std::string_view::npos);
  if (word.empty()) return false;
  if (word.front() == '*') word.remove_prefix(1);
  if (!word.empty() && word.front() >= '0' && word.front() <= '9') priority = word.front() - '0';
  return true;
}

// The fields of a line as "%20s %2s %2s %9s %s %f %f %f %s %d" reads them, up to the first that cannot be read. Not
// with sscanf: a search goes through thousands of lines at each start of the program.
void decodeLine(std::string_view text, CityData& data) {
  constexpr std::size_t WHOLE = std::string_view::npos;
  int count = 0;
  const auto field = [&count](bool taken) { return taken && ++count; };
  (void)(field(takeText(text, 20, data.name)) && field(takeText(text, 2, data.state)) &&
         field(takeText(text, 2, data.country)) && field(takeText(text, 9, data.id)) &&
         field(takePriority(text, data.priority)) && field(takeNumber(text, data.lat)) &&
         field(takeNumber(text, data.lon)) && field(takeNumber(text, data.elev)) &&
         field(takeText(text, WHOLE, data.wmo)) && field(takeNumber(text, data.number)));
  if (count < FIELDS_TO_WMO) data.number = 0;
  if (data.elev > MAX_ELEV) data.elev = Const::MISS;
  if (StrLib::equal(data.wmo, NO_WMO)) StrLib::clear(data.wmo);
}

}  // namespace

int CityFile::open(const char* name, int mode) {
  close();
  const int opened = mode == File::READ ? openDataFile(file, name) : mode == File::WRITE ? file.open(name, "w") : 0;
  if (!opened) return 0;
  const std::int64_t size = mode == File::READ ? FileTool::getSize(name) : 0;
  num = static_cast<int>(std::clamp<std::int64_t>(size / LINE_SIZE, 0, INT_MAX));
  return 1;
}

int CityFile::rewind() { return file.rewind(); }

int CityFile::close() {
  num = 0;
  return file.close();
}

int CityFile::read(CityData& data) {
  char line[MAX_LINE + 1];
  const int n = file.getLine(line, sizeof line);
  if (n < 0 || (n == 0 && file.endFile())) return 0;
  const std::string_view text(line, static_cast<std::size_t>(n));
  if (n == MAX_LINE && text.back() != '\n') file.skipLine();
  decodeLine(text, data);
  return 1;
}

}  // namespace KYV
