// make_sample OUT [base|velocity|digital|raster]
//
// Writes a product that looks like weather, by formula: a squall line west of the radar and a cell with a hook echo
// south-west of it. Radar KTLX, 20 May 2024.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <numbers>

#include "NidsBuilder.h"

namespace {

constexpr float PI = std::numbers::pi_v<float>;
constexpr int DAY = 19864;   // 20 May 2024, day 1 is 1 January 1970
constexpr int TIME = 72900;  // 20:15 UTC
constexpr int AZIMUTHS = 360;

// x and y are kilometres east and north of the radar.
float bump(float x, float y, float x0, float y0, float width) {
  const float d2 = ((x - x0) * (x - x0) + (y - y0) * (y - y0)) / (width * width);
  return std::exp(-d2);
}

// Waves that do not repeat within the range, -1 to 1.
float texture(float x, float y) {
  return (std::sin(0.31f * x + 0.7f * std::sin(0.13f * y)) + std::sin(0.27f * y + 1.1f * std::sin(0.17f * x)) +
          std::sin(0.083f * (x + y)) + std::sin(0.92f * x - 0.61f * y)) /
         4.0f;
}

float reflectivity(float x, float y) {
  // The line: an arc from the north to the south-west, sharp in front, with stratiform rain behind.
  const float front = -70.0f - 0.0022f * (y - 20.0f) * (y - 20.0f) + 6.0f * std::sin(y / 17.0f);
  const float behind = front - x;
  const float along = std::exp(-std::pow((y - 20.0f) / 130.0f, 4.0f));
  float dbz = -12.0f;
  if (behind > -6.0f) {
    const float core = 58.0f * std::exp(-std::pow((behind - 4.0f) / 9.0f, 2.0f));
    const float rain = behind > 0.0f ? 34.0f * std::exp(-std::pow((behind - 45.0f) / 42.0f, 2.0f)) : 0.0f;
    dbz = std::max(dbz, along * std::max(core, rain) + 7.0f * texture(x, y) - 4.0f);
  }
  // The cell: a core, an anvil to the north-east, and a hook that turns around a weak spot.
  constexpr float CX = -38.0f;
  constexpr float CY = -34.0f;
  float cell = 66.0f * bump(x, y, CX, CY, 10.0f);
  cell = std::max(cell, 44.0f * bump(x, y, CX + 16.0f, CY + 13.0f, 20.0f));
  for (int i = 0; i <= 24; i++) {
    const float turn = (0.25f + 1.35f * static_cast<float>(i) / 24.0f) * PI;
    cell = std::max(cell, (57.0f - 0.5f * static_cast<float>(i)) *
                              bump(x, y, CX - 7.0f + 6.0f * std::cos(turn), CY - 9.0f + 6.0f * std::sin(turn), 2.6f));
  }
  dbz = std::max(dbz, cell + 4.0f * texture(2.0f * x, 2.0f * y));
  // Echoes of the ground around the radar.
  const float ground = 24.0f * std::exp(-std::hypot(x, y) / 9.0f) + 12.0f * texture(5.0f * x, 5.0f * y);
  return std::max(dbz, std::hypot(x, y) < 25.0f ? ground : dbz);
}

// Radial velocity in knots, away from the radar positive.
float velocity(float x, float y) {
  const float r = std::max(std::hypot(x, y), 1.0f);
  const bool behind = x < -70.0f - 0.0022f * (y - 20.0f) * (y - 20.0f);
  const float u = behind ? 48.0f : 14.0f;  // the wind turns with the line
  const float v = behind ? -8.0f : 30.0f;
  float radial = (u * x + v * y) / r + 5.0f * texture(x, y);
  // The mesocyclone: winds around the hook's weak spot.
  const float dx = x + 45.0f;
  const float dy = y + 43.0f;
  const float d = std::hypot(dx, dy);
  const float speed = 62.0f * (d / 3.0f) * std::exp(1.0f - d / 3.0f);
  radial += speed * (-dy * x + dx * y) / (std::max(d, 0.1f) * r);
  return std::clamp(radial, -120.0f, 120.0f);
}

struct Polar {
  float x;
  float y;
};
Polar place(int azimuth, float range) {
  const float angle = (static_cast<float>(azimuth) + 0.5f) * PI / 180.0f;
  return {range * std::sin(angle), range * std::cos(angle)};
}

NidsBuilder common(int code) {
  NidsBuilder b;
  b.header(code, 1).location(35.333f, -97.278f).height(1277).mode(2).vcp(212).sequence(1433).volume(28);
  b.messageTime(DAY, TIME + 100).volumeTime(DAY, TIME).generationTime(DAY, TIME + 98).elevationNumber(1).param(3, 5);
  b.heading(NidsBuilder::Heading::Wmo, "SDUS54");
  return b;
}

// The highest level whose lower bound is reached; bounds ascend.
template <std::size_t N>
int levelOf(float value, const std::array<int, N>& bounds) {
  int level = 0;
  for (std::size_t i = 0; i < N; i++) {
    if (value >= static_cast<float>(bounds[i])) level = static_cast<int>(i) + 1;
  }
  return level;
}

void addRun(std::vector<NidsBuilder::Run>& runs, int level) {
  if (!runs.empty() && runs.back().level == level) {
    runs.back().run++;
  } else {
    runs.push_back({1, level});
  }
}

constexpr int BELOW = 0x8002;   // below the first threshold
constexpr int FOLDED = 0x8003;  // range folded
constexpr std::array<int, 15> DBZ = {5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 75};
constexpr std::array<int, 13> KNOTS = {-64, -50, -36, -26, -20, -10, -1, 0, 10, 20, 26, 36, 50};

// 16 levels of reflectivity, 1 km (code 19).
NidsBuilder base() {
  NidsBuilder b = common(19);
  b.param(4, 66).threshold(0, BELOW);
  for (std::size_t i = 0; i < DBZ.size(); i++) b.threshold(static_cast<int>(i) + 1, DBZ[i]);
  for (int a = 0; a < AZIMUTHS; a++) {
    std::vector<NidsBuilder::Run> runs;
    for (int j = 0; j < 230; j++) {
      const Polar p = place(a, static_cast<float>(j) + 0.5f);
      addRun(runs, levelOf(reflectivity(p.x, p.y), DBZ));
    }
    b.radial(static_cast<float>(a), 1.0f, runs);
  }
  return b;
}

// 16 levels of velocity, 1 km (code 27); no echo, no velocity.
NidsBuilder velocityProduct() {
  NidsBuilder b = common(27);
  b.param(4, -104).param(5, 96).threshold(0, BELOW).threshold(15, FOLDED);
  b.threshold(1, 0x0100 | 90);
  for (std::size_t i = 0; i < KNOTS.size(); i++) {
    b.threshold(static_cast<int>(i) + 2, KNOTS[i] < 0 ? 0x0100 | -KNOTS[i] : KNOTS[i]);
  }
  for (int a = 0; a < AZIMUTHS; a++) {
    std::vector<NidsBuilder::Run> runs;
    for (int j = 0; j < 230; j++) {
      const Polar p = place(a, static_cast<float>(j) + 0.5f);
      const bool echo = reflectivity(p.x, p.y) > 0.0f;
      const bool folded = j > 175 && texture(p.x, p.y) > 0.1f;
      addRun(runs, !echo ? 0 : folded ? 15 : 1 + levelOf(velocity(p.x, p.y), KNOTS));
    }
    b.radial(static_cast<float>(a), 1.0f, runs);
  }
  return b;
}

// 256 levels of reflectivity, 1 km to 460 km (code 94), bzip2.
NidsBuilder digital() {
  NidsBuilder b = common(94);
  b.param(4, 66).param(8, 1).thresholds({-320, 5, 254}).digital(460).body(NidsBuilder::Body::Bzip2);
  for (int a = 0; a < AZIMUTHS; a++) {
    NidsBuilder::Bytes levels;
    for (int j = 0; j < 460; j++) {
      const Polar p = place(a, static_cast<float>(j) + 0.5f);
      const float dbz = reflectivity(p.x, p.y);
      levels.push_back(dbz < -5.0f ? 0 : static_cast<unsigned char>(std::lround((dbz + 32.0f) / 0.5f)));
    }
    b.digitalRadial(static_cast<float>(a), 1.0f, levels);
  }
  return b;
}

// Composite reflectivity on a grid of 1 km (code 37), with a page of the storm table.
NidsBuilder raster() {
  constexpr int CELLS = 464;
  NidsBuilder b = common(37);
  b.param(3, 0).param(4, 66).threshold(0, BELOW).raster(0xBA07);
  for (std::size_t i = 0; i < DBZ.size(); i++) b.threshold(static_cast<int>(i) + 1, DBZ[i]);
  for (int r = 0; r < CELLS; r++) {
    std::vector<NidsBuilder::Run> runs;
    for (int k = 0; k < CELLS; k++) {
      const float x = static_cast<float>(k) - static_cast<float>(CELLS - 1) / 2.0f;
      const float y = static_cast<float>(CELLS - 1) / 2.0f - static_cast<float>(r);
      addRun(runs, std::hypot(x, y) > 230.0f ? 0 : levelOf(reflectivity(x, y), DBZ));
    }
    b.gridRow(runs);
  }
  b.page();
  b.text(8, 1, 0, 1, " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT ");
  b.text(8, 1, 0, 11, "   A0    228/ 28 TVS   9     90/100/ 2.50    62  66 12.3  48.6   241/ 31  ");
  return b;
}

struct Kind {
  const char* name;
  NidsBuilder (*make)();
};
constexpr Kind KINDS[] = {{"base", base}, {"velocity", velocityProduct}, {"digital", digital}, {"raster", raster}};

}  // namespace

int main(int argc, char** argv) {
  const char* wanted = argc == 3 ? argv[2] : KINDS[0].name;
  const Kind* kind =
      std::find_if(std::begin(KINDS), std::end(KINDS), [&](const Kind& k) { return std::strcmp(k.name, wanted) == 0; });
  if (argc < 2 || argc > 3 || kind == std::end(KINDS)) {
    std::fprintf(stderr, "usage: make_sample OUT [base|velocity|digital|raster]\n");
    return 2;
  }
  if (!kind->make().write(argv[1])) {
    std::fprintf(stderr, "make_sample: cannot write %s\n", argv[1]);
    return 1;
  }
  return 0;
}
