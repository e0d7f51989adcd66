#include <algorithm>
#include <cstring>

#include "GifFormat.h"
#include "KYV/File.h"
#include "KYV/Image.h"
#include "KYV/Kyv.h"

namespace KYV::Gif {

namespace {

// Rows that a damaged picture lacks are made up for a raster of this size, or one that is not larger than what was
// decoded by so much. Beyond, a few bytes of a file would ask for all memory.
constexpr std::size_t FREE_PIXELS = std::size_t{16} * 1024 * 1024;
constexpr std::size_t FREE_RATIO = 16;
constexpr std::size_t FIRST_ROOM = std::size_t{1024} * 1024;

// Puts pixels that come in the order of the file to their rows. The raster grows with them, not with the claim.
class Raster {
 public:
  Raster(Picture& p, bool interlaced)
      : pixels(p.pixels),
        width(static_cast<std::size_t>(p.width)),
        full(width * static_cast<std::size_t>(p.height)),
        rows(p.height, interlaced) {
    pixels.clear();
  }

  // False when the raster is full.
  bool add(const Byte* from, std::size_t n) {
    while (n > 0) {
      if (left == 0 && !nextRow()) return false;
      const std::size_t part = std::min(n, left);
      std::memcpy(pixels.data() + at, from, part);
      from += part;
      n -= part;
      at += part;
      left -= part;
      decoded += part;
    }
    return true;
  }

  bool isFull() const { return decoded == full; }
  bool isEmpty() const { return decoded == 0; }

  // The height, after what is missing was filled up.
  int complete() {
    if (full <= std::max(FREE_PIXELS, FREE_RATIO * decoded)) pixels.resize(full);
    return static_cast<int>(pixels.size() / width);
  }

 private:
  bool nextRow() {
    const int row = rows.next();
    if (row < 0) return false;
    at = static_cast<std::size_t>(row) * width;
    left = width;
    const std::size_t need = at + width;
    if (need > pixels.capacity()) pixels.reserve(std::min(full, std::max(2 * need, FIRST_ROOM)));
    if (need > pixels.size()) pixels.resize(need);
    return true;
  }

  std::vector<Byte>& pixels;
  std::size_t width;
  std::size_t full;
  Rows rows;
  std::size_t at = 0;    // of the next pixel
  std::size_t left = 0;  // pixels of the row
  std::size_t decoded = 0;
};

// Codes to strings of pixels.
class Decoder {
 public:
  explicit Decoder(int size) : bits(size), clearCode(1 << size) {
    for (int i = 0; i < clearCode; ++i) suffix[static_cast<std::size_t>(i)] = static_cast<Byte>(i);
    clear();
  }

  enum Result { MORE, DONE, BAD };

  // Takes the bytes of one sub-block.
  Result add(std::span<const Byte> bytes, Raster& raster) {
    for (const Byte byte : bytes) {
      acc |= static_cast<std::uint32_t>(byte) << accBits;
      accBits += 8;
      while (accBits >= width) {
        const int code = static_cast<int>(acc & ((1u << width) - 1));
        acc >>= width;
        accBits -= width;
        const Result result = take(code, raster);
        if (result != MORE) return result;
      }
    }
    return MORE;
  }

 private:
  static constexpr int NONE = -1;

  void clear() {
    nextCode = clearCode + 2;
    width = bits + 1;
    previous = NONE;
  }

  Result take(int code, Raster& raster) {
    if (code == clearCode) return clear(), MORE;
    if (code == clearCode + 1) return DONE;
    if (code > nextCode || (previous == NONE && code > clearCode)) return BAD;

    // From the back: the last pixel of a string is its suffix, the others are the string before it. The one code that
    // is not known yet stands for the string before with its own first pixel behind it.
    std::size_t from = text.size();
    int part = code;
    if (code == nextCode) {
      // A full table has no such code: codes end before it.
      text[--from] = first;
      part = previous;
    }
    for (; part > clearCode; part = prefix[static_cast<std::size_t>(part)]) {
      text[--from] = suffix[static_cast<std::size_t>(part)];
    }
    first = suffix[static_cast<std::size_t>(part)];
    text[--from] = first;
    if (previous != NONE && nextCode < MAX_CODES) {
      prefix[static_cast<std::size_t>(nextCode)] = static_cast<std::uint16_t>(previous);
      suffix[static_cast<std::size_t>(nextCode)] = first;
      ++nextCode;
    }
    if (nextCode >= 1 << width && width < MAX_WIDTH) ++width;
    previous = code;
    return raster.add(text.data() + from, text.size() - from) ? MORE : DONE;
  }

  int bits;
  int clearCode;
  int width = 0;
  int nextCode = 0;
  int previous = NONE;
  Byte first = 0;  // pixel of the previous string
  std::uint32_t acc = 0;
  int accBits = 0;
  std::array<std::uint16_t, MAX_CODES> prefix;
  std::array<Byte, MAX_CODES> suffix;
  std::array<Byte, MAX_CODES + 1> text;
};

}  // namespace

bool Reader::readBytes(Byte* bytes, int n) { return in.read(bytes, n) == n; }

int Reader::readBlock(Byte* bytes) {
  Byte length = 0;
  if (!readBytes(&length, 1)) return -1;
  if (length == 0) return 0;
  const int n = in.read(bytes, length);
  return n > 0 ? n : -1;
}

bool Reader::skipBlocks() {
  std::array<Byte, MAX_BLOCK> bytes;
  int length = 0;
  while ((length = readBlock(bytes.data())) > 0) {
  }
  return length == 0;
}

bool Reader::readTable(Table& table, int flags) {
  table.num = flags & TABLE ? 2 << (flags & 7) : 0;
  return table.num == 0 || readBytes(table.rgb.data(), table.size());
}

int Reader::readHeader() {
  std::array<Byte, SIGNATURE_SIZE> signature{};
  if (!readBytes(signature.data(), SIGNATURE_SIZE) || std::memcmp(signature.data(), "GIF", 3) != 0) return 0;
  return readBytes(screen.data(), SCREEN_SIZE) && readTable(colors, screen[4]) ? 1 : -1;
}

Reader::Found Reader::next(Picture& picture) {
  for (;;) {
    Byte block = 0;
    if (!readBytes(&block, 1)) return DAMAGE;
    bool text = false;
    switch (block) {
      case EXTENSION:
        if (!readExtension(text)) return DAMAGE;
        if (text) return TEXT;
        break;
      case IMAGE:
        return readPicture(picture) ? PICTURE : DAMAGE;
      case TRAILER:
        return END;
      case 0:  // a terminator too many, which some programs write
        break;
      default:
        return DAMAGE;
    }
  }
}

bool Reader::readExtension(bool& text) {
  std::array<Byte, MAX_BLOCK> bytes{};
  Byte label = 0;
  if (!readBytes(&label, 1)) return false;
  const int length = readBlock(bytes.data());
  if (length < 0) return false;
  if (label == CONTROL) {
    Kyv::outDebug(2, "Graphics Control Extension\n");
    if (length >= 4) {
      transparent = bytes[0] & TRANSPARENT ? bytes[3] : -1;
      Kyv::outDebug(2, "flags: %d\ndelay: %d\ntrans_color: %d\n", bytes[0], getHalf(bytes.data() + 1), transparent);
    }
  } else if (label == COMMENT) {
    std::transform(bytes.begin(), bytes.begin() + length, commentBytes.begin(),
                   [](Byte b) { return static_cast<char>(b); });
    comment = {commentBytes.data(), static_cast<std::size_t>(length)};
    text = true;
    Kyv::outDebug(2, "Comment Data\n");
    Kyv::outDebug(2, "%.*s\n", length, commentBytes.data());
  } else if (label == APPLICATION) {
    Kyv::outDebug(2, "Application Extension\n");
    Kyv::outDebug(2, "%.11s\n", reinterpret_cast<const char*>(bytes.data()));
  }
  return length == 0 || skipBlocks();
}

bool Reader::readPicture(Picture& picture) {
  std::array<Byte, 9> bytes{};
  Byte bits = 0;
  if (!readBytes(bytes.data(), static_cast<int>(bytes.size())) || !readTable(picture.colors, bytes[8]) ||
      !readBytes(&bits, 1)) {
    return false;
  }
  picture.left = getHalf(&bytes[0]);
  picture.top = getHalf(&bytes[2]);
  picture.width = getHalf(&bytes[4]);
  picture.height = getHalf(&bytes[6]);
  picture.bits = bits;
  if (bits < 1 || bits > MAX_BITS || picture.width < 1 || picture.height < 1 || picture.width > Image::MAX_SIZE ||
      picture.height > Image::MAX_SIZE) {
    return false;
  }
  return decode(picture, bytes[8] & INTERLACED);
}

// False when there is not one pixel.
bool Reader::decode(Picture& picture, bool interlaced) {
  Decoder decoder(picture.bits);
  Raster raster(picture, interlaced);
  std::array<Byte, MAX_BLOCK> bytes;
  int length = 0;
  Decoder::Result result = Decoder::MORE;
  // What follows the last code is skipped up to the terminator.
  while ((length = readBlock(bytes.data())) > 0) {
    if (result != Decoder::MORE) continue;
    result = decoder.add({bytes.data(), static_cast<std::size_t>(length)}, raster);
    if (raster.isFull()) result = Decoder::DONE;
  }
  picture.damaged = !raster.isFull();
  if (raster.isEmpty()) return false;
  picture.height = raster.complete();
  return true;
}

}  // namespace KYV::Gif
