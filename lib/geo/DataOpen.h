#ifndef KYV_LIB_GEO_DATAOPEN_H
#define KYV_LIB_GEO_DATAOPEN_H

#include "KYV/File.h"
#include "KYV/FileTool.h"

namespace KYV {

/// Opens a file whose name may come out of a domain text: no command is started, and no pipe is waited for.
[[nodiscard]] inline int openDataFile(File& file, const char* name) {
  if (FileTool::isFifo(name)) return 0;
  return file.openData(name);
}

}  // namespace KYV
#endif
