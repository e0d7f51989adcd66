#include "KYV/CityData.h"

#include <cstdio>

namespace KYV {

int CityData::print() const {
  std::printf("Id: %s\n", id);
  std::printf("Name: %s\n", name);
  std::printf("State: %s\n", state);
  std::printf("Cntry/Region: %s\n", country);
  std::printf("Priority: %d\n", priority);
  std::printf("Latitude: %.3f\n", static_cast<double>(lat));
  std::printf("Longitude: %.3f\n", static_cast<double>(lon));
  std::printf("Elevation: %.0f\n", static_cast<double>(elev));
  std::printf("WMO: %s\n", wmo);
  std::printf("Number: %d\n", number);
  return 1;
}

int CityData::printLine() const {
  std::printf("%-20.20s %2s %2s %9s %d %8.3f %8.3f %5.0f %5s %5d\n", name, state, country, id, priority,
              static_cast<double>(lat), static_cast<double>(lon), static_cast<double>(elev), wmo, number);
  return 1;
}

}  // namespace KYV
