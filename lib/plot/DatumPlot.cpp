#include "KYV/DatumPlot.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstring>
#include <iterator>

#include "Arrow.h"
#include "KYV/Datum.h"
#include "KYV/Plot.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

// Of the plot's vertical extent.
constexpr float HALF_SYMBOL = DatumPlot::SYMBOL_SIZE / 2.0f;
constexpr float GAP = 0.004f;  // between the room of the symbol and that of a text
constexpr float MIN_ARROW = 0.02f;
constexpr float MAX_ARROW = 0.12f;
constexpr float HEAD = 0.012f;

constexpr float FULL_SPEED = 30.0f;  // of an arrow of the standard length
constexpr float HALF_TEXT = 0.55f;   // above the middle, of a text height; letters stand a little high
constexpr float LINE_STEP = 1.3f;    // between lines, of a text height
constexpr float MIN_HEIGHT = 0.1f;   // of the standard size
constexpr float MAX_HEIGHT = 20.0f;

// Column and row of a text: -1 left or below, 0 at, 1 right of or above the place.
struct Position {
  const char* name;
  int column;
  int row;
};
constexpr Position POSITIONS[] = {{"ul", -1, 1}, {"uc", 0, 1},   {"ur", 1, 1},  {"cl", -1, 0}, {"cc", 0, 0},
                                  {"cr", 1, 0},  {"ll", -1, -1}, {"lc", 0, -1}, {"lr", 1, -1}};
constexpr Position DEFAULT_POSITION = {"ur", 1, 1};

// "ul" or "ul2".
const Position* findPosition(const char* item) {
  const int length = StrLib::length(item);
  if (length != 2 && !(length == 3 && item[2] >= '1' && item[2] <= '9')) return nullptr;
  const Position* row = std::find_if(std::begin(POSITIONS), std::end(POSITIONS),
                                     [item](const Position& p) { return StrLib::iequal(p.name, item, 2); });
  return row == std::end(POSITIONS) ? nullptr : row;
}

// Whether a number format of a user may be handed to the C library: one conversion of a floating number.
bool isNumberFormat(const char* format) {
  int conversions = 0;
  for (const char* f = format; *f; ++f) {
    if (*f != '%') continue;
    if (f[1] == '%') {
      ++f;
      continue;
    }
    constexpr const char* DIGITS = "0123456789";
    ++f;
    f += std::strspn(f, "-+ 0#");
    const std::size_t width = std::strspn(f, DIGITS);
    f += width;
    std::size_t precision = 0;
    if (*f == '.') {
      precision = std::strspn(++f, DIGITS);
      f += precision;
    }
    // Two digits of width and one of precision are more than a map has room for.
    if (width > 2 || precision > 1 || !*f || !std::strchr("feg", *f)) return false;
    ++conversions;
  }
  return conversions == 1;
}

// The format is one that isNumberFormat admits, so that the compiler need not see it.
template <std::size_t N>
void printNumber(char (&text)[N], const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  StrLib::vprintf(text, static_cast<int>(N), format, args);
  va_end(args);
}

bool isNumber(float value) { return std::isfinite(value) && !Const::isMissing(value); }

}  // namespace

struct DatumPlot::Format {
  Position position = DEFAULT_POSITION;
  int line = 1;
  bool numbered = false;  // the number format was given
  char number[30] = "%.0f";
  PlotAttr attr;

  Format(const PlotAttr& base, int shadow, const char* text) : attr(base) {
    const Strings items(text, ',');
    for (int i = 0; i < items.getNum(); ++i) {
      if (items.valid(i)) take(items.getString(i));
    }
    if (Const::isMissing(attr.shadow)) attr.shadow = shadow;
    attr.height = attr.height >= MIN_HEIGHT ? std::min(attr.height, MAX_HEIGHT) : MIN_HEIGHT;
  }
  void take(const char* item) {
    if (const Position* found = findPosition(item)) {
      position = *found;
      line = item[2] ? item[2] - '0' : 1;
    } else if (StrLib::iequal(item, "fm=", 3)) {
      numbered = true;
      const bool admitted = StrLib::length(item + 3) < static_cast<int>(sizeof number) && isNumberFormat(item + 3);
      StrLib::copy(number, admitted ? item + 3 : "%.0f");
    } else {
      attr.parse(item);
    }
  }
};

DatumPlot::DatumPlot(Plot& surface) : plot(surface) { setAttr(PlotAttr(plot.getInverse() ? "black" : "white")); }

int DatumPlot::setAttr(const PlotAttr& attr) {
  // The graph keeps what it was last told, so each datum sets everything.
  base.init();
  base.width = 0.0f;
  base.height = base.weight = base.expansion = 1.0f;
  base.style = 1;
  base.fill = 0;
  StrLib::copy(base.font, "modern.fnt");
  base.update(attr);
  base.shadow = attr.shadow;
  return 1;
}

int DatumPlot::draw(const Datum& datum) {
  Point p = datum.point;
  if (p.isMissing() && !plot.getDomain().tran(datum.place, p)) return 0;
  const Rect window = plot.getGraph().getWindow();
  if (p.isMissing() || !(p.x >= window.xmin && p.x <= window.xmax && p.y >= window.ymin && p.y <= window.ymax)) {
    return 0;
  }

  const int shadow = plot.getGraph().getDropShadow();
  const Format format(base, shadow, datum.format);
  int drawn = 0;
  switch (datum.type) {
    case Datum::NUMBER: {
      char number[80];
      if (*datum.text) {
        drawn = drawText(p, format, datum.text);
      } else if (isNumber(datum.val[0])) {
        printNumber(number, format.number, static_cast<double>(datum.val[0]));
        drawn = drawText(p, format, number);
      }
      break;
    }
    case Datum::TEXT:
      drawn = drawText(p, format, datum.text);
      break;
    case Datum::SYMBOL:
      drawn = drawSymbol(p, format, datum.text);
      break;
    case Datum::MOVEMENT:
      drawn = drawMovement(p, format, datum);
      break;
    default:
      break;
  }
  plot.setDropShadow(shadow);
  return drawn;
}

int DatumPlot::drawText(const Point& p, const Format& format, const char* text) {
  const Position& position = format.position;
  const float vert = plot.getVert();
  const float height = format.attr.height * TEXT_HEIGHT;
  const float first = std::max(LINE_STEP * height, HALF_SYMBOL + GAP / 2.0f + height / 2.0f);
  const float up = first + static_cast<float>(format.line - 1) * LINE_STEP * height;
  const float x = p.x + static_cast<float>(position.column) * (HALF_SYMBOL + GAP) * vert;
  const float y = p.y + static_cast<float>(position.row) * up * vert;
  return drawLabel(x, y, 2 - position.column, format, text);
}

// The middle of its height is at y; align 1 left, 2 centre, 3 right end at x.
int DatumPlot::drawLabel(float x, float y, int align, const Format& format, const char* text) {
  if (!StrLib::valid(text)) return 0;
  Graph& graph = plot.getGraph();
  plot.setText(format.attr, TEXT_HEIGHT * plot.getVert());
  plot.setTextSpacing(0.25f);
  plot.setTextCharWidth(0.0f);
  plot.setTextDirection(0.0f, 1.0f);
  plot.setTextAlign(align, 3);

  const Rect window = graph.getWindow();
  const float width = graph.getTextWidth(text);
  const float left = x - static_cast<float>(align - 1) * 0.5f * width;
  if (left + width > window.xmax) x -= left + width - window.xmax;
  if (left < window.xmin) x += window.xmin - left;
  // Further lines stay where they are: moved as well they would come to lie on the first.
  const float half = HALF_TEXT * graph.getTextHeight();
  if (format.line == 1) y = std::clamp(y, window.ymin + half, std::max(window.ymax - half, window.ymin + half));
  return plot.drawText(Point(x, y), text);
}

int DatumPlot::drawSymbol(const Point& p, const Format& format, const char* name) {
  if (!StrLib::valid(name)) return 0;
  plot.setLine(format.attr);
  plot.setFill(format.attr);
  plot.setTextAlign(2, 3);
  return plot.drawSymbol(p, name, format.attr.height * SYMBOL_SIZE * plot.getVert());
}

int DatumPlot::drawMovement(const Point& p, const Format& format, const Datum& datum) {
  const float speed = datum.val[1];
  if (!isNumber(datum.val[0]) || !isNumber(speed) || speed <= 0.0f) return 0;
  const float from = datum.place.isMissing() ? datum.val[0] : plot.getDomain().adjustDir(datum.val[0], datum.place);
  if (!isNumber(from)) return 0;

  const float vert = plot.getVert();
  const float size = format.attr.height * vert;
  const Point unit = towards(from);
  const float length = size * std::clamp(speed / FULL_SPEED * ARROW_LENGTH, MIN_ARROW, MAX_ARROW);
  const Point foot = moved(p, unit, (HALF_SYMBOL + GAP) * vert);
  plot.setLine(format.attr);
  drawArrow(plot, foot, unit, length, HEAD * size, false);
  if (!format.numbered) return 1;
  char number[80];
  printNumber(number, format.number, static_cast<double>(speed));
  const Point head = moved(foot, unit, length + TEXT_HEIGHT * size);
  return drawLabel(head.x, head.y, 2, format, number);
}

}  // namespace KYV
