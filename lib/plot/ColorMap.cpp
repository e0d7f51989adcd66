#include "KYV/ColorMap.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "KYV/Const.h"
#include "KYV/Kyv.h"
#include "KYV/StrLib.h"

namespace KYV {

namespace {

constexpr int OFF = -1;
constexpr int MAX_CAPACITY = 65536;
constexpr float NEAR = 0.01f;  // sum of the differences of colours that look the same

// Names that stand in no table.
struct Special {
  const char* name;
  int index;
};
constexpr Special SPECIALS[] = {
    {"end", -2},   {"none", OFF},  {"off", OFF},   {"back", OFF}, {"pblk", 500},  {"pbblk", 501}, {"ptblk", 502},
    {"pwht", 503}, {"pbwht", 504}, {"ptwht", 505}, {"pgry", 506}, {"pbgry", 507}, {"ptgry", 508},
};

const Special* findSpecial(const char* name) {
  const Special* row = std::find_if(std::begin(SPECIALS), std::end(SPECIALS),
                                    [name](const Special& s) { return StrLib::iequal(s.name, name); });
  return row == std::end(SPECIALS) ? nullptr : row;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// '#' and three numbers of `digits` digits, 0 to 255.
bool decodeParts(std::string_view name, std::size_t digits, int base, RGB& rgb) {
  if (name.size() != 1 + 3 * digits || name[0] != '#') return false;
  float part[3];
  for (std::size_t k = 0; k < 3; ++k) {
    const char* first = name.data() + 1 + k * digits;
    unsigned value = 0;
    const auto end = std::from_chars(first, first + digits, value, base);
    if (end.ec != std::errc() || end.ptr != first + digits) return false;
    part[k] = std::min(static_cast<float>(value) / 255.0f, 1.0f);
  }
  rgb.set(part[0], part[1], part[2]);
  return true;
}

// The number that a name begins with, as much of it as an int holds.
int leadingNumber(std::string_view name) {
  int value = 0;
  const auto end = std::from_chars(name.data(), name.data() + name.size(), value);
  return end.ec == std::errc::result_out_of_range ? INT_MAX : value;
}

int toByte(float part) { return static_cast<int>(std::clamp(part, 0.0f, 1.0f) * 255.0f); }

}  // namespace

int ColorMap::init(int max) {
  colors.clear();
  capacity = std::clamp(max, 0, MAX_CAPACITY);
  num_fill = 0;
  return 1;
}

bool ColorMap::isOff(const char* name) {
  const Special* special = findSpecial(name);
  return special && special->index == OFF;
}

bool ColorMap::decode(const char* text, RGB& rgb) {
  return text && (decodeParts(text, 2, 16, rgb) || decodeParts(text, 3, 10, rgb));
}

int ColorMap::find(const char* name) const {
  const auto found =
      std::find_if(colors.begin(), colors.end(), [name](const Color& c) { return StrLib::iequal(c.name, name); });
  return found == colors.end() ? -1 : static_cast<int>(found - colors.begin());
}

int ColorMap::add(const char* name, float r, float g, float b) {
  Color color;
  StrLib::copy(color.name, name);
  color.red = r;
  color.green = g;
  color.blue = b;
  const int i = find(color.name);
  if (i >= 0) {
    colors[static_cast<std::size_t>(i)] = color;
    return i;
  }
  if (getNum() >= capacity) {
    Kyv::outWarning("Color map size exceeded %d > %d\n", getNum() + 1, capacity);
    return -1;
  }
  colors.push_back(color);
  return getNum() - 1;
}

int ColorMap::getInd(const char* name) {
  if (!StrLib::valid(name)) return Const::MISS;
  if (const Special* special = findSpecial(name)) return special->index;
  const std::string_view text = name;
  if (std::all_of(text.begin(), text.end(), isDigit)) return leadingNumber(text);
  char key[sizeof(Color::name)];
  StrLib::copy(key, name);
  const int i = find(key);
  if (i >= 0) return i;
  RGB rgb;
  if (decode(name, rgb)) return add(name, rgb);
  return isDigit(text[0]) ? leadingNumber(text) : OFF;
}

const Color* ColorMap::entry(int i) const {
  if (i < 0 || colors.empty()) return nullptr;
  return &colors[static_cast<std::size_t>(std::min(i, getNum() - 1))];
}

const char* ColorMap::getName(int i) const {
  const Color* color = entry(i);
  return color ? color->name : "";
}

int ColorMap::get(int i, RGB& rgb) const { return getRGB(i, rgb.red, rgb.green, rgb.blue); }

int ColorMap::getRGB(int i, float& r, float& g, float& b) const {
  const Color* color = entry(i);
  r = color ? color->red : -1.0f;
  g = color ? color->green : -1.0f;
  b = color ? color->blue : -1.0f;
  return color ? 1 : 0;
}

int ColorMap::getIRGB(int i, int& r, int& g, int& b) const {
  const Color* color = entry(i);
  r = color ? toByte(color->red) : -1;
  g = color ? toByte(color->green) : -1;
  b = color ? toByte(color->blue) : -1;
  return color ? 1 : 0;
}

int ColorMap::setValue(int i, int value) {
  if (i < 0 || i >= getNum()) return 0;
  colors[static_cast<std::size_t>(i)].value = value;
  return 1;
}

int ColorMap::getValue(int i) const {
  const Color* color = entry(std::max(i, 0));
  return color ? color->value : -1;
}

int ColorMap::getValue(const char* name) { return getValue(getInd(name)); }

bool ColorMap::isColorNear(int i, const RGB& rgb) const {
  const Color* color = entry(i);
  return color &&
         std::fabs(color->red - rgb.red) + std::fabs(color->green - rgb.green) + std::fabs(color->blue - rgb.blue) <
             NEAR;
}

int ColorMap::print() const {
  for (int i = 0; i < getNum(); ++i) {
    const Color& c = colors[static_cast<std::size_t>(i)];
    std::printf("%3d - %8d (%4.2f,%4.2f,%4.2f) %s\n", i, c.value, static_cast<double>(c.red),
                static_cast<double>(c.green), static_cast<double>(c.blue), c.name);
  }
  std::printf("Fill: %d\n", num_fill);
  return 1;
}

}  // namespace KYV
