#include "KYV/BZlib.h"

#include <bzlib.h>

#include <cstdio>
#include <utility>

#include "KYV/Buffer.h"

namespace KYV {

namespace {

struct StatusName {
  int status;
  const char* name;
};
constexpr StatusName STATUS_NAMES[] = {
    {BZ_OK, "OK"},
    {BZ_STREAM_END, "END"},
    {BZ_DATA_ERROR, "DATA ERR"},
    {BZ_DATA_ERROR_MAGIC, "MAGIC ERR"},
};
constexpr int DECOMPRESS = 1;

// The library takes plain characters, and promises not to write into its input.
char* chars(const unsigned char* bytes) {
  return static_cast<char*>(static_cast<void*>(const_cast<unsigned char*>(bytes)));
}

long total(unsigned low, unsigned high) { return static_cast<long>(static_cast<unsigned long>(high) << 32 | low); }

}  // namespace

// Never moves in memory: the library keeps a pointer to it.
struct BZlib::Stream {
  bz_stream s{};
};

BZlib::BZlib(int t) : type(t), bz(std::make_unique<Stream>()) {}

BZlib::~BZlib() { finish(); }

BZlib::BZlib(BZlib&& other) noexcept
    : type(other.type), setup(std::exchange(other.setup, false)), bz(std::move(other.bz)), stat(other.stat) {}

BZlib& BZlib::operator=(BZlib&& other) noexcept {
  if (this == &other) return *this;
  finish();
  type = other.type;
  setup = std::exchange(other.setup, false);
  bz = std::move(other.bz);
  stat = other.stat;
  return *this;
}

const char* BZlib::getLibrary() { return BZ2_bzlibVersion(); }

int BZlib::init() {
  finish();
  if (!bz) bz = std::make_unique<Stream>();  // was moved from
  stat = type == DECOMPRESS ? BZ2_bzDecompressInit(&bz->s, 0, 0) : BZ2_bzCompressInit(&bz->s, 0, 0, 0);
  setup = stat == BZ_OK;
  return stat;
}

int BZlib::setIn(unsigned char* in, int n) {
  if (n < 0 || (n > 0 && !in)) return 0;
  if (!bz) bz = std::make_unique<Stream>();
  bz->s.next_in = chars(in);
  bz->s.avail_in = static_cast<unsigned>(n);
  return 1;
}

int BZlib::setOut(unsigned char* out, int n) {
  if (n < 0 || (n > 0 && !out)) return 0;
  if (!bz) bz = std::make_unique<Stream>();
  bz->s.next_out = chars(out);
  bz->s.avail_out = static_cast<unsigned>(n);
  return 1;
}

int BZlib::decomp() {
  if (type != DECOMPRESS) return stat = BZ_SEQUENCE_ERROR;
  // After an error the library must not be called again before a new start.
  if (setup && stat < 0) return stat;
  if (!setup && init() != BZ_OK) return stat;
  const int code = BZ2_bzDecompress(&bz->s);
  if (code == BZ_STREAM_END) init();
  return stat = code;
}

int BZlib::decomp(Buffer& in, Buffer& out) {
  if (&in == &out) return stat = BZ_PARAM_ERROR;
  if (!bz) bz = std::make_unique<Stream>();
  bz_stream& s = bz->s;
  s.next_in = chars(in.getPending());
  s.avail_in = static_cast<unsigned>(in.getAvail());
  s.next_out = chars(out.getFree());
  s.avail_out = static_cast<unsigned>(out.getRoom());
  decomp();
  in.seek(in.getSize() - getAvailIn());
  out.setSize(out.getMax() - getAvailOut());
  return stat;
}

int BZlib::comp(int action) {
  if (type == DECOMPRESS) return stat = BZ_SEQUENCE_ERROR;
  if (!setup && init() != BZ_OK) return stat;
  return stat = BZ2_bzCompress(&bz->s, action);
}

int BZlib::finish() {
  if (!setup) return 0;
  if (type == DECOMPRESS) {
    BZ2_bzDecompressEnd(&bz->s);
  } else {
    BZ2_bzCompressEnd(&bz->s);
  }
  setup = false;
  return 1;
}

int BZlib::print() const {
  std::printf(type == DECOMPRESS ? "Decomp: " : "Comp: ");
  const char* name = nullptr;
  for (const StatusName& row : STATUS_NAMES) {
    if (row.status == stat) name = row.name;
  }
  if (name) {
    std::printf("%s", name);
  } else {
    std::printf("%d", stat);
  }
  std::printf(" %d %d - %d %d\n", getAvailIn(), bz ? static_cast<int>(bz->s.total_in_lo32) : 0, getAvailOut(),
              static_cast<int>(getTotalOut()));
  return 1;
}

int BZlib::getAvailIn() const { return bz ? static_cast<int>(bz->s.avail_in) : 0; }

int BZlib::getAvailOut() const { return bz ? static_cast<int>(bz->s.avail_out) : 0; }

long BZlib::getTotalOut() const { return bz ? total(bz->s.total_out_lo32, bz->s.total_out_hi32) : 0; }

}  // namespace KYV
