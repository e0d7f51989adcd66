// picture_fuzz: damages products, as they are and with their bzip2 body unpacked, and draws each with everything that a
// layer can draw. See Damage.h for its use.
#include "Damage.h"
#include "KYV/Plot.h"
#include "KYV/RadMap.h"
#include "Surface.h"
#include "Unpack.h"

namespace {

constexpr std::size_t FRONT = 400;  // bytes where headers stand

// @param exact  as the radar measured it
void drawProduct(const char* name, bool exact) {
  KYV::Plot& plot = getSurface();
  KYV::Kyv::setResrc("exact", exact ? "yes" : "no");
  KYV::RadMap layer(
      "va=cid,tvs,meso,posh,hsize,vil,dbzm,ctop,cmvmt,cstat,comp,track,table,site,dist=50:100,ramp=5:100");
  KYV::Domain domain;
  if (!layer.setFilename(name)) return;
  layer.getDomain(domain);
  layer.draw(plot);
  plot.drawLabels();
  plot.clearFrame();
}

Damage makeDamage() {
  getSurface();
  Damage damage("picture_fuzz",
                {[](const char* name) { drawProduct(name, false); }, [](const char* name) { drawProduct(name, true); }},
                FRONT);
  damage.forms = [](const Damage::Bytes& whole) {
    return std::vector<std::pair<std::string, Damage::Bytes>>{{"unpacked", unpackBody(whole)}};
  };
  return damage;
}

}  // namespace

RADMAP_FUZZ(makeDamage)
