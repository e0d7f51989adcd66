#ifndef RADMAP_TESTS_METAPAGE_H
#define RADMAP_TESTS_METAPAGE_H

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// What a metafile of the program draws, in its order, each path with its colour.
class MetaPage {
 public:
  struct Path {
    bool filled;
    int color;  // 0xRRGGBB
    std::vector<std::pair<double, double>> points;

    bool isClosedRectangle() const { return !filled && points.size() == 5 && points.front() == points.back(); }
  };

  explicit MetaPage(const std::string& file) {
    std::ifstream in(file);
    int line = 0xFFFFFF, fill = 0xFFFFFF;
    for (std::string text; std::getline(in, text);) {
      std::istringstream record(text);
      std::string key;
      record >> key;
      if (key == "LCLR") record >> line;
      if (key == "FCLR") record >> fill;
      if (key != "L" && key != "F") continue;
      Path path{key == "F", key == "F" ? fill : line, {}};
      std::size_t n = 0;
      double x = 0.0, y = 0.0;
      char comma = 0;
      record >> n;
      while (record >> x >> comma >> y) path.points.emplace_back(x, y);
      if (path.points.size() == n) paths.push_back(path);
    }
  }

  /// The map's border: the largest closed line of five points.
  Path getBorder() const {
    Path largest{};
    double most = 0.0;
    for (const Path& p : paths) {
      if (!p.isClosedRectangle()) continue;
      const double area = std::abs((p.points[2].first - p.points[0].first) * (p.points[2].second - p.points[0].second));
      if (area > most) most = area, largest = p;
    }
    return largest;
  }
  /// Colours of the lines and fills (fills negative) in the order drawn, repeated ones left out.
  std::vector<int> getColors() const {
    std::vector<int> colors;
    for (const Path& p : paths) {
      const int color = p.filled ? -p.color : p.color;
      if (colors.empty() || colors.back() != color) colors.push_back(color);
    }
    return colors;
  }
  std::vector<Path> getPaths(int color, bool filled = false) const {
    std::vector<Path> some;
    std::copy_if(paths.begin(), paths.end(), std::back_inserter(some),
                 [&](const Path& p) { return p.color == color && p.filled == filled; });
    return some;
  }

  std::vector<Path> paths;
};

#endif
