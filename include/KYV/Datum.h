#ifndef KYV_DATUM_H
#define KYV_DATUM_H

#include "KYV/Const.h"
#include "KYV/EarthPoint.h"
#include "KYV/Point.h"

namespace KYV {

/// One value to be drawn at a place, see DatumPlot.
struct Datum {
  enum Type { NUMBER = 2, TEXT = 3, SYMBOL = 4, MOVEMENT = 7 };

  Point point{Const::MISS, Const::MISS};      // plot units of the panel's domain; missing: where `place` is
  EarthPoint place;                           // turns directions to the map's north; may be missing
  int type = 0;                               // of Type
  float val[2] = {Const::MISS, Const::MISS};  // number; movement: direction and speed
  char text[40] = "";                         // text, name of a symbol; of a number: drawn instead of it
  char format[200] = "";                      // place, number format and attributes, "ur,fm=%.0f,co=red"
};

}  // namespace KYV
#endif
