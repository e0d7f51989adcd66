// Metafiles as a part of the background: their surface covers the map.
#include <cstdio>
#include <string_view>

#include "KYV/DataPath.h"
#include "KYV/File.h"
#include "KYV/Kyv.h"
#include "KYV/MapPlot.h"
#include "KYV/Number.h"
#include "KYV/Plot.h"
#include "MapEntry.h"

namespace KYV {

namespace {

constexpr int MAX_RECORDS = 1000000;

// Draws the records of a metafile one by one.
class MetaReader {
 public:
  explicit MetaReader(Plot& surface) : plot(surface), window(surface.getGraph().getWindow()) {}

  void take(std::string_view record) {
    struct Row {
      std::string_view key;
      void (MetaReader::*take)(std::string_view);
    };
    static constexpr Row ROWS[] = {
        {"SZ", &MetaReader::size},        {"LCLR", &MetaReader::lineColor}, {"FCLR", &MetaReader::fillColor},
        {"TCLR", &MetaReader::textColor}, {"LWID", &MetaReader::lineWidth}, {"LSTY", &MetaReader::lineStyle},
        {"FSTY", &MetaReader::fillStyle}, {"L", &MetaReader::line},         {"F", &MetaReader::fill},
        {"T", &MetaReader::text},
    };
    const std::string_view key = record.substr(0, record.find(' '));
    for (const Row& row : ROWS) {
      if (row.key == key && key.size() < record.size()) return (this->*row.take)(record.substr(key.size() + 1));
    }
  }

 private:
  void size(std::string_view r) {
    float w = 0.0f, h = 0.0f;
    if (takeNumber(r, w) && takeNumber(r, h) && w > 0.0f && h > 0.0f) width = w, height = h;
  }
  template <class Set>
  void color(std::string_view r, Set set) {
    int value = 0;
    if (!takeNumber(r, value)) return;
    char name[20];
    StrLib::printf(name, "#%06X", static_cast<unsigned>(value) & 0xFFFFFFu);
    set(name);
  }
  void lineColor(std::string_view r) {
    color(r, [this](const char* name) { plot.setLineColor(name); });
  }
  void fillColor(std::string_view r) {
    color(r, [this](const char* name) { plot.setFillColor(name); });
  }
  void textColor(std::string_view r) {
    color(r, [this](const char* name) { plot.setTextColor(name); });
  }
  void lineWidth(std::string_view r) {
    float w = 0.0f;
    if (takeNumber(r, w)) plot.setLineWidth(w);
  }
  void lineStyle(std::string_view r) {
    int style = 0;
    if (takeNumber(r, style)) plot.setLineStyle(style);
  }
  void fillStyle(std::string_view r) {
    int style = 0;
    if (takeNumber(r, style)) plot.setFillStyle(style);
  }
  bool point(std::string_view& r, Point& p) const {
    float x = 0.0f, y = 0.0f;
    if (!takeNumber(r, x) || !r.starts_with(',')) return false;
    r.remove_prefix(1);
    if (!takeNumber(r, y)) return false;
    // The metafile's y goes down.
    p.set(window.xmin + window.width() * x / width, window.ymax - window.height() * y / height);
    return true;
  }
  void path(std::string_view r) {
    int n = 0;
    points.clear();
    Point p;
    if (takeNumber(r, n)) {
      while (point(r, p)) points.add(p);
    }
  }
  void line(std::string_view r) {
    path(r);
    plot.getGraph().drawLine(points);
  }
  void fill(std::string_view r) {
    path(r);
    plot.getGraph().drawFill(points);
  }
  void text(std::string_view r) {
    Point p;
    if (!point(r, p)) return;
    r = trimFront(r);
    plot.drawText(p, String(r.data(), static_cast<int>(r.size())).get());
  }

  Plot& plot;
  Rect window;
  float width = 1.0f;
  float height = 1.0f;
  Points points;
};

}  // namespace

int MapPlot::drawMetafile(Plot& plot, const char* entry) {
  String name, attr, path;
  splitEntry(entry, name, attr);
  plot.message("Map-metafile: %s", name.get());
  File file;
  DataPath::find(name.get(), path);
  if (!file.openData(path.get())) {
    Kyv::report(Kyv::MISC, "Map-metafile: unable to open %s\n", name.get());
    return 0;
  }
  useText(plot, PlotAttr("white"));
  plot.setFill();
  MetaReader reader(plot);
  String record;
  for (int n = 0; n < MAX_RECORDS && file.getLine(record) > 0; ++n) reader.take(record.view());
  return 1;
}

}  // namespace KYV
