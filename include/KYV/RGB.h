#ifndef KYV_RGB_H
#define KYV_RGB_H

namespace KYV {

/// A colour, each part 0 to 1; -1 in every part is "off".
struct RGB {
  float red = 0.0f;
  float green = 0.0f;
  float blue = 0.0f;

  constexpr RGB() = default;
  constexpr RGB(float r, float g, float b) : red(r), green(g), blue(b) {}
  constexpr void set(float r, float g, float b) { red = r, green = g, blue = b; }
  constexpr bool isWhite() const { return red >= 1.0f && green >= 1.0f && blue >= 1.0f; }
  constexpr bool isBlack() const { return red == 0.0f && green == 0.0f && blue == 0.0f; }
  constexpr bool isOff() const { return red < 0.0f || green < 0.0f || blue < 0.0f; }
};

}  // namespace KYV
#endif
