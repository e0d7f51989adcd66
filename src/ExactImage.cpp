#include "ExactImage.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

#include "ExactScales.h"
#include "KYV/ColorMap.h"
#include "KYV/EarthPoint.h"
#include "KYV/Geodesic.h"
#include "KYV/Kyv.h"
#include "KYV/NidsFile.h"
#include "KYV/Plot.h"
#include "KYV/ProductInfo.h"

namespace KYV {

namespace {

using Level = LevelTable::Level;
using State = LevelTable::State;

constexpr int LEVELS = 256;
constexpr int CODED_LEVELS = 16;
constexpr int NONE = -1;
constexpr float METRES = 1000.0f;
constexpr int FIRST_CLASS = 4;         // BI among the flags of coded levels
constexpr std::size_t MOST_BINS = 16;  // of a polygon: painting longer ones costs more than it saves
constexpr float FOLDED_CLASS = 150.0f;
constexpr int CLEAR_AIR[] = {31, 32, 35};
constexpr int LONG_RANGE[] = {186, 187};

template <std::size_t N>
bool isOneOf(int value, const int (&list)[N]) {
  return std::find(std::begin(list), std::end(list), value) != std::end(list);
}

// Decimals of a value in a label.
int decimalsOf(std::string_view unit) {
  constexpr struct {
    std::string_view unit;
    int decimals;
  } ROWS[] = {{"in", 2}, {"in/h", 2}, {"", 3}, {"kt", 0}, {"kft", 0}, {"deg", 0}, {"class", 0}};
  for (const auto& row : ROWS) {
    if (row.unit == unit) return row.decimals;
  }
  return 1;
}

}  // namespace

// The catalogue's row of an image that is to be drawn exactly; null for any other.
static const ProductInfo* findExact(const NidsInfo& header) {
  if (!ExactImage::isMeant(header)) return nullptr;
  const ProductInfo* info = ProductInfo::find(header.code);
  return info && info->coding != LevelCoding::None ? info : nullptr;
}

bool ExactImage::isMeant(const NidsInfo& header) { return Kyv::getResrcBool("exact") && !header.isMultiRadar(); }

std::unique_ptr<ExactImage> ExactImage::make(const NidsFile& product, const NidsInfo& header) {
  const ProductInfo* info = findExact(header);
  return info ? std::make_unique<ExactImage>(product, header, *info) : nullptr;
}

void ExactImage::name(NidsInfo& header) {
  const ProductInfo* info = ProductInfo::find(header.code);
  if (!info) return;
  const bool counted = *info->unit && !StrLib::equal(info->unit, "class");
  // Nor has what has no levels an extreme.
  if (info->coding == LevelCoding::None) {
    if (const int at = StrLib::index(header.misc, 'R'); at > 0) header.misc[at - 1] = '\0';
  }
  StrLib::copy(header.info, (std::string(info->name) + (counted ? std::string(" [") + info->unit + "]" : "")).c_str());
}

void ExactImage::fit(const NidsInfo& header, bool image, DomainVal& val) {
  const ProductInfo* info = isMeant(header) ? ProductInfo::find(header.code) : nullptr;
  if (!info || !(info->range > 0.0f) || val.ny < 1) return;
  // The domain counts cells of the header's size, or of a kilometre where the header has none.
  constexpr float SYMBOLS_RANGE = 230.0f;
  const float cells = static_cast<float>(val.ny) * (header.res > 0.0f ? header.res : 1.0f);
  const bool wide = info->coding == LevelCoding::Dba;
  const float now = image ? cells / 2.0f : SYMBOLS_RANGE;
  // The national grid is as wide as other maps.
  if (wide) val.nx = val.ny * 3 / 2;
  if (wide || (image && info->coding == LevelCoding::None) || val.proj == DomainVal::PIXEL) return;
  val.dx *= info->range / now;
  val.dy *= info->range / now;
}

ExactImage::ExactImage(const NidsFile& product, const NidsInfo& head, const ProductInfo& catalogue)
    : info(catalogue), header(head), table(product, catalogue) {
  site.lat = static_cast<double>(head.lat);
  site.lon = static_cast<double>(head.lon);
  site.antenna = static_cast<double>(head.alt);
  site.elevated = catalogue.elevated;
  site.elevation = static_cast<double>(product.getParam(2)) / 10.0;
}

void ExactImage::chooseScale(ColorMap& colors, const ColorFill* own) {
  entries.assign(LEVELS, NONE);
  if (own) {
    scale = *own;
  } else if (info.coding == LevelCoding::Coded) {
    // A box for each level that the header names.
    scale.init();
    bool both = false;
    for (int n = 0; n < CODED_LEVELS; ++n) both = both || (table.get(n).hasValue() && table.get(n).value < 0.0f);
    for (int n = 1; n < CODED_LEVELS; ++n) {
      const Level level = table.get(n);
      char item[60] = "";
      const auto k = static_cast<std::size_t>(n - 1);
      if (level.state == State::Value) {
        StrLib::printf(item, "%g:%s:la=%s%g", static_cast<double>(level.value),
                       both ? SIGNED_COLORS[k] : CODED_COLORS[k], level.sign, static_cast<double>(level.value));
      } else if (level.state == State::Class) {
        const auto c = static_cast<std::size_t>(level.value) - FIRST_CLASS;
        StrLib::printf(item, "%s:la=%s", CLASS_COLORS[std::min(c, std::size(CLASS_COLORS) - 1)], level.flag);
      }
      if (!*item) continue;
      entries[static_cast<std::size_t>(n)] = scale.getNum();
      scale.decode(colors, item);
    }
  } else {
    const bool clear = isOneOf(header.vcp, CLEAR_AIR) || isOneOf(info.code, LONG_RANGE);
    const auto* row = std::find_if(std::begin(EXACT_SCALES), std::end(EXACT_SCALES), [&](const ExactScale& s) {
      return s.unit == info.unit && (!s.clear || clear) &&
             std::string_view(info.name).find(s.word) != std::string_view::npos;
    });
    if (row != std::end(EXACT_SCALES)) scale.set(colors, row->fill);
  }
  const bool coded = info.coding == LevelCoding::Coded;
  // Classes have a box of their own for what is folded.
  const bool classes = !own && !coded && StrLib::equal(info.unit, "class");
  // Flags have their boxes at the end of the bar, where any level is one.
  const auto addFlag = [&](State state, const char* color, const char* word) {
    bool any = false;
    for (int n = coded ? 1 : 0; n < LEVELS; ++n) any = any || table.get(n).state == state;
    if (!any || own) return NONE;
    char item[60];
    StrLib::printf(item, "%s:la=%s", color, word);
    scale.decode(colors, item);
    return scale.getNum() - 1;
  };
  folded = classes ? scale.getInd(FOLDED_CLASS) : addFlag(State::Folded, FOLDED_COLOR, "RF");
  no_data = addFlag(State::NoData, NO_DATA_COLOR, "ND");
  for (int n = 0; n < LEVELS; ++n) {
    const Level level = table.get(n);
    int& entry = entries[static_cast<std::size_t>(n)];
    if (level.state == State::Folded) entry = folded;
    // Level 0 of coded products is where the radar heard nothing, whatever its word.
    if (level.state == State::NoData) entry = coded && n == 0 ? NONE : no_data;
    if (level.hasValue() && (!coded || own)) entry = scale.getInd(level.value);
    if (entry >= 0 && !scale.get(entry).validColor()) entry = NONE;
    if (entry < 0) entry = NONE;
  }
}

int ExactImage::entryOf(int level) {
  if (level < LEVELS) return level < 0 ? NONE : entries[static_cast<std::size_t>(level)];
  const Level l = table.get(level);
  if (!l.hasValue()) return l.state == State::NoData ? no_data : NONE;
  const int entry = scale.getInd(l.value);
  return entry >= 0 && scale.get(entry).validColor() ? entry : NONE;
}

// Bins are a kilometre or a quarter of one where the code alone does not tell: their number does.
double ExactImage::cellOf(const NidsRaw& raw) const {
  constexpr int POWER_REMOVED = 113;
  if (raw.bin > 0.0f) return static_cast<double>(raw.bin);
  const bool fine = info.code == POWER_REMOVED && static_cast<float>(raw.width) * info.cell > 2.0f * info.range;
  return static_cast<double>(fine ? info.cell / 4.0f : info.cell) * METRES;
}

void ExactImage::setExtremes(const NidsRaw& raw) {
  std::vector<char> there(LEVELS, 0);
  for (const int level : raw.levels) {
    if (level >= static_cast<int>(there.size())) there.resize(static_cast<std::size_t>(level) + 1, 0);
    if (level >= 0) there[static_cast<std::size_t>(level)] = 1;
  }
  for (std::size_t n = 0; n < there.size(); ++n) {
    const Level l = table.get(static_cast<int>(n));
    if (!there[n] || (l.state != State::Value && l.state != State::Topped)) continue;
    if (Const::isMissing(least) || l.value < least) least = l.value;
    if (Const::isMissing(most) || l.value > most) most = l.value;
  }
}

void ExactImage::paint(NidsRaw raw_image, Plot& surface, const Suppressed& suppressed) {
  image = std::move(raw_image);
  const NidsRaw& raw = image;
  const double cell = cellOf(raw);
  if (!(cell > 0.0) || raw.rows < 1) return;
  setExtremes(raw);
  if (!raw.grid) return paintRays(raw, surface, suppressed);
  if (info.coding == LevelCoding::Dba) {
    return paintRows(raw, NationalPlaces(site, raw.width, surface.getDomain()), cell, surface, suppressed);
  }
  paintRows(raw, GridPlaces(site, cell, raw.width, raw.width, surface.getDomain()), cell, surface, suppressed);
}

// Draws what the present line has between its corners on either side: neighbours of one colour as one polygon, whose
// edges go through all their corners.
void ExactImage::paintRuns(std::span<const Point> near, std::span<const Point> far, Plot& surface) {
  for (std::size_t k = 0; k < line.size();) {
    const int entry = line[k];
    std::size_t end = k + 1;
    while (end < line.size() && line[end] == entry && end - k < MOST_BINS) ++end;
    if (entry >= 0) {
      bool seen = true;
      polygon.clear();
      const auto add = [&](const Point& p) {
        seen = seen && !p.isMissing();
        polygon.add(p);
      };
      for (std::size_t i = k; i <= end; ++i) add(near[i]);
      for (std::size_t i = end + 1; i-- > k;) add(far[i]);
      add(near[k]);
      if (seen) {
        surface.setFill(scale.get(entry));
        surface.drawFill(polygon);
      }
    }
    k = end;
  }
}

void ExactImage::paintRays(const NidsRaw& raw, Plot& surface, const Suppressed& suppressed) {
  constexpr float MEETS = 0.06f;  // degrees: angles are sent in tenths
  const double cell = cellOf(raw);
  RadialPlaces places(site, raw.first * cell, cell, raw.width, surface.getDomain());
  const auto n = static_cast<std::size_t>(raw.width) + 1;
  // Corners on either side of a radial, of the bins from the first to the last that is drawn.
  std::vector<Point> near(n), far(n);
  float far_angle = Const::MISS;  // of the corners in `far`, and which these are
  std::size_t far_from = 0, far_to = 0;
  for (int r = 0; r < raw.rows; ++r) {
    const NidsRaw::Ray& ray = raw.rays[static_cast<std::size_t>(r)];
    line.assign(static_cast<std::size_t>(raw.width), NONE);
    std::size_t from = line.size(), to = 0;
    for (std::size_t k = 0; k < line.size(); ++k) {
      const int level = raw.get(r, static_cast<int>(k));
      int entry = entryOf(level);
      if (entry < 0) continue;
      const auto km = static_cast<float>((raw.first + static_cast<double>(k)) * cell / static_cast<double>(METRES));
      if (suppressed && suppressed(table.get(level).value, km)) continue;
      line[k] = entry;
      from = std::min(from, k);
      to = k + 1;
    }
    if (to == 0) continue;
    float end = ray.start + ray.width;
    if (r + 1 < raw.rows) {
      const float next = raw.rays[static_cast<std::size_t>(r) + 1].start;
      const float gap = std::remainder(next - end, 360.0f);
      if (std::abs(gap) < MEETS) end += gap;
    }
    const auto corners = [from, to](std::vector<Point>& side) { return std::span(side).subspan(from, to - from + 1); };
    const bool met = !Const::isMissing(far_angle) && std::remainder(far_angle - ray.start, 360.0f) == 0.0f;
    std::swap(near, far);
    if (!met || far_from > from || far_to < to) places.along(static_cast<double>(ray.start), from, corners(near));
    places.along(static_cast<double>(end), from, corners(far));
    far_angle = end;
    far_from = from;
    far_to = to;
    line.resize(to);
    paintRuns(near, far, surface);
  }
}

void ExactImage::paintRows(const NidsRaw& raw, const RowPlaces& places, double cell, Plot& surface,
                           const Suppressed& suppressed) {
  const auto n = static_cast<std::size_t>(raw.width) + 1;
  std::vector<Point> upper(n), lower(n);
  places.row(0, lower);
  for (int r = 0; r < raw.rows; ++r) {
    std::swap(upper, lower);
    places.row(r + 1, lower);
    line.clear();
    for (int k = 0; k < raw.width; ++k) {
      const int level = raw.get(r, k);
      int entry = entryOf(level);
      if (entry < 0 || !suppressed) {
        line.push_back(entry);
        continue;
      }
      const double x = k + 0.5 - 0.5 * raw.width, y = r + 0.5 - 0.5 * raw.width;
      const auto km = static_cast<float>(std::hypot(x, y) * cell / static_cast<double>(METRES));
      if (suppressed(table.get(level).value, km)) entry = NONE;
      line.push_back(entry);
    }
    paintRuns(upper, lower, surface);
  }
}

void ExactImage::label(NidsInfo& to) const {
  const std::string unit = info.unit;
  // The words that the format has for range and extremes take the place of those of the header.
  std::string text;
  const std::string before = to.misc;
  std::size_t at = 0;
  while (at < before.size()) {
    const std::size_t end = std::min(before.find(' ', at + 1), before.size());
    const std::string word = before.substr(at, end - at);
    const bool range = word.starts_with(" Rng="), extreme = word.starts_with(" Mx=") || word.starts_with(" Mn,Mx=");
    const bool angle = word.starts_with(" El=");
    if (!range && !extreme && !angle) text += word;
    at = end;
  }
  char part[60];
  StrLib::printf(part, " Rng=%.0f(%g)", static_cast<double>(info.range), static_cast<double>(info.cell));
  text += part;
  if (info.elevated) {
    StrLib::printf(part, " El=%.1f", site.elevation);
    text += part;
  }
  const int decimals = decimalsOf(unit);
  if (!Const::isMissing(most) && unit != "class") {
    if (least < 0.0f && unit != "dBZ") {
      StrLib::printf(part, " Mn,Mx=%.*f,%.*f", decimals, static_cast<double>(least), decimals,
                     static_cast<double>(most));
    } else {
      StrLib::printf(part, " Mx=%.*f", decimals, static_cast<double>(most));
    }
    text += part;
  }
  StrLib::copy(to.misc, text.c_str());
}

std::string ExactImage::describe(const EarthPoint& place) const {
  constexpr const char* WORDS[] = {"", "below threshold", "no data", "range folded", "",
                                   "", "no such level"};  // by State
  const Geodesic::Way way =
      Geodesic::between({site.lat, site.lon}, {static_cast<double>(place.lat), static_cast<double>(place.lon)});
  const Beam beam(site.elevation, site.antenna);
  const double slant = site.elevated ? beam.slantRange(way.metres) : way.metres;
  const double cell = cellOf(image);
  int level = NidsRaw::NONE;
  if (image.grid && info.coding != LevelCoding::Dba) {
    const double x = way.metres * std::sin(way.azimuth * Const::DRC),
                 y = way.metres * std::cos(way.azimuth * Const::DRC);
    const int column = static_cast<int>(std::floor(x / cell + 0.5 * image.width));
    const int row = static_cast<int>(std::floor(0.5 * image.width - y / cell));
    if (column >= 0 && column < image.width && row >= 0 && row < image.rows) level = image.get(row, column);
  } else if (!image.grid) {
    const double bin = slant / cell - image.first;
    for (std::size_t r = 0; r < image.rays.size(); ++r) {
      const double from = std::fmod(way.azimuth - static_cast<double>(image.rays[r].start) + 720.0, 360.0);
      if (from < static_cast<double>(image.rays[r].width) && bin >= 0.0 && bin < image.width) {
        level = image.get(static_cast<int>(r), static_cast<int>(bin));
      }
    }
  }
  const Level l = table.get(level);
  char text[200];
  std::string what = level < 0 ? "no data" : l.hasValue() ? "" : WORDS[static_cast<int>(l.state)];
  if (level >= 0 && l.hasValue()) {
    StrLib::printf(text, "%s%.*f %s%s", l.sign, decimalsOf(info.unit), static_cast<double>(l.value), info.unit,
                   l.state == State::Topped ? " or more" : "");
    what = text;
  }
  StrLib::printf(text, "%s, azimuth %.1f, range %.1f km", what.c_str(), way.azimuth, way.metres / 1000.0);
  what = text;
  if (site.elevated) {
    StrLib::printf(text, ", beam height %.2f km", beam.height(slant) / 1000.0);
    what += text;
  }
  return what;
}

}  // namespace KYV
