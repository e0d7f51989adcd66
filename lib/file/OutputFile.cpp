// Files that appear whole or not at all.
#include "KYV/OutputFile.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string_view>
#include <utility>

namespace KYV {

namespace {

constexpr const char* ENDING = ".XXXXXX";  // mkstemp's
constexpr std::size_t MAX_COMPONENT = 255;
constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

// The names of files in the making, where a signal handler may read them: fixed room, and a flag that is set last and
// cleared first. More files at once than there are slots are not removed by a signal.
struct Slot {
  std::atomic<bool> used{false};
  std::atomic<bool> live{false};
  char name[PATH_MAX];
};
std::array<Slot, 32> slots;
static_assert(std::atomic<bool>::is_always_lock_free);

void removeAll() {
  for (Slot& s : slots) {
    if (s.live.exchange(false)) unlink(s.name);
  }
}

// Ends the program as the signal would have done.
extern "C" void onSignal(int number) {
  removeAll();
  std::signal(number, SIG_DFL);
  raise(number);
}

// Once: signals that would end the program remove what is in the making first, and a file-size limit is a failed write.
void prepare() {
  static const bool done = [] {
    for (const int number : SIGNALS) {
      struct sigaction old = {};
      if (sigaction(number, nullptr, &old) != 0 || old.sa_handler != SIG_DFL) continue;
      struct sigaction ours = {};
      ours.sa_handler = onSignal;
      sigaction(number, &ours, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN);
    std::atexit(removeAll);
    return true;
  }();
  (void)done;
}

int occupy(const std::string& name) {
  if (name.size() >= PATH_MAX) return -1;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (slots[i].used.exchange(true)) continue;
    std::memcpy(slots[i].name, name.c_str(), name.size() + 1);
    slots[i].live = true;
    return static_cast<int>(i);
  }
  return -1;
}

void freeSlot(int& slot) {
  if (slot < 0) return;
  Slot& s = slots[static_cast<std::size_t>(slot)];
  s.live = false;
  s.used = false;
  slot = -1;
}

using Identity = std::pair<dev_t, ino_t>;
std::set<Identity>& inputs() {
  static std::set<Identity> known;
  return known;
}

// Rights of a new file, as the C library would make it. Threads there are none.
mode_t newMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

bool OutputFile::isWhole(const char* path) {
  const std::string_view name = path;
  if (name.starts_with("/dev/") || name.starts_with("/proc/")) return false;
  struct stat info = {};
  return stat(path, &info) != 0 || S_ISREG(info.st_mode);
}

void OutputFile::protect(std::FILE* input) {
  struct stat info = {};
  if (input && fstat(fileno(input), &info) == 0 && S_ISREG(info.st_mode)) inputs().emplace(info.st_dev, info.st_ino);
}

std::FILE* OutputFile::open(const char* path) {
  discard();
  prepare();
  target = path;
  if (char* real = realpath(path, nullptr)) {
    target = real;
    std::free(real);  // NOLINT(cppcoreguidelines-no-malloc): realpath's
  }
  struct stat info = {};
  const bool there = stat(target.c_str(), &info) == 0;
  // What may not be written is not replaced either.
  if (there && access(target.c_str(), W_OK) != 0) return nullptr;

  const std::size_t slash = target.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : target.substr(0, slash + 1);
  const std::string plain = target.substr(folder.size(), MAX_COMPONENT - 1 - std::strlen(ENDING));
  name = folder + "." + plain + ENDING;
  const int fd = mkstemp(name.data());
  if (fd < 0) return name.clear(), nullptr;
  slot = occupy(name);
  if (there) (void)!fchown(fd, info.st_uid, info.st_gid);
  fchmod(fd, there ? info.st_mode & 07777 : newMode());
  fp = fdopen(fd, "w+");
  if (!fp) {
    ::close(fd);
    discard();
  }
  return fp;
}

int OutputFile::commit() {
  if (!fp) return 0;
  const bool whole = std::ferror(fp) == 0 && std::fflush(fp) == 0;
  int error = errno;
  const bool closed = std::fclose(fp) == 0;  // NOLINT(cppcoreguidelines-owning-memory)
  if (whole && !closed) error = errno;
  fp = nullptr;
  struct stat info = {};
  if (whole && closed && stat(target.c_str(), &info) == 0 && inputs().contains({info.st_dev, info.st_ino})) {
    error = EEXIST;
  } else if (whole && closed) {
    if (std::rename(name.c_str(), target.c_str()) == 0) {
      freeSlot(slot);
      name.clear();
      return 1;
    }
    error = errno;
  }
  discard();
  errno = error;
  return 0;
}

void OutputFile::release() {
  if (fp) (void)std::rename(name.c_str(), target.c_str());
  fp = nullptr;
  name.clear();
  freeSlot(slot);
}

void OutputFile::discard() {
  if (fp) std::fclose(fp);  // NOLINT(cppcoreguidelines-owning-memory)
  fp = nullptr;
  if (!name.empty()) unlink(name.c_str());
  name.clear();
  freeSlot(slot);
}

}  // namespace KYV
