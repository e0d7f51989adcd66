#ifndef RADMAP_FUZZ_UNPACK_H
#define RADMAP_FUZZ_UNPACK_H

#include <bzlib.h>

#include <algorithm>
#include <iterator>
#include <vector>

/// The same product with its bzip2 body unpacked, so that changes reach the packets and not the checksum; empty when it
/// has none.
inline std::vector<unsigned char> unpackBody(const std::vector<unsigned char>& from) {
  constexpr std::size_t MAX_UNPACKED = 8UL * 1024 * 1024;
  constexpr unsigned char BODY[] = {'B', 'Z', 'h'};
  const auto body = std::search(from.begin(), from.end(), std::begin(BODY), std::end(BODY));
  if (body == from.end()) return {};
  std::vector<char> input(body, from.end());
  std::vector<char> output(MAX_UNPACKED);
  unsigned n = static_cast<unsigned>(output.size());
  if (BZ2_bzBuffToBuffDecompress(output.data(), &n, input.data(), static_cast<unsigned>(input.size()), 0, 0) != BZ_OK) {
    return {};
  }
  std::vector<unsigned char> to(from.begin(), body);
  to.insert(to.end(), output.begin(), output.begin() + n);
  return to;
}

#endif
