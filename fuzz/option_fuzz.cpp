// option_fuzz: damages the values of options, one a line: domains, times, zones, scales, colours, parameters, sizes,
// labels, conventions. Every line is given to all who read such values. See Damage.h for its use.
#include <fstream>
#include <string>

#include "Damage.h"
#include "KYV/ColorFill.h"
#include "KYV/ColorMap.h"
#include "KYV/Date.h"
#include "KYV/DateTool.h"
#include "KYV/DomainTool.h"
#include "KYV/Figure.h"
#include "KYV/Filename.h"
#include "KYV/MapPlot.h"
#include "KYV/NameConv.h"
#include "KYV/ParamTable.h"
#include "KYV/Plot.h"
#include "KYV/RadMap.h"
#include "KYV/TimeSpec.h"
#include "KYV/Timezone.h"
#include "Surface.h"

namespace {

using namespace KYV;

constexpr std::size_t FRONT = 200;  // bytes of the first lines
constexpr std::size_t MOST = 200;   // characters of a line, lines of a file

void readValue(const char* text) {
  Domain domain;
  DomainTool::decode(domain, text);
  Date date;
  const TimeSpec time(text);
  time.getDate(date);
  DateTool::decode(text, date);
  const Timezone zone(text);
  String label;
  DateTool::createLabel(date, zone, label);
  // A name alone is that of a file, wherever it is.
  if (StrLib::index(text, ',') >= 0) {
    ColorMap map;
    map.init(256);
    ColorFill(map, text).getInd(5.0f);
  }
  PlotAttr::findBadItems(text);
  RadMap radar(text);
  MapPlot maps(text);
  getSurface().setParam(text);
  getSurface().setDrawing(text);
  GeomBox box;
  Plot::decodeGeometryStr(text, box);
  char line[100];
  getSurface().formatLabel(text, line, sizeof line);
  NameConv conv(text);
  conv.decode("N0Q_20240501_1830");
  Filename().setNumFiles(text);
  ParamAnswer answer(text);
  RadMap::explain(answer);
  MapPlot::findMissing(text);
}

void readLines(const char* name) {
  std::ifstream in(name, std::ios::binary);
  std::string line;
  for (std::size_t n = 0; n < MOST && std::getline(in, line); ++n) readValue(line.substr(0, MOST).c_str());
}

Damage makeDamage() {
  getSurface();
  return Damage("option_fuzz", {readLines}, FRONT);
}

}  // namespace

RADMAP_FUZZ(makeDamage)
