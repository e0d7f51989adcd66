#include "DeviceOptions.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "KYV/Kyv.h"
#include "KYV/NearWord.h"
#include "KYV/StrLib.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

// No number at all is Const::MISS, which is as far out of range as "nan".
bool within(float v, float low, float high) { return v >= low && v <= high; }

}  // namespace

const Paper* DeviceOptions::findPaper(std::span<const Paper> papers, const char* name) {
  const auto row = std::ranges::find_if(papers, [&](const Paper& p) { return StrLib::iequal(p.name, name); });
  return row != papers.end() ? &*row : nullptr;
}

bool DeviceOptions::getNumber(const Strings& items, int i, int from, float low, float high, float& value) {
  const float v = items.getFloat(i, from);
  if (!within(v, low, high)) return false;
  value = v;
  return true;
}

bool DeviceOptions::getSize(const Strings& items, int i, int from, char sep, float low, float high, float& w,
                            float& h) {
  const Strings sides(items.getString(i, from), sep);
  float first = 0.0f, second = 0.0f;
  if (sides.getNum() != 2 || !getNumber(sides, 0, 0, low, high, first) || !getNumber(sides, 1, 0, low, high, second)) {
    return false;
  }
  w = first;
  h = second;
  return true;
}

void DeviceOptions::refuseItem(const char* device, const char* item, std::span<const char* const> words) {
  const std::string_view text = item;
  NearWord near(text.substr(0, text.find('=')));
  bool known = false;
  for (const char* word : words) {
    near.offer(word);
    known = known || text.substr(0, text.find('=')) == word;
  }
  const std::string why = known ? "this value is of no use; it is ignored" : near.explain("option", "it is ignored");
  Kyv::report(Kyv::BADPARAM, "%s: %s: %s\n", device, item, why.c_str());
}

void DeviceOptions::refuseSize(const char* device, float w, float h, int most, float kept_w, float kept_h) {
  Kyv::report(Kyv::BADPARAM,
              "%s: a size of %.0f x %.0f pixels is not possible, 1 x 1 to %d x %d are; %.0f x %.0f is used\n", device,
              static_cast<double>(w), static_cast<double>(h), most, most, static_cast<double>(kept_w),
              static_cast<double>(kept_h));
}

}  // namespace KYV
