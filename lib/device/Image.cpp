#include "KYV/Image.h"

#include <algorithm>

#include "ColorByte.h"
#include "KYV/StrLib.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

// Beyond any plot; a few bytes of a damaged file must not ask for more.
constexpr std::size_t MAX_DATA = std::size_t{256} * 1024 * 1024;
// Closes the cutoff levels: one more than a byte holds.
constexpr int CUTOFF_END = 256;

// Storage for that many bits of data, 0 when there is none.
constexpr int storageBits(int depth) { return depth >= 1 && depth <= 32 ? (depth + 7) / 8 * 8 : 0; }

constexpr float part(float v) { return v > 0.0f ? (v < 1.0f ? v : 1.0f) : 0.0f; }

}  // namespace

int Image::init() {
  static_cast<ImageInfo&>(*this) = {};
  colors.clear();
  values.clear();
  data.clear();
  alpha.clear();
  return 1;
}

int Image::copyInfo(const Image& other) {
  static_cast<ImageInfo&>(*this) = other;
  if (data.size() != static_cast<std::size_t>(height) * static_cast<std::size_t>(bytes_line)) data.clear();
  return 1;
}

int Image::copyData(const Image& other) {
  width = other.width;
  height = other.height;
  depth = other.depth;
  bits_pixel = other.bits_pixel;
  bytes_line = other.bytes_line;
  byte_order = other.byte_order;
  data = other.data;
  alpha = other.alpha;
  return 1;
}

int Image::set(int w, int h, int bits) {
  const int storage = storageBits(bits);
  if (w <= 0 || h <= 0 || w > MAX_SIZE || h > MAX_SIZE || storage == 0) return 0;
  data.clear();
  width = w;
  height = h;
  depth = bits;
  bits_pixel = storage;
  color_type = storage <= 16 ? INDEXED : DIRECT;
  return setBytesLine();
}

int Image::set(const Domain& dom, int bits) {
  if (!set(dom.nx, dom.ny, bits)) return 0;
  domain = dom;
  return 1;
}

int Image::set(const DomainVal& dom, int bits) { return set(Domain(dom), bits); }

int Image::allocData() {
  clearData();
  const std::size_t size = static_cast<std::size_t>(height) * static_cast<std::size_t>(bytes_line);
  if (size == 0 || size > MAX_DATA) return 0;
  data.assign(size, 0);
  return 1;
}

int Image::clearData() {
  data = {};
  alpha = {};
  return 1;
}

int Image::setBitsPixel(int bits) {
  if (bits <= 0 || storageBits(bits) != bits) return 0;
  if (bits != bits_pixel) data.clear();
  bits_pixel = bits;
  return setBytesLine();
}

int Image::setBytesLine() {
  bytes_line = width * (bits_pixel / 8);
  return 1;
}

int Image::setMasks(unsigned long red, unsigned long green, unsigned long blue) {
  red_mask = red;
  grn_mask = green;
  blu_mask = blue;
  return 1;
}

int Image::getMasks(unsigned long& red, unsigned long& green, unsigned long& blue) const {
  red = red_mask;
  green = grn_mask;
  blue = blu_mask;
  return 1;
}

int Image::setDatim(const char* text) { return StrLib::copy(datim, text), 1; }

int Image::setInfo(const char* text) { return StrLib::copy(info, text), 1; }

int Image::setCutoff(const char* text) {
  const Strings items(text, ':');
  const int num = items.getNum();
  if (num < 1 || num > 4) return 0;
  int levels[5] = {};
  for (int i = 0; i < num; ++i) {
    levels[i] = items.getInt(i);
    if (levels[i] < (i > 0 ? levels[i - 1] + 1 : 0) || levels[i] >= CUTOFF_END) return 0;
  }
  levels[num] = CUTOFF_END;
  std::copy(std::begin(levels), std::end(levels), cutoff);
  cutoff_base = levels[0];
  num_cutoff = num;
  return 1;
}

int Image::allocColors(int n) {
  if (n < 0 || n > MAX_COLORS) return 0;
  colors.assign(static_cast<std::size_t>(n), Color());
  return 1;
}

int Image::setColor(int i, float r, float g, float b) {
  if (i < 0 || i >= getNumColor()) return 0;
  const float red = part(r), green = part(g), blue = part(b);
  colors[static_cast<std::size_t>(i)] = {red, green, blue, static_cast<std::uint32_t>(packColor(red, green, blue))};
  return 1;
}

int Image::setColorVal(int i, std::uint32_t packed) {
  return setColor(i, static_cast<float>(packed >> 16 & 0xFF) / 255.0f, static_cast<float>(packed >> 8 & 0xFF) / 255.0f,
                  static_cast<float>(packed & 0xFF) / 255.0f);
}

int Image::getRGB(int i, RGB& rgb) const {
  rgb = RGB();
  if (i < 0 || i >= getNumColor()) return 0;
  const Color& c = colors[static_cast<std::size_t>(i)];
  rgb.set(c.red, c.green, c.blue);
  return 1;
}

float Image::getRed(int i) const {
  RGB rgb;
  getRGB(i, rgb);
  return rgb.red;
}

float Image::getGrn(int i) const {
  RGB rgb;
  getRGB(i, rgb);
  return rgb.green;
}

float Image::getBlu(int i) const {
  RGB rgb;
  getRGB(i, rgb);
  return rgb.blue;
}

std::uint32_t Image::getColorVal(int i) const {
  return i >= 0 && i < getNumColor() ? colors[static_cast<std::size_t>(i)].packed : 0;
}

int Image::setValues(const float* v, int n) {
  if (n < 0 || n > MAX_COLORS || (!v && n > 0)) return 0;
  values.assign(v, v + n);
  return 1;
}

}  // namespace KYV
