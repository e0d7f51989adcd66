#ifndef KYV_PROG_H
#define KYV_PROG_H

#include "KYV/String.h"

namespace KYV {

class ResrcDBList;

/// What a command-line program does around its work: resource files, banner, help, questions on the terminal.
class Prog {
 public:
  /// Reads resource files into Kyv::resrc, then sets message level, database path and fixed current time from them.
  /// @param path  directories separated by colons; null: $kyvdefault, else the built-in list
  static int readResrcFile(const char* prog, const char* name, const char* tag, const char* path);
  static int readResrcFile(const char* prog, const char* path) { return readResrcFile(prog, prog, nullptr, path); }
  static int readResrcFile(const char* prog) { return readResrcFile(prog, prog, nullptr, nullptr); }
  static int readResrcFile() { return readResrcFile("kyv", "kyv", nullptr, nullptr); }
  /// The banner, at message class n (4).
  static int printProg(int n, const char* title);
  static int printProg(const char* title) { return printProg(4, title); }
  /// When help was asked for, the description and the usage listing; whether it was.
  static int printHelp(ResrcDBList& keyed, ResrcDBList& positional, const char* text);
  /// Takes "set name = value" and "exit"; 0 when the line is none of them, but an answer.
  static int setCommand(const char* line);
  /// Asks on the terminal until the line is an answer; 0 and the empty answer when standard input ends.
  static int prompt(const char* text, char* answer, int n);
  static int prompt(const char* text, String& answer);
  static String prompt(const char* text);
};

}  // namespace KYV
#endif
