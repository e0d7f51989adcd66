// map_fuzz: damages map files of every kind (text, binary, shapefile, KML), map list files and metafiles, which are
// read by the readers and drawn by the map layer. See Damage.h for its use.
#include <unistd.h>

#include <string>

#include "Damage.h"
#include "KYV/Domain.h"
#include "KYV/EarthPoints.h"
#include "KYV/Kyv.h"
#include "KYV/MapFile.h"
#include "KYV/MapPlot.h"
#include "KYV/Plot.h"

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
  static KYV::Plot plot;
  static const bool ready =
      plot.open() && plot.setPanel() && plot.setDomain(KYV::Domain("ps:90:-97,35,-97,100,100,0.1,0.1"));
  if (!ready) std::exit(2);
  KYV::MapPlot layer("fc");
  layer.draw(plot, name);
  for (const char* kind : {"mf:", "rf:"}) layer.process(plot, (std::string(kind) + name).c_str(), 3);
  layer.setMapFiles((std::string("fi:") + name).c_str());
  layer.draw(plot);
}

Damage makeDamage() {
  KYV::Kyv::setMessageLevel(0);
  KYV::Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
  KYV::Kyv::setResrc("device", "raster");
  return Damage("map_fuzz", {readMap, drawMap}, FRONT);
}

}  // namespace

#ifdef RADMAP_LIBFUZZER

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static Damage damage = makeDamage();
  damage.readOne(data, size);
  return 0;
}

#else

int main(int argc, char** argv) { return makeDamage().run(argc, argv); }

#endif
