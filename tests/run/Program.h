#ifndef RADMAP_TESTS_PROGRAM_H
#define RADMAP_TESTS_PROGRAM_H

#include <string>
#include <vector>

#include "TempDir.h"

/// A directory of its own for one test, removed with it, in which the program is run.
class Program {
 public:
  struct Result {
    int status;          // exit status, -1 when the program died of a signal
    std::string output;  // standard output and error
  };

  /// The path of a file in the directory.
  std::string path(const std::string& name) const { return dir.path(name); }
  std::string write(const std::string& name, const std::vector<unsigned char>& bytes) const {
    return dir.write(name, std::string(bytes.begin(), bytes.end()));
  }
  std::string read(const std::string& name) const { return TempDir::read(path(name)); }
  /// Runs the program; the arguments are words of a shell command. Its environment holds nothing but `environment`.
  Result run(const std::string& arguments, const std::string& environment = "") const;

 private:
  TempDir dir;
};

#endif
