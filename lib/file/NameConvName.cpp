#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "KYV/DateTool.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/NameConv.h"
#include "NameLookup.h"
#include "NameTemplate.h"
#include "TextFormat.h"

namespace KYV {

namespace {

constexpr int MAX_FORECAST = 20;  // digits

// The text of a date code, and the field of `used` that it shows.
std::string showDate(const DateCode& code, int n, const Date& d, DateVal& used) {
  const int by = std::max(n, 1);
  const int field = code.form == DateCode::DAY_OF_YEAR ? d.getJulian() : d.*code.field;
  if (Const::isMissing(field)) return code.missing;
  const int whole = code.form == DateCode::SHORT_YEAR ? field % 100 : field;
  const int value = whole / by * by;
  if (code.form == DateCode::DAY_OF_YEAR) {
    if (!Const::isMissing(d.year)) Date::setJulian(d.year, value, used.month, used.day);
    return textFormat("%3.3d", value);
  }
  used.*code.field = field - whole + value;
  if (code.form == DateCode::UPPER_MONTH) return StrLib::valid(DateTool::getMonth(value), code.missing);
  if (code.form == DateCode::LOWER_MONTH) return StrLib::valid(DateTool::getMonthLower(value), code.missing);
  return textFormat("%*.*d", code.width, code.width, value);
}

// Takes up to n digits off the text; false when it begins with none.
bool takeDigits(std::string_view& text, int n, int& value) {
  int num = 0;
  value = 0;
  for (; num < n && !text.empty() && text.front() >= '0' && text.front() <= '9'; ++num) {
    value = value * 10 + (text.front() - '0');
    text.remove_prefix(1);
  }
  return num > 0;
}

// The reverse of showDate(); days of the year go to `julian`.
bool readDate(const DateCode& code, std::string_view& text, DateVal& read, int& julian) {
  if (code.form == DateCode::LOWER_MONTH || code.form == DateCode::UPPER_MONTH) {
    const std::string month(text.substr(0, static_cast<std::size_t>(code.width)));
    read.month = DateTool::decodeMonth(month.c_str());
    text.remove_prefix(month.size());
    return read.month > 0 && static_cast<int>(month.size()) == code.width;
  }
  int value = 0;
  if (!takeDigits(text, code.width, value)) return false;
  if (code.form == DateCode::DAY_OF_YEAR) {
    julian = value;
  } else if (code.form == DateCode::SHORT_YEAR) {
    read.year = value + (value < 50 ? 2000 : 1900);
  } else {
    read.*code.field = value;
  }
  return true;
}

// As much of the text as a key or an extension takes: n characters, or all before the template's next character.
std::string_view takeText(std::string_view& text, int n, NameTemplate after) {
  NameCode code;
  std::size_t num = text.size();
  if (n > 0) {
    num = std::min(text.size(), static_cast<std::size_t>(n));
  } else if (after.next(code)) {
    if (code.kind != NameCode::TEXT) return {};
    num = std::min(text.find(code.text), text.size());
  }
  const std::string_view part = text.substr(0, num);
  text.remove_prefix(num);
  return part;
}

}  // namespace

void NameConv::getDirectories(std::string_view resource, String& list) const {
  if (path.valid()) {
    list.copy(path);
    return;
  }
  const char* dirs = Kyv::resrc.get(std::string(resource).c_str());
  if (resource == findPathResource('D') && StrLib::valid(dirs) && *dirs == '+') dirs = Kyv::resrc.get(dirs + 1);
  list.copy(StrLib::valid(dirs, "."));
}

void NameConv::expand(const Date& d, int which, NameLookup& lookup, std::vector<NamePiece>& pieces) {
  pieces.clear();
  pexist = true;
  DateVal used;
  std::string prefix;  // what stands before and in the directory
  NameTemplate walk(which ? hdr : file);
  NameCode code;
  while (!literal && walk.next(code)) {
    NamePiece piece = {code.kind, code.letter, code.n, std::string(code.text)};
    switch (code.kind) {
      case NameCode::TEXT:
        break;
      case NameCode::DATE:
        piece.text = showDate(*DateCode::find(code.letter), code.n, d, used);
        break;
      case NameCode::DIRECTORY: {
        String list, dir;
        getDirectories(code.text, list);
        npath = FileTool::numPath(list.get());
        FileTool::getPath(list.get(), cpath, dir);
        // An empty entry of a list is the current directory, not the root.
        piece.text = StrLib::valid(dir.get(), ".");
        break;
      }
      case NameCode::EXTENSION:
        piece.text = ext;
        break;
      case NameCode::FORECAST: {
        const char* hours = getKey('f');
        const int width = std::clamp(code.n, 1, MAX_FORECAST);
        const long value = *hours ? std::strtol(hours, nullptr, 10) : fore_time;
        piece.text = textFormat("%*.*ld", width, width, value);
        break;
      }
      case NameCode::ANY:
        piece.text.assign(static_cast<std::size_t>(std::clamp(code.n, 1, MAX_ANY)), '?');
        break;
      case NameCode::KEY:
        piece.text = getKey(code.letter);
        if (piece.text.empty()) piece = {NameCode::TEXT, code.letter, 0, "0"};
        break;
    }
    prefix += piece.shown();
    if (piece.kind == NameCode::DIRECTORY && !lookup.isThere(prefix)) pexist = false;
    if (piece.kind == NameCode::TEXT && !pieces.empty() && pieces.back().kind == NameCode::TEXT) {
      pieces.back().text += piece.text;
    } else {
      pieces.push_back(std::move(piece));
    }
  }
  if (literal) pieces.push_back({NameCode::TEXT, '\0', 0, which ? hdr : file});
  date.set(used);
}

int NameConv::encode(const Date& d, int which, String& out) {
  NameLookup lookup(false);
  std::vector<NamePiece> pieces;
  expand(d, which, lookup, pieces);
  join(pieces, out);
  return out.valid();
}

void NameConv::join(const std::vector<NamePiece>& pieces, String& out) const {
  out.clear();
  for (const NamePiece& piece : pieces) out.append(std::string(piece.shown()).c_str());
  Kyv::outDebug("Filename: %s\n", out.get());
  if (Kyv::isDebug(1)) {
    Kyv::outDebug("Date: ");
    date.print();
  }
}

int NameConv::decode(const char* name) {
  if (literal || !*file || !StrLib::valid(name)) return 0;
  // As many components as the template has beside its first; what comes before, the directories, may be anything.
  std::string_view pattern(file);
  std::string_view text(name);
  const auto slashes = std::max(std::count(pattern.begin(), pattern.end(), '/'), std::ptrdiff_t{1});
  std::size_t cut = text.size();
  for (std::ptrdiff_t i = 0; i < slashes; ++i) {
    cut = cut == 0 ? std::string_view::npos : text.rfind('/', cut - 1);
    if (cut == std::string_view::npos) break;
  }
  const bool whole = cut == std::string_view::npos;
  if (whole && std::count(text.begin(), text.end(), '/') + 1 < slashes) return 0;
  if (!whole) text.remove_prefix(cut + 1);
  pattern.remove_prefix(pattern.find('/') == std::string_view::npos ? 0 : pattern.find('/') + 1);

  NameConv read = *this;
  DateVal fields;
  int julian = Const::MISS;
  NameTemplate walk(pattern);
  NameCode code;
  bool fitting = true;
  while (fitting && walk.next(code)) {
    const std::string_view before = text;
    switch (code.kind) {
      case NameCode::TEXT:
        fitting = text.starts_with(code.text);
        if (fitting) text.remove_prefix(code.text.size());
        break;
      case NameCode::DATE:
        fitting = readDate(*DateCode::find(code.letter), text, fields, julian);
        break;
      case NameCode::FORECAST:
        fitting = takeDigits(text, std::clamp(code.n ? code.n : MAX_FORECAST, 1, 9), read.fore_time);
        break;
      case NameCode::ANY: {
        const auto n = static_cast<std::size_t>(std::clamp(code.n, 1, MAX_ANY));
        fitting = text.size() >= n;
        text.remove_prefix(std::min(n, text.size()));
        break;
      }
      case NameCode::DIRECTORY:
        takeText(text, 0, walk);
        break;
      case NameCode::EXTENSION:
      case NameCode::KEY: {
        const bool isKey = code.kind == NameCode::KEY;
        const NamePiece piece = {code.kind, code.letter, code.n, isKey ? read.getKey(code.letter) : read.ext};
        const std::string_view known = piece.shown();
        if (!known.empty() && text.starts_with(known)) {
          text.remove_prefix(known.size());
          break;
        }
        const std::string part(takeText(text, code.n, walk));
        fitting = !part.empty() && (isKey ? read.setKey(code.letter, part.c_str()) : read.setExt(part.c_str()));
        break;
      }
    }
    if (!fitting) {
      Kyv::outDebug(5, "%s = %s\n",
                    std::string(code.text.empty() ? std::string_view(&code.letter, 1) : code.text).c_str(),
                    std::string(before).c_str());
    }
  }
  if (!fitting || !text.empty()) return 0;
  if (!Const::isMissing(julian) && !Const::isMissing(fields.year)) {
    Date::setJulian(fields.year, julian, fields.month, fields.day);
  }
  *this = read;
  date.set(fields);
  return 1;
}

}  // namespace KYV
