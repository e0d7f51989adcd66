#include "KYV/NidsFile.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <iterator>
#include <span>

#include "KYV/Kyv.h"
#include "NidsLimits.h"
#include "NidsSource.h"
#include "Signature.h"

namespace KYV {

namespace {

// Buffer sizes, bytes: a zlib stream of the feed holds at most 4000.
constexpr int SEGMENT = 4000;
constexpr int BZIP2_OUTPUT = 100000;
constexpr const char* TRAILER = "\r\r\n\003";  // end of a message in a broadcast frame
constexpr int TRAILER_LENGTH = 4;
constexpr int MAX_WARNING = 1000;      // characters
constexpr int MAX_LINE = 4096;         // of a heading
constexpr int MAX_EMPTY_STREAMS = 16;  // zlib streams without content, one after another
enum SegmentType { PLAIN_SEGMENT = 0, ZLIB_SEGMENT = 1 };

}  // namespace

NidsFile::NidsFile() : file(std::make_unique<NidsSource>()) { init(); }

NidsFile::NidsFile(const char* name) : NidsFile() { (void)open(name); }

NidsFile::~NidsFile() = default;

int NidsFile::init() {
  opened = false;
  data_type = PLAIN;
  seg_type = PLAIN_SEGMENT;
  bytes = nbytes = 0;
  total = 0;
  body_start = true;
  first_segment = true;
  stream_open = false;
  damaged = kept_quiet = false;
  pk_code = 0;
  layer_end = 0;
  layer_done = false;
  unpacking = framed = image_rows = false;
  message_start = 0;
  packets = image_got = image_wanted = 0;
  bad_angle = Const::MISS;
  std::fill(std::begin(spent), std::end(spent), 0);
  excess = NUM_SHARE;
  clamped = false;
  raw.init(SEGMENT);
  in.init(SEGMENT);
  out.init(BZIP2_OUTPUT);
  return 1;
}

int NidsFile::open(const char* name) {
  if (opened) close();
  init();
  if (!file->open(name)) return 0;
  opened = true;
  return 1;
}

int NidsFile::close() {
  file->close();
  opened = false;
  return 1;
}

// Whether the pending raw bytes begin a zlib stream. Pieces of plain data may begin with the same two bytes by chance:
// among them only a stream that ends properly counts.
bool NidsFile::isZlibSegment() const {
  if (data_type == BZIP2 || raw.get(0) != 0x78 || raw.get(1) != 0xDA) return false;
  if (first_segment || seg_type == ZLIB_SEGMENT) return true;
  Buffer from(raw);
  Buffer to(SEGMENT);
  Zlib trial;
  constexpr int STREAM_END = 1;
  return trial.decomp(from, to) == STREAM_END;
}

int NidsFile::readRaw() {
  if (!opened || damaged) return 0;
  in.clearUsed();  // bytes not yet delivered stay in front
  const int held = in.getSize();
  for (int empty = 0; in.getSize() == held && empty < MAX_EMPTY_STREAMS; empty++) {
    const int stat = file->read(raw);
    Kyv::outDebug(3, "Read: %d isize: %d tell: %d\n", stat, raw.getSize(), static_cast<int>(file->tell()));
    if (stat > 0 && raw.getRoom() > 0 && raw.equal(-TRAILER_LENGTH, TRAILER)) raw.trunc(-TRAILER_LENGTH);
    if (raw.getAvail() == 0) break;
    if (stream_open || isZlibSegment()) {
      if (!inflateSegment()) return 0;
    } else {
      Kyv::outDebug(3, "Uncompressed segment\n");
      in.setSize(held + raw.read(in.getFree(), in.getRoom()));
      raw.clearUsed();
      seg_type = PLAIN_SEGMENT;
    }
    first_segment = false;
  }
  return in.getSize();
}

// Inflates raw into in. A stream that is larger than the buffers is continued by the next call.
int NidsFile::inflateSegment() {
  Kyv::outDebug(3, "Zlib Compressed segment\n");
  if (!stream_open) zs.init();
  const int before = in.getSize();
  in.seek(before);
  zs.decomp(raw, in);
  in.seek(0);
  if (Kyv::isDebug(3)) zs.print();
  if (zs.isError()) return reportDamage();
  raw.clearUsed();
  stream_open = zs.getStatus() == 0;
  seg_type = ZLIB_SEGMENT;
  return 1;
}

void NidsFile::warn(const char* format, ...) const {
  if (quiet) {
    kept_quiet = true;
    return;
  }
  char text[MAX_WARNING];
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, MAX_WARNING, format, args);
  va_end(args);
  Kyv::outWarning("%s", text);
}

int NidsFile::reportDamage() {
  damaged = true;
  return 0;
}

// Looks at the pending plain bytes for what changes the way of reading: the mark of encryption, only where a body
// begins, since data may hold the same two bytes; a bzip2 stream, by its full signature. 0 when reading ends here.
int NidsFile::checkMarkers() {
  if (body_start && in.get(0) == 0x52 && in.get(1) == 0x33) {
    Kyv::outDebug("Encrypted data\n");
    data_type = ENCRYPTED;
    return 0;
  }
  if (in.get(0) != 'B') return 1;
  const auto pending = [this] { return std::span(in.getPending(), static_cast<std::size_t>(in.getAvail())); };
  int match = matchBzip2(pending());
  if (match > 0 && match == in.getAvail()) {
    readRaw();  // the signature may go on in the next piece
    match = matchBzip2(pending());
  }
  if (match == static_cast<int>(BZIP2_SIGNATURE)) {
    Kyv::outDebug(3, "BZlib Compressed data\n");
    data_type = BZIP2;
    bz.init();
    out.clear();
    unpacking = true;
  }
  return 1;
}

// More bzip2 output; 0 at the end of the stream or on damage. Compressed input is fetched only when it is used up.
int NidsFile::decompress() {
  out.clear();
  if (bz.getStatus() == BZlib::END) {
    data_type = PLAIN;
    unpacking = false;
    return 0;
  }
  const bool first = bz.getStatus() == BZlib::OK && total <= DESCRIPTION_END;
  while (out.getAvail() == 0) {
    if (in.getAvail() == 0 && readRaw() <= 0) return 0;
    bz.decomp(in, out);
    if (Kyv::isDebug(3)) bz.print();
    if (bz.isError()) return reportDamage();
    if (bz.getStatus() == BZlib::END) break;
  }
  if (bz.getStatus() == BZlib::END) unpacking = false;
  // The mark of encryption, where the body begins.
  if (first && out.get(0) == 0x52 && out.get(1) == 0x33) {
    Kyv::outDebug("Encrypted data\n");
    data_type = ENCRYPTED;
    unpacking = false;
    return 0;
  }
  return out.getAvail() > 0;
}

// The next n bytes, or as many as there are; the count.
int NidsFile::deliver(unsigned char* to, int n) {
  int done = 0;
  if (n > MAX_BODY - total) {
    reportDamage();
    n = MAX_BODY - total;
  }
  while (done < n && data_type != ENCRYPTED) {
    unsigned char* next = to ? to + done : nullptr;
    if (data_type == BZIP2) {
      if (out.getAvail() == 0 && !decompress()) break;
      done += out.read(next, n - done);
      continue;
    }
    if (in.getAvail() == 0) readRaw();
    if (in.getAvail() == 0) break;
    if (body_start || in.get(0) == 'B') {
      if (!checkMarkers()) break;
      body_start = false;
      if (data_type != PLAIN) continue;
    }
    done += in.read(next, n - done);
  }
  total += done;
  return done;
}

int NidsFile::readBytes(unsigned char* to, int n) {
  if (n <= 0) return 1;
  if (!opened) return 0;
  if (deliver(to, n) < n) return data_type == ENCRYPTED ? -1 : 0;
  bytes += n;
  return 1;
}

int NidsFile::skipLine() {
  unsigned char c = 0;
  int stat = 0;
  for (int n = 0; n < MAX_LINE; n++) {
    stat = file->read(&c, 1);
    if (stat != 1 || c == '\n') return stat;
  }
  return 0;
}

int NidsFile::readUshort(unsigned short& v) {
  unsigned char b[2] = {};
  const int stat = readBytes(b, 2);
  v = static_cast<unsigned short>(b[0] << 8 | b[1]);
  return stat;
}

int NidsFile::readShort(short& v) {
  unsigned short u = 0;
  const int stat = readUshort(u);
  v = static_cast<short>(u);
  return stat;
}

int NidsFile::readUlong(unsigned int& v) {
  unsigned char b[4] = {};
  const int stat = readBytes(b, 4);
  v = static_cast<unsigned>(b[0]) << 24 | static_cast<unsigned>(b[1]) << 16 | static_cast<unsigned>(b[2]) << 8 | b[3];
  return stat;
}

int NidsFile::readLong(int& v) {
  unsigned int u = 0;
  const int stat = readUlong(u);
  v = static_cast<int>(u);
  return stat;
}

short NidsFile::readShort() {
  short v = 0;
  return readShort(v) == 1 ? v : 0;
}

int NidsFile::readLong() {
  int v = 0;
  return readLong(v) == 1 ? v : 0;
}

int NidsFile::dump(int n, int which) {
  (which ? out : in).dump(0, n);
  return 1;
}

}  // namespace KYV
