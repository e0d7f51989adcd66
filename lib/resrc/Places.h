#ifndef KYV_PLACES_H
#define KYV_PLACES_H

#include <string>
#include <vector>

#include "KYV/Strings.h"

namespace KYV {

/// The elements of a list of resource files and directories, separated by colons; the colon of "http:" does not
/// separate. In one pass, as such a list may come from the environment and be of any length.
inline std::vector<std::string> splitPlaces(const char* list) {
  const Strings parts(list, ':');
  std::vector<std::string> places;
  for (int i = 0; i < parts.getNum(); i++) {
    const char* part = StrLib::valid(parts.getString(i), "");
    if (!places.empty() && places.back().ends_with("http")) {
      places.back().append(":").append(part);
    } else {
      places.emplace_back(part);
    }
  }
  return places;
}

}  // namespace KYV
#endif
