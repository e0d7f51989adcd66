#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "KYV/DateTool.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/NameConv.h"
#include "KYV/NameConvFile.h"
#include "KYV/TimeSpec.h"
#include "NameLookup.h"
#include "NameTemplate.h"
#include "TextFormat.h"

namespace KYV {

namespace {

// "2024-05-01 18:30"
std::string minuteText(const Date& d) {
  String text;
  d.toText("%Y-%m-%d %H:%M", text);
  return text.get();
}

}  // namespace

bool NameConv::fits(const char* name) const {
  const std::int64_t size = FileTool::getSize(name);
  Kyv::outDebug(3, "LATE: %s %d %ld %d\n", name, output, static_cast<long>(min_size), static_cast<int>(size));
  if (min_size == Const::MISS) return size >= 0;
  return min_size >= 0 && size >= min_size;
}

// Puts the name that the file of a date has in the directory in hand into `found`.
std::vector<NamePiece> NameConv::nameFile(const Date& d, NameLookup& lookup) {
  std::vector<NamePiece> pieces;
  expand(d, 0, lookup, pieces);
  join(pieces, found);
  return pieces;
}

// Whether the directory in hand has the file of a date, which is then named.
bool NameConv::hasFile(const Date& d, NameLookup& lookup) {
  const std::vector<NamePiece> pieces = nameFile(d, lookup);
  if (output || !pexist) return output && pexist;
  if (!lookup.isOpen(pieces)) return fits(found.get());
  std::string name;
  const bool there = lookup.find(
      pieces, [this](const char* file_name) { return fits(file_name); }, name);
  if (there) found.copy(name.c_str());
  return there;
}

bool NameConv::findDate(const Date& d, NameLookup& lookup) {
  npath = 1;
  for (cpath = 0; cpath < npath; ++cpath) {
    const bool there = hasFile(d, lookup);
    Kyv::outDebug(4, "LATE0: %s %d\n", found.get(), cpath);
    if (there) return true;
  }
  cpath = 0;
  nameFile(d, lookup);
  return false;
}

// Goes through the periods from a start, in each directory in turn: no more of both together than one directory may
// have.
bool NameConv::findBack(const Date& start, int direction, int tries, NameLookup& lookup) {
  Date d;
  npath = 1;
  for (cpath = 0; cpath < npath; ++cpath) {
    d = start;
    for (int i = 0; i < std::min(tries, std::max(MAX_LIMIT / std::max(npath, 1), 1)); ++i) {
      Kyv::outDebug(3, "LATE:%d %d %d %d %d\n", d.year, d.month, d.day, d.hour, d.min);
      if (hasFile(d, lookup)) return true;
      if (std::abs(d - start) > std::abs(last_date - start)) last_date = d;
      if (!pexist || Const::isMissing(off)) break;
      if (i + 1 < tries) d += direction * off;
    }
  }
  cpath = 0;
  nameFile(d, lookup);
  return false;
}

// A search with the keys as they were given and, when that finds nothing, with every spelling of them. Where both find
// nothing, the first one's names stand.
template <class Find>
bool NameConv::withSpellings(Find find) {
  NameLookup exact(false);
  if (find(exact)) return true;
  if (output || numkey == 0) return false;
  const String name = found;
  const Date name_date = date;
  NameLookup any(true);
  if (find(any)) return true;
  found = name;
  date = name_date;
  return false;
}

int NameConv::finish(bool there, NameConvFile& out) {
  out.init();
  out.setType(type);
  out.setFilename(found.get());
  out.setDate(date);
  out.setParam(param);
  out.setOffset(off);
  if (*hdr) {
    const Date file_date = date;
    NameLookup any(true);
    std::vector<NamePiece> pieces;
    String name;
    expand(file_date, 1, any, pieces);
    join(pieces, name);
    std::string known;
    if (any.find(
            pieces, [](const char* header) { return FileTool::exist(header); }, known))
      name.copy(known.c_str());
    out.setHeader(name.get());
    date = file_date;
  }
  return there ? 1 : 0;
}

int NameConv::setFile(const Date& d, NameConvFile& out) {
  first_date = last_date = d;
  const bool there = withSpellings([&](NameLookup& lookup) { return findDate(d, lookup); });
  return finish(there, out);
}

int NameConv::setFile(const Date& d, int back, NameConvFile& out) {
  first_date = last_date = d;
  const int tries = Const::isMissing(off) || off <= 0 ? 1 : std::min(back / off + 1, MAX_LIMIT);
  const bool there = withSpellings([&](NameLookup& lookup) {
    if (findDate(d, lookup)) return true;
    const String name = found;
    const Date name_date = date;
    if (tries > 1 && findBack(d, TimeSpec::BACKWARD, tries, lookup)) return true;
    found = name;
    date = name_date;
    return false;
  });
  return finish(there, out);
}

// Where a specification starts to count: its own date, or now.
void NameConv::getStart(const TimeSpec& time, Date& start) const {
  if (time.isDated()) {
    start.set(time.date);
    if (Const::isMissing(start.hour)) start.setHour(0);
    start.fix();
  } else if (Const::isMissing(static_cast<long>(Kyv::getInitTime())) && late_date.isSet()) {
    start = late_date;
  } else {
    DateTool::getNow(start);
  }
}

// Moves a date back to the last one that has the fixed fields.
void NameConv::fixDate(Date& start) const {
  // From the finest on, each with the step to the value before.
  struct Field {
    int DateVal::*value;
    int (Date::*set)(int);
    int (Date::*step)(int);
  };
  static constexpr Field FIELDS[] = {
      {&DateVal::min, &Date::setMinute, &Date::addHours},
      {&DateVal::hour, &Date::setHour, &Date::addDays},
      {&DateVal::day, &Date::setDay, &Date::addMonths},
      {&DateVal::month, &Date::setMonth, &Date::addYears},
  };
  constexpr int MAX_STEPS = 8;  // years to the last 29 February
  const Date now = start;
  const auto serves = [&now](const Date& d) {
    return d.secs <= now.secs && Date(static_cast<long>(d.secs)).day == d.day;
  };
  for (const Field& field : FIELDS) {
    const int value = fix_date.*field.value;
    if (Const::isMissing(value)) continue;
    if (value < 0) {
      (start.*field.set)(start.*field.value / -value * -value);
      continue;
    }
    (start.*field.set)(value);
    // Where the next field is fixed as well, its own step comes later.
    const Field* next = &field + 1;
    if (next != std::end(FIELDS) && fix_date.*next->value >= 0) continue;
    Date last = start;
    for (int i = 0; i < MAX_STEPS && !serves(last); ++i) (last.*field.step)(-1);
    if (serves(last)) start = last;
  }
}

int NameConv::setLatest(const char* text, NameConvFile& out) {
  out.init();
  const TimeSpec time(StrLib::valid(text, "la"));
  if (time.output) output = true;
  if (time.named) {
    found.copy(time.name);
    out.setFilename(time.name.get());
    return FileTool::exist(time.name.get()) ? 1 : 0;
  }
  Date start;
  getStart(time, start);
  fixDate(start);
  if (time.offset) start += time.offset;
  first_date = last_date = start;
  if (!time.latest) {
    const bool there = withSpellings([&](NameLookup& lookup) { return findDate(start, lookup); });
    Kyv::outDebug(3, "LATE0: %s\n", found.get());
    return finish(there, out);
  }

  std::int64_t tries = limit;
  if (!Const::isMissing(min_time) && !Const::isMissing(off) && off > 0) {
    tries = std::max<std::int64_t>(tries, std::int64_t{min_time} * 60 / off + 1);
  }
  if (!Const::isMissing(time.periods)) {
    tries = time.periods;
    Kyv::outDebug(4, "LATE LIMIT: %d\n", time.periods);
  }
  const int periods = static_cast<int>(std::clamp<std::int64_t>(tries, 1, MAX_LIMIT));
  bool there = withSpellings([&](NameLookup& lookup) { return findBack(start, time.direction, periods, lookup); });
  Kyv::outDebug(3, "LATEST+: %s %s %d %d\n", time.rest.get(), found.get(), cpath, static_cast<int>(date.secs));
  if (time.shift) {
    Date d = date;
    if (d.isSet()) d += time.shift;
    there = withSpellings([&](NameLookup& lookup) { return findDate(d, lookup); });
  }
  return finish(there, out);
}

int NameConv::getSearch(String& text) const {
  text.clear();
  if (!*file) return 0;
  std::string lines = textFormat("  Template: %s\n", file);
  if (numkey) lines += "  Keys:";
  for (int i = 0; i < numkey; ++i) lines += textFormat(" %c=%s", key[i], keyval[i]);
  if (numkey) lines += '\n';
  NameTemplate walk(file);
  NameCode code;
  while (walk.next(code)) {
    if (code.kind != NameCode::DIRECTORY) continue;
    String list, dir;
    getDirectories(code.text, list);
    for (int i = 0; i < FileTool::numPath(list.get()); ++i) {
      FileTool::getPath(list.get(), i, dir);
      const char* name = StrLib::valid(dir.get(), ".");
      const bool there = std::strncmp(name, "http://", 7) == 0 || FileTool::isDir(name);
      lines += "  Directory: " + std::string(name) + (there ? "\n" : " (missing)\n");
    }
  }
  if (!Const::isMissing(off)) {
    lines += "  Times: " + minuteText(first_date) + (first_date - last_date ? " to " + minuteText(last_date) : "");
    lines += textFormat(", every %d min\n", off / 60);
  }
  text.copy(lines.c_str());
  return 1;
}

}  // namespace KYV
