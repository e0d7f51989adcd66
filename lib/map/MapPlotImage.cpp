// Pictures of a map list: on the map, on the page, or where their own map lies.
#include <algorithm>
#include <cmath>

#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "KYV/MapPlot.h"
#include "KYV/Plot.h"
#include "MapEntry.h"
#include "MapView.h"

namespace KYV {

namespace {

// Pixels that are projected one by one; of larger maps each stands for a block.
constexpr double MAX_PROJECTED = 4e6;
// Stands for transparent; pictures hardly have it.
constexpr std::uint32_t TRANSPARENT = 0x01FE02;

// The picture as the plot's map shows it: each pixel from the place that it has on the picture's own map.
bool warpImage(const Image& from, Plot& plot, Image& to) {
  const GTran& page = plot.getGraph().getTransform();
  const Rect window = plot.getGraph().getWindow();
  const Domain& domain = plot.getDomain();
  const float wide = std::fabs(page.tranWindowPlotX(window.xmax) - page.tranWindowPlotX(window.xmin)) + 1.0f;
  const float high = std::fabs(page.tranWindowPlotY(window.ymax) - page.tranWindowPlotY(window.ymin)) + 1.0f;
  if (!(wide <= Image::MAX_SIZE && high <= Image::MAX_SIZE)) return false;
  const int width = static_cast<int>(wide), height = static_cast<int>(high);
  if (!to.set(width, height, 24)) return false;
  to.setByteOrder(1);
  to.setColorType(Image::DIRECT);
  // On paper what the picture does not show is white.
  const std::uint32_t nothing = plot.getGraph().isFileDevice() ? 0xFFFFFF : TRANSPARENT;
  to.setTransColor(TRANSPARENT);
  if (!to.allocData() || (from.validAlpha() && !to.allocAlpha())) return false;

  const int block =
      std::max(1, static_cast<int>(std::ceil(std::sqrt(static_cast<double>(width) * height / MAX_PROJECTED))));
  for (int top = 0; top < height; top += block) {
    for (int left = 0; left < width; left += block) {
      const float px = (static_cast<float>(left) + 0.5f * static_cast<float>(block)) / static_cast<float>(width);
      const float py = (static_cast<float>(top) + 0.5f * static_cast<float>(block)) / static_cast<float>(height);
      const Point p(window.xmin + px * window.width(), window.ymax - py * window.height());
      EarthPoint e;
      GridPoint g;
      std::uint32_t value = nothing;
      int seen = 255;
      if (domain.tran(p, e) && !e.isMissing() && from.tran(e, g) && !g.isMissing()) {
        const float gx = std::floor(g.x), gy = std::floor(g.y);
        const bool inside = gx >= 0.0f && gx < static_cast<float>(from.getWidth()) && gy >= 0.0f &&
                            gy < static_cast<float>(from.getHeight());
        const int x = inside ? static_cast<int>(gx) : -1, y = inside ? static_cast<int>(gy) : -1;
        if (inside && !from.isPixelTrans(x, y)) {
          value = from.getPixel(x, y);
          seen = from.getAlpha(x, y);
        }
      }
      for (int y = top; y < std::min(top + block, height); ++y) {
        for (int x = left; x < std::min(left + block, width); ++x) {
          to.setPixel(x, y, value);
          to.setAlpha(x, y, seen);
        }
      }
    }
  }
  return true;
}

}  // namespace

// "name": where its own map lies, or at the upper left corner when it has none. "name:position[:dx:dy]": as logos are.
int MapPlot::drawMapImage(Plot& plot, const char* entry) {
  String name, rest;
  splitEntry(entry, name, rest);
  Kyv::outMessage(8, "Map-image: %s\n", name.get());
  int drawn = 0;
  if (rest.valid()) {
    drawn = plot.placeImage(entry, false);
  } else {
    Image image, warped;
    if (Plot::readImage(name.get(), image)) {
      const bool map = isMapProjection(plot.getProj()) && image.getDomain().isSet();
      Graph& graph = plot.getGraph();
      const Rect window = graph.getWindow();
      drawn = graph.placeImage(map && warpImage(image, plot, warped) ? warped : image, window.xmin, window.ymax, 1, 3);
    }
  }
  if (!drawn) Kyv::report(Kyv::MISC, "Map image not found: %s\n", name.get());
  return drawn;
}

int MapPlot::drawPageImage(Plot& plot, const char* entry) {
  String name, rest;
  splitEntry(entry, name, rest);
  Kyv::outMessage(8, "Map-image: %s\n", name.get());
  if (plot.placeImage(entry, true)) return 1;
  Kyv::report(Kyv::MISC, "Map image not found: %s\n", name.get());
  return 0;
}

}  // namespace KYV
