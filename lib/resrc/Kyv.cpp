#include "KYV/Kyv.h"

#include <limits.h>
#include <time.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "KYV/Const.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

// Numbers of the message classes that the code itself names.
constexpr int CLASS_PRINT = 1;
constexpr int CLASS_WARN = 3;
constexpr int CLASS_DEBUG1 = 13;
constexpr int CLASS_LAST = 20;
constexpr int NUM_DEBUG = CLASS_LAST - CLASS_DEBUG1 + 1;
constexpr int CLASS_AT_START = 6;

struct MessageClass {
  const char* name;
  int number;
};
constexpr MessageClass CLASSES[] = {{"none", 0},    {"print", CLASS_PRINT},
                                    {"error", 2},   {"warn", CLASS_WARN},
                                    {"mess", 4},    {"out1", 5},
                                    {"out2", 6},    {"out3", 7},
                                    {"out4", 8},    {"out5", 9},
                                    {"out6", 10},   {"out7", 11},
                                    {"out8", 12},   {"debug1", 13},
                                    {"debug2", 14}, {"debug3", 15},
                                    {"debug4", 16}, {"debug5", 17},
                                    {"debug6", 18}, {"debug7", 19},
                                    {"debug8", 20}, {"debug", CLASS_LAST}};

const MessageClass* findClass(const char* name) {
  const auto found = std::find_if(std::begin(CLASSES), std::end(CLASSES),
                                  [name](const MessageClass& c) { return StrLib::iequal(c.name, name); });
  return found == std::end(CLASSES) ? nullptr : &*found;
}

// The bit of a class; class 0 and those that do not exist have none.
constexpr std::uint32_t classBit(int n) { return n >= 1 && n <= CLASS_LAST ? 1u << (n - 1) : 0u; }
// The bits of the classes 1 to n.
constexpr std::uint32_t classBits(int n) { return (1u << std::clamp(n, 0, CLASS_LAST)) - 1u; }
// The class of a debug level, 0 for a level that does not exist.
constexpr int debugClass(int level) { return level >= 1 && level <= NUM_DEBUG ? CLASS_DEBUG1 - 1 + level : 0; }

constexpr int MAX_NAME = 20;  // bytes of the program name, the terminator included
constexpr int MAX_HOST = 40;

char program[MAX_NAME] = "";
std::string database;
std::uint32_t mask = classBits(CLASS_AT_START);
std::int64_t initTime = Const::MISS;
Kyv::Error status = Kyv::NOERR;

// From the least to the gravest: what was drawn is worth less than it looks, what was asked for is not there, nothing
// came of it, the machine failed.
constexpr Kyv::Error GRAVITY[] = {Kyv::NOERR,    Kyv::NORUN,  Kyv::MISC,   Kyv::NOINPUT, Kyv::NODBASE, Kyv::NOINIT,
                                  Kyv::BADPARAM, Kyv::NODATA, Kyv::NOFILE, Kyv::NOGRAPH, Kyv::NOWRITE, Kyv::NOMEMORY};

KYV_PRINTF(2, 0) int write(std::FILE* out, const char* format, std::va_list args) {
  if (!format) return 0;
  std::vfprintf(out, format, args);
  return 1;
}

// Where warnings and errors go. Output that waits goes first, so that a terminal shows all in its order.
std::FILE* errorStream() {
  if (std::getenv("kyverrtoout")) return stdout;
  std::fflush(stdout);
  return stderr;
}

}  // namespace

Resrc Kyv::resrc;

int Kyv::setProgramName(const char* name) { return StrLib::copy(program, name), 1; }

const char* Kyv::getProgramName() { return StrLib::valid(program, "KYV"); }

int Kyv::setDatabasePath(const char* path) {
  database = std::string(StrLib::valid(path, ""));
  return 1;
}

const char* Kyv::getDatabasePath() { return database.c_str(); }

const char* Kyv::getVersion() { return "6.76-LINUX-X11"; }

const char* Kyv::getComputerName() {
  static char host[MAX_HOST];
  char full[HOST_NAME_MAX + 1] = "";
  // A name that is cut may stay without its terminator.
  gethostname(full, sizeof full - 1);
  StrLib::copy(host, full);
  return host;
}

int Kyv::setMessageLevel(int n) {
  mask = classBits(n);
  return 1;
}

int Kyv::setMessageLevel(const char* spec) {
  if (!spec) return 0;
  const Strings items(spec, ',');
  for (int i = 0; i < items.getNum(); i++) {
    const char* item = StrLib::valid(items.getString(i), "");
    const char sign = *item == '+' || *item == '-' ? *item++ : '\0';
    const MessageClass* found = findClass(item);
    if (!found) continue;
    if (!sign) {
      setMessageLevel(found->number);
    } else if (sign == '+') {
      mask |= classBit(found->number);
    } else {
      mask &= ~classBit(found->number);
    }
  }
  return 1;
}

bool Kyv::isMessageClass(const char* name) { return findClass(name) != nullptr; }

std::uint32_t Kyv::getMessageLevel() { return mask; }

bool Kyv::checkMessage(int n) { return (mask & classBit(n)) != 0; }

bool Kyv::isDebug() { return (mask & ~classBits(CLASS_DEBUG1 - 1)) != 0; }

bool Kyv::isDebug(int n) { return checkMessage(debugClass(n)); }

int Kyv::outMessage(const char* format, ...) {
  if (!checkMessage(CLASS_PRINT)) return 1;
  std::va_list args;
  va_start(args, format);
  const int result = write(stdout, format, args);
  va_end(args);
  return result;
}

int Kyv::outMessage(int n, const char* format, ...) {
  if (!checkMessage(n)) return 1;
  std::va_list args;
  va_start(args, format);
  const int result = write(stdout, format, args);
  va_end(args);
  return result;
}

int Kyv::outWarning(const char* format, ...) {
  if (!checkMessage(CLASS_WARN)) return 1;
  std::va_list args;
  va_start(args, format);
  const int result = write(errorStream(), format, args);
  va_end(args);
  return result;
}

int Kyv::outError(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  const int result = write(errorStream(), format, args);
  va_end(args);
  return result;
}

int Kyv::outDebug(const char* format, ...) {
  if (!isDebug(1)) return 1;
  std::va_list args;
  va_start(args, format);
  const int result = write(stdout, format, args);
  va_end(args);
  return result;
}

int Kyv::outDebug(int n, const char* format, ...) {
  if (!isDebug(n)) return 1;
  std::va_list args;
  va_start(args, format);
  const int result = write(stdout, format, args);
  va_end(args);
  return result;
}

int Kyv::note(Error e) {
  const auto rank = [](Error code) { return std::find(std::begin(GRAVITY), std::end(GRAVITY), code); };
  if (rank(e) > rank(status)) status = e;
  return 1;
}

int Kyv::report(Error e, const char* format, ...) {
  note(e);
  if (!checkMessage(CLASS_WARN)) return 1;
  std::va_list args;
  va_start(args, format);
  const int result = write(errorStream(), format, args);
  va_end(args);
  return result;
}

Kyv::Error Kyv::getStatus() { return status; }

int Kyv::print(const char* s) {
  if (!s) return 0;
  std::fputs(s, stdout);
  return 1;
}

double Kyv::getTime() {
  using Micros = std::chrono::microseconds;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<double>(std::chrono::duration_cast<Micros>(now).count()) / 1e6;
}

std::int64_t Kyv::getVirtMem() {
  constexpr int FIELD = 23;      // vsize
  constexpr int AFTER_NAME = 3;  // the first field behind the program's name
  std::ifstream file("/proc/" + std::to_string(getpid()) + "/stat");
  std::string line;
  if (!std::getline(file, line)) return 0;
  // The name stands in parentheses and may hold blanks and parentheses itself.
  const std::size_t name = line.rfind(')');
  if (name == std::string::npos) return 0;
  std::istringstream fields(line.substr(name + 1));
  std::string skipped;
  for (int i = AFTER_NAME; i < FIELD; i++) fields >> skipped;
  std::int64_t bytes = 0;
  return fields >> bytes ? bytes : 0;
}

int Kyv::pause() {
  std::fflush(stdout);
  std::getchar();
  return 1;
}

int Kyv::sleep(float seconds) {
  constexpr float MOST = 1e9f;  // thirty years, which any time_t holds
  if (!(seconds > 0.0f)) return 1;
  const auto micros = static_cast<std::int64_t>(static_cast<double>(std::min(seconds, MOST)) * 1e6);
  timespec left = {static_cast<time_t>(micros / 1000000), static_cast<long>(micros % 1000000) * 1000};
  while (nanosleep(&left, &left) == -1 && errno == EINTR) continue;
  return 1;
}

void Kyv::exit(Error e) { std::exit(e); }

int Kyv::setInitTime(std::int64_t secs) {
  initTime = secs;
  return 1;
}

std::int64_t Kyv::getInitTime() { return initTime; }

}  // namespace KYV
