#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "KYV/Filename.h"
#include "KYV/Kyv.h"

namespace KYV {

namespace {

constexpr int HOUR = 3600;

// "h:m", "h" or ":m" at the start of the text, in seconds; null when there is no time, else the text after it.
const char* readTime(const char* text, int& secs) {
  int hours = 0;
  int minutes = 0;
  int n = 0;
  if (*text == ':') {
    if (std::sscanf(text, ":%4d%n", &minutes, &n) != 1) return nullptr;
  } else {
    if (std::sscanf(text, "%5d%n", &hours, &n) != 1) return nullptr;
    int more = 0;
    if (std::sscanf(text + n, ":%4d%n", &minutes, &more) == 1) n += more;
  }
  secs = hours * HOUR + minutes * 60;
  return text + n;
}

}  // namespace

int Filename::setNumFiles(int n) {
  num_dir = n < 0 ? -1 : 1;
  num_file = std::clamp(std::abs(std::max(n, -MAX_FILES)), 1, MAX_FILES);
  num_type = FILES;
  return 1;
}

int Filename::setNumFiles(const char* text) {
  if (!StrLib::valid(text)) return 0;
  const bool backward = *text == '-';
  int window = 0;
  const char* rest = readTime(text + (backward ? 1 : 0), window);
  if (!rest) return 0;
  num_dir = backward ? -1 : 1;
  num_type = HOURS;
  num_off = 0;
  window = std::abs(window);
  if (*rest == '-') {
    const char* after = readTime(rest + 1, num_off);
    if (after) rest = after;
  }
  own_off = Const::MISS;
  if (*rest == ',' && readTime(rest + 1, own_off) && own_off < 0) own_off = Const::MISS;
  file_off = Const::isMissing(own_off) ? conv.off : own_off;
  int period = file_off;
  if (Const::isMissing(period)) {
    num_file = 1;
  } else {
    if (period == 0) period = file_off = HOUR;
    num_file = std::clamp((window + num_off) / period + 1, 1, MAX_FILES);
  }
  Kyv::outDebug(5, "Set NumFiles: %d %d = %d\n", window, period, num_file);
  return 1;
}

int Filename::setFile(int i) {
  if (i < 0 || i >= num_file) return 0;
  if (files.getNum() > 1) {
    return files.valid(i) ? setLiteral(files.getString(i)) : 0;
  }
  if (fixed || !isNamed()) return i == 0 && is_set;
  if (!base_date.isSet()) return 0;
  const std::int64_t k = num_dir < 0 ? i - num_file + 1 : i;
  const std::int64_t step = Const::isMissing(file_off) ? 0 : file_off;
  Date d = base_date;
  d += static_cast<int>(std::clamp<std::int64_t>(k * step + num_off, INT32_MIN, INT32_MAX));
  const Date base = base_date;
  const int there = findDate(d, 0);
  base_date = base;
  return there;
}

// The frames of a list have nothing to do with the dates of the loop: the k-th date is the k-th file.
int Filename::setListed(const Date& d) {
  const auto at = std::lower_bound(asked.begin(), asked.end(), d.secs);
  const auto k = static_cast<int>(at - asked.begin());
  if (k >= files.getNum()) return 0;
  if (at == asked.end() || *at != d.secs) asked.insert(at, d.secs);
  const int there = setFile(k) && exist();
  date = d;
  return there;
}

int Filename::setFile(const Date& d) {
  if (files.getNum() > 1) return setListed(d);
  if (fixed || !isNamed()) return exist();
  const Date base = base_date;
  const int there = findDate(d, MAX_AGE);
  base_date = base.isSet() ? base : d;
  return there;
}

int Filename::setFile(const Date& d, const char* spec) {
  if (!StrLib::valid(spec)) return setFile(d);
  const int chosen = setFile(spec);
  return chosen && (fixed || setFile(d));
}

}  // namespace KYV
