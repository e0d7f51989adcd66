#ifndef KYV_SIGNATURE_H
#define KYV_SIGNATURE_H

#include <cstddef>
#include <span>

namespace KYV {

inline constexpr std::size_t BZIP2_SIGNATURE = 10;  // bytes by which a bzip2 stream is known

// How many of the first bytes are those of a bzip2 stream: "BZh", a level digit, then the magic of a block, or that
// of the end for an empty stream. BZIP2_SIGNATURE when it is one, fewer when the bytes end before it is decided, 0 when
// it is none.
constexpr int matchBzip2(std::span<const unsigned char> bytes) {
  constexpr unsigned char BLOCK[] = {0x31, 0x41, 0x59, 0x26, 0x53, 0x59};
  constexpr unsigned char END[] = {0x17, 0x72, 0x45, 0x38, 0x50, 0x90};
  constexpr unsigned char HEAD[] = {'B', 'Z', 'h'};
  bool block = true;
  bool end = true;
  std::size_t i = 0;
  for (; i < bytes.size() && i < BZIP2_SIGNATURE; i++) {
    const unsigned char byte = bytes[i];
    if (i < 3) {
      block = end = byte == HEAD[i];
    } else if (i == 3) {
      block = end = byte >= '1' && byte <= '9';
    } else {
      block = block && byte == BLOCK[i - 4];
      end = end && byte == END[i - 4];
    }
    if (!block && !end) return 0;
  }
  return static_cast<int>(i);
}

}  // namespace KYV
#endif
