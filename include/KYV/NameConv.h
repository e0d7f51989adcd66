#ifndef KYV_NAMECONV_H
#define KYV_NAMECONV_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "KYV/Const.h"
#include "KYV/Date.h"
#include "KYV/DateVal.h"
#include "KYV/String.h"

namespace KYV {

class NameLookup;
struct NameConvFile;
struct NamePiece;
struct TimeSpec;

/// A file-name convention: a template in which codes stand for the date, for directories and for keys, and the search
/// for the files that it names.
///
/// Codes, N being an optional number: %NY %Ny year, %Nm %Nb %NB month, %Nd day, %Nj day of the year, %Nh hour, %Nn
/// minute (rounded down to a multiple of N); %C %D %F %G %I %M %R %S %T %W and %{resource} a directory of a path
/// option; %Ne extension; %Nf forecast time; %N? N characters that only the directory knows (1 without N), the last
/// name in alphabetical order being taken; %% a percent sign; any other letter the key of that letter.
///
/// A file that is not found with the keys as they were given is looked for with their letters in either case, and, for
/// the station key 'i', in the forms of three and four letters (KTLX, TLX). These names, and those with %?, come from
/// one listing of each directory.
class NameConv {
 public:
  static constexpr int MAX_KEY = 20;
  static constexpr int MAX_ANY = 80;  // characters of %?
  static constexpr int MAX_LIMIT =
      200000;  // periods that a search goes through at most in all directories, 139 days of minutes

  NameConv() = default;
  explicit NameConv(const char* spec) { set(spec); }

  /// Forgets everything.
  int init() { return *this = NameConv(), 1; }
  /// Takes a convention "name:k=value:...,header,type,min=minutes,size=bytes", the name being looked up in the
  /// convention file (resource `name_conv`, "name.cnv"), and being a template itself when it is not there; "@file" is
  /// this file, "none" nothing. Keys, sizes and extension start afresh; directories and dates stay.
  /// @return 0 for an empty text, and (with a warning) without a convention file
  int set(const char* spec);
  /// Whether a convention is one of the file, or its name is a template itself; `known` are those of the file.
  static bool isKnown(const char* spec, String& known);
  /// Directories instead of those of the path options; "+name", "res=name" and "res:name" take them from a resource,
  /// 0 when it is not set.
  int setPath(const char* list);
  int setPath(const String& list) { return setPath(list.get()); }
  const char* getPath() const { return path.get(); }
  /// The directories that a path option gives: those of setPath(), else its value ("+name" of `data_path`: that of
  /// another resource), else the current one.
  void getDirectories(std::string_view resource, String& list) const;
  int setExt(const char* text) { return StrLib::copy(ext, text); }
  const char* getExt() const { return ext; }
  /// At most 19 characters; 0 when there are 20 other keys.
  int setKey(char letter, const char* value);
  /// Takes over the keys of another convention that are not set here.
  int addKeys(const NameConv& other);
  /// Empty for a key that is not set.
  const char* getKey(char letter) const;
  const char* getFile() const { return file; }
  /// Fields that the start of a search is moved back to, to the last date that has them all: "#YYYYMMDDhhmm" (any
  /// year), "ddhhmm", "hhmm", "dd'd'hh:mm", "hh:mm", ":mm"; a negative hour or minute -N means the latest multiple of
  /// N. 0 for an empty text.
  int setFixDate(const char* text);
  int setFixDate(const DateVal& fields) { return fix_date = fields, 1; }
  /// The date that "now" means.
  int setLateDate(const Date& d) { return late_date = d, 1; }
  /// Periods that a search for the latest file goes back.
  int setLateLimit(int n) { return limit = n, 1; }
  /// Names of files to be written need not exist.
  int setOutput(bool on) { return output = on, 1; }

  /// Expands the template (0) or that of the header file (1) for a date. Fields that the name holds are then in `date`.
  int encode(const Date& d, int which, String& out);
  int encodeFile(const Date& d, String& out) { return encode(d, 0, out); }
  int encodeHdr(const Date& d, String& out) { return encode(d, 1, out); }
  /// Reads date, keys and extension back out of a name, of which as many last components count as the template has
  /// '/'; 0, and nothing changed, when it does not fit.
  int decode(const char* name);
  /// The file of a date, in the first directory that has it; whether there is one.
  int setFile(const Date& d, NameConvFile& out);
  /// The file of a date or, without one, the newest before it that is at most `back` seconds older.
  int setFile(const Date& d, int back, NameConvFile& out);
  /// The file of a time (TimeSpec); an empty specification is "la". Whether there is such a file; without one the name
  /// is that of the last date tried.
  int setLatest(const char* spec, NameConvFile& out);
  int getDate(Date& d) const { return d = date, 1; }
  /// The file of the last search at its full length.
  const char* getName() const { return found.get(); }
  /// Where the last search looked: template, keys, directories, times; one line each.
  int getSearch(String& text) const;
  int print() const;

  char file[80] = "";  // template
  char hdr[80] = "";   // template of an accompanying header file, empty when there is none
  String path;         // directories instead of those of the path options
  char ext[30] = "";   // extension, %e
  char key[MAX_KEY] = {};
  char keyval[MAX_KEY][30] = {};
  int numkey = 0;
  std::int64_t min_size = 1;   // bytes of a file that counts; Const::MISS: any that exists
  int min_time = Const::MISS;  // minutes that a search for the latest file goes back at least
  char type[20] = "";          // file format word
  char param[50] = "";         // parameter column of the convention file
  int off = Const::MISS;       // period of the files, seconds
  Date date;                   // that the last name stands for
  DateVal fix_date;
  Date late_date;
  int fore_time = 0;  // %f
  bool output = false;
  int limit = 500;     // periods that a search for the latest file goes back
  int cpath = 0;       // directory of the list in hand
  int npath = 0;       // directories of the list
  bool pexist = true;  // whether the directory of the last name exists

 private:
  int readFile(const char* name);
  void setOptions(const char* list);
  void expand(const Date& d, int which, NameLookup& lookup, std::vector<NamePiece>& pieces);
  void join(const std::vector<NamePiece>& pieces, String& out) const;
  bool fits(const char* name) const;
  std::vector<NamePiece> nameFile(const Date& d, NameLookup& lookup);
  bool hasFile(const Date& d, NameLookup& lookup);
  bool findDate(const Date& d, NameLookup& lookup);
  bool findBack(const Date& start, int direction, int tries, NameLookup& lookup);
  template <class Find>
  bool withSpellings(Find find);
  void getStart(const TimeSpec& time, Date& start) const;
  void fixDate(Date& start) const;
  int finish(bool there, NameConvFile& out);

  bool literal = false;  // the template is a name
  String found;
  Date first_date, last_date;  // of the last search
};

}  // namespace KYV
#endif
