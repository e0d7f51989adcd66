#ifndef KYV_IMAGEFILE_H
#define KYV_IMAGEFILE_H

#include <memory>

#include "KYV/String.h"

namespace KYV {

class GifFile;
class Image;
class PngFile;

/// Image files of any format, chosen by their first bytes or their name. This program reads and writes GIF and PNG.
class ImageFile {
 public:
  enum Mode { READ = 0, WRITE = 1 };
  /// Formats.
  enum Type { UNKNOWN = 0, IMG = 1, IMGZ = 2, TIFF = 3, GIF = 4, PNG = 5, GINI = 6 };

  ImageFile();
  ~ImageFile();
  ImageFile(const ImageFile&) = delete;
  ImageFile& operator=(const ImageFile&) = delete;

  /// @param type  0: by the first bytes (reading), else by the name
  /// @return 0, with a warning, for a file that cannot be opened or a format that cannot be read or written
  [[nodiscard]] int open(const char* name, int mode, int type = UNKNOWN);
  /// The format that the first ten bytes of a file tell.
  static int checkType(const char* name);
  /// The format that the end of a name tells, any case.
  static int checkFilename(const char* name);
  /// The format of a word: img, imgz, gif, png, tiff, ginip.
  static int getType(const char* word);
  /// Format version, for formats that have several.
  int setVer(int v) { return version = v, 1; }
  [[nodiscard]] int read(Image& image);
  [[nodiscard]] int read(const char* name, Image& image);
  [[nodiscard]] int write(const Image& image);
  [[nodiscard]] int write(const char* name, const Image& image);
  [[nodiscard]] int write(const char* name, int type, const Image& image);
  /// 0 when anything could not be written.
  int close();

 private:
  int version = 0;
  std::unique_ptr<GifFile> gif;
  std::unique_ptr<PngFile> png;
};

}  // namespace KYV
#endif
