#ifndef KYV_SWAP_H
#define KYV_SWAP_H

#include <cstdint>

namespace KYV {

class File;

/// Byte order of a file's numbers; the hosts served are little-endian.
class Swap {
 public:
  Swap() : Swap(0) {}
  explicit Swap(int mode) { init(mode); }

  /// 1: big-endian data, values are swapped; 2: little-endian data, not; -1: not; any other: swapped.
  int init(int mode);
  // In place; 0 when nothing had to be swapped.
  int swap2(void* value) const;
  int swap4(void* value) const;
  int swap8(void* value) const;
  int swap2(void* values, int n) const;
  int swap4(void* values, int n) const;
  // The count read, 1 for a whole value.
  int readInt2(File& file, std::int16_t& value) const;
  int readUInt2(File& file, std::uint16_t& value) const;
  int readInt4(File& file, std::int32_t& value) const;
  int readUInt4(File& file, std::uint32_t& value) const;
  int readFloat(File& file, float& value) const;
  int readDouble(File& file, double& value) const;
  int writeInt2(File& file, std::int16_t value) const;
  int writeInt4(File& file, std::int32_t value) const;
  int writeFloat(File& file, float value) const;

 private:
  int one = 1;
  int flag = 0;
};

}  // namespace KYV
#endif
