#include "NidsBuilder.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <memory>

namespace {

using Bytes = NidsBuilder::Bytes;

constexpr int DESCRIPTION_HALFWORDS = 60;  // message header and description
constexpr int RADIAL = 0xAF1F;
constexpr int LONGEST_RUN = 15;  // of a nibble

void putHalf(Bytes& to, int v) {
  to.push_back(static_cast<unsigned char>(v >> 8 & 0xFF));
  to.push_back(static_cast<unsigned char>(v & 0xFF));
}

void putWord(Bytes& to, int v) {
  putHalf(to, v >> 16);
  putHalf(to, v);
}

void put(Bytes& to, const Bytes& from) { to.insert(to.end(), from.begin(), from.end()); }

int tenths(float angle) { return static_cast<int>(std::lround(angle * 10.0f)); }

// Runs as nibbles, long ones in several.
Bytes nibbles(const std::vector<NidsBuilder::Run>& runs) {
  Bytes to;
  for (const auto& [run, level] : runs) {
    for (int left = run; left > 0; left -= LONGEST_RUN) {
      to.push_back(static_cast<unsigned char>(std::min(left, LONGEST_RUN) << 4 | (level & 15)));
    }
  }
  return to;
}

Bytes pairs(const std::vector<NidsBuilder::Run>& runs) {
  Bytes to;
  for (const auto& [run, level] : runs) {
    for (int left = run; left > 0; left -= 255) {
      to.push_back(static_cast<unsigned char>(std::min(left, 255)));
      to.push_back(static_cast<unsigned char>(level));
    }
  }
  return to;
}

}  // namespace

NidsBuilder::NidsBuilder() = default;

// Setters.
NidsBuilder& NidsBuilder::header(int code, int source) { return code_ = code, source_ = source, *this; }
NidsBuilder& NidsBuilder::messageTime(int day, int secs) { return day_ = day, secs_ = secs, *this; }
NidsBuilder& NidsBuilder::messageLength(int bytes) { return length_ = bytes, *this; }
NidsBuilder& NidsBuilder::destination(int id) { return destination_ = id, *this; }
NidsBuilder& NidsBuilder::blocks(int n) { return blocks_ = n, *this; }
NidsBuilder& NidsBuilder::divider(int halfword) { return divider_ = halfword, *this; }
NidsBuilder& NidsBuilder::location(float lat, float lon) {
  lat_ = static_cast<int>(std::lround(lat * 1000.0f));
  lon_ = static_cast<int>(std::lround(lon * 1000.0f));
  return *this;
}
NidsBuilder& NidsBuilder::height(int feet) { return feet_ = feet, *this; }
NidsBuilder& NidsBuilder::mode(int m) { return mode_ = m, *this; }
NidsBuilder& NidsBuilder::vcp(int pattern) { return vcp_ = pattern, *this; }
NidsBuilder& NidsBuilder::sequence(int n) { return sequence_ = n, *this; }
NidsBuilder& NidsBuilder::volume(int n) { return volume_ = n, *this; }
NidsBuilder& NidsBuilder::volumeTime(int day, int secs) { return volume_time_ = {day, secs}, *this; }
NidsBuilder& NidsBuilder::generationTime(int day, int secs) { return generation_time_ = {day, secs}, *this; }
NidsBuilder& NidsBuilder::param(int number, int halfword) {
  return param_.at(static_cast<std::size_t>(number - 1)) = halfword, *this;
}
NidsBuilder& NidsBuilder::elevationNumber(int n) { return elevation_ = n, *this; }
NidsBuilder& NidsBuilder::threshold(int i, int halfword) {
  return threshold_.at(static_cast<std::size_t>(i)) = halfword, *this;
}
NidsBuilder& NidsBuilder::thresholds(const std::vector<int>& halfwords) {
  std::copy_n(halfwords.begin(), std::min(halfwords.size(), threshold_.size()), threshold_.begin());
  return *this;
}
NidsBuilder& NidsBuilder::maps(int halfword) { return maps_ = halfword, *this; }
NidsBuilder& NidsBuilder::offsets(std::optional<int> symbology, std::optional<int> graphic,
                                  std::optional<int> tabular) {
  off_symbology_ = symbology;
  off_graphic_ = graphic;
  off_tabular_ = tabular;
  return *this;
}
NidsBuilder& NidsBuilder::heading(Heading h, std::string_view ttaaii) { return heading_ = h, ttaaii_ = ttaaii, *this; }
NidsBuilder& NidsBuilder::body(Body b) { return body_ = b, *this; }
NidsBuilder& NidsBuilder::wrap(Wrap w) { return wrap_ = w, *this; }
NidsBuilder& NidsBuilder::tabular(const Bytes& content) { return tabular_ = content, *this; }

// Packets.
NidsBuilder& NidsBuilder::layer() { return layers_.emplace_back(), in_page_ = false, *this; }
NidsBuilder& NidsBuilder::page() { return pages_.emplace_back(), in_page_ = true, *this; }
NidsBuilder& NidsBuilder::layerLength(int bytes) { return part().length = bytes, *this; }

NidsBuilder::Part& NidsBuilder::part() {
  std::vector<Part>& parts = in_page_ ? pages_ : layers_;
  return parts.empty() ? parts.emplace_back() : parts.back();
}

NidsBuilder::Packet& NidsBuilder::open(int code) {
  Packet& p = part().packets.emplace_back();
  p.code = code;
  return p;
}

// The packet that takes elements of this kind, begun when there is none.
NidsBuilder::Packet& NidsBuilder::element(int code) {
  std::vector<Packet>& packets = part().packets;
  if (!packets.empty() && packets.back().code == code) return packets.back();
  if (code == 16) return digital(0), part().packets.back();
  if (code == RADIAL) return radials(0), part().packets.back();
  return open(code);
}

NidsBuilder& NidsBuilder::radials(int bins, int first) {
  Packet& p = open(RADIAL);
  p.head = {first, bins, 256, 280, 999};
  p.counted = true;
  return *this;
}

NidsBuilder& NidsBuilder::radial(float start, float width, const std::vector<Run>& runs) {
  Packet& p = element(RADIAL);
  Bytes data = nibbles(runs);
  if (data.size() % 2 != 0) data.push_back(0);
  putHalf(p.content, static_cast<int>(data.size() / 2));
  putHalf(p.content, tenths(start));
  putHalf(p.content, tenths(width));
  put(p.content, data);
  int bins = 0;
  for (const Run& r : runs) bins += r.run;
  p.bins = std::max(p.bins, bins);
  p.count++;
  return *this;
}

NidsBuilder& NidsBuilder::digital(int bins, int first) {
  Packet& p = open(16);
  p.head = {first, bins, 0, 0, 999};
  p.counted = true;
  return *this;
}

NidsBuilder& NidsBuilder::digitalRadial(float start, float width, const Bytes& levels) {
  Packet& p = element(16);
  Bytes data = levels;
  if (data.size() % 2 != 0) data.push_back(0);
  putHalf(p.content, static_cast<int>(data.size()));
  putHalf(p.content, tenths(start));
  putHalf(p.content, tenths(width));
  put(p.content, data);
  p.bins = std::max(p.bins, static_cast<int>(levels.size()));
  p.count++;
  return *this;
}

NidsBuilder& NidsBuilder::claim(int radialsOrRows) { return part().packets.back().claimed = radialsOrRows, *this; }

NidsBuilder& NidsBuilder::raster(int code, int packing) {
  Packet& p = open(code);
  p.head = {0x8000, 0x00C0, 1, 1, 1, 0, 1, 0};
  p.tail = {packing};
  p.counted = true;
  return *this;
}

NidsBuilder& NidsBuilder::precip(int boxes) {
  Packet& p = open(17);
  p.head = {0, 0, boxes};
  p.counted = true;
  return *this;
}

NidsBuilder& NidsBuilder::gridRow(const std::vector<Run>& runs) {
  Packet& p = part().packets.back();
  const bool paired = p.code == 17 || p.tail == std::vector<int>{1};
  Bytes data = paired ? pairs(runs) : nibbles(runs);
  if (data.size() % 2 != 0) data.push_back(0);
  putHalf(p.content, static_cast<int>(data.size()));
  put(p.content, data);
  p.count++;
  return *this;
}

NidsBuilder& NidsBuilder::packet(int code, const Bytes& content) {
  Packet& p = open(code);
  p.head = {static_cast<int>(content.size())};
  p.content = content;
  return *this;
}

NidsBuilder& NidsBuilder::raw(const Bytes& content) {
  open(-1).content = content;
  return *this;
}

NidsBuilder& NidsBuilder::text(int code, int value, int i, int j, std::string_view characters) {
  Bytes content;
  if (code == 8) putHalf(content, value);
  putHalf(content, i);
  putHalf(content, j);
  content.insert(content.end(), characters.begin(), characters.end());
  return packet(code, content);
}

NidsBuilder& NidsBuilder::barbs(const std::vector<Barb>& list) {
  Bytes content;
  for (const Barb& b : list) {
    for (int v : {b.level, b.x, b.y, b.dir, b.spd}) putHalf(content, v);
  }
  return packet(4, content);
}

NidsBuilder& NidsBuilder::arrows(const std::vector<Barb>& list) {
  Bytes content;
  for (const Barb& b : list) {
    for (int v : {b.x, b.y, b.dir, b.spd, b.level}) putHalf(content, v);
  }
  return packet(5, content);
}

NidsBuilder& NidsBuilder::vectors(int code, int value, const std::vector<Line>& list) {
  Bytes content;
  if (code == 10) putHalf(content, value);
  for (const Line& line : list) {
    for (int v : {line.x1, line.y1, line.x2, line.y2}) putHalf(content, v);
  }
  return packet(code, content);
}

NidsBuilder& NidsBuilder::linked(int code, int value, const std::vector<Place>& points) {
  Bytes content;
  if (code == 9) putHalf(content, value);
  for (const Place& p : points) {
    putHalf(content, p.x);
    putHalf(content, p.y);
  }
  return packet(code, content);
}

NidsBuilder& NidsBuilder::generic(const std::vector<std::vector<int>>& radials) {
  Bytes xdr;
  const auto word = [&](int v) { putWord(xdr, v); };
  const auto text = [&](std::string_view characters) {
    word(static_cast<int>(characters.size()));
    xdr.insert(xdr.end(), characters.begin(), characters.end());
    xdr.resize((xdr.size() + 3) / 4 * 4);
  };
  const auto real = [&](float v) { word(std::bit_cast<int>(v)); };
  const auto count = [&](std::size_t n) { word(static_cast<int>(n)), word(static_cast<int>(n)); };
  text("Rate");
  text("A product");
  for (int v : {code_, 1, 0}) word(v);
  text("KXXX");
  for (int i = 0; i < 13; i++) word(0);  // place, times, compression, size, number of parameters
  count(1);
  for (int v : {1, 1}) word(v);  // present, radial
  text("Component");
  real(250.0f);
  real(125.0f);
  count(1);  // parameter
  text("id");
  text("value");
  count(radials.size());
  for (std::size_t i = 0; i < radials.size(); i++) {
    real(static_cast<float>(i));
    real(0.0f);
    real(1.0f);
    word(static_cast<int>(radials[i].size()));
    text("type = ushort");
    word(static_cast<int>(radials[i].size()));
    for (int level : radials[i]) word(level);
  }
  Bytes to;
  putHalf(to, 28);
  putHalf(to, 0);
  putWord(to, static_cast<int>(xdr.size()));
  put(to, xdr);
  return raw(to);
}

// Assembly.
Bytes NidsBuilder::encode(const Part& p) {
  Bytes to;
  for (const Packet& k : p.packets) {
    if (k.code < 0) {
      put(to, k.content);
      continue;
    }
    putHalf(to, k.code);
    std::vector<int> head = k.head;
    if ((k.code == RADIAL || k.code == 16) && head[1] == 0) head[1] = k.bins;
    for (int h : head) putHalf(to, h);
    if (k.counted) putHalf(to, k.claimed.value_or(k.count));
    for (int h : k.tail) putHalf(to, h);
    put(to, k.content);
  }
  return to;
}

Bytes NidsBuilder::symbology() const {
  Bytes layers;
  for (const Part& p : layers_) {
    const Bytes content = encode(p);
    putHalf(layers, -1);
    putWord(layers, p.length.value_or(static_cast<int>(content.size())));
    put(layers, content);
  }
  Bytes to;
  putHalf(to, -1);
  putHalf(to, 1);
  putWord(to, static_cast<int>(layers.size()) + 10);
  putHalf(to, static_cast<int>(layers_.size()));
  put(to, layers);
  return to;
}

Bytes NidsBuilder::graphic() const {
  Bytes pages;
  for (std::size_t i = 0; i < pages_.size(); i++) {
    const Bytes content = encode(pages_[i]);
    putHalf(pages, static_cast<int>(i) + 1);
    putHalf(pages, pages_[i].length.value_or(static_cast<int>(content.size())));
    put(pages, content);
  }
  Bytes to;
  putHalf(to, -1);
  putHalf(to, 2);
  putWord(to, static_cast<int>(pages.size()) + 10);
  putHalf(to, static_cast<int>(pages_.size()));
  put(to, pages);
  return to;
}

Bytes NidsBuilder::message() const {
  Bytes blocks;
  int present = 2;
  const auto add = [&](bool has, const Bytes& block) {
    if (!has) return 0;
    const int offset = DESCRIPTION_HALFWORDS + static_cast<int>(blocks.size() / 2);
    put(blocks, block);
    if (blocks.size() % 2 != 0) blocks.push_back(0);
    present++;
    return offset;
  };
  const int off_symbology = add(!layers_.empty(), symbology());
  const int off_graphic = add(!pages_.empty(), graphic());
  const int off_tabular = add(!tabular_.empty(), tabular_);

  Bytes to;
  putHalf(to, code_);
  putHalf(to, day_);
  putWord(to, secs_);
  putWord(to, length_.value_or(2 * DESCRIPTION_HALFWORDS + static_cast<int>(blocks.size())));
  putHalf(to, source_);
  putHalf(to, destination_);
  putHalf(to, blocks_.value_or(present));
  putHalf(to, divider_);
  putWord(to, lat_);
  putWord(to, lon_);
  putHalf(to, feet_);
  putHalf(to, code_);
  putHalf(to, mode_);
  putHalf(to, vcp_);
  putHalf(to, sequence_);
  putHalf(to, volume_);
  for (const auto& time : {volume_time_, generation_time_}) {
    putHalf(to, time ? (*time)[0] : day_);
    putWord(to, time ? (*time)[1] : secs_);
  }
  putHalf(to, param_[0]);
  putHalf(to, param_[1]);
  putHalf(to, elevation_);
  putHalf(to, param_[2]);
  for (int h : threshold_) putHalf(to, h);
  for (std::size_t i = 3; i < param_.size(); i++) putHalf(to, param_[i]);
  putHalf(to, maps_);
  putWord(to, off_symbology_.value_or(off_symbology));
  putWord(to, off_graphic_.value_or(off_graphic));
  putWord(to, off_tabular_.value_or(off_tabular));
  put(to, blocks);
  return to;
}

int NidsBuilder::write(const char* filename) const {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(filename, "wb"), std::fclose);
  if (!file) return 0;
  const Bytes all = bytes();
  return std::fwrite(all.data(), 1, all.size(), file.get()) == all.size() && std::fflush(file.get()) == 0;
}
