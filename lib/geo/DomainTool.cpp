#include "KYV/DomainTool.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

#include "KYV/CityTool.h"
#include "KYV/Domain.h"
#include "KYV/Kyv.h"
#include "KYV/Number.h"
#include "KYV/Region.h"
#include "KYV/String.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr const char* STATIONS = "sao.cty";
constexpr const char* RADARS = "rad.cty";
constexpr int MAX_DEPTH = 5;         // regions that name regions
constexpr int MAX_POINTS = 1000000;  // of a grid, a side
constexpr int PARAMS = 4;            // parameters that a projection text carries
constexpr int NX = 25;               // grid where the text gives none
constexpr int NY = 17;
constexpr float STEP = 1.2f;  // 120 km
constexpr const char* NOT_FOUND = "DomainTool::setParam: Unable to find: %s\n";
constexpr const char* INVALID = "DomainTool::decode: Invalid plot domain: %s\n";

struct FloatField {
  const char* name;
  float DomainVal::*value;
};
constexpr FloatField FLOATS[] = {{"plon", &DomainVal::plon},
                                 {"clat", &DomainVal::clat},
                                 {"clon", &DomainVal::clon},
                                 {"dx", &DomainVal::dx},
                                 {"dy", &DomainVal::dy}};
struct IntField {
  const char* name;
  int DomainVal::*value;
};
constexpr IntField INTS[] = {{"nx", &DomainVal::nx}, {"ny", &DomainVal::ny}};

// What a field list leaves to be filled in.
enum class Spacing { Given, Square, Default };  // dx and dy given, dy = dx, both STEP
struct FieldList {
  const char* names;
  Spacing spacing;
  bool stereo;   // polar stereographic
  bool grid;     // NX by NY points
  bool variant;  // codes of VARIANTS have their own
};
// clang-format off
constexpr FieldList LISTS[] = {
    {"proj,clat,clon,nx,ny,dx,dy",  Spacing::Given,    false, false, false},
    {"proj,id,nx,ny,dx,dy",         Spacing::Given,    false, false, false},
    {"proj,clat,clon,dx,dy",        Spacing::Given,    false, true,  false},
    {"proj,clat,clon,nx,ny,dx",     Spacing::Square,   false, false, false},
    {"clat,clon,nx,ny,dx,dy",       Spacing::Given,    true,  false, false},
    {"clat,clon,nx,ny,dx",          Spacing::Square,   true,  false, false},
    {"proj,id,dx,dy",               Spacing::Given,    false, true,  false},
    {"proj,clat,clon,dx",           Spacing::Square,   false, true,  true},
    {"clat,clon,nx,ny",             Spacing::Default,  true,  false, false},
    {"clat,clon,dx",                Spacing::Square,   true,  true,  false},
    {"proj,clat,clon",              Spacing::Default,  false, true,  true},
    {"clat,clon",                   Spacing::Default,  true,  true,  false},
    {"id,dx",                       Spacing::Square,   true,  true,  false},
    {"id",                          Spacing::Default,  true,  true,  false},
};
// Planes whose grid and spacing differ from the map's.
struct Variant {
  int code;
  int nx, ny;
  float dx, dy;  // where none is given; where dx is, dy follows in proportion
};
constexpr Variant VARIANTS[] = {
    {DomainVal::SKEWT, 12, 11, 4.5f, 0.1175f},
    {DomainVal::ZOOM,  NX, NY, 1.0f, 1.0f},
};
// clang-format on

bool isMissingWord(const char* word) { return StrLib::iequal(word, "miss") || StrLib::iequal(word, "none"); }

template <class T>
bool readGiven(const char* text, T& value) {
  T number{};
  if (!readNumber(text, number) || Const::isMissing(number)) return false;
  value = number;
  return true;
}

// "name", "name:plon", "name:plat:plon:p0:...", with ":e" behind the name for the ellipsoid; empty items are missing.
int setProj(DomainVal& val, const char* text) {
  const Strings items(text, ':');
  const int num = items.getNum(), code = DomainVal::getProj(items.getString(0));
  if (code == -1) return 0;
  DomainVal next = val;
  next.proj = code;
  next.ellipse = items.iequal(1, "e");
  float* const fields[] = {&next.plat, &next.plon, next.param, next.param + 1, next.param + 2, next.param + 3};
  static_assert(std::size(fields) == 2 + PARAMS);
  int at = next.ellipse ? 2 : 1;
  std::size_t field = num == 2 && !next.ellipse ? 1 : 0;
  for (; at < num; ++at, ++field) {
    if (field == std::size(fields) || (items.valid(at) && !readNumber(items.getString(at), *fields[field]))) return 0;
  }
  val = next;
  return 1;
}

// Whether a text can be an identifier: "id:..." or up to four capitals.
bool isStation(const char* text) {
  constexpr const char* CAPITALS = "uuuu";
  const int length = StrLib::length(text);
  return StrLib::iequal(text, "id:", 3) || (length >= 1 && length <= 4 && StrLib::check(text, CAPITALS + 4 - length));
}

// The place that a list of stations has for a key.
int setPlace(DomainVal& val, const char* file, const char* key) {
  EarthPoint place;
  if (!CityTool::locate(file, key, place) || place.isMissing()) return 0;
  val.clat = place.lat;
  val.clon = place.lon;
  return 1;
}

// "id:KTLX", "id:file:KTLX" or "KTLX".
int setStation(DomainVal& val, const char* text) {
  if (!isStation(text)) return 0;
  const std::string key = StrLib::iequal(text, "id:", 3) ? text + 3 : text;
  const std::size_t colon = key.rfind(':');
  const std::string file = colon == std::string::npos ? STATIONS : key.substr(0, colon);
  return setPlace(val, file.c_str(), key.substr(colon + 1).c_str());
}

// A radar or another station by its bare name, in any case; none in a list of the user's own.
int setBareStation(DomainVal& val, const char* name) {
  if (!StrLib::valid(name) || StrLib::index(name, ':') >= 0) return 0;
  return setPlace(val, RADARS, name) || setPlace(val, STATIONS, name);
}

template <class Field, std::size_t N>
const Field* findField(const Field (&fields)[N], const char* name) {
  const Field* row = std::ranges::find_if(fields, [name](const Field& f) { return StrLib::equal(f.name, name); });
  return row == std::end(fields) ? nullptr : row;
}

// Fills in what the list lacks; 0 when that makes no domain.
int complete(DomainVal& val, const FieldList& list) {
  if (list.variant && list.spacing == Spacing::Default && val.proj == DomainVal::SIZE) {
    if (!(val.clat >= 1.0f && val.clat <= MAX_POINTS && val.clon >= 1.0f && val.clon <= MAX_POINTS)) return 0;
    val.nx = static_cast<int>(val.clat);
    val.ny = static_cast<int>(val.clon);
    val.clat = val.clon = Const::MISS;
    return 1;
  }
  const Variant* own = std::ranges::find(VARIANTS, list.variant ? val.proj : -1, &Variant::code);
  const Variant fill = own == std::end(VARIANTS) ? Variant{val.proj, NX, NY, STEP, STEP} : *own;
  if (list.stereo) val.proj = DomainVal::PSTEREO;
  if (list.grid) {
    val.nx = fill.nx;
    val.ny = fill.ny;
  }
  if (list.spacing == Spacing::Default) val.dx = fill.dx;
  if (list.spacing != Spacing::Given) val.dy = val.dx * (fill.dy / fill.dx);
  return 1;
}

int decodeList(DomainVal& val, const Strings& items) {
  for (const FieldList& list : LISTS) {
    DomainVal next;
    if (DomainTool::setParams(next, items, list.names) && complete(next, list)) return val = next, 1;
  }
  return 0;
}

// The domain text of the region that an item may name: "fi:file", "fi:file:name", "file:name" or "name".
int findRegion(const char* item, String& text) {
  if (StrLib::iequal(item, "fi:", 3)) return Region::get(item + 3, text);
  if (StrLib::iequal(item, "id:", 3)) return 0;
  return StrLib::occurs(item, ':') == 1 ? Region::get(item, text) : Region::get(nullptr, item, text);
}

int decodeText(DomainVal& val, const char* text, int depth) {
  const Strings items(text, ',');
  const int num = items.getNum();
  const char* first = items.getString(0);
  if (num == 0 || depth > MAX_DEPTH) {
    if (num > 0) Kyv::report(Kyv::BADPARAM, INVALID, text);
    return 0;
  }
  if (isMissingWord(first)) return 1;

  // A short word may be a region as well as a station: it is missed only when it is neither.
  const bool word = num == 1 && !StrLib::iequal(first, "id:", 3) && isStation(first);
  DomainVal next;
  if (word && setStation(next, first)) return complete(next, *std::rbegin(LISTS)), val = next, 1;
  if (!word && decodeList(val, items)) return 1;

  String region;
  const bool named = StrLib::iequal(first, "fi:", 3);
  if (num == 1 && !named && StrLib::occurs(first, ':') >= 2) {
    if (DomainTool::setParam(next, first, "proj") && !Const::isMissing(next.plat) && !Const::isMissing(next.plon)) {
      next.clat = next.plat;
      next.clon = next.plon;
      next.nx = NX;
      next.ny = NY;
      next.dx = next.dy = STEP;
      return val = next, 1;
    }
  } else if ((num == 1 || named) && StrLib::valid(first) && findRegion(first, region)) {
    return decodeText(val, region.get(), depth + 1);
  }
  if (num == 1 && setBareStation(next, first)) return complete(next, *std::rbegin(LISTS)), val = next, 1;
  if (word) Kyv::report(Kyv::BADPARAM, NOT_FOUND, first);
  Kyv::report(Kyv::BADPARAM, INVALID, text);
  return 0;
}

}  // namespace

int DomainTool::proj(const char* name) { return DomainVal::getProj(name); }

int DomainTool::setParam(DomainVal& val, const char* value, const char* name) {
  if (StrLib::equal(name, "proj")) return setProj(val, value);
  if (StrLib::equal(name, "id")) {
    if (setStation(val, value) || setBareStation(val, value)) return 1;
    if (isStation(value)) Kyv::report(Kyv::BADPARAM, NOT_FOUND, value);
    return 0;
  }
  if (const FloatField* field = findField(FLOATS, name)) return readGiven(value, val.*field->value);
  if (const IntField* field = findField(INTS, name)) {
    int n = 0;
    if (!readGiven(value, n) || n < 1 || n > MAX_POINTS) return 0;
    val.*field->value = n;
  }
  return 1;
}

int DomainTool::setParams(DomainVal& val, const Strings& values, const char* names) {
  const Strings fields(names, ',');
  if (values.getNum() == 0 || values.getNum() != fields.getNum()) return 0;
  DomainVal next = val;
  for (int i = 0; i < fields.getNum(); ++i) {
    if (!setParam(next, values.getString(i), fields.getString(i))) return 0;
  }
  return val = next, 1;
}

int DomainTool::decode(DomainVal& val, const char* text) { return decodeText(val, text, 1); }

int DomainTool::decode(Domain& domain, const char* text) {
  DomainVal val = domain.get();
  if (!decode(val, text)) return 0;
  if (domain.set(val)) return 1;
  Kyv::report(Kyv::BADPARAM, INVALID, text);
  return 0;
}

int DomainTool::set(Domain& domain) { return decode(domain, Kyv::getResrc("plot_domain")); }

}  // namespace KYV
