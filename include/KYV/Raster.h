#ifndef KYV_RASTER_H
#define KYV_RASTER_H

#include <cstddef>
#include <memory>

#include "KYV/Image.h"
#include "KYV/PassiveDevice.h"

namespace KYV {

/// Paints into pictures in memory, without a display: the same surface, line and fill styles and frames as a window of
/// the same size. Plot units are pixels, y grows downward, pixel centres lie at whole numbers.
///
/// A picture is indexed by the colours that are used, until they are more than 256; then it holds colours themselves.
class Raster final : public PassiveDevice {
 public:
  /// Bytes that the frames of a loop may have together; further frames are refused.
  static constexpr std::size_t MAX_BYTES = std::size_t{1} << 30;

  Raster();
  ~Raster() override;
  Raster(const Raster&) = delete;
  Raster& operator=(const Raster&) = delete;

  int init() override;
  /// No options.
  int setParam(const char*) override { return 1; }
  int open() override;
  int close() override;
  /// Pixels, before open; 0 with a message, and unchanged, below 1 or above Image::MAX_SIZE.
  int setSize(float w, float h) override;
  /// "#rgb", "#rrggbb", or one of the common names; "def" and what is no colour leave black (white when inverse).
  int setBackground(const char* color) override;
  int getCoords(Rect& r) override;
  Rect getCoords() override;
  int drawLine(int cls, float x1, float y1, float x2, float y2) override;
  int drawLine(int cls, const Points& points) override;
  int drawFill(int cls, const Points& points) override;
  int setImageAlign(int h, int v) override;
  int drawImage(const Image& image, float x, float y) override;
  int drawImage(const Image& image, int, float x, float y) override { return drawImage(image, x, y); }
  /// The frame shown, with the colours that it uses.
  int getImage(Image& image) override;
  using PassiveDevice::setClip;
  int setClip(float x1, float y1, float x2, float y2) override;
  int clear() override;
  int clearRect(const Rect& r) override;
  /// There is no device font.
  int setFont(const char*) override { return 0; }
  int copyFrame(int to, int from) override;
  int displayFrame(int frame) override;
  int clearFrame(int frame) override;
  int newFrame(int frame) override;
  int newFrame() override;
  int getFrame() override;
  int setFrame(int frame) override;
  int incFrame(int step) override;
  int deleteFrame(int frame) override;
  int getNumFrames() override;

 private:
  struct State;  // the pictures, seen by the sources alone

  std::size_t pixelCount() const;
  void aim();
  bool usePen(int cls);
  bool take(const Points& points);

  std::unique_ptr<State> state;
};

}  // namespace KYV
#endif
