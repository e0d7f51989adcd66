// storm_fuzz: damages files of storm table lines, a text line each, which are decoded as records and as tables of
// columns, and drawn as the pages of a product. See Damage.h for its use.
#include <fstream>
#include <string>

#include "Damage.h"
#include "KYV/Plot.h"
#include "KYV/RadMap.h"
#include "KYV/StormAttr.h"
#include "KYV/StormTable.h"
#include "NidsBuilder.h"
#include "Surface.h"

namespace {

constexpr std::size_t FRONT = 200;  // bytes of the first lines
constexpr std::size_t PACKET = 99;  // characters that a text packet's record holds
constexpr std::size_t PAGE_LINES = 5;

template <class Take>
void eachLine(const char* name, Take take) {
  std::ifstream in(name, std::ios::binary);
  for (std::string line; std::getline(in, line);) take(line.substr(0, PACKET).c_str());
}

void decodeLines(const char* name) {
  KYV::StormAttr storm;
  KYV::StormTable table;
  std::size_t n = 0;
  eachLine(name, [&](const char* line) {
    storm.decode(line);
    if (n++ % PAGE_LINES == 0) table.clear();
    table.add(line);
    table.getStorms();
  });
}

// Draws a product whose pages have the lines, with its tables and every attribute.
void drawProduct(const char* name) {
  KYV::Plot& plot = getSurface();
  constexpr std::size_t MOST = 60;
  NidsBuilder product;
  product.header(58, 1);
  std::size_t n = 0;
  eachLine(name, [&](const char* line) {
    if (n == MOST) return;
    if (n++ % PAGE_LINES == 0) product.page();
    product.text(8, 1, static_cast<int>(line[0]), 10, line);
  });
  const std::string file = std::string(name) + ".nids";
  if (!product.write(file.c_str())) std::exit(2);
  KYV::RadMap layer(
      "va=cid,tvs,meso,meso5,poh,poh5,posh,hsize,vil,dbzm,dbzht,ctop,cdir,cspd,cmvmt,cstat,comp,track,table");
  if (layer.setFilename(file.c_str())) layer.draw(plot);
  plot.clearFrame();
  std::filesystem::remove(file);
}

Damage makeDamage() {
  getSurface();
  return Damage("storm_fuzz", {decodeLines, drawProduct}, FRONT);
}

}  // namespace

RADMAP_FUZZ(makeDamage)
