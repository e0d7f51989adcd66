#ifndef KYV_STORMATTR_H
#define KYV_STORMATTR_H

#include "KYV/Const.h"

namespace KYV {

/// One storm cell, and the decoding of the tables that have a line for each.
struct StormAttr {
  /// Layouts of a table, told by its header line.
  enum Type { NONE = 0, STRUCTURE = 1, ATTRIBUTES = 2 };

  int type = NONE;  // of the table in hand; init() leaves it
  char id[4] = "";
  float ang = Const::MISS;  // azimuth from the radar, degrees
  float rad = Const::MISS;  // range, nautical miles
  int tvs = 0;              // tornado signature
  int meso = 0;             // mesocyclone, or its strength rank
  int hail = 0;             // probability of hail, percent
  int shail = 0;            // and of severe hail
  float hsize = 0.0f;       // maximum hail size, inches
  float vil = 0.0f;         // cell-based vertically integrated liquid, kg/m^2
  float dbzm = 0.0f;        // maximum reflectivity, dBZ
  float dbzht = 0.0f;       // its height, hundreds of feet
  float vlow = 0.0f;        // the column VLOW of the structure table
  float tops = 0.0f;        // echo top, hundreds of feet
  float dir = Const::MISS;  // direction that the cell comes from, degrees
  float spd = Const::MISS;  // knots
  float mass = 0.0f;        // cell mass volume; in neither layout
  bool kft = false;         // heights stand as in the table, in thousands of feet with a decimal

  StormAttr() { init(); }
  int init();
  /// Takes the layout from a header line; any other line leaves it.
  int checkType(const char* line);
  /// Decodes a line of the table; a header sets the layout for those that follow.
  /// @return 1 for a storm, and for a line that needs no decoding, whose ang is missing; 0 when a line of a known
  /// layout is no storm
  int decode(const char* line);
  int print() const;
  /// The units of heights, for the unit table: "100ft", or "kft" as current tables have them.
  const char* getHeightUnits() const { return kft ? "kft" : "100ft"; }

 private:
  int decodeStructure(const char* line);
  int decodeAttributes(const char* line);
};

}  // namespace KYV
#endif
