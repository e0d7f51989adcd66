#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "KYV/Const.h"
#include "KYV/Domain.h"
#include "KYV/Kyv.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "NidsLimits.h"
#include "NidsRead.h"
#include "NidsSource.h"
#include "ProductTable.h"

namespace KYV {

namespace {

constexpr float FEET = 0.3048f;  // international foot in metres; heights are sent in feet
constexpr float KNOTS = 1.944f;  // metres per second to knots
constexpr float THOUSANDTHS = 1000.0f;
constexpr int DAY = 86400;                                    // seconds
constexpr std::int64_t FIRST_SCAN = std::int64_t{365} * DAY;  // within 1970 there was no radar of this kind
constexpr int CONTROL_BLOCK = 24;                             // bytes of the block 40 0C in front of a heading
constexpr int EMBEDDED_REST = 52;  // control block and heading repeated inside zlib data, less the code's two bytes
constexpr int HEADING_PEEK = 80;   // a heading's line is shorter
constexpr float UNIT_KM = 100.0f;  // plot units

bool isLetter(unsigned char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool isDigit(unsigned char c) { return c >= '0' && c <= '9'; }
bool isPrintable(unsigned char c) { return c >= 0x20 && c < 0x7F; }

// Days count from 1 = 1 January 1970.
std::int64_t seconds(int day, int secs) { return (static_cast<std::int64_t>(day) - 1) * DAY + secs; }

// A halfword that stands for one data level.
float dataLevel(int i, int h) {
  constexpr float MISSING = -100.0f;
  constexpr float SPECIAL = -90.0f;
  const int low = h & 0xFF;
  float v = static_cast<float>(low);
  if (h & 0x8000) {
    Kyv::outDebug(3, "THRES: %d MISS-%2X\n", i, static_cast<unsigned>(low));
    v = (h & 3) == 0 ? MISSING : SPECIAL;
  }
  const bool scaled = v != MISSING;
  if (h & 0x2000) {
    Kyv::outDebug(3, "THRES: %d - %d/20\n", i, low);
    if (scaled) v /= 20.0f;
  }
  if (h & 0x1000) {
    Kyv::outDebug(3, "THRES: %d - %d/10\n", i, low);
    if (scaled) v /= 10.0f;
  }
  if (h & 0x0800) {
    Kyv::outDebug(3, "THRES: %d - >%d\n", i, low);
    if (scaled) v += 0.01f;
  }
  if (h & 0x0400) {
    Kyv::outDebug(3, "THRES: %d - <%d\n", i, low);
    if (scaled) v -= 0.01f;
  }
  return (h & 0x0100) && scaled ? -v : v;
}

}  // namespace

float NidsFile::float16(int h) {
  const int exponent = h >> 10 & 0x1F;
  const float fraction = static_cast<float>(h & 0x3FF) / 1024.0f;
  const float magnitude = exponent != 0 ? std::ldexp(1.0f + fraction, exponent - 16) : 2.0f * fraction;
  return h & 0x8000 ? -magnitude : magnitude;
}

float NidsFile::float32(int hi, int lo) {
  return std::bit_cast<float>(static_cast<std::uint32_t>(hi) << 16 ^ (static_cast<std::uint32_t>(lo) & 0xFFFFu));
}

// Skips what stands in front of the message. 1; 0 when there is nothing in front and the message code comes next; -1
// when the file ends.
int NidsFile::skipHeading() {
  std::array<unsigned char, HEADING_PEEK> head{};
  const auto peek = [&] {
    const std::int64_t here = file->tell();
    head.fill(0);
    const int n = file->read(head.data(), HEADING_PEEK);
    file->seek(here);
    return n;
  };
  const auto starts = [&](int a, int b) { return head[0] == a && head[1] == b; };
  // A further line of the heading, as against the message, whose first byte is 0.
  const auto isTextLine = [&] {
    peek();
    const auto end =
        std::find_if(head.begin(), head.end(), [](unsigned char c) { return !isPrintable(c) && c != '\r'; });
    return end != head.end() && *end == '\n';
  };

  if (peek() < 1) return -1;
  int lines = 2;
  if (starts(0x01, 0x0D)) {
    lines = 4;  // broadcast frame: its start, a sequence number, the heading
    framed = true;
  } else if (starts(0x40, 0x0C)) {
    // Control block: binary, its bytes may look like line ends.
    if (std::all_of(&head[CONTROL_BLOCK], &head[CONTROL_BLOCK + 4], isLetter)) file->seek(file->tell() + CONTROL_BLOCK);
  } else if (starts(0x78, 0xDA)) {
    lines = 0;  // a zlib stream, which has its heading inside
  } else if (isLetter(head[0]) && isLetter(head[1])) {
    if (skipLine() != 1) return -1;
    lines = isTextLine() ? 1 : 0;
  } else if (!starts('*', '*')) {
    return 0;
  }
  for (; lines > 0; lines--) {
    if (skipLine() != 1) return -1;
  }
  return 1;
}

int NidsFile::messHeader() {
  if (!opened) return 0;
  const int heading = skipHeading();
  if (heading < 0) return 0;
  short halfword = 0;
  bytes = total = 0;
  body_start = true;
  if (heading == 0) {
    unsigned char b[2] = {};
    message_start = file->tell();
    if (file->read(b, 2) < 1) return 0;
    halfword = static_cast<short>(b[0] << 8 | b[1]);
    bytes = total = 2;  // offsets count from the code
    body_start = first_segment = false;
  } else {
    if (readShort(halfword) != 1) return 0;
    if (seg_type == 1) {
      Kyv::outDebug(4, "Reading in embedded WMO header\n");
      readBytes(nullptr, EMBEDDED_REST);
      bytes = total = 0;
      if (readShort(halfword) != 1) return 0;
    }
    message_start = file->tell() - raw.getAvail() - in.getAvail() - total;
  }
  code = halfword;

  short day = 0;
  int time = 0;
  short source = 0;
  short destination = 0;
  short blocks = 0;
  if (!readFields(*this, day, time, mess_len, source, destination, blocks)) return 0;
  mess_date = seconds(day, time);
  src = source;
  mess_blks = blocks;
  Kyv::outDebug(3, "Code: %d\n", code);
  Kyv::outDebug(3, "Date: %d\n", toSeconds(mess_date));
  Kyv::outDebug(3, "Length: %d\n", mess_len);
  Kyv::outDebug(3, "Source: %d\n", src);
  Kyv::outDebug(3, "Number of blocks : %d\n", mess_blks);
  return 1;
}

int NidsFile::prodDesc() { return opened && readDescription() == 1; }

// 1; 0 when the divider is wrong, and nothing after it was read; -1 when the data ends first.
int NidsFile::readDescription() {
  Kyv::outDebug(1, "Product Description\n");
  short divider = 0;
  if (readShort(divider) != 1) return -1;
  if (divider != DIVIDER) return 0;

  int lati = 0;
  int longi = 0;
  int vol_time = 0;
  int prod_time = 0;
  short height = 0;
  short product = 0;
  short oper = 0;
  short pattern = 0;
  short sequence = 0;
  short volume = 0;
  short vol_day = 0;
  short prod_day = 0;
  short elevation = 0;
  short maps = 0;
  std::array<short, 10> params{};
  if (!readFields(*this, lati, longi, height, product, oper, pattern, sequence, volume, vol_day, vol_time, prod_day,
                  prod_time, params[0], params[1], elevation, params[2])) {
    return -1;
  }
  for (int i = 0; i < 16; i++) {
    short h = 0;
    if (readShort(h) != 1) return -1;
    ithres[i] = h;
    thres[i] = 0.0f;
    Kyv::outDebug(3, "THRES #%d: %4.4X\n", i, static_cast<unsigned>(h) & 0xFFFFu);
  }
  for (std::size_t i = 3; i < params.size(); i++) {
    if (readShort(params[i]) != 1) return -1;
  }
  if (!readFields(*this, maps, off_symb, off_graph, off_tab)) return -1;

  lat = static_cast<float>(lati) / THOUSANDTHS;
  lon = static_cast<float>(longi) / THOUSANDTHS;
  elev = static_cast<float>(height) * FEET;
  mode = oper;
  vcp = pattern;
  seq = sequence;
  vol_scan = volume;
  vol_date = seconds(vol_day, vol_time);
  prod_date = seconds(prod_day, prod_time);
  scan_num = elevation;
  nmaps = maps;
  std::copy(params.begin(), params.end(), param);
  body_start = true;
  decodeThresholds();
  if (Kyv::checkMessage(8)) printDescription();
  return 1;
}

void NidsFile::decodeThresholds() {
  const auto scale = [this](float by) {
    for (int i = 0; i < 2; i++) thres[i] = static_cast<float>(ithres[i]) / by;
    thres[2] = static_cast<float>(ithres[2]);
  };
  const Levels levels = findProduct(code).levels;
  switch (levels) {
    case Levels::Vil:
      for (int i : {0, 1, 3, 4}) thres[i] = float16(ithres[i]);
      thres[2] = static_cast<float>(ithres[2]);
      Kyv::outDebug(3, "THRES: %.1f %.1f - %.0f - %.1f %.1f \n", thres[0], thres[1], thres[2], thres[3], thres[4]);
      break;
    case Levels::Tops:
      for (int i = 0; i < 4; i++) thres[i] = static_cast<float>(ithres[i]);
      Kyv::outDebug(3, "THRES: Mask: %X - %.0f %.0f - %X\n", static_cast<unsigned>(ithres[0]), thres[1], thres[2],
                    static_cast<unsigned>(ithres[3]));
      break;
    case Levels::FloatPair:
      thres[0] = float32(ithres[0], ithres[1]);
      if (thres[0] == 0.0f) thres[0] = 1.0f;
      thres[2] = float32(ithres[2], ithres[3]);
      Kyv::outDebug(3, "THRES: %f %f\n", thres[0], thres[2]);
      break;
    case Levels::Tenths:
    case Levels::Knots:
    case Levels::Thousandths:
    case Levels::Hundredths:
      scale(levels == Levels::Thousandths ? 1000.0f : levels == Levels::Hundredths ? 100.0f : 10.0f);
      if (levels == Levels::Knots) {
        for (int i = 0; i < 2; i++) thres[i] *= KNOTS;
      }
      Kyv::outDebug(3, "THRES: %.1f %.1f %.0f\n", thres[0], thres[1], thres[2]);
      break;
    case Levels::Coded:
    case Levels::Fixed:
      for (int i = 0; i < 16; i++) thres[i] = dataLevel(i, ithres[i]);
      break;
  }
  if (levels == Levels::Fixed) {
    // The long-range reflectivity of terminal radars, whatever its halfwords hold.
    thres[0] = -32.0f;
    thres[1] = 0.5f;
    thres[2] = 256.0f;
  }
}

void NidsFile::printDescription() const {
  Kyv::outMessage(8, "Latitude: %.3f\n", lat);
  Kyv::outMessage(8, "Longitude: %.3f\n", lon);
  Kyv::outMessage(8, "Height: %.0f\n", elev);
  Kyv::outMessage(8, "Operational Mode: %d\n", mode);
  Kyv::outMessage(8, "Volume Scan Number: %d\n", vol_scan);
  Kyv::outMessage(8, "Volume Scan Date: %d\n", toSeconds(vol_date));
  Kyv::outMessage(8, "Volume Coverage Pattern: %d\n", vcp);
  Kyv::outMessage(8, "Volume Sequence Number: %d\n", seq);
  Kyv::outMessage(8, "Product Generation date: %d\n", toSeconds(prod_date));
  Kyv::outMessage(8, "Scan Number: %d\n", scan_num);
  for (int i = 0; i < 16; i++) Kyv::outMessage(8, "Threshold[%d]: %d %f\n", i + 1, ithres[i], thres[i]);
  for (int i = 0; i < 10; i++) Kyv::outMessage(8, "Param[%d]: %d\n", i, param[i]);
  Kyv::outMessage(8, "Number of Maps: %d\n", nmaps);
  Kyv::outMessage(8, "Offset to Symbolics: %d\n", off_symb);
  Kyv::outMessage(8, "Offset to Graphics: %d\n", off_graph);
  Kyv::outMessage(8, "Offset to Tabular: %d\n", off_tab);
}

// Seconds since 1970 as an int field; missing when they do not fit.
int NidsFile::toSeconds(std::int64_t secs) {
  return secs >= INT_MIN && secs <= INT_MAX ? static_cast<int>(secs) : Const::MISS;
}

// Names a message that is no radar product; 1 when it did.
int NidsFile::reportOther() {
  const char* what = findOtherMessage(code);
  if (!what) {
    // Text right behind a WMO heading: "NOUS63 KABR 281331".
    std::array<unsigned char, 7> head{};
    file->seek(0);
    file->read(head.data(), static_cast<int>(head.size()));
    const bool heading =
        std::all_of(head.begin(), head.begin() + 4, isLetter) && isDigit(head[4]) && isDigit(head[5]) && head[6] == ' ';
    const bool text = code > MAX_CODE && isPrintable(static_cast<unsigned char>(code >> 8)) &&
                      isPrintable(static_cast<unsigned char>(code & 0xFF));
    if (heading && text) what = "a free text message";
  }
  if (!what) return 0;
  warn("%s is %s, not a radar product\n", file->getName(), what);
  return 1;
}

int NidsFile::readHeader(NidsInfo& info) {
  if (!opened) return 0;
  file->seek(0);
  if (!messHeader()) {
    warn(data_type == ENCRYPTED ? "%s is encrypted and cannot be read\n" : "%s is no NIDS product\n", file->getName());
    return 0;
  }
  const std::int64_t here = file->tell();
  if (reportOther()) return 0;
  file->seek(here);
  const int described = readDescription();
  // With a wrong divider the rest is read as it comes, as long as it can be a product at all.
  if (code <= 0 || (described != 1 && code > MAX_CODE)) {
    warn("%s is no NIDS product\n", file->getName());
    return 0;
  }
  if (described < 0) {
    warn("%s is cut off within its header\n", file->getName());
    return 0;
  }
  findPackets();

  info.src = src;
  info.mode = mode;
  info.code = code;
  info.vcp = vcp;
  info.seq = seq;
  info.type = pk_code;
  info.alt = elev;
  setGeometry();
  if (Kyv::isDebug(2)) dom.print();
  info.lat = lat;
  info.lon = lon;
  info.nx = nx;
  info.ny = ny;
  setExtremes();
  info.res = res;
  info.cres = dom.dx;
  info.elev = scan_elev;
  info.max = max;
  info.nmax = nmax;
  std::copy(std::begin(thres), std::end(thres), info.thres);
  setInfo(info.info);
  setMisc(info.misc);
  if (vol_date < FIRST_SCAN && prod_date >= FIRST_SCAN) {
    warn("%s: the date of its scan cannot be, that of its generation is shown\n", file->getName());
    vol_date = prod_date;
  }
  date.set(static_cast<long>(vol_date));
  info.date = date;
  info.prod_date = toSeconds(prod_date);
  info.mess_date = toSeconds(mess_date);
  return 1;
}

// Leads to the first packet of the first symbology layer.
void NidsFile::findPackets() {
  pk_code = 0;
  // Without symbology block the graphic block may follow, and is read from its divider on.
  if (off_symb == 0 && off_graph > 0 && total >= static_cast<std::int64_t>(off_graph) * 2) {
    layer_done = true;
    return;
  }
  // A product without symbology block may go on with other blocks, whose bytes are no packets.
  if (!symbologyBlock(off_symb != 0) && off_symb == 0) {
    layer_done = true;
    return;
  }
  prodSymbLayer();
  readPacket();
  if (data_type == ENCRYPTED) warn("%s is encrypted and cannot be read\n", file->getName());
}

void NidsFile::setGeometry() {
  const Product& product = findProduct(code);
  const bool mosaic = src >= NidsInfo::MULTI_RADAR;
  const bool profile = product.family & VAD;
  dom.init();
  dom.proj = mosaic ? DomainVal::LAMB : DomainVal::PSTEREO;
  dom.clat = lat;
  dom.clon = lon;
  res = product.res;
  range = product.range;
  if (mosaic && !profile) {
    res = findMosaicRes(code);
    range = 0.0f;
  }
  dom.dx = dom.dy = res > 0.0f ? res : 1.0f;

  int n = 460;
  if (isPacketRastor() || isPacketDpa()) {
    n = nrow;
  } else if (isPacketRadial()) {
    n = 2 * nbin;
  } else if (profile) {
    n = 512;
  }
  nx = ny = n;
  if (mosaic) nx = std::clamp(param[9], 0, MAX_GRID);
  dom.nx = nx;
  dom.ny = ny;

  if (profile) {
    dom.proj = DomainVal::PIXEL;
    const int middle_row = (ny - 1) / 2;
    const int middle_column = (nx - 1) / 2;
    dom.clat = static_cast<float>(middle_row);
    dom.clon = static_cast<float>(middle_column);
  } else if (product.family & DPA) {
    // The national grid, whose spacing is already in plot units.
    dom.proj = DomainVal::PSTEREO;
    dom.plat = 90.0f;
    dom.plon = -105.0f;
    dom.dx = dom.dy = product.res;
  } else if (!mosaic) {
    dom.plat = lat;
    dom.plon = lon;
    dom.nx = dom.ny = n + 1;
    const float factor = Domain(dom).getMapFactor(EarthPoint(lat, lon));
    if (factor > 0.0f) dom.dx = dom.dy = dom.dx * factor / UNIT_KM;
  } else {
    dom.plat = 90.0f;
    dom.plon = -98.0f;
    dom.param[0] = 33.0f;
    dom.param[1] = 45.0f;
    dom.param[2] = 63.9f;
    dom.dx /= UNIT_KM;
    dom.dy /= UNIT_KM;
  }
}

void NidsFile::setExtremes() {
  const std::uint32_t family = findProduct(code).family;
  const Extremes& extremes = findExtremes(family);
  const auto value = [&](int i) { return i < 0 ? 0.0f : static_cast<float>(param[i]) * extremes.times / extremes.by; };
  scan_elev = family & (BREF | BSW | VEL | SRVEL | DREF | ANGLE) ? static_cast<float>(param[2]) / 10.0f : 0.0f;
  nmax = value(extremes.low);
  max = value(extremes.high);
}

}  // namespace KYV
