#include <cstdio>

#include "KYV/NidsRadial.h"
#include "KYV/NidsRun.h"
#include "KYV/NidsText.h"
#include "KYV/NidsVector.h"
#include "KYV/NidsWind.h"

namespace KYV {

int NidsRadial::print() const {
  std::printf("Angle: %.1f %.1f\n", ang0, ang1);
  return 1;
}

int NidsRun::print() const {
  std::printf("Run: %d %d %f\n", run, ival, val);
  return 1;
}

int NidsText::print() const {
  std::printf("Text: %f %f %f %s\n", val, x, y, data);
  return 1;
}

int NidsVector::print() const {
  std::printf("Vector: %f %f %f %f %f\n", val, x1, y1, x2, y2);
  return 1;
}

int NidsWind::print() const {
  std::printf("Wind: %f %f %f %f %f\n", val, x, y, dir, spd);
  return 1;
}

}  // namespace KYV
