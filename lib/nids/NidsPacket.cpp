#include <algorithm>

#include "KYV/Kyv.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsRadial.h"
#include "NidsLimits.h"
#include "NidsRead.h"
#include "NidsSource.h"
#include "PacketTable.h"

namespace KYV {

namespace {

constexpr int DIVIDER_CODE = 0xFFFF;  // a divider where a packet code was looked for
constexpr int SYMBOLOGY_BLOCK = 1;
constexpr int GRAPHIC_BLOCK = 2;
constexpr int LAYER_START = 16;  // bytes of a symbology block up to its first layer's data

}  // namespace

int NidsFile::prodSymb() { return symbologyBlock(true); }

// @param asked  whether the product says that it has this block
int NidsFile::symbologyBlock(bool asked) {
  Kyv::outDebug(1, "Product Symbology\n");
  if (!opened) return 0;
  short divider = 0;
  if (readShort(divider) != 1 || divider != DIVIDER) {
    if (asked && data_type != ENCRYPTED) warn("No divider in symbology block\n");
    return 0;
  }
  short id = 0;
  short layers = 0;
  if (readShort(id) != 1 || id != SYMBOLOGY_BLOCK) return 0;
  if (!readFields(*this, prodsym_len, layers)) return 0;
  prodsym_lyr = layers;
  return 1;
}

int NidsFile::prodSymbLayer() {
  Kyv::outDebug(1, "Product Symbology Layer\n");
  layer_end = 0;
  layer_done = false;
  short divider = 0;
  if (!opened || readShort(divider) != 1 || divider != DIVIDER) return 0;
  if (readLong(prodsym_lyr_len) != 1) return 0;
  Kyv::outDebug(4, "Length: %d\n", prodsym_lyr_len);
  const bool plausible =
      prodsym_lyr_len > 0 && prodsym_lyr_len <= MAX_BODY - total && prodsym_lyr_len + LAYER_START <= prodsym_len;
  layer_end = plausible ? total + prodsym_lyr_len : 0;
  return 1;
}

// Passes over what the caller left of the current packet.
int NidsFile::skipRest() {
  NidsRadial radial;
  const NidsPacket* packet = findPacket(pk_code);
  if (!packet) return 1;
  switch (packet->layout) {
    case Layout::Radial:
      while (rad < nrad) {
        const int stat = readRadial(radial);
        if (stat < 0) return stat;
      }
      break;
    case Layout::Precip:
    case Layout::Raster:
      while (row < nrow) {
        const int stat = readRastor();
        if (stat < 0) return stat;
      }
      break;
    default:
      break;
  }
  const int rest = len - num;
  len = num = 0;
  text_pending = false;
  return readBytes(nullptr, nbytes > 0 ? std::min(rest, nbytes - bytes) : rest);
}

// A count that the file claims, kept within what a product can have.
int NidsFile::clampCount(int count, int limit) {
  clamped = clamped || count > limit;
  return std::min(count, limit);
}

int NidsFile::readPacket() {
  if (!opened || excess != NUM_SHARE) return 0;
  Kyv::outDebug(3, "Packets\n");
  if (skipRest() < 0) return -1;
  if (layer_done || (nbytes > 0 && bytes >= nbytes)) return 0;
  const bool past = nbytes == 0 && layer_end > 0 && total >= layer_end;
  unsigned short packet_code = 0;
  if (readUshort(packet_code) != 1) {
    pk_code = 0;
    return -1;
  }
  pk_code = packet_code;
  Kyv::outDebug(3, "Packet Code: %d %X\n", pk_code, static_cast<unsigned>(pk_code));
  const NidsPacket* packet = past ? nullptr : findPacket(pk_code);
  if (!packet) {
    // What follows a packet of unknown length, or the layer, cannot be read as packets of this layer.
    layer_done = true;
    if (past && pk_code != DIVIDER_CODE) pk_code = 0;
    return 0;
  }
  Kyv::outDebug(3, "%s", packet->name);
  ++packets;
  len = num = val = 0;
  row = col = rad = nrad = nrow = 0;
  return readPacketHead(*packet) ? pk_code : -1;
}

int NidsFile::readPacketHead(const NidsPacket& packet) {
  unsigned short length = 0;
  short value = 0;
  short i = 0;
  short j = 0;
  short spare = 0;
  unsigned short n = 0;
  unsigned short bins = 0;
  switch (packet.layout) {
    case Layout::Text:
    case Layout::ValueText: {
      const bool valued = packet.layout == Layout::ValueText;
      if (!readFields(*this, length) || (valued && !readFields(*this, value)) || !readFields(*this, i, j)) return 0;
      len = std::max(length - (valued ? 6 : 4), 0);
      val = value;
      col = i;
      row = j;
      text_pending = true;
      Kyv::outDebug(3, "Number of bytes: %d\n", length);
      Kyv::outDebug(3, "Value: %d\n", val);
      Kyv::outDebug(3, "I: %d\n", col);
      Kyv::outDebug(3, "J: %d\n", row);
      break;
    }
    case Layout::Length:
      if (!readFields(*this, length)) return 0;
      len = length;
      Kyv::outDebug(3, "Number of bytes: %d\n", length);
      break;
    case Layout::ValueLength:
      if (!readFields(*this, length, value)) return 0;
      len = std::max(length - 2, 0);
      val = value;
      Kyv::outDebug(3, "Number of bytes: %d\n", length);
      Kyv::outDebug(3, "Value: %d\n", val);
      break;
    case Layout::Radial: {
      unsigned short first = 0;
      if (!readFields(*this, first, bins, i, j, spare, n)) return 0;
      bin0 = first;
      nbin = clampCount(bins, MAX_BINS);
      nrad = n;
      Kyv::outDebug(3, "Index of first range bin: %d\n", bin0);
      Kyv::outDebug(3, "Number of range bins: %d\n", nbin);
      Kyv::outDebug(3, "Number of radials: %d\n", nrad);
      break;
    }
    case Layout::Precip:
      if (!readFields(*this, spare, spare, bins, n)) return 0;
      ncol = bins;
      nrow = clampCount(n, MAX_GRID);
      Kyv::outDebug(3, "Number of LFM boxes in row: %d\n", ncol);
      break;
    case Layout::Raster: {
      short packing = 0;
      if (!readFields(*this, spare, spare, i, j, spare, spare, spare, spare, n, packing)) return 0;
      pk_code = RASTOR;
      col0 = i;
      row0 = j;
      nrow = clampCount(n, MAX_GRID);
      pack = packing;
      Kyv::outDebug(3, "I coordinate start: %d\n", col0);
      Kyv::outDebug(3, "J coordinate start: %d\n", row0);
      Kyv::outDebug(3, "Number of rows: %d\n", nrow);
      Kyv::outDebug(3, "Packing: %d\n", pack);
      break;
    }
  }
  return 1;
}

int NidsFile::gotoGraphic() {
  if (!opened || nbytes > 0) return 1;
  const int to = std::clamp(off_graph, 0, MAX_BODY / 2) * 2;
  if (to > total) {
    readBytes(nullptr, to - total);
    pk_code = 0;
    len = num = nrad = nrow = 0;
  }
  return 1;
}

// The head of the graphic block from its ID on, or from its divider on.
int NidsFile::graphicHead(bool divided) {
  short divider = DIVIDER;
  short id = 0;
  short pages = 0;
  if ((!divided && readShort(divider) != 1) || divider != DIVIDER || readShort(id) != 1 || id != GRAPHIC_BLOCK)
    return 0;
  int length = 0;
  if (!readFields(*this, length, pages)) return 0;
  len = length;
  num_graph = std::min<int>(pages, MAX_PAGES);
  Kyv::outDebug(3, "Length: %d\n", len);
  Kyv::outDebug(3, "Number of Pages: %d\n", num_graph);
  // The packets of the symbology block are behind; a page's first packet begins anew.
  len = num = 0;
  pk_code = 0;
  layer_done = false;
  layer_end = 0;
  return 1;
}

int NidsFile::graphic() {
  if (!opened || off_symb == 0) return 0;
  Kyv::outDebug(1, "Graphic Alphanumeric\n");
  const bool divided = pk_code == DIVIDER_CODE;
  if (divided && graphicHead(true)) return 1;
  // Packets that end the caller's loop, or further layers, may lie between here and the block.
  const bool ahead = nbytes == 0 && off_graph > 0 && off_graph <= MAX_BODY / 2 && total < off_graph * 2;
  if (divided && !ahead) return 0;
  gotoGraphic();
  return graphicHead(false);
}

int NidsFile::findGraphic() {
  if (off_symb != 0) return graphic();
  if (!opened || off_graph <= 0) return 0;
  gotoGraphic();
  return graphicHead(false);
}

int NidsFile::nextPacket() {
  for (;;) {
    const int stat = readPacket();
    if (stat != 0 || nbytes == 0 || bytes >= nbytes) return stat;
    layer_done = false;
    pk_code = 0;
    unsigned short length = 0;
    if (readUshort(length) != 1 || readBytes(nullptr, std::min<int>(length, nbytes - bytes)) != 1) return -1;
  }
}

int NidsFile::graphicLayer() {
  if (!opened || off_graph == 0 || excess != NUM_SHARE) return 0;
  Kyv::outDebug(2, "Graphic Alphanumeric Layer\n");
  if (nbytes > bytes) readBytes(nullptr, nbytes - bytes);  // what the caller left of the last page
  nbytes = 0;
  pk_code = len = num = 0;
  layer_done = false;
  short page = 0;
  if (readShort(page) != 1 || page < 1 || page > num_graph) return 0;
  unsigned short length = 0;
  if (readUshort(length) != 1) return 0;
  nbytes = length;
  bytes = 0;
  Kyv::outDebug(3, "Number: %d\n", page);
  Kyv::outDebug(3, "Length: %d\n", nbytes);
  return page;
}

}  // namespace KYV
