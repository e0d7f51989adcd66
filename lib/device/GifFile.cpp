#include "KYV/GifFile.h"

#include <algorithm>
#include <string>

#include "GifFormat.h"
#include "ImageText.h"
#include "KYV/File.h"
#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "KYV/String.h"

namespace KYV {

using Gif::Byte;

namespace {

constexpr int MAX_HALF = 65535;
constexpr int MIN_CODE_SIZE = 2;
constexpr int PICTURE_DELAY = 10;  // hundredths of a second, in the control extension of a single picture
constexpr const char* NOT_OPENED = "Unable to open GIF file: %s\n";
constexpr const char* NO_PICTURE = "No image that can be read in GIF file: %s\n";
constexpr const char* DAMAGED = "Damaged GIF file: %s: %dx%d pixels are kept\n";

}  // namespace

struct GifFile::State {
  enum Content { NOTHING, PICTURE, ANIMATION };

  File file;
  std::string name;
  int mode = READ;
  Content content = NOTHING;
  bool interlaced = false;
  int trans = -1;
  int delay = 50;
  int loop = 0;

  template <std::size_t N>
  void put(const Byte (&bytes)[N]) {
    file.write(bytes, static_cast<int>(N));
  }
  void putBlock(std::string_view text);
  void putControl(int flags, int hundredths, int index);
  void putDescriptor(int left, int top, int width, int height, const Gif::Table& colors);
  void putHeader(const Byte* screen, const Gif::Table& colors);
  const Image* asIndices(const Image& image, Image& reduced) const;
  void putFrame(const Gif::Picture& picture, const Gif::Table& global);
  void putPicture(const Image& image, bool frame);
};

void GifFile::State::putBlock(std::string_view text) {
  const int length = static_cast<int>(std::min<std::size_t>(text.size(), Gif::MAX_BLOCK));
  put({static_cast<Byte>(length)});
  file.write(text.data(), length);
}

void GifFile::State::putControl(int flags, int hundredths, int index) {
  Byte bytes[] = {Gif::EXTENSION, Gif::CONTROL, 4, static_cast<Byte>(flags), 0, 0, static_cast<Byte>(index), 0};
  Gif::putHalf(&bytes[4], hundredths);
  put(bytes);
}

// With the picture's own colours, if any.
void GifFile::State::putDescriptor(int left, int top, int width, int height, const Gif::Table& colors) {
  Byte bytes[10] = {Gif::IMAGE};
  Gif::putHalf(&bytes[1], left);
  Gif::putHalf(&bytes[3], top);
  Gif::putHalf(&bytes[5], width);
  Gif::putHalf(&bytes[7], height);
  bytes[9] = static_cast<Byte>((colors.num ? Gif::TABLE | (Gif::tableBits(colors.num) - 1) : 0) |
                               (interlaced ? Gif::INTERLACED : 0));
  put(bytes);
  file.write(colors.rgb.data(), colors.size());
}

// Of an animation: as of its first picture, and the extension that makes it run again.
void GifFile::State::putHeader(const Byte* screen, const Gif::Table& colors) {
  file.write("GIF89a", Gif::SIGNATURE_SIZE);
  file.write(screen, Gif::Reader::SCREEN_SIZE);
  file.write(colors.rgb.data(), colors.size());
  put({Gif::EXTENSION, Gif::APPLICATION});
  putBlock("NETSCAPE2.0");
  Byte again[] = {3, 1, 0, 0, 0};
  Gif::putHalf(&again[2], loop);
  put(again);
}

void GifFile::State::putFrame(const Gif::Picture& picture, const Gif::Table& global) {
  putControl(Gif::LEAVE_IN_PLACE, delay, 0);
  putDescriptor(picture.left, picture.top, picture.width, picture.height, picture.colors.num ? picture.colors : global);
  Gif::Encoder encoder(file, std::max(picture.bits, MIN_CODE_SIZE));
  const std::size_t width = static_cast<std::size_t>(picture.width);
  Gif::Rows rows(picture.height, interlaced);
  for (int y = rows.next(); y >= 0; y = rows.next()) {
    encoder.add({picture.pixels.data() + static_cast<std::size_t>(y) * width, width});
  }
  encoder.finish();
}

// An image as the format has it: indices of a byte, or levels of grey without a table beside them. `reduced` holds it
// where it had to be changed; null, with a warning, when it has no pixels.
const Image* GifFile::State::asIndices(const Image& image, Image& reduced) const {
  const bool plain = image.getColorType() == Image::INDEXED || image.getNumColor() == 0;
  const bool fits = image.getBitsPixel() == 8 && image.getColorType() != Image::DIRECT && plain;
  const Image* source = &image;
  if (!fits || (image.getTransColor() < 0 && trans >= 0)) {
    reduced = image;
    // Before colours are reduced: what is transparent is said in terms of the image.
    if (image.getTransColor() < 0) reduced.setTransColor(trans);
    if (!fits && !reduced.reduceColors()) reduced.clearData();
    source = &reduced;
  }
  const std::size_t size =
      static_cast<std::size_t>(source->getHeight()) * static_cast<std::size_t>(source->getBytesLine());
  if (size > 0 && source->getData().size() >= size) return source;
  Kyv::outWarning("No pixels to write to GIF file: %s\n", name.c_str());
  return nullptr;
}

// An indexed image of 8 bits, as the only picture of the file or as a frame.
void GifFile::State::putPicture(const Image& image, bool frame) {
  const int width = image.getWidth(), height = image.getHeight(), transparent = image.getTransColor();
  const bool clear = transparent >= 0 && transparent <= 255;
  // Without a table the indices are levels of grey.
  const bool grey = image.getNumColor() == 0;
  const int colors = grey ? 256 : std::min(image.getNumColor(), 256);
  // A transparent index beyond the colours has an entry as well.
  const int bits = Gif::tableBits(clear ? std::max(colors, transparent + 1) : colors);
  const int codeSize = std::max(bits, MIN_CODE_SIZE);

  Gif::Table table;
  table.num = 1 << bits;
  for (int i = 0; i < colors; ++i) {
    const std::uint32_t packed = grey ? static_cast<std::uint32_t>(i) * 0x010101u : image.getColorVal(i);
    Byte* rgb = &table.rgb[3 * static_cast<std::size_t>(i)];
    for (int part = 0; part < 3; ++part) rgb[part] = static_cast<Byte>(packed >> (16 - 8 * part));
  }
  Kyv::outDebug(3, "width: %d\n", width);
  Kyv::outDebug(3, "height: %d\n", height);
  Kyv::outDebug(3, "depth: %d\n", image.getDepth());
  Kyv::outDebug(3, "bytes_per_line: %d\n", image.getBytesLine());
  Kyv::outDebug(3, "trans_color: %d\n", transparent);
  Kyv::outDebug(3, "num_color: %d\n", image.getNumColor());
  Kyv::outDebug(4, "num_color+: %d\n", table.num);
  Kyv::outDebug(4, "code_size: %d\n", codeSize);

  Byte screen[Gif::Reader::SCREEN_SIZE] = {};
  Gif::putHalf(&screen[0], width);
  Gif::putHalf(&screen[2], height);
  screen[4] = static_cast<Byte>(Gif::TABLE | (bits - 1) << 4 | (bits - 1));
  if (frame) {
    if (content == NOTHING) putHeader(screen, table);
    putControl(Gif::LEAVE_IN_PLACE, delay, 0);
    putDescriptor(0, 0, width, height, table);
  } else {
    file.write("GIF89a", Gif::SIGNATURE_SIZE);
    put(screen);
    file.write(table.rgb.data(), table.size());
    for (const std::string& line : ImageText::encode(image)) {
      put({Gif::EXTENSION, Gif::COMMENT});
      putBlock(line);
      put({0});
    }
    if (clear) putControl(Gif::TRANSPARENT, PICTURE_DELAY, transparent);
    putDescriptor(0, 0, width, height, {});
  }

  // An index beyond the colours shows as the last of them.
  std::array<Byte, 256> shown;
  for (int i = 0; i < 256; ++i) {
    shown[static_cast<std::size_t>(i)] = static_cast<Byte>(i == transparent ? i : std::min(i, colors - 1));
  }
  std::vector<Byte> row(static_cast<std::size_t>(image.getBytesLine()));
  Gif::Encoder encoder(file, codeSize);
  Gif::Rows rows(height, interlaced);
  for (int y = rows.next(); y >= 0; y = rows.next()) {
    image.getRow(y, row.data());
    for (Byte& pixel : row) pixel = shown[pixel];
    encoder.add({row.data(), static_cast<std::size_t>(width)});
  }
  encoder.finish();
  if (!frame) put({Gif::TRAILER});
}

GifFile::GifFile() : state(std::make_unique<State>()) {}

GifFile::~GifFile() { close(); }

int GifFile::open(const char* name, int mode) {
  close();
  state->name = StrLib::valid(name, "");
  state->mode = mode;
  state->content = State::NOTHING;
  const bool opened = mode == READ    ? state->file.openData(name) != 0
                      : mode == WRITE ? state->file.open(name, File::WRITE) != 0
                                      : false;
  if (opened) return 1;
  Kyv::outWarning(NOT_OPENED, state->name.c_str());
  return 0;
}

bool GifFile::isOpen() const { return state->file.isOpen(); }

int GifFile::setInterlace(int on) { return state->interlaced = on != 0, 1; }

int GifFile::setTransColor(int value) { return state->trans = value, 1; }

int GifFile::setDelay(int hundredths) {
  if (hundredths < 0 || hundredths > MAX_HALF) return 0;
  return state->delay = hundredths, 1;
}

int GifFile::setLoop(int times) {
  if (times < 0 || times > MAX_HALF) return 0;
  return state->loop = times, 1;
}

int GifFile::read(Image& image) {
  if (!isOpen() || state->mode != READ) return 0;
  const char* name = state->name.c_str();
  Gif::Reader reader(state->file);
  const int known = reader.readHeader();
  if (known <= 0) {
    Kyv::outWarning(known == 0 ? "GIF_read: Not a GIF file: %s\n" : NO_PICTURE, name);
    return 0;
  }
  Image next;
  next.setInfo("GIF");
  Gif::Picture picture;
  Gif::Reader::Found found = reader.next(picture);
  for (; found == Gif::Reader::TEXT; found = reader.next(picture)) ImageText::decode(next, reader.getComment());
  if (found != Gif::Reader::PICTURE) {
    Kyv::outWarning(NO_PICTURE, name);
    return 0;
  }
  if (picture.damaged) Kyv::outWarning(DAMAGED, name, picture.width, picture.height);
  next.set(picture.width, picture.height, 8);
  next.getData() = std::move(picture.pixels);
  const Gif::Table& table = picture.colors.num ? picture.colors : reader.getColors();
  next.allocColors(table.num);
  for (int i = 0; i < table.num; ++i) {
    const Byte* rgb = &table.rgb[3 * static_cast<std::size_t>(i)];
    next.setColorVal(i, static_cast<std::uint32_t>(rgb[0] << 16 | rgb[1] << 8 | rgb[2]));
  }
  next.setTransColor(reader.getTransparent());
  image = std::move(next);
  return 1;
}

int GifFile::write(const Image& image) {
  if (!isOpen() || state->mode != WRITE) return 0;
  if (state->content != State::NOTHING) {
    Kyv::outWarning("A picture was written before to GIF file: %s\n", state->name.c_str());
    return 0;
  }
  Image reduced;
  const Image* source = state->asIndices(image, reduced);
  if (!source) return 0;
  state->content = State::PICTURE;
  state->putPicture(*source, false);
  return state->file.isError() ? 0 : 1;
}

int GifFile::addFrame(const Image& image) {
  if (!isOpen() || state->mode != WRITE || state->content == State::PICTURE) return 0;
  Image reduced;
  const Image* source = state->asIndices(image, reduced);
  if (!source) return 0;
  state->putPicture(*source, true);
  state->content = State::ANIMATION;
  return state->file.isError() ? 0 : 1;
}

int GifFile::write(const char* gif) {
  if (!isOpen() || state->mode != WRITE) return 0;
  if (state->content == State::PICTURE) {
    Kyv::outWarning("A picture was written before to GIF file: %s\n", state->name.c_str());
    return 0;
  }
  gif = StrLib::valid(gif, "");
  Kyv::outMessage(6, "Processing: %s\n", gif);
  File input;
  // Frames may be named by a list: none of them starts a command.
  if (!input.openData(gif)) {
    Kyv::outWarning(NOT_OPENED, gif);
    return 0;
  }
  Gif::Reader reader(input);
  const int known = reader.readHeader();
  if (known == 0) {
    Kyv::outWarning("Not a GIF file\n");
    return 0;
  }
  Gif::Picture picture;
  int frames = 0;
  while (known == 1) {
    const Gif::Reader::Found found = reader.next(picture);
    if (found == Gif::Reader::TEXT) continue;
    if (found != Gif::Reader::PICTURE) break;
    if (picture.damaged) Kyv::outWarning(DAMAGED, gif, picture.width, picture.height);
    if (state->content == State::NOTHING) state->putHeader(reader.getScreen(), reader.getColors());
    state->content = State::ANIMATION;
    state->putFrame(picture, reader.getColors());
    ++frames;
    // Rows were made up: a file of nothing but such pictures would go on for ever.
    if (picture.damaged) break;
  }
  if (frames == 0) Kyv::outWarning(NO_PICTURE, gif);
  return frames > 0 && !state->file.isError() ? 1 : 0;
}

int GifFile::close() {
  if (!isOpen()) return 1;
  if (state->content == State::ANIMATION) state->put({Gif::TRAILER});
  // A file without a picture is none.
  if (state->mode == WRITE && state->content == State::NOTHING) state->file.discard();
  state->content = State::NOTHING;
  if (state->file.close()) return 1;
  Kyv::outWarning("Unable to write GIF file: %s%s\n", state->name.c_str(), state->file.getReason().get());
  return 0;
}

void GifFile::discard() { state->file.discard(); }

}  // namespace KYV
