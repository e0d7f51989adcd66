#include "KYV/GFont.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "KYV/DataPath.h"
#include "KYV/File.h"
#include "KYV/Point.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"

namespace KYV {

namespace {

// x of a code: draw to below MOVE, move to (x less MOVE) up to LAST_MOVE, the end of a character above.
constexpr int MOVE = 128;
constexpr int LAST_MOVE = 253;
constexpr int END_FONT = 254;
constexpr int NEW_CHAR = 255;
constexpr int BLANK_WIDTH = 40;
constexpr int DEFAULT_HEIGHT = 12;
constexpr int MAX_HEIGHT = 1000;
constexpr int MAX_COORD = 100000;  // no letter comes near, and sums of widths stay within an int

bool readInt(File& file, int& value) {
  // The width keeps a number of any length within an int; what follows its ninth digit is read as another one.
  return file.scanf("%9d ", &value) == 1;
}

std::size_t slot(char c) { return static_cast<unsigned char>(c); }

}  // namespace

int GFont::init() {
  name[0] = '\0';
  type = STROKE;
  codes.clear();
  widths.fill(0);
  starts.fill(-1);
  height = DEFAULT_HEIGHT;
  current = 0;
  opened = false;
  return 1;
}

int GFont::read(const char* fontName) {
  init();
  if (!fontName) fontName = "modern.fnt";
  if (*fontName == '#') return setDevice(fontName + 1);
  StrLib::copy(name, fontName);

  String path;
  File file;
  if (!DataPath::find(fontName, path) || !file.openData(path.get())) return 0;
  readCodes(file);
  measure();
  opened = std::any_of(starts.begin(), starts.end(), [](int start) { return start >= 0; });
  return opened ? 1 : 0;
}

// "helv_bold:14": a blank for each '_', the height after ':'.
int GFont::setDevice(const char* spec) {
  type = DEVICE;
  StrLib::copy(name, spec);
  StrLib::replace(name, '_', ' ');
  const int colon = StrLib::index(name, ':');
  if (colon >= 0) {
    const int h = StrLib::toInt(name, colon + 1);
    if (h > 0) height = std::min(h, MAX_HEIGHT);
    name[colon] = '\0';
  }
  opened = true;
  return 1;
}

void GFont::readCodes(File& file) {
  int x = 0, y = 0;
  char c = 0;
  if (!readInt(file, x)) return;
  if (x != NEW_CHAR) {
    if (file.scanf("%1c", &c) != 1) return;
    starts[slot(c)] = 0;
  }
  while (codes.size() < MAX_CODE && readInt(file, x) && x != END_FONT) {
    if (x == NEW_CHAR) {
      if (file.scanf("%1c", &c) != 1) break;
      codes.push_back({NEW_CHAR, NEW_CHAR});
      starts[slot(c)] = static_cast<int>(codes.size());
    } else {
      if (!readInt(file, y)) break;
      codes.push_back({std::clamp(x, -MAX_COORD, MAX_COORD), std::clamp(y, -MAX_COORD, MAX_COORD)});
    }
  }
  if (!codes.empty()) codes.back() = {NEW_CHAR, NEW_CHAR};
}

// The width of each character; one without strokes is none.
void GFont::measure() {
  for (std::size_t c = 0; c < starts.size(); ++c) {
    if (!setChar(static_cast<char>(c))) {
      starts[c] = -1;
      continue;
    }
    Point p;
    while (get(p)) widths[c] = std::max(widths[c], static_cast<int>(p.x));
  }
  widths[slot(' ')] = BLANK_WIDTH;
}

bool GFont::setChar(char c) {
  const int start = starts[slot(c)];
  if (start < 0 || start >= static_cast<int>(codes.size())) return false;
  current = start;
  return codes[static_cast<std::size_t>(start)].x <= LAST_MOVE;
}

int GFont::get(Point& p) {
  if (current < 0 || current >= static_cast<int>(codes.size())) return 0;
  const Code& code = codes[static_cast<std::size_t>(current)];
  if (code.x > LAST_MOVE) return 0;
  ++current;
  const bool move = code.x >= MOVE;
  p.set(static_cast<float>(move ? code.x - MOVE : code.x), static_cast<float>(code.y));
  return move ? 2 : 1;
}

int GFont::getWidth(char c) const { return widths[slot(c)]; }

int GFont::print() const {
  std::printf("Name %s\n", name);
  std::printf("Type %d\n", type);
  std::printf("Height %d\n", height);
  std::printf("Char %d\n", current);
  std::printf("Opened %d\n", opened ? 1 : 0);
  return 1;
}

}  // namespace KYV
