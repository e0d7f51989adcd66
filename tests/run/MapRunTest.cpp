// The map background in whole runs, read from their metafiles.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "HttpServer.h"
#include "MetaPage.h"
#include "NidsBuilder.h"
#include "Program.h"
#include "PsPage.h"

namespace {

constexpr int RED = 0xE6000A, GREEN = 0x228F41, BLUE = 0x0A14E6, YELLOW = 0xFFF014, WHITE = 0xFFFFFF;
constexpr float LAT = 35.333f, LON = -97.278f;

// A map of 20 by 10 degrees around 35,-97, whose plane has its degrees.
constexpr const char* PLANE = " -pd ll,35,-97,21,11,1,1 ";
struct Plane {
  explicit Plane(const MetaPage& page) {
    for (const auto& [x, y] : page.getBorder().points) {
      x0 = std::min(x0, x), x1 = std::max(x1, x), y0 = std::min(y0, y), y1 = std::max(y1, y);
    }
  }
  std::pair<double, double> at(double lat, double lon) const {
    return {x0 + (x1 - x0) * (lon + 107.0) / 20.0, y1 + (y0 - y1) * (lat - 30.0) / 10.0};
  }
  double x0 = 1e9, x1 = -1e9, y0 = 1e9, y1 = -1e9;  // of the border
};

class MapRun : public testing::Test {
 protected:
  MapRun() {
    NidsBuilder b;
    std::vector<int> levels = {0x8000};
    for (int i = 1; i < 16; ++i) levels.push_back(5 * i);
    b.header(19, 9).location(LAT, LON).thresholds(levels).param(3, 5).radials(230);
    for (int i = 0; i < 360; ++i) b.radial(static_cast<float>(i), 1.0f, std::vector<NidsBuilder::Run>{{20, 8}});
    program.write("p.nids", b.bytes());
    // Lines through the middle of the map, one as each kind of file.
    text("a.map", "   2   35.0   35.0  -96.0  -98.0   12\n 35.0 -98.0\n 35.0 -96.0\n");
    text("b.map", "   2   36.0   36.0  -96.0  -98.0   12\n 36.0 -98.0\n 36.0 -96.0\n");
    text("c.map", "   2   37.0   37.0  -96.0  -98.0   12\n 37.0 -98.0\n 37.0 -96.0\n");
    text("k.kml",
         "<?xml version='1.0'?><kml><Placemark><LineString><coordinates>-98,36 -96,36</coordinates>"
         "</LineString></Placemark></kml>");
  }
  void text(const std::string& name, const std::string& content) {
    program.write(name, std::vector<unsigned char>(content.begin(), content.end()));
  }
  MetaPage draw(const std::string& options) {
    const Program::Result r = program.run("-de meta,m.meta,sz=800x600 " + options + " p.nids", "SOURCE_DATE_EPOCH=1");
    EXPECT_EQ(0, r.status) << r.output;
    said = r.output;
    return MetaPage(program.path("m.meta"));
  }
  // Whether lines of these colours were drawn, and in which order, the data (fills of yellow) among them.
  std::string order(const std::string& options) {
    std::string result;
    for (const int color : draw(options).getColors()) {
      const char c = color == RED ? 'r' : color == GREEN ? 'g' : color == BLUE ? 'b' : color == -YELLOW ? 'D' : 0;
      if (c && (result.empty() || result.back() != c)) result += c;
    }
    return result.substr(0, result.find_last_of("rgbD") + 1);
  }

  Program program;
  std::string said;
};

TEST_F(MapRun, SignsPlaceEntriesUnderAndOverTheData) {
  const struct {
    const char* what;
    const char* options;
    const char* order;  // D the data, then the colour bar's box of the same colour
  } CASES[] = {
      {"all three", "-mf=-a.map:red,b.map:blue,+c.map:green", "rDbgD"},
      {"the data hide nothing", "-mf=+c.map:green,b.map:blue,-a.map:red", "rDbgD"},
      {"no map", "-mf=a.map:red -dr=-map", "D"},
      {"nothing drawn without colour", "-mf=a.map:off", "D"},
      {"files beside each other", "-mf=a.map:red,nofile.map:blue,b.map:green", "DrgD"},
      {"a list file by its ending", "-mf=l.mpl", "rDbgD"},
      {"a list file by its prefix", "-mf=fi:list", "rDbgD"},
      {"a list under the data", "-mf=-fi:list", "rD"},
      {"a list over the data", "-mf=+l.mpl", "DgD"},
      {"a missing list", "-mf=none.mpl,a.map:red", "DrD"},
      {"the map colour", "-com blue -mf=a.map", "DbD"},
      {"a line colour of its own", "-mf=a.map:green:coln=red", "DrD"},
      {"attributes in brackets", "-mf=a.map[red:wi=2],b.map:blue", "DrbD"},
  };
  text("l.mpl", "# a comment a.map:yellow\n-a.map:red b.map:blue\n\n+c.map:green\n");
  text("list", "-a.map:red b.map:blue +c.map:green");
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.order, order(std::string(PLANE) + c.options)) << said;
  }
  draw("-mf=none.mpl");
  EXPECT_NE(std::string::npos, said.find("MapPlot_draw: Unable to open map list file: none.mpl\n"));
}

TEST_F(MapRun, ConditionsBoundTheScale) {
  // The map is 10 degrees high, its centre at 35,-97.
  const struct {
    const char* entry;
    bool drawn;
  } CASES[] = {
      {"s+9:a.map:red", true},
      {"s+11:a.map:red", false},
      {"s-11:a.map:red", true},
      {"s-9:a.map:red", false},
      {"s+9:s-11:a.map:red", true},
      {"[12]a.map:red", true},
      {"[9]a.map:red", false},
      {"[0,30,40]a.map:red", true},
      {"[0,36,40]a.map:red", false},
      {"[0,30,40,-100,-90]a.map:red", true},
      {"[0,30,40,-90,-100]a.map:red", false},
      {"[0,30,40,90,-90]a.map:red", true},
      {"[9<11]a.map:red", true},
      {"[11>9]:a.map:red", true},
      {"[2<9]a.map:red", false},
      {"9<11:a.map:red", true},
      {"[a.map:red", false},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.entry);
    EXPECT_EQ(c.drawn ? "DrD" : "D", order(std::string(PLANE) + "'-mf=" + c.entry + "'"));
  }
}

TEST_F(MapRun, LinesLieWhereTheirPointsAre) {
  for (const char* file : {"b.map", "k.kml"}) {
    SCOPED_TRACE(file);
    const MetaPage page = draw(std::string(PLANE) + "-mf=" + file + ":red");
    const Plane plane(page);
    const std::vector<MetaPage::Path> lines = page.getPaths(RED);
    ASSERT_FALSE(lines.empty());
    for (const auto& [index, lon] : {std::pair{0, -98.0}, {1, -96.0}}) {
      const auto [x, y] = plane.at(36.0, lon);
      EXPECT_NEAR(x, lines[0].points[static_cast<std::size_t>(index)].first, 0.5);
      EXPECT_NEAR(y, lines[0].points[static_cast<std::size_t>(index)].second, 0.5);
    }
  }
}

TEST_F(MapRun, SegmentsBesideTheMapAreNotRead) {
  // The headers lie: points that nobody reads cannot be drawn.
  text("out.map",
       "   2   60.0   50.0  -96.0  -98.0   12\n 35.0 -98.0\n 35.0 -96.0\n"
       "   2   36.0   34.0  -50.0  -60.0   12\n 35.0 -98.0\n 35.0 -96.0\n"
       "   2    0.0    0.0  -96.0  -98.0   12\n 35.0 -98.0\n 35.0 -96.0\n"
       "   2   60.0   20.0  -96.0  -98.0   12\n 36.0 -98.0\n 36.0 -96.0\n");
  EXPECT_EQ(1u, draw(std::string(PLANE) + "-mf=out.map:red").getPaths(RED).size());
}

TEST_F(MapRun, PenIsLiftedBehindTheGlobe) {
  std::string points;
  for (int lon = -180; lon < 180; lon += 2) points += "35.0 " + std::to_string(lon) + "\n";
  text("round.map", "  180   35.0   35.0  178.0 -180.0   12\n" + points);
  const MetaPage page = draw("-pd ortho:0:0,0,0,140,140,1,1 -mf=round.map:red");
  const auto border = page.getBorder().points;
  const auto [low, high] = std::minmax_element(border.begin(), border.end());
  const double longest = (high->first - low->first) / 20.0;
  for (const MetaPage::Path& p : page.getPaths(RED)) {
    for (std::size_t i = 1; i < p.points.size(); ++i) {
      EXPECT_LT(std::hypot(p.points[i].first - p.points[i - 1].first, p.points[i].second - p.points[i - 1].second),
                longest);
    }
  }
}

TEST_F(MapRun, OutlinesAreFilled) {
  text("box.map",
       "   5   36.0   34.0  -95.0  -99.0   15\n 34 -99\n 34 -95\n 36 -95\n 36 -99\n 34 -99\n"
       "   3   36.0   34.0  -95.0  -99.0   15\n 34 -99\n 34 -95\n 36 -95\n");
  const struct {
    const char* param;
    std::size_t fills, lines;
  } CASES[] = {{"fill", 1, 1}, {"fc", 1, 2}, {"fill_cont", 1, 2}, {"plot", 0, 2}};
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.param);
    const MetaPage page = draw(std::string(PLANE) + "-mf=box.map:blue -pa " + c.param);
    const Plane plane(page);
    const auto inside = [&](const MetaPage::Path& p) {
      return std::all_of(p.points.begin(), p.points.end(),
                         [&](const auto& q) { return q.second < plane.at(30.0, 0.0).second - 1.0; });
    };
    auto fills = page.getPaths(BLUE, true);
    std::erase_if(fills, [&](const auto& p) { return !inside(p); });
    EXPECT_EQ(c.fills, fills.size());
    EXPECT_EQ(c.lines, page.getPaths(BLUE).size());
  }
}

TEST_F(MapRun, ParallelsAndMeridiansAreDrawnOnce) {
  const auto horizontal = [](const MetaPage& page, int color) {
    std::size_t n = 0;
    for (const MetaPage::Path& p : page.getPaths(color)) {
      const auto [low, high] = std::minmax_element(p.points.begin(), p.points.end());
      n += p.points.front().second == p.points.back().second && high->first - low->first > 300.0;
    }
    return n;
  };
  constexpr int MAGENTA = 0x701274;
  // 30 and 40 are the edges; 35 lies inside.
  const struct {
    const char* options;
    int color;
    std::size_t parallels;
  } CASES[] = {
      {"-pa lalo -mf=a.map:red", MAGENTA, 3},
      {"-pa lalo=2:10 -mf=a.map:red", MAGENTA, 6},
      {"-pa lalo=35 -coll green -mf=a.map", GREEN, 0},
      {"-mf=lalo:2.5:5:red", RED, 5},
      {"-mf=lalo:5[blue]", BLUE, 3},
      {"-pa lalo=0 -mf=a.map:red", MAGENTA, 0},
      {"-pa lalo=0.0001 -mf=a.map:red", MAGENTA, 0},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.options);
    EXPECT_EQ(c.parallels, horizontal(draw(std::string(PLANE) + c.options), c.color));
  }
}

TEST_F(MapRun, WhiteIsBlackOnPaper) {
  const auto lines = [&](const std::string& map, const std::string& color) {
    const Program::Result r =
        program.run("-de postscript,out.ps,color -dr=-text,-bord" + std::string(PLANE) + map + " p.nids");
    PsPage page;
    EXPECT_TRUE(page.read(program.path("out.ps"))) << r.output;
    const auto& paths = page.getPaths();
    return std::count_if(paths.begin(), paths.end(),
                         [&](const PsPage::Path& p) { return !p.filled && p.points.size() == 2 && p.color == color; });
  };
  EXPECT_EQ(1, lines("-mf=a.map:red", "0.90 0.00 0.04"));
  EXPECT_EQ(0, lines("-mf=a.map:white", "1.00 1.00 1.00"));
  EXPECT_EQ(1, lines("-mf=a.map:white", "0.00 0.00 0.00") - lines("-mf=a.map:red", "0.00 0.00 0.00"));
  // What entries and overlays draw without a colour of their own.
  text("p.raw", "35 -97 Here\n");
  const auto halves = [](const std::vector<int>& values) {
    std::vector<unsigned char> b;
    for (const int v : values) b.insert(b.end(), {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
    return b;
  };
  NidsBuilder b;
  b.header(166, 9).location(LAT, LON).raw(halves({0x0802, 2, 6, 0x0E03, 0x8000, 0, 0, 8, 200, 0, 0, 200}));
  b.raw(halves({25, 6, 100, 100, 80}));
  program.write("p.nids", b.bytes());
  for (const char* overlay : {"-mf=a.map:off", "-mf=rf:p.raw", "-mf=grid:1", "-mf=mk:35:-97:star"}) {
    SCOPED_TRACE(overlay);
    const Program::Result r =
        program.run("-de postscript,out.ps,color -dr=-text,-bord" + std::string(PLANE) + overlay + " p.nids");
    PsPage page;
    EXPECT_TRUE(page.read(program.path("out.ps"))) << r.output;
    int black = 0, white = 0;
    for (const PsPage::Path& p : page.getPaths()) {
      black += !p.filled && p.color == "0.00 0.00 0.00";
      white += !p.filled && p.color == "1.00 1.00 1.00";
    }
    EXPECT_GT(black, overlay == std::string("-mf=a.map:off") ? 1 : 2) << "the contour, the circle, the entry";
    EXPECT_EQ(0, white);
  }
}

// Coasts and borders wherever a map lies, beyond the date line as well, and drawn once.
TEST_F(MapRun, TheDefaultMapReachesAroundTheWorld) {
  constexpr int GRAY = 0x808080, LGRAY = 0xAEAEAE;
  const struct {
    const char* what;
    const char* domain;
    std::size_t lines;  // at least
  } CASES[] = {
      {"Berlin", "52.5,13.4,25,17,0.6", 10},
      {"Sydney", "-33.9,151,25,17,0.6", 2},
      {"Rio", "-23,-43,25,17,0.6", 2},
      {"Tokyo", "35.5,139.7,25,17,0.6", 5},
      {"the Aleutians", "51.5,179.5,25,17,0.3", 5},
      {"from the other side", "51.5,-179.5,25,17,0.3", 5},
      {"Chukotka", "66,-172,25,17,0.7", 10},
      {"Greenland", "62,-47,25,17,0.6", 5},
      {"Oklahoma", "35.3,-97.3,25,17,0.3", 1},
      {"Caracas", "10.5,-67,25,17,0.4", 5},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    const MetaPage page = draw(std::string("-dr map -pd ") + c.domain);
    std::size_t lines = 0;
    for (const MetaPage::Path& p : page.paths) lines += p.points.size() > 1 && (p.color == LGRAY || p.color == GRAY);
    EXPECT_GE(lines, c.lines);
  }
  // No edge of a coast comes twice.
  std::set<std::pair<std::pair<double, double>, std::pair<double, double>>> edges;
  int twice = 0;
  for (const MetaPage::Path& p : draw("-dr map -pd 60,-48,25,17,1").getPaths(LGRAY)) {
    for (std::size_t i = 1; i < p.points.size(); ++i) {
      if (p.points[i] != p.points[i - 1]) twice += !edges.insert(std::minmax(p.points[i - 1], p.points[i])).second;
    }
  }
  EXPECT_LT(twice, 10);
}

// A radar beside the date line, on maps that end there, go over it, and have their seam elsewhere.
TEST_F(MapRun, CellsAndLandReachOverTheSeam) {
  NidsBuilder b;
  b.header(19, 9).location(60.8f, 179.9f).thresholds({0x8000, 5, 10, 15, 20, 25, 30, 35, 40}).param(3, 5).radials(230);
  for (int i = 0; i < 360; ++i) b.radial(static_cast<float>(i), 1.0f, std::vector<NidsBuilder::Run>{{20, 8}, {200, 0}});
  program.write("p.nids", b.bytes());
  std::string coast = "  10   -70.0  -90.0  180.0 -180.0   15\n";
  for (int i = 0; i <= 6; ++i) coast += "-70.0 " + std::to_string(-180 + 60 * i) + ".0\n";
  text("land.map", coast + "-90.0 180.0\n-90.0 -180.0\n-70.0 -180.0\n");
  const auto fills = [&](const std::string& domain, int color) {
    const MetaPage page = draw("-mf=-land.map:green:coln=blue -pa fc -dr=-text,bord -pd " + domain);
    const Plane map(page);
    struct {
      std::size_t count = 0;
      double widest = 0.0;
      double sum = 0.0;
      std::size_t lines = 0;
    } found;
    for (const MetaPage::Path& p : page.getPaths(color, true)) {
      if (p.points[0].second > map.y1 + 1.0) continue;  // of the colour bar
      const auto [low, high] = std::minmax_element(p.points.begin(), p.points.end());
      const double width = (high->first - low->first) / (map.x1 - map.x0);
      found.widest = std::max(found.widest, width);
      found.sum += width;
      ++found.count;
    }
    for (const MetaPage::Path& p : page.getPaths(BLUE)) found.lines += p.points.size() - 1;
    return found;
  };
  const std::size_t cells = fills("ll:0:180,60.8,180,41,25,1,1", YELLOW).count;
  EXPECT_EQ(360u * 20u, cells);
  EXPECT_GE(fills("ll:0:0,60.8,180,41,25,1,1", YELLOW).count, cells) << "those astride are two";
  for (const char* world : {"ll:0:0,0,0,37,19,10,10", "merc:0:0,0,0,41,31,10.1,10", "moll:0:0,0,0,31,16,8.3,8.3"}) {
    SCOPED_TRACE(world);
    const auto found = fills(world, YELLOW);
    EXPECT_GE(found.count, cells);
    EXPECT_LT(found.widest, 0.02);
  }
  // Land around the pole is filled from edge to edge wherever the seam lies, and has a shore, but none along the seam.
  for (const char* world : {"ll:0:0,0,0,37,19,10,10", "ll:0:-100,0,-100,37,19,10,10"}) {
    SCOPED_TRACE(world);
    const auto land = fills(world, GREEN);
    EXPECT_NEAR(1.0, land.sum, 0.001);
    EXPECT_LE(land.lines, 7u);
  }
}

TEST_F(MapRun, MapsAreFetchedByUrl) {
  HttpServer server({{"/dir/a.map", "HTTP/1.0 200 OK\r\n\r\n" + TempDir::read(program.path("a.map"))},
                     {"/k.kml", "HTTP/1.0 200 OK\r\n\r\n" + TempDir::read(program.path("k.kml"))}});
  EXPECT_EQ("DrbD", order(std::string(PLANE) + "-mf=" + server.url("/dir/a.map") + ":red," + server.url("/k.kml") +
                          "[blue]," + server.url("/none.map") + ":green"));
}

TEST_F(MapRun, OtherEntriesAreDrawnWhereTheyBelong) {
  const auto drawn = [&](const std::string& list, int color, bool filled) {
    return draw(std::string(PLANE) + "'-mf=" + list + "'").getPaths(color, filled).size();
  };
  EXPECT_GT(drawn("-bg:green", GREEN, true), 1u);  // one is the colour bar's
  EXPECT_GT(drawn("-bg[green]", GREEN, true), 1u);
  EXPECT_EQ(2u + 10u + 20u, drawn("grid:1:green", GREEN, false));
  const std::size_t plain = drawn("a.map:off", WHITE, false);
  EXPECT_GT(drawn("mk:35:-97:star", WHITE, false), plain);
  EXPECT_EQ(plain, drawn("mk:65:-97:star", WHITE, false));
  text("p.raw", "35 -97 Here\n36 -98\nnonsense\n70 0 Far\n");
  EXPECT_GT(drawn("p.raw:green", GREEN, false), 4u);
  text("m.meta2.meta", "KYVMETA2\nSZ 10 10\nLCLR 15073290\nL 2 0,0 10,10\nL 5 1\nF\nrubbish\n");
  EXPECT_EQ(1u, drawn("m.meta2.meta", RED, false));
  // A place has its name, or a plus.
  text("city.map", "1 35 35 -97 -97 1\n35 -97\n1 36 36 -97 -97 2\n36 -97\n");
  EXPECT_EQ(2u, drawn("city.map:green", GREEN, false));
}

}  // namespace
