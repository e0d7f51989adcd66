#include "KYV/CityTool.h"

#include "KYV/CityData.h"
#include "KYV/CityFile.h"
#include "KYV/DataPath.h"
#include "KYV/EarthPoint.h"
#include "KYV/Kyv.h"
#include "KYV/String.h"

namespace KYV {

int CityTool::getFilename(const char* file, String& path) {
  const char* name = StrLib::valid(file, StrLib::valid(Kyv::getResrc("city_file"), "sao.cty"));
  if (StrLib::iequal(name, "none")) return path.clear(), 0;
  (void)DataPath::find(name, path);  // a missing file shows when it is opened
  return 1;
}

int CityTool::search(const char* file, const char* key, CityData& data) {
  data.init();
  String path;
  CityFile cities;
  if (!StrLib::valid(key) || !getFilename(file, path) || !cities.open(path.get())) return 0;
  Kyv::outMessage(8, "Searching the city database file for: %s ...\n", key);
  while (cities.read(data)) {
    if (StrLib::iequal(data.id, key) || StrLib::iequal(data.name, key) || StrLib::iequal(data.wmo, key)) return 1;
  }
  return 0;
}

int CityTool::locate(const char* file, const char* key, EarthPoint& point) {
  CityData data;
  point.setMissing();
  if (!search(file, key, data)) return 0;
  point.set(data.lat, data.lon);
  return 1;
}

}  // namespace KYV
