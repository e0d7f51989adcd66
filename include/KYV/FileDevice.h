#ifndef KYV_FILEDEVICE_H
#define KYV_FILEDEVICE_H

#include <array>
#include <cstddef>
#include <memory>

#include "KYV/Device.h"
#include "KYV/File.h"

namespace KYV {

class TextWriter;

/// What all devices that write a file share: no windows, frames, cursors or fonts (success without effect), the pens of
/// the four attribute classes, title, size, offset and clip, and the opening of the file by its name ("+name" appends,
/// "|command" spools). A back end shows only what it writes.
class FileDevice : public Device, public Listener {
 public:
  FileDevice();
  ~FileDevice() override;
  FileDevice(const FileDevice&) = delete;
  FileDevice& operator=(const FileDevice&) = delete;

  int getDevice(String& name) override;
  int resize(float, float) override { return 1; }
  int manage() override { return 1; }
  int unmanage() override { return 1; }
  int addCallback(const char*, Listener*, const void*) override { return 1; }
  int doCallback(const char*, const char*) override { return 1; }
  void callback(const char*, const char*, const void*) override {}
  /// Hands what was drawn to the file; writes nothing of its own.
  int update() override;
  int clear() override { return 1; }
  int clearRect(const Rect&) override { return 1; }
  int setTitle(const char* text) override;
  int setIcon(bool) override { return 1; }
  int setFixed(bool) override { return 1; }
  int setInverse(bool on) override { return inverse = on, 1; }
  bool getInverse() override { return inverse; }
  int setBackground(const char*) override { return 1; }
  /// In hundredths of an inch, kept in points; 0, and unchanged, for a size without extent or beyond 200 inches.
  int setSize(float w, float h) override;
  int getSize(float& w, float& h) override { return w = width, h = height, 1; }
  float getWidth() override { return width; }
  float getHeight() override { return height; }
  int setOffset(float x, float y) override;
  int getOffset(float& x, float& y) override { return x = xoff, y = yoff, 1; }
  int allocColor(float r, float g, float b) override;
  int setColor(int cls, int value) override;
  /// A width that is not positive, or beyond 10000, counts as 1.
  int setLineWidth(int cls, float w) override;
  int setLineStyle(int cls, int style) override;
  int setFillStyle(int cls, int style) override;
  int setImageAlign(int, int) override { return 1; }
  int getImage(Image& image) override;
  int setFont(const char*) override { return 1; }
  int setTextAlign(int, int) override { return 1; }
  int drawText(const Point&, const char*) override { return 1; }
  Rect getClip() override { return clip; }
  using Device::setClip;
  int setClip(const Rect& r) override { return setClip(r.xmin, r.ymin, r.xmax, r.ymax); }
  int setCursor(int) override { return 1; }
  int copyFrame(int, int) override { return 1; }
  int displayFrame(int) override { return 1; }
  int clearFrame(int) override { return 1; }
  int newFrame(int) override { return 1; }
  int newFrame() override { return 1; }
  bool isLooping() override { return false; }
  int getFrame() override { return 0; }
  int setFrame(int) override { return 1; }
  int incFrame(int) override { return 1; }
  int deleteFrame(int) override { return 1; }
  int getNumFrames() override { return 0; }
  int bell(int) override { return 1; }

 protected:
  struct Pen {
    int color = 0;
    int style = 1;
    float width = 1.0f;
  };
  /// The pen of an attribute class, null for a class that does not exist.
  Pen* pen(int cls) { return cls >= 1 && cls <= 4 ? &pens[static_cast<std::size_t>(cls - 1)] : nullptr; }
  /// Title, pens, size and clip as they are before any option.
  /// @param dev   the device's name in messages, a literal
  /// @param name  of the file when none is given
  int initFile(const char* dev, const char* name, float w, float h);
  /// With a warning when the name has to be cut; no name changes nothing (0).
  int setFilename(const char* name);
  /// Opens the output file by the file name and says so on standard output; 0, with a message, when it cannot.
  int openFile();
  /// Closes it; 0, with a message, when something could not be written.
  int closeFile();

  const char* device = "";
  File out;
  std::unique_ptr<TextWriter> text;  // what is written to the file while it is open
  bool opened = false;
  bool inverse = false;
  bool append = false;
  float width = 0.0f;  // surface, plot units
  float height = 0.0f;
  float xoff = 0.0f;
  float yoff = 0.0f;
  char filename[60] = "";
  char title[60] = "";
  Rect clip;

 private:
  std::array<Pen, 4> pens;
};

}  // namespace KYV
#endif
