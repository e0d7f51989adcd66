#ifndef KYV_OUTPUTFILE_H
#define KYV_OUTPUTFILE_H

#include <cstdio>
#include <string>

namespace KYV {

/// A file that appears whole or not at all: it is written under a name that nobody knows, in the folder of the one that
/// it shall have, and takes that one when it is complete. What stood there before stays until then, and for good when
/// the writing fails, is given up, or a signal (INT, TERM, HUP, PIPE) ends the program: nothing is left behind.
class OutputFile {
 public:
  OutputFile() = default;
  ~OutputFile() { discard(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Whether a name is written this way: a file that is there, or none yet. Devices, fifos and what the shell has
  /// opened (below /dev and /proc) are written as they are.
  static bool isWhole(const char* path);
  /// A file of this run's input, which no output takes the place of.
  static void protect(std::FILE* input);

  /// Begins the file. A link is followed: the file that it leads to is replaced.
  /// @return the stream to write to, owned by this object; null where none can be made, `errno` tells why
  std::FILE* open(const char* path);
  /// Gives the file its name. 0, with everything as it was before, when it could not be written, or is an input of the
  /// run (errno EEXIST).
  int commit();
  /// Gives the file its name at once and leaves the stream to the caller.
  void release();
  /// Leaves everything as it was before.
  void discard();
  bool isOpen() const { return fp != nullptr; }

 private:
  std::FILE* fp = nullptr;
  std::string target;
  std::string name;  // while it is written
  int slot = -1;     // among those that a signal removes
};

}  // namespace KYV
#endif
