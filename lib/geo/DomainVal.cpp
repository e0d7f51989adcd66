#include "KYV/DomainVal.h"

#include <strings.h>
#include <algorithm>
#include <cstdio>
#include <iterator>

#include "KYV/String.h"

namespace KYV {

namespace {

// How projection names are read: the first prefix that the text begins with decides.
struct Prefix {
  const char* text;
  int code;
  bool whole = false;  // only this very word
};
// clang-format off
constexpr Prefix PREFIXES[] = {
    {"miss", Const::MISS, true},
    {"ll", DomainVal::LATLON}, {"lat", DomainVal::LATLON}, {"re", DomainVal::LATLON},
    {"polar", DomainVal::PSTEREO}, {"ps", DomainVal::PSTEREO}, {"st", DomainVal::PSTEREO},
    {"sat", DomainVal::SAT},
    {"lambaz", DomainVal::LAMBAZ},
    {"lamb", DomainVal::LAMB}, {"lc", DomainVal::LAMB},
    {"la", DomainVal::LAMBAZ}, {"az", DomainVal::LAMBAZ},
    {"alb", DomainVal::ALBERS},
    {"gn", DomainVal::GNOM},
    {"or", DomainVal::ORTHO},
    {"mo", DomainVal::MOLL},
    {"me", DomainVal::MERC},
    {"rad", DomainVal::RADIAL},
    {"pix", DomainVal::PIXEL},
    {"xy", DomainVal::XY},
    {"xlogy", DomainVal::XLOGP}, {"xlogp", DomainVal::XLOGP},
    {"cat", DomainVal::CAT},
    {"skewt", DomainVal::SKEWT},
    {"ema", DomainVal::EMA},
    {"teph", DomainVal::TEPH},
    {"rteph", DomainVal::RTEPH},
    {"therm", DomainVal::SKEWT},
    {"hodo", DomainVal::POLAR},
    {"vert", DomainVal::XLOGP},
    {"xp", DomainVal::XP, true},
    {"zoom", DomainVal::ZOOM},
    {"size", DomainVal::SIZE},
};
// clang-format on

bool beginsWith(const char* text, const Prefix& prefix) {
  return prefix.whole ? strcasecmp(text, prefix.text) == 0
                      : strncasecmp(text, prefix.text, static_cast<std::size_t>(StrLib::length(prefix.text))) == 0;
}

int appendFloat(String& text, const char* lead, float value) {
  char number[64];
  StrLib::printf(number, "%f", static_cast<double>(value));
  return text.append(lead), text.append(number);
}

int appendInt(String& text, int value) {
  char number[16];
  StrLib::printf(number, ",%d", value);
  return text.append(number);
}

}  // namespace

int DomainVal::getProj(const char* name) {
  if (!name) return -1;
  const Prefix* row = std::ranges::find_if(PREFIXES, [name](const Prefix& prefix) { return beginsWith(name, prefix); });
  return row == std::end(PREFIXES) ? -1 : row->code;
}

int DomainVal::toString(String& text) const {
  text.copy(isSet() ? getProjName(proj) : "miss");
  if (ellipse) text.append(":e");
  for (const float value : {plat, plon, param[0], param[1], param[2]}) {
    if (Const::isMissing(value)) {
      text.append(':');
    } else {
      appendFloat(text, ":", value);
    }
  }
  appendFloat(text, ",", clat);
  appendFloat(text, ",", clon);
  appendInt(text, nx);
  appendInt(text, ny);
  appendFloat(text, ",", dx);
  return appendFloat(text, ",", dy);
}

int DomainVal::print() const {
  String text;
  toString(text);
  return text.print();
}

bool DomainVal::compare(const DomainVal& a, const DomainVal& b) {
  return a.proj == b.proj && a.plat == b.plat && a.plon == b.plon && std::ranges::equal(a.param, b.param) &&
         a.clat == b.clat && a.clon == b.clon && a.dx == b.dx && a.dy == b.dy && a.nx == b.nx && a.ny == b.ny &&
         a.ellipse == b.ellipse;
}

bool DomainVal::compareProj(const DomainVal& a, const DomainVal& b) {
  const auto origin = [](float value, float centre) { return Const::isMissing(value) ? centre : value; };
  if (a.proj != b.proj || a.ellipse != b.ellipse || !std::ranges::equal(a.param, b.param) ||
      origin(a.plat, a.clat) != origin(b.plat, b.clat) || origin(a.plon, a.clon) != origin(b.plon, b.clon)) {
    return false;
  }
  // Ranges and azimuths are counted from the centre.
  return a.proj != RADIAL || (a.clat == b.clat && a.clon == b.clon);
}

}  // namespace KYV
