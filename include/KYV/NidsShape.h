#ifndef KYV_NIDSSHAPE_H
#define KYV_NIDSSHAPE_H

#include "KYV/Const.h"
#include "KYV/Points.h"

namespace KYV {

/// A line, a symbol or a text of the symbology block that is no part of an image, as NidsFile::readShapes() delivers
/// it.
struct NidsShape {
  enum Kind {
    LINE,    // a polyline: tracks, contours
    TEXT,    // characters at a place
    CELL,    // a storm cell's identifier at its place
    MARK,    // a position of a track
    MESO,    // a mesocyclone or shear region with its radius
    TVS,     // a tornado signature
    ETVS,    // an elevated one
    HAIL,    // hail with its probabilities and size
    CIRCLE,  // an error circle around a forecast position
  };
  /// When a position or a line of a track was or will be so.
  enum Time { NOW, PAST, FORECAST };

  Kind kind = LINE;
  Time time = NOW;
  int packet = 0;    // code
  Points points;     // quarter kilometres east and north of the radar; lines apart, one for all others
  float radius = 0;  // km
  int level = 0;     // value or colour level of the packet
  int type = 0;      // point feature, 1 to 11; see docs/nids.md
  float poh =
      Const::MISS;  // probability of hail and of severe hail, percent; missing beyond the range of the algorithm
  float posh = Const::MISS;
  float size = Const::MISS;  // of hail, inches
  char text[81] = "";
};

}  // namespace KYV
#endif
