// The attributes, of which a device is told changes alone, and the fonts.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "DataLines.h"
#include "KYV/DataPath.h"
#include "KYV/Device.h"
#include "KYV/Graph.h"
#include "KYV/Kyv.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr const char* DEFAULT_FONT = "modern.fnt";
constexpr const char* FONT_LIST = "kyv.fnl";
constexpr std::size_t MAX_LINE = 250;  // characters of the font list
constexpr float MAX_SIZE = 10000.0f;   // of a device font, plot units

enum FontType { NO_FONT = 0, STROKE_FONT = 1, DEVICE_FONT = 2, SCALED_FONT = 3 };

}  // namespace

int Graph::getShadow() const { return std::clamp(state.drop_shadow, 0, MAX_SHADOW); }

int Graph::setStyle(int& kept, int value, int (Device::*set)(int, int), int cls) {
  if (!device || kept == value) return 0;
  ((*device).*set)(cls, value);
  kept = value;
  return 1;
}

int Graph::setWidth(float& kept, float value, int cls) {
  if (!device || kept == value) return 0;
  device->setLineWidth(cls, value);
  kept = value;
  return 1;
}

int Graph::setLineColor(int value) { return setStyle(state.line_color, value, &Device::setColor, Device::LINE); }
int Graph::setLineWidth(float width) { return setWidth(state.line_width, width, Device::LINE); }
int Graph::setLineStyle(int style) { return setStyle(state.line_style, style, &Device::setLineStyle, Device::LINE); }
int Graph::setFillColor(int value) { return setStyle(state.fill_color, value, &Device::setColor, Device::FILL); }
int Graph::setFillStyle(int style) { return setStyle(state.fill_style, style, &Device::setFillStyle, Device::FILL); }
int Graph::setTextColor(int value) { return setStyle(state.text_color, value, &Device::setColor, Device::TEXT); }
int Graph::setTextWeight(float width) { return setWidth(state.text_weight, width, Device::TEXT); }
int Graph::setMarkColor(int value) { return setStyle(state.mark_color, value, &Device::setColor, Device::MARKER); }
int Graph::setMarkWeight(float width) { return setWidth(state.mark_weight, width, Device::MARKER); }

int Graph::setTextHeight(float height) {
  if (state.text_height == height) return 0;
  state.text_height = height;
  if (font_type == SCALED_FONT) setFontSpec();
  return 1;
}

int Graph::setTextDirection(float upx, float upy) {
  const float length = std::hypot(upx, upy);
  if (!std::isnormal(length)) return 0;
  state.text_upx = upx / length;
  state.text_upy = upy / length;
  return 1;
}

int Graph::setMarkType(int type) {
  if (state.mark_type == type) return 0;
  state.mark_type = type;
  return 1;
}

int Graph::setMarkSize(float size) {
  if (state.mark_size == size) return 0;
  state.mark_size = size;
  return 1;
}

int Graph::setFont(const char* name) {
  // A name may be cut, or stand for a file that another name has already loaded.
  if (!StrLib::valid(name) || StrLib::equal(name, font_name) || StrLib::equal(name, font_spec)) return 0;
  StrLib::copy(font_name, name);
  findFontSpec(name);
  if (opened) loadFont();
  return 1;
}

// What the font list says of a name; the name itself where it says nothing.
void Graph::findFontSpec(const char* name) {
  StrLib::copy(font_spec, name);
  String path;
  File list;
  if (*name == '#' || !DataPath::find(FONT_LIST, path) || !list.openData(path.get())) return;
  char line[MAX_LINE + 1];
  while (nextLine(list, line)) {
    char* end = line + std::strcspn(line, " \t");
    if (!*end) continue;
    *end = '\0';
    if (!StrLib::equal(line, name)) continue;
    ++end;
    StrLib::copy(font_spec, end + std::strspn(end, " \t"));
    return;
  }
}

int Graph::loadFont() {
  font_type = NO_FONT;
  if (*font_spec == '#' && setFontSpec()) {
    font_type = StrLib::index(font_spec, '{') >= 0 ? SCALED_FONT : DEVICE_FONT;
    return 1;
  }
  font_type = STROKE_FONT;
  if (*font_spec != '#' && font.read(font_spec)) return 1;
  if (!StrLib::equal(font_spec, DEFAULT_FONT)) {
    Kyv::report(Kyv::MISC, "setFont: unable to load font: %s, using modern\n", font_spec);
    StrLib::copy(font_spec, DEFAULT_FONT);
    if (font.read(font_spec)) return 1;
  }
  Kyv::report(Kyv::MISC, "Graph: no font file %s, so no text is drawn; name the directory of the data files with -fp\n",
              font_spec);
  return 0;
}

// Hands the device the name of its font, a size in place of "{n}": the text height in plot units times n / 10.
int Graph::setFontSpec() {
  if (!device || !device_fonts) return 0;
  String spec(font_spec + 1);
  const int open = spec.index('{');
  if (open >= 0) {
    const int n = StrLib::toInt(spec.get(), open + 1);
    const float window = cur().getWindow().height();
    const float surface = device->getHeight();
    float size = state.text_height / window * surface * static_cast<float>(n) / 10.0f;
    size = size > 0.0f ? std::min(size, MAX_SIZE) : 0.0f;
    Kyv::outDebug(5, "Font: %s %.2f %.2f %.2f %.2f\n", font_spec, static_cast<double>(state.text_height),
                  static_cast<double>(surface), static_cast<double>(window), static_cast<double>(size));
    const int close = spec.index('}');
    const String rest(close > open ? spec.get() + close + 1 : "");
    char number[20];
    StrLib::printf(number, "%.0f", static_cast<double>(size));
    spec.trunc(open);
    spec.append(number);
    spec.append(rest);
  }
  return device->setFont(spec.get());
}

int Graph::setSymbol(const char* name) {
  if (!StrLib::valid(name) || StrLib::equal(name, symbol_file)) return 0;
  StrLib::copy(symbol_file, name);
  return symbol.read(name);
}

}  // namespace KYV
