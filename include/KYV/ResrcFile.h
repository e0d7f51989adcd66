#ifndef KYV_RESRCFILE_H
#define KYV_RESRCFILE_H

#include <string>
#include <string_view>
#include <vector>

#include "KYV/File.h"

namespace KYV {

class Resrc;
class String;

/// Reads a resource file: lines of name and value, names qualified by the programs they are meant for, with the
/// conditionals DEF, UNDEF, IF, ELIF, ELSE and END on tags.
class ResrcFile {
 public:
  ResrcFile() = default;
  explicit ResrcFile(const Resrc& r) { set(r); }
  ResrcFile(const Resrc& r, const char* path) { set(r), (void)open(path); }

  /// Empty names, no tags, no open IF, not open.
  int init();
  /// Program name and secondary name from the resources `prog` and `name`.
  int set(const Resrc& r);
  int set(const char* progName, const char* secondName);
  /// 0 when 10 tags exist.
  int setTag(const char* tag);
  bool isTag(const char* tag) const;
  /// A file, or the first of kyv.cfg, .kyvdef and Kyv.res in a directory; no path: kyv.cfg here. Devices and fifos are
  /// refused, they might never end; so are pipes, except where the path itself names one.
  [[nodiscard]] int open(const char* path);
  bool isOpen() const { return file.isOpen(); }
  int close();
  /// The next resource line that the conditionals let through; -1 at the end.
  int get(String& name, String& value);
  /// Where the line in hand stands, "kyv.cfg:3".
  std::string getPlace() const { return path_read + ":" + std::to_string(line_number); }
  /// Whether a line's name is addressed to this program.
  bool valid(const char* name) const;
  /// Whether a line's name, the pattern, matches the full name of a resource.
  bool compare(const char* resource, const char* pattern) const;
  /// The part after the last '.' or '*'.
  static int parseName(const char* name, String& out);
  /// The next line addressed to this program, with its bare name; -1 at the end.
  int getValid(String& name, String& value);
  /// Puts every line addressed to the program into the store; 0 when the file does not open.
  [[nodiscard]] int readFile(Resrc& r, const char* path);

 private:
  enum class State { True, False, Done };
  bool directive(const char* word, const char* tag, int words);
  int dropTag(const char* tag);
  int beginIf(const char* tag);
  int elseIf(const char* tag);
  int otherwise(const char* unused);
  int endIf(const char* unused);
  int nextBranch(const char* warning, bool take);
  std::string fullName(std::string_view resource) const;
  bool isTaken() const;

  int openAs(const char* name, bool data);

  File file;
  std::string path_read;  // of the open file
  int line_number = 0;
  char prog[30] = "";
  char second[30] = "";
  std::vector<std::string> tags;
  std::vector<State> states;  // of the open IFs
  bool tooDeep = false;       // a file is warned of once
};

}  // namespace KYV
#endif
