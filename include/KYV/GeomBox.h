#ifndef KYV_GEOMBOX_H
#define KYV_GEOMBOX_H

#include "KYV/Const.h"

namespace KYV {

/// A rectangle by its corner and size, as geometry and panel texts give it; missing where the text gave nothing.
struct GeomBox {
  float x = Const::MISS;
  float y = Const::MISS;
  float width = Const::MISS;
  float height = Const::MISS;
};

}  // namespace KYV
#endif
