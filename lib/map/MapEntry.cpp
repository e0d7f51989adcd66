#include "MapEntry.h"

#include <cstdio>
#include <cstring>

#include "KYV/Domain.h"

namespace KYV {

namespace {

// Whether a longitude lies between two, going east from the first.
bool isBetween(float lon, float west, float east) {
  const auto eastOf = [west](float x) {
    const float turn = 360.0f;
    float d = x - west;
    while (d < 0.0f) d += turn;
    while (d > turn) d -= turn;
    return d;
  };
  if (!(lon >= -720.0f && lon <= 720.0f && west >= -720.0f && west <= 720.0f && east >= -720.0f && east <= 720.0f)) {
    return false;
  }
  return east - west >= 360.0f || eastOf(lon) <= eastOf(east);
}

// "[V,lat1,lat2,lon1,lon2]": at most V units high (0: any height), the centre within the latitudes and longitudes;
// "[a<b]" and "[b>a]": between a and b units high.
bool holdsInBrackets(const char* text, const Domain& domain) {
  const float vert = domain.getVert();
  float v[5];
  char sign = 0;
  if (std::sscanf(text, "%f%c%f", &v[0], &sign, &v[1]) == 3 && (sign == '<' || sign == '>')) {
    return sign == '<' ? vert > v[0] && vert < v[1] : vert < v[0] && vert > v[1];
  }
  const int n = std::sscanf(text, "%f,%f,%f,%f,%f", &v[0], &v[1], &v[2], &v[3], &v[4]);
  EarthPoint centre(domain.clat, domain.clon);
  Point middle;
  if (domain.tranCenter(middle)) domain.tran(middle, centre);
  if (n >= 1 && v[0] > 0.0f && !(vert <= v[0])) return false;
  if (n >= 2 && !(centre.lat >= v[1])) return false;
  if (n >= 3 && !(centre.lat <= v[2])) return false;
  if (n >= 4 && !isBetween(centre.lon, v[3], n == 5 ? v[4] : 180.0f)) return false;
  return true;
}

// Up to the ':' or '[' that begins the attributes: those of "http://" and of a port before a path are none.
int nameLength(const char* text) {
  const char* at = text;
  for (const char* scheme : {"http:", "ftp:"}) {
    if (StrLib::equal(text, scheme, StrLib::length(scheme))) at += StrLib::length(scheme);
  }
  for (;; ++at) {
    at += std::strcspn(at, ":[");
    const std::size_t digits = *at == ':' ? std::strspn(at + 1, "0123456789") : 0;
    if (at == text || digits == 0 || at[1 + digits] != '/') return static_cast<int>(at - text);
  }
}

}  // namespace

const char* passConditions(const char* text, const Domain& domain, bool& holds) {
  const float vert = domain.getVert();
  holds = true;
  for (;;) {
    float a = 0.0f, b = 0.0f;
    int used = 0;
    char sign[2] = "";
    if (*text == '[') {
      const char* end = std::strchr(text, ']');
      if (!end) return holds = false, "";
      holds = holds && holdsInBrackets(text + 1, domain);
      text = end[1] == ':' ? end + 2 : end + 1;
    } else if (std::sscanf(text, "s%1[+-]%f:%n", sign, &a, &used) == 2 && used > 0) {
      holds = holds && (*sign == '+' ? vert > a : vert < a);
      text += used;
    } else if (std::sscanf(text, "%f%1[<>]%f:%n", &a, sign, &b, &used) == 3 && used > 0) {
      holds = holds && (*sign == '<' ? vert > a && vert < b : vert < a && vert > b);
      text += used;
    } else {
      return text;
    }
  }
}

void splitEntry(const char* text, String& name, String& attr) {
  const int at = nameLength(text);
  name = String(text, at);
  attr.copy(text[at] ? text + at + 1 : "");
  if (text[at] == '[') {
    const int close = attr.index(']');
    if (close >= 0) attr = String(attr.get(), close);
  }
}

}  // namespace KYV
