#ifndef KYV_MAPBYTES_H
#define KYV_MAPBYTES_H

#include <cstddef>
#include <memory>
#include <string_view>

#include "KYV/String.h"

namespace KYV {

/// A whole map file in memory, read from a cursor on; nothing is read beyond its end. Map files are small (a megabyte
/// for the counties of the United States) and most of their segments are passed over: in memory that costs no call.
class MapBytes {
 public:
  /// Reads a local file or an "http://" URL; 0 leaves it empty. At most MAX_SIZE bytes, with a warning when there are
  /// more.
  [[nodiscard]] int load(const char* file);
  void clear() { *this = MapBytes(); }

  const char* getName() const { return name.get(); }
  std::size_t getSize() const { return size; }
  std::size_t getLeft() const { return size - at; }
  std::size_t tell() const { return at; }
  std::string_view getText() const { return {bytes.get(), size}; }
  // Moving the cursor; false, and nothing moved, when the place lies beyond the end.
  bool seek(std::size_t place);
  bool skip(std::size_t n) { return n <= getLeft() && seek(at + n); }

  // Numbers at the cursor, 2, 4 or 8 bytes; false at the end.
  bool readBig(unsigned short& value);
  bool readBig(int& value);
  bool readBig(float& value);
  bool readLittle(int& value);
  bool readLittle(double& value);
  /// The next line without its end; false at the end of the file.
  bool readLine(std::string_view& line);

 private:
  static constexpr std::size_t MAX_SIZE = std::size_t{1} << 30;

  template <class Bits>
  bool take(Bits& bits, bool little);

  std::unique_ptr<char[]> bytes;
  std::size_t size = 0;
  std::size_t at = 0;
  String name;
};

}  // namespace KYV
#endif
