#ifndef KYV_PNGFILE_H
#define KYV_PNGFILE_H

#include <memory>

namespace KYV {

class Image;

/// Reads and writes PNG files with title, date and map as text chunks.
class PngFile {
 public:
  enum Mode { READ = 0, WRITE = 1 };

  PngFile();
  ~PngFile();
  PngFile(const PngFile&) = delete;
  PngFile& operator=(const PngFile&) = delete;

  /// 0, with a warning, when the file cannot be opened.
  [[nodiscard]] int open(const char* name, int mode);
  bool isOpen() const;
  /// Kept as a wish: files are written without interlacing.
  int setInterlace(int on);
  /// zlib's level, 0 to 9, -1 for its default. Maps with few colours are hardly larger at level 1, and written in a
  /// third of the time.
  int setCompression(int level);
  /// At most 39 characters.
  int setTitle(const char* text);
  /// At most 999 characters.
  int setComment(const char* text);
  /// 0, with a warning, for a file that is no PNG. Rows that were read before damage are kept.
  [[nodiscard]] int read(Image& image);
  [[nodiscard]] int read(const char* name, Image& image);
  [[nodiscard]] int write(const Image& image);
  [[nodiscard]] int write(const char* name, const Image& image);
  /// 0 when anything could not be written.
  int close();

  /// The version of the library beneath.
  static const char* getLibrary();

 private:
  struct State;  // seen by the sources alone
  std::unique_ptr<State> state;
};

}  // namespace KYV
#endif
