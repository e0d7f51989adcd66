#ifndef KYV_GIFFORMAT_H
#define KYV_GIFFORMAT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace KYV {

class File;

/// Bytes of the GIF format, as published with version 89a.
namespace Gif {

using Byte = unsigned char;

enum Block : Byte { EXTENSION = 0x21, IMAGE = 0x2C, TRAILER = 0x3B };
enum Label : Byte { CONTROL = 0xF9, COMMENT = 0xFE, APPLICATION = 0xFF };
// Flags of the screen and image descriptors: the low three bits are the table's exponent less one.
enum Flag : Byte { TABLE = 0x80, INTERLACED = 0x40 };
// Flags of the graphic control extension.
enum ControlFlag : Byte { TRANSPARENT = 0x01, LEAVE_IN_PLACE = 0x04 };

constexpr int SIGNATURE_SIZE = 6;
constexpr int MAX_BLOCK = 255;   // bytes of a sub-block
constexpr int MAX_BITS = 8;      // of a pixel
constexpr int MAX_CODES = 4096;  // codes have up to 12 bits
constexpr int MAX_WIDTH = 12;

constexpr void putHalf(Byte* to, int value) {
  to[0] = static_cast<Byte>(value);
  to[1] = static_cast<Byte>(value >> 8);
}
constexpr int getHalf(const Byte* from) { return from[0] | from[1] << 8; }

/// The smallest exponent of two whose power is at least n, 1 to 8.
constexpr int tableBits(int n) {
  int bits = 1;
  while (bits < MAX_BITS && 1 << bits < n) ++bits;
  return bits;
}

/// The rows of a picture in the order of the file.
class Rows {
 public:
  Rows(int h, bool interlaced) : height(h), pass(interlaced ? 0 : PLAIN), row(PASSES[pass].first) {}
  /// The next row, -1 after the last.
  int next() {
    while (row >= height) {
      if (pass >= LAST) return -1;
      row = PASSES[++pass].first;
    }
    const int at = row;
    row += PASSES[pass].step;
    return at;
  }

 private:
  struct Pass {
    int first;
    int step;
  };
  static constexpr Pass PASSES[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}, {0, 1}};
  static constexpr int LAST = 3;   // of an interlaced picture
  static constexpr int PLAIN = 4;  // the one pass of any other

  int height;
  int pass;
  int row;
};

/// Writes the pixels of one picture, from the minimum code size to the block terminator.
class Encoder {
 public:
  /// @param size  bits of a pixel, 2 to 8; all pixels are below 2^size
  Encoder(File& file, int size);
  void add(std::span<const Byte> pixels);
  /// Writes what is left; once, after the last pixel.
  void finish();

 private:
  static constexpr int BLOCK = 254;  // data bytes of a sub-block
  static constexpr int NONE = -1;

  void clear();
  void put(int code);
  void flush();

  File& out;
  int bits;
  int clearCode;
  int width;              // bits of a code
  int nextCode;           // that would be assigned
  int prefix = NONE;      // code of the string in hand
  std::uint32_t acc = 0;  // bits that are no whole byte yet
  int accBits = 0;
  int used = 0;  // bytes in the block
  std::array<Byte, 1 + BLOCK> block;
  // Strings by prefix and pixel: the buckets are chains of codes.
  std::array<std::int16_t, MAX_CODES> bucket;
  std::array<std::int16_t, MAX_CODES> link;
  std::array<std::uint32_t, MAX_CODES> key;
};

/// A colour table as it stands in the file.
struct Table {
  int num = 0;  // 0: none
  std::array<Byte, 3 << MAX_BITS> rgb{};

  int size() const { return 3 * num; }
};

/// One picture of a file.
struct Picture {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  int bits = 0;  // minimum code size: pixels are below 2^bits
  Table colors;  // its own
  /// Row after row from the top, whatever the order in the file. A picture whose data end early is filled up; one that
  /// claims far more rows than its data hold ends with the last row there is, and so does `height`.
  std::vector<Byte> pixels;
  bool damaged = false;
};

/// Takes a GIF file apart, from front to back: pipes can be read as well.
class Reader {
 public:
  /// What follows in the file.
  enum Found { END, PICTURE, TEXT, DAMAGE };

  explicit Reader(File& file) : in(file) {}

  /// Signature, screen and global colours; 0 for a file that is no GIF, -1 for one that ends here.
  int readHeader();
  /// The next picture, decoded, or comment; other extensions are skipped on the way.
  Found next(Picture& picture);

  const Byte* getScreen() const { return screen.data(); }
  const Table& getColors() const { return colors; }
  /// The first sub-block of the comment that was found.
  std::string_view getComment() const { return comment; }
  /// Of the latest graphic control extension, -1 for none.
  int getTransparent() const { return transparent; }

  static constexpr int SCREEN_SIZE = 7;

 private:
  bool readBytes(Byte* bytes, int n);
  /// The length of the next sub-block (less where the file ends within), 0 for the terminator, -1 when the file ends.
  int readBlock(Byte* bytes);
  bool skipBlocks();
  bool readTable(Table& table, int flags);
  bool readExtension(bool& text);
  bool readPicture(Picture& picture);
  bool decode(Picture& picture, bool interlaced);

  File& in;
  std::array<Byte, SCREEN_SIZE> screen{};
  Table colors;
  std::array<char, MAX_BLOCK> commentBytes{};
  std::string_view comment;
  int transparent = -1;
};

}  // namespace Gif
}  // namespace KYV
#endif
