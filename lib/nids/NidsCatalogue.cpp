#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "KYV/StrLib.h"
#include "ProductTable.h"

namespace KYV {

namespace {

constexpr int FIELD = 50;  // bytes of a name or label field
constexpr const char* MODES[] = {"Md=mt", "Md=cl", "Md=pr"};
constexpr int DAY = 86400;     // seconds
constexpr int PLAIN_TEXT = 1;  // the packet of a text without value

}  // namespace

bool NidsFile::isBRef() const { return findProduct(code).family & BREF; }
bool NidsFile::isDHR() const { return findProduct(code).family & DHR; }
bool NidsFile::isBSW() const { return findProduct(code).family & BSW; }
bool NidsFile::isCRef() const { return findProduct(code).family & CREF; }
bool NidsFile::isVel() const { return findProduct(code).family & VEL; }
bool NidsFile::isSRVel() const { return findProduct(code).family & SRVEL; }
bool NidsFile::isTops() const { return findProduct(code).family & TOPS; }
bool NidsFile::isEnhTops() const { return findProduct(code).family & ENH_TOPS; }
bool NidsFile::isLRef() const { return findProduct(code).family & LREF; }
bool NidsFile::isVIL() const { return findProduct(code).family & VIL; }
bool NidsFile::isDigVIL() const { return findProduct(code).family & DIG_VIL; }
bool NidsFile::isVAD() const { return findProduct(code).family & VAD; }
bool NidsFile::isPrec() const { return findProduct(code).family & PREC; }
bool NidsFile::isDPrec() const { return findProduct(code).family & DPREC; }
bool NidsFile::isDPrRate() const { return findProduct(code).family & DPR_RATE; }
bool NidsFile::isHydroClass() const { return findProduct(code).family & HYDRO; }
bool NidsFile::isCorrel() const { return findProduct(code).family & CORREL; }
bool NidsFile::isDPA() const { return findProduct(code).family & DPA; }
bool NidsFile::isDSP() const { return findProduct(code).family & DSP; }
bool NidsFile::isDRef() const { return findProduct(code).family & DREF; }
bool NidsFile::isDual() const { return findProduct(code).family & DUAL; }

bool NidsFile::isPageText() const {
  constexpr std::uint32_t ACCUMULATIONS = PREC | NEW_PREC | HOUR_ACC | DPREC | DPR_RATE | DPA | DSP;
  return pk_code == PLAIN_TEXT && (findProduct(code).family & ACCUMULATIONS);
}

int NidsFile::setInfo(char* s) {
  if (!s) return 0;
  const char* name = src >= NidsInfo::MULTI_RADAR ? findMosaicName(code) : findProduct(code).name;
  if (name) {
    StrLib::copy(s, FIELD, name);
  } else {
    StrLib::printf(s, FIELD, "Not supported - %d", code);
  }
  return 1;
}

int NidsFile::setMisc(char* s) {
  if (!s) return 0;
  const std::uint32_t family = findProduct(code).family;
  StrLib::copy(s, FIELD, mode >= 0 && mode <= 2 ? MODES[mode] : "");
  if (src >= NidsInfo::MULTI_RADAR) {
    StrLib::aprintf(s, FIELD, " Res=%3.1f", res);
  } else if (!(family & (VAD | SRVEL))) {
    StrLib::aprintf(s, FIELD, " Rng=%.0f(%.1f)", range, res);
  }
  if (family & (BREF | VEL | SRVEL | DREF | ANGLE)) StrLib::aprintf(s, FIELD, " El=%.1f", scan_elev);

  // Accumulation start: a day number and minutes.
  const int since = family & SINCE_LATE ? 4 : family & SINCE_EARLY ? 0 : -1;
  if (since >= 0) {
    date.set((static_cast<long>(param[since]) - 1) * DAY + static_cast<long>(param[since + 1]) * 60);
    StrLib::aprintf(s, FIELD, " B=%d/%.2d:%.2d", date.getDay(), date.getHour(), date.getMinute());
  }
  if (family & SRVEL) {
    StrLib::aprintf(s, FIELD, " Stm=%.0f-%.0f", static_cast<float>(param[8]) / 10.0f,
                    static_cast<float>(param[7]) / 10.0f);
  }
  if (family & LREF) StrLib::aprintf(s, FIELD, " Lyr=%d-%d", param[4], param[5]);

  const Extremes& extremes = findExtremes(family);
  if (extremes.decimals >= 0 && extremes.low >= 0) {
    StrLib::aprintf(s, FIELD, " Mn,Mx=%.*f,%.*f", extremes.decimals, nmax, extremes.decimals, max);
  } else if (extremes.decimals >= 0) {
    StrLib::aprintf(s, FIELD, " Mx=%.*f", extremes.decimals, max);
  }
  return 1;
}

}  // namespace KYV
