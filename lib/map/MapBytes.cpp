#include "KYV/MapBytes.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>
#include <utility>

#include "KYV/File.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"

namespace KYV {

int MapBytes::load(const char* file) {
  clear();
  name.copy(file);
  File in;
  const bool url = StrLib::equal(file, "http://", 7);
  if (!(url ? in.open(file, "r") : in.openData(file))) return 0;
  // One byte more than the file has shows its end without another allocation; the room is not cleared beforehand.
  constexpr std::size_t FIRST = 65536;
  const std::int64_t told = url ? 0 : FileTool::getSize(file);
  std::size_t room = std::clamp(told > 0 ? static_cast<std::size_t>(told) + 1 : FIRST, std::size_t{1}, MAX_SIZE);
  bytes = std::make_unique_for_overwrite<char[]>(room);
  constexpr std::size_t MOST = INT_MAX;
  for (int n = 0; (n = in.read(bytes.get() + size, static_cast<int>(std::min(room - size, MOST)))) > 0;) {
    size += static_cast<std::size_t>(n);
    if (size < room) continue;
    if (room == MAX_SIZE) {
      Kyv::outWarning("Map file too large, its end is left out: %s\n", file);
      break;
    }
    room = std::min(2 * room, MAX_SIZE);
    std::unique_ptr<char[]> more = std::make_unique_for_overwrite<char[]>(room);
    std::memcpy(more.get(), bytes.get(), size);
    bytes = std::move(more);
  }
  return 1;
}

bool MapBytes::seek(std::size_t place) {
  if (place > size) return false;
  at = place;
  return true;
}

// The shifts are what compilers know as one load and one byte swap.
template <class Bits>
bool MapBytes::take(Bits& bits, bool little) {
  constexpr std::size_t SIZE = sizeof(Bits);
  if (getLeft() < SIZE) return false;
  unsigned char b[SIZE];
  std::memcpy(b, bytes.get() + at, SIZE);
  if (!little) std::reverse(b, b + SIZE);
  bits = 0;
  for (std::size_t i = 0; i < SIZE; ++i) bits = static_cast<Bits>(bits | static_cast<Bits>(b[i]) << 8 * i);
  at += SIZE;
  return true;
}

bool MapBytes::readBig(unsigned short& value) { return take(value, false); }

bool MapBytes::readBig(int& value) {
  std::uint32_t bits = 0;
  if (!take(bits, false)) return false;
  value = std::bit_cast<std::int32_t>(bits);
  return true;
}

bool MapBytes::readBig(float& value) {
  std::uint32_t bits = 0;
  if (!take(bits, false)) return false;
  value = std::bit_cast<float>(bits);
  return true;
}

bool MapBytes::readLittle(int& value) {
  std::uint32_t bits = 0;
  if (!take(bits, true)) return false;
  value = std::bit_cast<std::int32_t>(bits);
  return true;
}

bool MapBytes::readLittle(double& value) {
  std::uint64_t bits = 0;
  if (!take(bits, true)) return false;
  value = std::bit_cast<double>(bits);
  return true;
}

bool MapBytes::readLine(std::string_view& line) {
  if (getLeft() == 0) return false;
  const std::string_view rest = getText().substr(at);
  const void* end = std::memchr(rest.data(), '\n', rest.size());
  const std::size_t length = end ? static_cast<std::size_t>(static_cast<const char*>(end) - rest.data()) : rest.size();
  line = rest.substr(0, length);
  at += std::min(length + 1, rest.size());
  if (line.ends_with('\r')) line.remove_suffix(1);
  return true;
}

}  // namespace KYV
