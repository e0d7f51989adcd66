#ifndef KYV_CITYFILE_H
#define KYV_CITYFILE_H

#include "KYV/File.h"

namespace KYV {

struct CityData;

/// A station database: text, a line of 59 bytes for each station.
class CityFile {
 public:
  static constexpr int LINE_SIZE = 59;  // bytes of a line, its newline included

  CityFile() = default;
  CityFile(const char* name, int mode) { (void)open(name, mode); }

  /// Mode 0 reads, 1 writes, any other is refused.
  [[nodiscard]] int open(const char* name, int mode);
  [[nodiscard]] int open(const char* name) { return open(name, 0); }
  bool isOpen() const { return file.isOpen(); }
  int rewind();
  int close();
  /// Records in the file: its size over LINE_SIZE.
  int getNum() const { return num; }
  /// The next station; fields that its line lacks keep their values. 0 at the end.
  int read(CityData& data);

 private:
  File file;
  int num = 0;
};

}  // namespace KYV
#endif
