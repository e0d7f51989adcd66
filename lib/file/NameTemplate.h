#ifndef KYV_NAMETEMPLATE_H
#define KYV_NAMETEMPLATE_H

#include <string_view>

#include "KYV/DateVal.h"

namespace KYV {

/// One piece of a file-name template: a character that stands for itself, or a code "%3h".
struct NameCode {
  enum Kind {
    TEXT,       // `text` itself
    DATE,       // a field of the date
    DIRECTORY,  // a directory of a list: %D and its like, or %{resource}
    EXTENSION,  // %e
    FORECAST,   // %f
    ANY,        // %?: n characters that nobody knows, say the seconds
    KEY         // the value of the key `letter`
  };
  Kind kind;
  char letter;            // of the code
  int n;                  // the number between '%' and the letter, 0 without one
  std::string_view text;  // the character, or the resource that holds the directories
};

/// Walks over a template. A '{' or '}' that belongs to no code is dropped, a blank is a '_'.
class NameTemplate {
 public:
  explicit NameTemplate(std::string_view text) : rest(text) {}
  /// False at the end.
  bool next(NameCode& code);

  /// Seconds between files: the finest of the day, hour and minute codes times its number; Const::MISS without one.
  static int getPeriod(const char* text);
  static bool has(const char* text, NameCode::Kind kind);

 private:
  bool nextCode(NameCode& code);

  std::string_view rest;
};

/// A date code: which field it shows, and how.
struct DateCode {
  enum Form { NUMBER, SHORT_YEAR, LOWER_MONTH, UPPER_MONTH, DAY_OF_YEAR };
  char letter;
  int width;  // characters
  int DateVal::*field;
  Form form;
  const char* missing;  // what stands for a missing field
  int period;           // seconds between files of a template with this code, 0: none

  /// Null for any other letter.
  static const DateCode* find(char letter);
};

/// The option that holds the directories of %C, %D and so on; null for any other letter.
const char* findPathResource(char letter);

}  // namespace KYV
#endif
