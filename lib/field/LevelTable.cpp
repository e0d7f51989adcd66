#include "KYV/LevelTable.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "KYV/NidsFile.h"
#include "KYV/ProductInfo.h"

namespace KYV {

namespace {

using Level = LevelTable::Level;
using State = LevelTable::State;

constexpr int LEVELS = 256;
constexpr int CODED_LEVELS = 16;
constexpr float MM_PER_INCH = 25.4f;

// The sixteen halfwords as unsigned numbers, and their floats.
class Halfwords {
 public:
  explicit Halfwords(const NidsFile& from) : product(from) {}
  int get(int i) const { return product.getThreshold(i); }
  unsigned bits(int i) const { return static_cast<unsigned>(product.getThreshold(i)) & 0xFFFFu; }
  float float32(int i) const { return std::bit_cast<float>(static_cast<std::uint32_t>(bits(i) << 16 | bits(i + 1))); }
  // The format's own: sign, 5 bits of exponent with an excess of 16, 10 of mantissa.
  float float16(int i) const {
    const unsigned b = bits(i), exponent = b >> 10 & 31u;
    const float mantissa = static_cast<float>(b & 1023u) / 1024.0f;
    const float magnitude =
        exponent ? std::ldexp(1.0f + mantissa, static_cast<int>(exponent) - 16) : std::ldexp(mantissa, -15);
    return b >> 15 ? -magnitude : magnitude;
  }

 private:
  const NidsFile& product;
};

Level flagged(State state, const char* word) { return {state, 0.0f, word, ""}; }
Level valued(float v, State state = State::Value) {
  return std::isfinite(v) ? Level{state, v, "", ""} : flagged(State::NoData, "ND");
}

// By the low byte of a coded level that is a flag.
struct Flag {
  State state;
  const char* word;
};
constexpr Flag FLAGS[] = {
    {State::Below, ""},   {State::Below, "TH"}, {State::NoData, "ND"}, {State::Folded, "RF"}, {State::Class, "BI"},
    {State::Class, "GC"}, {State::Class, "IC"}, {State::Class, "GR"},  {State::Class, "WS"},  {State::Class, "DS"},
    {State::Class, "RA"}, {State::Class, "HR"}, {State::Class, "BD"},  {State::Class, "HA"},  {State::Class, "UK"},
    {State::Class, "LH"}, {State::Class, "GH"},
};

Level codedLevel(unsigned halfword) {
  const unsigned low = halfword & 255u;
  if (halfword & 0x8000u) {
    if (low >= std::size(FLAGS)) return {};
    Level level = flagged(FLAGS[low].state, FLAGS[low].word);
    level.value = static_cast<float>(low);
    return level;
  }
  float v = static_cast<float>(low);
  if (halfword & 0x4000u) v /= 100.0f;
  if (halfword & 0x2000u) v /= 20.0f;
  if (halfword & 0x1000u) v /= 10.0f;
  if (halfword & 0x0100u) v = -v;
  Level level = valued(v);
  if (halfword & 0x0800u) level.sign = ">";
  if (halfword & 0x0400u) level.sign = "<";
  return level;
}

}  // namespace

LevelTable::LevelTable(const NidsFile& product, const ProductInfo& info) : levels(LEVELS) {
  const Halfwords h(product);
  const auto set = [this](int from, auto value) {
    for (int n = from; n < LEVELS; ++n) levels[static_cast<std::size_t>(n)] = value(n);
  };
  const auto linear = [&](float by) {
    return [min = static_cast<float>(h.get(0)) / by, step = static_cast<float>(h.get(1)) / by](float n) {
      return min + n * step;
    };
  };
  levels[0] = flagged(State::Below, "TH");
  switch (info.coding) {
    case LevelCoding::None:
      break;
    case LevelCoding::Coded:
      for (int n = 0; n < CODED_LEVELS; ++n) levels[static_cast<std::size_t>(n)] = codedLevel(h.bits(n));
      break;
    case LevelCoding::Tenths: {
      const auto at = linear(10.0f);
      levels[1] = flagged(State::Folded, "RF");
      // The width of the spectrum counts from no width at its middle.
      constexpr int WIDTH_ZERO = 129;
      const bool width = info.code == 155 || info.code == 184;
      set(2, [&](int n) {
        return valued(width ? static_cast<float>(n - WIDTH_ZERO) * static_cast<float>(h.get(1)) / 10.0f
                            : at(static_cast<float>(n - 2)));
      });
      break;
    }
    case LevelCoding::Hundredths: {
      const auto at = linear(100.0f);
      set(1, [&](int n) { return valued(at(static_cast<float>(n))); });
      break;
    }
    case LevelCoding::Dba:
      set(1, [&](int n) {
        const float dba = static_cast<float>(h.get(0)) / 10.0f + static_cast<float>(n * h.get(1)) / 1000.0f;
        return valued(std::pow(10.0f, dba / 10.0f) / MM_PER_INCH);
      });
      levels[255] = {};  // beyond the radar's reach
      break;
    case LevelCoding::Vil: {
      levels[1] = flagged(State::NoData, "ND");
      const float linear_scale = h.float16(0), linear_offset = h.float16(1), log_scale = h.float16(3),
                  log_offset = h.float16(4);
      set(2, [&](int n) {
        const float x = static_cast<float>(n);
        return valued(n < h.get(2) ? (x - linear_offset) / linear_scale : std::exp((x - log_offset) / log_scale));
      });
      levels[255] = flagged(State::NoData, "ND");
      break;
    }
    case LevelCoding::Tops:
      levels[1] = flagged(State::NoData, "ND");
      set(2, [&](int n) {
        const float v = static_cast<float>((n & h.get(0)) - h.get(2)) / static_cast<float>(h.get(1));
        return valued(v, n & h.get(3) ? State::Topped : State::Value);
      });
      break;
    case LevelCoding::Floats:
    case LevelCoding::Hundreds: {
      scale = h.float32(0);
      offset = h.float32(2);
      // A scale of nothing: the levels are the numbers of classes.
      const bool classes = scale == 0.0f || StrLib::equal(info.unit, "class");
      if (scale == 0.0f) scale = 1.0f;
      if (info.coding == LevelCoding::Hundreds) scale *= 100.0f;
      const int most = h.bits(5) ? static_cast<int>(h.bits(5)) : LEVELS - 1;
      // Where the header leaves it open, bytes have two flags; of the rates of rain, which are longer, only nothing is
      // one.
      const int leading = h.bits(6) ? static_cast<int>(h.bits(6)) : most < LEVELS ? 2 : 1;
      greatest = most - static_cast<int>(h.bits(7));
      longer = most >= LEVELS;
      for (int n = 1; n < std::min(leading, LEVELS); ++n) {
        levels[static_cast<std::size_t>(n)] = flagged(State::Folded, "RF");
      }
      set(leading, [&](int n) {
        if (n > greatest) return flagged(State::NoData, "ND");
        return valued((static_cast<float>(n) - offset) / scale, classes ? State::Class : State::Value);
      });
      break;
    }
  }
}

Level LevelTable::get(int n) const {
  if (n < 0) return {};
  if (n < LEVELS) return levels[static_cast<std::size_t>(n)];
  if (!longer) return {};
  return n > greatest ? flagged(State::NoData, "ND") : valued((static_cast<float>(n) - offset) / scale);
}

}  // namespace KYV
