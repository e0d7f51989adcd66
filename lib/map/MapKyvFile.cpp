#include "KYV/MapKyvFile.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <utility>

#include "KYV/EarthPoints.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/MapFileHeader.h"
#include "KYV/Number.h"
#include "KYV/Swap.h"
#include "Place.h"

namespace KYV {

namespace {

constexpr std::size_t PEEK = 100;           // bytes that tell the type of a file
constexpr unsigned short MORE = 65535;      // a count that goes on in the next halfword
constexpr int MAX_COUNTS = 3;               // halfwords
constexpr std::size_t POINT_BYTES = 8;      // of a binary point
constexpr std::size_t MAX_NAME_LINE = 199;  // characters of a name file's line that count
constexpr int BIG_ENDIAN_DATA = 1;          // of Swap

// The six fields of a text header; false when the line has another form.
bool decodeHeader(std::string_view line, MapFileHeader& h) {
  return takeNumber(line, h.num) && takeNumber(line, h.range.max_lat) && takeNumber(line, h.range.min_lat) &&
         takeNumber(line, h.range.max_lon) && takeNumber(line, h.range.min_lon) && takeNumber(line, h.attr);
}

// NAME.map has its names in NAME.mdb.
String namesOf(const char* name) {
  const int length = StrLib::length(name);
  String names(name, std::max(length - 4, 0));
  names.append(".mdb");
  return names;
}

}  // namespace

int MapKyvFile::open(const char* name, const char* mode, int type) {
  close();
  if (mode && *mode == 'r') {
    MapBytes loaded;
    return loaded.load(name) ? open(std::move(loaded), type) : 0;
  }
  if (!out.open(name, mode)) return 0;
  namesName = namesOf(name);
  binary = type != TEXT;
  opened = writing = true;
  segments = 0;
  return 1;
}

int MapKyvFile::open(MapBytes loaded, int type) {
  close();
  bytes = std::move(loaded);
  bytes.seek(0);
  MapFileHeader header;
  const std::string_view start = bytes.getText().substr(0, PEEK);
  binary = type == UNKNOWN ? !decodeHeader(start.substr(0, start.find('\n')), header) : type == BINARY;
  names_due = binary;
  opened = true;
  return 1;
}

int MapKyvFile::rewind() {
  if (!opened || writing) return 0;
  bytes.seek(0);
  names.seek(0);
  names_behind = 0;
  left = 0;
  return 1;
}

int MapKyvFile::seek(int n) {
  if (n < 0 || !rewind()) return 0;
  MapFileHeader header;
  for (int i = 0; i < n; ++i) {
    if (readHeader(header) <= 0) return 0;
  }
  skipData();
  return bytes.getLeft() > 0 ? 1 : 0;
}

int MapKyvFile::close() {
  int result = 1;
  if (writing) {
    result = out.close();
    if (namesOut.isOpen() && !namesOut.close()) result = 0;
  }
  bytes.clear();
  names.clear();
  names_due = false;
  names_behind = 0;
  left = 0;
  opened = writing = false;
  return result;
}

// Nothing can be found again behind a fault, so that the file is at its end there.
int MapKyvFile::fail(const char* what) {
  Kyv::outWarning("Map file %s: %s at byte %zu; the rest of it is left out\n", bytes.getName(), what, bytes.tell());
  bytes.seek(bytes.getSize());
  left = 0;
  return -1;
}

int MapKyvFile::readHeader(MapFileHeader& header) {
  header.init();
  if (!opened || writing) return 0;
  skipData();
  if (bytes.getLeft() == 0) return 0;
  const int result = binary ? readBinaryHeader(header) : readTextHeader(header);
  if (result <= 0) return result;
  left = header.num;
  readName(header);
  return 1;
}

int MapKyvFile::readBinaryHeader(MapFileHeader& header) {
  unsigned short count = MORE;
  for (int i = 0; i < MAX_COUNTS && count == MORE; ++i) {
    if (!bytes.readBig(count)) return fail("no header");
    header.num += count;
  }
  EarthRange& r = header.range;
  if (!bytes.readBig(r.max_lat) || !bytes.readBig(r.min_lat) || !bytes.readBig(r.max_lon) ||
      !bytes.readBig(r.min_lon) || !bytes.readBig(header.attr)) {
    return fail("no header");
  }
  return 1;
}

int MapKyvFile::readTextHeader(MapFileHeader& header) {
  std::string_view line;
  do {
    if (!bytes.readLine(line)) return 0;
  } while (trimFront(line).empty());
  if (!decodeHeader(line, header) || header.num < 0) return fail("no header");
  return 1;
}

// The name file lies beside the map file; not every map has one.
void MapKyvFile::findNames() {
  names_due = false;
  const String beside = namesOf(bytes.getName());
  if (StrLib::length(bytes.getName()) > 4 && FileTool::isFile(beside.get()) && !names.load(beside.get())) names.clear();
}

// The third word of the segment's line in the name file.
void MapKyvFile::readName(MapFileHeader& header) {
  ++names_behind;
  if (place_names && header.num != 1) return;
  if (names_due) findNames();
  std::string_view line;
  for (; names_behind > 0; --names_behind) {
    if (!names.readLine(line)) return;
  }
  line = line.substr(0, MAX_NAME_LINE);
  for (int word = 0; word < 3; ++word) {
    line = trimFront(line);
    const std::string_view text = line.substr(0, line.find_first_of(BLANKS));
    if (word == 2) header.name[text.copy(header.name, sizeof header.name - 1)] = '\0';
    line.remove_prefix(text.size());
  }
}

int MapKyvFile::skipData() {
  if (!opened || writing || left == 0) return 1;
  if (binary) {
    const std::size_t n = static_cast<std::size_t>(left) * POINT_BYTES;
    if (!bytes.skip(n)) return fail("the points of a segment end"), 0;
  } else {
    std::string_view line;
    for (; left > 0; --left) {
      if (!bytes.readLine(line)) return fail("the points of a segment end"), 0;
    }
  }
  left = 0;
  return 1;
}

int MapKyvFile::readData(EarthPoint& e) {
  e.setMissing();
  if (!opened || writing || left == 0) return 0;
  float lat = 0.0f, lon = 0.0f;
  if (binary) {
    if (!bytes.readBig(lat) || !bytes.readBig(lon)) return fail("the points of a segment end");
  } else {
    std::string_view line;
    if (!bytes.readLine(line)) return fail("the points of a segment end");
    if (!takeNumber(line, lat) || !takeNumber(line, lon)) return fail("no point");
  }
  --left;
  e = makePlace(lat, lon);
  return 1;
}

int MapKyvFile::readData(EarthPoints& points) {
  points.clear();
  EarthPoint e;
  int result = 0;
  while ((result = readData(e)) > 0) points.add(e);
  return result < 0 ? -1 : 1;
}

int MapKyvFile::writeHeader(const MapFileHeader& header) {
  if (!writing || header.num < 0) return 0;
  const EarthRange& r = header.range;
  if (!binary) {
    out.printf("%4d %9.4f %9.4f %9.4f %9.4f %5d\n", header.num, r.max_lat, r.min_lat, r.max_lon, r.min_lon,
               header.attr);
    return out.isError() ? 0 : 1;
  }
  if (header.num > MAX_COUNTS * MORE) return 0;
  const Swap swap(BIG_ENDIAN_DATA);
  int rest = header.num;
  for (int i = 0; i < MAX_COUNTS; ++i) {
    const int count = std::min<int>(rest, MORE);
    swap.writeInt2(out, std::bit_cast<std::int16_t>(static_cast<std::uint16_t>(count)));
    rest -= count;
    if (count < MORE) break;
  }
  for (const float value : {r.max_lat, r.min_lat, r.max_lon, r.min_lon}) swap.writeFloat(out, value);
  swap.writeInt4(out, header.attr);
  writeName(header);
  return out.isError() ? 0 : 1;
}

// A line for each segment; those before the first name have none.
void MapKyvFile::writeName(const MapFileHeader& header) {
  ++segments;
  if (!namesOut.isOpen()) {
    if (!StrLib::valid(header.name)) return;
    if (!namesOut.open(namesName, "w")) {
      Kyv::outWarning("Map names: unable to write %s\n", namesName.get());
      return;
    }
    for (int i = 1; i < segments; ++i) namesOut.printf("%d -\n", i);
  }
  char word[sizeof header.name];
  StrLib::copy(word, header.name);
  std::replace_if(
      word, word + StrLib::length(word), [](char c) { return BLANKS.find(c) != BLANKS.npos; }, '_');
  namesOut.printf("%d - %s\n", segments, word);
}

int MapKyvFile::writeData(const EarthPoint& e) {
  if (!writing) return 0;
  if (binary) {
    const Swap swap(BIG_ENDIAN_DATA);
    swap.writeFloat(out, e.lat);
    swap.writeFloat(out, e.lon);
  } else {
    out.printf("%8.4f %9.4f\n", e.lat, e.lon);
  }
  return out.isError() ? 0 : 1;
}

int MapKyvFile::print() const {
  std::printf("MapKyvFile - binary: %d\n", binary ? 1 : 0);
  return 1;
}

}  // namespace KYV
