#include "NidsSource.h"

#include <zlib.h>

#include <algorithm>
#include <span>
#include <utility>

#include "KYV/BZlib.h"
#include "KYV/Buffer.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "NidsLimits.h"
#include "Signature.h"

namespace KYV {

namespace {

using Content = std::vector<unsigned char>;
constexpr std::size_t STEP = 65536;
constexpr int GZIP_FORMAT = 16 + MAX_WBITS;
constexpr int MAX_MEMBERS = 1000;  // streams one after another in a wrapped file

// What was read of the last name that cannot be read twice.
struct Kept {
  String name;
  std::shared_ptr<const Content> content;
  bool cut = false;
};
Kept& kept() {
  static Kept last;
  return last;
}

bool isGzip(std::span<const unsigned char> bytes) {
  return bytes.size() >= 3 && bytes[0] == 0x1F && bytes[1] == 0x8B && bytes[2] == 8;
}

bool isWrapped(std::span<const unsigned char> bytes) {
  return isGzip(bytes) || matchBzip2(bytes) == static_cast<int>(BZIP2_SIGNATURE);
}

// Room for the next output: STEP bytes at first, then as much again as there is.
std::size_t grow(Content& to, std::size_t used) {
  if (to.size() == used) to.resize(std::min<std::size_t>(MAX_CONTENT, used + std::max(used, STEP)));
  return to.size() - used;
}

// Both unwrappers keep what came out before any damage. 1; 0 when the data is damaged or cut.
int unwrapGzip(Content& from, Content& to) {
  z_stream z{};
  if (inflateInit2(&z, GZIP_FORMAT) != Z_OK) return 0;
  z.next_in = from.data();
  z.avail_in = static_cast<uInt>(from.size());
  std::size_t used = 0;
  int stat = Z_OK;
  for (int members = 0; stat == Z_OK && used < MAX_CONTENT;) {
    const std::size_t room = grow(to, used);
    z.next_out = to.data() + used;
    z.avail_out = static_cast<uInt>(room);
    stat = inflate(&z, Z_NO_FLUSH);
    used += room - z.avail_out;
    const bool next = stat == Z_STREAM_END && z.avail_in >= 3 && z.next_in[0] == 0x1F && z.next_in[1] == 0x8B;
    if (next && ++members < MAX_MEMBERS) stat = inflateReset(&z);
  }
  inflateEnd(&z);
  to.resize(used);
  return stat == Z_STREAM_END || used == MAX_CONTENT;
}

int unwrapBzip2(Content& from, Content& to) {
  BZlib bz;
  bz.setIn(from.data(), static_cast<int>(from.size()));
  std::size_t used = 0;
  int whole = 0;
  for (int members = 0; used < MAX_CONTENT;) {
    const std::size_t room = grow(to, used);
    const int before = bz.getAvailIn();
    bz.setOut(to.data() + used, static_cast<int>(room));
    const int stat = bz.decomp();
    const std::size_t got = room - static_cast<std::size_t>(bz.getAvailOut());
    used += got;
    if (stat == BZlib::END) {
      const auto rest = std::span(from).last(static_cast<std::size_t>(bz.getAvailIn()));
      whole = matchBzip2(rest) != static_cast<int>(BZIP2_SIGNATURE) || ++members == MAX_MEMBERS;
      if (whole) break;
    } else if (stat != BZlib::OK || (got == 0 && bz.getAvailIn() == before)) {
      break;
    }
  }
  to.resize(used);
  return whole || used == MAX_CONTENT;
}

// The content itself, or what it holds when it is wrapped as a whole.
Content unwrap(Content bytes, bool& cut) {
  cut = false;
  if (!isWrapped(bytes)) return bytes;
  Content to;
  cut = !(isGzip(bytes) ? unwrapGzip(bytes, to) : unwrapBzip2(bytes, to));
  return to;
}

}  // namespace

int NidsSource::open(const char* filename) {
  close();
  if (!StrLib::valid(filename)) return 0;
  name = filename;
  String path;
  FileTool::addUserPath(filename, path);
  const bool once = FileTool::isStdio(filename) || filename[0] == '|' || !FileTool::isFile(path.get());
  if (once) return openKept();
  if (!file.open(filename, "r")) return 0;
  OutputFile::protect(file.getFP());
  return unwrapFile();
}

int NidsSource::close() {
  file.close();
  content.reset();
  at = 0;
  cut = false;
  return 1;
}

int NidsSource::openKept() {
  Kept& last = kept();
  if (!last.content || !last.name.equal(name.get())) {
    if (!file.open(name, "r")) return 0;
    Content bytes = readAll(file);
    file.close();
    bool isCut = false;
    last.content = std::make_shared<const Content>(unwrap(std::move(bytes), isCut));
    last.name = name;
    last.cut = isCut;
  }
  content = last.content;
  cut = last.cut;
  return 1;
}

int NidsSource::unwrapFile() {
  Content head(BZIP2_SIGNATURE);
  head.resize(static_cast<std::size_t>(std::max(file.read(head.data(), static_cast<int>(head.size())), 0)));
  if (!file.rewind()) return 0;
  if (!isWrapped(head)) return 1;
  Content bytes = readAll(file);
  file.close();
  content = std::make_shared<const Content>(unwrap(std::move(bytes), cut));
  return 1;
}

NidsSource::Content NidsSource::readAll(File& file) {
  Content bytes;
  std::size_t used = 0;
  while (used < MAX_CONTENT) {
    const std::size_t room = grow(bytes, used);
    const int got = file.read(bytes.data() + used, static_cast<int>(room));
    if (got <= 0) break;
    used += static_cast<std::size_t>(got);
  }
  bytes.resize(used);
  return bytes;
}

int NidsSource::read(unsigned char* bytes, int n) {
  if (!content) return file.read(bytes, n);
  const std::size_t got = std::min(content->size() - at, static_cast<std::size_t>(std::max(n, 0)));
  std::copy_n(content->begin() + static_cast<std::ptrdiff_t>(at), got, bytes);
  at += got;
  return static_cast<int>(got);
}

int NidsSource::read(Buffer& buffer) {
  if (!content) return file.read(buffer);
  const int got = read(buffer.getFree(), buffer.getRoom());
  if (got <= 0 && buffer.getRoom() > 0) return -1;
  buffer.setSize(buffer.getSize() + got);
  return buffer.getSize();
}

int NidsSource::seek(std::int64_t to) {
  if (!content) return file.seek(to);
  if (to < 0 || to > static_cast<std::int64_t>(content->size())) return 0;
  at = static_cast<std::size_t>(to);
  return 1;
}

std::int64_t NidsSource::tell() { return content ? static_cast<std::int64_t>(at) : file.tell(); }

std::int64_t NidsSource::getRest() {
  if (content) return static_cast<std::int64_t>(content->size() - at);
  const std::int64_t here = file.tell();
  if (here < 0 || !file.seek(0, SEEK_END)) return 0;
  const std::int64_t end = file.tell();
  file.seek(here);
  return end - here;
}

}  // namespace KYV
