#ifndef KYV_DEVICE_H
#define KYV_DEVICE_H

#include "KYV/Listener.h"
#include "KYV/Point.h"
#include "KYV/Rect.h"

namespace KYV {

class Image;
class Points;
class String;

/// An output device: a window or a file. Whoever draws has turned everything into the device's own coordinates ("plot"
/// units, see getCoords), uses colour values that allocColor returned, and the attribute classes below. Operations
/// return 1 for success and 0 for failure; what a device lacks succeeds without effect.
class Device {
 public:
  /// Attribute classes.
  enum Class { LINE = 1, MARKER = 2, FILL = 3, TEXT = 4 };
  /// Line styles.
  enum LineStyle { SOLID = 1, DASH = 2, LONG_SHORT_DASH = 3, LONG_LONG_SHORT_DASH = 4, DOT = 5 };
  /// Fill styles; 11 to 19 are coverages of 10 to 90 percent and clear 0.
  enum FillStyle {
    FILL_SOLID = 0,
    STIPPLE = 1,
    OFFSET_STIPPLE = 2,
    RIGHT_STIPPLE = 3,
    LEFT_STIPPLE = 4,
    VERTICAL = 5,
    DIAGONAL_LR = 6,
    DIAGONAL_RL = 7,
    HORIZONTAL = 8,
    HATCH = 9,
    CLEAR = 10
  };

  virtual ~Device() = default;

  /// Resets all settings to their defaults.
  virtual int init() = 0;
  /// Takes the device's comma-separated option string.
  virtual int setParam(const char* options) = 0;
  /// Opens the window or the file and writes any prologue.
  virtual int open() = 0;
  /// The device's name, which may be empty.
  virtual int getDevice(String& name) = 0;
  /// The surface changed its size.
  virtual int resize(float w, float h) = 0;
  /// Hands control to the device: a window runs its event loop, a file does nothing.
  virtual int manage() = 0;
  /// Leaves the event loop.
  virtual int unmanage() = 0;
  /// Calls the listener when the named event happens; "AnyEvent" is every event.
  virtual int addCallback(const char* event, Listener* listener, const void* data) = 0;
  /// Delivers an event to the listeners.
  virtual int doCallback(const char* event, const char* data) = 0;
  /// The device's own entry as a listener.
  virtual void callback(const char* name, const char* event, const void* data) = 0;
  /// Writes any trailer and releases the window or file.
  virtual int close() = 0;
  /// As close(), for an output of which nothing shall stay: a file is then as it was before.
  virtual int discard() { return close(); }
  /// Flushes drawing to the surface.
  virtual int update() = 0;
  /// Clears the whole surface to the background.
  virtual int clear() = 0;
  virtual int clearRect(const Rect& r) = 0;
  virtual int setTitle(const char* title) = 0;
  virtual int setIcon(bool on) = 0;
  /// Forbids resizing by the user.
  virtual int setFixed(bool on) = 0;
  virtual int setInverse(bool on) = 0;
  /// Whether labels are drawn black, on a light ground.
  virtual bool getInverse() = 0;
  virtual int setBackground(const char* color) = 0;
  virtual int setSize(float w, float h) = 0;
  virtual int getSize(float& w, float& h) = 0;
  virtual float getWidth() = 0;
  virtual float getHeight() = 0;
  virtual int setOffset(float x, float y) = 0;
  virtual int getOffset(float& x, float& y) = 0;
  /// The surface in plot units; the sign of its height tells which way y runs (see Rect::setu).
  virtual int getCoords(Rect& r) = 0;
  virtual Rect getCoords() = 0;
  /// A colour value for setColor; r, g, b from 0 to 1.
  virtual int allocColor(float r, float g, float b) = 0;
  virtual int setColor(int cls, int value) = 0;
  virtual int setLineWidth(int cls, float width) = 0;
  virtual int setLineStyle(int cls, int style) = 0;
  virtual int setFillStyle(int cls, int style) = 0;
  virtual int drawLine(int cls, float x1, float y1, float x2, float y2) = 0;
  virtual int drawLine(int cls, const Points& points) = 0;
  virtual int drawFill(int cls, const Points& points) = 0;
  /// Horizontal 1 left, 2 centre, 3 right; vertical 1 bottom, 2 middle, 3 top of the image at its anchor.
  virtual int setImageAlign(int h, int v) = 0;
  virtual int drawImage(const Image& image, float x, float y) = 0;
  virtual int drawImage(const Image& image, int arg, float x, float y) = 0;
  /// Reads the surface back; an empty image where that cannot be.
  virtual int getImage(Image& image) = 0;
  /// 0 when the device has no font of that name.
  virtual int setFont(const char* spec) = 0;
  /// Horizontal 1 left, 2 centre, 3 right; vertical 1 top, 2 middle, 3 bottom.
  virtual int setTextAlign(int h, int v) = 0;
  virtual int drawText(const Point& p, const char* text) = 0;
  virtual Rect getClip() = 0;
  virtual int setClip(float x1, float y1, float x2, float y2) = 0;
  virtual int setClip(const Rect& r) = 0;
  virtual int setCursor(int shape) = 0;
  // Animation frames; -1 means the last, or the next one.
  virtual int copyFrame(int to, int from) = 0;
  virtual int displayFrame(int frame) = 0;
  virtual int clearFrame(int frame) = 0;
  virtual int newFrame(int frame) = 0;
  virtual int newFrame() = 0;
  virtual bool isLooping() = 0;
  virtual int getFrame() = 0;
  virtual int setFrame(int frame) = 0;
  virtual int incFrame(int step) = 0;
  virtual int deleteFrame(int frame) = 0;
  virtual int getNumFrames() = 0;
  virtual int message(const char* text) = 0;
  virtual int bell(int volume) = 0;
};

}  // namespace KYV
#endif
