#ifndef KYV_DATALINES_H
#define KYV_DATALINES_H

#include "KYV/File.h"
#include "KYV/String.h"

namespace KYV {

/// The lines of a data file, white space at both ends taken off. Of a line longer than the field the rest is dropped.
/// False at the end of the file.
template <std::size_t N>
bool nextLine(File& file, char (&line)[N]) {
  String text;
  if (file.getLine(text) <= 0) return false;
  const std::string_view view = text.view();
  const std::size_t first = view.find_first_not_of(" \t\r\n\v\f");
  StrLib::copy(line, first == std::string_view::npos ? "" : text.get() + first);
  StrLib::trimWS(line);
  return true;
}

}  // namespace KYV
#endif
