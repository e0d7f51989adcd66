#include "KYV/Zlib.h"

#define ZLIB_CONST
#include <zlib.h>

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
    {Z_BUF_ERROR, "BUF ERR"},
    {Z_MEM_ERROR, "MEM ERR"},
    {Z_DATA_ERROR, "DATA ERR"},
    {Z_STREAM_ERROR, "STRM ERR"},
    {Z_OK, "OK"},
    {Z_STREAM_END, "END"},
    {Z_FINISH, "FIN"},
};
constexpr int INFLATE = 1;

}  // namespace

// Never moves in memory: the library keeps a pointer to it.
struct Zlib::Stream {
  z_stream z{};
};

Zlib::Zlib(int t) : type(t), zs(std::make_unique<Stream>()) {}

Zlib::~Zlib() { finish(); }

Zlib::Zlib(Zlib&& other) noexcept
    : type(other.type), setup(std::exchange(other.setup, 0)), zs(std::move(other.zs)), stat(other.stat) {}

Zlib& Zlib::operator=(Zlib&& other) noexcept {
  if (this == &other) return *this;
  finish();
  type = other.type;
  setup = std::exchange(other.setup, 0);
  zs = std::move(other.zs);
  stat = other.stat;
  return *this;
}

const char* Zlib::getLibrary() { return zlibVersion(); }

int Zlib::init() {
  finish();
  if (!zs) zs = std::make_unique<Stream>();  // was moved from
  stat = type == INFLATE ? inflateInit(&zs->z) : deflateInit(&zs->z, Z_DEFAULT_COMPRESSION);
  setup = stat == Z_OK;
  return stat;
}

int Zlib::set(unsigned char* in, int nin, unsigned char* out, int nout) {
  if (nin < 0 || nout < 0 || (nin > 0 && !in) || (nout > 0 && !out)) return 0;
  if (!zs) zs = std::make_unique<Stream>();
  zs->z.next_in = in;
  zs->z.avail_in = static_cast<uInt>(nin);
  zs->z.next_out = out;
  zs->z.avail_out = static_cast<uInt>(nout);
  return 1;
}

int Zlib::decomp() {
  if (type != INFLATE) return stat = Z_STREAM_ERROR;
  if (!setup && init() != Z_OK) return stat;
  const int code = inflate(&zs->z, Z_PARTIAL_FLUSH);
  if (code == Z_STREAM_END) init();
  return stat = code;
}

int Zlib::decomp(Buffer& in, Buffer& out) {
  if (&in == &out) return stat = Z_STREAM_ERROR;
  if (!zs) zs = std::make_unique<Stream>();
  out.setSize(out.getInd());
  z_stream& z = zs->z;
  z.next_in = in.getPending();
  z.avail_in = static_cast<uInt>(in.getAvail());
  z.next_out = out.getFree();
  z.avail_out = static_cast<uInt>(out.getRoom());
  decomp();
  in.seek(in.getSize() - getAvailIn());
  out.setSize(out.getMax() - getAvailOut());
  return stat;
}

int Zlib::comp(int flush) {
  if (type == INFLATE) return stat = Z_STREAM_ERROR;
  if (!setup && init() != Z_OK) return stat;
  return stat = deflate(&zs->z, flush);
}

int Zlib::finish() {
  if (!setup) return 0;
  if (type == INFLATE) {
    inflateEnd(&zs->z);
  } else {
    deflateEnd(&zs->z);
  }
  setup = 0;
  return 1;
}

int Zlib::print() const {
  std::printf(type == INFLATE ? "Decomp " : "Comp ");
  const char* name = nullptr;
  for (const StatusName& row : STATUS_NAMES) {
    if (row.status == stat) name = row.name;
  }
  if (name) {
    std::printf("%s", name);
  } else {
    std::printf("%d", stat);
  }
  std::printf(" = %d %ld = %d %ld\n", getAvailIn(), zs ? static_cast<long>(zs->z.total_in) : 0L, getAvailOut(),
              getTotalOut());
  return 1;
}

int Zlib::getAvailIn() const { return zs ? static_cast<int>(zs->z.avail_in) : 0; }

int Zlib::getAvailOut() const { return zs ? static_cast<int>(zs->z.avail_out) : 0; }

long Zlib::getTotalOut() const { return zs ? static_cast<long>(zs->z.total_out) : 0L; }

}  // namespace KYV
