#include "KYV/DataPath.h"

#include <unistd.h>
#include <string>

#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/String.h"

namespace KYV {

namespace {

// The directory of the running executable, with its '/'; empty when the system does not tell.
std::string executableDir() {
  char path[4096];
  const ssize_t n = readlink("/proc/self/exe", path, sizeof path);
  if (n <= 0 || n == static_cast<ssize_t>(sizeof path)) return {};
  const std::string exe(path, static_cast<std::size_t>(n));
  return exe.substr(0, exe.rfind('/') + 1);
}

}  // namespace

int DataPath::find(const char* file, String& path) {
  if (!StrLib::valid(file)) return path.clear(), 0;
  const char* base = Kyv::getDatabasePath();
  const int found = FileTool::addPath(base, file, path);
  if (found || FileTool::isFullPath(file) || FileTool::isStdio(file)) {
    Kyv::outDebug(3, "Data file: %s%s\n", path.get(), found ? "" : " (missing)");
    return found;
  }
  if (*base) Kyv::outDebug(3, "Data file: %s not along %s\n", file, base);

  static const std::string own[] = {executableDir() + "data/", executableDir() + "../share/radmap/",
                                    RADMAP_DATA_DIR "/"};
  for (const std::string& dir : own) {
    const std::string name = dir + file;
    const bool there = FileTool::exist(name.c_str());
    Kyv::outDebug(3, "Data file: %s%s\n", name.c_str(), there ? "" : " (missing)");
    if (there) return path.copy(name.c_str()), 1;
  }
  return 0;
}

}  // namespace KYV
