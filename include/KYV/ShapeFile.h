#ifndef KYV_SHAPEFILE_H
#define KYV_SHAPEFILE_H

#include <vector>

#include "KYV/File.h"
#include "KYV/MapBytes.h"
#include "KYV/MapFileHeader.h"

namespace KYV {

class EarthPoints;
struct EarthPoint;

/// The main file of ESRI shapefiles: polylines and polygons (types 3, 5, 13, 15), each of their parts a segment, and
/// points (type 1). What the companion files tell (attributes, index) is not used. Written files hold polylines.
class ShapeFile {
 public:
  /// @param mode  "r" or "w" as for File
  [[nodiscard]] int open(const char* name, const char* mode);
  [[nodiscard]] int open(const char* name) { return open(name, "r"); }
  /// Reads a file that was loaded.
  [[nodiscard]] int open(MapBytes loaded);
  bool isOpen() const { return opened; }
  /// Back to the first part; 0 when the file is not read.
  int rewind();
  /// To part n of the file, counted from 0; 0 when there are fewer.
  int seek(int n);
  /// 0 when anything could not be written.
  int close();

  /// The next part: its header and all its points.
  int read(MapFileHeader& header, EarthPoints& points);
  /// The next part's header: its number of points and the range of the whole record. A point has the attribute 1.
  /// @return 1; 0 at the end of the file or at a shape of another type; -1 for a damaged record, with a warning
  int readHeader(MapFileHeader& header);
  int skipData();
  /// The next point of the part, 0 after the last.
  int readData(EarthPoint& e);
  int readData(EarthPoints& points);

  /// Begins a polyline, which is written when it has header.num points, the next one begins or the file is closed.
  int writeHeader(const MapFileHeader& header);
  int writeData(const EarthPoint& e);
  int print() const;

 private:
  int readRecord();
  int readPoint(MapFileHeader& header);
  int fail(const char* what);
  int writeFileHeader();
  int writeRecord();

  bool opened = false;
  bool writing = false;
  MapBytes bytes;
  // The record in hand.
  EarthRange range;
  std::vector<int> starts;  // first points of its parts, and the number of its points
  std::size_t record = 0;   // its first byte
  std::size_t part = 0;     // next one
  std::size_t base = 0;     // byte of its first point
  std::size_t end = 0;      // byte after it
  int left = 0;             // points of the part not yet read

  File out;
  MapFileHeader pending;
  std::vector<float> written;  // latitudes and longitudes of the polyline in hand
  int records = 0;
};

}  // namespace KYV
#endif
