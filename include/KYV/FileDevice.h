#ifndef KYV_FILEDEVICE_H
#define KYV_FILEDEVICE_H

#include <memory>

#include "KYV/File.h"
#include "KYV/PassiveDevice.h"

namespace KYV {

class Points;
class TextWriter;

/// What all devices that write a file share: the opening of the file by its name ("+name" appends, "|command" spools),
/// sizes in hundredths of an inch, and the samples of images. A back end shows only what it writes.
class FileDevice : public PassiveDevice {
 public:
  FileDevice();
  ~FileDevice() override;
  FileDevice(const FileDevice&) = delete;
  FileDevice& operator=(const FileDevice&) = delete;

  int discard() override;
  /// Hands what was drawn to the file; writes nothing of its own.
  int update() override;
  /// In hundredths of an inch, kept in points; 0, and unchanged, for a size without extent or beyond 200 inches.
  int setSize(float w, float h) override;
  int setOffset(float x, float y) override;

 protected:
  /// Everything as it is before any option.
  /// @param dev   the device's name in messages, a literal
  /// @param name  of the file when none is given
  int initFile(const char* dev, const char* name, float w, float h);
  /// With a warning when the name has to be cut; no name changes nothing (0).
  int setFilename(const char* name);
  /// Opens the output file by the file name and says so on standard output; 0, with a message, when it cannot.
  int openFile();
  /// Closes it; 0, with a message, when something could not be written.
  int closeFile();
  /// Whether something can be drawn: the file is open and all coordinates are numbers (a path has at least one point).
  bool ready(float x1, float y1, float x2, float y2) const;
  bool ready(const Points& points) const;
  /// Keeps a clip, a tenth of a unit wider on every side.
  void setWideClip(float x1, float y1, float x2, float y2);

  /// An image as it fills the clip: one sample in each unit, whole units.
  struct Samples {
    int x, y, width, height;  // the clip
    int left, top;            // pixel in the first sample
  };
  /// Of an image whose upper left corner is moved by x and y pixels beyond the clip's; false when there is nothing to
  /// show.
  bool getSamples(const Image& image, float x, float y, Samples& s) const;
  /// Row by row, hexadecimal: six digits in colour, two in grey, white where the image has no pixel. A line ends with
  /// its row, or with 80 samples.
  void putSamples(const Image& image, const Samples& s, bool color);

  const char* device = "";
  File out;
  std::unique_ptr<TextWriter> text;  // what is written to the file while it is open
  bool append = false;
  char filename[60] = "";
};

}  // namespace KYV
#endif
