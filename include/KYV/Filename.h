#ifndef KYV_FILENAME_H
#define KYV_FILENAME_H

#include "KYV/Const.h"
#include "KYV/Date.h"
#include "KYV/String.h"
#include "KYV/Strings.h"

namespace KYV {

/// Chooses the file that a layer draws: from now a literal name ("@name", "-" for standard input, or any other name).
/// Specifications that need a search by date ("la", "cu", "#20240501") have no file here.
class Filename {
 public:
  int setNameConv(const char* conv) { return conv_name.copy(conv), 1; }
  int setPath(const char* path) { return dir_path.copy(path), 1; }
  /// Interprets one specification: 1 when it names a file.
  int checkFile(const char* spec);
  /// Chooses the file; a comma list names several.
  int setFile(const char* spec);
  /// The same from the resource `filename`, a list separated by newlines or commas; whether the file exists.
  int setFile();
  /// The file of a date, which for a literal name is that name.
  int setFile(const Date& d);
  int setFile(const Date& d, const char* spec);
  /// File i of an explicit list, 0 when there is none.
  int setFile(int i);
  int setNumFiles(int n) { return num_file = n, 1; }
  int getNumFiles() const { return num_file; }
  const char* getName() const { return name.get(); }
  /// Name i of an explicit list.
  const char* getName(int i) const;
  int getDate(Date& d) const { return d = date, 1; }
  /// Seconds between frames, missing for literal names.
  int getOffset() const { return file_off; }
  bool isSet() const { return is_set; }
  bool isFixed() const { return fixed; }
  /// Whether the chosen file is there; standard input always is.
  bool exist() const;

 private:
  int setName(const char* text);
  int setList();

  bool is_set = false;
  bool fixed = false;
  String name;
  Date date;
  String conv_name;
  String dir_path;
  Strings files;
  int num_file = 1;
  int file_off = Const::MISS;
};

}  // namespace KYV
#endif
