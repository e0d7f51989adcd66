#include "KYV/MapFile.h"

#include <cstdio>
#include <string_view>
#include <type_traits>
#include <utility>

#include "KYV/EarthPoints.h"

namespace KYV {

namespace {

// The beginnings of files of other kinds; a byte order mark may stand before those of XML.
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::string_view XML[] = {"<?xml", "<kml"};
constexpr std::string_view SHAPE_CODE("\0\0\x27\x0A", 4);  // 9994, big-endian

// Lets an operation act on the file in hand; 0 without one.
template <class Variant, class Operation>
int onFile(Variant& file, Operation operation) {
  return std::visit(
      [&](auto& f) {
        if constexpr (std::is_same_v<std::remove_const_t<std::remove_reference_t<decltype(f)>>, std::monostate>) {
          return 0;
        } else {
          return static_cast<int>(operation(f));
        }
      },
      file);
}

}  // namespace

int MapFile::checkType(const MapBytes& bytes) {
  std::string_view text = bytes.getText();
  if (text.starts_with(SHAPE_CODE)) return SHAPE;
  if (text.starts_with(BYTE_ORDER_MARK)) text.remove_prefix(BYTE_ORDER_MARK.size());
  for (const std::string_view begin : XML) {
    if (text.starts_with(begin)) return KML;
  }
  return KYV_MAP;
}

int MapFile::checkType(const char* name) {
  MapBytes bytes;
  return bytes.load(name) ? checkType(bytes) : NONE;
}

int MapFile::open(const char* name, const char* mode, int type) {
  close();
  int result = 0;
  if (mode && *mode != 'r') {
    switch (type) {
      case NONE:
      case KYV_MAP:
        result = file.emplace<MapKyvFile>().open(name, mode);
        break;
      case SHAPE:
        result = file.emplace<ShapeFile>().open(name, mode);
        break;
      default:
        break;
    }
  } else {
    MapBytes bytes;
    if (!bytes.load(name)) return 0;
    switch (type == NONE ? checkType(bytes) : type) {
      case KYV_MAP:
        result = file.emplace<MapKyvFile>().open(std::move(bytes));
        break;
      case KML:
        result = file.emplace<KmlFile>().open(bytes);
        break;
      case SHAPE:
        result = file.emplace<ShapeFile>().open(std::move(bytes));
        break;
      default:
        break;
    }
  }
  if (!result) file.emplace<std::monostate>();
  return result;
}

bool MapFile::isOpen() const {
  return onFile(file, [](const auto& f) { return f.isOpen(); }) != 0;
}

int MapFile::setPlaceNames(bool on) {
  if (auto* f = std::get_if<MapKyvFile>(&file)) f->setPlaceNames(on);
  return 1;
}

int MapFile::rewind() {
  point = num = 0;
  return onFile(file, [](auto& f) { return f.rewind(); });
}

int MapFile::seek(int n) {
  point = num = 0;
  return onFile(file, [n](auto& f) { return f.seek(n); });
}

int MapFile::close() {
  const int result = isOpen() ? onFile(file, [](auto& f) { return f.close(); }) : 1;
  file.emplace<std::monostate>();
  point = num = 0;
  return result;
}

int MapFile::readHeader(MapFileHeader& header) {
  header.init();
  const int result = onFile(file, [&](auto& f) { return f.readHeader(header); });
  point = 0;
  num = header.num;
  return result;
}

int MapFile::skipData() {
  point = num;
  return onFile(file, [](auto& f) { return f.skipData(); });
}

int MapFile::readData(EarthPoint& e) {
  const int result = onFile(file, [&](auto& f) { return f.readData(e); });
  if (result > 0) ++point;
  return result;
}

int MapFile::readData(EarthPoints& points) {
  points.clear();
  const int result = onFile(file, [&](auto& f) { return f.readData(points); });
  point += points.getNum();
  return result;
}

int MapFile::writeHeader(const MapFileHeader& header) {
  if (auto* f = std::get_if<MapKyvFile>(&file)) return f->writeHeader(header);
  if (auto* f = std::get_if<ShapeFile>(&file)) return f->writeHeader(header);
  return 0;
}

int MapFile::writeData(const EarthPoint& e) {
  if (auto* f = std::get_if<MapKyvFile>(&file)) return f->writeData(e);
  if (auto* f = std::get_if<ShapeFile>(&file)) return f->writeData(e);
  return 0;
}

int MapFile::print() const {
  std::printf("MapFile: %d %d\n", num, point);
  onFile(file, [](const auto& f) { return f.print(); });
  return 1;
}

}  // namespace KYV
