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
  /// Sets what the whole process takes from the store: the message level (`message`), the database path (`file_path`)
  /// and the present time (`cur_time`, as DateTool::getSeconds reads it).
  static int apply();
  /// The usage listing, at message level 1.
  static int printHelp(const char* prog, ResrcDBList& keyed, ResrcDBList& positional);
  /// The text after the last '/'; 0 for a null path.
  static int decodeProgramName(const char* path, String& name);
};

}  // namespace KYV
#endif
