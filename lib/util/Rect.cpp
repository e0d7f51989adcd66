#include "KYV/Rect.h"

#include <cstdio>

namespace KYV {

int Rect::print() const {
  std::printf("(%f,%f)-(%f,%f)\n", xmin, ymin, xmax, ymax);
  return 1;
}

}  // namespace KYV
