#include "KYV/Symbol.h"

#include <algorithm>
#include <cstdio>

#include "KYV/DataPath.h"
#include "KYV/File.h"
#include "KYV/Kyv.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr std::size_t MAX_NAME = 14;
constexpr float MAX_COORD = 1.0e6f;

std::string cutName(const char* name) { return std::string(name ? name : "").substr(0, MAX_NAME); }

}  // namespace

int Symbol::init() {
  names.clear();
  starts.clear();
  entries.clear();
  current = 0;
  return 1;
}

int Symbol::read(const char* name) {
  String path;
  File file;
  if (!DataPath::find(name, path) || !file.openData(path.get())) {
    Kyv::report(Kyv::MISC, "Symbol_read: unable to load symbol file: %s\n", name ? name : "");
    return 0;
  }
  init();
  char word[100];
  bool inside = false;
  while (entries.size() < MAX_ENTRY && file.scanf("%99s", word) == 1) {
    if (!inside) {
      if (names.size() >= MAX_SYMBOL) break;
      names.push_back(cutName(word));
      starts.push_back(entries.size());
      inside = true;
      continue;
    }
    float x = 0.0f, y = 0.0f;
    if (StrLib::equal(word, "L")) {
      entries.push_back({LINE, 0.0f, 0.0f});
    } else if (StrLib::equal(word, "F")) {
      entries.push_back({FILL, 0.0f, 0.0f});
    } else if (StrLib::equal(word, "$")) {
      entries.push_back({END, 0.0f, 0.0f});
      inside = false;
    } else if (std::sscanf(word, "%f,%f", &x, &y) == 2 && x == x && y == y) {
      entries.push_back({POINT, std::clamp(x, -MAX_COORD, MAX_COORD), std::clamp(y, -MAX_COORD, MAX_COORD)});
    }
  }
  if (inside) entries.push_back({END, 0.0f, 0.0f});
  return 1;
}

int Symbol::set(const char* name) {
  const auto found = std::find(names.begin(), names.end(), cutName(name));
  if (found == names.end()) return 0;
  current = starts[static_cast<std::size_t>(found - names.begin())];
  return 1;
}

Symbol::Op Symbol::get(Point& p) {
  if (current >= entries.size()) return END;
  const Entry& entry = entries[current];
  if (entry.op == END) return END;
  if (entry.op == POINT) p.set(entry.x, entry.y);
  ++current;
  return entry.op;
}

int Symbol::print() const {
  std::printf("Symbols: %d\n", getNum());
  for (const std::string& name : names) std::printf("%s\n", name.c_str());
  return 1;
}

}  // namespace KYV
