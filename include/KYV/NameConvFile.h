#ifndef KYV_NAMECONVFILE_H
#define KYV_NAMECONVFILE_H

#include "KYV/Const.h"
#include "KYV/Date.h"
#include "KYV/StrLib.h"

namespace KYV {

/// A file that a name convention has found, or the name it would have.
struct NameConvFile {
  char type[20] = "";       // file format word of the convention
  char filename[160] = "";  // NameConv::getName() has names that are longer than the setter keeps
  char header[160] = "";    // accompanying header file, empty when none
  Date date;                // that the name stands for
  char param[50] = "";
  int offset = Const::MISS;  // period of the files, seconds

  int init() { return *this = NameConvFile(), 1; }
  // Names are cut at 119 characters, type and parameters at 19.
  int setType(const char* text) { return StrLib::copy(type, sizeof type, StrLib::valid(text, "")); }
  int setFilename(const char* name);
  int setHeader(const char* name);
  int setDate(const Date& d) { return date = d, 1; }
  int setParam(const char* text);
  int setOffset(int secs) { return offset = secs, 1; }
  const char* getType() const { return type; }
  const char* getFilename() const { return filename; }
  const char* getHeader() const { return header; }
  int getDate(Date& d) const { return d = date, 1; }
  const char* getParam() const { return param; }
  int getOffset() const { return offset; }
  int print() const;
};

}  // namespace KYV
#endif
