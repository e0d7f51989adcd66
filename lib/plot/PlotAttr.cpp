#include "KYV/PlotAttr.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "KYV/ColorMap.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

// What is no number changes nothing.
void setFloat(float& field, const char* text) {
  const float value = StrLib::toFloat(text);
  if (!Const::isMissing(value)) field = value;
}

void setInt(int& field, int value) {
  if (!Const::isMissing(value)) field = value;
}

void setName(PlotAttr& a, const char* text) {
  if (!StrLib::valid(text)) return;
  StrLib::copy(a.name, text);
  a.color = Const::MISS;  // that of the former name
}

// Whether a text can be the value.
using Valid = bool (*)(const char* value);
bool isAny(const char* v) { return StrLib::valid(v); }
bool isNumber(const char* v) { return !Const::isMissing(StrLib::toFloat(v)); }
bool isWhole(const char* v) { return !Const::isMissing(StrLib::toInt(v)); }
bool isLineStyle(const char* v) { return !Const::isMissing(PlotAttr::parseLineStyle(v)); }
bool isFillStyle(const char* v) { return !Const::isMissing(PlotAttr::parseFillStyle(v)); }

struct Key {
  const char* key;
  Valid valid;
  void (*set)(PlotAttr& attr, const char* value);
};

// Recognised by three characters, in any case; the value follows.
constexpr Key KEYS[] = {
    {"co=", isAny, setName},
    {"la=", isAny, [](PlotAttr& a, const char* v) { StrLib::copy(a.label, v); }},
    {"wi=", isNumber, [](PlotAttr& a, const char* v) { setFloat(a.width, v); }},
    {"sh=", isWhole, [](PlotAttr& a, const char* v) { setInt(a.shadow, StrLib::toInt(v)); }},
    {"st=", isLineStyle, [](PlotAttr& a, const char* v) { setInt(a.style, PlotAttr::parseLineStyle(v)); }},
    {"fo=", isAny, [](PlotAttr& a, const char* v) { StrLib::copy(a.font, v); }},
    {"fi=", isFillStyle, [](PlotAttr& a, const char* v) { setInt(a.fill, PlotAttr::parseFillStyle(v)); }},
    {"fp=", isFillStyle, [](PlotAttr& a, const char* v) { setInt(a.fill, PlotAttr::parseFillStyle(v)); }},
    {"sc=", isNumber, [](PlotAttr& a, const char* v) { setFloat(a.height, v); }},
    {"hi=", isNumber, [](PlotAttr& a, const char* v) { setFloat(a.height, v); }},
    {"we=", isNumber, [](PlotAttr& a, const char* v) { setFloat(a.weight, v); }},
    {"te=", isNumber, [](PlotAttr& a, const char* v) { setFloat(a.expansion, v); }},
};

constexpr int MAX_SHORT_FONT = 19;

// Recognised by the first letter; the value follows it.
struct Letter {
  char letter;
  Valid valid;
  void (*set)(PlotAttr& attr, const char* value);
};
constexpr Letter LETTERS[] = {
    {'w', isNumber, [](PlotAttr& a, const char* v) { setFloat(a.width, v); }},
    {'s', isWhole, [](PlotAttr& a, const char* v) { setInt(a.style, StrLib::toInt(v)); }},
    {'f', [](const char* v) { return *v == 'M' || isWhole(v); },
     [](PlotAttr& a, const char* v) {
       if (*v == 'M') {
         a.fill = Const::MISS;
       } else {
         setInt(a.fill, StrLib::toInt(v));
       }
     }},
    {'h', isNumber, [](PlotAttr& a, const char* v) { setFloat(a.height, v); }},
    {'e', isNumber, [](PlotAttr& a, const char* v) { setFloat(a.expansion, v); }},
    // The font stands behind three characters, as after "tf=".
    {'t', [](const char* v) { return StrLib::length(v) > 2; },
     [](PlotAttr& a, const char* v) {
       if (StrLib::length(v) > 2) StrLib::copy(a.font, static_cast<int>(sizeof a.font), v + 2, MAX_SHORT_FONT);
     }},
};

// Calls act(row, value) for the attribute that an item is; false when it is none.
template <class Act>
bool withAttribute(const char* item, Act act) {
  const Key* key =
      std::find_if(std::begin(KEYS), std::end(KEYS), [item](const Key& k) { return StrLib::iequal(item, k.key, 3); });
  if (key != std::end(KEYS)) return act(*key, item + 3), true;
  const Letter* letter =
      std::find_if(std::begin(LETTERS), std::end(LETTERS), [item](const Letter& l) { return l.letter == *item; });
  if (letter == std::end(LETTERS)) return false;
  return act(*letter, item + 1), true;
}

Strings splitItems(const char* text) { return Strings(text, StrLib::index(text, ':') >= 0 ? ':' : ','); }

struct Name {
  const char* name;
  int value;
};

constexpr Name LINE_STYLES[] = {{"sol", 1}, {"dsh", 2}, {"lsdsh", 3}, {"llsdsh", 4}, {"dot", 5}};

constexpr Name FILL_STYLES[] = {
    {"sol", 0}, {"st", 1},  {"ost", 2}, {"rst", 3}, {"lst", 4}, {"vln", 5}, {"||", 5},   {"dlr", 6}, {"\\\\", 6},
    {"drl", 7}, {"//", 7},  {"hln", 8}, {"--", 8},  {"hat", 9}, {"xx", 9},  {"clr", 10}, {"0%", 10}, {"1%", 11},
    {"2%", 12}, {"3%", 13}, {"4%", 14}, {"5%", 15}, {"6%", 16}, {"7%", 17}, {"8%", 18},  {"9%", 19},
};

constexpr int UNKNOWN_MARKER = 2;
constexpr Name MARKERS[] = {
    {"pnt", 1},    {".", 1},   {"plus", 2}, {"+", 2},   {"star", 3},   {"*", 3},      {"crcl", 4},
    {"circle", 4}, {"o", 4},   {"x", 5},    {"sqr", 6}, {"square", 6}, {"#", 6},      {"tri", 7},
    {"^", 7},      {"dot", 8}, {"itri", 9}, {"v", 9},   {"z", 10},     {"light", 10},
};

template <std::size_t N>
int lookUp(const Name (&names)[N], const char* text, int dflt) {
  const Name* row =
      std::find_if(std::begin(names), std::end(names), [text](const Name& n) { return StrLib::iequal(n.name, text); });
  return row == std::end(names) ? dflt : row->value;
}

template <class T>
void take(T& field, T value) {
  if (!Const::isMissing(value)) field = value;
}

}  // namespace

int PlotAttr::parse(const char* text) {
  if (!StrLib::valid(text)) return 0;
  const Strings items = splitItems(text);
  int i = 0;
  if (items.index(0, '=') < 0) setName(*this, items.getString(i++));
  for (; i < items.getNum(); ++i) {
    if (!items.valid(i)) continue;
    withAttribute(items.getString(i), [this](const auto& row, const char* value) { row.set(*this, value); });
  }
  return 1;
}

Strings PlotAttr::findBadItems(const char* text) {
  const Strings items = splitItems(StrLib::valid(text, ""));
  Strings bad;
  for (int i = items.index(0, '=') < 0 ? 1 : 0; i < items.getNum(); ++i) {
    bool valid = false;
    if (!items.valid(i)) continue;
    withAttribute(items.getString(i), [&valid](const auto& row, const char* value) { valid = row.valid(value); });
    if (!valid) bad.add(items.getString(i));
  }
  return bad;
}

int PlotAttr::update(const PlotAttr& other) {
  // With its name, so that a name never keeps the index of another one.
  if (*other.name) {
    StrLib::copy(name, other.name);
    color = other.color;
  }
  take(color, other.color);
  take(width, other.width);
  take(height, other.height);
  take(weight, other.weight);
  if (*other.font) StrLib::copy(font, other.font);
  take(expansion, other.expansion);
  take(style, other.style);
  take(fill, other.fill);
  return 1;
}

void PlotAttr::turnGreys() {
  static constexpr const char* PAIRS[][2] = {{"white", "black"}, {"lgray", "dgray"}, {"dgray", "lgray"}};
  const auto* pair = std::find_if(std::begin(PAIRS), std::end(PAIRS),
                                  [this](const auto& row) { return StrLib::iequal(name, row[0]); });
  if (pair == std::end(PAIRS)) return;
  StrLib::copy(name, (*pair)[1]);
  color = Const::MISS;
}

bool PlotAttr::validColor() const { return *name && !ColorMap::isOff(name) && (color >= 0 || Const::isMissing(color)); }

int PlotAttr::print() const {
  std::printf("PlotAttr co: %s %d ", name, color);
  std::printf("st: %d ", style);
  std::printf("he: %5.2f ", static_cast<double>(height));
  std::printf("we: %5.2f ", static_cast<double>(weight));
  std::printf("wi: %5.2f ", static_cast<double>(width));
  std::printf("ex: %5.2f ", static_cast<double>(expansion));
  std::printf("fi: %d ", fill);
  std::printf("sh: %d ", shadow);
  std::printf("fo: %s\n", font);
  return 1;
}

int PlotAttr::parseLineStyle(const char* text) { return lookUp(LINE_STYLES, text, StrLib::toInt(text)); }

int PlotAttr::parseFillStyle(const char* text) { return lookUp(FILL_STYLES, text, StrLib::toInt(text)); }

int PlotAttr::parseMarker(const char* text) { return lookUp(MARKERS, text, UNKNOWN_MARKER); }

}  // namespace KYV
