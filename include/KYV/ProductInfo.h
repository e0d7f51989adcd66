#ifndef KYV_PRODUCTINFO_H
#define KYV_PRODUCTINFO_H

#include <span>
#include <string_view>

namespace KYV {

/// How the levels of an image become values, by the 16 threshold halfwords h0 to h15 of the header.
enum class LevelCoding {
  None,        // no image, or one whose coding is not known
  Coded,       // the halfword of level N is its value, or a flag
  Tenths,      // h0 / 10 + (N - 2) h1 / 10; flags 0 and 1
  Hundredths,  // h0 / 100 + N h1 / 100; flag 0
  Dba,         // h0 / 10 + N h1 / 1000 decibels of accumulation; flags 0 and 255
  Vil,         // a linear and a logarithmic piece, by 16-bit floats
  Tops,        // mask, scale, offset, top mask
  Floats,      // (N - offset) / scale, 32-bit floats; h5 to h7 greatest level, leading and trailing flags
  Hundreds     // the same, in hundredths of the unit
};

/// What the public format says of a product code.
struct ProductInfo {
  int code;  // of the message header
  const char*
      mnemonic;  // in the names of files and broadcasts, one for each tilt; empty where radars make it on request
  const char* name;
  const char* unit;  // of the values; empty for numbers without unit, "class" for classes
  float cell;        // km, of a bin or cell; 0 without an image
  float range;       // km; 0 without one
  LevelCoding coding;
  bool elevated;      // of one elevation angle, which parameter 3 has in tenths of a degree
  const char* drawn;  // what of it a picture shows; "nothing: " and what it has that is not drawn

  bool isDrawn() const { return !std::string_view(drawn).starts_with("nothing"); }
  static std::span<const ProductInfo> getAll();
  /// Null for a code that the format does not have.
  static const ProductInfo* find(int code);
};

}  // namespace KYV
#endif
