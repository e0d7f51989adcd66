#ifndef KYV_XWINDOWSTATE_H
#define KYV_XWINDOWSTATE_H

#include <X11/Xlib.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "KYV/XWindow.h"

namespace KYV {

/// A listener, the event that it waits for ("AnyEvent" is every event) and what it wants to be told with it.
struct XCallback {
  Window window;
  std::string event;
  Listener* listener;
  const void* data;
};

/// What all windows of the program share.
struct XWindow::Shared {
  Display* display = nullptr;
  bool lost = false;     // the display has gone
  bool managed = false;  // the event loop runs
  bool error = false;    // an error has come since this was cleared
  bool print = true;     // errors are printed
  Atom deleteWindow = 0;
  std::array<XWindow*, MAX_WINDOW> windows{};
  std::vector<XCallback> callbacks;

  static Shared& get();
  /// Gives the connection back when the last window is closed.
  void release();
};

struct XWindow::State {
  enum Mode { OWN = 1, GIVEN = 2 };
  // Graphics contexts by attribute class; the others stand around them.
  enum Context { DEFAULT = 0, COPY = 5, CONTEXTS = 6 };
  static constexpr int CURSORS = 9;

  struct Frame {
    Pixmap pixmap;
    float delay;  // seconds
    float hold;   // seconds on the last frame
  };

  Mode mode = OWN;
  bool inverse = false;
  int width = 640;
  int height = 512;
  int x = 100;
  int y = 100;
  bool fixed = true;
  bool iconic = false;
  bool opened = false;
  bool mapped = false;
  bool gone = false;  // another program has destroyed the window
  std::string display;
  std::string title = "KYV";
  int number = -1;  // of the window
  bool show_number = false;
  int extra = 0;
  Visual* visual = nullptr;
  int depth = 0;
  Colormap colormap = 0;
  Window window = 0;
  Pixmap base = 0;
  Pixmap shown = 0;
  Pixmap target = 0;
  std::array<Cursor, CURSORS> cursors{};
  int cursor = 6;
  unsigned long foreground = 0;
  unsigned long background = 0;  // what clear() paints
  std::string back_color;
  XRectangle clip{};
  std::array<GC, CONTEXTS> contexts{};
  std::vector<Pixmap> stipples;
  int halign = 2;
  int valign = 2;
  int image_halign = 1;
  int image_valign = 3;
  XFontStruct* font = nullptr;
  std::vector<Frame> frames;
  int current = 0;
  bool looping = false;
  int direction = 1;  // 1 forward; 2 and 3 rock forward and backward
  float delay = 0.5f;
  float dwell = 1.0f;
  int first = -1;  // of the loop, -1 all
  int last = -1;
  std::vector<XPoint> work;

  /// What is drawn into without frames.
  Drawable ground() const { return mode == OWN ? base : window; }
  int firstFrame() const { return first < 0 ? 0 : first; }
  int lastFrame() const {
    const int end = static_cast<int>(frames.size()) - 1;
    return last < 0 || last > end ? end : last;
  }
};

}  // namespace KYV
#endif
