// The window: its options, its opening and closing.
#include "KYV/XWindow.h"

#include <X11/Xutil.h>
#include <X11/cursorfont.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "DeviceOptions.h"
#include "KYV/Kyv.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"
#include "KYV/Strings.h"
#include "Patterns.h"
#include "XWindowState.h"

namespace KYV {

namespace {

constexpr int BORDER = 5;
constexpr int MIN_SIZE = 10;       // pixels
constexpr int MAX_SIZE = 16384;    // pixels
constexpr int MAX_TITLE = 39;      // characters
constexpr int MAX_DISPLAY = 40;    // characters
constexpr double SHOW_TIME = 3.0;  // seconds in which a window should appear
constexpr const char* DEFAULT_FONT = "fixed";
constexpr unsigned CURSOR_SHAPES[] = {XC_X_cursor, XC_left_ptr, XC_fleur, XC_exchange, XC_dot,
                                      XC_pencil,   XC_tcross,   XC_xterm, XC_watch};
static_assert(std::size(CURSOR_SHAPES) == 9);
constexpr long EVENTS =
    KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask | ExposureMask | StructureNotifyMask;

// The icon: rings around a radar.
constexpr int ICON_SIZE = 48;
std::array<char, ICON_SIZE * ICON_SIZE / 8> makeIcon() {
  std::array<char, ICON_SIZE * ICON_SIZE / 8> bits{};
  for (int y = 0; y < ICON_SIZE; ++y) {
    for (int x = 0; x < ICON_SIZE; ++x) {
      const int r = static_cast<int>(std::hypot(x - 23.5, y - 23.5));
      const bool ring = r % 8 == 7 && r < ICON_SIZE / 2;
      const bool beam = x >= 24 && std::abs((ICON_SIZE - 1 - y) - x) < 2 && y < 24;
      if (ring || beam) bits[static_cast<std::size_t>(y * ICON_SIZE + x) / 8] |= static_cast<char>(1 << (x & 7));
    }
  }
  return bits;
}

int onError(Display* display, XErrorEvent* event) {
  XWindow::onError(display, event);
  return 0;
}

int onLoss(Display*) {
  XWindow::onLoss();
  return 0;
}

}  // namespace

// Shared state.

XWindow::Shared& XWindow::Shared::get() {
  static Shared shared;
  return shared;
}

void XWindow::Shared::release() {
  const bool used = std::any_of(windows.begin(), windows.end(), [](const XWindow* w) { return w != nullptr; });
  if (used || !display) return;
  XCloseDisplay(display);
  display = nullptr;
  callbacks.clear();
}

void XWindow::onError(void* display, void* event) {
  Shared& shared = Shared::get();
  shared.error = true;
  if (!shared.print) return;
  const auto* e = static_cast<XErrorEvent*>(event);
  char what[200] = "", number[20] = "", request[100] = "";
  XGetErrorText(static_cast<Display*>(display), e->error_code, what, sizeof what);
  StrLib::printf(number, "%d", e->request_code);
  XGetErrorDatabaseText(static_cast<Display*>(display), "XRequest", number, "", request, sizeof request);
  std::fprintf(stderr, "X11 error: %s in %s\n", what, request);
}

void XWindow::onLoss() {
  Shared& shared = Shared::get();
  if (!shared.lost) std::fprintf(stderr, "X11 Disconnected\n");
  shared.lost = true;
  shared.managed = false;
}

XWindow::XWindow() : state(std::make_unique<State>()) {}

const char* XWindow::getLibrary() {
  static const std::string release = "release " + std::to_string(XlibSpecificationRelease);
  return release.c_str();
}

XWindow::~XWindow() { close(); }

int XWindow::init() {
  close();
  state = std::make_unique<State>();
  return 1;
}

bool XWindow::alive() const { return state->opened && !state->gone && !Shared::get().lost; }

// Settings.

int XWindow::setParam(const char* options) {
  const Strings items(options, ',');
  for (int i = 0; i < items.getNum(); ++i) {
    const bool plain = items.valid(i) && items.index(i, '=') < 0;
    if (items.equal(i, "show_num", 8)) {
      state->show_number = true;
    } else if (i == 0 && plain) {
      state->display = std::string(items.getString(i)).substr(0, MAX_DISPLAY);
    } else if (i == 1 && plain) {
      setGiven(items.getString(i));
    } else if (items.equal(i, "co=", 3)) {
      state->display = std::string(StrLib::valid(items.getString(i, 3), "")).substr(0, MAX_DISPLAY);
    } else if (items.equal(i, "wp=", 3)) {
      setGiven(items.getString(i, 3));
    } else if (items.valid(i) && !items.equal(i, "hfont") && !items.equal(i, "de=", 3)) {
      // The device's own name stands in the plot's parameters, which come where the device has none.
      static constexpr const char* WORDS[] = {"show_num", "co", "wp", "hfont"};
      DeviceOptions::refuseItem("XWindow", items.getString(i), WORDS);
    }
  }
  return 1;
}

// A window of another program to draw into.
void XWindow::setGiven(const char* text) {
  unsigned long id = 0;
  int extra = 0, w = 0, h = 0, depth = 0;
  const bool read = text && ((*text == '+' && std::sscanf(text, "+%d:%lu:%dx%d", &extra, &id, &w, &h) == 4) ||
                             std::sscanf(text, "0x%lx:%dx%d:%d", &id, &w, &h, &depth) >= 3 ||
                             std::sscanf(text, "%lu:%dx%d:%d", &id, &w, &h, &depth) >= 3);
  if (!read || w < 1 || h < 1 || w > MAX_SIZE || h > MAX_SIZE) return;
  state->mode = State::GIVEN;
  state->window = id;
  state->extra = extra;
  state->width = w;
  state->height = h;
}

int XWindow::getDevice(String& name) {
  char text[200];
  StrLib::printf(text, "d,%s,+%d:%lu:%dx%d\n", state->display.c_str(), state->extra, state->window, state->width,
                 state->height);
  return name.copy(text), 1;
}

int XWindow::setTitle(const char* text) {
  state->title = std::string(StrLib::valid(text, "")).substr(0, MAX_TITLE);
  std::replace(state->title.begin(), state->title.end(), '_', ' ');
  if (alive()) showTitle();
  return 1;
}

void XWindow::showTitle() {
  Shared& shared = Shared::get();
  std::string text = state->title;
  if (state->show_number && !state->frames.empty()) text += " [" + std::to_string(state->current) + "]";
  XStoreName(shared.display, state->window, text.c_str());
  XSetIconName(shared.display, state->window, text.c_str());
}

int XWindow::setIcon(bool on) { return state->iconic = on, 1; }

int XWindow::setFixed(bool on) { return state->fixed = on, 1; }

int XWindow::setInverse(bool on) { return state->inverse = on, 1; }

bool XWindow::getInverse() { return state->inverse; }

int XWindow::setBackground(const char* color) {
  state->back_color = StrLib::equal(color, "def") ? "" : std::string(StrLib::valid(color, "")).substr(0, MAX_DISPLAY);
  return 1;
}

int XWindow::setSize(float w, float h) {
  // Written so that a number that is none is refused too.
  if (!(w >= 1.0f && h >= 1.0f && w <= MAX_SIZE && h <= MAX_SIZE)) {
    DeviceOptions::refuseSize("XWindow", w, h, MAX_SIZE, getWidth(), getHeight());
    return 0;
  }
  state->width = static_cast<int>(w);
  state->height = static_cast<int>(h);
  return 1;
}

int XWindow::getSize(float& w, float& h) { return w = getWidth(), h = getHeight(), 1; }

float XWindow::getWidth() { return static_cast<float>(state->width); }

float XWindow::getHeight() { return static_cast<float>(state->height); }

int XWindow::setOffset(float x, float y) {
  if (!(std::fabs(x) < 32768.0f && std::fabs(y) < 32768.0f)) return 0;
  state->x = static_cast<int>(x);
  state->y = static_cast<int>(y);
  return 1;
}

int XWindow::getOffset(float& x, float& y) {
  x = static_cast<float>(state->x);
  y = static_cast<float>(state->y);
  return 1;
}

int XWindow::getCoords(Rect& r) { return r = getCoords(), 1; }

Rect XWindow::getCoords() {
  Rect r;
  r.setu(0.0f, 0.0f, getWidth() - 1.0f, getHeight() - 1.0f);
  return r;
}

// Opening and closing.

bool XWindow::connect() {
  Shared& shared = Shared::get();
  if (shared.display && !shared.lost) return true;
  XSetErrorHandler(KYV::onError);
  XSetIOErrorHandler(KYV::onLoss);
  shared.display = XOpenDisplay(state->display.empty() ? nullptr : state->display.c_str());
  shared.lost = false;
  if (!shared.display) {
    std::fprintf(stderr, "XWindow: unable to connect to display\n");
    return false;
  }
  // Without it the library would end the program when the display goes.
  XSetIOErrorExitHandler(
      shared.display, [](Display*, void*) { XWindow::onLoss(); }, nullptr);
  shared.deleteWindow = XInternAtom(shared.display, "WM_DELETE_WINDOW", False);
  return true;
}

int XWindow::open() {
  if (state->opened) return 1;
  Shared& shared = Shared::get();
  const auto slot = std::find(shared.windows.begin(), shared.windows.end(), nullptr);
  if (slot == shared.windows.end() || !connect()) return 0;
  const int screen = DefaultScreen(shared.display);
  State& s = *state;
  s.visual = DefaultVisual(shared.display, screen);
  s.depth = DefaultDepth(shared.display, screen);
  s.colormap = DefaultColormap(shared.display, screen);
  s.foreground = s.inverse ? BlackPixel(shared.display, screen) : WhitePixel(shared.display, screen);
  s.background = s.inverse ? WhitePixel(shared.display, screen) : BlackPixel(shared.display, screen);
  if (!s.back_color.empty()) {
    XColor color = {};
    if (XParseColor(shared.display, s.colormap, s.back_color.c_str(), &color) &&
        XAllocColor(shared.display, s.colormap, &color)) {
      s.background = color.pixel;
    }
  }
  *slot = this;
  s.number = static_cast<int>(slot - shared.windows.begin());
  if (!(s.mode == State::OWN ? makeWindow() : takeWindow())) {
    *slot = nullptr;
    shared.release();
    return 0;
  }
  s.opened = true;
  makeContexts();
  setClip(0.0f, 0.0f, getWidth() - 1.0f, getHeight() - 1.0f);
  if (s.mode == State::OWN) {
    clear();
    shared.callbacks.push_back({s.window, "AnyEvent", this, nullptr});
    awaitWindow();
    update();
  }
  return alive() ? 1 : 0;
}

bool XWindow::makeWindow() {
  Shared& shared = Shared::get();
  State& s = *state;
  Display* display = shared.display;
  const int screen = DefaultScreen(display);
  if (s.x < 0) s.x = DisplayWidth(display, screen) + s.x - s.width;
  if (s.y < 0) s.y = DisplayHeight(display, screen) + s.y - s.height;

  shared.error = false;
  shared.print = false;
  XSetWindowAttributes attributes = {};
  attributes.background_pixel = s.background;
  attributes.border_pixel = s.foreground;
  attributes.event_mask = EVENTS;
  s.window = XCreateWindow(display, RootWindow(display, screen), s.x, s.y, static_cast<unsigned>(s.width),
                           static_cast<unsigned>(s.height), BORDER, s.depth, InputOutput, s.visual,
                           CWBackPixel | CWBorderPixel | CWEventMask, &attributes);
  s.base = s.window ? XCreatePixmap(display, s.window, static_cast<unsigned>(s.width), static_cast<unsigned>(s.height),
                                    static_cast<unsigned>(s.depth))
                    : 0;
  XSync(display, False);
  shared.print = true;
  if (shared.error || !s.window || shared.lost) {
    std::fprintf(stderr, "Window open: unable to open window\n");
    return false;
  }
  s.shown = s.target = s.base;

  XSizeHints size = {};
  size.flags = USPosition | USSize | PMinSize;
  size.x = s.x, size.y = s.y;
  size.width = s.width, size.height = s.height;
  size.min_width = s.fixed ? s.width : MIN_SIZE;
  size.min_height = s.fixed ? s.height : MIN_SIZE;
  if (s.fixed) {
    size.flags |= PMaxSize;
    size.max_width = s.width;
    size.max_height = s.height;
  }
  const auto bits = makeIcon();
  const Pixmap icon = XCreateBitmapFromData(display, s.window, bits.data(), ICON_SIZE, ICON_SIZE);
  XSetStandardProperties(display, s.window, s.title.c_str(), s.title.c_str(), icon, nullptr, 0, &size);
  XWMHints hints = {};
  hints.flags = InputHint | StateHint | IconPixmapHint;
  hints.input = True;
  hints.initial_state = s.iconic ? IconicState : NormalState;
  hints.icon_pixmap = icon;
  XSetWMHints(display, s.window, &hints);
  char name[] = "KYV", kind[] = "Kyv";
  XClassHint hint = {name, kind};
  XSetClassHint(display, s.window, &hint);
  XSetWMProtocols(display, s.window, &shared.deleteWindow, 1);
  XMapWindow(display, s.window);
  return true;
}

// A window of another program, whose title it takes.
bool XWindow::takeWindow() {
  Shared& shared = Shared::get();
  State& s = *state;
  shared.error = false;
  shared.print = false;
  char* name = nullptr;
  if (XFetchName(shared.display, s.window, &name) && name) {
    s.title = name;
    s.title = s.title.substr(0, s.title.find(" ["));
    XFree(name);
  }
  XWindowAttributes attributes = {};
  const bool there = XGetWindowAttributes(shared.display, s.window, &attributes) != 0;
  shared.print = true;
  if (!there || shared.error) {
    std::fprintf(stderr, "Window open: unable to open window\n");
    return false;
  }
  s.depth = attributes.depth;
  s.shown = s.target = s.window;
  return true;
}

// Waits until the window is on the screen, which without a window manager it is at once.
void XWindow::awaitWindow() {
  if (state->iconic) return;
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::duration<double>(SHOW_TIME);
  while (!state->mapped && alive() && Clock::now() < end) handleEvents(0.02);
}

void XWindow::makeContexts() {
  Shared& shared = Shared::get();
  State& s = *state;
  Display* display = shared.display;
  for (GC& gc : s.contexts) {
    gc = XCreateGC(display, s.target, 0, nullptr);
    XSetForeground(display, gc, s.foreground);
    XSetBackground(display, gc, s.background);
    XSetGraphicsExposures(display, gc, False);
  }
  XSetLineAttributes(display, s.contexts[TEXT], 1, LineSolid, CapProjecting, JoinBevel);
  XSetFillStyle(display, s.contexts[FILL], FillSolid);
  for (const auto& rows : FILL_PATTERNS) {
    char bits[8];
    std::memcpy(bits, rows.data(), sizeof bits);
    s.stipples.push_back(XCreateBitmapFromData(display, s.target, bits, 8, 8));
  }
  // Of a display that has gone nobody takes requests any more, until they run over their buffer: it is asked first.
  XSync(display, False);
  for (std::size_t i = 0; i < s.cursors.size() && !shared.lost; ++i) {
    s.cursors[i] = XCreateFontCursor(display, CURSOR_SHAPES[i]);
  }
  if (shared.lost) return;
  s.font = XLoadQueryFont(display, DEFAULT_FONT);
  if (s.font) {
    XSetFont(display, s.contexts[TEXT], s.font->fid);
  } else {
    Kyv::outWarning("read_font: unable to load font: %s\n", DEFAULT_FONT);
  }
}

int XWindow::close() {
  if (!state->opened) return 0;
  Shared& shared = Shared::get();
  State& s = *state;
  std::erase_if(shared.callbacks, [&s](const XCallback& c) { return c.window == s.window; });
  // Of a display that has gone only the memory on this side is left.
  Display* display = shared.display;
  for (const GC gc : s.contexts) XFreeGC(display, gc);
  if (s.font) XFreeFont(display, s.font);
  if (!shared.lost) {
    for (const State::Frame& frame : s.frames) XFreePixmap(display, frame.pixmap);
    if (s.base) XFreePixmap(display, s.base);
    for (const Pixmap stipple : s.stipples) XFreePixmap(display, stipple);
    for (const Cursor cursor : s.cursors) XFreeCursor(display, cursor);
    if (s.mode == State::OWN && !s.gone) XDestroyWindow(display, s.window);
    XSync(display, False);
  }
  shared.windows[static_cast<std::size_t>(s.number)] = nullptr;
  shared.managed = false;
  state = std::make_unique<State>();
  shared.release();
  return 1;
}

}  // namespace KYV
