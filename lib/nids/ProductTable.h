#ifndef KYV_PRODUCTTABLE_H
#define KYV_PRODUCTTABLE_H

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>

namespace KYV {

// All that follows from the product code alone: one row for each code, one column for each fact.

// Families that scales, labels and overlays ask for; a product may be in several.
enum Family : std::uint32_t {
  BREF = 1u << 0,      // base reflectivity
  DHR = 1u << 1,       // digital hybrid reflectivity
  BSW = 1u << 2,       // base spectrum width
  CREF = 1u << 3,      // composite reflectivity
  VEL = 1u << 4,       // base velocity
  SRVEL = 1u << 5,     // storm-relative velocity
  TOPS = 1u << 6,      // echo tops
  ENH_TOPS = 1u << 7,  // enhanced echo tops
  LREF = 1u << 8,      // layer composite reflectivity
  VIL = 1u << 9,       // vertically integrated liquid
  DIG_VIL = 1u << 10,
  VAD = 1u << 11,       // wind profile
  PREC = 1u << 12,      // surface rainfall accumulations
  DPREC = 1u << 13,     // dual-polarisation accumulations
  DPR_RATE = 1u << 14,  // instantaneous precipitation rate
  HYDRO = 1u << 15,     // hydrometeor classes
  CORREL = 1u << 16,    // correlation coefficient
  DPA = 1u << 17,       // precipitation array
  DSP = 1u << 18,       // digital storm-total precipitation
  DREF = 1u << 19,      // differential reflectivity
  DUAL = 1u << 20,      // scaled by a float scale and offset
  // Only the labels and the header's extremes ask for these:
  ANGLE = 1u << 21,       // dual-polarisation products of one elevation
  DIFF_TOTAL = 1u << 22,  // storm-total difference
  HOUR_ACC = 1u << 23,    // 1-hour accumulation, coded
  NEW_PREC = 1u << 24,    // the later set of rainfall accumulations
  SINCE_LATE = 1u << 25,  // accumulates since parameters 5 (day) and 6 (minute)
  SINCE_EARLY = 1u << 26  // accumulates since parameters 1 (day) and 2 (minute)
};

// How the 16 threshold halfwords become data levels or a scale, and with them the 8-bit levels values.
enum class Levels {
  Coded,        // 16 data levels
  Tenths,       // minimum and increment in tenths, number of levels
  Knots,        // the same, metres per second to knots
  Thousandths,  // minimum and increment in thousandths, number of levels
  Hundredths,   // minimum and increment in hundredths, number of levels
  Vil,          // a linear and a logarithmic piece, 16-bit floats
  Tops,         // mask, scale, offset, top mask
  FloatPair,    // scale and offset as 32-bit floats
  Fixed         // coded, but the scale is known beforehand
};

struct Product {
  int code;              // of the message header
  std::uint32_t family;  // bits of Family
  const char* name;      // plot title with units; null: not supported
  float res;             // size of a bin or cell, km; 0: unknown
  float range;           // km
  Levels levels;
};

inline constexpr Product UNLISTED = {0, 0, nullptr, 0.0f, 230.0f, Levels::Coded};

// clang-format off
inline constexpr Product PRODUCTS[] = {
    {16, BREF, "Base reflectivity [dBZ]", 1.0f, 230.0f, Levels::Coded},
    {17, BREF, "Base reflectivity [dBZ]", 2.0f, 460.0f, Levels::Coded},
    {18, BREF, "Base reflectivity [dBZ]", 4.0f, 460.0f, Levels::Coded},
    {19, BREF, "Base reflectivity [dBZ]", 1.0f, 230.0f, Levels::Coded},
    {20, BREF, "Base reflectivity [dBZ]", 2.0f, 460.0f, Levels::Coded},
    {21, BREF, "Base reflectivity [dBZ]", 4.0f, 460.0f, Levels::Coded},
    {22, VEL, "Base velocity [knt]", 0.25f, 57.0f, Levels::Coded},
    {23, VEL, "Base velocity [knt]", 0.5f, 115.0f, Levels::Coded},
    {24, VEL, "Base velocity [knt]", 1.0f, 230.0f, Levels::Coded},
    {25, VEL, "Base velocity [knt]", 0.25f, 57.0f, Levels::Coded},
    {26, VEL, "Base velocity [knt]", 0.5f, 115.0f, Levels::Coded},
    {27, VEL, "Base velocity [knt]", 1.0f, 230.0f, Levels::Coded},
    {28, BSW, "Base spectrum width [knt]", 0.25f, 57.0f, Levels::Coded},
    {29, BSW, "Base spectrum width [knt]", 0.5f, 115.0f, Levels::Coded},
    {30, BSW, "Base spectrum width [knt]", 1.0f, 230.0f, Levels::Coded},
    {32, DHR, "Digital hyb reflectivity [dBZ]", 1.0f, 230.0f, Levels::Tenths},
    {35, CREF, "Comp reflectivity [dBZ]", 1.0f, 230.0f, Levels::Coded},
    {36, CREF, "Comp reflectivity [dBZ]", 4.0f, 460.0f, Levels::Coded},
    {37, CREF, "Comp reflectivity [dBZ]", 1.0f, 230.0f, Levels::Coded},
    {38, CREF, "Comp reflectivity [dBZ]", 4.0f, 460.0f, Levels::Coded},
    {41, TOPS, "Echo tops [1000 ft]", 4.0f, 230.0f, Levels::Coded},
    {48, VAD, "VAD wind profile [knt]", 1.0f, 1.0f, Levels::Coded},
    {55, SRVEL, "Stm rel mn rad velocity [knt]", 0.5f, 50.0f, Levels::Coded},
    {56, SRVEL, "Stm rel mn rad velocity [knt]", 1.0f, 230.0f, Levels::Coded},
    {57, VIL, "Vert int liquid [kg/m^3]", 4.0f, 230.0f, Levels::Coded},
    {58, 0, "Storm track info", 0.0f, 230.0f, Levels::Coded},
    {65, LREF, "Layer 1 comp refl [dBZ]", 4.0f, 230.0f, Levels::Coded},
    {66, LREF, "Layer 2 comp refl [dBZ]", 4.0f, 230.0f, Levels::Coded},
    {67, 0, "Comp refl APR [dBZ]", 4.0f, 460.0f, Levels::Coded},
    {78, PREC, "Sfc 1 hr rainfall acc. [in]", 2.0f, 230.0f, Levels::Coded},
    {79, PREC, "Sfc 3 hr rainfall acc. [in]", 2.0f, 230.0f, Levels::Coded},
    {80, PREC | SINCE_LATE, "Sfc storm total rainfall acc. [in]", 2.0f, 230.0f, Levels::Coded},
    {81, DPA, "Digital precip array [in]", 0.047596f, 230.0f, Levels::Thousandths},
    {89, LREF, nullptr, 0.0f, 230.0f, Levels::Coded},
    {90, LREF, "Layer 3 comp refl [dBZ]", 4.0f, 230.0f, Levels::Coded},
    {94, BREF, "Base reflectivity [dBZ]", 1.0f, 460.0f, Levels::Tenths},
    {99, VEL, "Base velocity [knt]", 0.25f, 230.0f, Levels::Knots},
    {134, DIG_VIL, "Digital vert int liquid [kg/m^3]", 1.0f, 460.0f, Levels::Vil},
    {135, ENH_TOPS, "Enh Echo tops [1000 ft]", 1.0f, 345.0f, Levels::Tops},
    {138, DSP | SINCE_EARLY, "Digital storm precip [in]", 2.0f, 230.0f, Levels::Hundredths},
    {141, 0, "Mesocyclone detection", 1.0f, 230.0f, Levels::Coded},
    {153, BREF, "Base reflectivity [dBZ]", 0.25f, 460.0f, Levels::Tenths},
    {154, VEL, "Base velocity [knt]", 0.25f, 230.0f, Levels::Knots},
    {158, DREF, nullptr, 0.0f, 230.0f, Levels::Coded},
    {159, DREF | DUAL, "Digital diff refl [dBZ]", 0.25f, 320.0f, Levels::FloatPair},
    {161, CORREL | DUAL | ANGLE, "Digital correl coeff", 0.25f, 320.0f, Levels::FloatPair},
    {163, DUAL | ANGLE, "Digital spec diff phase [Deg/km]", 0.25f, 230.0f, Levels::FloatPair},
    {165, HYDRO | DUAL | ANGLE, "Digital hydro class", 0.25f, 320.0f, Levels::FloatPair},
    {166, 0, "Melting layer", 0.25f, 230.0f, Levels::Coded},
    {169, HOUR_ACC, "Sfc 1 hr rainfall accum [in]", 2.0f, 230.0f, Levels::Coded},
    {170, DPREC | DUAL, "Digital accum array [in]", 0.25f, 230.0f, Levels::FloatPair},
    {171, DPREC | SINCE_EARLY, "Storm total accum", 2.0f, 230.0f, Levels::Coded},
    {172, DPREC | DUAL | SINCE_EARLY, "Digital storm total accum [in]", 0.25f, 230.0f, Levels::FloatPair},
    {173, DPREC | DUAL, nullptr, 0.0f, 230.0f, Levels::FloatPair},
    {174, DPREC | DUAL, "Digital 1 hr diff accum [in]", 0.25f, 230.0f, Levels::FloatPair},
    {175, DPREC | DUAL | DIFF_TOTAL | SINCE_EARLY, "Digital storm total diff accum [in]", 0.25f, 230.0f,
     Levels::FloatPair},
    {176, DPR_RATE | DUAL, "Digital instant prec rate [in/hr]", 0.25f, 230.0f, Levels::FloatPair},
    {177, HYDRO | DUAL, "Hybrid hydro class", 0.25f, 230.0f, Levels::FloatPair},
    {180, BREF, "Base reflectivity [dBZ]", 0.15f, 90.0f, Levels::Tenths},
    {181, BREF, "Base reflectivity [dBZ]", 0.15f, 90.0f, Levels::Coded},
    {182, VEL, "Base velocity [knt]", 0.15f, 90.0f, Levels::Tenths},
    {186, DHR, "Base reflectivity [dBZ]", 0.3f, 420.0f, Levels::Fixed},
    {220, NEW_PREC, "Sfc 1 hr rainfall acc. [in]", 2.0f, 230.0f, Levels::Coded},
    {221, NEW_PREC, "Sfc 3 hr rainfall acc. [in]", 2.0f, 230.0f, Levels::Coded},
    {222, NEW_PREC | SINCE_LATE, "Sfc storm total rainfall acc. [in]", 2.0f, 230.0f, Levels::Coded},
};
// clang-format on

static_assert(std::ranges::adjacent_find(PRODUCTS, std::ranges::greater_equal{}, &Product::code) ==
                  std::ranges::end(PRODUCTS),
              "PRODUCTS: ascending codes, one row each");

constexpr const Product& findProduct(int code) {
  const Product* row = std::ranges::lower_bound(PRODUCTS, code, {}, &Product::code);
  return row != std::ranges::end(PRODUCTS) && row->code == code ? *row : UNLISTED;
}

// Mosaics (sources from NidsInfo::MULTI_RADAR on) have a catalogue of their own.
struct MosaicName {
  int first;  // codes, both included
  int last;
  const char* name;
};

// clang-format off
inline constexpr MosaicName MOSAIC_NAMES[] = {
    {6, 6, "WARP Comp reflectivity [dBZ]"},
    {28, 65, "Composite reflectivity [dBZ]"},
    {90, 91, "Sfc 1 hr precipitation [in]"},
    {95, 96, "Echo tops [ft]"},
    {101, 101, "Sfc precipitation since 12Z [in]"},
    {102, 102, "Sfc 24 hr precipitation [in]"},
    {103, 104, "Composite reflectivity [dBZ]"},
    {105, 105, "Sfc precipitation since 12Z [in]"},
    {106, 106, "Sfc 24 hr precipitation [in]"},
    {107, 107, "Sfc precipitation since 12Z [in]"},
    {108, 108, "Sfc 24 hr precipitation [in]"},
    {137, 144, "Base reflectivity [dBZ]"},
    {148, 149, "Vert int liquid [kg/m^3]"},
    {180, 180, "Base reflectivity [dBZ]"},
    {199, 200, "Winter reflectivity [dBZ]"},
    {203, 203, "Reflectivity at Lowest Alt [dBZ]"},
    {209, 209, "Vert int liquid [kg/m^3]"},
    {210, 210, "Echo tops-18dBZ [ft]"},
    {211, 211, "Composite reflectivity [dBZ]"},
    {212, 212, "Echo tops-30dBZ [ft]"},
};
// clang-format on

struct MosaicRes {
  int code;
  float res;  // km
};
inline constexpr float MOSAIC_RES = 2.0f;  // all that are not listed
inline constexpr MosaicRes MOSAIC_RESOLUTIONS[] = {
    {6, 8.0f},   {30, 4.0f},  {90, 4.0f},  {91, 8.0f},  {95, 4.0f},  {96, 8.0f},   {101, 4.0f},
    {102, 4.0f}, {103, 4.0f}, {107, 8.0f}, {108, 8.0f}, {139, 1.0f}, {141, 4.0f},  {142, 8.0f},
    {148, 4.0f}, {149, 8.0f}, {180, 4.0f}, {199, 1.0f}, {201, 8.0f}, {202, 16.0f}, {203, 1.0f},
    {209, 1.0f}, {210, 1.0f}, {211, 1.0f}, {212, 1.0f},
};

constexpr const char* findMosaicName(int code) {
  for (const MosaicName& row : MOSAIC_NAMES) {
    if (code >= row.first && code <= row.last) return row.name;
  }
  return nullptr;
}

constexpr float findMosaicRes(int code) {
  for (const MosaicRes& row : MOSAIC_RESOLUTIONS) {
    if (code == row.code) return row.res;
  }
  return MOSAIC_RES;
}

// Where the extremes stand among the product-dependent parameters, and how the label shows them. The order of rows is
// the order of tests.
struct Extremes {
  std::uint32_t family;
  int low;  // index of the parameter; -1: none
  int high;
  float times;
  float by;      // value = parameter * times / by
  int decimals;  // in the label; -1: not shown
};
inline constexpr Extremes EXTREMES[] = {
    {VEL | SRVEL, 3, 4, 1.0f, 1.0f, 0},
    {DREF, 3, 4, 1.0f, 10.0f, 1},
    {CORREL, 3, 4, 0.00333f, 1.0f, 1},
    {DIFF_TOTAL, 6, 3, 1.0f, 100.0f, 2},
    {PREC | DPA | HOUR_ACC | NEW_PREC, -1, 3, 1.0f, 10.0f, 1},
    {DPREC, -1, 3, 1.0f, 10.0f, 2},
    {DSP, -1, 3, 1.0f, 100.0f, 2},
    {HYDRO, -1, 3, 1.0f, 1.0f, -1},
};
inline constexpr Extremes PLAIN_EXTREMES = {~0u, -1, 3, 1.0f, 1.0f, 0};

constexpr const Extremes& findExtremes(std::uint32_t family) {
  for (const Extremes& row : EXTREMES) {
    if (family & row.family) return row;
  }
  return PLAIN_EXTREMES;
}

// Messages of the same stream that carry no radar product.
struct OtherMessage {
  int code;
  const char* name;
};
inline constexpr OtherMessage OTHER_MESSAGES[] = {
    {2, "a general status message"}, {3, "a request response"},   {8, "a product list"},
    {9, "an alert message"},         {75, "a free text message"}, {77, "a text message of a user"},
};

constexpr const char* findOtherMessage(int code) {
  for (const OtherMessage& row : OTHER_MESSAGES) {
    if (code == row.code) return row.name;
  }
  return nullptr;
}

}  // namespace KYV
#endif
