#ifndef KYV_TEXTFORMAT_H
#define KYV_TEXTFORMAT_H

#include <cstdarg>
#include <string>

#include "KYV/StrLib.h"

namespace KYV {

/// A short formatted text, the pieces of date texts.
KYV_PRINTF(1, 2) inline std::string textFormat(const char* format, ...) {
  char text[160];
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, sizeof text, format, args);
  va_end(args);
  return text;
}

}  // namespace KYV
#endif
