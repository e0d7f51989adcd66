#include "PsPage.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <system_error>

bool PsPage::read(const std::string& file) {
  std::ifstream in(file);
  if (!in) return false;
  lines.clear();
  paths.clear();
  Path path{};
  for (std::string line; std::getline(in, line);) {
    if (line.ends_with(" mv") || line.ends_with(" ln")) {
      std::pair<double, double> p;
      const char* last = line.data() + line.size();
      const auto x = std::from_chars(line.data(), last, p.first);
      if (x.ec != std::errc() || std::from_chars(x.ptr + 1, last, p.second).ec != std::errc()) return false;
      path.points.push_back(p);
    } else if (line == "np") {
      path.points.clear();
    } else if (line == "stroke" || line == "fill") {
      path.filled = line == "fill";
      paths.push_back(path);
    } else if (line.ends_with(" setrgbcolor") || line.ends_with(" setgray")) {
      path.color = line.substr(0, line.rfind(' '));
    } else {
      lines.push_back(line);
    }
  }
  return !lines.empty() && lines.back() == "%%EOF";
}

std::map<std::string, int> PsPage::countFills() const {
  std::map<std::string, int> counts;
  for (const Path& p : paths) {
    if (p.filled) ++counts[p.color];
  }
  return counts;
}

PsPage::Path PsPage::getBorder() const {
  Path best{};
  double size = 0.0;
  for (const Path& p : paths) {
    if (p.filled || p.points.size() != 5 || p.points.front() != p.points.back()) continue;
    const double area = std::abs((p.points[2].first - p.points[0].first) * (p.points[2].second - p.points[0].second));
    if (area > size) size = area, best = p;
  }
  return best;
}

std::vector<std::string> PsPage::getLines(const std::string& beginning) const {
  std::vector<std::string> found;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
               [&](const std::string& line) { return line.starts_with(beginning); });
  return found;
}
