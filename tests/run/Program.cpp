#include "Program.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>

Program::Result Program::run(const std::string& arguments, const std::string& environment) const {
  // A fixed time is written into files, so that two of them can be compared.
  const std::string command = "cd '" + dir.path() + "' && env -i PATH=/usr/bin:/bin SOURCE_DATE_EPOCH=1700000000 " +
                              environment + " '" + RADMAP_EXE + "' " + arguments + " 2>&1";
  Result result{-1, ""};
  std::FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return result;
  std::array<char, 4096> part{};
  for (std::size_t n; (n = std::fread(part.data(), 1, part.size(), pipe)) > 0;) result.output.append(part.data(), n);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  return result;
}
