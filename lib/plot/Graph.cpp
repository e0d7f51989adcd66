// The device's life, the transforms, lines and fills. Attributes and fonts: GraphAttr.cpp; texts, markers and symbols:
// GraphText.cpp.
#include "KYV/Graph.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "KYV/Const.h"
#include "KYV/Device.h"
#include "KYV/Hpgl.h"
#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "KYV/MetaFile.h"
#include "KYV/Postscript.h"
#include "KYV/Raster.h"
#include "KYV/String.h"
#include "KYV/Strings.h"
#include "KYV/XWindow.h"
#include "PlotEvent.h"

namespace KYV {

namespace {

template <class T>
std::unique_ptr<Device> make() {
  return std::make_unique<T>();
}

// The devices of this program. Those without fonts take every font's name but draw no text.
struct Maker {
  const char* name;
  Graph::Type type;
  bool fonts;
  std::unique_ptr<Device> (*make)();
};
// The last one is the device of any other name.
constexpr Maker MAKERS[] = {
    {"postscript", Graph::POSTSCRIPT, false, make<Postscript>},
    {"hpgl", Graph::HPGL, false, make<Hpgl>},
    {"meta", Graph::METAFILE, true, make<MetaFile>},
    {"raster", Graph::RASTER, false, make<Raster>},
    {"display", Graph::XWINDOW, true, make<XWindow>},
};

constexpr int MAX_MESSAGE = 100;  // characters
constexpr int CIRCLE_STEPS = 72;  // pieces of a circle, 5 degrees each

// A point of the unit circle for each step, the last one equal to the first.
const std::array<Point, CIRCLE_STEPS + 1>& unitCircle() {
  static const auto CIRCLE = [] {
    std::array<Point, CIRCLE_STEPS + 1> points;
    for (std::size_t i = 0; i < CIRCLE_STEPS; ++i) {
      const double angle = static_cast<double>(i) * 360.0 / CIRCLE_STEPS * Const::DRC;
      points[i].set(static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)));
    }
    points[CIRCLE_STEPS] = points[0];
    return points;
  }();
  return CIRCLE;
}

std::span<const Point> allOf(const Points& points) { return {points.begin(), points.end()}; }

}  // namespace

Graph::Graph() = default;

Graph::~Graph() { close(); }

// Device.

int Graph::setDevice(const char* type, const char* params) {
  close();
  const Maker* row = std::find_if(std::begin(MAKERS), std::end(MAKERS) - 1,
                                  [type](const Maker& m) { return StrLib::iequal(m.name, type); });
  setDevice(row->make());
  devtype = row->type;
  device_fonts = row->fonts;
  const Strings tokens(params, ',');
  device_text = tokens.find("hfont") >= 0;
  device->setParam(params);
  return 1;
}

int Graph::setDevice(std::unique_ptr<Device> newDevice) {
  close();
  device = std::move(newDevice);
  device_fonts = true;
  device_text = false;
  return device ? 1 : 0;
}

int Graph::getDevice(String& name) { return device ? device->getDevice(name) : 0; }

int Graph::open() {
  state = State();
  managed = false;
  if (!device) setDevice("display", nullptr);
  device->setFixed(fixed);
  if (!device->open()) {
    // The device has told why; nothing can be drawn on it.
    device.reset();
    devtype = NONE;
    return 0;
  }
  opened = true;
  for (GTran& t : trans) t.set(device->getCoords());
  if (!*font_spec) findFontSpec(font_name);
  loadFont();
  (void)symbol.read(symbol_file);
  device->addCallback("AnyEvent", this, nullptr);
  return 1;
}

int Graph::close() {
  const int result = opened ? device->close() : 1;
  device.reset();
  devtype = NONE;
  opened = managed = false;
  return result;
}

int Graph::discard() {
  const int result = opened ? device->discard() : 1;
  device.reset();
  devtype = NONE;
  opened = managed = false;
  return result;
}

int Graph::manage() {
  if (!device) return 0;
  device->update();
  const int result = device->manage();
  managed = true;
  return result;
}

int Graph::unmanage() {
  if (!device) return 0;
  managed = false;
  return device->unmanage();
}

int Graph::update() { return device ? device->update() : 0; }

int Graph::addCallback(const char* event, Listener* listener, const void* data) {
  return device && !managed ? device->addCallback(event, listener, data) : 0;
}

int Graph::doCallback(const char* event, const char* data) { return device ? device->doCallback(event, data) : 0; }

void Graph::callback(const char* name, const char* value, const void* data) {
  if (!device || !PlotEvent(name, value, data).is("Redraw")) return;
  for (GTran& t : trans) t.resize(device->getCoords());
  activateTran();
}

int Graph::setFixed(bool on) {
  fixed = on;
  return device ? device->setFixed(on) : 0;
}

int Graph::setSize(float w, float h) { return device ? device->setSize(w, h) : 0; }
int Graph::setOffset(float x, float y) { return device ? device->setOffset(x, y) : 0; }
int Graph::setInverse(bool on) { return device ? device->setInverse(on) : 0; }
bool Graph::getInverse() { return device && device->getInverse(); }
int Graph::setBackground(const char* color) { return device ? device->setBackground(color) : 0; }
int Graph::setIcon(bool on) { return device ? device->setIcon(on) : 0; }
int Graph::setTitle(const char* title) { return device ? device->setTitle(title) : 0; }
int Graph::setCursor(int shape) { return device ? device->setCursor(shape) : 0; }
int Graph::bell() { return device ? device->bell(0) : 0; }

int Graph::message(const char* format, ...) {
  if (!device) return 0;
  char text[MAX_MESSAGE + 1];
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, sizeof text, format, args);
  va_end(args);
  return device->message(text);
}

// Transforms.

int Graph::setTran(int n) {
  if (n < 0 || n >= NUM_TRAN) return 0;
  tran = n;
  return 1;
}

int Graph::activateTran() { return device ? device->setClip(trans[index()].getClipRect()) : 0; }

int Graph::activateTran(int n) { return setTran(n) ? activateTran() : 0; }

int Graph::setWindow(const Rect& r) { return setWindow(tran, r); }

int Graph::setViewport(const Rect& r) { return setViewport(tran, r); }

int Graph::setWindow(int n, const Rect& r) {
  return n >= 0 && n < NUM_TRAN ? trans[static_cast<std::size_t>(n)].setWindow(r) : 0;
}

int Graph::setViewport(int n, const Rect& r) {
  return n >= 0 && n < NUM_TRAN ? trans[static_cast<std::size_t>(n)].setViewport(r) : 0;
}

int Graph::getDeviceViewport(Rect& r) { return device ? device->getCoords(r) : 0; }

Rect Graph::getDeviceViewport() { return device ? device->getCoords() : Rect(); }

int Graph::setViewportAspect(const Rect& r, float aspect, int halign, int valign) {
  const Rect ndc = cur().getNdc();
  float x1 = r.xmin < 0.0f ? ndc.xmin - r.xmin : r.xmin;
  float y1 = r.ymin < 0.0f ? ndc.ymin - r.ymin : r.ymin;
  float x2 = r.xmax < 0.0f ? ndc.xmax + r.xmax : r.xmax;
  float y2 = r.ymax < 0.0f ? ndc.ymax + r.ymax : r.ymax;
  const float w = x2 - x1;
  const float h = y2 - y1;
  // Nothing fits into a place without extent.
  if (!(w > 0.0f && h > 0.0f && std::isfinite(w) && std::isfinite(h))) return 0;
  const float shape = std::isnormal(aspect) && aspect > 0.0f ? aspect : w / h;
  const bool narrow = shape / w * h < 1.0f;
  const float newWidth = narrow ? shape * h : w;
  const float newHeight = narrow ? h : w / shape;

  const Rect place(x1, y1, x2, y2);
  if (halign == 1) {
    x2 = x1 + newWidth;
  } else if (halign == 3) {
    x1 = x2 - newWidth;
  } else {
    x1 += (w - newWidth) * 0.5f;
    x2 -= (w - newWidth) * 0.5f;
  }
  if (valign == 3) {
    y1 = y2 - newHeight;
  } else if (valign == 1) {
    y2 = y1 + newHeight;
  } else {
    y1 += (h - newHeight) * 0.5f;
    y2 -= (h - newHeight) * 0.5f;
  }
  const Rect view(x1, y1, x2, y2);
  if (Kyv::isDebug(4)) {
    std::printf("setViewAsp %f\n", static_cast<double>(aspect));
    std::printf("NDC: "), ndc.print();
    std::printf("Lim: "), r.print();
    std::printf("Rect: "), place.print();
    std::printf("DIFF %f %f\n", static_cast<double>(w), static_cast<double>(h));
    std::printf("VW %f %f\n", static_cast<double>(newWidth), static_cast<double>(newHeight));
    view.print();
  }
  return setViewport(view);
}

int Graph::tranPlotView(float px, float py, float& vx, float& vy) const {
  vx = cur().tranPlotNdcX(px);
  vy = cur().tranPlotNdcY(py);
  return 1;
}

int Graph::tranPlotWindow(float px, float py, float& wx, float& wy) const {
  wx = cur().tranPlotWindowX(px);
  wy = cur().tranPlotWindowY(py);
  return 1;
}

int Graph::tranPlotWindow(const Point& p, Point& w) const { return tranPlotWindow(p.x, p.y, w.x, w.y); }

int Graph::tranWindow(int from, float x, float y, int to, float& ox, float& oy) const {
  if (from < 0 || from >= NUM_TRAN || to < 0 || to >= NUM_TRAN) return 0;
  const GTran& a = trans[static_cast<std::size_t>(from)];
  const GTran& b = trans[static_cast<std::size_t>(to)];
  ox = b.tranPlotWindowX(a.tranWindowPlotX(x));
  oy = b.tranPlotWindowY(a.tranWindowPlotY(y));
  return 1;
}

int Graph::tranWindow(int from, const Point& p, int to, Point& o) const {
  return tranWindow(from, p.x, p.y, to, o.x, o.y);
}

int Graph::printTran() const {
  std::printf("Current: %d\n", tran);
  for (std::size_t i = 0; i < trans.size(); ++i) {
    std::printf("%d: ", static_cast<int>(i));
    trans[i].print();
  }
  return 1;
}

// Drawing.

const Points& Graph::toPlot(std::span<const Point> points) {
  const GTran& t = cur();
  scratch.clear();
  for (const Point& p : points) scratch.add(t.tranWindowPlotX(p.x), t.tranWindowPlotY(p.y));
  return scratch;
}

int Graph::clear() { return device ? device->clear() : 0; }

int Graph::clearRect(const Rect& r) {
  if (!device) return 0;
  const GTran& t = cur();
  return device->clearRect(
      Rect(t.tranWindowPlotX(r.xmin), t.tranWindowPlotY(r.ymax), t.tranWindowPlotX(r.xmax), t.tranWindowPlotY(r.ymin)));
}

int Graph::allocColor(float r, float g, float b) { return device ? device->allocColor(r, g, b) : 0; }

int Graph::drawLine(float x1, float y1, float x2, float y2) {
  if (!device) return 0;
  const GTran& t = cur();
  return device->drawLine(Device::LINE, t.tranWindowPlotX(x1), t.tranWindowPlotY(y1), t.tranWindowPlotX(x2),
                          t.tranWindowPlotY(y2));
}

int Graph::drawLine(const Points& points) {
  if (!device || points.getNum() < 2 || !cur().isPointsInWindow(points)) return 0;
  toPlot(allOf(points));
  if (const int n = getShadow()) {
    const auto shift = [this](float d) {
      for (Point& p : scratch) p.set(p.x + d, p.y + d);
    };
    device->setColor(Device::LINE, state.drop_color);
    device->setLineWidth(Device::LINE, static_cast<float>(state.drop_width));
    for (int i = 0; i < n; ++i) {
      shift(1.0f);
      device->drawLine(Device::LINE, scratch);
    }
    device->setLineWidth(Device::LINE, state.line_width);
    device->setColor(Device::LINE, state.line_color);
    shift(static_cast<float>(-n));
  }
  return device->drawLine(Device::LINE, scratch);
}

int Graph::drawRect(float x1, float y1, float x2, float y2) {
  if (!device) return 0;
  const Point outline[] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}};
  return device->drawLine(Device::LINE, toPlot(outline));
}

int Graph::drawCircle(float x, float y, float r) {
  if (!device) return 0;
  std::array<Point, CIRCLE_STEPS + 1> circle = unitCircle();
  for (Point& p : circle) p.set(x + r * p.x, y + r * p.y);
  return device->drawLine(Device::LINE, toPlot(circle));
}

int Graph::drawFill(const Points& points) {
  if (!device || points.getNum() < 2 || !cur().isPointsInWindow(points)) return 0;
  return device->drawFill(Device::FILL, toPlot(allOf(points)));
}

int Graph::drawFill(const Rect& r) {
  const Point box[] = {{r.xmin, r.ymin}, {r.xmin, r.ymax}, {r.xmax, r.ymax}, {r.xmax, r.ymin}, {r.xmin, r.ymin}};
  if (!device || !cur().isPointsInWindow(static_cast<int>(std::size(box)), box)) return 0;
  return device->drawFill(Device::FILL, toPlot(box));
}

int Graph::setImageAlign(int h, int v) { return device ? device->setImageAlign(h, v) : 0; }

int Graph::drawImage(const Image& image, float x, float y) {
  return device ? device->drawImage(image, cur().tranWindowPlotX(x), cur().tranWindowPlotY(y)) : 0;
}

int Graph::drawImage(const Image& image, int arg, float x, float y) {
  return device ? device->drawImage(image, arg, cur().tranWindowPlotX(x), cur().tranWindowPlotY(y)) : 0;
}

int Graph::placeImage(const Image& image, float x, float y, int halign, int valign) {
  if (!device) return 0;
  if (!isFileDevice()) {
    device->setImageAlign(halign, valign);
    const int drawn = drawImage(image, x, y);
    device->setImageAlign(1, 3);
    return drawn;
  }
  const GTran& t = cur();
  const float w = static_cast<float>(image.getWidth()), h = static_cast<float>(image.getHeight());
  const bool up = t.tranWindowPlotY(t.getWindow().ymax) > t.tranWindowPlotY(t.getWindow().ymin);
  // Whole points: where the rectangle is widened by a fraction they stay what they are.
  constexpr float INSIDE = 0.2f;
  const float left = std::floor(t.tranWindowPlotX(x) - static_cast<float>(halign - 1) * w / 2.0f) + INSIDE;
  const float above = static_cast<float>(3 - valign) * h / 2.0f;
  const float low = std::floor(t.tranWindowPlotY(y) + (up ? above - h : -above)) + INSIDE;
  device->setClip(left, low, left + w, low + h);
  const int drawn = device->drawImage(image, 0.0f, 0.0f);
  activateTran();
  return drawn;
}

int Graph::getImage(Image& image) { return device ? device->getImage(image) : 0; }

// Frames.

bool Graph::isLooping() { return device && device->isLooping(); }
int Graph::getFrame() { return device ? device->getFrame() : 0; }
int Graph::setFrame(int frame) { return device ? device->setFrame(frame) : 0; }
int Graph::displayFrame(int frame) { return device ? device->displayFrame(frame) : 0; }
int Graph::deleteFrame(int frame) { return device ? device->deleteFrame(frame) : 0; }
int Graph::getNumFrames() { return device ? device->getNumFrames() : 0; }

int Graph::newFrame() {
  if (!device) return 0;
  device->displayFrame(-1);
  return device->newFrame(-1) && device->setFrame(-1);
}

}  // namespace KYV
