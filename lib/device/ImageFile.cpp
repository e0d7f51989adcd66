#include "KYV/ImageFile.h"

#include <algorithm>
#include <cstring>

#include "KYV/File.h"
#include "KYV/GifFile.h"
#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "KYV/PngFile.h"

namespace KYV {

namespace {

constexpr int MAGIC = 10;  // bytes that tell a format
constexpr int FAST = 1;    // zlib's level for PNG files
constexpr const char* NOT_READ =
    "ImageFile: %s is in a format that this program does not read, give a GIF or PNG file\n";
constexpr const char* NOT_WRITTEN =
    "ImageFile: %s would be in a format that this program does not write, name a .gif or .png file\n";

struct Magic {
  int at;
  const char* bytes;
  int length;
  ImageFile::Type type;
};
constexpr Magic MAGICS[] = {{0, "GIF", 3, ImageFile::GIF},
                            {1, "PNG", 3, ImageFile::PNG},
                            {0, "KYVIMG", 6, ImageFile::IMG},
                            {0, "MM\0*", 4, ImageFile::TIFF},
                            {0, "II*", 3, ImageFile::TIFF}};

struct Word {
  const char* word;
  ImageFile::Type type;
};
constexpr Word ENDINGS[] = {{"img", ImageFile::IMG}, {"imgz", ImageFile::IMGZ}, {"tiff", ImageFile::TIFF},
                            {"gif", ImageFile::GIF}, {"png", ImageFile::PNG},   {"gini", ImageFile::GINI}};
constexpr Word WORDS[] = {{"img", ImageFile::IMG}, {"imgz", ImageFile::IMGZ}, {"gif", ImageFile::GIF},
                          {"png", ImageFile::PNG}, {"tiff", ImageFile::TIFF}, {"ginip", ImageFile::GINI}};

}  // namespace

ImageFile::ImageFile() = default;

ImageFile::~ImageFile() = default;

int ImageFile::checkType(const char* name) {
  File file;
  char bytes[MAGIC] = {};
  if (!file.openData(name)) return UNKNOWN;
  const int num = file.read(bytes, MAGIC);
  const Magic* row = std::find_if(std::begin(MAGICS), std::end(MAGICS), [&](const Magic& m) {
    return m.at + m.length <= num && std::memcmp(bytes + m.at, m.bytes, static_cast<std::size_t>(m.length)) == 0;
  });
  return row == std::end(MAGICS) ? UNKNOWN : row->type;
}

int ImageFile::checkFilename(const char* name) {
  const Word* row = std::find_if(std::begin(ENDINGS), std::end(ENDINGS), [name](const Word& w) {
    return StrLib::length(name) >= StrLib::length(w.word) && StrLib::iequal(name, w.word, -StrLib::length(w.word));
  });
  return row == std::end(ENDINGS) ? UNKNOWN : row->type;
}

int ImageFile::getType(const char* word) {
  const Word* row =
      std::find_if(std::begin(WORDS), std::end(WORDS), [word](const Word& w) { return StrLib::iequal(w.word, word); });
  return row == std::end(WORDS) ? UNKNOWN : row->type;
}

int ImageFile::open(const char* name, int mode, int type) {
  close();
  if (type == UNKNOWN && mode == READ) type = checkType(name);
  if (type == UNKNOWN) type = checkFilename(name);
  if (type == GIF) {
    gif = std::make_unique<GifFile>();
    return gif->open(name, mode);
  }
  if (type == PNG) {
    png = std::make_unique<PngFile>();
    png->setCompression(FAST);
    return png->open(name, mode);
  }
  Kyv::outWarning(mode == READ ? NOT_READ : NOT_WRITTEN, StrLib::valid(name, ""));
  return 0;
}

int ImageFile::read(Image& image) { return gif ? gif->read(image) : png ? png->read(image) : 0; }

int ImageFile::write(const Image& image) { return gif ? gif->write(image) : png ? png->write(image) : 0; }

int ImageFile::read(const char* name, Image& image) {
  if (!open(name, READ)) return 0;
  const int result = read(image);
  close();
  return result;
}

int ImageFile::write(const char* name, const Image& image) { return write(name, UNKNOWN, image); }

int ImageFile::write(const char* name, int type, const Image& image) {
  if (!open(name, WRITE, type)) return 0;
  const int result = write(image);
  return close() && result;
}

int ImageFile::close() {
  const int result = gif ? gif->close() : png ? png->close() : 1;
  gif.reset();
  png.reset();
  return result;
}

}  // namespace KYV
