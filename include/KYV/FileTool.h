#ifndef KYV_FILETOOL_H
#define KYV_FILETOOL_H

#include <cstdint>

namespace KYV {

class String;

/// Path helpers. Directory lists are separated by colons; the colon of "http:" does not separate.
class FileTool {
 public:
  /// Begins with '/', '.', '~' or "http://".
  static bool isFullPath(const char* name);
  static int numPath(const char* list);
  /// Directory i of the list; 0 when there is none.
  static int getPath(const char* list, int i, String& path);
  /// Appends '/' unless the path ends with one.
  static int addPathDelim(String& path);
  /// Expands a leading "~/" or "~user".
  static int addUserPath(const char* path, String& out);
  /// "-", "std" or "stdn", any case.
  static bool isStdio(const char* name);
  /// A local file or directory, or a URL that answers 200.
  static bool exist(const char* name);
  /// The file in the first directory of the list that holds it, else in the last one; full paths and standard input
  /// stay as they are. 1 when the result exists.
  static int addPath(const char* list, const char* file, String& out);
  /// Whether every directory of the list exists.
  static bool checkPath(const char* list);
  /// The file in a directory for output; full paths stay as they are.
  static int addOutPath(const char* dir, const char* file, String& out);
  static bool isDir(const char* name);
  static bool isFile(const char* name);
  static bool isFifo(const char* name);
  static bool isDevice(const char* name);
  /// Bytes, -1 when missing.
  static std::int64_t getSize(const char* name);
  /// Seconds since 1970, -1 when missing.
  static std::int64_t getModTime(const char* name);
  static int remove(const char* name);
  /// Creates every directory prefix of the path that ends at a '/', with permissions 0755; the last component is not
  /// created. Backslashes count as '/'.
  static int makeDir(const char* path, int mode = 0755);
};

}  // namespace KYV
#endif
