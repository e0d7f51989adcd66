#include "KYV/ResrcEnv.h"

#include <cstdlib>
#include <string>

#include "KYV/Resrc.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr const char* PREFIX = "kyv";

// "kyv_radmap_plot_domain"; a secondary name with '+' stands behind the program's, another one in its place.
std::string qualifiedName(const Resrc& store, const char* resource) {
  const std::string prog = store.get("prog", "");
  const std::string name = store.get("name", "");
  const std::string program = name.starts_with('+') ? prog + "_" + name.substr(1) : name.empty() ? prog : name;
  return std::string(PREFIX) + "_" + program + "_" + resource;
}

}  // namespace

int ResrcEnv::get(const Resrc& store, const char* resource, const char* envName, String& value) {
  value.clear();
  if (!StrLib::valid(resource)) return 0;
  const std::string names[] = {qualifiedName(store, resource), StrLib::valid(envName, ""),
                               std::string(PREFIX) + resource};
  for (const std::string& name : names) {
    const char* found = name.empty() ? nullptr : std::getenv(name.c_str());
    if (found) return value.copy(found);
  }
  return 0;
}

}  // namespace KYV
