#ifndef KYV_MAPFILE_H
#define KYV_MAPFILE_H

#include <variant>

#include "KYV/KmlFile.h"
#include "KYV/MapFileHeader.h"
#include "KYV/MapKyvFile.h"
#include "KYV/ShapeFile.h"

namespace KYV {

/// A map file of any kind, segment by segment.
class MapFile {
 public:
  enum Type { NONE = 0, KYV_MAP = 1, KML = 2, SHAPE = 3 };

  MapFile() = default;
  ~MapFile() { close(); }
  MapFile(const MapFile&) = delete;
  MapFile& operator=(const MapFile&) = delete;

  /// @param name  a local file or, for reading, an "http://" URL
  /// @param mode  "r", or "w" for the kinds that are written: KYV_MAP (binary) and SHAPE
  /// @param type  NONE: as checkType() finds out
  [[nodiscard]] int open(const char* name, const char* mode, int type);
  [[nodiscard]] int open(const char* name) { return open(name, "r", NONE); }
  /// The kind of a file by its beginning; NONE when it cannot be read.
  static int checkType(const char* name);
  bool isOpen() const;
  /// Whether only places get their names, see MapKyvFile.
  int setPlaceNames(bool on);
  int rewind();
  /// To segment n, counted from 0; 0 when there are fewer.
  int seek(int n);
  /// 0 when anything could not be written.
  int close();

  /// The next segment's header: 1; 0 at the end; -1 when the file is damaged, with a warning.
  int readHeader(MapFileHeader& header);
  int skipData();
  /// The next point of the segment: 1; 0 after the last; -1 when the file ends first, with a warning.
  int readData(EarthPoint& e);
  /// All points left of the segment; as above, what was read stays.
  int readData(EarthPoints& points);
  int writeHeader(const MapFileHeader& header);
  int writeData(const EarthPoint& e);
  /// "MapFile: %d %d\n" on standard output: points of the segment and the point in hand; then what the kind prints.
  int print() const;

 private:
  static int checkType(const MapBytes& bytes);

  std::variant<std::monostate, MapKyvFile, KmlFile, ShapeFile> file;
  int point = 0;  // of the segment, the next one
  int num = 0;    // its points
};

}  // namespace KYV
#endif
