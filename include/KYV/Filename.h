#ifndef KYV_FILENAME_H
#define KYV_FILENAME_H

#include <cstdint>
#include <vector>

#include "KYV/Const.h"
#include "KYV/Date.h"
#include "KYV/NameConv.h"
#include "KYV/String.h"
#include "KYV/Strings.h"

namespace KYV {

struct NameConvFile;

/// Chooses the file that a layer draws, and the files of an animation: a literal name, standard input, the latest file
/// of a name convention, that of a date, or a list of names.
///
/// Specifications: "@name" and, without a convention, any text: this name; "-": standard input; "#20240501_1830", "la",
/// "la-1": a date or the latest file (NameConv::setLatest); "cu": the file of this moment, "cu=6": that of six hours
/// ago; "exit" ends the program. Any other text is a name; when it fits the template, it stands for its own date, and
/// the convention finds the files around it by its keys, and it itself where the name as given is no file.
class Filename {
 public:
  /// How the number of frames was given.
  enum NumType { UNK = 0, HOURS = 1, FILES = 2 };
  static constexpr int MAX_FILES = 100000;  // frames
  /// A frame shows the newest file that is at most so many seconds older than its date.
  static constexpr int MAX_AGE = 3600;

  int init() { return *this = Filename(), 1; }
  /// Takes a convention and the file of a specification; without a convention the specification is the name. Whether
  /// the file exists.
  int set(const char* convention, const char* spec);
  int set(const char* convention, const Date& d);
  /// This name.
  int set(const char* text) { return setLiteral(text); }
  int setNameConv(const char* convention) { return conv.set(convention); }
  int setKey(char letter, const char* value) { return conv.setKey(letter, value); }
  int setPath(const char* dirs) { return conv.setPath(dirs); }
  int setType(const char* text) { return StrLib::copy(type, text); }
  int setName(const char* text) { return name.copy(text), is_set = name.valid(), 1; }
  int setHeader(const char* text) { return hdr.copy(text); }
  int setFixDate(const char* text) { return conv.setFixDate(text); }
  int setFixDate(const DateVal& fields) { return conv.setFixDate(fields); }
  int setLateLimit(int n) { return conv.setLateLimit(n); }
  int setLateDate(const Date& d) { return conv.setLateDate(d); }
  int setOutput(bool on) { return conv.setOutput(on); }
  int setDate(const Date& d) { return date = d, 1; }
  int setBaseDate(const Date& d) { return base_date = d, 1; }

  /// Interprets one specification; what cannot be interpreted is a name. 0 for an empty text only.
  int checkFile(const char* spec);
  /// "spec", "spec,nh=hours" or a list of names, each a frame.
  int setFile(const char* spec);
  /// The same from the resources `filename` (a list separated by newlines or commas; "list" lists the files and ends
  /// the program) and `current`, the latest file without both. Whether the file exists.
  int setFile();
  /// The file that is valid at a date: a literal name; the file of that date or the newest before it that is at most
  /// MAX_AGE seconds older; of a list of names the k-th for the k-th date that was asked for, in ascending order.
  /// Whether it exists.
  int setFile(const Date& d);
  /// The same for a specification, when there is one.
  int setFile(const Date& d, const char* spec);
  /// The file of frame i, counted from the base date; 0 when there is no such frame, or no file of its date.
  int setFile(int i);
  /// n frames, -n frames backward.
  int setNumFiles(int n);
  /// The frames of a time window: [-]"h:m"[-"h:m"][",h:m"]: its length, backward with a '-', an offset by which it
  /// begins earlier, and the time between frames (that of the convention without it).
  int setNumFiles(const char* text);
  int getNumFiles() const { return num_file; }
  const char* getName() const { return name.get(); }
  /// Name i of a list, the chosen one for 0.
  const char* getName(int i) const;
  const char* getHeader() const { return hdr.get(); }
  bool validHeader() const { return hdr.valid(); }
  int getDate(Date& d) const { return d = date, 1; }
  DateVal getDateval() const { return date.get(); }
  int getBaseDate(Date& d) const { return d = base_date, 1; }
  /// Seconds between frames, missing for literal names.
  int getOffset() const { return file_off; }
  const char* getType() const { return type; }
  bool isSet() const { return is_set; }
  /// Whether the name stays the same for all dates.
  bool isFixed() const { return fixed; }
  /// Whether the latest file was looked for last, through all the periods that may hold it.
  bool isLatest() const { return latest; }
  /// Whether the chosen file is there; standard input always is.
  bool exist() const;
  /// Where the search looked that found no file, a line each; empty for names that are not searched.
  int getSearch(String& text) const;
  /// Puts name and header into an output directory.
  int addOutPath(const char* dir);
  /// Lists the files that the convention may mean with "ls", and ends the program.
  [[noreturn]] void listFile();
  int print() const;
  int printConv() const { return conv.print(); }

 private:
  bool isNamed() const;
  int setLiteral(const char* text);
  int setLatest(const char* spec);
  int setList();
  int take(int there, const NameConvFile& found);
  int findDate(const Date& d, int back);
  int setListed(const Date& d);

  bool is_set = false;
  bool latest = false;
  bool fixed = false;
  char type[30] = "";
  String name;
  String hdr;
  char param[50] = "";
  String own;      // file that the user has named, where it fits the template
  Date own_date;   // that it stands for
  Date date;       // that the name stands for
  Date base_date;  // that frames are counted from
  NameConv conv;
  Strings files;        // explicit list
  bool listed = false;  // the number of frames is that of a list
  int num_file = 1;
  int num_off = 0;  // seconds
  NumType num_type = UNK;
  int num_dir = 1;                  // 1 forward from the base date, -1 backward
  int file_off = Const::MISS;       // seconds
  int own_off = Const::MISS;        // the same as the user gave it
  String search;                    // places of the last search that failed
  std::vector<std::int64_t> asked;  // dates that frames of a list were asked for, ascending
};

}  // namespace KYV
#endif
