#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "KYV/Image.h"

namespace KYV {

namespace {

constexpr std::size_t NOWHERE = std::numeric_limits<std::size_t>::max();

// The part of a value that a channel mask covers, as a fraction of the mask's largest.
float channel(std::uint32_t value, unsigned long mask) {
  if (mask == 0) return 0.0f;
  const int shift = std::countr_zero(mask);
  return static_cast<float>(static_cast<double>((value & mask) >> shift) / static_cast<double>(mask >> shift));
}

}  // namespace

std::size_t Image::find(int x, int y) const {
  if (x < 0 || y < 0 || x >= width || y >= height) return NOWHERE;
  const std::size_t bytes = static_cast<std::size_t>(bits_pixel / 8);
  const std::size_t at =
      static_cast<std::size_t>(y) * static_cast<std::size_t>(bytes_line) + static_cast<std::size_t>(x) * bytes;
  // getData() lets others change the number of bytes.
  return at + bytes <= data.size() ? at : NOWHERE;
}

int Image::setPixel(int x, int y, std::uint32_t value) {
  const std::size_t at = find(x, y);
  if (at == NOWHERE) return 0;
  const int bytes = bits_pixel / 8;
  for (int i = 0; i < bytes; ++i) {
    const int place = byte_order == 1 ? bytes - 1 - i : i;
    data[at + static_cast<std::size_t>(place)] = static_cast<unsigned char>(value >> (8 * i));
  }
  return 1;
}

std::uint32_t Image::getVal(int x, int y) const {
  const std::size_t at = find(x, y);
  if (at == NOWHERE) return 0;
  const int bytes = bits_pixel / 8;
  std::uint32_t value = 0;
  for (int i = 0; i < bytes; ++i) {
    const int place = byte_order == 1 ? i : bytes - 1 - i;
    value = value << 8 | data[at + static_cast<std::size_t>(place)];
  }
  return value;
}

std::uint32_t Image::getPixel(int x, int y) const {
  // Outside there is no index, not even 0.
  if (find(x, y) == NOWHERE) return 0;
  const std::uint32_t value = getVal(x, y);
  if (color_type != INDEXED || colors.empty()) return value;
  return colors[std::min<std::size_t>(value, colors.size() - 1)].packed;
}

// The colour of a raw value.
RGB Image::split(std::uint32_t value) const {
  if (color_type == INDEXED && !colors.empty()) {
    const Color& c = colors[std::min<std::size_t>(value, colors.size() - 1)];
    return {c.red, c.green, c.blue};
  }
  if (color_type == DIRECT) {
    if (red_mask || grn_mask || blu_mask) {
      return {channel(value, red_mask), channel(value, grn_mask), channel(value, blu_mask)};
    }
    return {channel(value, 0xFF0000), channel(value, 0x00FF00), channel(value, 0x0000FF)};
  }
  // Grey, and indices without a table, are levels of the depth.
  const int bits = std::clamp(depth, 1, 32);
  const float grey = static_cast<float>(std::min(1.0, value / (std::exp2(bits) - 1.0)));
  return {grey, grey, grey};
}

int Image::getRGB(int x, int y, RGB& rgb) const {
  rgb = RGB();
  if (find(x, y) == NOWHERE) return 0;
  rgb = split(getVal(x, y));
  return 1;
}

int Image::getRow(int y, unsigned char* bytes) const {
  const std::size_t at = find(0, y);
  const std::size_t size = static_cast<std::size_t>(bytes_line);
  if (!bytes || at == NOWHERE || data.size() - at < size) return 0;
  std::copy_n(data.data() + at, size, bytes);
  return bytes_line;
}

int Image::allocAlpha() {
  alpha.clear();
  if (!validData()) return 0;
  alpha.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 255);
  return 1;
}

int Image::setAlpha(int x, int y, int value) {
  if (alpha.empty() || find(x, y) == NOWHERE) return 0;
  alpha[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)] =
      static_cast<unsigned char>(std::clamp(value, 0, 255));
  return 1;
}

int Image::getAlpha(int x, int y) const {
  if (alpha.empty() || find(x, y) == NOWHERE) return 255;
  return alpha[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
}

std::uint32_t Image::blend(int x, int y, std::uint32_t behind) const {
  RGB rgb;
  getRGB(x, y, rgb);
  const auto part = static_cast<std::uint32_t>(getAlpha(x, y));
  std::uint32_t packed = 0;
  int shift = 16;
  for (const float v : {rgb.red, rgb.green, rgb.blue}) {
    const auto own = static_cast<std::uint32_t>(std::lround(v * 255.0f));
    packed |= (own * part + (behind >> shift & 255) * (255 - part) + 127) / 255 << shift;
    shift -= 8;
  }
  return packed;
}

bool Image::isPixelTrans(int x, int y) const {
  if (getAlpha(x, y) == 0) return true;
  if (trans_color < 0 || find(x, y) == NOWHERE) return false;
  const std::uint32_t value = getVal(x, y);
  // The fourth byte of 32 bits is no colour.
  return static_cast<std::uint32_t>(trans_color) == (color_type == DIRECT ? value & 0xFFFFFF : value);
}

float Image::getValue(int i) const {
  return i >= 0 && static_cast<std::size_t>(i) < values.size() ? values[static_cast<std::size_t>(i)]
                                                               : static_cast<float>(Const::MISS);
}

int Image::getIndex(float value) const {
  int best = Const::MISS;
  double least = std::numeric_limits<double>::infinity();
  if (Const::isMissing(value)) return best;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double away = std::fabs(static_cast<double>(values[i]) - value);
    if (Const::isMissing(values[i]) || !(away < least)) continue;
    least = away;
    best = static_cast<int>(i);
  }
  return best;
}

bool Image::locate(const EarthPoint& e, int& x, int& y) const {
  GridPoint g;
  if (!domain.isSet() || !domain.tran(e, g) || g.isMissing()) return false;
  const float column = std::floor(g.x), row = std::floor(g.y);
  if (!(column >= 0.0f && column < static_cast<float>(width) && row >= 0.0f && row < static_cast<float>(height))) {
    return false;
  }
  x = static_cast<int>(column);
  y = static_cast<int>(row);
  return true;
}

std::uint32_t Image::getPixel(const EarthPoint& e) const {
  int x = 0, y = 0;
  return locate(e, x, y) ? getPixel(x, y) : 0;
}

float Image::getValue(const EarthPoint& e) const {
  int x = 0, y = 0;
  if (!locate(e, x, y)) return Const::MISS;
  const int reach = pix_ave ? 1 : 0;
  double sum = 0.0;
  int num = 0;
  for (int j = y - reach; j <= y + reach; ++j) {
    for (int i = x - reach; i <= x + reach; ++i) {
      const std::uint32_t index = getVal(i, j);
      if (find(i, j) == NOWHERE || isPixelTrans(i, j) || index >= values.size() || Const::isMissing(values[index])) {
        continue;
      }
      sum += values[index];
      ++num;
    }
  }
  return num > 0 ? static_cast<float>(sum / num) : static_cast<float>(Const::MISS);
}

}  // namespace KYV
