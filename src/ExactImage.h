#ifndef KYV_SRC_EXACTIMAGE_H
#define KYV_SRC_EXACTIMAGE_H

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "KYV/ColorFill.h"
#include "KYV/DomainVal.h"
#include "KYV/LevelTable.h"
#include "KYV/NidsInfo.h"
#include "KYV/NidsRaw.h"
#include "KYV/Places.h"
#include "KYV/Point.h"
#include "KYV/Points.h"

namespace KYV {

class NidsFile;
class Plot;
struct EarthPoint;
struct ProductInfo;

/// A product's image as the radar measured it: every level by the published format, every cell where its beam was. It
/// takes the place of the stated drawing where `exact` is set.
class ExactImage {
 public:
  /// Whether a value so many kilometres from the radar is left out.
  using Suppressed = std::function<bool(float value, float km)>;

  /// Whether `exact` is set, and the product is one of a radar.
  static bool isMeant(const NidsInfo& header);
  /// Null where it is not, or the catalogue has no such image.
  static std::unique_ptr<ExactImage> make(const NidsFile& product, const NidsInfo& header);

  /// The name that the catalogue has for a product, with its unit, in place of the stated one.
  static void name(NidsInfo& header);
  /// Makes a product's default domain as large as its range.
  /// @param image  whether the domain counts its cells; that of symbols, tracks and generic packets reaches 230 km so
  /// far
  static void fit(const NidsInfo& header, bool image, DomainVal& val);

  ExactImage(const NidsFile& product, const NidsInfo& header, const ProductInfo& catalogue);
  /// @param own  a scale of the user's, taken as it is; null: the product's
  void chooseScale(ColorMap& colors, const ColorFill* own);
  const ColorFill& getScale() const { return scale; }
  /// @param raw  kept for describe()
  void paint(NidsRaw raw, Plot& surface, const Suppressed& suppressed);
  /// What the image painted last has at a place: value with unit or the state in words, azimuth, range, beam height.
  std::string describe(const EarthPoint& place) const;
  /// Puts range and extremes as the format has them into the label.
  void label(NidsInfo& header) const;

 private:
  int entryOf(int level);
  void setExtremes(const NidsRaw& raw);
  void paintRays(const NidsRaw& raw, Plot& surface, const Suppressed& suppressed);
  void paintRows(const NidsRaw& raw, const RowPlaces& places, double cell, Plot& surface, const Suppressed& suppressed);
  void paintRuns(std::span<const Point> near, std::span<const Point> far, Plot& surface);
  double cellOf(const NidsRaw& raw) const;

  const ProductInfo& info;
  NidsInfo header;
  LevelTable table;
  RadarSite site;
  ColorFill scale;
  std::vector<int> entries;  // of the scale, for each level of a byte; of the present radial or row
  std::vector<int> line;
  int folded = -1, no_data = -1;  // entries of the flags
  float least = Const::MISS, most = Const::MISS;
  Points polygon;  // reused
  NidsRaw image;   // the last that was painted
};

}  // namespace KYV
#endif
