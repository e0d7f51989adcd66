#ifndef KYV_RESRCDB_H
#define KYV_RESRCDB_H

namespace KYV {

class ResrcDBList;
class String;
class Strings;

/// Fills the resource store at the start of a program.
class ResrcDB {
 public:
  /// From resource files, the environment and the command line, each over the one before; then applies it.
  /// @param args  argv, the program's name first
  static int create(const Strings& args, ResrcDBList& keyed, ResrcDBList& positional);
  /// The same with the program's own options, which are looked through after the others. Names that are no option and
  /// no resource are warned of, and values of own options that are none.
  static int create(const Strings& args, ResrcDBList& keyed, ResrcDBList& positional, ResrcDBList& own);
  /// Sets what the whole process takes from the store: the message level (`message`), the database path (`file_path`)
  /// and the present time (`cur_time`, as DateTool::getSeconds reads it).
  static int apply();
  /// The usage listing, at message level 1.
  static int printHelp(const char* prog, ResrcDBList& keyed, ResrcDBList& positional);
  /// That of the own options, behind it.
  static int printOwn(ResrcDBList& own);
  /// The text after the last '/'; 0 for a null path.
  static int decodeProgramName(const char* path, String& name);
};

}  // namespace KYV
#endif
