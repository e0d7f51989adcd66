#ifndef KYV_PACKETTABLE_H
#define KYV_PACKETTABLE_H

#include <algorithm>
#include <functional>
#include <iterator>

#include "KYV/NidsFile.h"

namespace KYV {

// What follows a packet's code.
enum class Layout {
  Text,         // length, I, J, characters
  ValueText,    // length, value, I, J, characters
  Length,       // length, elements
  ValueLength,  // length, value, elements
  Radial,       // geometry, number of radials, radials
  Precip,       // spare, size, rows
  Raster        // geometry, number of rows, packing, rows
};

struct NidsPacket {
  int code;
  Layout layout;
  const char* name;  // as debug output writes it
};

// clang-format off
inline constexpr NidsPacket PACKETS[] = {
    {1, Layout::Text, "Uniform Text Data"},
    {3, Layout::Length, "Special Symbolic Graphic Data"},
    {4, Layout::Length, "Wind Barb Data"},
    {5, Layout::Length, "Vector Arrow Data"},
    {6, Layout::Length, "Linked Vector Data"},
    {7, Layout::Length, "Unlinked Vector Data"},
    {8, Layout::ValueText, "Uniform Text Data"},
    {9, Layout::Length, "Linked Vector Data"},
    {10, Layout::ValueLength, "Unlinked Vector Data"},
    {11, Layout::Length, "Special Symbolic Graphic Data"},
    {12, Layout::Length, "Special Symbolic Graphic Data"},
    {13, Layout::Length, "Special Symbolic Graphic Data"},
    {14, Layout::Length, "Special Symbolic Graphic Data"},
    {15, Layout::Length, "Special Symbolic Graphic Data"},
    {16, Layout::Radial, "Digital Radial Data Array"},
    {17, Layout::Precip, "Digital Precipitation Array Data"},
    {18, Layout::Length, "Supplemental Precipitation Data"},
    {NidsFile::RADIAL, Layout::Radial, "Radial Data\n"},
    {47623, Layout::Raster, "Rastor Data\n"},  // 0xBA07
    {NidsFile::RASTOR, Layout::Raster, "Rastor Data\n"},
};
// clang-format on

static_assert(std::ranges::adjacent_find(PACKETS, std::ranges::greater_equal{}, &NidsPacket::code) ==
                  std::ranges::end(PACKETS),
              "PACKETS: ascending codes, one row each");

// Null for a code that is not known.
constexpr const NidsPacket* findPacket(int code) {
  const NidsPacket* row = std::ranges::lower_bound(PACKETS, code, {}, &NidsPacket::code);
  return row != std::ranges::end(PACKETS) && row->code == code ? row : nullptr;
}

}  // namespace KYV
#endif
