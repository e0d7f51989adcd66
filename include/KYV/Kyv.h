#ifndef KYV_KYV_H
#define KYV_KYV_H

#include <cstdint>

#include "KYV/Resrc.h"
#include "KYV/StrLib.h"

namespace KYV {

/// The services that every program of the library shares: identity, messages by class, exit codes and the one
/// process-wide resource store.
///
/// Message classes: 1 print, 2 error, 3 warn, 4 mess, 5 to 12 out1 to out8, 13 to 20 debug1 to debug8; 1 to 6 are on
/// at start. Errors print whatever the classes.
class Kyv {
 public:
  /// Exit codes of the process. docs/exit-status.md says what each tells of a run.
  enum Error {
    NOERR = 0,
    NORUN = 1,
    MISC = 2,
    NOMEMORY = 3,
    NOGRAPH = 4,
    NOINIT = 5,
    NOFILE = 6,
    NODBASE = 7,
    NOWRITE = 8,
    NOINPUT = 9,
    NODATA = 10,
    BADPARAM = 11
  };

  static Resrc resrc;

  // Identity.
  /// At most 19 characters are kept.
  static int setProgramName(const char* name);
  /// "KYV" while none is set.
  static const char* getProgramName();
  static int setDatabasePath(const char* path);
  /// Empty while unset.
  static const char* getDatabasePath();
  /// "6.76-LINUX-X11".
  static const char* getVersion();
  /// Host name, in a static buffer.
  static const char* getComputerName();

  // Messages.
  /// Exactly classes 1 to n.
  static int setMessageLevel(int n);
  /// Class names separated by commas, "+name" and "-name" switch one class.
  static int setMessageLevel(const char* spec);
  /// Whether a name, without sign, is that of a class.
  static bool isMessageClass(const char* name);
  /// The mask, bit n - 1 for class n.
  static std::uint32_t getMessageLevel();
  static bool checkMessage(int n);
  static bool isDebug();
  static bool isDebug(int n);
  KYV_PRINTF(1, 2) static int outMessage(const char* format, ...);
  KYV_PRINTF(2, 3) static int outMessage(int n, const char* format, ...);
  KYV_PRINTF(1, 2) static int outWarning(const char* format, ...);
  KYV_PRINTF(1, 2) static int outError(const char* format, ...);
  KYV_PRINTF(1, 2) static int outDebug(const char* format, ...);
  KYV_PRINTF(2, 3) static int outDebug(int n, const char* format, ...);
  /// Unconditionally on standard output.
  static int print(const char* s);

  // How the run went.
  /// Notes a failure: the gravest is the run's status.
  static int note(Error e);
  /// A warning, and the failure that it tells of.
  KYV_PRINTF(2, 3) static int report(Error e, const char* format, ...);
  static Error getStatus();

  // Process.
  /// Seconds since 1970 with microseconds.
  static double getTime();
  /// Bytes of virtual memory, 0 when the system does not tell.
  static std::int64_t getVirtMem();
  /// Waits for a character on standard input.
  static int pause();
  static int sleep(float seconds);
  [[noreturn]] static void exit(Error e);
  /// A fixed current time in seconds since 1970 for the file search, Const::MISS when unset.
  static int setInitTime(std::int64_t secs);
  static std::int64_t getInitTime();

  // Shortcuts on resrc.
  static const char* getResrc(const char* name) { return resrc.get(name); }
  static const char* getResrc(const char* name, const char* dflt) { return resrc.get(name, dflt); }
  static int getResrc(const char* name, int dflt) { return resrc.get(name, dflt); }
  static int getResrcBool(const char* name) { return resrc.getBool(name); }
  static int getResrcType(const char* name) { return resrc.getType(name); }
  static int addResrc(const char* name, const char* value, int source) { return resrc.add(name, value, source); }
  static int putResrc(const char* name, const char* value) { return resrc.put(name, value); }
  static int setResrc(const char* name, const char* value) { return resrc.set(name, value); }
  static int appendResrc(const char* name, const char* value, char sep) { return resrc.append(name, value, sep); }
  static int printAllResrc() { return resrc.printAll(); }
  static const char* nextResrc() { return resrc.getNext(); }
  static int rewindResrc() { return resrc.rewind(); }
};

}  // namespace KYV
#endif
