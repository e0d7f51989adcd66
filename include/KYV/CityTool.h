#ifndef KYV_CITYTOOL_H
#define KYV_CITYTOOL_H

namespace KYV {

class String;
struct CityData;
struct EarthPoint;

/// Finds stations in the city files.
class CityTool {
 public:
  /// The path of a database: `file`, else the resource `city_file`, else "sao.cty"; 0 for the name "none".
  static int getFilename(const char* file, String& path);
  /// The first record whose identifier, name or WMO number is `key`, in any case. 0 when there is none; data then holds
  /// the last record read.
  static int search(const char* file, const char* key, CityData& data);
  /// The place of a station; missing when it is not found.
  static int locate(const char* file, const char* key, EarthPoint& point);
};

}  // namespace KYV
#endif
