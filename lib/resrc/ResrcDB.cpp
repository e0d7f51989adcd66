#include "KYV/ResrcDB.h"

#include <algorithm>
#include <string>

#include "KYV/DateTool.h"
#include "KYV/Kyv.h"
#include "KYV/Resrc.h"
#include "KYV/ResrcCL.h"
#include "KYV/ResrcDBList.h"
#include "KYV/ResrcEnv.h"
#include "KYV/ResrcFile.h"
#include "KYV/String.h"
#include "KYV/Strings.h"
#include "Places.h"

namespace KYV {

namespace {

// Where resource files are searched when nobody says where.
constexpr const char* STANDARD_PLACES = ".:/home/kyv/etc:/usr/local/etc/kyv:/usr/local/kyv/etc:/etc/kyv";
constexpr int MAX_TAG = 29;    // characters
constexpr int LIST_DEBUG = 5;  // debug level from which on the store is listed

// The two options that every program understands, beside its lists.
constexpr const char* NAME = "name";
constexpr const char* NAME_ABBREV = "na";
constexpr const char* DEFAULT = "default";
constexpr const char* DEFAULT_ABBREV = "df";

// Calls act(item) for the keyed items, then for the positional ones.
template <class Act>
void forEachItem(ResrcDBList& keyed, ResrcDBList& positional, Act act) {
  for (ResrcDBList* list : {&keyed, &positional}) {
    for (const ResrcDBItem* item = list->first(); item; item = list->next()) act(*item);
  }
}

void setProgram(const Strings& args) {
  String prog;
  ResrcDB::decodeProgramName(args.getString(0), prog);
  Kyv::resrc.add("prog", prog.get(), Resrc::PROGRAM);
  Kyv::resrc.add(NAME, prog.get(), Resrc::PROGRAM);
  Kyv::setProgramName(prog.get());
}

// Name and files are needed before all other options are read.
void readNameAndPlaces(const Strings& args) {
  String name;
  String value;
  if (ResrcEnv::get(Kyv::resrc, DEFAULT, nullptr, value)) Kyv::resrc.add(DEFAULT, value.get(), Resrc::ENVIRON);
  ResrcCL line(args);
  for (int found = line.getKeyed(name, value); found >= 0; found = line.getKeyed(name, value)) {
    if (found == 0) {
      line.getPosition(value);
    } else if (ResrcCL::compare(name.get(), NAME, NAME_ABBREV)) {
      Kyv::resrc.add(NAME, value.get(), Resrc::CMDLINE);
    } else if (name.iequal(DEFAULT) || name.iequal(DEFAULT_ABBREV)) {
      Kyv::resrc.add(DEFAULT, value.get(), Resrc::CMDLINE);
    }
  }
}

void readFile(ResrcFile& file, const char* path, const char* tag, ResrcDBList& keyed, ResrcDBList& positional) {
  if (!file.open(path)) return;
  if (*tag && !file.isTag(tag)) file.setTag(tag);
  String entry;
  String value;
  while (file.get(entry, value) > 0) {
    bool matched = false;
    forEachItem(keyed, positional, [&](const ResrcDBItem& item) {
      if (!file.compare(item.name, entry.get())) return;
      Kyv::resrc.add(item.name, value.get(), Resrc::FILE);
      matched = true;
    });
    if (matched || !file.valid(entry.get())) continue;
    String bare;
    ResrcFile::parseName(entry.get(), bare);
    Kyv::resrc.add(bare.get(), value.get(), Resrc::FILE);
  }
}

// One reader for all: what a file defines, the files behind it know.
void readFiles(ResrcDBList& keyed, ResrcDBList& positional) {
  ResrcFile file(Kyv::resrc);
  char tag[MAX_TAG + 1] = "";
  for (const std::string& place : splitPlaces(Kyv::resrc.get(DEFAULT, STANDARD_PLACES))) {
    if (place.starts_with('+')) {
      StrLib::copy(tag, place.c_str() + 1);
    } else {
      readFile(file, place.c_str(), tag, keyed, positional);
    }
  }
}

void readEnvironment(ResrcDBList& keyed, ResrcDBList& positional) {
  forEachItem(keyed, positional, [](const ResrcDBItem& item) {
    String value;
    if (ResrcEnv::get(Kyv::resrc, item.name, item.env, value)) {
      Kyv::resrc.add(item.name, value.get(), Resrc::ENVIRON);
    }
  });
}

// Whether an option is one that was read before the files.
bool isReadBefore(const String& name) {
  return StrLib::iequal(NAME, name.get(), name.length()) ||
         StrLib::iequal(name.get(), DEFAULT, StrLib::length(DEFAULT)) ||
         StrLib::iequal(name.get(), DEFAULT_ABBREV, StrLib::length(DEFAULT_ABBREV));
}

// The name under which an option is stored: of the item that has this abbreviation, else of the first whose long name
// begins with it, else its own.
const char* findName(const String& given, ResrcDBList& keyed) {
  const ResrcDBItem* found = nullptr;
  for (const ResrcDBItem* item = keyed.first(); item; item = keyed.next()) {
    const int match = ResrcCL::compare(given.get(), item->name, item->cmdln);
    if (match == 2) return item->name;
    if (match == 1 && !found) found = item;
  }
  return found ? found->name : given.get();
}

void addPositional(int position, const String& value, ResrcDBList& positional) {
  const ResrcDBItem* item = positional.get(std::min(position, positional.getNum() - 1));
  if (!item) return;
  if (Kyv::resrc.getType(item->name) == Resrc::CMDLINE) {
    Kyv::resrc.append(item->name, value.get(), '\n');
  } else {
    Kyv::resrc.add(item->name, value.get(), Resrc::CMDLINE);
  }
}

void readCommandLine(const Strings& args, ResrcDBList& keyed, ResrcDBList& positional) {
  String name;
  String value;
  ResrcCL line(args);
  for (int found = line.getKeyed(name, value); found >= 0; found = line.getKeyed(name, value)) {
    if (found == 0) {
      const int position = line.getPosition(value);
      addPositional(position, value, positional);
    } else if (name.valid() && !isReadBefore(name)) {
      Kyv::resrc.add(findName(name, keyed), value.get(), Resrc::CMDLINE);
    }
  }
}

void printItems(ResrcDBList& list) {
  for (const ResrcDBItem* item = list.first(); item; item = list.next()) {
    Kyv::outMessage(" %s\n", StrLib::valid(item->help, ""));
  }
}

}  // namespace

int ResrcDB::create(const Strings& args, ResrcDBList& keyed, ResrcDBList& positional) {
  setProgram(args);
  readNameAndPlaces(args);
  readFiles(keyed, positional);
  readEnvironment(keyed, positional);
  readCommandLine(args, keyed, positional);
  apply();
  bool listing = false;
  for (int level = LIST_DEBUG; level <= 8; level++) listing = listing || Kyv::isDebug(level);
  if (listing) Kyv::resrc.printAll();
  return 1;
}

int ResrcDB::apply() {
  Kyv::setMessageLevel(Kyv::resrc.get("message"));
  const char* path = Kyv::resrc.get("file_path");
  if (StrLib::valid(path)) Kyv::setDatabasePath(path);
  if (const char* time = Kyv::resrc.get("cur_time")) Kyv::setInitTime(DateTool::getSeconds(time));
  return 1;
}

int ResrcDB::printHelp(const char* prog, ResrcDBList& keyed, ResrcDBList& positional) {
  prog = StrLib::valid(prog, "");
  Kyv::outMessage("%s syntax (version:%s)\n", prog, Kyv::getVersion());
  Kyv::outMessage("   %s [options...]\n", prog);
  Kyv::outMessage("Keyed options...\n");
  Kyv::outMessage(" -df file...  Resource/defaults file name\n");
  Kyv::outMessage(" -na name     Program name\n");
  printItems(keyed);
  Kyv::outMessage("Positional options...\n");
  printItems(positional);
  return 1;
}

int ResrcDB::decodeProgramName(const char* path, String& name) {
  name.clear();
  if (!path) return 0;
  name.copy(path + StrLib::lastIndex(path, '/') + 1);
  return 1;
}

}  // namespace KYV
