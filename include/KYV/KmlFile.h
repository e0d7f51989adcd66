#ifndef KYV_KMLFILE_H
#define KYV_KMLFILE_H

#include <cstddef>
#include <vector>

#include "KYV/EarthPoint.h"
#include "KYV/MapBytes.h"
#include "KYV/MapFileHeader.h"

namespace KYV {

class EarthPoints;

/// The lines and places of a KML file, read through libxml2: every `coordinates` element of a placemark is a segment,
/// with the placemark's name. Entities are not put in, and nothing that the file refers to is opened.
class KmlFile {
 public:
  [[nodiscard]] int open(const char* name, const char* mode);
  [[nodiscard]] int open(const char* name) { return open(name, "r"); }
  /// Reads a file that was loaded; 0 when it holds no segment.
  [[nodiscard]] int open(const MapBytes& loaded);
  bool isOpen() const { return opened; }
  int rewind() { return next = point = last = 0, opened ? 1 : 0; }
  /// To segment n, counted from 0; 0 when there are fewer.
  int seek(int n);
  int close();

  /// 1; 0 after the last segment. A place has the attribute 1.
  int readHeader(MapFileHeader& header);
  int skipData();
  int readData(EarthPoint& e);
  int readData(EarthPoints& points);
  int print() const;

  /// The version of the library beneath, which is loaded for it; empty when it is missing.
  static const char* getLibrary();

 private:
  struct Segment {
    MapFileHeader header;
    std::size_t first;  // of its points
  };

  bool takeCoordinates(const char* text, const char* name, bool place);

  bool opened = false;
  std::vector<Segment> segments;
  std::vector<EarthPoint> points;
  std::size_t next = 0;   // segment
  std::size_t point = 0;  // next point of the segment before it
  std::size_t last = 0;   // the end of its points
};

}  // namespace KYV
#endif
