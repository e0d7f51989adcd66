#include "KYV/Unit.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "KYV/Const.h"
#include "KYV/StrLib.h"

namespace KYV {

namespace {

enum class Quantity { Length, Speed, Angle, Fraction, Reflectivity };

// The unit in metres, metres a second, or the quantity's only unit.
struct Row {
  const char* name;
  Quantity quantity;
  double factor;
};

constexpr double FOOT = 0.3048;           // international foot (1959), exact
constexpr double INCH = FOOT / 12.0;      // 25.4 mm
constexpr double MILE = 5280.0 * FOOT;    // statute mile
constexpr double NAUTICAL_MILE = 1852.0;  // international nautical mile (1929), exact
constexpr double HOUR = 3600.0;
constexpr double WATER = 0.001;  // m^3 of a kilogram: water of 1000 kg/m^3

// clang-format off
constexpr Row ROWS[] = {
    {"in",      Quantity::Length,       INCH},
    {"inch",    Quantity::Length,       INCH},
    {"mm",      Quantity::Length,       0.001},
    {"cm",      Quantity::Length,       0.01},
    {"m",       Quantity::Length,       1.0},
    {"km",      Quantity::Length,       1000.0},
    {"ft",      Quantity::Length,       FOOT},
    {"100ft",   Quantity::Length,       100.0 * FOOT},
    {"kft",     Quantity::Length,       1000.0 * FOOT},
    {"mi",      Quantity::Length,       MILE},
    {"nmi",     Quantity::Length,       NAUTICAL_MILE},
    {"kg/m^2",  Quantity::Length,       WATER},
    {"kg/m2",   Quantity::Length,       WATER},
    {"knt",     Quantity::Speed,        NAUTICAL_MILE / HOUR},
    {"kt",      Quantity::Speed,        NAUTICAL_MILE / HOUR},
    {"kts",     Quantity::Speed,        NAUTICAL_MILE / HOUR},
    {"knots",   Quantity::Speed,        NAUTICAL_MILE / HOUR},
    {"mph",     Quantity::Speed,        MILE / HOUR},
    {"m/s",     Quantity::Speed,        1.0},
    {"km/h",    Quantity::Speed,        1000.0 / HOUR},
    {"kph",     Quantity::Speed,        1000.0 / HOUR},
    {"deg",     Quantity::Angle,        1.0},
    {"degrees", Quantity::Angle,        1.0},
    {"%",       Quantity::Fraction,     1.0},
    {"percent", Quantity::Fraction,     1.0},
    {"dBZ",     Quantity::Reflectivity, 1.0},
};
// clang-format on

const Row* find(const char* name) {
  const Row* row =
      std::find_if(std::begin(ROWS), std::end(ROWS), [name](const Row& r) { return StrLib::iequal(r.name, name); });
  return row == std::end(ROWS) ? nullptr : row;
}

}  // namespace

int Unit::convert(const char* from, const char* to, float value, float& result) const {
  result = value;
  if (!StrLib::valid(from) || !StrLib::valid(to) || StrLib::iequal(from, to)) return 1;
  const Row* source = find(from);
  const Row* target = find(to);
  if (!source || !target || source->quantity != target->quantity) return 0;
  if (Const::isMissing(value)) return 1;
  const double converted = static_cast<double>(value) * source->factor / target->factor;
  if (!(std::fabs(converted) <= static_cast<double>(std::numeric_limits<float>::max()))) return 0;
  result = static_cast<float>(converted);
  return 1;
}

}  // namespace KYV
