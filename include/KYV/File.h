#ifndef KYV_FILE_H
#define KYV_FILE_H

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "KYV/Buffer.h"
#include "KYV/FileAttr.h"
#include "KYV/OutputFile.h"
#include "KYV/StrLib.h"

namespace KYV {

class String;

/// The library's one file handle: local files, pipes, standard input and output, and "http://" URLs.
class File : public FileAttr {
 public:
  File();
  File(const char* name, const char* mode) : File() { (void)open(name, mode); }
  File(const char* name, int mode) : File() { (void)open(name, mode); }
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// A file that is opened with "w" appears under its name when close() finds it complete; what stood there stays until
  /// then. A mode beginning with 'p' runs the command `name` as a pipe ("pr", "pw"); else a name "http://..." starts a
  /// transfer, "-", "std" and "stdn" are standard input or output, "|command" is a pipe, and any other name a file
  /// ("~" is the home directory; missing directories are made for writing). 1 when open; 0 leaves the handle closed.
  [[nodiscard]] int open(const char* name, const char* mode);
  [[nodiscard]] int open(const String& name, const char* mode);
  /// READ, WRITE or APPEND.
  [[nodiscard]] int open(const char* name, int mode);
  /// As open(name, "r"), but names that would start a pipe and devices are refused: for data files and names that come
  /// out of them.
  [[nodiscard]] int openData(const char* name);
  bool isOpen() const { return opened; }

  /// Up to n - 1 characters of the next line; a plain file keeps the newline, a URL drops it (but counts it, so that
  /// an empty line is not the end). The count, 0 at the end of a plain file, -1 at the end of a URL or when not open
  /// for reading.
  int getLine(char* line, int n);
  /// A whole line of up to 16 MB; of a longer one the rest is the next line.
  int getLine(String& line);
  /// 1 when a line was skipped, 0 at the end.
  int skipLine();
  /// Back to the beginning; 0 for pipes.
  int rewind();
  /// 0 when anything could not be written: a file opened with "w" is then as it was before. A shared stream is flushed,
  /// not closed.
  int close();
  /// As close(), for a file that is not complete: one opened with "w" stays as it was before.
  void discard();
  /// Whether the end has been reached.
  bool endFile();
  KYV_PRINTF(2, 3) int printf(const char* format, ...);
  KYV_SCANF(2, 3) int scanf(const char* format, ...);
  /// The bytes read, 0 at the end, -1 when not open.
  int read(void* bytes, int n);
  /// Fills the free room of a buffer; its new size, -1 at the end of the file when nothing was read.
  int read(Buffer& buffer);
  /// The bytes written. The handle remembers a failed write, see isError().
  int write(const void* bytes, int n);
  int seek(std::int64_t offset, int whence = SEEK_SET);
  std::int64_t tell();
  int flush();
  /// True once a write failed (disk full, pipe closed).
  bool isError() const { return failed; }
  /// Why the file could not be opened or written, ": No space left on device", to stand behind its name in a message;
  /// empty while nothing has failed.
  String getReason() const;
  std::FILE* getFP() { return fp; }
  /// The version of the library that reads URLs, which is loaded for it; empty when it is missing.
  static const char* getUrlLibrary();
  /// From now on standard output takes what files of the name "-" write and nothing else: what the program says on it
  /// goes to standard error.
  static int keepOutput();
  /// A shared stream is not closed with the handle.
  int setShare(int share);

 private:
  struct Transfer;  // libcurl's handles, seen by the source alone
  enum Type { PLAIN = 0, PIPE = 1, URL = 7 };

  static std::FILE*& keptOutput();
  int openUrl(const char* url);
  int openPipe(const char* command, const char* mode);
  int getPiece(char* line, int n, bool& ended);
  int fill(int need);
  void fail();

  int type = PLAIN;
  int stype = 0;  // 1 when it is standard input or output
  std::FILE* fp = nullptr;
  std::unique_ptr<Transfer> transfer;
  bool opened = false;
  int access = 0;  // 1 when not opened for reading
  int shared = 0;
  bool failed = false;
  int fault = 0;      // errno of the first failure
  OutputFile output;  // of a file that appears when it is complete
  Buffer buf;         // received bytes of a URL
};

}  // namespace KYV
#endif
