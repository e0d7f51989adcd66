#ifndef KYV_OWNRESRC_H
#define KYV_OWNRESRC_H

#include <span>

namespace KYV {

class ResrcDBList;

/// The program's own options, beside the standard table. All are off unless they are given, and none changes what the
/// program does without it.
class OwnResrc {
 public:
  /// What the value of an option is.
  enum class Kind {
    Flag,   // none, or "yes", "no", "on", "off", "true", "false"
    Text,   // any text
    Count,  // a whole number from 0 on
    Age     // minutes, "90", or "90m", "2h", "1d"
  };
  struct Option {
    const char* name;   // long name, the key of the value
    const char* env;    // environment variable of its own, beside kyv_radmap_ and the long name
    const char* cmdln;  // short form without the dash
    Kind kind;
    const char* help;  // line of the usage listing
  };

  static std::span<const Option> getAll();
  /// By long name or short form, null when there is none.
  static const Option* find(const char* name);
  static int add(ResrcDBList& list);
  /// Whether a text is a value of this kind.
  static bool isValue(Kind kind, const char* text);
  /// What the value of a kind looks like, for messages.
  static const char* describe(Kind kind);
  /// The minutes of an age; Const::MISS for any other text.
  static int getMinutes(const char* text);
};

}  // namespace KYV
#endif
