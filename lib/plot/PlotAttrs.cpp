// Attributes and colours: names become indices of the colour map, these the device's values.
#include "KYV/Plot.h"

namespace KYV {

int Plot::allocColor(int index) {
  if (index < 0 || index >= color_map.getNum()) return 0;
  RGB rgb;
  color_map.get(index, rgb);
  const int value = graph.allocColor(rgb);
  color_map.setValue(index, value);
  return value;
}

int Plot::getColorValue(const char* name) {
  const int index = color_map.getInd(name);
  const int value = color_map.getValue(index);
  return value < 0 ? allocColor(index) : value;
}

int Plot::useColor(int& kept, int index, int (Graph::*set)(int)) {
  kept = index;
  if (index < 0) return 0;
  const int value = color_map.getValue(index);
  return (graph.*set)(value < 0 ? allocColor(index) : value);
}

int Plot::useColor(int& kept, const PlotAttr& attr, int (Graph::*set)(int)) {
  return useColor(kept, Const::isMissing(attr.color) ? color_map.getInd(attr.name) : attr.color, set);
}

int Plot::setLineColor(const char* name) { return setLineColor(color_map.getInd(name)); }
int Plot::setLineColor(int index) { return useColor(line_index, index, &Graph::setLineColor); }
int Plot::setFillColor(const char* name) { return setFillColor(color_map.getInd(name)); }
int Plot::setFillColor(int index) { return useColor(fill_index, index, &Graph::setFillColor); }
int Plot::setTextColor(const char* name) { return setTextColor(color_map.getInd(name)); }
int Plot::setTextColor(int index) { return useColor(text_index, index, &Graph::setTextColor); }
int Plot::setMarkColor(const char* name) { return setMarkColor(color_map.getInd(name)); }
int Plot::setMarkColor(int index) { return useColor(mark_index, index, &Graph::setMarkColor); }

int Plot::setLine() {
  setLineColor("white");
  graph.setLineStyle(1);
  graph.setLineWidth(0.0f);
  return graph.setDropShadow(0);
}

int Plot::setLine(const PlotAttr& attr) {
  useColor(line_index, attr, &Graph::setLineColor);
  if (!Const::isMissing(attr.style)) graph.setLineStyle(attr.style);
  if (!Const::isMissing(attr.width)) graph.setLineWidth(attr.width);
  return graph.setDropShadow(Const::isMissing(attr.shadow) ? 0 : attr.shadow);
}

int Plot::setFill() {
  setFillColor("white");
  return 1;
}

int Plot::setFill(const PlotAttr& attr) {
  useColor(fill_index, attr, &Graph::setFillColor);
  if (!Const::isMissing(attr.fill)) graph.setFillStyle(attr.fill);
  return 1;
}

int Plot::setText() {
  setTextColor("white");
  graph.setDropShadow(0);
  graph.setTextHeight(0.01f);
  graph.setTextWeight(1.0f);
  graph.setTextExpansion(1.0f);
  graph.setTextSpacing(0.25f);
  graph.setTextCharWidth(0.0f);
  graph.setTextAlign(0, 0);
  graph.setTextDirection(0.0f, 1.0f);
  graph.setFont("modern.fnt");
  return 1;
}

int Plot::setText(const PlotAttr& attr, float scale) {
  useColor(text_index, attr, &Graph::setTextColor);
  if (!Const::isMissing(attr.weight)) graph.setTextWeight(attr.weight);
  if (!Const::isMissing(attr.height)) graph.setTextHeight(attr.height * scale);
  if (!Const::isMissing(attr.expansion)) graph.setTextExpansion(attr.expansion);
  if (!Const::isMissing(attr.shadow)) graph.setDropShadow(attr.shadow);
  if (*attr.font) graph.setFont(attr.font);
  return 1;
}

int Plot::setMark() {
  setMarkColor("white");
  return 1;
}

int Plot::setMark(const PlotAttr& attr, float scale) {
  useColor(mark_index, attr, &Graph::setMarkColor);
  if (!Const::isMissing(attr.weight)) graph.setMarkWeight(attr.weight);
  if (!Const::isMissing(attr.height)) graph.setMarkSize(attr.height * scale);
  return 1;
}

}  // namespace KYV
