#include <cstdio>
#include <map>

#include "KYV/Image.h"

namespace KYV {

int Image::print() const {
  std::printf("Source: %d\n", source);
  std::printf("Version: %d\n", version);
  std::printf("Date: %s\n", datim);
  date.print();
  std::printf("Info: %s\n", info);
  std::printf("Type: %d\n", type);
  std::printf("Size: %dx%d\n", width, height);
  std::printf("Resolution: %.2fx%.2f\n", dx, dy);
  std::printf("Offset: %.2fx%.2f\n", xoff, yoff);
  std::printf("Depth: %d\n", depth);
  std::printf("Bits per pixel: %d\n", bits_pixel);
  std::printf("Bytes per line: %d\n", bytes_line);
  std::printf("Bytes order: %d\n", byte_order);
  std::printf("Type of color: %d\n", color_type);
  std::printf("Number of colors: %d (%p)\n", getNumColor(), static_cast<const void*>(colors.data()));
  std::printf("Transparent color: %d\n", trans_color);
  std::printf("Image domain: ");
  domain.print();
  if (!values.empty()) std::printf("Image has values\n");
  if (num_cutoff > 0) {
    std::printf("Cutoff-base: %d - %d ", cutoff_base, num_cutoff);
    for (int i = 0; i <= num_cutoff; ++i) std::printf("%d ", cutoff[i]);
    std::printf("\n");
  }
  return 1;
}

int Image::printInt() const {
  if (!validData()) return 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) std::printf("%u ", getVal(x, y));
    std::printf("\n");
  }
  return 1;
}

int Image::printValues() const {
  for (std::size_t i = 0; i < values.size(); ++i) std::printf("%zu: %g\n", i, values[i]);
  return 1;
}

int Image::printColors() const {
  for (std::size_t i = 0; i < colors.size(); ++i) {
    const Color& c = colors[i];
    std::printf("%zu: %.2f %.2f %.2f %06X\n", i, c.red, c.green, c.blue, c.packed);
  }
  return 1;
}

int Image::printHist() const {
  if (!validData()) return 0;
  std::map<std::uint32_t, long> count;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) ++count[getVal(x, y)];
  }
  for (const auto& [value, num] : count) std::printf("%u: %ld\n", value, num);
  return 1;
}

int Image::printData(const EarthPoint& e) const {
  int x = 0, y = 0;
  if (!locate(e, x, y)) return 0;
  std::printf("%.2f %.2f: pixel %d %d value %u data %g\n", e.lat, e.lon, x, y, getVal(x, y), getValue(e));
  return 1;
}

}  // namespace KYV
