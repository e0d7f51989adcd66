#ifndef RADMAP_FUZZ_SURFACE_H
#define RADMAP_FUZZ_SURFACE_H

#include <cstdio>
#include <cstdlib>

#include "KYV/Domain.h"
#include "KYV/Kyv.h"
#include "KYV/Plot.h"

/// A map of 1000 by 1000 km that is painted in memory, for the fuzz programs that draw. Messages are silenced.
inline KYV::Plot& getSurface() {
  static KYV::Plot plot;
  static const bool ready = [] {
    KYV::Kyv::setMessageLevel(0);
    KYV::Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
    KYV::Kyv::setResrc("device", "raster");
    return plot.open() && plot.setPanel() && plot.setDomain(KYV::Domain("ps:90:-97,35,-97,100,100,0.1,0.1"));
  }();
  if (!ready) {
    std::fprintf(stderr, "no surface to draw on\n");
    std::exit(2);
  }
  return plot;
}

#endif
