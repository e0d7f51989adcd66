#include "TextWriter.h"

#include <cstdio>

#include "KYV/File.h"

namespace KYV {

void TextWriter::flush() {
  if (used > 0) out.write(buf.data(), static_cast<int>(used));
  used = 0;
}

void TextWriter::makeRoom(std::size_t n) {
  flush();
  if (buf.size() < n) buf.resize(n);
}

void TextWriter::putPlain(const char* text) {
  for (const char* c = text; c && *c; ++c) put(static_cast<unsigned char>(*c) < ' ' || *c == '\x7F' ? ' ' : *c);
}

void TextWriter::putHex(unsigned char byte) {
  static constexpr char DIGITS[] = "0123456789ABCDEF";
  put(DIGITS[byte >> 4], DIGITS[byte & 15]);
}

char* TextWriter::writeWide(char* at, float value, int decimals) {
  const std::size_t size = MAX_WHOLE + 1 + static_cast<std::size_t>(decimals) + 1;
  return at + std::snprintf(at, size, "%.*f", decimals, static_cast<double>(value));
}

}  // namespace KYV
