#ifndef KYV_MAPFILEHEADER_H
#define KYV_MAPFILEHEADER_H

#include "KYV/EarthRange.h"

namespace KYV {

/// The header of one segment of a map file.
struct MapFileHeader {
  /// The feature code of a labelled place.
  static constexpr int PLACE = 1;

  int num = 0;             // points
  EarthRange range;        // that they lie in, degrees
  int attr = Const::MISS;  // feature code
  char name[50] = "";

  int init() { return *this = MapFileHeader(), 1; }
  /// "%d - %.2f %.2f - %.2f %.2f - %d %s\n" on standard output: points, latitudes, longitudes, code, name.
  int print() const;
};

}  // namespace KYV
#endif
