#include "KYV/MapFileHeader.h"

#include <cstdio>

namespace KYV {

int MapFileHeader::print() const {
  std::printf("%d - %.2f %.2f - %.2f %.2f - %d %s\n", num, range.min_lat, range.max_lat, range.min_lon, range.max_lon,
              attr, name);
  return 1;
}

}  // namespace KYV
