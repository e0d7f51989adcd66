#include "KYV/Region.h"

#include <cstdio>
#include <string>

#include "DataOpen.h"
#include "KYV/DataPath.h"
#include "KYV/Kyv.h"
#include "KYV/NearWord.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr const char* DEFAULT_FILE = "kyv.reg";
constexpr int MAX_WORD = 80;  // a name or a domain text, with its terminator

// Calls act(name, text) for the regions of a file until it answers true; whether it did.
template <class Act>
bool eachRegion(const char* file, Act act) {
  String path;
  File regions;
  if (!DataPath::find(file, path) || !openDataFile(regions, path.get())) {
    Kyv::outWarning("Unable to open region file: %s\n", file);
    return false;
  }
  char line[256];
  for (int n = regions.getLine(line, sizeof line); n > 0 || (n == 0 && !regions.endFile());
       n = regions.getLine(line, sizeof line)) {
    if (n == static_cast<int>(sizeof line) - 1 && line[n - 1] != '\n') regions.skipLine();
    char region[MAX_WORD], domain[MAX_WORD];
    if (std::sscanf(line, "%79s %*s %*d %79s", region, domain) != 2) continue;
    if (act(region, domain)) return true;
  }
  return false;
}

// The text of the region `name`; of the first region when name is null.
int findRegion(const char* file, const char* name, String& text) {
  text.clear();
  return eachRegion(file, [&](const char* region, const char* domain) {
    return (!name || StrLib::iequal(region, name)) && text.copy(domain);
  });
}

}  // namespace

int Region::get(const char* file, const char* name, String& text) {
  if (!StrLib::valid(name)) return text.clear(), 0;
  return findRegion(StrLib::valid(file, DEFAULT_FILE), name, text);
}

int Region::get(const char* fileAndName, String& text) {
  const std::string both = StrLib::valid(fileAndName, "");
  const std::size_t colon = both.rfind(':');
  // The colon of "http://" names no region.
  if (colon == std::string::npos || both.compare(colon, 3, "://") == 0) {
    return findRegion(both.empty() ? DEFAULT_FILE : both.c_str(), nullptr, text);
  }
  const std::string file = both.substr(0, colon);
  return get(file.c_str(), both.c_str() + colon + 1, text);
}

void Region::offerNames(NearWord& near) {
  eachRegion(DEFAULT_FILE, [&near](const char* region, const char*) { return near.offer(region), false; });
}

}  // namespace KYV
