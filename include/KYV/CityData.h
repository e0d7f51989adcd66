#ifndef KYV_CITYDATA_H
#define KYV_CITYDATA_H

#include "KYV/Const.h"

namespace KYV {

/// One station of a city file.
struct CityData {
  char name[21] = "";
  char state[3] = "";    // state or province
  char country[3] = "";  // country or region
  char id[13] = "";
  int priority = 9;  // 0 to 9
  float lat = Const::MISS;
  float lon = Const::MISS;
  float elev = Const::MISS;  // metres
  char wmo[8] = "";          // WMO block and station number
  int number = 0;

  int init() { return *this = CityData(), 1; }
  /// A line for each field on standard output.
  int print() const;
  /// All fields on one line.
  int printLine() const;
};

}  // namespace KYV
#endif
