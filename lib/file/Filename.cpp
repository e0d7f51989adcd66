#include "KYV/Filename.h"

#include <cstdio>

#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/NameConvFile.h"
#include "KYV/TimeSpec.h"

namespace KYV {

bool Filename::isNamed() const { return *conv.getFile() != '\0'; }

int Filename::setLiteral(const char* text) {
  own.clear();
  name.copy(text);
  hdr.clear();
  date.init();
  base_date.init();
  search.clear();
  file_off = own_off;
  is_set = fixed = name.valid();
  return is_set;
}

// Takes over what the convention has found, or the name that it would have.
int Filename::take(int there, const NameConvFile& found) {
  name.copy(conv.getName());
  // The name of a file, though a template may come from anywhere.
  if (name.getChar(0) == '|') {
    name.copy("./");
    name.append(conv.getName());
  }
  hdr.copy(found.getHeader());
  StrLib::copy(type, found.getType());
  StrLib::copy(param, found.getParam());
  date = found.date;
  file_off = Const::isMissing(own_off) ? found.offset : own_off;
  is_set = name.valid();
  fixed = false;
  search.clear();
  latest = false;
  if (!there) conv.getSearch(search);
  return there;
}

int Filename::setLatest(const char* spec) {
  own.clear();
  NameConvFile found;
  const int there = take(conv.setLatest(spec, found), found);
  const TimeSpec time(StrLib::valid(spec, "la"));
  latest = time.latest && time.shift == 0;
  base_date = date;
  if (base_date.isSet()) base_date.fix();
  return there;
}

int Filename::set(const char* convention, const char* spec) {
  conv.set(convention);
  if (isNamed()) return setLatest(spec);
  return setLiteral(spec) && exist();
}

int Filename::set(const char* convention, const Date& d) {
  conv.set(convention);
  if (!isNamed()) return 0;
  own.clear();
  NameConvFile found;
  const int there = take(conv.setFile(d, found), found);
  base_date = d;
  return there;
}

int Filename::checkFile(const char* spec) {
  is_set = fixed = false;
  asked.clear();
  if (!StrLib::valid(spec)) return name.clear(), 0;
  if (StrLib::equal(spec, "exit")) Kyv::exit(Kyv::NOERR);
  if (*spec == '@') return setLiteral(spec + 1);
  if (FileTool::isStdio(spec)) return setLiteral("-");
  if (!isNamed()) return setLiteral(spec);
  const bool hasDate = *spec == '#';
  const bool hasOffset = (StrLib::iequal(spec, "cu=", 3) || StrLib::iequal(spec, "cu-", 3)) && spec[3];
  const bool isNow = StrLib::iequal(spec, "cu");
  if (hasDate || hasOffset || isNow || StrLib::iequal(spec, "la", 2)) {
    // Now is an offset of nothing: no search. A file whose name only looks like a time is meant where there is none of
    // that time.
    if (!setLatest(isNow ? "0" : spec + (hasOffset ? 3 : 0)) && FileTool::isFile(spec) &&
        !findDate(Date(date), MAX_AGE)) {
      return setLiteral(spec);
    }
    // The frame is that of the date asked for, whether or not its file is there.
    const TimeSpec time(spec);
    if (hasDate && time.isDated() && !time.latest) {
      time.getDate(date);
      base_date = date;
      base_date.fix();
    }
    return 1;
  }
  if (FileTool::isFullPath(conv.getFile()) && FileTool::isFullPath(spec)) return setLiteral(spec);

  if (!conv.decode(spec)) return setLiteral(spec);
  conv.getDate(own_date);
  own.copy(FileTool::exist(spec) ? spec : "");
  findDate(own_date, 0);
  base_date = date;
  if (base_date.isSet()) base_date.fix();
  fixed = Const::isMissing(conv.off);
  return 1;
}

// The file of a date, or the newest before it that is at most `back` seconds older. The file that the user has named
// stands for its own date, whatever the directories of the template hold.
int Filename::findDate(const Date& d, int back) {
  NameConvFile found;
  const int there = take(conv.setFile(d, back, found), found);
  const bool isOwn = date.secs == own_date.secs;  // the name of this date is that of the user's file
  const bool isNewer = own_date < d && own_date.secs + back >= d.secs && !(there && date > own_date);
  if (!own.valid() || !(isOwn || isNewer)) return there;
  take(conv.setFile(own_date, found), found);
  name.copy(own);
  search.clear();
  return exist();
}

int Filename::setFile(const char* spec) {
  if (!StrLib::valid(spec)) return setFile();
  files.set(spec, ',');
  return setList();
}

int Filename::setFile() {
  const char* names = Kyv::resrc.get("filename");
  const char* current = Kyv::resrc.get("current");
  if (StrLib::equal(names, "list")) listFile();
  if (!StrLib::valid(names)) {
    if (!isNamed()) return 0;
    files.clear();
    asked.clear();
    return setLatest(StrLib::valid(current, "la"));
  }
  files.set(names, StrLib::index(names, '\n') >= 0 ? '\n' : ',');
  const bool list = files.getNum() > 1 && !files.iequal(1, "nh=", 3);
  if (!current || list) return setList() && exist();
  // A convention as the first name; station and product are those of the options.
  const NameConv before = conv;
  conv.set(files.getString(0));
  conv.addKeys(before);
  return isNamed() ? setLatest(current) : setLiteral(files.getString(0)) && exist();
}

// The items of `files`: a specification and its time window, or the names of the frames.
int Filename::setList() {
  asked.clear();
  if (listed) num_file = 1;
  listed = false;
  if (files.getNum() > 1 && files.iequal(1, "nh=", 3)) {
    String window(files.getString(1, 3));
    for (int i = 2; i < files.getNum(); ++i) {
      window.append(',');
      window.append(StrLib::valid(files.getString(i), ""));
    }
    const String spec(files.getString(0));
    files.clear();
    const int chosen = checkFile(spec.get());
    setNumFiles(window.get());
    return chosen;
  }
  if (files.getNum() < 2) {
    const String spec(files.getString(0));
    files.clear();
    return checkFile(spec.get());
  }
  num_file = files.getNum();
  num_type = FILES;
  listed = true;
  return setLiteral(files.getString(0));
}

bool Filename::exist() const { return is_set && (FileTool::isStdio(name.get()) || FileTool::exist(name.get())); }

const char* Filename::getName(int i) const {
  if (i == 0) return name.get();
  return StrLib::valid(files.getString(i), "");
}

int Filename::getSearch(String& text) const { return text.copy(search), search.valid(); }

int Filename::addOutPath(const char* dir) {
  String out;
  if (name.valid() && FileTool::addOutPath(dir, name.get(), out)) name.copy(out);
  if (hdr.valid() && FileTool::addOutPath(dir, hdr.get(), out)) hdr.copy(out);
  return name.valid();
}

int Filename::print() const {
  std::printf("Filename\n");
  std::printf("  Name: %s\n", name.get());
  if (hdr.valid()) std::printf("  Header: %s\n", hdr.get());
  std::printf("  Type: %s\n", type);
  std::printf("  Param: %s\n", param);
  std::printf("  Fixed: %d\n", fixed);
  std::printf("  Date: ");
  date.print();
  std::printf("  Base date: ");
  base_date.print();
  std::printf("  Frames: %d\n", num_file);
  std::printf("  Offset: %d\n", file_off);
  for (int i = 0; i < files.getNum(); ++i) std::printf("  File %d: %s\n", i, StrLib::valid(files.getString(i), ""));
  return 1;
}

}  // namespace KYV
