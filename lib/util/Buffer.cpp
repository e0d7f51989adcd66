#include "KYV/Buffer.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>

namespace KYV {

namespace {

constexpr int GROWTH = 2000;
constexpr int DUMP_LINE = 16;  // bytes a line

}  // namespace

int Buffer::init(int max) {
  if (max < 0) return 0;
  data.resize(static_cast<std::size_t>(max));
  return clear();
}

int Buffer::copy(const Buffer& other) {
  const int held = other.size;
  if (this != &other) {
    init(other.getMax());
    std::copy_n(other.data.begin(), held, data.begin());
  }
  size = held;
  ind = 0;
  return 1;
}

int Buffer::clear() {
  size = ind = 0;
  return 1;
}

int Buffer::resize(int max) {
  if (max < 0) return 0;
  data.resize(static_cast<std::size_t>(max));
  size = std::min(size, max);
  ind = std::min(ind, size);
  return 1;
}

int Buffer::check(int need) {
  if (need <= getMax()) return 1;
  return need <= INT_MAX - GROWTH ? resize(need + GROWTH) : 0;
}

int Buffer::add(const unsigned char* bytes, int n) { return insert(size, bytes, n); }

int Buffer::insert(int at, const unsigned char* bytes, int n) {
  if (at < 0 || at > size || n < 0 || n > INT_MAX - size || (n > 0 && !bytes)) return 0;
  if (n == 0) return 1;
  const std::vector<unsigned char> piece(bytes, bytes + n);  // the bytes may lie in this buffer
  if (!check(size + n)) return 0;
  std::copy_backward(data.begin() + at, data.begin() + size, data.begin() + size + n);
  std::copy(piece.begin(), piece.end(), data.begin() + at);
  if (at < ind) ind += n;  // what was read stays read
  size += n;
  return 1;
}

int Buffer::insert(int at, const Buffer& other) { return insert(at, other.data.data(), other.size); }

unsigned char Buffer::get(int i) const {
  const long at = static_cast<long>(ind) + i;
  return at >= 0 && at < size ? data[static_cast<std::size_t>(at)] : 0;
}

int Buffer::read(unsigned char* bytes, int n) {
  n = std::min(n, getAvail());
  if (n <= 0) return 0;
  if (bytes) std::copy_n(data.begin() + ind, n, bytes);
  ind += n;
  return n;
}

int Buffer::readLine(unsigned char* bytes, int n) {
  n = std::min(n, getAvail());
  if (n <= 0) return 0;
  const auto first = data.begin() + ind;
  const auto feed = std::find(first, first + n, '\n');
  return read(bytes, feed != first + n ? static_cast<int>(feed - first) + 1 : n);
}

int Buffer::skipLine() {
  const auto end = data.begin() + size;
  const auto feed = std::find(data.begin() + ind, end, '\n');
  if (feed == end) return 0;
  ind = static_cast<int>(feed - data.begin()) + 1;
  return 1;
}

int Buffer::clearUsed() {
  std::copy(data.begin() + ind, data.begin() + size, data.begin());
  size -= ind;
  ind = 0;
  return 1;
}

int Buffer::seek(int pos) {
  if (pos < 0 || pos > size) return 0;
  ind = pos;
  return 1;
}

int Buffer::inc(int n) {
  if (n < -ind || n > getAvail()) return 0;
  ind += n;
  return 1;
}

int Buffer::trunc(int k) {
  if (k >= 0) return 0;
  size = std::max(size + k, 0);
  if (ind >= size) ind = std::max(size - 1, 0);
  return 1;
}

bool Buffer::equal(int k, const char* s) const {
  const long at = static_cast<long>(size) + k;
  if (!s || at < 0 || at > size) return false;
  const std::size_t len = std::strlen(s);
  return len <= static_cast<std::size_t>(size - at) &&
         std::equal(s, s + len, data.begin() + at, [](char a, int b) { return static_cast<unsigned char>(a) == b; });
}

int Buffer::read(Buffer& out) { return read(out, getAvail()); }

int Buffer::read(Buffer& out, int n) {
  n = read(out.getFree(), std::min(n, out.getRoom()));
  out.size += n;
  print();
  out.print();
  return n;
}

int Buffer::print() const {
  std::printf("Ind: %d Num: %d Max: %d\n", ind, size, getMax());
  return 1;
}

int Buffer::dump(int offset, int n) const {
  if (offset < 0 || offset > getAvail()) return 0;
  const int end = offset + std::clamp(n, 0, getAvail() - offset);
  for (int line = offset; line < end; line += DUMP_LINE) {
    std::printf("%06x ", static_cast<unsigned>(line));
    for (int i = line; i < std::min(line + DUMP_LINE, end); i++) std::printf(" %02x", get(i));
    std::printf("\n");
  }
  return 1;
}

int Buffer::setSize(int n) {
  if (n < 0 || n > getMax()) return 0;
  size = n;
  ind = std::min(ind, size);
  return 1;
}

}  // namespace KYV
