#include "KYV/ColorFile.h"

#include <algorithm>

#include "DataLines.h"
#include "KYV/ColorMap.h"
#include "KYV/Const.h"
#include "KYV/DataPath.h"
#include "KYV/Kyv.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr int DEFAULT_CAPACITY = 256;
constexpr std::size_t MAX_LINE = 250;

void endFill(ColorMap& map) {
  if (map.getNumFill() == 0) map.setNumFill(map.getNum());
}

bool decodeFractions(const Strings& words, int i, RGB& rgb) {
  float part[3];
  for (int k = 0; k < 3; ++k) {
    const float value = StrLib::toFloat(words.getString(i + k));
    if (Const::isMissing(value)) return false;
    part[k] = std::clamp(value, 0.0f, 1.0f);
  }
  rgb.set(part[0], part[1], part[2]);
  return true;
}

}  // namespace

int ColorFile::read(const char* list, ColorMap& map) {
  const Strings files(list, ',');
  Strings missing;
  int num = 0;
  for (int i = 0; i < files.getNum(); ++i) {
    String path;
    if (!files.valid(i)) continue;
    if (DataPath::find(files.getString(i), path) && readFile(path.get(), map)) {
      ++num;
      endFill(map);
    } else {
      missing.add(files.getString(i));
    }
  }
  // With none at all the caller knows what becomes of it.
  for (int i = 0; num > 0 && i < missing.getNum(); ++i) {
    Kyv::report(Kyv::BADPARAM,
                "ColorFile: unable to read the colour table %s; give its full path, or its directory with -fp\n",
                missing.getString(i));
  }
  return num > 0 ? 1 : 0;
}

int ColorFile::readFile(const char* path, ColorMap& map) {
  File file;
  if (!file.openData(path)) return 0;
  if (map.getMax() == 0) map.init(DEFAULT_CAPACITY);
  char line[MAX_LINE + 1];
  while (nextLine(file, line)) {
    if (*line == '#') continue;
    if (StrLib::iequal(line, "END")) {
      endFill(map);
      continue;
    }
    const Strings words(line);
    const int at = StrLib::isNum(words.getString(0)) ? 1 : 0;
    RGB rgb;
    if (!words.valid(at) || !(decodeFractions(words, at + 1, rgb) || ColorMap::decode(words.getString(at + 1), rgb)))
      continue;
    // One warning of a full table is enough.
    if (map.add(words.getString(at), rgb) < 0) break;
  }
  return 1;
}

}  // namespace KYV
