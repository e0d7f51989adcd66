#include "KYV/ColorBar.h"

#include <cmath>
#include <cstdio>

#include "KYV/ParamTable.h"

namespace KYV {

int ColorBar::init() {
  *this = ColorBar();
  return 1;
}

int ColorBar::setLocate(const char* text) { return StrLib::copy(locate, text), 1; }

std::span<const ParamKey<ColorBar>> ColorBar::getKeys() {
  using Key = ParamKey<ColorBar>;
  static constexpr Key KEYS[] = {
      {"lo", ParamMatch::IBegins, [](ColorBar& bar, const ParamItem& i) { bar.setLocate(i.after()); }},
      {"ra", ParamMatch::IBegins,
       [](ColorBar& bar, const ParamItem& i) {
         Range r;
         if (std::sscanf(i.from(3), "%f:%f", &r.min, &r.max) != 2) return;
         if (std::isfinite(r.min) && std::isfinite(r.max)) bar.setRange(r);
       },
       ParamForm::Numbers},
  };
  return KEYS;
}

int ColorBar::setParam(const char* text) { return setParams(getKeys(), text, *this); }

void ColorBar::explain(ParamAnswer& answer) { answer.ask(getKeys()); }

int ColorBar::print() const {
  std::printf("ColorBar\n");
  std::printf("Locate: %s\n", locate);
  return 1;
}

}  // namespace KYV
