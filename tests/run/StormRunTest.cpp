// Storms and overlays in whole runs, read from their metafiles.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "MetaPage.h"
#include "NidsBuilder.h"
#include "Program.h"

namespace {

constexpr int LGREEN = 0x66FF96, GREEN = 0x228F41, YELLOW = 0xFFF014, RED = 0xE6000A, WHITE = 0xFFFFFF, BLUE = 0x0A14E6;
constexpr int LRED = 0xFF9678, PINK = 0xFFB4C8;

constexpr const char* HEADER = " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT ";

struct Box {
  double x0, y0, x1, y1;
  explicit Box(const MetaPage::Path& p) : x0(1e9), y0(1e9), x1(-1e9), y1(-1e9) {
    for (const auto& [x, y] : p.points) {
      x0 = std::min(x0, x), x1 = std::max(x1, x), y0 = std::min(y0, y), y1 = std::max(y1, y);
    }
  }
  double x() const { return (x0 + x1) / 2.0; }
  double y() const { return (y0 + y1) / 2.0; }
};

class StormRun : public testing::Test {
 protected:
  // A ring of 40 dBZ with a page of storms.
  void write(const std::vector<std::string>& lines) {
    NidsBuilder b;
    std::vector<int> levels = {0x8000};
    for (int i = 1; i < 16; ++i) levels.push_back(5 * i);
    b.header(37, 9).location(35.333f, -97.278f).thresholds(levels).param(3, 5).radials(230);
    for (int i = 0; i < 360; ++i) b.radial(static_cast<float>(i), 1.0f, std::vector<NidsBuilder::Run>{{20, 8}});
    b.page().text(8, 1, 0, 1, HEADER);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      if (i == 2) b.page().text(8, 1, 0, 1, HEADER);
      b.text(8, 1, 0, 11, lines[i]);
    }
    b.vectors(10, 6, {{0, 4, 0, 50}});
    program.write("p.nids", b.bytes());
  }
  MetaPage draw(const std::string& options) {
    const Program::Result r =
        program.run("-de meta,m.meta,sz=900x600 -cog pink " + options + " p.nids", "SOURCE_DATE_EPOCH=1");
    EXPECT_EQ(0, r.status) << r.output;
    said = r.output;
    return MetaPage(program.path("m.meta"));
  }
  // Counts of closed symbols of a colour.
  static std::size_t count(const MetaPage& page, int color) { return page.getPaths(color).size(); }

  Program program;
  std::string said;
};

// A line of the attribute table.
std::string cell(const char* id, int azimuth, int range, const char* tvs, const char* meso, int posh, int poh,
                 const char* move) {
  char line[100];
  std::snprintf(line, sizeof line, "    %s  %3d/%3d %4s %4s  %3d/%3d/ 1.00    10  50  5.0  20.0  %s  ", id, azimuth,
                range, tvs, meso, posh, poh, move);
  return line;
}

TEST_F(StormRun, SymbolsSitOnTheirCells) {
  // 54 nautical miles are 100.008 km.
  write({cell("A1", 90, 54, "NONE", "NONE", 55, 20, "NEW"), cell("B2", 180, 54, "NONE", "NONE", 20, 60, "NEW"),
         cell("C3", 270, 54, "TVS", "NONE", 0, 0, "NEW"), cell("D4", 0, 54, "NONE", "   5", 0, 0, "NEW"),
         cell("E5", 45, 54, "NONE", "NONE", 0, 0, "NEW")});
  const MetaPage page = draw("-va cstat -pa dist=100 -cod blue -dr=-map,-plot");
  // The ring tells where the radar is and how many points are a km.
  std::vector<Box> rings;
  for (const MetaPage::Path& p : page.getPaths(BLUE)) {
    if (p.points.size() > 20) rings.emplace_back(p);
  }
  ASSERT_EQ(1u, rings.size());
  const Box ring = rings[0];
  const double km = (ring.x1 - ring.x0) / 200.0;
  const struct {
    const char* what;
    int color;
    double east, north;
  } CASES[] = {{"severe hail", LGREEN, 100, 0},
               {"hail", GREEN, 0, -100},
               {"tornado", RED, -100, 0},
               {"mesocyclone", YELLOW, 0, 100},
               {"none of them", WHITE, 70.7, 70.7}};
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    std::vector<MetaPage::Path> symbols = page.getPaths(c.color);
    std::erase_if(symbols, [&](const MetaPage::Path& p) {
      const Box b(p);
      return std::hypot(b.x() - ring.x() - c.east * km, b.y() - ring.y() + c.north * km) > 20.0 * km ||
             b.x1 - b.x0 > 100.0;
    });
    ASSERT_FALSE(symbols.empty());
    Box all(symbols[0]);
    for (const auto& s : symbols) {
      const Box b(s);
      all.x0 = std::min(all.x0, b.x0), all.x1 = std::max(all.x1, b.x1);
      all.y0 = std::min(all.y0, b.y0), all.y1 = std::max(all.y1, b.y1);
    }
    EXPECT_NEAR(c.east, (all.x() - ring.x()) / km, 0.5);
    EXPECT_NEAR(c.north, (ring.y() - all.y()) / km, 0.5);
  }
}

// The table's cells lie where the image's bins of their azimuth and range do.
TEST_F(StormRun, TableAndImageAgreeOnEveryMap) {
  NidsBuilder b;
  b.header(37, 9).location(35.333f, -97.278f).thresholds({0x8000, 5, 10, 15, 20, 25, 30, 35, 40}).radials(230);
  for (int i = 0; i < 360; ++i) {
    b.radial(static_cast<float>(i), 1.0f, std::vector<NidsBuilder::Run>{{198, 0}, {4, i % 90 == 45 ? 8 : 0}, {28, 0}});
  }
  b.page().text(8, 1, 0, 1, HEADER);
  // 108 nautical miles are 200.016 km.
  for (const int azimuth : {45, 135, 225, 315}) {
    b.text(8, 1, 0, 11, cell("A1", azimuth, 108, "TVS", "NONE", 0, 0, "NEW"));
  }
  program.write("p.nids", b.bytes());
  for (const char* map : {"", "-pd ll:0:0,36,-97,25,17,0.4,0.4", "-pd moll:0:-30,36,-97,25,17,0.3,0.3",
                          "-pd lambaz:40:-60,36,-97,25,17,0.4,0.4", "-pd ortho:35:-67,36,-97,25,17,0.3,0.3",
                          "-pd lc:90:-95:33:45,36,-97,25,17,0.3,0.3", "-pd merc:0:0,36,-97,25,17,0.4,0.4"}) {
    SCOPED_TRACE(map);
    const MetaPage page = draw(std::string(map) + " -va cstat -dr=-map,-text");
    const std::vector<MetaPage::Path> signs = page.getPaths(RED);
    ASSERT_EQ(4u, signs.size());
    for (const MetaPage::Path& sign : signs) {
      const Box s(sign);
      double nearest = 1e9, side = 0.0;
      for (const MetaPage::Path& fill : page.getPaths(YELLOW, true)) {
        const Box bin(fill);
        const double away = std::hypot(bin.x() - s.x(), bin.y() - s.y());
        if (away < nearest) nearest = away, side = bin.x1 - bin.x0;
      }
      EXPECT_LT(nearest, side) << "within half a degree and two bins";
    }
  }
}

// 41 by 25 points of half a degree: the page tells latitudes and longitudes.
TEST_F(StormRun, RingsHoldTheirDistanceOnTheEarth) {
  write({});
  const MetaPage page = draw("-pd ll:0:0,35.333,-97.278,41,25,0.5,0.5 -pa dist=200 -cod blue -dr=-map,-plot");
  const Box map(page.getBorder());
  std::size_t points = 0;
  for (const MetaPage::Path& p : page.getPaths(BLUE)) {
    if (p.points.size() < 20) continue;
    for (const auto& [x, y] : p.points) {
      const double rad = 3.14159265358979 / 180.0, lat0 = 35.333 * rad;
      const double lat = lat0 - (y - map.y()) / (map.y1 - map.y0) * 12.0 * rad;
      const double dlon = (x - map.x()) / (map.x1 - map.x0) * 20.0 * rad;
      const double cosine = std::sin(lat0) * std::sin(lat) + std::cos(lat0) * std::cos(lat) * std::cos(dlon);
      EXPECT_NEAR(200.0, 6371.22 * std::acos(cosine), 1.5) << "half a page unit";
      ++points;
    }
  }
  EXPECT_GT(points, 100u);
}

TEST_F(StormRun, StatusFollowsItsThresholds) {
  const struct {
    const char* what;
    std::string line;
    std::size_t lgreen, green, yellow, red;
  } CASES[] = {
      {"hail", cell("A1", 90, 54, "NONE", "NONE", 20, 60, "NEW"), 0, 1, 0, 0},
      {"severe hail", cell("A1", 90, 54, "NONE", "NONE", 55, 60, "NEW"), 1, 0, 0, 0},
      {"all", cell("A1", 90, 54, " TVS", "  10", 50, 60, "NEW"), 1, 0, 1, 1},
      {"nothing", cell("A1", 90, 54, "NONE", "NONE", 49, 49, "NEW"), 0, 0, 0, 0},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    write({c.line});
    const MetaPage page = draw("-va cstat -dr=-map,-plot,-text,-bord");
    EXPECT_EQ(c.lgreen, count(page, LGREEN));
    EXPECT_EQ(c.green, count(page, GREEN));
    EXPECT_EQ(c.yellow, count(page, YELLOW));
    EXPECT_EQ(c.red, count(page, RED));
  }
}

TEST_F(StormRun, VariablesMayStandAmongParameters) {
  write({cell("A1", 90, 54, "NONE", "NONE", 55, 20, "270/ 40")});
  const auto strokes = [&](const std::string& options) {
    return draw(options + " -dr=-map,-plot,-text,-bord -cod red").getPaths(RED).size();
  };
  const std::size_t nothing = strokes("");
  const std::size_t both = strokes("-va cid,track");
  EXPECT_GT(strokes("-va cid"), nothing);
  EXPECT_GT(both, strokes("-va cid"));
  EXPECT_EQ(both, strokes("-pa va=cid,track,nodist"));
  EXPECT_EQ(both, strokes("-pa va=cid/track"));
  EXPECT_EQ(nothing, strokes("-pa va=cid,track,plot")) << "the item plot clears the data";
  // Names that begin as other keys do keep to themselves: the image keeps its colours.
  EXPECT_EQ(360u * 20u, draw("-pa va=cid,comp,ctop -dr=-map,-text,-bord").getPaths(YELLOW, true).size() - 1u);
  // Quoted items keep their commas.
  EXPECT_EQ(both, strokes("-pa '\"va=cid,track\",nodist'"));
  EXPECT_EQ(360u * 20u,
            draw("-pa '\"co=-100:off,30:blue\",va=cid,comp' -dr=-map,-text,-bord").getPaths(BLUE, true).size() - 1u);
  strokes("-va nonsense,cid");
  EXPECT_NE(std::string::npos, said.find("nonsense"));
}

TEST_F(StormRun, LayersHaveTheirOrder) {
  write({cell("A1", 90, 54, "NONE", "NONE", 55, 20, "NEW")});
  for (const auto& [name, lat] : {std::pair{"a.map", "35.0"}, {"b.map", "35.2"}, {"c.map", "35.4"}}) {
    const std::string text = std::string("2 36 35 -96 -98 12\n") + lat + " -98\n" + lat + " -96\n";
    program.write(name, std::vector<unsigned char>(text.begin(), text.end()));
  }
  std::string order;
  for (const int color :
       draw("-mf=-a.map:red,b.map:blue,+c.map:lred -va cstat -pa table,dist=50 -cod green").getColors()) {
    const char c = color == RED       ? 'u'
                   : color == BLUE    ? 'd'
                   : color == LRED    ? 'o'
                   : color == -YELLOW ? 'I'
                   : color == GREEN   ? 'r'
                   : color == PINK    ? 't'
                   : color == LGREEN  ? 's'
                                      : 0;
    if (c && order.find(c) == std::string::npos) order += c;
  }
  EXPECT_EQ("uIdrtso", order);
}

TEST_F(StormRun, PagesAreDrawnWhenTheTableIsWanted) {
  const std::vector<std::string> lines(3, cell("A1", 90, 54, "NONE", "NONE", 55, 20, "NEW"));
  write(lines);
  EXPECT_EQ(0u, count(draw("-dr=-map"), PINK));
  EXPECT_NE(std::string::npos, said.find(lines[0] + "\n")) << "the text is told";
  const MetaPage page = draw("-pa table -dr=-map,-plot -cod blue");
  const std::vector<MetaPage::Path> rules = page.getPaths(PINK);
  ASSERT_EQ(1u, rules.size());
  // Column 0 at the left; the line from 4 to 50 of the second page lies 50 of 512 lines lower.
  const Box map(page.getBorder()), rule(rules[0]);
  const double unit = (map.y1 - map.y0) / 511.0;
  EXPECT_NEAR(map.x0, rule.x(), unit);
  EXPECT_NEAR(map.y0 + 54.0 * unit, rule.y0, unit);
  EXPECT_NEAR(map.y0 + 100.0 * unit, rule.y1, unit);
  // Texts of the pages lie on the map, one page beneath the other.
  std::size_t strokes = 0;
  for (const MetaPage::Path& p : page.getPaths(BLUE)) {
    const Box b(p);
    strokes += b.y1 < map.y0 + 120.0 * unit && b.x0 >= map.x0 - unit && b.x1 <= map.x1;
  }
  EXPECT_GT(strokes, 100u);
}

TEST_F(StormRun, RingsAndSite) {
  write({});
  const auto radii = [&](const std::string& options) {
    const MetaPage page = draw("-dr=-map,-plot -cod blue " + options);
    const Box map(page.getBorder());
    std::vector<int> km;
    for (const MetaPage::Path& p : page.getPaths(BLUE)) {
      const Box b(p);
      // The map is 460 km high.
      if (p.points.size() > 20) km.push_back(static_cast<int>(std::lround((b.y1 - b.y0) / (map.y1 - map.y0) * 230.0)));
    }
    return km;
  };
  EXPECT_EQ((std::vector<int>{50, 100, 150, 200}), radii("-pa dist=50:100:150:200"));
  EXPECT_EQ((std::vector<int>{50, 100}), radii("-pa dist=50:100"));
  EXPECT_EQ(std::vector<int>{}, radii("-pa dist=0:100"));
  const std::size_t without = draw("-dr=-map,-plot -cod blue").getPaths(BLUE).size();
  EXPECT_GT(draw("-dr=-map,-plot -cod blue -pa site").getPaths(BLUE).size(), without);
}

}  // namespace
