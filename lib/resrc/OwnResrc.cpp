// The table of the program's own options, and the forms of their values.
#include "KYV/OwnResrc.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <system_error>

#include "KYV/Const.h"
#include "KYV/ResrcDBList.h"
#include "KYV/StrLib.h"

namespace KYV {

namespace {

using Kind = OwnResrc::Kind;

// A new option is a row here; the code that it changes asks Kyv::resrc for the long name.
// clang-format off
constexpr OwnResrc::Option OPTIONS[] = {
    {"strict",   "kyvstrict",  "sx", Kind::Flag,  "-strict      The exit status tells what went wrong, bad options end the run"},
    {"exact",    "kyvexact",   "xa", Kind::Flag,  "-exact       Places, values and colours as the radar measured them"},
    {"max_age",  "kyvmaxage",  "mx", Kind::Age,   "-mx age      Older data are marked: minutes, or 2h, 1d"},
    {"net_time", "kyvnettime", "nt", Kind::Count, "-nt seconds  Time for all transfers of the run (30)"},
    {"products", "kyvproducts", "Pr", Kind::Flag,  "-products    Print the table of products"},
    {"version",  "kyvversion", "V",  Kind::Flag,  "-version     Print version, build and libraries"},
};
// clang-format on

// Nor may a short form begin a name of the standard table, which is looked through first; a test sees to that.
constexpr bool areDistinct() {
  for (std::size_t i = 0; i < std::size(OPTIONS); ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      if (std::string_view(OPTIONS[i].cmdln) == OPTIONS[k].cmdln ||
          std::string_view(OPTIONS[i].name) == OPTIONS[k].name) {
        return false;
      }
    }
  }
  return true;
}
static_assert(areDistinct(), "OPTIONS: one row each");

struct Unit {
  char letter;
  int minutes;
};
constexpr Unit AGE_UNITS[] = {{'m', 1}, {'h', 60}, {'d', 1440}};

constexpr const char* YES_NO[] = {"yes", "no", "on", "off", "true", "false"};

bool isCount(std::string_view text) {
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() && value <= INT_MAX;
}

}  // namespace

std::span<const OwnResrc::Option> OwnResrc::getAll() { return OPTIONS; }

const OwnResrc::Option* OwnResrc::find(const char* name) {
  const auto row = std::find_if(std::begin(OPTIONS), std::end(OPTIONS), [name](const Option& o) {
    return StrLib::equal(o.name, name) || StrLib::equal(o.cmdln, name);
  });
  return row == std::end(OPTIONS) ? nullptr : &*row;
}

int OwnResrc::add(ResrcDBList& list) {
  for (const Option& o : OPTIONS) list.add(o.name, o.env, o.cmdln, o.help);
  return 1;
}

bool OwnResrc::isValue(Kind kind, const char* text) {
  text = StrLib::valid(text, "");
  switch (kind) {
    case Kind::Flag:
      return !*text || std::any_of(std::begin(YES_NO), std::end(YES_NO),
                                   [text](const char* word) { return StrLib::iequal(text, word); });
    case Kind::Count:
      return isCount(text);
    case Kind::Age:
      return !Const::isMissing(getMinutes(text));
    case Kind::Text:
      break;
  }
  return true;
}

const char* OwnResrc::describe(Kind kind) {
  switch (kind) {
    case Kind::Flag:
      return "yes or no";
    case Kind::Count:
      return "a whole number";
    case Kind::Age:
      return "minutes, or hours as 2h, or days as 1d";
    case Kind::Text:
      break;
  }
  return "a text";
}

int OwnResrc::getMinutes(const char* text) {
  std::string_view digits = StrLib::valid(text, "");
  int unit = 1;
  for (const Unit& u : AGE_UNITS) {
    if (!digits.ends_with(u.letter)) continue;
    unit = u.minutes;
    digits.remove_suffix(1);
    break;
  }
  int value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool whole = error == std::errc() && end == digits.data() + digits.size() && value >= 0;
  return whole && value <= INT_MAX / unit ? value * unit : Const::MISS;
}

}  // namespace KYV
