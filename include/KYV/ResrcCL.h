#ifndef KYV_RESRCCL_H
#define KYV_RESRCCL_H

#include <functional>
#include <utility>

#include "KYV/Strings.h"

namespace KYV {

class String;

/// Reads a command line: keyed options ("-pd us", "--pd=us") and positional arguments.
class ResrcCL {
 public:
  /// Tells whether an option of this name, without its dashes, is a flag: the next argument is its value only when it
  /// is "yes", "no" or the like.
  using IsFlag = std::function<bool(const char* name)>;

  /// @param arguments  the program's own name first
  /// @param flag  none: every option takes a value
  explicit ResrcCL(const Strings& arguments, IsFlag flag = nullptr) : args(arguments), is_flag(std::move(flag)) {}

  int rewind();
  /// The next argument when it is keyed: 1 with name and value, 0 when it is not (and stays), -1 at the end. "--" gives
  /// 1 and an empty name; no argument behind it is keyed.
  int getKeyed(String& name, String& value);
  /// The next argument, whatever it is: its number among the positional ones from 0 on, -1 at the end.
  int getPosition(String& value);
  /// 2 when `given` is the abbreviation, 1 when the long name begins with it, else 0.
  static int compare(const char* given, const char* longName, const char* abbrev);

 private:
  Strings args;
  int cur = 1;
  int position = 0;
  bool ended = false;  // "--" has been passed
  IsFlag is_flag;
};

}  // namespace KYV
#endif
