// The map background in whole runs, read from their metafiles.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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
  explicit Plane(const MetaPage& page) : box(page.getBorder().points) {}
  std::pair<double, double> at(double lat, double lon) const {
    const auto [low, high] = std::minmax_element(box.begin(), box.end());
    const double x0 = low->first, x1 = high->first;
    double y0 = box[0].second, y1 = y0;
    for (const auto& [x, y] : box) y0 = std::min(y0, y), y1 = std::max(y1, y);
    return {x0 + (x1 - x0) * (lon + 107.0) / 20.0, y1 + (y0 - y1) * (lat - 30.0) / 10.0};
  }
  std::vector<std::pair<double, double>> box;
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
