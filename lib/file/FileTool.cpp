#include "KYV/FileTool.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "HttpTransfer.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr std::string_view HTTP = "http";
constexpr std::size_t MAX_USER = 19;

bool isUrl(const char* name) { return StrLib::valid(name) && std::strncmp(name, "http://", 7) == 0; }

// The end of the entry that starts at `from`: a colon that is no part of "http:", or the end of the list.
std::size_t endOfEntry(std::string_view list, std::size_t from) {
  for (std::size_t at = from;; ++at) {
    at = list.find(':', at);
    if (at == std::string_view::npos) return list.size();
    if (at < from + HTTP.size() || list.substr(at - HTTP.size(), HTTP.size()) != HTTP) return at;
  }
}

// The status of a local name, "~" expanded.
bool getStatus(const char* name, struct stat& info) {
  if (!StrLib::valid(name)) return false;
  String path;
  FileTool::addUserPath(name, path);
  return stat(path.get(), &info) == 0;
}

bool hasType(const char* name, mode_t type) {
  struct stat info = {};
  return getStatus(name, info) && (info.st_mode & S_IFMT) == type;
}

// Whether a URL answers 200, and the size it has. The body is wanted only where it must be counted, because the
// server does not say how long it is.
bool askUrl(const char* url, bool needSize, std::int64_t& size) {
  HttpTransfer http;
  std::int64_t counted = 0;
  const bool started = http.start(url, [&](const char*, std::size_t n) {
    counted += static_cast<std::int64_t>(n);
    return needSize && http.isFound() && http.getLength() < 0;
  });
  while (started && http.perform("FT:e") && !(http.hasHeaders() && (!needSize || http.getLength() >= 0))) {
    http.wait("FT:e");
  }
  size = http.getLength() >= 0 ? http.getLength() : counted;
  return http.isFound();
}

// A directory and a file as one path. An empty directory is the current one.
std::string join(std::string_view dir, const char* file) {
  std::string path(dir);
  if (!path.empty() && path.back() != '/') path += '/';
  return path + file;
}

const char* getHome(const char* user) {
  const char* home = *user ? nullptr : std::getenv("HOME");
  if (StrLib::valid(home)) return home;
  const passwd* entry = *user ? getpwnam(user) : getpwuid(getuid());
  return entry && StrLib::valid(entry->pw_dir) ? entry->pw_dir : nullptr;
}

}  // namespace

bool FileTool::isFullPath(const char* name) {
  return StrLib::valid(name) && (std::strchr("/.~", name[0]) || isUrl(name));
}

int FileTool::numPath(const char* list) {
  if (!StrLib::valid(list)) return 0;
  const std::string_view text(list);
  int num = 1;
  for (std::size_t end = endOfEntry(text, 0); end < text.size(); end = endOfEntry(text, end + 1)) ++num;
  return num;
}

int FileTool::getPath(const char* list, int i, String& path) {
  const std::string text(StrLib::valid(list, ""));
  path.clear();
  if (text.empty() || i < 0) return 0;
  std::size_t from = 0;
  std::size_t end = endOfEntry(text, from);
  for (; i > 0; --i) {
    if (end == text.size()) return 0;
    from = end + 1;
    end = endOfEntry(text, from);
  }
  path.copy(text.substr(from, end - from).c_str());
  return 1;
}

int FileTool::addPathDelim(String& path) {
  // Nothing is the current directory; a '/' alone would make it the root.
  if (!path.valid()) return 0;
  if (path.view().back() != '/') path.append('/');
  return 1;
}

int FileTool::addUserPath(const char* path, String& out) {
  const std::string given(StrLib::valid(path, ""));
  out.copy(given.c_str());
  if (given.empty() || given[0] != '~') return given.empty() ? 0 : 1;
  const std::size_t end = std::min(given.find('/'), given.size());
  const std::string user = given.substr(1, end - 1);
  const char* home = user.size() <= MAX_USER ? getHome(user.c_str()) : nullptr;
  if (!home) return 0;
  out.copy((home + given.substr(end)).c_str());
  return 1;
}

bool FileTool::isStdio(const char* name) {
  return StrLib::equal(name, "-") || StrLib::iequal(name, "std") || StrLib::iequal(name, "stdn");
}

bool FileTool::exist(const char* name) {
  std::int64_t size = 0;
  if (isUrl(name)) return askUrl(name, false, size);
  struct stat info = {};
  return getStatus(name, info);
}

int FileTool::addPath(const char* list, const char* file, String& out) {
  const std::string name(StrLib::valid(file, ""));
  const std::string dirs(StrLib::valid(list, ""));
  out.copy(name.c_str());
  if (name.empty()) return 0;
  if (isStdio(name.c_str())) return 1;
  if (isFullPath(name.c_str()) || dirs.empty()) return exist(name.c_str()) ? 1 : 0;
  for (std::size_t from = 0, end = 0; from <= dirs.size(); from = end + 1) {
    end = endOfEntry(dirs, from);
    out.copy(join(std::string_view(dirs).substr(from, end - from), name.c_str()).c_str());
    if (exist(out.get())) return 1;
  }
  return 0;
}

bool FileTool::checkPath(const char* list) {
  const int num = numPath(list);
  String dir;
  for (int i = 0; i < num; ++i) {
    getPath(list, i, dir);
    const bool there = isUrl(dir.get()) ? exist(dir.get()) : isDir(dir.valid() ? dir.get() : ".");
    if (!there) return false;
  }
  return num > 0;
}

int FileTool::addOutPath(const char* dir, const char* file, String& out) {
  const std::string name(StrLib::valid(file, ""));
  const bool stays = name.empty() || isFullPath(name.c_str()) || isStdio(name.c_str()) || name[0] == '|';
  const std::string path = stays ? name : join(StrLib::valid(dir, ""), name.c_str());
  out.copy(path.c_str());
  return name.empty() ? 0 : 1;
}

bool FileTool::isDir(const char* name) { return hasType(name, S_IFDIR); }

bool FileTool::isFile(const char* name) { return hasType(name, S_IFREG); }

bool FileTool::isFifo(const char* name) { return hasType(name, S_IFIFO); }

bool FileTool::isDevice(const char* name) { return hasType(name, S_IFCHR) || hasType(name, S_IFBLK); }

std::int64_t FileTool::getSize(const char* name) {
  std::int64_t size = 0;
  if (isUrl(name)) return askUrl(name, true, size) ? size : -1;
  struct stat info = {};
  return getStatus(name, info) ? info.st_size : -1;
}

std::int64_t FileTool::getModTime(const char* name) {
  struct stat info = {};
  return getStatus(name, info) ? info.st_mtime : -1;
}

int FileTool::remove(const char* name) {
  if (!StrLib::valid(name)) return 0;
  String path;
  addUserPath(name, path);
  return unlink(path.get()) == 0 ? 1 : 0;
}

int FileTool::makeDir(const char* path, int mode) {
  if (!StrLib::valid(path)) return 0;
  std::string dir(path);
  for (char& c : dir) {
    if (c == '\\') c = '/';
  }
  struct stat info = {};
  int made = 1;
  for (std::size_t at = dir.find('/', 1); at != std::string::npos; at = dir.find('/', at + 1)) {
    const std::string prefix = dir.substr(0, at);
    made = mkdir(prefix.c_str(), static_cast<mode_t>(mode)) == 0 ||
           (stat(prefix.c_str(), &info) == 0 && S_ISDIR(info.st_mode));
    // Nothing can lie beneath what is no directory.
    if (!made) break;
  }
  return made;
}

}  // namespace KYV
