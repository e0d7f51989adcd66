#ifndef KYV_MAPKYVFILE_H
#define KYV_MAPKYVFILE_H

#include "KYV/File.h"
#include "KYV/MapBytes.h"

namespace KYV {

class EarthPoints;
struct EarthPoint;
struct MapFileHeader;

/// The program's own map files: segments of latitude-longitude points, each with a header. docs/map-files.md describes
/// the text and the binary form. Beside a binary file NAME.map lies NAME.mdb with the segments' names.
class MapKyvFile {
 public:
  enum Type { UNKNOWN = 0, BINARY = 1, TEXT = 2 };

  /// @param mode  "r", "w" or "a" as for File
  /// @param type  UNKNOWN: found out from the file's beginning; binary for a file that is written
  [[nodiscard]] int open(const char* name, const char* mode, int type);
  [[nodiscard]] int open(const char* name, const char* mode) { return open(name, mode, UNKNOWN); }
  [[nodiscard]] int open(const char* name) { return open(name, "r"); }
  /// Reads a file that was loaded.
  [[nodiscard]] int open(MapBytes loaded, int type = UNKNOWN);
  bool isOpen() const { return opened; }
  /// Whether only places (segments of one point) get their names, as is enough for drawing; lines have none then.
  int setPlaceNames(bool on) { return place_names = on, 1; }
  /// Back to the first segment; 0 when the file is not read.
  int rewind();
  /// To segment n, counted from 0; 0 when there are fewer.
  int seek(int n);
  /// 0 when anything could not be written.
  int close();

  /// The next segment's header, whatever was left of the last one's points.
  /// @return 1; 0 at the end of the file; -1 when what stands there is no header, with a warning
  int readHeader(MapFileHeader& header);
  /// Passes over the rest of the segment's points.
  int skipData();
  /// The next point of the segment; one whose numbers are none is missing.
  /// @return 1; 0 after the last; -1 when the file ends first, with a warning
  int readData(EarthPoint& e);
  /// All points left of the segment; as readData, what was read stays.
  int readData(EarthPoints& points);

  /// The first segment with a name begins the name file of a binary file.
  int writeHeader(const MapFileHeader& header);
  int writeData(const EarthPoint& e);
  /// "MapKyvFile - binary: %d\n" on standard output.
  int print() const;

 private:
  int readBinaryHeader(MapFileHeader& header);
  int readTextHeader(MapFileHeader& header);
  void findNames();
  void readName(MapFileHeader& header);
  void writeName(const MapFileHeader& header);
  int fail(const char* what);

  bool opened = false;
  bool writing = false;
  bool binary = true;
  MapBytes bytes;
  MapBytes names;  // of the segments, a line each
  bool place_names = false;
  bool names_due = false;  // the name file has not been looked for
  int names_behind = 0;    // segments whose lines have not been passed over
  int left = 0;            // points of the segment not yet read
  File out;
  File namesOut;
  String namesName;
  int segments = 0;  // written
};

}  // namespace KYV
#endif
