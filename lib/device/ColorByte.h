#ifndef KYV_COLORBYTE_H
#define KYV_COLORBYTE_H

namespace KYV {

/// A part of a colour as a byte. Parts beyond 0 to 1, and what is no number, become the nearer end.
constexpr unsigned char colorByte(double part) {
  return static_cast<unsigned char>(part > 0.0 ? (part < 1.0 ? part * 255.0 : 255.0) : 0.0);
}

/// How light a colour is, 0 to 1 like its parts.
constexpr double greyOf(double r, double g, double b) { return (0.9 * r + g + 0.8 * b) / 2.7; }

/// 0xRRGGBB.
constexpr int packColor(double r, double g, double b) { return colorByte(r) << 16 | colorByte(g) << 8 | colorByte(b); }

}  // namespace KYV
#endif
