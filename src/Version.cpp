// What --version prints.
#include "Version.h"

#include <cstdio>

#include "KYV/BZlib.h"
#include "KYV/File.h"
#include "KYV/KmlFile.h"
#include "KYV/Kyv.h"
#include "KYV/PngFile.h"
#include "KYV/StrLib.h"
#include "KYV/XWindow.h"
#include "KYV/Zlib.h"

namespace KYV {

namespace {

struct Library {
  const char* name;
  const char* (*getVersion)();
};
constexpr Library LIBRARIES[] = {
    {"zlib", Zlib::getLibrary},    {"libbz2", BZlib::getLibrary},    {"libpng", PngFile::getLibrary},
    {"Xlib", XWindow::getLibrary}, {"libcurl", File::getUrlLibrary}, {"libxml2", KmlFile::getLibrary},
};

}  // namespace

void printVersion() {
  std::printf("radmap %s (version:%s)\n", RADMAP_VERSION, Kyv::getVersion());
  std::printf("Build: %s, compiler %s, C++ %ld\n", RADMAP_BUILD, __VERSION__, __cplusplus / 100L);
  for (const Library& library : LIBRARIES) {
    const char* version = library.getVersion();
    std::printf("%s: %s\n", library.name, StrLib::valid(version) ? version : "not found");
  }
}

}  // namespace KYV
