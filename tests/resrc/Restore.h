#ifndef KYV_TESTS_RESTORE_H
#define KYV_TESTS_RESTORE_H

#include <cstdlib>
#include <optional>
#include <string>

#include "KYV/Const.h"
#include "KYV/Kyv.h"

/// Sets an environment variable, or takes it away (null), until the end of the test.
class EnvVar {
 public:
  EnvVar(const char* variable, const char* value) : name(variable) {
    if (const char* old = std::getenv(variable)) before = old;
    assign(value);
  }
  ~EnvVar() { assign(before ? before->c_str() : nullptr); }
  EnvVar(const EnvVar&) = delete;
  EnvVar& operator=(const EnvVar&) = delete;

 private:
  void assign(const char* value) { value ? setenv(name.c_str(), value, 1) : unsetenv(name.c_str()); }

  std::string name;
  std::optional<std::string> before;
};

/// The state of the process as a program finds it at its start, before and behind a test.
struct FreshKyv {
  FreshKyv() { reset(); }
  ~FreshKyv() { reset(); }
  static void reset() {
    KYV::Kyv::resrc.clear();
    KYV::Kyv::setMessageLevel(6);
    KYV::Kyv::setProgramName(nullptr);
    KYV::Kyv::setDatabasePath(nullptr);
    KYV::Kyv::setInitTime(KYV::Const::MISS);
  }
};

#endif
