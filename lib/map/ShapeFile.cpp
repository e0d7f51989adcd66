#include "KYV/ShapeFile.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "KYV/EarthPoints.h"
#include "KYV/Kyv.h"
#include "KYV/Swap.h"
#include "Place.h"

namespace KYV {

namespace {

// The main file: a header of 100 bytes, then records, each with a header of its own (number and length, big-endian,
// lengths in halfwords) and a shape (little-endian).
constexpr std::size_t FILE_HEADER = 100;
constexpr std::size_t POINT_BYTES = 16;
constexpr int FILE_CODE = 9994;
constexpr int VERSION = 1000;
constexpr long LENGTH_AT = 24;  // of the file's length in its header

// Shape types.
enum Shape { POINT = 1, POLYLINE = 3, POLYGON = 5, POLYLINE_Z = 13, POLYGON_Z = 15 };
constexpr bool hasParts(int type) {
  return type == POLYLINE || type == POLYGON || type == POLYLINE_Z || type == POLYGON_Z;
}

float toDegrees(double value) { return std::abs(value) <= MAX_DEGREES ? static_cast<float>(value) : Const::MISS; }

// Little-endian numbers as the format writes them.
bool writeLittle(File& file, int value) {
  unsigned char bytes[4];
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(static_cast<std::uint32_t>(value) >> (8 * i));
  return file.write(bytes, 4) == 4;
}

bool writeLittle(File& file, double value) {
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(value);
  unsigned char bytes[8];
  for (int i = 0; i < 8; ++i) bytes[i] = static_cast<unsigned char>(bits >> (8 * i));
  return file.write(bytes, 8) == 8;
}

bool writeBig(File& file, int value) { return Swap(1).writeInt4(file, value) > 0; }

}  // namespace

int ShapeFile::open(const char* name, const char* mode) {
  close();
  if (mode && *mode == 'r') {
    MapBytes loaded;
    return loaded.load(name) ? open(std::move(loaded)) : 0;
  }
  if (!out.open(name, mode)) return 0;
  opened = writing = true;
  records = 0;
  return writeFileHeader();
}

int ShapeFile::open(MapBytes loaded) {
  close();
  bytes = std::move(loaded);
  opened = true;
  Kyv::outDebug(4, "ShapeFile opened\n");
  return rewind();
}

int ShapeFile::rewind() {
  if (!opened || writing) return 0;
  starts.clear();
  part = 0;
  left = 0;
  if (!bytes.seek(FILE_HEADER)) bytes.seek(bytes.getSize());
  end = bytes.tell();
  return 1;
}

int ShapeFile::seek(int n) {
  if (n < 0 || !rewind()) return 0;
  MapFileHeader header;
  for (int i = 0; i <= n; ++i) {
    if (readHeader(header) <= 0) return 0;
  }
  // Back before the part, or the point, that was found.
  if (part > 0) {
    --part;
  } else {
    end = record;
  }
  left = 0;
  return 1;
}

int ShapeFile::close() {
  int result = 1;
  if (writing) {
    result = writeRecord();
    const std::int64_t length = out.tell();
    if (length < 0 || length / 2 > INT_MAX || !out.seek(LENGTH_AT) || !writeBig(out, static_cast<int>(length / 2))) {
      result = 0;
    }
    if (!out.close()) result = 0;
  }
  bytes.clear();
  starts.clear();
  written.clear();
  pending.init();
  part = end = 0;
  left = 0;
  opened = writing = false;
  return result;
}

// Nothing can be found again behind a fault, so that the file is at its end there.
int ShapeFile::fail(const char* what) {
  Kyv::outWarning("Shapefile %s: %s at byte %zu; the rest of it is left out\n", bytes.getName(), what, bytes.tell());
  bytes.seek(bytes.getSize());
  end = bytes.getSize();
  starts.clear();
  part = 0;
  left = 0;
  return -1;
}

// The next record that has parts: its range and where its parts begin.
int ShapeFile::readRecord() {
  int number = 0, length = 0, type = 0;
  record = bytes.tell();
  Kyv::outDebug(4, "Tell: %d\n", static_cast<int>(std::min<std::size_t>(bytes.tell(), INT_MAX)));
  if (!bytes.readBig(number) || !bytes.readBig(length)) return fail("no record");
  const std::size_t content = bytes.tell();
  if (!bytes.readLittle(type)) return fail("no shape");
  Kyv::outDebug(4, "Index: %d ", number);
  Kyv::outDebug(4, "Len: %d ", length);
  Kyv::outDebug(4, "Shape: %d ", type);
  if (type == POINT) return POINT;
  if (!hasParts(type)) return 0;

  double box[4];
  for (double& side : box) {
    if (!bytes.readLittle(side)) return fail("no box");
  }
  range.min_lon = toDegrees(box[0]);
  range.min_lat = toDegrees(box[1]);
  range.max_lon = toDegrees(box[2]);
  range.max_lat = toDegrees(box[3]);
  int parts = 0, points = 0;
  if (!bytes.readLittle(parts) || !bytes.readLittle(points)) return fail("no numbers");
  Kyv::outDebug(4, "Parts: %d ", parts);
  Kyv::outDebug(4, "Pnts: %d\n", points);
  if (parts < 0 || points < 0 || static_cast<std::size_t>(parts) > bytes.getLeft() / 4) return fail("a wrong number");
  starts.clear();
  int last = 0;
  for (int i = 0; i < parts; ++i) {
    int start = 0;
    bytes.readLittle(start);
    if (start < last || start > points) return fail("a wrong part");
    starts.push_back(last = start);
  }
  starts.push_back(points);
  base = bytes.tell();
  if (!bytes.skip(static_cast<std::size_t>(points) * POINT_BYTES)) return fail("the points of a shape end");
  part = 0;
  // Heights and measures stand behind the points.
  end = bytes.tell();
  const std::size_t size = length > 0 ? static_cast<std::size_t>(length) * 2 : 0;
  if (type >= POLYLINE_Z) end = std::min(std::max(end, content + size), bytes.getSize());
  return type;
}

int ShapeFile::readPoint(MapFileHeader& header) {
  double lon = 0.0, lat = 0.0;
  const std::size_t place = bytes.tell();
  if (!bytes.readLittle(lon) || !bytes.readLittle(lat)) return fail("no point");
  header.num = left = 1;
  header.attr = MapFileHeader::PLACE;
  header.range = {toDegrees(lat), toDegrees(lat), toDegrees(lon), toDegrees(lon)};
  end = bytes.tell();
  bytes.seek(place);
  return 1;
}

int ShapeFile::readHeader(MapFileHeader& header) {
  header.init();
  if (!opened || writing) return 0;
  left = 0;
  while (part + 1 >= starts.size()) {
    starts.clear();
    part = 0;
    bytes.seek(end);
    if (bytes.getLeft() == 0) return 0;
    const int type = readRecord();
    if (type == POINT) return readPoint(header);
    if (type <= 0) {
      bytes.seek(bytes.getSize());
      end = bytes.getSize();
      return type;
    }
  }
  header.range = range;
  header.num = left = starts[part + 1] - starts[part];
  bytes.seek(base + static_cast<std::size_t>(starts[part]) * POINT_BYTES);
  ++part;
  return 1;
}

int ShapeFile::skipData() {
  left = 0;
  return 1;
}

int ShapeFile::readData(EarthPoint& e) {
  e.setMissing();
  if (!opened || writing || left == 0) return 0;
  double lon = 0.0, lat = 0.0;
  if (!bytes.readLittle(lon) || !bytes.readLittle(lat)) return fail("the points of a shape end");
  --left;
  e = makePlace(lat, lon);
  return 1;
}

int ShapeFile::readData(EarthPoints& points) {
  points.clear();
  EarthPoint e;
  int result = 0;
  while ((result = readData(e)) > 0) points.add(e);
  return result < 0 ? -1 : 1;
}

int ShapeFile::read(MapFileHeader& header, EarthPoints& points) {
  points.clear();
  const int result = readHeader(header);
  return result > 0 ? readData(points) : result;
}

int ShapeFile::writeFileHeader() {
  writeBig(out, FILE_CODE);
  for (int i = 0; i < 5; ++i) writeBig(out, 0);
  writeBig(out, 0);  // the length, written when the file is closed
  writeLittle(out, VERSION);
  writeLittle(out, static_cast<int>(POLYLINE));
  for (const double side : {-180.0, -90.0, 180.0, 90.0, 0.0, 0.0, 0.0, 0.0}) writeLittle(out, side);
  return out.isError() ? 0 : 1;
}

int ShapeFile::writeHeader(const MapFileHeader& header) {
  if (!writing || header.num < 0 || !writeRecord()) return 0;
  pending = header;
  return 1;
}

int ShapeFile::writeData(const EarthPoint& e) {
  if (!writing || pending.num <= 0) return 0;
  written.push_back(e.lat);
  written.push_back(e.lon);
  return static_cast<int>(written.size() / 2) < pending.num ? 1 : writeRecord();
}

// The polyline in hand as a record of one part.
int ShapeFile::writeRecord() {
  const int num = static_cast<int>(written.size() / 2);
  pending.num = 0;
  if (num == 0) return 1;
  constexpr std::size_t HEAD = 4 + 4 * 8 + 4 + 4 + 4;  // type, box, two numbers, one part
  const std::size_t length = (HEAD + static_cast<std::size_t>(num) * POINT_BYTES) / 2;
  if (length > INT_MAX) return 0;
  EarthRange box{90.0f, -90.0f, 180.0f, -180.0f};
  for (std::size_t i = 0; i < written.size(); i += 2) {
    box.min_lat = std::min(box.min_lat, written[i]);
    box.max_lat = std::max(box.max_lat, written[i]);
    box.min_lon = std::min(box.min_lon, written[i + 1]);
    box.max_lon = std::max(box.max_lon, written[i + 1]);
  }
  writeBig(out, ++records);
  writeBig(out, static_cast<int>(length));
  writeLittle(out, static_cast<int>(POLYLINE));
  for (const float side : {box.min_lon, box.min_lat, box.max_lon, box.max_lat}) {
    writeLittle(out, static_cast<double>(side));
  }
  writeLittle(out, 1);
  writeLittle(out, num);
  writeLittle(out, 0);
  for (std::size_t i = 0; i < written.size(); i += 2) {
    writeLittle(out, static_cast<double>(written[i + 1]));
    writeLittle(out, static_cast<double>(written[i]));
  }
  written.clear();
  return out.isError() ? 0 : 1;
}

int ShapeFile::print() const {
  std::printf("ShapeFile: %zu bytes\n", bytes.getSize());
  return 1;
}

}  // namespace KYV
