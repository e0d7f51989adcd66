// Events: what the display tells, who is told, and the loop that waits for it.
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>

#include "KYV/Kyv.h"
#include "KYV/StrLib.h"
#include "KYV/XWindow.h"
#include "XWindowState.h"

namespace KYV {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double IDLE_SLEEP = 0.1;   // seconds between looks while nothing moves
constexpr double EVENT_SLEEP = 0.2;  // seconds at most between looks while a loop waits for its next frame
constexpr int CURSOR_SINGLE = 6;
constexpr int CURSOR_LOOPING = 3;
constexpr int CURSOR_STOPPED = 4;
constexpr std::size_t MODIFIED = 5;  // characters of a key that are compared

struct EventName {
  int type;
  const char* name;
};
constexpr EventName NAMES[] = {
    {KeyPress, "KeyPress"},
    {KeyRelease, "KeyRelease"},
    {ButtonPress, "ButtonPress"},
    {ButtonRelease, "ButtonRelease"},
    {MotionNotify, "MotionNotify"},
    {EnterNotify, "EnterNotify"},
    {LeaveNotify, "LeaveNotify"},
    {FocusIn, "FocusIn"},
    {FocusOut, "FocusOut"},
    {KeymapNotify, "KeymapNotify"},
    {Expose, "Expose"},
    {GraphicsExpose, "GraphicsExpose"},
    {NoExpose, "NoExpose"},
    {VisibilityNotify, "VisibilityNotify"},
    {CreateNotify, "CreateNotify"},
    {DestroyNotify, "DestroyNotify"},
    {UnmapNotify, "UnmapNotify"},
    {MapNotify, "MapNotify"},
    {MapRequest, "MapRequest"},
    {ReparentNotify, "ReparentNotify"},
    {ConfigureNotify, "Configure"},
    {ConfigureRequest, "ConfigureRequest"},
    {PropertyNotify, "PropertyNotify"},
    {ClientMessage, "ClientMessage"},
};

const char* nameOf(int type) {
  const EventName* row =
      std::find_if(std::begin(NAMES), std::end(NAMES), [type](const EventName& e) { return e.type == type; });
  return row == std::end(NAMES) ? "Unknown" : row->name;
}

std::string modifiers(unsigned state) {
  std::string text;
  if (state & Mod1Mask) text += "-Alt";
  if (state & ShiftMask) text += "-Shft";
  if (state & ControlMask) text += "-Cntrl";
  return text;
}

std::string at(int x, int y) { return ":" + std::to_string(x) + ":" + std::to_string(y); }

// The text of a key, "s-Alt:120:45".
std::string keyText(XKeyEvent& event) {
  char bytes[20] = "";
  KeySym symbol = NoSymbol;
  const int num = XLookupString(&event, bytes, sizeof bytes - 1, &symbol, nullptr);
  std::string key(bytes, static_cast<std::size_t>(std::max(num, 0)));
  if (symbol == XK_Return || symbol == XK_KP_Enter) key = "Ret";
  // Control turns letters into codes that no listener could read.
  if (symbol >= XK_space && symbol <= XK_asciitilde) key.assign(1, static_cast<char>(symbol));
  return key + modifiers(event.state) + at(event.x, event.y);
}

std::string buttonText(const XButtonEvent& event, const char* what) {
  return "B" + std::to_string(event.button) + what + modifiers(event.state) + at(event.x, event.y);
}

// The text of an event; events of its kind that wait behind it are dropped where only the last counts.
std::string textOf(Display* display, XEvent& event) {
  switch (event.type) {
    case KeyPress:
      return keyText(event.xkey);
    case ButtonPress:
      return buttonText(event.xbutton, "-P");
    case ButtonRelease:
      return buttonText(event.xbutton, "-R");
    case Expose:
      while (XCheckTypedWindowEvent(display, event.xany.window, Expose, &event)) continue;
      return {};
    case ConfigureNotify:
      while (XCheckTypedWindowEvent(display, event.xany.window, ConfigureNotify, &event)) continue;
      return std::to_string(event.xconfigure.width) + ":" + std::to_string(event.xconfigure.height);
    default:
      return {};
  }
}

}  // namespace

// Those who listen may leave, or the window may be closed, while they are told.
void XWindow::deliver(unsigned long window, const char* event, const Telling& tell) {
  Shared& shared = Shared::get();
  const std::vector<XCallback> told = shared.callbacks;
  for (const XCallback& c : told) {
    if (c.window != window || (c.event != "AnyEvent" && c.event != event)) continue;
    const bool still = std::any_of(shared.callbacks.begin(), shared.callbacks.end(), [&c](const XCallback& other) {
      return other.listener == c.listener && other.window == c.window;
    });
    if (still) tell(*c.listener, c.data);
  }
}

int XWindow::addCallback(const char* event, Listener* listener, const void* data) {
  if (!alive() || state->mode == State::GIVEN || !listener || !StrLib::valid(event)) return 0;
  std::vector<XCallback>& list = Shared::get().callbacks;
  const auto same = [&](const XCallback& c) {
    return c.window == state->window && c.listener == listener && c.event == event;
  };
  if (std::none_of(list.begin(), list.end(), same)) list.push_back({state->window, event, listener, data});
  return 1;
}

int XWindow::doCallback(const char* event, const char* data) {
  if (!alive() || !StrLib::valid(event)) return 0;
  const std::string text = StrLib::valid(data, "");
  deliver(state->window, event,
          [&](Listener& listener, const void* own) { listener.callback(event, text.c_str(), own); });
  return 1;
}

// What the window does by itself.
void XWindow::callback(const char*, const char* event, const void* data) {
  const char* text = static_cast<const char*>(data);
  const auto is = [event](const char* name) { return StrLib::equal(event, name); };
  if (is("Expose")) {
    update();
  } else if (is("MapNotify")) {
    state->mapped = true;
  } else if (is("UnmapNotify")) {
    state->mapped = false;
  } else if (is("Configure")) {
    if (resize(-1.0f, -1.0f)) {
      doCallback("Redraw", text);
      update();
    }
  } else if ((is("ButtonPress") || is("KeyPress")) && text) {
    press(text);
  }
}

void XWindow::press(const char* text) {
  struct Action {
    const char* key;
    std::size_t length;
    void (*act)(XWindow& w);
  };
  static constexpr auto BACK = [](XWindow& w) { w.state->looping ? w.loopRate(-1) : w.incFrame(-1); };
  static constexpr auto ON = [](XWindow& w) { w.state->looping ? w.loopRate(1) : w.incFrame(1); };
  static constexpr auto LOOP = [](XWindow& w) { w.toggleLoop(); };
  static constexpr Action ACTIONS[] = {
      {"B1-P", 4, BACK},         {"B2-P", 4, LOOP},
      {"B3-P", 4, ON},           {"d-Alt", MODIFIED, [](XWindow& w) { w.deleteShown(); }},
      {"l-Alt", MODIFIED, LOOP}, {"[-Alt", MODIFIED, BACK},
      {"]-Alt", MODIFIED, ON},
  };
  for (const Action& action : ACTIONS) {
    if (std::string_view(text).starts_with(std::string_view(action.key, action.length))) return action.act(*this);
  }
}

int XWindow::resize(float w, float h) {
  if (!alive()) return 0;
  Shared& shared = Shared::get();
  State& s = *state;
  int width = static_cast<int>(w), height = static_cast<int>(h);
  if (w < 1.0f || h < 1.0f) {
    XWindowAttributes attributes = {};
    if (!XGetWindowAttributes(shared.display, s.window, &attributes)) return 0;
    width = attributes.width;
    height = attributes.height;
  }
  if (width == s.width && height == s.height) return 0;
  const Pixmap before = s.base;
  const Pixmap base = XCreatePixmap(shared.display, s.window, static_cast<unsigned>(width),
                                    static_cast<unsigned>(height), static_cast<unsigned>(s.depth));
  const int copied[] = {std::min(width, s.width), std::min(height, s.height)};
  s.width = width;
  s.height = height;
  if (s.target == before) s.target = base;
  if (s.shown == before) s.shown = base;
  s.base = base;
  const Pixmap target = s.target;
  s.target = base;
  clear();
  s.target = target;
  XCopyArea(shared.display, before, base, s.contexts[State::COPY], 0, 0, static_cast<unsigned>(copied[0]),
            static_cast<unsigned>(copied[1]), 0, 0);
  XFreePixmap(shared.display, before);
  XClearWindow(shared.display, s.window);
  setClip(0.0f, 0.0f, getWidth() - 1.0f, getHeight() - 1.0f);
  return 1;
}

int XWindow::update() {
  if (!alive()) return 0;
  const State& s = *state;
  Display* display = Shared::get().display;
  // Without frames a window of another program is drawn into at once.
  if (s.shown != s.window) {
    XCopyArea(display, s.shown, s.window, s.contexts[State::COPY], 0, 0, static_cast<unsigned>(s.width),
              static_cast<unsigned>(s.height), 0, 0);
  }
  XSync(display, False);
  return alive() ? 1 : 0;
}

int XWindow::setCursor(int shape) {
  const int before = state->cursor;
  if (!alive() || shape < 0 || shape >= State::CURSORS) return before;
  if (shape != before) {
    XDefineCursor(Shared::get().display, state->window, state->cursors[static_cast<std::size_t>(shape)]);
    XFlush(Shared::get().display);
  }
  state->cursor = shape;
  return before;
}

int XWindow::message(const char* text) {
  Kyv::outDebug(1, "Mess: %s\n", StrLib::valid(text, ""));
  return 1;
}

int XWindow::bell(int volume) {
  if (!alive()) return 0;
  XBell(Shared::get().display, std::clamp(volume, -100, 100));
  return 1;
}

// The loop.

int XWindow::manage() {
  if (!alive()) return 0;
  if (state->mode == State::GIVEN) return 1;
  Shared::get().managed = true;
  return mainloop();
}

int XWindow::unmanage() {
  Shared::get().managed = false;
  return 1;
}

// Takes the events that are there, waiting for the first one at most so many seconds.
void XWindow::handleEvents(double seconds) {
  Shared& shared = Shared::get();
  if (!alive()) return;
  Display* display = shared.display;
  if (!XPending(display)) {
    pollfd wait = {ConnectionNumber(display), POLLIN, 0};
    poll(&wait, 1, static_cast<int>(seconds * 1000.0));
  }
  while (alive() && XPending(display) > 0) {
    XEvent event;
    XNextEvent(display, &event);
    if (shared.lost) return;
    const Window window = event.xany.window;
    const bool ends = event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == shared.deleteWindow;
    // The window's own button to close it is as good as the key.
    const std::string name = ends ? "KeyPress" : nameOf(event.type);
    const std::string text = ends ? "Ret:0:0" : textOf(display, event);
    Kyv::outDebug(4, "Event: %s - %s\n", name.c_str(), text.c_str());
    const std::string title = state->title;
    deliver(window, name.c_str(),
            [&](Listener& listener, const void*) { listener.callback(title.c_str(), name.c_str(), text.c_str()); });
    if (ends) shared.managed = false;
    if (event.type == DestroyNotify && event.xdestroywindow.window == state->window) {
      state->gone = true;
      shared.managed = false;
      Kyv::outWarning("XWindow: another program has closed the window\n");
      return;
    }
  }
}

int XWindow::mainloop() {
  Shared& shared = Shared::get();
  state->looping = state->frames.size() > 1;
  while (shared.managed && alive()) {
    if (state->frames.size() < 2 || !state->looping) {
      setCursor(state->frames.size() < 2 ? CURSOR_SINGLE : CURSOR_STOPPED);
      handleEvents(IDLE_SLEEP);
    } else {
      setCursor(CURSOR_LOOPING);
      const auto shown = Clock::now();
      const auto left = [&] {
        const bool atEnd = state->current >= state->lastFrame();
        return (atEnd ? state->dwell : state->delay) - std::chrono::duration<double>(Clock::now() - shown).count();
      };
      while (shared.managed && alive() && state->looping && left() > 0.0) handleEvents(std::min(left(), EVENT_SLEEP));
      if (shared.managed && alive() && state->looping && state->mapped) incFrame(0);
    }
    if (shared.managed && alive()) doCallback("Idle", "");
  }
  shared.managed = false;
  return 1;
}

}  // namespace KYV
