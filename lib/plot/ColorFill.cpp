#include "KYV/ColorFill.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "DataLines.h"
#include "KYV/ColorMap.h"
#include "KYV/DataPath.h"
#include "KYV/Kyv.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr std::size_t MAX_LINE = 80;
constexpr float NEXT_CLASS = 0.01f;  // of an interval: so much below a class's limit still counts as on it

// The colour index of a name, negative for none. Without a map a number alone is known.
int findColor(ColorMap* map, const char* name) {
  if (map) return map->getInd(name);
  return StrLib::isNum(name) ? StrLib::getInt(name) : Const::MISS;
}

// The attributes of an item "value:attributes", null when it has another form. The value may be followed by a unit,
// but by no '-': "4-9:wi=2" is a range of colours, while the signs of "-100:off" and "1e-3:red" belong to the number.
const char* splitValue(const char* item, float& value) {
  const char* first = *item == '+' ? item + 1 : item;
  const char* last = first + StrLib::length(first);
  const auto [end, error] = std::from_chars(first, last, value);
  if (error != std::errc() || !std::isfinite(value)) return nullptr;
  const char* colon = std::find(end, last, ':');
  return colon == last || std::find(end, colon, '-') != colon ? nullptr : colon + 1;
}

// The sides of an item "from-to"; false when it is none or a side names no colour ("light-blue").
struct ColorRange {
  PlotAttr attr;
  int from = 0;
  int to = 0;

  bool decode(ColorMap* map, const char* item) {
    const int dash = *item ? StrLib::index(item + 1, '-') : -1;
    if (dash < 0) return false;
    const String first(item, dash + 1);
    attr.set(first.get());
    from = findColor(map, attr.name);
    to = findColor(map, PlotAttr(item + dash + 2).name);
    return from >= 0 && to >= 0;
  }
};

// Whether a lone text is a scale by its form; any other one is the name of a file.
bool isItem(ColorMap* map, const char* text) {
  float value = 0.0f;
  return StrLib::isNum(text) || splitValue(text, value) || ColorRange().decode(map, text);
}

}  // namespace

int ColorFill::init() {
  attrs.clear();
  thres.clear();
  bad.clear();
  num_set = 0;
  name[0] = '\0';
  base = interval = Const::MISS;
  return 1;
}

int ColorFill::set(ColorMap& map, const char* text) { return setText(&map, text); }

int ColorFill::set(const char* text) { return setText(nullptr, text); }

int ColorFill::setText(ColorMap* map, const char* text) {
  init();
  if (!StrLib::validData(text)) {
    const int num = map ? std::min(map->getNumFill(), map->getNum()) : 0;
    for (int i = 0; i < num; ++i) {
      PlotAttr attr;
      StrLib::copy(attr.name, map->getName(i));
      attr.color = i;
      append(attr, Const::MISS);
    }
    return getNum() > 0 ? 1 : 0;
  }
  const Strings items(text, ',');
  if (items.getNum() == 1 && !isItem(map, items.getString(0))) {
    if (readLines(map, items.getString(0))) return 1;
    // A lone colour is a scale as well.
    const PlotAttr attr(items.getString(0));
    if (findColor(map, attr.name) < 0 && !ColorMap::isOff(attr.name)) return 0;
  }
  for (int i = 0; i < items.getNum(); ++i) decodeItem(map, items.getString(i));
  validateValues();
  return getNum() > 0 ? 1 : 0;
}

int ColorFill::setFill(ColorMap& map, const char* dflt) {
  const char* text = Kyv::resrc.get("color_fill", "");
  const bool own = *text && !StrLib::iequal(text, "miss") && !StrLib::iequal(text, "def");
  if (!set(map, own ? text : dflt)) return 0;
  return own ? 2 : 1;
}

int ColorFill::append(const PlotAttr& attr, float value) {
  if (getNum() >= MAX_ENTRY) return 0;
  if (num_set == getNum() && !Const::isMissing(value)) ++num_set;
  attrs.push_back(attr);
  thres.push_back(value);
  return 1;
}

int ColorFill::decode(ColorMap& map, const char* item) { return decodeItem(&map, item); }

int ColorFill::decode(const char* item) { return decodeItem(nullptr, item); }

int ColorFill::decodeItem(ColorMap* map, const char* item) {
  while (item && *item == ' ') ++item;
  if (!StrLib::valid(item)) return 0;
  float value = Const::MISS;
  const char* text = splitValue(item, value);
  ColorRange range;
  if (!text && range.decode(map, item)) {
    for (int i = range.from;; i += range.from < range.to ? 1 : -1) {
      range.attr.color = i;
      StrLib::printf(range.attr.name, "%d", i);
      if (!append(range.attr, Const::MISS)) return 0;
      if (i == range.to) return 1;
    }
  }
  PlotAttr attr(text ? text : item);
  const Strings unknown = PlotAttr::findBadItems(text ? text : item);
  for (int i = 0; i < unknown.getNum(); ++i) bad.add(unknown.getString(i));
  if (map) attr.color = map->getInd(attr.name);
  return append(attr, text ? value : static_cast<float>(Const::MISS));
}

int ColorFill::readFile(ColorMap& map, const char* file) { return init(), readLines(&map, file); }

int ColorFill::readFile(const char* file) { return init(), readLines(nullptr, file); }

int ColorFill::readLines(ColorMap* map, const char* fileName) {
  String path;
  File file;
  if (!DataPath::find(fileName, path) || !file.openData(path.get())) return 0;
  char line[MAX_LINE + 1];
  while (nextLine(file, line)) {
    if (*line == '#') continue;
    if (*line != '@') {
      decodeItem(map, line);
    } else if (StrLib::equal(line, "@label", 6)) {
      StrLib::copy(name, StrLib::length(line) > 7 ? line + 7 : "");
    } else if (StrLib::equal(line, "@name", 5)) {
      StrLib::copy(name, StrLib::length(line) > 6 ? line + 6 : "");
    }
  }
  validateValues();
  return getNum() > 0 ? 1 : 0;
}

int ColorFill::validateValues() {
  num_set = 0;
  if (!areValuesSet()) return 1;
  std::size_t from = 0;
  for (std::size_t to = 1; to < thres.size(); ++to) {
    if (Const::isMissing(thres[to])) continue;
    const float step = (thres[to] - thres[from]) / static_cast<float>(to - from);
    for (std::size_t i = from + 1; i < to; ++i) thres[i] = thres[from] + static_cast<float>(i - from) * step;
    from = to;
  }
  // Those after the last set one stay unset, and values find no entry there.
  num_set = static_cast<int>(from) + 1;
  return 1;
}

int ColorFill::setValues(const float* values, int n) {
  if (!values) return 0;
  const int num = std::clamp(n, 0, getNum());
  std::copy(values, values + num, thres.begin());
  return validateValues();
}

bool ColorFill::areValuesSet() const { return !thres.empty() && !Const::isMissing(thres[0]); }

bool ColorFill::isVisible() const {
  return std::any_of(attrs.begin(), attrs.end(), [](const PlotAttr& a) { return a.validColor(); });
}

float ColorFill::getValue(int i) const {
  return i >= 0 && i < getNum() ? thres[static_cast<std::size_t>(i)] : static_cast<float>(Const::MISS);
}

int ColorFill::getInd(float v) const {
  if (Const::isMissing(v) || std::isnan(v)) return Const::MISS;
  if (attrs.empty()) return -1;
  if (num_set == 0) return getRepeated(v);
  if (v < thres[0]) return -1;
  for (int i = 1; i < num_set; ++i) {
    if (v < thres[static_cast<std::size_t>(i)]) return i - 1;
  }
  return num_set - 1;
}

// The entries one after the other, by interval and base; the first one where these are of no use.
int ColorFill::getRepeated(float v) const {
  if (Const::isMissing(interval) || interval == 0.0f) return 0;
  const float from = Const::isMissing(base) ? 0.0f : base;
  const float count = static_cast<float>(getNum());
  float k = std::fmod(std::floor((v - from) / interval + NEXT_CLASS), count);
  if (k < 0.0f) k += count;
  return k >= 0.0f && k < count ? static_cast<int>(k) : 0;
}

const PlotAttr& ColorFill::get(int i) const {
  static const PlotAttr NO_ATTR;
  return i >= 0 && i < getNum() ? attrs[static_cast<std::size_t>(i)] : NO_ATTR;
}

int ColorFill::getColor(float v) const {
  const int i = getInd(v);
  return i < 0 ? i : get(i).color;
}

int ColorFill::getColor(int i) const { return get(i).color; }

const char* ColorFill::getColorName(int i) const { return get(i).name; }

bool ColorFill::validLabel(int i) const { return *get(i).label != '\0'; }

const char* ColorFill::getLabel(int i) const { return get(i).label; }

int ColorFill::print() const {
  std::printf("ColorFill\n");
  std::printf("Intrvl: %.2f Base: %.2f\n", static_cast<double>(interval), static_cast<double>(base));
  for (std::size_t i = 0; i < attrs.size(); ++i) {
    std::printf("val: %.2f\n", static_cast<double>(thres[i]));
    std::printf("Name: %s\n", attrs[i].name);
  }
  return 1;
}

}  // namespace KYV
