#ifndef RADMAP_TESTS_PSPAGE_H
#define RADMAP_TESTS_PSPAGE_H

#include <map>
#include <string>
#include <utility>
#include <vector>

/// What a PostScript file of the program draws: its paths with their colours, read line by line.
class PsPage {
 public:
  struct Path {
    bool filled;
    std::string color;  // "1.00 0.94 0.08", as written
    std::vector<std::pair<double, double>> points;
  };

  /// False when the file cannot be read or does not end as a page does.
  bool read(const std::string& file);

  const std::vector<Path>& getPaths() const { return paths; }
  /// Filled polygons for each colour, the boxes of the colour bar among them.
  std::map<std::string, int> countFills() const;
  /// The rectangle of the map's border: the largest closed line of five points.
  Path getBorder() const;
  /// The lines outside the paths that begin with a text.
  std::vector<std::string> getLines(const std::string& beginning) const;

 private:
  std::vector<std::string> lines;
  std::vector<Path> paths;
};

#endif
