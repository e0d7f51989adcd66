// Map files: their segments as lines, filled outlines and names.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "KYV/DataPath.h"
#include "KYV/Domain.h"
#include "KYV/Kyv.h"
#include "KYV/MapFile.h"
#include "KYV/MapPlot.h"
#include "KYV/Plot.h"
#include "MapEntry.h"
#include "MapView.h"

namespace KYV {

namespace {

constexpr float LETTER_WIDTH = 0.8f;  // of a name, about, in text heights
constexpr float NAME_RISE = 0.4f;     // of a name above its mark, text heights
constexpr float MARK_SIZE = 0.35f;    // of a place, text heights

bool isClosed(const Points& p) {
  const int n = p.getNum();
  // Ends behind the globe are both missing, and so alike.
  return n > 3 && p[0].x == p[n - 1].x && p[0].y == p[n - 1].y;
}

// Adds the limb of a globe between two of its points, the shorter way round.
void followLimb(Points& outline, const Point& from, const Point& to) {
  constexpr double STEP = 5.0 * Const::DRC;
  const double start = std::atan2(from.y, from.x);
  const double turn = std::remainder(std::atan2(to.y, to.x) - start, 360.0 * Const::DRC);
  const double r0 = std::hypot(from.x, from.y), r1 = std::hypot(to.x, to.y);
  const int n = static_cast<int>(std::abs(turn) / STEP);
  for (int i = 1; i <= n; ++i) {
    const double part = static_cast<double>(i) / (n + 1), angle = start + part * turn, r = r0 + part * (r1 - r0);
    outline.add(static_cast<float>(r * std::cos(angle)), static_cast<float>(r * std::sin(angle)));
  }
}

// The part of a closed outline that can be seen. Where it goes behind the globe it is closed along the limb, elsewhere
// straight.
Points visibleOutline(const Points& points, bool globe) {
  Points outline;
  const int n = points.getNum();
  int first = 0;
  while (first < n && points[first].isMissing()) ++first;
  bool hidden = false;
  for (int i = 0; first < n && i <= n; ++i) {
    const Point& p = points[(first + i) % n];
    if (!p.isMissing()) {
      if (hidden && globe) followLimb(outline, outline[outline.getNum() - 1], p);
      outline.add(p);
    }
    hidden = p.isMissing();
  }
  return outline;
}

// Whether an outline of land goes on between two places without a shore: along the date line, around a pole.
bool isShoreless(const EarthPoint& a, const EarthPoint& b) {
  constexpr float DATE_LINE = 180.0f, POLE = 90.0f;
  return (std::abs(a.lon) == DATE_LINE && std::abs(b.lon) == DATE_LINE) ||
         (std::abs(a.lat) == POLE && std::abs(b.lat) == POLE);
}

// The value of "coln=" among attributes, empty without it.
String lineColorIn(const char* attr) {
  const char* at = std::strstr(attr, "coln=");
  if (!at) return String("");
  String value(at + 5);
  const int end = value.index(':');
  return end < 0 ? value : String(value.get(), end);
}

// A map file by its name, which may be short: "us_states" is the shipped maps/us_states.map.
bool findMap(const char* name, String& path) {
  if (DataPath::find(name, path)) return true;
  static constexpr struct {
    const char* folder;
    const char* ending;
  } FORMS[] = {{"", ".map"}, {"maps/", ""}, {"maps/", ".map"}};
  for (const auto& form : FORMS) {
    String other(form.folder), found;
    other.append(name);
    other.append(form.ending);
    if (DataPath::find(other.get(), found)) {
      path = found;
      return true;
    }
  }
  return false;
}

}  // namespace

Strings MapPlot::findMissing(const char* list) {
  const Strings items(list, ',', -1, "\"[");
  Strings missing;
  for (int i = 0; i < items.getNum(); ++i) {
    bool holds = false;
    const char* item = StrLib::valid(items.getString(i), "");
    if (*item == '+' || *item == '-') ++item;
    const char* entry = passConditions(item, Domain(), holds);
    String name, attr, path;
    if (isFileEntry(entry)) splitEntry(StrLib::equal(entry, "fi:", 3) ? entry + 3 : entry, name, attr);
    if (name.valid() && !findMap(name.get(), path)) missing.add(name.get());
  }
  return missing;
}

// The pens for a map file, then the file.
int MapPlot::drawMapFile(Plot& plot, const char* entry) {
  String name, attr;
  splitEntry(entry, name, attr);
  const bool filling = fill || fill_cont;
  ColorMap colors;
  plot.getColorMap(colors);
  const auto known = [&colors](const String& text) {
    const PlotAttr a(text.get());
    return text.valid() && (!a.validColor() || colors.getInd(a.name) >= 0);
  };
  // One parameter text reaches all layers: a colour scale that is meant for the data is no colour of maps.
  if (!attr.valid() && known(color)) attr = color;
  if (!attr.valid()) {
    attr.copy(filling ? Kyv::resrc.get("color_fmap", "black") : Kyv::resrc.get("color_map", "red"));
  }
  PlotAttr pen(attr.get());
  if (!pen.validColor()) return 0;
  if (plot.getInverse()) pen.turnGreys();
  String lineColor = lineColorIn(attr.get());
  if (!lineColor.valid()) lineColor = color_line;
  useText(plot, pen);
  plot.setMark(pen);
  plot.setFill(pen);
  if (lineColor.valid()) plot.setLineColor(lineColor.get());
  plot.message("Map: %s", name.get());
  String path;
  findMap(name.get(), path);
  return draw(plot, path.get());
}

int MapPlot::draw(Plot& plot, const char* file) {
  const Domain& domain = plot.getDomain();
  if (!isMapProjection(domain.proj) && domain.proj != DomainVal::XY) return 0;
  MapFile source;
  if (!source.open(file)) {
    Kyv::report(Kyv::MISC, "Map file not found or damaged: %s\n", file);
    return 0;
  }
  source.setPlaceNames(true);
  if (index) std::printf("Mapfile: %s\n", file);

  if (!in_list) labels.clear();
  const MapView view(domain);
  MapFileHeader header;
  for (int segment = 0; source.readHeader(header) > 0; ++segment) {
    const EarthRange& r = header.range;
    if (r.min_lat == 0.0f && r.max_lat == 0.0f) continue;
    if (!view.mayShow(r) || (map_in && !view.holds(r))) continue;
    source.readData(places);
    line.clear();
    for (const EarthPoint& e : places) {
      Point p;
      if (e.isMissing() || !domain.tran(e, p)) p.setMissing();
      line.add(p);
    }
    if (line.getNum() == 1 && header.attr == MapFileHeader::PLACE) {
      Point p = line[0];
      domain.adjust(p);
      drawName(plot, p, header.name);
      continue;
    }
    drawSegment(plot);
    if (index && line.getNum() > 0 && domain.within(line[0])) plot.drawFormText(line[0], "%d", segment);
  }
  return 1;
}

// The segment in hand: filled where that is wanted and it is closed, else as a line.
int MapPlot::drawSegment(Plot& plot) {
  if ((!fill && !fill_cont) || !isClosed(line)) return plot.drawLine(line);
  const int proj = plot.getProj();
  const bool globe = proj == DomainVal::ORTHO || proj == DomainVal::GNOM || proj == DomainVal::SAT;
  plot.drawArea(visibleOutline(line, globe));
  if (fill) return 1;
  Points shore;
  for (int i = 0; i < line.getNum(); ++i) {
    if (i > 0 && isShoreless(places[i - 1], places[i])) shore.add(Const::MISS, Const::MISS);
    shore.add(line[i]);
  }
  return plot.drawLine(shore);
}

// The name of a place above its mark, unless it would lie on another one.
bool MapPlot::drawName(Plot& plot, const Point& p, const char* name) {
  if (p.isMissing() || !plot.withinDomain(p)) return false;
  if (!StrLib::valid(name)) {
    plot.setTextAlign(2, 3);
    return plot.drawText(p, "+") != 0;
  }
  char text[sizeof(MapFileHeader::name)];
  StrLib::copy(text, name);
  std::replace(text, text + StrLib::length(text), '_', ' ');
  const float height = plot.getGraph().getTextHeight();
  const float half = 0.5f * LETTER_WIDTH * height * static_cast<float>(StrLib::length(text));
  const Rect box(p.x - half, p.y - height * MARK_SIZE, p.x + half, p.y + height * (1.0f + NAME_RISE));
  const auto overlaps = [&](const Rect& b) {
    return box.xmin < b.xmax && b.xmin < box.xmax && box.ymin < b.ymax && b.ymin < box.ymax;
  };
  // A name that would stick out of the map is left out as well.
  const Rect window = plot.getGraph().getWindow();
  if (box.xmin < window.xmin || box.xmax > window.xmax || box.ymin < window.ymin || box.ymax > window.ymax)
    return false;
  if (std::any_of(labels.begin(), labels.end(), overlaps)) return false;
  labels.push_back(box);
  plot.setMarkType("pnt");
  plot.setMarkSize(MARK_SIZE * height);
  plot.drawMark(p);
  plot.setTextAlign(2, 5);
  return plot.drawText(Point(p.x, p.y + NAME_RISE * height), text) != 0;
}

}  // namespace KYV
