#include "KYV/Timezone.h"

#include <time.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string_view>

#include "KYV/NearWord.h"
#include "KYV/StrLib.h"

namespace KYV {

namespace {

constexpr const char* ZONE_DATA = "/usr/share/zoneinfo/";
constexpr const char* ZONE_LIST = "tzdata.zi";
constexpr std::string_view MAGIC = "TZif";  // begins every zone's file

// Whether the system's data have a zone. Only names with a '/' are looked for, since a bare "UTC" is no zone but the
// lack of one; and none can leave their directory.
bool isZone(const std::string& name) {
  constexpr std::string_view LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_+-/";
  if (name.find('/') == std::string::npos || name[0] == '/' || name.find_first_not_of(LETTERS) != std::string::npos)
    return false;
  std::ifstream file(ZONE_DATA + name, std::ios::binary);
  char magic[MAGIC.size()] = "";
  return file.read(magic, sizeof magic) && std::string_view(magic, sizeof magic) == MAGIC;
}

// The environment's zone while another one is asked for.
class ZoneGuard {
 public:
  explicit ZoneGuard(const std::string& zone) {
    if (const char* now = std::getenv("TZ")) before = now;
    setenv("TZ", (":" + zone).c_str(), 1);
    tzset();
  }
  ~ZoneGuard() {
    if (before) {
      setenv("TZ", before->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  ZoneGuard(const ZoneGuard&) = delete;
  ZoneGuard& operator=(const ZoneGuard&) = delete;

 private:
  std::optional<std::string> before;
};

}  // namespace

int Timezone::set(const char* text) {
  *this = Timezone();
  if (!StrLib::valid(text)) return 0;
  if (*text == '-' || *text == '+') pm = *text++ == '-' ? -1 : 1;
  float hours = 0.0f;
  if (std::sscanf(text, "%4[^:]:%f", name, &hours) == 2) {
    const double seconds = static_cast<double>(hours) * 3600.0;
    if (std::fabs(seconds) < INT_MAX) offset = static_cast<int>(seconds);
  } else if (isZone(text)) {
    zone = text;
  }
  return 1;
}

Timezone::Local Timezone::at(std::int64_t secs) const {
  if (zone.empty()) return {offset, name};
  const ZoneGuard guard(zone);
  const time_t moment = secs;
  tm local = {};
  if (!localtime_r(&moment, &local)) return {0, "UTC"};
  return {static_cast<int>(local.tm_gmtoff), StrLib::valid(local.tm_zone, "")};
}

// The lines "Z NAME ..." of zones and "L TARGET NAME" of their other names.
void Timezone::offerZones(NearWord& near) {
  std::ifstream list(std::string(ZONE_DATA) + ZONE_LIST);
  std::string line;
  while (std::getline(list, line)) {
    char kind = '\0', first[80] = "", second[80] = "";
    if (std::sscanf(line.c_str(), "%c %79s %79s", &kind, first, second) < 3) continue;
    if (kind == 'Z') near.offer(first);
    if (kind == 'L') near.offer(second);
  }
}

int Timezone::print() const {
  std::printf("%s %d %d\n", zone.empty() ? name : zone.c_str(), pm, offset);
  return 1;
}

}  // namespace KYV
