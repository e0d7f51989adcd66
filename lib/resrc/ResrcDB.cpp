#include "KYV/ResrcDB.h"

#include <algorithm>
#include <string>
#include <vector>

#include "KYV/DateTool.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/KyvResrc.h"
#include "KYV/NearWord.h"
#include "KYV/OwnResrc.h"
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
constexpr const char* HERE = ".";
constexpr int MAX_TAG = 29;    // characters
constexpr int LIST_DEBUG = 5;  // debug level from which on the store is listed

// The two options that every program understands, beside its lists.
constexpr const char* NAME = "name";
constexpr const char* NAME_ABBREV = "na";
constexpr const char* DEFAULT = "default";
constexpr const char* DEFAULT_ABBREV = "df";

// What a program accepts.
struct Accepted {
  ResrcDBList& keyed;
  ResrcDBList& positional;
  ResrcDBList& own;

  // Calls act(item) for the keyed items, then for the positional and the own ones.
  template <class Act>
  void forEach(Act act) {
    for (ResrcDBList* list : {&keyed, &positional, &own}) {
      for (const ResrcDBItem* item = list->first(); item; item = list->next()) act(*item);
    }
  }
};

// Warnings that wait until the message level is known.
using Warnings = std::vector<std::string>;

// A list of values, one of which would start a command.
bool beginsPipe(const char* value) {
  bool first = true;
  for (const char* c = value; *c; ++c) {
    if (first && *c == '|') return true;
    first = *c == ',' || *c == ':' || *c == '\n' || (first && *c == ' ');
  }
  return false;
}

// A value that says where to write: behind the kind of a device, and any but the kind of a picture.
bool namesOutput(const char* name, const char* value) {
  const String text(value);
  if (StrLib::equal(name, "device")) return text.index(',') >= 0 && StrLib::valid(value + text.index(',') + 1);
  if (!StrLib::equal(name, "output")) return false;
  return StrLib::valid(value) && !text.iequal("gif") && !text.iequal("png");
}

// Whether a value may count that stands in a file of the current folder which nobody asked for.
bool isHarmless(const ResrcFile& file, const char* name, const char* value, Warnings& warnings) {
  const bool pipe = beginsPipe(value);
  if (!pipe && !namesOutput(name, value)) return true;
  warnings.push_back(file.getPlace() + ": " + name + ": a file that is read without being named may not " +
                     (pipe ? "start a command" : "name an output") + "; the line is ignored (-df " +
                     file.getPlace().substr(0, file.getPlace().rfind(':')) + " names it)\n");
  return false;
}

void setProgram(const Strings& args) {
  String prog;
  ResrcDB::decodeProgramName(args.getString(0), prog);
  Kyv::resrc.add("prog", prog.get(), Resrc::PROGRAM);
  Kyv::resrc.add(NAME, prog.get(), Resrc::PROGRAM);
  Kyv::setProgramName(prog.get());
}

// The name under which an option is stored: of the item that has this abbreviation, else of the first whose long name
// begins with it, first among the keyed ones, then among the own; null where there is none.
const char* findName(const char* given, Accepted& accepted) {
  for (ResrcDBList* list : {&accepted.keyed, &accepted.own}) {
    const ResrcDBItem* found = nullptr;
    for (const ResrcDBItem* item = list->first(); item; item = list->next()) {
      const int match = ResrcCL::compare(given, item->name, item->cmdln);
      if (match == 2) return item->name;
      if (match == 1 && !found) found = item;
    }
    if (found) return found->name;
  }
  return nullptr;
}

// Whether an option is an own one that takes no value.
bool isOwnFlag(const char* given, Accepted& accepted) {
  const OwnResrc::Option* option = OwnResrc::find(findName(given, accepted));
  return option && option->kind == OwnResrc::Kind::Flag;
}

// Name and files are needed before all other options are read.
void readNameAndPlaces(const Strings& args, Accepted& accepted) {
  String name;
  String value;
  if (ResrcEnv::get(Kyv::resrc, DEFAULT, nullptr, value)) Kyv::resrc.add(DEFAULT, value.get(), Resrc::ENVIRON);
  ResrcCL line(args, [&accepted](const char* given) { return isOwnFlag(given, accepted); });
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

// Read where there is one, though it is no option.
constexpr const char* CURRENT_TIME = "cur_time";

// Whether a name is one of the standard table, of which a program takes some: files serve several programs.
bool isStandard(const char* name) {
  ResrcDBItem item;
  return KyvResrc::get(name, item) || StrLib::equal(name, CURRENT_TIME);
}

// A name that nobody reads, and the one that was meant.
void warnUnknown(const std::string& where, const std::string& name, const char* dash, Accepted& accepted,
                 Warnings& warnings) {
  NearWord near(name);
  accepted.forEach([&](const ResrcDBItem& item) {
    if (*dash && item.cmdln) near.offer(item.cmdln);
    near.offer(StrLib::valid(item.name, ""));
  });
  warnings.push_back(where + ": " + near.explain(*dash ? "option" : "resource", "it is ignored", dash) + '\n');
}

// @param standard  the place is one where files are looked for when nobody says where
void readFile(ResrcFile& file, const char* path, const char* tag, bool standard, Accepted& accepted,
              Warnings& warnings) {
  const bool unasked = standard && StrLib::equal(path, HERE);
  if (!file.open(path)) {
    if (!standard && *path && accepted.own.getNum() > 0 && !FileTool::isDir(path)) {
      warnings.push_back("-" + std::string(DEFAULT_ABBREV) + " " + path +
                         ": no resource file can be read there; its values are missed\n");
    }
    return;
  }
  if (*tag && !file.isTag(tag)) file.setTag(tag);
  String entry;
  String value;
  while (file.get(entry, value) > 0) {
    bool matched = false;
    const auto take = [&](const char* name) {
      if (unasked && !isHarmless(file, name, value.get(), warnings)) return;
      Kyv::resrc.add(name, value.get(), Resrc::FILE, file.getPlace() + ": " + name);
    };
    accepted.forEach([&](const ResrcDBItem& item) {
      if (!file.compare(item.name, entry.get())) return;
      take(item.name);
      matched = true;
    });
    if (matched || !file.valid(entry.get())) continue;
    String bare;
    ResrcFile::parseName(entry.get(), bare);
    take(bare.get());
    const bool directive = bare.iequal("def") || bare.iequal("undef");
    if (accepted.own.getNum() > 0 && !directive && !isStandard(bare.get())) {
      warnUnknown(file.getPlace() + ": " + bare.get(), bare.get(), "", accepted, warnings);
    }
  }
}

// One reader for all: what a file defines, the files behind it know.
void readFiles(Accepted& accepted, Warnings& warnings) {
  ResrcFile file(Kyv::resrc);
  char tag[MAX_TAG + 1] = "";
  const bool standard = !Kyv::resrc.get(DEFAULT);
  for (const std::string& place : splitPlaces(Kyv::resrc.get(DEFAULT, STANDARD_PLACES))) {
    if (place.starts_with('+')) {
      StrLib::copy(tag, place.c_str() + 1);
    } else {
      readFile(file, place.c_str(), tag, standard, accepted, warnings);
    }
  }
}

void readEnvironment(Accepted& accepted) {
  accepted.forEach([](const ResrcDBItem& item) {
    String value;
    if (ResrcEnv::get(Kyv::resrc, item.name, item.env, value)) {
      Kyv::resrc.add(item.name, value.get(), Resrc::ENVIRON, std::string("environment: ") + item.name);
    }
  });
}

// Whether an option is one that was read before the files.
bool isReadBefore(const String& name) {
  return StrLib::iequal(NAME, name.get(), name.length()) ||
         StrLib::iequal(name.get(), DEFAULT, StrLib::length(DEFAULT)) ||
         StrLib::iequal(name.get(), DEFAULT_ABBREV, StrLib::length(DEFAULT_ABBREV));
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

void readCommandLine(const Strings& args, Accepted& accepted, Warnings& warnings) {
  String name;
  String value;
  ResrcCL line(args, [&accepted](const char* given) { return isOwnFlag(given, accepted); });
  for (int found = line.getKeyed(name, value); found >= 0; found = line.getKeyed(name, value)) {
    if (found == 0) {
      const int position = line.getPosition(value);
      addPositional(position, value, accepted.positional);
    } else if (name.valid() && !isReadBefore(name)) {
      const char* known = findName(name.get(), accepted);
      Kyv::resrc.add(known ? known : name.get(), value.get(), Resrc::CMDLINE, "-" + std::string(name.get()));
      if (!known && accepted.own.getNum() > 0 && !name.equal(CURRENT_TIME)) {
        warnUnknown("-" + std::string(name.get()), name.get(), "-", accepted, warnings);
      }
    }
  }
}

// Values of the own options that are none: the option is off.
void checkOwn(ResrcDBList& own, Warnings& warnings) {
  for (const ResrcDBItem* item = own.first(); item; item = own.next()) {
    const char* value = Kyv::resrc.get(item->name);
    const OwnResrc::Option* option = OwnResrc::find(item->name);
    if (!value || !option || OwnResrc::isValue(option->kind, value)) continue;
    warnings.push_back(Kyv::resrc.getPlace(item->name) + " " + value + ": not " + OwnResrc::describe(option->kind) +
                       "; it is ignored\n");
    Kyv::resrc.add(item->name, "no", Kyv::resrc.getType(item->name));
  }
}

void printItems(ResrcDBList& list) {
  for (const ResrcDBItem* item = list.first(); item; item = list.next()) {
    Kyv::outMessage(" %s\n", StrLib::valid(item->help, ""));
  }
}

}  // namespace

int ResrcDB::create(const Strings& args, ResrcDBList& keyed, ResrcDBList& positional) {
  ResrcDBList none;
  return create(args, keyed, positional, none);
}

int ResrcDB::create(const Strings& args, ResrcDBList& keyed, ResrcDBList& positional, ResrcDBList& own) {
  Accepted accepted{keyed, positional, own};
  Warnings warnings;
  setProgram(args);
  readNameAndPlaces(args, accepted);
  readFiles(accepted, warnings);
  readEnvironment(accepted);
  readCommandLine(args, accepted, warnings);
  checkOwn(own, warnings);
  apply();
  bool listing = false;
  for (int level = LIST_DEBUG; level <= 8; level++) listing = listing || Kyv::isDebug(level);
  if (listing) Kyv::resrc.printAll();
  for (const std::string& w : warnings) Kyv::report(Kyv::BADPARAM, "%s: %s", Kyv::getProgramName(), w.c_str());
  return 1;
}

int ResrcDB::printOwn(ResrcDBList& own) {
  Kyv::outMessage("Own options...\n");
  printItems(own);
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
