#include <algorithm>
#include <array>
#include <optional>

#include "ColorByte.h"
#include "KYV/Image.h"

namespace KYV {

namespace {

// A colour as it is told apart: 0xRRGGBB, and whether it is transparent.
using Key = std::uint32_t;
constexpr Key CLEAR = 0x1000000;

// Bits of a channel that count when there are too many colours: the error stays below that of the colours left.
constexpr int BITS = 6;
constexpr std::size_t CELLS = std::size_t{1} << (3 * BITS);

constexpr unsigned part(Key key, int channel) { return key >> (16 - 8 * channel) & 0xFF; }

constexpr std::size_t cellOf(Key key) {
  std::size_t cell = 0;
  for (int c = 0; c < 3; ++c) cell = cell << BITS | part(key, c) >> (8 - BITS);
  return cell;
}

// The first colours that are met, each with its number.
class Palette {
 public:
  explicit Palette(int limit) : most(static_cast<std::size_t>(limit)) { slots.fill(NONE); }

  // The number of a colour; nothing when it is one too many.
  std::optional<unsigned char> find(Key key) {
    for (std::size_t at = key * 0x9E3779B1u >> (32 - SLOT_BITS);; at = (at + 1) % slots.size()) {
      if (slots[at] == NONE) {
        if (keys.size() == most) return std::nullopt;
        slots[at] = static_cast<std::int16_t>(keys.size());
        keys.push_back(key);
      }
      if (keys[static_cast<std::size_t>(slots[at])] == key) return static_cast<unsigned char>(slots[at]);
    }
  }

  const std::vector<Key>& getKeys() const { return keys; }

 private:
  static constexpr int SLOT_BITS = 10;  // four times what it holds, so that searches are short
  static constexpr std::int16_t NONE = -1;

  std::size_t most;
  std::vector<Key> keys;
  std::array<std::int16_t, std::size_t{1} << SLOT_BITS> slots;
};

// The colours of one cell, taken for one.
struct Shade {
  std::size_t cell;
  std::uint64_t num;
  std::array<int, 3> mean;
};

// Some of the shades, and the channel in which they differ most.
struct Box {
  std::size_t begin;
  std::size_t end;
  std::uint64_t num = 0;
  std::size_t channel = 0;
  int range = 0;

  Box(const std::vector<Shade>& shades, std::size_t from, std::size_t to) : begin(from), end(to) {
    for (std::size_t c = 0; c < 3; ++c) {
      int least = 255, most = 0;
      for (std::size_t i = begin; i < end; ++i) {
        least = std::min(least, shades[i].mean[c]);
        most = std::max(most, shades[i].mean[c]);
      }
      if (most - least <= range) continue;
      range = most - least;
      channel = c;
    }
    for (std::size_t i = begin; i < end; ++i) num += shades[i].num;
  }

  // What a cut would gain: many pixels that differ widely.
  double worth() const { return end - begin < 2 ? 0.0 : static_cast<double>(num) * range * range; }
};

// Cuts the shades into at most that many boxes, each time at the middle of the pixels of one.
std::vector<Box> cutBoxes(std::vector<Shade>& shades, std::size_t most) {
  std::vector<Box> boxes{Box(shades, 0, shades.size())};
  while (boxes.size() < most) {
    const auto best = std::ranges::max_element(boxes, {}, &Box::worth);
    if (best->worth() <= 0.0) break;
    const Box box = *best;
    const auto first = shades.begin();
    std::sort(first + static_cast<std::ptrdiff_t>(box.begin), first + static_cast<std::ptrdiff_t>(box.end),
              [&box](const Shade& a, const Shade& b) { return a.mean[box.channel] < b.mean[box.channel]; });
    std::size_t middle = box.begin;
    std::uint64_t before = 0;
    do {
      before += shades[middle++].num;
    } while (middle < box.end - 1 && before < box.num / 2);
    *best = Box(shades, box.begin, middle);
    boxes.emplace_back(shades, middle, box.end);
  }
  return boxes;
}

// Counts colours by cells.
class Histogram {
 public:
  Histogram() : cells(CELLS) {}

  void add(Key key) {
    Cell& cell = cells[cellOf(key)];
    ++cell.num;
    for (int c = 0; c < 3; ++c) cell.sum[static_cast<std::size_t>(c)] += part(key, c);
  }

  std::vector<Shade> getShades() const {
    std::vector<Shade> shades;
    for (std::size_t i = 0; i < CELLS; ++i) {
      const Cell& cell = cells[i];
      if (cell.num == 0) continue;
      shades.push_back({i, cell.num, {}});
      for (std::size_t c = 0; c < 3; ++c) {
        shades.back().mean[c] = static_cast<int>((cell.sum[c] + cell.num / 2) / cell.num);
      }
    }
    return shades;
  }

 private:
  struct Cell {
    std::uint64_t num = 0;
    std::array<std::uint64_t, 3> sum{};
  };
  std::vector<Cell> cells;
};

// The mean colour of a box.
Key meanOf(const std::vector<Shade>& shades, const Box& box) {
  Key key = 0;
  for (std::size_t c = 0; c < 3; ++c) {
    std::uint64_t sum = box.num / 2;
    for (std::size_t i = box.begin; i < box.end; ++i)
      sum += shades[i].num * static_cast<std::uint64_t>(shades[i].mean[c]);
    key = key << 8 | static_cast<Key>(sum / box.num);
  }
  return key;
}

// The colours of a picture, at most that many, and for every pixel the number of its own.
// @param visit  hands every pixel, with the colour that it has, to a function until that gives false; whether none did
template <class Visit>
std::vector<Key> chooseColors(const Visit& visit, int most) {
  Palette palette(most);
  const bool exact = visit([&palette](Key key, unsigned char& pixel) {
    const std::optional<unsigned char> index = palette.find(key);
    pixel = index.value_or(0);
    return index.has_value();
  });
  if (exact) return palette.getKeys();

  Histogram histogram;
  Key clear = 0;
  visit([&](Key key, unsigned char&) {
    if (key & CLEAR) {
      clear = key;
    } else {
      histogram.add(key);
    }
    return true;
  });
  std::vector<Shade> shades = histogram.getShades();
  std::vector<Key> keys;
  std::vector<unsigned char> indices(CELLS);
  for (const Box& box : cutBoxes(shades, static_cast<std::size_t>(most) - (clear ? 1 : 0))) {
    for (std::size_t i = box.begin; i < box.end; ++i) {
      indices[shades[i].cell] = static_cast<unsigned char>(keys.size());
    }
    keys.push_back(meanOf(shades, box));
  }
  const unsigned char last = static_cast<unsigned char>(keys.size());
  if (clear) keys.push_back(clear);
  visit([&](Key key, unsigned char& pixel) {
    pixel = key & CLEAR ? last : indices[cellOf(key)];
    return true;
  });
  return keys;
}

}  // namespace

int Image::reduceColors(int most) {
  const std::size_t size = static_cast<std::size_t>(height) * static_cast<std::size_t>(bytes_line);
  if (most < 1 || most > 256 || size == 0 || bits_pixel == 0 || data.size() < size) return 0;
  const bool table = color_type == INDEXED && !colors.empty();
  if (bits_pixel == 8 && table && getNumColor() <= most) return 1;

  Image next;
  static_cast<ImageInfo&>(next) = *this;
  if (!next.set(width, height, 8) || !next.allocData()) return 0;
  next.setMasks(0, 0, 0);

  // Levels of grey, and indices that fit into a byte, stay what they are.
  const bool levels = bits_pixel == 8 && !table && color_type != DIRECT && most == 256;
  const bool narrow = bits_pixel == 16 && table && getNumColor() <= most && trans_color < getNumColor();
  if (levels || narrow) {
    next.values = values;
    next.colors = colors;
    if (levels) {
      next.allocColors(256);
      for (int i = 0; i < 256; ++i) next.setColorVal(i, static_cast<std::uint32_t>(i) * 0x010101u);
    }
    const std::uint32_t last = static_cast<std::uint32_t>(next.getNumColor() - 1);
    auto pixel = next.data.begin();
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) *pixel++ = static_cast<unsigned char>(std::min(getVal(x, y), last));
    }
    *this = std::move(next);
    return 1;
  }

  const auto makeKey = [this, most](std::uint32_t value) {
    const std::uint32_t told = color_type == DIRECT ? value & 0xFFFFFF : value;
    // One colour cannot be two.
    const bool clear = most > 1 && trans_color >= 0 && told == static_cast<std::uint32_t>(trans_color);
    const RGB rgb = split(value);
    return static_cast<Key>(packColor(rgb.red, rgb.green, rgb.blue)) | (clear ? CLEAR : 0);
  };
  std::vector<Key> known;  // of every value, where they are few
  for (std::uint32_t v = 0; bits_pixel <= 16 && v < 1u << bits_pixel; ++v) known.push_back(makeKey(v));
  std::uint32_t value = getVal(0, 0);
  Key key = makeKey(value);
  const auto keyAt = [&](int x, int y) {
    const std::uint32_t here = getVal(x, y);
    if (!known.empty()) return known[here];
    if (here != value) key = makeKey(value = here);
    return key;
  };
  const auto visit = [&](const auto& take) {
    auto pixel = next.data.begin();
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        if (!take(keyAt(x, y), *pixel++)) return false;
      }
    }
    return true;
  };

  const std::vector<Key> keys = chooseColors(visit, most);
  next.allocColors(static_cast<int>(keys.size()));
  next.trans_color = -1;
  for (int i = 0; i < next.getNumColor(); ++i) {
    const Key k = keys[static_cast<std::size_t>(i)];
    next.setColorVal(i, k);
    if (k & CLEAR) next.trans_color = i;
  }
  *this = std::move(next);
  return 1;
}

}  // namespace KYV
