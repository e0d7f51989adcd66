#ifndef NIDSDECODE_H
#define NIDSDECODE_H

#include <vector>

#include "KYV/NidsDamage.h"
#include "KYV/NidsData.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "KYV/NidsRadial.h"
#include "KYV/NidsRun.h"
#include "KYV/NidsShape.h"
#include "KYV/NidsText.h"
#include "KYV/NidsVector.h"
#include "KYV/NidsWind.h"

/// Reads all that a file holds, as a drawing does: the image, every element of every packet, the graphic pages. With
/// `pull` the image is read run by run. 1 when it was a product.
inline int decodeProduct(const char* name, bool pull) {
  using namespace KYV;
  NidsFile file;
  NidsInfo info;
  NidsData data;
  if (!file.open(name) || !file.readHeader(info)) return 0;
  int left = 2000000;  // runs that are pulled: as many as any image has cells
  const auto elements = [&] {
    NidsRadial radial;
    NidsRun run;
    NidsText text;
    NidsVector vector;
    NidsWind wind;
    if (file.isPacketRadial() || file.isPacketRastor() || file.isPacketDpa()) {
      if (!pull) file.readData(data);
      while ((file.isPacketRadial() ? file.readRadial(radial) : file.readRastor()) > 0) {
        while (left > 0 && file.readRun(run) > 0) --left;
      }
    }
    while (file.readVector(vector) > 0) {
    }
    while (file.readWind(wind) > 0) {
    }
    file.readText(text);
    if (file.isPacketGeneric()) file.readGeneric(data);
  };
  elements();
  while (file.readPacket() > 0) elements();
  if (pull ? file.graphic() : file.findGraphic()) {
    while (file.graphicLayer() > 0) {
      while ((pull ? file.readPacket() : file.nextPacket()) > 0) elements();
    }
  }
  NidsDamage damage;
  if (file.getDamage(damage)) damage.toText();
  if (!pull) {
    NidsFile again;
    std::vector<NidsShape> shapes;
    if (again.open(name)) again.readShapes(shapes);
  }
  data.getValue(EarthPoint(info.lat, info.lon));
  data.getValue(EarthPoint(info.lat + 0.5f, info.lon - 0.5f));
  return 1;
}

#endif
