// text_fuzz: damages the text files that a user may write: colour tables, fill scales, resource files, lists of cities,
// regions, conventions and variables, stroke fonts, symbols. The first byte of an input, '0' and on, chooses the reader
// of the rest. See Damage.h for its use.
#include <fstream>
#include <iterator>
#include <string>
#include <tuple>

#include "Damage.h"
#include "KYV/CityData.h"
#include "KYV/CityFile.h"
#include "KYV/ColorFile.h"
#include "KYV/ColorFill.h"
#include "KYV/ColorMap.h"
#include "KYV/GFont.h"
#include "KYV/Kyv.h"
#include "KYV/NameConv.h"
#include "KYV/NameConvFile.h"
#include "KYV/Point.h"
#include "KYV/Region.h"
#include "KYV/Resrc.h"
#include "KYV/ResrcFile.h"
#include "KYV/String.h"
#include "KYV/Symbol.h"
#include "KYV/VarList.h"

namespace {

using namespace KYV;

constexpr std::size_t FRONT = 300;  // bytes of the first lines

using Reader = void (*)(const char* name);
constexpr Reader READERS[] = {
    [](const char* name) {
      ColorMap map;
      ColorFile::read(name, map);
      RGB rgb;
      map.get(map.getInd("red"), rgb);
    },
    [](const char* name) {
      ColorMap map;
      map.init(256);
      ColorFill fill;
      fill.set(map, name);
      fill.getInd(12.5f);
    },
    [](const char* name) {
      Resrc store;
      ResrcFile file(store);
      file.set("radmap", "");
      std::ignore = file.readFile(store, name);
    },
    [](const char* name) {
      CityFile file;
      CityData city;
      if (file.open(name)) {
        while (file.read(city)) continue;
      }
    },
    [](const char* name) {
      String text;
      Region::get(name, "conus", text);
    },
    [](const char* name) {
      Kyv::setResrc("name_conv", name);
      NameConv conv("nids:i=KTLX:t=N0Q");
      conv.decode("N0Q_20240501_1830");
      String search, known;
      conv.getSearch(search);
      NameConv::isKnown("none of them", known);
    },
    [](const char* name) {
      VarList list;
      if (list.setFile(name)) list.process("cid,comp[un=km],none");
    },
    [](const char* name) {
      GFont font;
      Point p;
      if (font.read(name)) {
        font.setChar('W');
        while (font.get(p)) continue;
      }
    },
    [](const char* name) {
      Symbol symbols;
      if (symbols.read(name)) symbols.set("tstorm");
    },
};

// Hands the reader that the first byte chooses the rest as a file of its own.
void readText(const char* name) {
  std::ifstream in(name, std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(in), {}};
  if (whole.empty()) return;
  const std::string rest = std::string(name) + ".txt";
  std::ofstream(rest, std::ios::binary) << whole.substr(1);
  READERS[(static_cast<unsigned char>(whole[0]) - '0') % std::size(READERS)](rest.c_str());
  std::filesystem::remove(rest);
}

Damage makeDamage() {
  Kyv::setMessageLevel(0);
  return Damage("text_fuzz", {readText}, FRONT);
}

}  // namespace

RADMAP_FUZZ(makeDamage)
