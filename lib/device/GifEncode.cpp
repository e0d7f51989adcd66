#include "GifFormat.h"
#include "KYV/File.h"

namespace KYV::Gif {

Encoder::Encoder(File& file, int size) : out(file), bits(size), clearCode(1 << size) {
  const Byte first = static_cast<Byte>(bits);
  out.write(&first, 1);
  clear();
  put(clearCode);
}

// Forgets all strings.
void Encoder::clear() {
  bucket.fill(NONE);
  nextCode = clearCode + 2;
  width = bits + 1;
}

void Encoder::add(std::span<const Byte> pixels) {
  std::size_t i = 0;
  int held = prefix;  // a local one, which the compiler keeps in a register
  if (held == NONE && !pixels.empty()) held = pixels[i++];
  for (; i < pixels.size(); ++i) {
    const int pixel = pixels[i];
    const std::uint32_t wanted = static_cast<std::uint32_t>(pixel << MAX_WIDTH) + static_cast<std::uint32_t>(held);
    std::int16_t& head = bucket[static_cast<std::size_t>((pixel << 4) ^ held)];
    int code = head;
    while (code != NONE && key[static_cast<std::size_t>(code)] != wanted) code = link[static_cast<std::size_t>(code)];
    if (code != NONE) {
      held = code;
      continue;
    }
    put(held);
    held = pixel;
    if (nextCode < MAX_CODES) {
      const auto at = static_cast<std::size_t>(nextCode);
      key[at] = wanted;
      link[at] = head;
      head = static_cast<std::int16_t>(nextCode++);
    } else {
      put(clearCode);
      clear();
    }
  }
  prefix = held;
}

void Encoder::put(int code) {
  acc |= static_cast<std::uint32_t>(code) << accBits;
  for (accBits += width; accBits >= 8; accBits -= 8, acc >>= 8) {
    block[static_cast<std::size_t>(++used)] = static_cast<Byte>(acc);
    if (used == BLOCK) flush();
  }
  // The decoder knows one string less than we do when it reads the next code.
  if (nextCode >= 1 << width && width < MAX_WIDTH) ++width;
}

void Encoder::flush() {
  block[0] = static_cast<Byte>(used);
  if (used > 0) out.write(block.data(), 1 + used);
  used = 0;
}

void Encoder::finish() {
  if (prefix != NONE) put(prefix);
  put(clearCode + 1);
  if (accBits > 0) block[static_cast<std::size_t>(++used)] = static_cast<Byte>(acc);
  flush();
  constexpr Byte END = 0;
  out.write(&END, 1);
}

}  // namespace KYV::Gif
