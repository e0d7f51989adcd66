#include "KYV/Swap.h"

#include <algorithm>
#include <cstddef>

#include "KYV/File.h"

namespace KYV {

namespace {

// Reverses the bytes of n values of `size` bytes each.
int reverse(void* values, std::size_t size, int n) {
  if (!values || n <= 0) return 0;
  unsigned char* byte = static_cast<unsigned char*>(values);
  for (int i = 0; i < n; ++i, byte += size) std::reverse(byte, byte + size);
  return 1;
}

// A whole value, 1; 0 at the end of the file, also within the value, which then stays as it was.
template <class T>
int readValue(File& file, T& value, bool swapped) {
  T got = {};
  const int n = file.read(&got, sizeof got);
  if (n != static_cast<int>(sizeof got)) return n < 0 ? n : 0;
  if (swapped) reverse(&got, sizeof got, 1);
  value = got;
  return 1;
}

template <class T>
int writeValue(File& file, T value, bool swapped) {
  if (swapped) reverse(&value, sizeof value, 1);
  return file.write(&value, sizeof value) == static_cast<int>(sizeof value) ? 1 : 0;
}

}  // namespace

int Swap::init(int mode) {
  flag = mode == 2 || mode == -1 ? 0 : 1;
  return 1;
}

int Swap::swap2(void* value) const { return swap2(value, 1); }

int Swap::swap4(void* value) const { return swap4(value, 1); }

int Swap::swap8(void* value) const { return flag ? reverse(value, 8, 1) : 0; }

int Swap::swap2(void* values, int n) const { return flag ? reverse(values, 2, n) : 0; }

int Swap::swap4(void* values, int n) const { return flag ? reverse(values, 4, n) : 0; }

int Swap::readInt2(File& file, std::int16_t& value) const { return readValue(file, value, flag); }

int Swap::readUInt2(File& file, std::uint16_t& value) const { return readValue(file, value, flag); }

int Swap::readInt4(File& file, std::int32_t& value) const { return readValue(file, value, flag); }

int Swap::readUInt4(File& file, std::uint32_t& value) const { return readValue(file, value, flag); }

int Swap::readFloat(File& file, float& value) const { return readValue(file, value, flag); }

int Swap::readDouble(File& file, double& value) const { return readValue(file, value, flag); }

int Swap::writeInt2(File& file, std::int16_t value) const { return writeValue(file, value, flag); }

int Swap::writeInt4(File& file, std::int32_t value) const { return writeValue(file, value, flag); }

int Swap::writeFloat(File& file, float value) const { return writeValue(file, value, flag); }

}  // namespace KYV
