// What stands around the map: labels, border and colour bar, all on the page's transform.
#include <algorithm>
#include <cstdio>

#include "KYV/DateTool.h"
#include "KYV/ForeTime.h"
#include "KYV/Kyv.h"
#include "KYV/Plot.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr float MAX_ROW = 0.03f;      // height of a label row at most, of the map's height
constexpr float FULL_SPACE = 0.06f;   // label space where labels stand inside the map
constexpr float TEXT_HEIGHT = 0.75f;  // of a label's row
constexpr float INSET = 0.01f;        // of left and right labels, of the map's width
constexpr float LABEL_DEPTH = 0.2f;   // of brackets and descenders below the last row of labels, in rows
constexpr float MIN_BAR = 0.025f;     // height of the colour bar, of the map's height
constexpr float MAX_BAR = 0.05f;
constexpr float BAR_BOX = 0.5f;     // height of its boxes, of the bar's height; the values stand below them
constexpr float BAR_TEXT = 0.35f;   // height of its text, of the bar's height
constexpr float BAR_WIDTH = 0.96f;  // of the map's width

// Where labels stand: column 0 left, 1 centre, 2 right of the map's upper or lower edge.
struct Position {
  const char* name;
  int column;
  bool upper;
};
constexpr Position POSITIONS[] = {{"ul", 0, true},  {"uc", 1, true},  {"ur", 2, true},
                                  {"ll", 0, false}, {"lc", 1, false}, {"lr", 2, false}};

void appendField(char* out, int max, int value) {
  if (!Const::isMissing(value)) StrLib::aprintf(out, max, "%2.2d", value);
}

// A threshold as people write it.
int formatValue(char (&out)[20], float value) { return StrLib::printf(out, "%.4g", static_cast<double>(value)); }

}  // namespace

int Plot::getLabelPosIndex(const char* pos) {
  const Position* row = std::find_if(std::begin(POSITIONS), std::end(POSITIONS),
                                     [pos](const Position& p) { return StrLib::equal(p.name, pos); });
  return row == std::end(POSITIONS) ? -1 : static_cast<int>(row - std::begin(POSITIONS));
}

bool Plot::addLabelRow(int row, const char* pos, const char* text) {
  if (labels.size() >= MAX_LABEL) return false;
  Label label;
  label.row = row;
  StrLib::copy(label.pos, pos);
  StrLib::copy(label.text, text);
  StrLib::copy(label.attr, label_format);
  labels.push_back(label);
  return true;
}

bool Plot::addLabel(const char* pos, const char* text) { return addLabelRow(label_rows, pos, text); }

bool Plot::setLabel(const char* pos, const char* text) { return addLabelRow(-1, pos, text); }

int Plot::printLabels() const {
  for (const Label& l : labels) std::printf("Label: %d %s %s %s\n", l.row, l.pos, l.text, l.attr);
  return 1;
}

int Plot::formatLabel(const char* format, char* out, int max) const {
  if (!out || max < 1) return 0;
  *out = '\0';
  if (!format) return 0;
  // Whole labels are appended where their escape stands; the rest is copied character by character.
  for (const char* f = format; *f; ++f) {
    if (*f != '%' || !f[1]) {
      StrLib::aprintf(out, max, "%c", *f == '_' ? ' ' : *f);
      continue;
    }
    String label;
    switch (*++f) {
      case '%':
        StrLib::append(out, max, "%");
        break;
      case 'D':
        DateTool::createLabel(label_date, tz, label);
        break;
      case 'V': {
        // A valid time to the minute, led by the data's source.
        Date valid = label_date;
        valid.sec = Const::MISS;
        DateTool::createLabel(data_source, valid, tz, label);
        break;
      }
      case 'F':
        ForeTime{fore_hour}.toTimeLabel(label);
        break;
      case 'S':
        label.copy(data_source);
        break;
      case 'Y':
        if (!Const::isMissing(label_date.year)) StrLib::aprintf(out, max, "%4.4d", label_date.year);
        break;
      case 'y':
        if (!Const::isMissing(label_date.year)) StrLib::aprintf(out, max, "%2.2d", label_date.year % 100);
        break;
      case 'm':
        appendField(out, max, label_date.month);
        break;
      case 'd':
        appendField(out, max, label_date.day);
        break;
      case 'h':
        appendField(out, max, label_date.hour);
        break;
      case 'n':
        appendField(out, max, label_date.min);
        break;
      case 'b':
        StrLib::aprintf(out, max, "%3.3s", DateTool::getMonth(label_date.month));
        break;
      case 'a':
        StrLib::aprintf(out, max, "%3.3s", DateTool::getDayWeek(label_date.wday));
        break;
      case 'f':
        if (!Const::isMissing(fore_hour)) StrLib::aprintf(out, max, "%.0f", static_cast<double>(fore_hour));
        break;
      default:
        StrLib::aprintf(out, max, "%%%c", *f);
        break;
    }
    StrLib::append(out, max, label.get());
  }
  return 1;
}

int Plot::clearLabels() {
  const Rect view = rec().panel.view;
  const Rect page = pageRect(Rect(0.0f, 0.0f, 1.0f, 1.0f));
  graph.activateTran(PAGE);
  graph.clearRect(Rect(page.xmin, view.ymax, page.xmax, page.ymax));
  graph.clearRect(Rect(page.xmin, page.ymin, page.xmax, view.ymin));
  graph.activateTran(MAP);
  dropLabels();
  Kyv::outDebug("Plot labels cleared\n");
  return 1;
}

// The labels and the colour bar belong to the panel or frame that has been left.
void Plot::dropLabels() {
  labels.clear();
  notices.clear();
  label_rows = 0;
  bar_on = 0;
}

PlotAttr Plot::labelAttr() {
  if (label_color.valid()) return PlotAttr(label_color.get());
  return PlotAttr(Kyv::resrc.get("color_label", graph.getInverse() ? "black" : "white"));
}

// The free height above the map, or below it where there is none above.
float Plot::labelSpace(const Rect& view) const {
  if (full == 2) return FULL_SPACE;
  const Rect page = pageRect(Rect(0.0f, 0.0f, 1.0f, 1.0f));
  const float above = page.ymax - view.ymax;
  return above > 0.0f ? above : std::max(view.ymin - page.ymin, 0.0f);
}

void Plot::drawLabel(const Label& label, const PlotAttr& attr, const LabelBand& band) {
  const int index = getLabelPosIndex(label.pos);
  if (index < 0 || !isDrawing(DRAW_TEXT + index)) return;
  const Position& pos = POSITIONS[index];
  const auto atPosition = [index](const Label& l) { return getLabelPosIndex(l.pos) == index; };
  if (label.row >= 0 &&
      std::any_of(labels.begin(), labels.end(), [&](const Label& l) { return l.row < 0 && atPosition(l); })) {
    return;
  }

  char text[100];
  formatLabel(label.text, text, sizeof text);
  PlotAttr own = attr;
  own.parse(label.attr);
  setText(own);
  graph.setTextHeight(TEXT_HEIGHT * (label.row < 0 ? band.space : band.rowHeight));

  const Rect& view = band.view;
  Point anchor(view.xmin + INSET * view.width(), pos.upper ? view.ymax : view.ymin);
  if (pos.column == 1) anchor.x = (view.xmin + view.xmax) / 2.0f;
  if (pos.column == 2) anchor.x = view.xmax - INSET * view.width();
  const bool inside = full == 2;
  if (label.row >= 0) {
    const int base = inside ? band.rows - 1 : 0;
    const int step = pos.upper ? label.row - base : label.row - (band.rows - 1) + base;
    anchor.y += static_cast<float>(step) * band.rowHeight;
  }
  // Upper labels stand on the map's edge and lower ones hang below it; inside the map it is the other way round.
  graph.setTextAlign(pos.column + 1, pos.upper != inside ? 5 : 1);
  graph.drawText(anchor, text);
}

// The labels that the user asked for, each in the first row that its position has free.
void Plot::addUserLabels() {
  const Strings entries(Kyv::resrc.get("label"), ',');
  for (int i = 0; i < entries.getNum(); ++i) {
    const char* entry = entries.getString(i);
    if (!StrLib::valid(entry)) continue;
    const bool placed = StrLib::getChar(entry, 2) == ':';
    char pos[3] = "ul";
    if (placed) StrLib::copy(pos, entry);
    // In the lower band the last row is the one at the map.
    const int index = getLabelPosIndex(pos);
    int row = index >= 0 && !POSITIONS[index].upper ? std::max(label_rows - 1, 0) : 0;
    for (const Label& label : labels) {
      if (StrLib::equal(label.pos, pos)) row = std::max(row, label.row + 1);
    }
    addLabelRow(row, pos, placed ? entry + 3 : entry);
  }
}

Plot::LabelBand Plot::labelBand() const {
  LabelBand band;
  band.view = rec().panel.view;
  band.rows = std::max(label_rows, 1);
  for (const Label& label : labels) band.rows = std::max(band.rows, label.row + 1);
  const float limit = MAX_ROW * band.view.height();
  const float space = labelSpace(band.view);
  band.space = std::min(space, limit);
  band.rowHeight = std::min(space / static_cast<float>(band.rows), limit);
  return band;
}

// Each on a panel of its own at the map's upper edge, one below the other.
void Plot::drawNotices() {
  constexpr float ROW = 0.05f, LETTERS = 0.6f;  // of the map's height; of the row
  const Rect& view = rec().panel.view;
  const float row = ROW * view.height();
  float top = view.ymax - 0.5f * row;
  for (const String& notice : notices) {
    setText();
    graph.setTextHeight(LETTERS * row);
    const float half = std::min(0.5f * (graph.getTextWidth(notice.get()) + row), 0.5f * view.width());
    const float middle = 0.5f * (view.xmin + view.xmax);
    const Rect box(middle - half, top - row, middle + half, top);
    setFill("#C80000");
    graph.drawFill(box);
    setLineColor("white");
    graph.drawRect(box);
    setTextColor("white");
    graph.setTextAlign(2, 3);
    graph.drawText(Point(middle, top - 0.5f * row), notice.get());
    top -= 1.2f * row;
  }
}

int Plot::drawLabels() {
  const std::size_t ownLabels = labels.size();
  addUserLabels();
  const LabelBand band = labelBand();
  Kyv::outDebug(5, "Plot labels P: %f X: %f Y: %f - %d %f\n", static_cast<double>(band.space),
                static_cast<double>(band.view.width()), static_cast<double>(band.view.height()), band.rows,
                static_cast<double>(band.rowHeight));

  graph.activateTran(PAGE);
  setText();
  const PlotAttr attr = labelAttr();
  for (const Label& label : labels) drawLabel(label, attr, band);
  noteFrame();
  setText();
  if (bar_on) drawBar();
  drawLogos();
  drawNotices();
  labels.resize(ownLabels);
  return graph.activateTran(MAP);
}

int Plot::drawBorder() {
  if (!isDrawing(DRAW_BORDER)) return 0;
  graph.activateTran(PAGE);
  setLine();
  setLine(labelAttr());
  drawRect(rec().panel.view);
  return graph.activateTran(MAP);
}

int Plot::setBar(const ColorFill& fill) {
  bar.setFill(fill);
  bar_on = 1;
  return 1;
}

// The bar lies below the row of lower labels, or in their band where the panel leaves no more room.
int Plot::drawBar() {
  const ColorFill& fill = bar.getFill();
  const Range& range = bar.getRange();
  std::vector<int> entries;
  for (int i = 0; i < fill.getNum(); ++i) {
    const float value = fill.getValue(i);
    if (!Const::isMissing(value)) {
      if (!Const::isMissing(range.min) && value < range.min) continue;
      if (!Const::isMissing(range.max) && value > range.max) continue;
      // Data levels that stand for no value do not rise, and nothing is drawn in their colours.
      const float next = fill.getValue(i + 1);
      if (!Const::isMissing(next) && next <= value) continue;
    }
    // What is below the first class is not drawn and needs no box.
    if (entries.empty() && !fill.get(i).validColor()) continue;
    entries.push_back(i);
  }
  const Rect view = rec().panel.view;
  const Rect page = pageRect(Rect(0.0f, 0.0f, 1.0f, 1.0f));
  if (entries.empty() || view.width() <= 0.0f) return 0;

  const int oldTran = graph.getTran();
  graph.activateTran(PAGE);
  const LabelBand band = labelBand();
  const float row = (static_cast<float>(band.rows) + LABEL_DEPTH) * band.rowHeight;
  const float below = view.ymin - page.ymin;
  const float room = below - row > MIN_BAR * view.height() ? below - row : below;
  const float height = std::min(room, MAX_BAR * view.height());
  const float top = full == 2 ? view.ymin + row + height : page.ymin + room;
  float left = view.xmin + (1.0f - BAR_WIDTH) / 2.0f * view.width();
  float width = BAR_WIDTH * view.width();
  if (StrLib::iequal(bar.getLocate(), "ll") || StrLib::iequal(bar.getLocate(), "lr")) {
    width /= 2.0f;
    if (StrLib::iequal(bar.getLocate(), "lr")) left += width;
  }

  const float boxWidth = width / static_cast<float>(entries.size());
  const float boxBottom = top - BAR_BOX * height;
  const PlotAttr labelColors = labelAttr();
  setLine();
  setLine(labelColors);
  setText(labelColors);
  graph.setTextHeight(BAR_TEXT * height);
  graph.setTextAlign(2, 2);
  for (std::size_t k = 0; k < entries.size(); ++k) {
    const int i = entries[k];
    const float x = left + static_cast<float>(k) * boxWidth;
    const Rect box(x, boxBottom, x + boxWidth, top);
    const PlotAttr& attr = fill.get(i);
    if (attr.validColor()) {
      setFill(attr);
      drawFill(box);
    }
    drawRect(box);
    // A class's label stands below its box, a threshold below the box's left edge, where its colour begins.
    char text[20] = "";
    const bool named = fill.validLabel(i);
    if (named) {
      StrLib::copy(text, fill.getLabel(i));
      StrLib::replace(text, '_', ' ');
    } else if (!Const::isMissing(fill.getValue(i))) {
      formatValue(text, fill.getValue(i));
    } else if (!Const::isMissing(fill.getBaseVal()) && !Const::isMissing(fill.getInterval())) {
      formatValue(text, fill.getBaseVal() + static_cast<float>(i) * fill.getInterval());
    }
    drawText(Point(named ? x + boxWidth / 2.0f : x, boxBottom - 0.1f * height), text);
  }
  graph.setTran(oldTran);
  return graph.activateTran();
}

}  // namespace KYV
