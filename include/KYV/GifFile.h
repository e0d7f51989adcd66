#ifndef KYV_GIFFILE_H
#define KYV_GIFFILE_H

#include <memory>

namespace KYV {

class Image;

/// Reads and writes GIF files: single pictures with title, date and map, and animations put together from files.
class GifFile {
 public:
  enum Mode { READ = 0, WRITE = 1 };

  GifFile();
  ~GifFile();
  GifFile(const GifFile&) = delete;
  GifFile& operator=(const GifFile&) = delete;

  /// 0, with a warning, when the file cannot be opened.
  [[nodiscard]] int open(const char* name, int mode);
  bool isOpen() const;
  int setInterlace(int on);
  /// For images that have none of their own: an index, or a packed colour for direct ones; -1, the default, for none.
  int setTransColor(int value);
  /// Of the frames of an animation, hundredths of a second from 0 to 65535; 50 at first, half a second. 0, and
  /// unchanged, for any other.
  int setDelay(int hundredths);
  /// How often an animation runs, up to 65535 times; 0, the default, for ever.
  int setLoop(int times);
  /// The first image of the file, in its own size, wherever it lies on the file's screen. 0, with a warning and the
  /// image unchanged, for a file that is no GIF or has no pixel. Of a damaged file what was decoded is kept, with a
  /// warning: missing rows have index 0; where the rows claimed are far more than the data hold, the image ends with
  /// the last one decoded.
  [[nodiscard]] int read(Image& image);
  /// One picture, once a file; more than 256 colours are reduced.
  [[nodiscard]] int write(const Image& image);
  /// Appends all pictures of another GIF file to an animation; the first file gives screen and global colours. 0, with
  /// a warning, for a file that cannot be read: the animation goes on without it.
  [[nodiscard]] int write(const char* gif);
  /// Appends an image to an animation, whose first one gives its screen; texts of the image are left out.
  [[nodiscard]] int addFrame(const Image& image);
  /// 0 when anything could not be written, or nothing was: no file has come of it then.
  int close();
  /// Ends a file that shall not be written.
  void discard();

 private:
  struct State;  // seen by the sources alone
  std::unique_ptr<State> state;
};

}  // namespace KYV
#endif
