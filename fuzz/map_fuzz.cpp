// map_fuzz: damages map files of every kind (text, binary, shapefile, KML), map list files and metafiles, which are
// read by the readers and drawn by the map layer. See Damage.h for its use.
#include <unistd.h>

#include <string>

#include "Damage.h"
#include "KYV/EarthPoints.h"
#include "KYV/MapFile.h"
#include "KYV/MapPlot.h"
#include "KYV/Plot.h"
#include "Surface.h"

namespace {

constexpr std::size_t FRONT = 300;  // bytes where headers stand

// Reads every segment, its points one by one and all at once.
void readMap(const char* name) {
  for (const bool single : {true, false}) {
    KYV::MapFile file;
    if (!file.open(name)) return;
    KYV::MapFileHeader header;
    KYV::EarthPoints points;
    KYV::EarthPoint e;
    for (int i = 0; file.readHeader(header) > 0; ++i) {
      if (i % 5 == 4) continue;
      if (single) {
        while (file.readData(e) > 0) {
        }
      } else {
        file.readData(points);
      }
    }
    file.seek(3);
  }
}

// Draws the file as a map, as a list of maps and as a metafile.
void drawMap(const char* name) {
  KYV::Plot& plot = getSurface();
  KYV::MapPlot layer("fc");
  layer.draw(plot, name);
  for (const char* kind : {"mf:", "rf:"}) layer.process(plot, (std::string(kind) + name).c_str(), 3);
  layer.setMapFiles((std::string("fi:") + name).c_str());
  layer.draw(plot);
}

Damage makeDamage() {
  getSurface();
  return Damage("map_fuzz", {readMap, drawMap}, FRONT);
}

}  // namespace

RADMAP_FUZZ(makeDamage)
