// What the symbology block holds besides images: the symbols, tracks and contours of storm products. Every packet but
// three tells its length, so that all of them can be passed over.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <iterator>
#include <span>

#include "KYV/Kyv.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsShape.h"
#include "NidsLimits.h"
#include "NidsRead.h"
#include "NidsSource.h"

namespace KYV {

namespace {

constexpr int BLOCK_HEAD = 10;  // bytes of the head of the symbology block
constexpr int LAYER_HEAD = 6;   // and of a layer
constexpr int MAX_DEPTH = 2;    // packets within packets
constexpr float QUARTER_KM = 0.25f;
constexpr int UNKNOWN = -999;  // a probability beyond the range of the algorithm

using Bytes = std::span<const unsigned char>;

// Halfwords from a cursor on; `good` falls when they end.
class Reader {
 public:
  explicit Reader(Bytes b) : bytes(b) {}

  int half() {
    if (left() < 2) return good = false, 0;
    const int value = std::bit_cast<std::int16_t>(static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]));
    at += 2;
    return value;
  }
  int uhalf() { return half() & 0xFFFF; }
  std::int64_t word() {
    const std::int64_t high = uhalf();
    return high << 16 | uhalf();
  }
  Point point() {
    const int i = half();
    return Point(static_cast<float>(i), static_cast<float>(half()));
  }
  // The next n bytes, as many as there are.
  Bytes take(std::size_t n) {
    const Bytes part = bytes.subspan(at, std::min(n, left()));
    at += part.size();
    return part;
  }
  std::size_t left() const { return bytes.size() - at; }

  bool good = true;

 private:
  Bytes bytes;
  std::size_t at = 0;
};

// Collects the shapes of packets.
class Collector {
 public:
  /// @param most, most_points  how many there may be, of all shapes together
  Collector(std::vector<NidsShape>& out, std::int64_t most, std::int64_t most_points)
      : shapes(out), max_shapes(most), max_points(most_points) {}

  // What was met, one more than there may be at most.
  std::int64_t getSymbols() const { return symbols; }
  std::int64_t getPoints() const { return points; }

  // The packets of a layer or of a packet that holds others.
  void packets(Bytes bytes, NidsShape::Time time, int depth);

 private:
  using Take = void (Collector::*)(Reader& r);
  // How the body of a packet is read, element by element.
  struct Row {
    int code;
    std::size_t element;  // least bytes of an element
    Take take;
  };
  static const Row ROWS[];

  bool isFull() const { return symbols > max_shapes || points > max_points; }
  NidsShape& add(NidsShape::Kind kind) {
    ++symbols;
    NidsShape s;
    s.kind = kind;
    s.packet = packet;
    s.time = when;
    s.level = level;
    shapes.push_back(s);
    return shapes.back();
  }
  NidsShape& at(NidsShape::Kind kind, const Point& p) {
    NidsShape& s = add(kind);
    s.points.add(p);
    return s;
  }
  // Every character is some points of its strokes.
  void copyText(NidsShape& s, Bytes text) {
    const std::size_t n = std::min(text.size(), sizeof s.text - 1);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(n), s.text,
                   [](unsigned char c) { return c >= ' ' && c < 127 ? static_cast<char>(c) : ' '; });
    s.text[n] = '\0';
    points += static_cast<std::int64_t>(n);
  }

  void text(Reader& r) {
    const Point p = r.point();
    copyText(at(NidsShape::TEXT, p), r.take(r.left()));
  }
  void valueText(Reader& r) {
    level = r.half();
    text(r);
  }
  // Characters that stand for positions of a track: past, present and forecast, of storms and of mesocyclones.
  void marks(Reader& r) {
    const Point p = r.point();
    for (const unsigned char c : r.take(r.left())) {
      static constexpr struct {
        char symbol;
        NidsShape::Time time;
      } SYMBOLS[] = {{'!', NidsShape::PAST},
                     {'"', NidsShape::NOW},
                     {'#', NidsShape::FORECAST},
                     {'$', NidsShape::PAST},
                     {'%', NidsShape::FORECAST}};
      const auto row = std::ranges::find(SYMBOLS, static_cast<char>(c), [](const auto& s) { return s.symbol; });
      if (row != std::end(SYMBOLS)) at(NidsShape::MARK, p).time = row->time;
    }
  }
  void meso(Reader& r) {
    NidsShape& s = at(NidsShape::MESO, r.point());
    s.radius = static_cast<float>(r.half()) * QUARTER_KM;
  }
  void tvs(Reader& r) { at(packet == 26 ? NidsShape::ETVS : NidsShape::TVS, r.point()); }
  void oldHail(Reader& r) {
    NidsShape& s = at(NidsShape::HAIL, r.point());
    s.poh = packet == 13 ? 100.0f : 50.0f;
  }
  void cell(Reader& r) {
    const Point p = r.point();
    copyText(at(NidsShape::CELL, p), r.take(2));
  }
  void hail(Reader& r) {
    const Point p = r.point();
    const int poh = r.half(), posh = r.half(), size = r.half();
    NidsShape& s = at(NidsShape::HAIL, p);
    if (poh != UNKNOWN) s.poh = static_cast<float>(poh);
    if (posh != UNKNOWN) s.posh = static_cast<float>(posh);
    s.size = static_cast<float>(size);
  }
  void feature(Reader& r) {
    static constexpr NidsShape::Kind KINDS[] = {NidsShape::MARK, NidsShape::MESO, NidsShape::MESO, NidsShape::TVS,
                                                NidsShape::TVS,  NidsShape::ETVS, NidsShape::ETVS, NidsShape::HAIL,
                                                NidsShape::HAIL, NidsShape::MESO, NidsShape::MESO, NidsShape::MESO};
    const Point p = r.point();
    const int type = r.half(), attribute = r.half();
    const bool known = type > 0 && type < static_cast<int>(std::size(KINDS));
    NidsShape& s = at(KINDS[known ? type : 0], p);
    s.type = type;
    if (s.kind == NidsShape::MESO) s.radius = static_cast<float>(attribute) * QUARTER_KM;
    if (s.kind == NidsShape::HAIL) s.poh = type == 7 ? 100.0f : 50.0f;
  }
  void circle(Reader& r) {
    NidsShape& s = at(NidsShape::CIRCLE, r.point());
    s.radius = static_cast<float>(r.half()) * QUARTER_KM;
  }
  void line(Reader& r) {
    NidsShape& s = add(NidsShape::LINE);
    linePoints(s, r);
  }
  void linePoints(NidsShape& s, Reader& r) {
    for (; r.left() >= 4 && !isFull(); ++points) s.points.add(r.point());
  }
  void valueLine(Reader& r) {
    level = r.half();
    line(r);
  }
  void pieces(Reader& r) {
    NidsShape& s = add(NidsShape::LINE);
    s.points.add(r.point());
    s.points.add(r.point());
  }

  std::vector<NidsShape>& shapes;
  std::int64_t max_shapes, max_points;
  std::int64_t symbols = 0, points = 0;
  int packet = 0;
  int level = 0;
  int contour = 0;  // level of the contours that follow
  NidsShape::Time when = NidsShape::NOW;
};

// Packets that tell no length: images, behind which nothing can be found.
constexpr int IMAGES[] = {16, 17, 0xAF1F, 0xBA07, 0xBA0F};
constexpr int PAST_DATA = 23, FORECAST_DATA = 24;
constexpr int CONTOUR_COLOR = 0x0802, CONTOUR = 0x0E03, CONTOUR_PIECES = 0x3501;

const Collector::Row Collector::ROWS[] = {
    {1, 4, &Collector::text},      {2, 4, &Collector::marks},
    {3, 6, &Collector::meso},      {6, 8, &Collector::line},
    {8, 6, &Collector::valueText}, {9, 10, &Collector::valueLine},
    {11, 6, &Collector::meso},     {12, 4, &Collector::tvs},
    {13, 4, &Collector::oldHail},  {14, 4, &Collector::oldHail},
    {15, 6, &Collector::cell},     {19, 10, &Collector::hail},
    {20, 8, &Collector::feature},  {25, 6, &Collector::circle},
    {26, 4, &Collector::tvs},      {CONTOUR_PIECES, 8, &Collector::pieces},
};

void Collector::packets(Bytes bytes, NidsShape::Time time, int depth) {
  Reader r(bytes);
  while (r.left() >= 4 && !isFull()) {
    packet = r.uhalf();
    level = 0;
    when = time;
    if (packet == CONTOUR_COLOR) {
      if (r.uhalf() == 0x0002) contour = r.half();
      continue;
    }
    if (packet == CONTOUR) {
      r.half();  // tells that a start point follows
      const Point start = r.point();
      Reader rest(r.take(static_cast<std::size_t>(r.uhalf())));
      level = contour;
      NidsShape& s = add(NidsShape::LINE);
      s.points.add(start);
      linePoints(s, rest);
      continue;
    }
    if (std::ranges::find(IMAGES, packet) != std::end(IMAGES)) return;
    Reader body(r.take(static_cast<std::size_t>(r.uhalf())));
    if (packet == PAST_DATA || packet == FORECAST_DATA) {
      if (depth < MAX_DEPTH) {
        packets(body.take(body.left()), packet == PAST_DATA ? NidsShape::PAST : NidsShape::FORECAST, depth + 1);
      }
      continue;
    }
    const Row* row = std::ranges::find(ROWS, packet, &Row::code);
    if (row == std::end(ROWS)) continue;
    while (body.left() >= row->element && !isFull()) (this->*row->take)(body);
  }
}

}  // namespace

int NidsFile::readShapes(std::vector<NidsShape>& shapes) {
  shapes.clear();
  if (!opened || !file->seek(0) || !messHeader() || readDescription() != 1) return 0;
  // The block is looked for by its offset.
  const int start = std::clamp(off_symb, 0, MAX_BODY / 2) * 2;
  if (off_symb == 0 || total > start) return 0;
  if (readBytes(nullptr, start - total) != 1) return -1;
  short divider = 0, id = 0, layers = 0;
  int length = 0;
  if (!readFields(*this, divider, id, length, layers) || divider != -1 || id != 1) return 0;
  // As many bytes as the block claims and the file has.
  std::vector<unsigned char> block;
  for (int left = std::clamp(length, BLOCK_HEAD, MAX_BODY) - BLOCK_HEAD; left > 0;) {
    unsigned char piece[4096];
    const int n = std::min<int>(left, sizeof piece);
    const int got = deliver(piece, n);
    if (got <= 0) break;
    block.insert(block.end(), piece, piece + got);
    left -= got;
  }
  Collector collector(shapes, getShare(SYMBOLS), getShare(POINTS));
  Reader r(block);
  for (int i = 0; i < layers && r.left() >= LAYER_HEAD; ++i) {
    if (r.half() != -1) break;
    collector.packets(r.take(static_cast<std::size_t>(r.word())), NidsShape::NOW, 0);
  }
  spend(SYMBOLS, collector.getSymbols());
  spend(POINTS, collector.getPoints());
  return static_cast<int>(shapes.size());
}

}  // namespace KYV
