#include "KYV/KmlFile.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "KYV/EarthPoints.h"
#include "KYV/Kyv.h"
#include "KYV/Number.h"
#include "Place.h"
#include "XmlLibrary.h"

namespace KYV {

namespace {

// Nothing is fetched, no entity put in and no external definition read; faults are told once, by us.
constexpr int OPTIONS = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

std::string_view view(const xmlChar* text) { return text ? reinterpret_cast<const char*>(text) : ""; }

}  // namespace

const char* KmlFile::getLibrary() {
  const XmlLibrary* xml = XmlLibrary::get();
  return xml ? *xml->version : "";
}

int KmlFile::open(const char* name, const char* mode) {
  close();
  MapBytes loaded;
  return mode && *mode == 'r' && loaded.load(name) ? open(loaded) : 0;
}

int KmlFile::open(const MapBytes& loaded) {
  close();
  const XmlLibrary* xml = XmlLibrary::get();
  if (!xml || loaded.getSize() > INT_MAX) return 0;
  const std::unique_ptr<xmlTextReader, decltype(xml->freeReader)> reader(
      xml->readerForMemory(loaded.getText().data(), static_cast<int>(loaded.getSize()), nullptr, nullptr, OPTIONS),
      xml->freeReader);
  if (!reader) return 0;

  std::string name;    // of the placemark in hand
  std::string inside;  // the element whose text is wanted
  std::string text;
  bool place = false;
  int more = 0;
  while ((more = xml->read(reader.get())) == 1) {
    switch (xml->nodeType(reader.get())) {
      case XML_READER_TYPE_ELEMENT: {
        const std::string_view element = view(xml->localName(reader.get()));
        if (element == "Placemark") name.clear();
        if (element == "Point") place = true;
        if (element == "LineString" || element == "LinearRing") place = false;
        inside = element == "name" || element == "coordinates" ? element : "";
        text.clear();
        break;
      }
      case XML_READER_TYPE_TEXT:
      case XML_READER_TYPE_CDATA:
        if (!inside.empty()) text += view(xml->value(reader.get()));
        break;
      case XML_READER_TYPE_END_ELEMENT:
        if (inside == "name") name = text;
        if (inside == "coordinates") takeCoordinates(text.c_str(), name.c_str(), place);
        inside.clear();
        break;
      default:
        break;
    }
  }
  if (more < 0) {
    Kyv::outWarning("KML file %s is damaged; what stands before is kept\n", loaded.getName());
  }
  opened = !segments.empty();
  return opened ? 1 : 0;
}

// "lon,lat[,height] lon,lat[,height] ..."; what follows a tuple that is none is left out.
bool KmlFile::takeCoordinates(const char* text, const char* name, bool place) {
  Segment segment;
  segment.first = points.size();
  EarthRange& r = segment.header.range;
  std::string_view rest = text;
  for (;;) {
    double lon = 0.0, lat = 0.0, height = 0.0;
    if (!takeNumber(rest, lon) || !rest.starts_with(',')) break;
    rest.remove_prefix(1);
    if (!takeNumber(rest, lat)) break;
    if (rest.starts_with(',')) {
      rest.remove_prefix(1);
      takeNumber(rest, height);
    }
    const EarthPoint e = makePlace(lat, lon);
    points.push_back(e);
    if (e.isMissing()) continue;
    const bool first = Const::isMissing(r.min_lat);
    r.min_lat = first ? e.lat : std::min(r.min_lat, e.lat);
    r.max_lat = first ? e.lat : std::max(r.max_lat, e.lat);
    r.min_lon = first ? e.lon : std::min(r.min_lon, e.lon);
    r.max_lon = first ? e.lon : std::max(r.max_lon, e.lon);
  }
  if (points.size() == segment.first || points.size() > INT_MAX) return false;
  segment.header.num = static_cast<int>(points.size() - segment.first);
  if (place) segment.header.attr = MapFileHeader::PLACE;
  StrLib::copy(segment.header.name, name);
  segments.push_back(segment);
  return true;
}

int KmlFile::seek(int n) {
  if (!opened || n < 0 || static_cast<std::size_t>(n) >= segments.size()) return 0;
  next = static_cast<std::size_t>(n);
  point = last = 0;
  return 1;
}

int KmlFile::close() {
  opened = false;
  segments.clear();
  points.clear();
  next = point = last = 0;
  return 1;
}

int KmlFile::readHeader(MapFileHeader& header) {
  header.init();
  if (next >= segments.size()) return 0;
  const Segment& segment = segments[next++];
  header = segment.header;
  point = segment.first;
  last = segment.first + static_cast<std::size_t>(header.num);
  return 1;
}

int KmlFile::skipData() {
  point = last;
  return 1;
}

int KmlFile::readData(EarthPoint& e) {
  e.setMissing();
  if (point >= last) return 0;
  e = points[point++];
  return 1;
}

int KmlFile::readData(EarthPoints& list) {
  list.clear();
  for (; point < last; ++point) list.add(points[point]);
  return 1;
}

int KmlFile::print() const {
  std::printf("KmlFile: %zu segments\n", segments.size());
  return 1;
}

}  // namespace KYV
