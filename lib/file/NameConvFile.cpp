#include "KYV/NameConvFile.h"

#include <cstdio>

namespace KYV {

namespace {

constexpr int MAX_NAME = 119;
constexpr int MAX_PARAM = 19;

template <std::size_t N>
int copyCut(char (&field)[N], const char* text, int most) {
  static_assert(N > 1);
  return StrLib::copy(field, static_cast<int>(N), StrLib::valid(text, ""), most);
}

}  // namespace

int NameConvFile::setFilename(const char* name) { return copyCut(filename, name, MAX_NAME); }

int NameConvFile::setHeader(const char* name) { return copyCut(header, name, MAX_NAME); }

int NameConvFile::setParam(const char* text) { return copyCut(param, text, MAX_PARAM); }

int NameConvFile::print() const {
  std::printf("NameConvFile: %s - %s\n", filename, header);
  std::printf("  Date: ");
  date.print();
  if (*type) std::printf("  Type: %s\n", type);
  return 1;
}

}  // namespace KYV
