#ifndef KYV_COLOR_H
#define KYV_COLOR_H

namespace KYV {

/// One named colour of a colour table.
struct Color {
  char name[20] = "";
  float red = 0.0f;  // 0 to 1
  float green = 0.0f;
  float blue = 0.0f;
  int value = -1;  // the device's value, -1 until it has one
};

}  // namespace KYV
#endif
