// The catalogue of the public format: what interface documents and real products say of each code.
#include "KYV/ProductInfo.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace KYV {

namespace {

// The range of 183 to 185 is that of real products of 180 and 182: 592 bins. 113 has bins of 1 km or of 0.25 km, as
// their number tells.
// clang-format off
constexpr ProductInfo CATALOGUE[] = {
    {2, "GSM", "General status message", "", 0.0f, 0.0f, LevelCoding::None, false, "nothing: text"},
    {16, "", "Base reflectivity", "dBZ", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {17, "", "Base reflectivity", "dBZ", 2.0f, 460.0f, LevelCoding::Coded, true, "image"},
    {18, "", "Base reflectivity", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, true, "image"},
    {19, "N0R N1R N2R N3R", "Base reflectivity", "dBZ", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {20, "N0Z", "Base reflectivity, long range", "dBZ", 2.0f, 460.0f, LevelCoding::Coded, true, "image"},
    {21, "", "Base reflectivity, long range", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, true, "image"},
    {22, "", "Base velocity", "kt", 0.25f, 60.0f, LevelCoding::Coded, true, "image"},
    {23, "", "Base velocity", "kt", 0.5f, 115.0f, LevelCoding::Coded, true, "image"},
    {24, "", "Base velocity", "kt", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {25, "", "Base velocity", "kt", 0.25f, 60.0f, LevelCoding::Coded, true, "image"},
    {26, "", "Base velocity", "kt", 0.5f, 115.0f, LevelCoding::Coded, true, "image"},
    {27, "N0V N1V N2V N3V", "Base velocity", "kt", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {28, "NSP", "Base spectrum width", "kt", 0.25f, 60.0f, LevelCoding::Coded, true, "image"},
    {29, "", "Base spectrum width", "kt", 0.5f, 115.0f, LevelCoding::Coded, true, "image"},
    {30, "NSW", "Base spectrum width", "kt", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {31, "", "User selectable storm total precipitation", "in", 2.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {32, "DHR", "Digital hybrid scan reflectivity", "dBZ", 1.0f, 230.0f, LevelCoding::Tenths, false, "image"},
    {33, "HSR", "Hybrid scan reflectivity", "dBZ", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {34, "NC1 NC2 NC3 NC4 NC5", "Clutter filter control", "class", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {35, "", "Composite reflectivity", "dBZ", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {36, "NCO", "Composite reflectivity", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, false, "image"},
    {37, "NCR", "Composite reflectivity", "dBZ", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {38, "NCZ", "Composite reflectivity, long range", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, false, "image"},
    {41, "NET", "Echo tops", "kft", 4.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {48, "NVW", "VAD wind profile", "", 0.0f, 0.0f, LevelCoding::None, false, "profile"},
    {50, "", "Reflectivity cross section", "", 0.0f, 0.0f, LevelCoding::None, false, "nothing: cross section"},
    {51, "", "Velocity cross section", "", 0.0f, 0.0f, LevelCoding::None, false, "nothing: cross section"},
    {55, "", "Storm relative mean radial velocity, region", "kt", 0.5f, 50.0f, LevelCoding::Coded, true, "image"},
    {56, "N0S N1S N2S N3S", "Storm relative mean radial velocity", "kt", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {57, "NVL", "Vertically integrated liquid", "kg/m2", 4.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {58, "NST", "Storm tracking information", "", 0.0f, 460.0f, LevelCoding::None, false, "symbols and tables"},
    {59, "NHI", "Hail index", "", 0.0f, 460.0f, LevelCoding::None, false, "symbols and tables"},
    {60, "NME", "Mesocyclone (legacy)", "", 0.0f, 230.0f, LevelCoding::None, false, "symbols and tables"},
    {61, "NTV", "Tornado vortex signature", "", 0.0f, 230.0f, LevelCoding::None, false, "symbols and tables"},
    {62, "NSS", "Storm structure", "", 0.0f, 460.0f, LevelCoding::None, false, "nothing: text"},
    {63, "", "Layer composite reflectivity average, low", "dBZ", 4.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {64, "", "Layer composite reflectivity average, middle", "dBZ", 4.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {65, "NLL", "Layer composite reflectivity maximum, low", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, false, "image"},
    {66, "NML", "Layer composite reflectivity maximum, middle", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, false, "image"},
    {67, "NLA", "Layer composite reflectivity, low, AP removed", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, false, "image"},
    {74, "RCM", "Radar coded message", "", 0.0f, 460.0f, LevelCoding::None, false, "nothing: text"},
    {75, "FTM", "Free text message", "", 0.0f, 0.0f, LevelCoding::None, false, "nothing: text"},
    {78, "N1P", "One hour precipitation", "in", 2.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {79, "N3P", "Three hour precipitation", "in", 2.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {80, "NTP", "Storm total precipitation", "in", 2.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {81, "DPA", "Hourly digital precipitation", "in", 4.7625f, 230.0f, LevelCoding::Dba, false, "image"},
    {82, "SPD", "Supplemental precipitation data", "", 0.0f, 0.0f, LevelCoding::None, false, "nothing: text"},
    {84, "", "Velocity azimuth display", "", 0.0f, 0.0f, LevelCoding::None, false, "nothing: wind page"},
    {89, "", "Layer composite reflectivity average, high", "dBZ", 4.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {90, "NHL", "Layer composite reflectivity maximum, high", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, false, "image"},
    {93, "", "Digital velocity for interference detection", "m/s", 1.0f, 115.0f, LevelCoding::Tenths, true, "image"},
    {94, "N0Q NAQ N1Q NBQ N2Q N3Q", "Digital reflectivity", "dBZ", 1.0f, 460.0f, LevelCoding::Tenths, true, "image"},
    {95, "", "Composite reflectivity edited, 8 levels", "dBZ", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {96, "", "Composite reflectivity edited, 8 levels", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, false, "image"},
    {97, "", "Composite reflectivity edited", "dBZ", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {98, "", "Composite reflectivity edited", "dBZ", 4.0f, 460.0f, LevelCoding::Coded, false, "image"},
    {99, "N0U NAU N1U NBU N2U N3U", "Digital velocity", "m/s", 0.25f, 300.0f, LevelCoding::Tenths, true, "image"},
    {113, "N0F NAF NBF NXF NYF", "Power removed control", "class", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {132, "", "Clutter likelihood, reflectivity", "%", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {133, "", "Clutter likelihood, Doppler", "%", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {134, "DVL", "Digital vertically integrated liquid", "kg/m2", 1.0f, 460.0f, LevelCoding::Vil, false, "image"},
    {135, "EET", "Enhanced echo tops", "kft", 1.0f, 345.0f, LevelCoding::Tops, false, "image"},
    {137, "", "User selectable layer reflectivity", "dBZ", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {138, "DSP", "Digital storm total precipitation", "in", 2.0f, 230.0f, LevelCoding::Hundredths, false, "image"},
    {140, "GFM", "Gust front (TDWR)", "", 0.0f, 0.0f, LevelCoding::None, false, "nothing: generic packet"},
    {141, "NMD", "Mesocyclone detection", "", 0.0f, 460.0f, LevelCoding::None, false, "symbols and tables"},
    {144, "", "One hour snow water equivalent", "in", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {145, "", "One hour snow depth", "in", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {146, "", "Storm total snow water equivalent", "in", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {147, "", "Storm total snow depth", "in", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {149, "DMD", "Digital mesocyclone", "", 0.0f, 230.0f, LevelCoding::None, false, "nothing: generic packet"},
    {150, "", "User selectable snow water equivalent", "in", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {151, "", "User selectable snow depth", "in", 1.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {152, "RSL", "Archive III status", "", 0.0f, 0.0f, LevelCoding::None, false, "nothing: generic packet"},
    {153, "N0B NAB N1B NBB N2B N3B NXB NYB NZB H0Z", "Super-resolution reflectivity", "dBZ", 0.25f, 460.0f, LevelCoding::Tenths, true, "image"},
    {154, "N0G NAG N1G NBG N2G N3G NXG NYG NZG H0V", "Super-resolution velocity", "m/s", 0.25f, 300.0f, LevelCoding::Tenths, true, "image"},
    {155, "N0W H0W", "Super-resolution spectrum width", "m/s", 0.25f, 300.0f, LevelCoding::Tenths, true, "image"},
    {158, "", "Differential reflectivity", "dB", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {159, "N0X NAX N1X NBX N2X N3X NXX NYX NZX", "Digital differential reflectivity", "dB", 0.25f, 300.0f, LevelCoding::Floats, true, "image"},
    {160, "", "Correlation coefficient", "", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {161, "N0C NAC N1C NBC N2C N3C NXC NYC NZC", "Digital correlation coefficient", "", 0.25f, 300.0f, LevelCoding::Floats, true, "image"},
    {162, "", "Specific differential phase", "deg/km", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {163, "N0K NAK N1K NBK N2K N3K NXK NYK NZK", "Digital specific differential phase", "deg/km", 0.25f, 300.0f, LevelCoding::Floats, true, "image"},
    {164, "", "Hydrometeor classification", "class", 1.0f, 230.0f, LevelCoding::Coded, true, "image"},
    {165, "N0H NAH N1H NBH N2H N3H NXH NYH NZH", "Digital hydrometeor classification", "class", 0.25f, 300.0f, LevelCoding::Floats, true, "image"},
    {166, "N0M NAM N1M NBM N2M N3M NXM NYM NZM", "Melting layer", "", 0.0f, 230.0f, LevelCoding::None, false, "contours"},
    {167, "H0C", "Raw correlation coefficient, super resolution", "", 0.25f, 300.0f, LevelCoding::Floats, true, "image"},
    {168, "", "Raw differential phase", "deg", 0.25f, 300.0f, LevelCoding::Floats, true, "image"},
    {169, "OHA", "One hour accumulation", "in", 2.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {170, "DAA", "Digital one hour accumulation", "in", 0.25f, 230.0f, LevelCoding::Hundreds, false, "image"},
    {171, "PTA", "Storm total accumulation", "in", 2.0f, 230.0f, LevelCoding::Coded, false, "image"},
    {172, "DTA", "Digital storm total accumulation", "in", 0.25f, 230.0f, LevelCoding::Hundreds, false, "image"},
    {173, "DU3 DU6", "Digital user selectable accumulation", "in", 0.25f, 230.0f, LevelCoding::Hundreds, false, "image"},
    {174, "DOD", "Digital one hour difference", "in", 0.25f, 230.0f, LevelCoding::Hundreds, false, "image"},
    {175, "DSD", "Digital storm total difference", "in", 0.25f, 230.0f, LevelCoding::Hundreds, false, "image"},
    {176, "DPR", "Digital instantaneous precipitation rate", "in/h", 0.25f, 230.0f, LevelCoding::Floats, false, "image"},
    {177, "HHC", "Hybrid hydrometeor classification", "class", 0.25f, 230.0f, LevelCoding::Floats, false, "image"},
    {180, "TZ0 TZ1 TZ2", "TDWR digital base reflectivity", "dBZ", 0.15f, 89.0f, LevelCoding::Tenths, true, "image"},
    {181, "TR0 TR1 TR2", "TDWR base reflectivity", "dBZ", 0.15f, 89.0f, LevelCoding::Coded, true, "image"},
    {182, "TV0 TV1 TV2", "TDWR digital base velocity", "m/s", 0.15f, 89.0f, LevelCoding::Tenths, true, "image"},
    {183, "", "TDWR base velocity", "kt", 0.15f, 89.0f, LevelCoding::Coded, true, "image"},
    {184, "", "TDWR base spectrum width", "m/s", 0.15f, 89.0f, LevelCoding::Tenths, true, "image"},
    {185, "", "TDWR base spectrum width", "kt", 0.15f, 89.0f, LevelCoding::Coded, true, "image"},
    {186, "TZL", "TDWR digital long range reflectivity", "dBZ", 0.3f, 417.0f, LevelCoding::Tenths, true, "image"},
    {187, "", "TDWR long range reflectivity", "dBZ", 0.3f, 417.0f, LevelCoding::Coded, true, "image"},
    {193, "", "Super-resolution reflectivity, edited", "dBZ", 0.25f, 460.0f, LevelCoding::Tenths, true, "image"},
    {195, "", "Digital reflectivity, edited", "dBZ", 1.0f, 460.0f, LevelCoding::Tenths, true, "image"},
    {196, "", "Microburst AMDA (TDWR)", "", 0.0f, 50.0f, LevelCoding::None, false, "nothing: generic packet"},
    {197, "", "Rain rate classification", "class", 0.25f, 230.0f, LevelCoding::Floats, true, "image"},
};
// clang-format on

static_assert(std::ranges::adjacent_find(CATALOGUE, std::ranges::greater_equal{}, &ProductInfo::code) ==
                  std::ranges::end(CATALOGUE),
              "CATALOGUE: ascending codes, one row each");

}  // namespace

std::span<const ProductInfo> ProductInfo::getAll() { return CATALOGUE; }

const ProductInfo* ProductInfo::find(int code) {
  const ProductInfo* row = std::ranges::lower_bound(CATALOGUE, code, {}, &ProductInfo::code);
  return row != std::ranges::end(CATALOGUE) && row->code == code ? row : nullptr;
}

}  // namespace KYV
