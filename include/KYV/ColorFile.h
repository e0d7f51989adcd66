#ifndef KYV_COLORFILE_H
#define KYV_COLORFILE_H

namespace KYV {

class ColorMap;

/// Reads colour table files.
class ColorFile {
 public:
  /// Files of a comma list, each found along the database path; 0 when none could be read.
  static int read(const char* list, ColorMap& map);
  /// One file; 0 when it cannot be opened.
  static int readFile(const char* path, ColorMap& map);
};

}  // namespace KYV
#endif
