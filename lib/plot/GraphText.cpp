// Texts, markers and symbols, with their drop shadows.
#include <algorithm>
#include <cstdarg>
#include <iterator>

#include "KYV/Device.h"
#include "KYV/Graph.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr float FONT_UNITS = 105.0f;  // of a text height
constexpr float LINE_STEP = 1.3f;     // of a text height
constexpr float SPACE = 100.0f;       // font units of a spacing, or a character width, of 1
constexpr float BLANK = 40.0f;        // width of a blank, font units
constexpr int MAX_TEXT = 1000;        // characters of a formatted text
constexpr int MAX_DEVICE_LINE = 99;   // characters of a line in a font of the device

// Where the vertical alignments put the anchor.
struct VAlign {
  float offset;     // of stroke letters, font units
  int deviceAlign;  // 1 top, 2 middle, 3 bottom
  int linesAbove;   // in halves of the lines after the first: how many stand above the anchor
};
constexpr VAlign VALIGNS[] = {{-35.0f, 3, 2}, {-160.0f, 1, 0}, {-140.0f, 1, 0}, {-85.0f, 2, 1}, {-35.0f, 3, 2}};
constexpr VAlign OTHER_VALIGN = {0.0f, 3, 2};

const VAlign& findVAlign(int valign) {
  return valign >= 0 && valign < static_cast<int>(std::size(VALIGNS)) ? VALIGNS[valign] : OTHER_VALIGN;
}

int findHAlign(int halign) { return halign == 2 || halign == 3 ? halign : 1; }

// A polyline of a marker, in halves of its size.
constexpr int MAX_MARK_POINTS = 13;
struct MarkLine {
  int type;
  int num;
  float at[MAX_MARK_POINTS][2];
};
constexpr MarkLine MARK_LINES[] = {
    // clang-format off
    {1, 5, {{0, 0}, {0.2f, 0}, {0.2f, 0.2f}, {0, 0.2f}, {0, 0}}},
    {2, 2, {{-1, 0}, {1, 0}}},
    {2, 2, {{0, -1}, {0, 1}}},
    {3, 2, {{-1, 0}, {1, 0}}},
    {3, 2, {{-1, -1}, {1, 1}}},
    {3, 2, {{0, 1}, {0, -1}}},
    {3, 2, {{1, -1}, {-1, 1}}},
    {4, 13, {{1, 0}, {0.866f, 0.5f}, {0.5f, 0.866f}, {0, 1}, {-0.5f, 0.866f}, {-0.866f, 0.5f}, {-1, 0},
             {-0.866f, -0.5f}, {-0.5f, -0.866f}, {0, -1}, {0.5f, -0.866f}, {0.866f, -0.5f}, {1, 0}}},
    {5, 2, {{-1, -1}, {1, 1}}},
    {5, 2, {{1, -1}, {-1, 1}}},
    {6, 5, {{-1, 1}, {1, 1}, {1, -1}, {-1, -1}, {-1, 1}}},
    {7, 4, {{-1, -1}, {1, -1}, {0, 1}, {-1, -1}}},
    {8, 2, {{0, 0}, {0.1f, 0.1f}}},
    {9, 4, {{-1, 1}, {1, 1}, {0, -1}, {-1, 1}}},
    {10, 4, {{0, 1}, {0.5f, 0}, {-0.5f, 0}, {0, -1}}},
    // clang-format on
};

}  // namespace

template <class Draw>
void Graph::drawShadowed(int cls, int color, float x, float y, Draw draw) {
  if (const int n = getShadow()) {
    const Point unit = cur().getPlotUnit();
    device->setColor(cls, state.drop_color);
    for (int i = 0; i < n; ++i) draw(x + static_cast<float>(i) * unit.x, y + static_cast<float>(i) * unit.y);
    device->setColor(cls, color);
  }
  draw(x, y);
}

// Sends the polyline of the scratch points and empties it.
void Graph::drawStroke(int cls) {
  if (scratch.getNum() > 1) device->drawLine(cls, scratch);
  scratch.clear();
}

int Graph::drawText(float x, float y, const char* text) {
  if (!device || !StrLib::valid(text)) return 0;
  const VAlign& valign = findVAlign(state.text_valign);
  const bool byDevice = font_type > 1 || (device_text && device_fonts);
  if (byDevice) device->setTextAlign(findHAlign(state.text_halign), valign.deviceAlign);

  std::string_view rest = text;
  const int after = static_cast<int>(std::count(rest.begin(), rest.end(), '\n'));
  const float step = LINE_STEP * state.text_height;
  for (int line = 0, above = after * valign.linesAbove / 2; line <= after; ++line) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view letters = rest.substr(0, end);
    const float up = step * static_cast<float>(above - line);
    drawShadowed(
        Device::TEXT, state.text_color, x + up * state.text_upx, y + up * state.text_upy,
        [&](float lx, float ly) { byDevice ? drawDeviceText(lx, ly, letters) : drawTextLine(lx, ly, letters); });
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return 1;
}

int Graph::drawFormText(float x, float y, const char* format, ...) {
  char text[MAX_TEXT];
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, MAX_TEXT, format, args);
  va_end(args);
  return drawText(x, y, text);
}

int Graph::drawFormText(const Point& p, const char* format, ...) {
  char text[MAX_TEXT];
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, MAX_TEXT, format, args);
  va_end(args);
  return drawText(p, text);
}

void Graph::drawDeviceText(float x, float y, std::string_view line) {
  char text[MAX_DEVICE_LINE + 1];
  text[line.copy(text, MAX_DEVICE_LINE)] = '\0';
  device->drawText(Point(cur().tranWindowPlotX(x), cur().tranWindowPlotY(y)), text);
}

// The width of a line, font units before the expansion.
float Graph::textWidth(std::string_view line) const {
  const float pitch = state.text_char_width * SPACE;
  const float space = state.text_spacing * SPACE;
  float width = 0.0f;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool last = i + 1 == line.size();
    if (pitch > 0.0f) {
      width += last ? pitch : (space + SPACE) * state.text_char_width;
    } else {
      width += static_cast<float>(font.getWidth(line[i])) + (last ? 0.0f : space);
    }
  }
  return width;
}

float Graph::getTextWidth(const char* line) const {
  return textWidth(line ? line : "") * state.text_expansion * state.text_height / FONT_UNITS;
}

void Graph::drawTextLine(float x, float y, std::string_view line) {
  const GTran& t = cur();
  const float ux = state.text_upx;
  const float uy = state.text_upy;
  const float scale = state.text_height / FONT_UNITS;
  const float expansion = state.text_expansion;
  const float pitch = state.text_char_width * SPACE;
  const float space = state.text_spacing * SPACE;
  const float voffset = findVAlign(state.text_valign).offset;
  // 0, a half and the whole width for left, centred and right.
  const float part = static_cast<float>(findHAlign(state.text_halign) - 1) * 0.5f;
  float offset = part > 0.0f ? -textWidth(line) * expansion * part : 0.0f;

  for (const char c : line) {
    if (!font.setChar(c)) {
      // Unlike a blank, a letter that the font does not have takes no room.
      if (c == ' ') {
        offset += (pitch > 0.0f ? (space + SPACE) * state.text_char_width : space + BLANK) * expansion;
      }
      continue;
    }
    const float width = static_cast<float>(font.getWidth(c));
    if (pitch > 0.0f) offset += (pitch - width) * expansion * 0.5f;
    scratch.clear();
    Point code;
    while (const int op = font.get(code)) {
      if (op == 2) drawStroke(Device::TEXT);
      const float a = (code.x * expansion + offset) * scale;
      const float b = (voffset + code.y) * scale;
      scratch.add(t.tranWindowPlotX(x + uy * a + ux * b), t.tranWindowPlotY(y - ux * a + uy * b));
    }
    drawStroke(Device::TEXT);
    offset += (pitch > 0.0f ? space + (width + pitch) * 0.5f : space + width) * expansion;
  }
}

int Graph::drawMark(float x, float y) {
  if (!device) return 0;
  drawShadowed(Device::MARKER, state.mark_color, x, y, [this](float mx, float my) { drawMarkShape(mx, my); });
  return 1;
}

void Graph::drawMarkShape(float x, float y) {
  const float r = state.mark_size / 2.0f;
  for (const MarkLine& line : MARK_LINES) {
    if (line.type != state.mark_type) continue;
    Point points[MAX_MARK_POINTS];
    for (int i = 0; i < line.num; ++i) points[i].set(x + r * line.at[i][0], y + r * line.at[i][1]);
    toPlot(std::span<const Point>(points, static_cast<std::size_t>(line.num)));
    drawStroke(Device::MARKER);
  }
}

int Graph::drawSymbol(float x, float y, const char* name, float size) {
  if (!device || !symbol.set(name)) return 0;
  if (state.text_halign == 3) x -= size;
  if (state.text_halign == 2) x -= size / 2.0f;
  if (state.text_valign == 1 || state.text_valign == 2) y -= size;
  if (state.text_valign == 3) y -= size / 2.0f;
  Points path;
  Point p;
  for (Symbol::Op op = symbol.get(p); op != Symbol::END; op = symbol.get(p)) {
    if (op == Symbol::POINT) {
      path.add(x + size * p.x, y + size * p.y);
      continue;
    }
    op == Symbol::LINE ? drawLine(path) : drawFill(path);
    path.clear();
  }
  return 1;
}

}  // namespace KYV
