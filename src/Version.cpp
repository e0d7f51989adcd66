// What --version and --products print.
#include "Version.h"

#include <cstdio>
#include <string>
#include <string_view>

#include "KYV/BZlib.h"
#include "KYV/File.h"
#include "KYV/KmlFile.h"
#include "KYV/Kyv.h"
#include "KYV/PngFile.h"
#include "KYV/ProductInfo.h"
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

void printProducts() {
  std::printf("%4s  %-15s %-58s %-6s %5s %5s  %s\n", "code", "mnemonic", "name", "unit", "km", "range", "drawn");
  for (const ProductInfo& p : ProductInfo::getAll()) {
    // The names of one product's tilts differ in one letter.
    const std::string_view all = p.mnemonic;
    const std::string first(all.substr(0, all.find(' ')));
    std::printf("%4d  %-15s %-58s %-6s %5g %5g  %s\n", p.code,
                (all.size() > first.size() ? first + " ..." : first).c_str(), p.name, p.unit,
                static_cast<double>(p.cell), static_cast<double>(p.range), p.drawn);
  }
}

}  // namespace KYV
