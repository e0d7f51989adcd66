#ifndef KYV_XWINDOW_H
#define KYV_XWINDOW_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "KYV/Device.h"

namespace KYV {

/// A window on an X11 display. Drawing goes into pixmaps, one a frame; the window shows one of them, or all in turn.
/// Plot units are pixels, y grows downward. The events of the display reach the listeners as names with a text; the
/// program has one connection to the display and at most MAX_WINDOW windows. Operations on a window that is not open,
/// or whose display has gone, return 0.
class XWindow final : public Device, public Listener {
 public:
  static constexpr int MAX_WINDOW = 10;
  static constexpr int MAX_FRAME = 128;

  XWindow();
  ~XWindow() override;
  XWindow(const XWindow&) = delete;
  XWindow& operator=(const XWindow&) = delete;

  int init() override;
  /// Display name, then a window to draw into; "co=" names the display, "wp=" a window, "show_num" shows the number of
  /// the frame in the title. A window is "+extra:id:WxH:depth", "0xid:WxH:depth" or "id:WxH:depth".
  int setParam(const char* options) override;
  int open() override;
  /// "d,display,+extra:id:WxH", which lets another program draw into this window.
  int getDevice(String& name) override;
  /// Takes over the size that the window has now; (-1, -1) asks for it.
  int resize(float w, float h) override;
  /// Runs the event loop until it is left; a window of another program has none.
  int manage() override;
  int unmanage() override;
  int addCallback(const char* event, Listener* listener, const void* data) override;
  /// Events of the display reach listeners as callback(title, event, text), these as callback(event, text, own data).
  int doCallback(const char* event, const char* data) override;
  void callback(const char* name, const char* event, const void* data) override;
  int close() override;
  int update() override;
  int clear() override;
  int clearRect(const Rect& r) override;
  int setTitle(const char* text) override;
  int setIcon(bool on) override;
  int setFixed(bool on) override;
  int setInverse(bool on) override;
  bool getInverse() override;
  int setBackground(const char* color) override;
  int setSize(float w, float h) override;
  int getSize(float& w, float& h) override;
  float getWidth() override;
  float getHeight() override;
  int setOffset(float x, float y) override;
  int getOffset(float& x, float& y) override;
  int getCoords(Rect& r) override;
  Rect getCoords() override;
  int allocColor(float r, float g, float b) override;
  int setColor(int cls, int value) override;
  int setLineWidth(int cls, float width) override;
  int setLineStyle(int cls, int style) override;
  int setFillStyle(int cls, int style) override;
  int drawLine(int cls, float x1, float y1, float x2, float y2) override;
  int drawLine(int cls, const Points& points) override;
  int drawFill(int cls, const Points& points) override;
  int setImageAlign(int h, int v) override;
  int drawImage(const Image& image, float x, float y) override;
  int drawImage(const Image& image, int, float x, float y) override { return drawImage(image, x, y); }
  /// The frame shown; indexed where it has at most 256 colours.
  int getImage(Image& image) override;
  int setFont(const char* spec) override;
  int setTextAlign(int h, int v) override;
  int drawText(const Point& p, const char* text) override;
  Rect getClip() override;
  using Device::setClip;
  int setClip(float x1, float y1, float x2, float y2) override;
  int setClip(const Rect& r) override { return setClip(r.xmin, r.ymin, r.xmax, r.ymax); }
  /// The number of the cursor before: 0 cross, 1 arrow, 2 move, 3 exchange, 4 dot, 5 pencil, 6 crosshair, 7 text, 8
  /// watch.
  int setCursor(int shape) override;
  int copyFrame(int to, int from) override;
  int displayFrame(int frame) override;
  int clearFrame(int frame) override;
  int newFrame(int frame) override;
  int newFrame() override;
  bool isLooping() override;
  int getFrame() override;
  int setFrame(int frame) override;
  int incFrame(int step) override;
  int deleteFrame(int frame) override;
  /// All frames.
  int deleteFrame();
  void deleteShown();
  int getNumFrames() override;
  int message(const char* text) override;
  int bell(int volume) override;

  /// Makes the loop faster (+1) or slower (-1).
  int loopRate(int direction);
  int toggleLoop();
  /// Seconds that a frame is shown while the loop runs.
  float getDelay() const;

  // What libX11 tells of errors (a Display and an XErrorEvent), and of the loss of the display.
  static void onError(void* display, void* event);
  static void onLoss();

  /// The version of the library beneath.
  static const char* getLibrary();

 private:
  struct State;  // what libX11 knows of, seen by the sources alone
  struct Shared;

  bool alive() const;
  void setGiven(const char* text);
  void showTitle();
  bool connect();
  bool makeWindow();
  bool takeWindow();
  void awaitWindow();
  void makeContexts();
  static std::size_t contextOf(int cls);
  bool toPixels(const Points& points);
  void putLine(int cls);
  int fillRect(int x, int y, int w, int h);
  std::uint32_t colorOf(unsigned long pixel) const;
  void press(const char* text);
  int mainloop();
  void handleEvents(double seconds);
  using Telling = std::function<void(Listener& listener, const void* data)>;
  static void deliver(unsigned long window, const char* event, const Telling& tell);

  std::unique_ptr<State> state;
};

}  // namespace KYV
#endif
