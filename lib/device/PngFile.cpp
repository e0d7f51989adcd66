#include "KYV/PngFile.h"

#include <png.h>
#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "ImageText.h"
#include "KYV/DateTool.h"
#include "KYV/File.h"
#include "KYV/FileTool.h"
#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr const char* SOFTWARE = "KYV - Kyvern v6.0";
constexpr int SIGNATURE = 8;                     // bytes
constexpr int PALETTE = 256;                     // entries
constexpr int MAX_DEFLATE = 1032;                // pixels' bytes that a byte of deflated data can hold
constexpr png_alloc_size_t MAX_CHUNK = 1 << 20;  // bytes of a text chunk, unpacked
constexpr int MAX_CHUNKS = 20;
constexpr png_alloc_size_t MAX_ALLOC = 8 << 20;  // bytes that the library may ask for at once: some rows, or a chunk

}  // namespace

// Everything that the library's long jumps pass over lives here, so that nothing is lost to them.
struct PngFile::State {
  File file;
  std::string name;
  int mode = READ;
  int level = -1;
  char title[40] = "KYV Graphic";
  char comment[1000] = "";

  png_structp png = nullptr;
  png_infop info = nullptr;
  std::jmp_buf jump;
  std::vector<unsigned char> row;
  std::vector<unsigned char> wide;  // pixels of four channels
  int file_depth = 0;               // bits of a channel in the file
  std::array<png_color, PALETTE> palette{};
  std::array<png_byte, PALETTE> alpha{};
  std::vector<std::pair<std::string, std::string>> texts;
  std::vector<png_text> chunks;
  bool damaged = false;
  int rows = 0;  // that were read

  static void fail(png_structp png, png_const_charp what) {
    auto* state = static_cast<State*>(png_get_error_ptr(png));
    Kyv::outDebug(2, "PNG: %s\n", what);
    state->damaged = true;
    std::longjmp(state->jump, 1);
  }
  static void warn(png_structp, png_const_charp what) { Kyv::outDebug(3, "PNG: %s\n", what); }
  static void take(png_structp png, png_bytep bytes, png_size_t n) {
    auto* state = static_cast<State*>(png_get_io_ptr(png));
    if (state->file.read(bytes, static_cast<int>(n)) != static_cast<int>(n)) png_error(png, "the file ends early");
  }
  static void put(png_structp png, png_bytep bytes, png_size_t n) {
    auto* state = static_cast<State*>(png_get_io_ptr(png));
    if (state->file.write(bytes, static_cast<int>(n)) != static_cast<int>(n)) png_error(png, "unable to write");
  }
  static void flush(png_structp) {}
  // The library would take the length that a chunk claims for what it has to read.
  static png_voidp allocate(png_structp, png_alloc_size_t n) { return n <= MAX_ALLOC ? std::malloc(n) : nullptr; }
  static void release(png_structp, png_voidp bytes) { std::free(bytes); }

  bool begin(bool writing);
  void end();
  void addText(const char* key, std::string_view text, std::size_t most);
  void setColors(const Image& image);
  bool putHeader(const Image& image);
  bool putRows(const Image& image);
  bool getHeader(std::int64_t size, int& width, int& height, int& channels);
  bool hasFaintEntries() const;
  bool getRows(Image& image, int channels);
  void splitAlpha(Image& image) const;
  void getColors(Image& image);
  void getTexts(Image& image);
};

bool PngFile::State::begin(bool writing) {
  damaged = false;
  texts.clear();
  png = writing ? png_create_write_struct(PNG_LIBPNG_VER_STRING, this, fail, warn)
                : png_create_read_struct_2(PNG_LIBPNG_VER_STRING, this, fail, warn, nullptr, allocate, release);
  info = png ? png_create_info_struct(png) : nullptr;
  if (!info) {
    end();
    return false;
  }
  if (writing) {
    png_set_write_fn(png, this, put, flush);
  } else {
    png_set_read_fn(png, this, take);
    png_set_user_limits(png, Image::MAX_SIZE, Image::MAX_SIZE);
    png_set_chunk_malloc_max(png, MAX_CHUNK);
    png_set_chunk_cache_max(png, MAX_CHUNKS);
  }
  return true;
}

void PngFile::State::end() {
  if (!png) return;
  if (mode == WRITE) {
    png_destroy_write_struct(&png, &info);
  } else {
    png_destroy_read_struct(&png, &info, nullptr);
  }
  png = nullptr;
  info = nullptr;
}

// Writing.

void PngFile::State::addText(const char* key, std::string_view text, std::size_t most) {
  if (!text.empty()) texts.emplace_back(key, std::string(text.substr(0, most)));
}

// The palette of an indexed image; levels of grey without colours.
void PngFile::State::setColors(const Image& image) {
  const int num = image.getColorType() == Image::INDEXED ? image.getNumColor() : 0;
  if (num == 0 && image.getColorType() == Image::INDEXED) Kyv::outDebug(3, "No colors, adding gray scale\n");
  for (int i = 0; i < PALETTE; ++i) {
    const auto grey = static_cast<std::uint32_t>(i) * 0x010101u;
    const std::uint32_t packed = num == 0 ? grey : i < num ? image.getColorVal(i) : 0u;
    palette[static_cast<std::size_t>(i)] = {static_cast<png_byte>(packed >> 16), static_cast<png_byte>(packed >> 8),
                                            static_cast<png_byte>(packed)};
  }
  alpha.fill(255);
}

bool PngFile::State::putHeader(const Image& image) {
  const bool direct = image.getColorType() == Image::DIRECT;
  if (setjmp(jump)) return false;
  png_set_IHDR(png, info, static_cast<png_uint_32>(image.getWidth()), static_cast<png_uint_32>(image.getHeight()), 8,
               direct ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  const int clear = image.getTransColor();
  if (direct) {
    if (clear >= 0) {
      png_color_16 color = {};
      color.red = static_cast<png_uint_16>(clear >> 16 & 255);
      color.green = static_cast<png_uint_16>(clear >> 8 & 255);
      color.blue = static_cast<png_uint_16>(clear & 255);
      png_set_tRNS(png, info, nullptr, 0, &color);
    }
  } else {
    png_set_PLTE(png, info, palette.data(), PALETTE);
    if (clear >= 0 && clear < PALETTE) {
      alpha[static_cast<std::size_t>(clear)] = 0;
      png_set_tRNS(png, info, alpha.data(), PALETTE, nullptr);
    }
  }
  if (level >= 0) png_set_compression_level(png, level);
  png_set_text(png, info, chunks.data(), static_cast<int>(chunks.size()));
  png_write_info(png, info);
  return true;
}

bool PngFile::State::putRows(const Image& image) {
  if (setjmp(jump)) return false;
  for (int y = 0; y < image.getHeight(); ++y) {
    if (image.getColorType() == Image::DIRECT) {
      for (int x = 0; x < image.getWidth(); ++x) {
        const std::uint32_t packed = image.getPixel(x, y);
        for (int i = 0; i < 3; ++i)
          row[static_cast<std::size_t>(3 * x + i)] = static_cast<unsigned char>(packed >> (16 - 8 * i));
      }
    } else {
      image.getRow(y, row.data());
    }
    png_write_row(png, row.data());
  }
  png_write_end(png, info);
  return true;
}

int PngFile::write(const Image& given) {
  State& s = *state;
  if (!isOpen() || s.mode != WRITE || !given.validData() || given.getWidth() <= 0 || given.getHeight() <= 0) return 0;
  // Indices of 16 bits have no place in a palette.
  Image reduced;
  const bool wide = given.getColorType() != Image::DIRECT && given.getBitsPixel() != 8;
  if (wide) {
    reduced = given;
    if (!reduced.reduceColors()) return 0;
  }
  const Image& image = wide ? reduced : given;
  if (!s.begin(true)) return 0;
  String now, domain;
  DateTool::getCurrent("RFC1123", now);
  if (image.getDomain().isSet()) image.getDomain().toString(domain);
  s.addText("Title", s.title, sizeof s.title);
  s.addText("Software", SOFTWARE, std::strlen(SOFTWARE));
  s.addText("Creation Time", now.view(), 49);
  s.addText("Date/Time", image.getDatim(), 49);
  s.addText("Information", image.getInfo(), 79);
  s.addText("Plot Domain", domain.view(), 149);
  s.addText("Comment", s.comment, sizeof s.comment);
  s.chunks.clear();
  for (auto& [key, text] : s.texts) {
    png_text chunk = {};
    chunk.compression = PNG_TEXT_COMPRESSION_NONE;
    chunk.key = key.data();
    chunk.text = text.data();
    s.chunks.push_back(chunk);
  }
  s.setColors(image);
  s.row.resize(
      std::max(static_cast<std::size_t>(image.getBytesLine()), 3 * static_cast<std::size_t>(image.getWidth())));
  const bool written = s.putHeader(image) && s.putRows(image);
  s.end();
  if (!written) {
    Kyv::outWarning("PngFile: unable to write all of %s%s\n", s.name.c_str(), s.file.getReason().get());
    s.file.discard();
  }
  return written ? 1 : 0;
}

// Reading.

bool PngFile::State::getHeader(std::int64_t size, int& width, int& height, int& channels) {
  if (setjmp(jump)) return false;
  png_read_info(png, info);
  png_uint_32 w = 0, h = 0;
  int depth = 0, type = 0, interlace = 0, compression = 0, filter = 0;
  png_get_IHDR(png, info, &w, &h, &depth, &type, &interlace, &compression, &filter);
  file_depth = depth;
  Kyv::outDebug(2, "Width: %u\n", static_cast<unsigned>(w));
  Kyv::outDebug(2, "Height: %u\n", static_cast<unsigned>(h));
  Kyv::outDebug(2, "Depth: %d\n", depth);
  Kyv::outDebug(2, "Color Type: %d\n", type);
  Kyv::outDebug(2, "Interlace: %d\n", interlace);
  Kyv::outDebug(2, "Compression: %d\n", compression);
  Kyv::outDebug(2, "Filter: %d\n", filter);
  width = static_cast<int>(w);
  height = static_cast<int>(h);
  // A size is a claim: the file must be able to hold it.
  const auto most = size > 0 ? size * MAX_DEFLATE : std::int64_t{1} << 28;
  if (static_cast<std::int64_t>(png_get_rowbytes(png, info)) * height > most) png_error(png, "larger than its file");
  // Of 16 bits a clear colour can be told only before half of them go; a clear entry of a palette stays an index.
  const bool clear = png_get_valid(png, info, PNG_INFO_tRNS) != 0;
  if ((clear && depth == 16) || (clear && type == PNG_COLOR_TYPE_PALETTE && hasFaintEntries())) {
    png_set_expand(png);
    type |= PNG_COLOR_MASK_ALPHA;
  }
  if (depth == 16) png_set_strip_16(png);
  if (depth < 8) png_set_packing(png);
  if (type == PNG_COLOR_TYPE_GRAY && depth < 8) png_set_expand_gray_1_2_4_to_8(png);
  if (type & PNG_COLOR_MASK_ALPHA) png_set_gray_to_rgb(png);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  channels = png_get_channels(png, info);
  return true;
}

// Whether the palette has more than one entry that is not opaque, or one that is not clear: a transparent index cannot
// tell these.
bool PngFile::State::hasFaintEntries() const {
  png_bytep parts = nullptr;
  int num = 0;
  png_color_16p color = nullptr;
  if (!png_get_tRNS(png, info, &parts, &num, &color) || !parts) return false;
  const auto faint = [](png_byte part) { return part > 0 && part < 255; };
  return std::any_of(parts, parts + num, faint) || std::count(parts, parts + num, png_byte{0}) > 1;
}

// Reads the pixels; a fourth channel says how much of each is seen.
bool PngFile::State::getRows(Image& image, int channels) {
  const auto line = static_cast<std::size_t>(image.getWidth()) * static_cast<std::size_t>(channels);
  const auto height = static_cast<std::size_t>(image.getHeight());
  if (channels == 4) wide.assign(line * height, 0);
  unsigned char* const to = channels == 4 ? wide.data() : image.getData().data();
  const int passes = png_get_interlace_type(png, info) == PNG_INTERLACE_NONE ? 1 : 7;
  if (setjmp(jump)) return false;
  if (png_get_rowbytes(png, info) != line) png_error(png, "rows of another size");
  for (int pass = 0; pass < passes; ++pass) {
    for (int y = 0; y < image.getHeight(); ++y) {
      png_read_row(png, to + static_cast<std::size_t>(y) * line, nullptr);
      rows = std::max(rows, y + 1);
    }
  }
  png_read_end(png, info);
  return true;
}

// Parts the four channels.
void PngFile::State::splitAlpha(Image& image) const {
  if (wide.empty() || !image.allocAlpha()) return;
  const unsigned char* from = wide.data();
  unsigned char* to = image.getData().data();
  for (int y = 0; y < image.getHeight(); ++y) {
    for (int x = 0; x < image.getWidth(); ++x, from += 4, to += 3) {
      std::copy_n(from, 3, to);
      image.setAlpha(x, y, from[3]);
    }
  }
}

void PngFile::State::getColors(Image& image) {
  png_colorp entries = nullptr;
  int num = 0;
  png_bytep clear = nullptr;
  int numClear = 0;
  png_color_16p color = nullptr;
  const bool hasClear = png_get_tRNS(png, info, &clear, &numClear, &color) != 0;
  Kyv::outDebug(3, "TRANS: %d %p %d %p\n", hasClear, static_cast<void*>(clear), numClear, static_cast<void*>(color));
  if (png_get_PLTE(png, info, &entries, &num) && image.getColorType() == Image::INDEXED) {
    image.allocColors(num);
    for (int i = 0; i < num; ++i) {
      image.setColorVal(i, static_cast<std::uint32_t>(entries[i].red << 16 | entries[i].green << 8 | entries[i].blue));
    }
    for (int i = numClear - 1; hasClear && clear && i >= 0; --i) {
      if (clear[i] == 0) image.setTransColor(i);
    }
  } else if (hasClear && color && !image.validAlpha()) {
    // Levels of grey below 8 bits have been spread over them.
    const int grey = file_depth < 8 ? color->gray * 255 / ((1 << file_depth) - 1) : color->gray;
    image.setTransColor(image.getColorType() == Image::DIRECT
                            ? (color->red & 255) << 16 | (color->green & 255) << 8 | (color->blue & 255)
                            : grey & 255);
  }
}

void PngFile::State::getTexts(Image& image) {
  png_textp entries = nullptr;
  int num = 0;
  png_get_text(png, info, &entries, &num);
  for (int i = 0; i < num; ++i) {
    const std::string_view key(entries[i].key);
    const std::string_view text(entries[i].text ? entries[i].text : "");
    if (key == "Comment") {
      Kyv::outDebug(2, "Comment: %s\n", std::string(text).c_str());
      ImageText::decode(image, text);
    } else if (key == "Plot Domain") {
      ImageText::setDomain(image, text);
    } else if (key == "Information") {
      ImageText::setTitle(image, text);
    } else if (key == "Date/Time") {
      ImageText::setLabel(image, text);
    }
  }
}

int PngFile::read(Image& image) {
  State& s = *state;
  if (!isOpen() || s.mode != READ) return 0;
  image.init();
  const std::int64_t size = FileTool::getSize(s.name.c_str());
  unsigned char signature[SIGNATURE] = {};
  if (s.file.read(signature, SIGNATURE) != SIGNATURE || png_sig_cmp(signature, 0, SIGNATURE) != 0) {
    Kyv::outWarning("Not a PNG file: %s\n", s.name.c_str());
    return 0;
  }
  if (!s.begin(false)) return 0;
  png_set_sig_bytes(s.png, SIGNATURE);
  int width = 0, height = 0, channels = 0;
  s.rows = 0;
  bool whole = false;
  if (s.getHeader(size, width, height, channels)) {
    const bool indexed = png_get_color_type(s.png, s.info) == PNG_COLOR_TYPE_PALETTE;
    const bool direct = channels >= 3;
    image.set(width, height, direct ? 24 : 8);
    image.setByteOrder(1);
    image.setColorType(direct ? Image::DIRECT : indexed ? Image::INDEXED : Image::GREY);
    if ((channels == 1 || direct) && image.allocData()) {
      whole = s.getRows(image, channels);
      s.splitAlpha(image);
      s.getColors(image);
      s.getTexts(image);
    }
  }
  s.end();
  if (!whole) {
    Kyv::outWarning("PngFile: %s is damaged, %d rows were read\n", s.name.c_str(), s.rows);
    if (s.rows == 0) image.init();
  }
  return s.rows > 0 ? 1 : 0;
}

// The rest.

const char* PngFile::getLibrary() { return png_get_libpng_ver(nullptr); }

PngFile::PngFile() : state(std::make_unique<State>()) {}

PngFile::~PngFile() { close(); }

int PngFile::open(const char* name, int mode) {
  close();
  state->name = StrLib::valid(name, "");
  state->mode = mode;
  const int opened = mode == WRITE ? state->file.open(name, "w") : state->file.openData(name);
  if (!opened) Kyv::outWarning("Unable to open PNG file: %s\n", state->name.c_str());
  return opened;
}

bool PngFile::isOpen() const { return state->file.isOpen(); }

int PngFile::setInterlace(int) { return 1; }

int PngFile::setCompression(int level) { return state->level = std::clamp(level, -1, 9), 1; }

int PngFile::setTitle(const char* text) { return StrLib::copy(state->title, text); }

int PngFile::setComment(const char* text) { return StrLib::copy(state->comment, text); }

int PngFile::read(const char* name, Image& image) {
  if (!open(name, READ)) return 0;
  const int result = read(image);
  close();
  return result;
}

int PngFile::write(const char* name, const Image& image) {
  if (!open(name, WRITE)) return 0;
  const int result = write(image);
  return close() && result;
}

int PngFile::close() {
  if (!isOpen()) return 1;
  return state->file.close();
}

}  // namespace KYV
