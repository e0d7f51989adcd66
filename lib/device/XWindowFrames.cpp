// Animation frames, each a pixmap.
#include <algorithm>

#include "KYV/Kyv.h"
#include "KYV/XWindow.h"
#include "XWindowState.h"

namespace KYV {

namespace {

// Loops go faster and slower by these steps.
constexpr float SLOW = 1.6f;  // seconds; above, steps are long
constexpr float SHORT_STEP = 0.1f;
constexpr float LONG_STEP = 1.0f;
constexpr float LEAST_DELAY = 0.05f;
constexpr float MOST_DELAY = 10.0f;
// A little above LEAST_DELAY and 1 second, for what sums of steps leave.
constexpr float NEAR_LEAST = 0.051f;
constexpr float NEAR_SECOND = 1.01f;
constexpr int CURSOR_LOOPING = 3;
constexpr int CURSOR_STOPPED = 4;
constexpr int ROCKING = 2;  // loop directions from here on turn at the ends
constexpr int ROCKING_BACK = 3;

}  // namespace

int XWindow::getNumFrames() { return static_cast<int>(state->frames.size()); }

int XWindow::getFrame() { return state->current; }

bool XWindow::isLooping() { return state->looping; }

float XWindow::getDelay() const { return state->delay; }

int XWindow::newFrame(int n) {
  if (!alive()) return 0;
  Shared& shared = Shared::get();
  State& s = *state;
  const int num = getNumFrames();
  if (n == -1) n = num;
  if (n < 0 || n > num || n >= MAX_FRAME) return 0;
  if (n == num) {
    // The server tells of a lack of memory later, so it is asked at once.
    shared.error = false;
    shared.print = false;
    const Pixmap pixmap = XCreatePixmap(shared.display, s.window, static_cast<unsigned>(s.width),
                                        static_cast<unsigned>(s.height), static_cast<unsigned>(s.depth));
    XSync(shared.display, False);
    shared.print = true;
    if (shared.error || shared.lost) {
      Kyv::outWarning("XWindow: the display has no room for more than %d frames of this size\n", num);
      return 0;
    }
    if (num > 0) s.frames.back().delay = s.delay;
    s.frames.push_back({pixmap, s.delay, s.dwell});
    setFrame(n);
    clear();
  }
  return setFrame(n);
}

int XWindow::newFrame() {
  const int before = getNumFrames();
  newFrame(-1);
  return before;
}

int XWindow::setFrame(int n) {
  State& s = *state;
  if (!alive() || s.frames.empty()) return 0;
  if (n == -1) n = getNumFrames() - 1;
  if (n == -2) n = s.current;
  if (n == -3) return s.target = s.ground(), 1;
  if (n < 0 || n >= getNumFrames()) return 0;
  s.target = s.frames[static_cast<std::size_t>(n)].pixmap;
  return 1;
}

int XWindow::displayFrame(int n) {
  State& s = *state;
  if (!alive() || s.frames.empty()) return 0;
  if (n == -1) n = getNumFrames() - 1;
  if (n < 0 || n >= getNumFrames()) return 0;
  Kyv::outDebug(4, "Display frame: %s [%d]\n", s.title.c_str(), n);
  s.shown = s.frames[static_cast<std::size_t>(n)].pixmap;
  s.current = n;
  if (s.show_number) showTitle();
  return update();
}

int XWindow::copyFrame(int to, int from) {
  State& s = *state;
  if (!alive() || to < 0 || from < 0 || to >= getNumFrames() || from >= getNumFrames()) return 0;
  const Pixmap source = s.frames[static_cast<std::size_t>(from)].pixmap;
  const Pixmap target = s.frames[static_cast<std::size_t>(to)].pixmap;
  Kyv::outDebug(5, "Copy frame: %d[%d] %d[%d]\n", to, static_cast<int>(target), from, static_cast<int>(source));
  XCopyArea(Shared::get().display, source, target, s.contexts[State::COPY], 0, 0, static_cast<unsigned>(s.width),
            static_cast<unsigned>(s.height), 0, 0);
  return 1;
}

int XWindow::clearFrame(int n) {
  State& s = *state;
  if (!alive() || n < 0 || n >= getNumFrames()) return 0;
  const Pixmap before = s.target;
  s.target = s.frames[static_cast<std::size_t>(n)].pixmap;
  clear();
  s.target = before;
  return 1;
}

int XWindow::deleteFrame(int n) {
  State& s = *state;
  if (!alive() || n < 0 || n >= getNumFrames()) return 0;
  Kyv::outDebug(4, "Deleting frame %d\n", n);
  const Pixmap pixmap = s.frames[static_cast<std::size_t>(n)].pixmap;
  const bool wasShown = s.shown == pixmap;
  s.frames.erase(s.frames.begin() + n);
  if (s.target == pixmap) s.target = s.ground();
  if (wasShown) s.shown = s.ground();
  XFreePixmap(Shared::get().display, pixmap);
  if (s.frames.empty()) {
    s.current = 0;
    s.looping = false;
    clear();
    return update();
  }
  if (s.current > n) --s.current;
  return displayFrame(std::min(s.current, getNumFrames() - 1));
}

// By a key: those who keep something of each frame have to know.
void XWindow::deleteShown() {
  const int n = state->current;
  if (deleteFrame(n)) doCallback("DeleteFrame", std::to_string(n).c_str());
}

int XWindow::deleteFrame() {
  while (getNumFrames() > 0 && deleteFrame(0)) continue;
  return 1;
}

int XWindow::incFrame(int step) {
  State& s = *state;
  if (!alive() || s.frames.empty()) return -1;
  const int first = s.firstFrame(), last = s.lastFrame();
  const bool rocking = s.direction == ROCKING || s.direction == ROCKING_BACK;
  const int by = step != 0 ? step : s.direction == ROCKING_BACK ? -1 : rocking ? 1 : s.direction;
  int next = s.current + by;
  if (next > last || next < first) {
    if (step == 0 && rocking) {
      s.direction = s.direction == ROCKING ? ROCKING_BACK : ROCKING;
      next = std::clamp(s.current - by, first, last);
    } else {
      next = next > last ? first : last;
    }
  }
  displayFrame(next);
  return s.current;
}

int XWindow::loopRate(int direction) {
  float& delay = state->delay;
  if (direction > 0) {
    delay = std::max(delay - (delay < SLOW ? SHORT_STEP : LONG_STEP), LEAST_DELAY);
  } else if (delay <= NEAR_LEAST) {
    delay = SHORT_STEP;
  } else {
    delay = std::min(delay + (delay < NEAR_SECOND ? SHORT_STEP : LONG_STEP), MOST_DELAY);
  }
  Kyv::outDebug(4, "Delay: %f\n", static_cast<double>(delay));
  return 1;
}

int XWindow::toggleLoop() {
  state->looping = !state->looping;
  setCursor(state->looping ? CURSOR_LOOPING : CURSOR_STOPPED);
  return 1;
}

}  // namespace KYV
