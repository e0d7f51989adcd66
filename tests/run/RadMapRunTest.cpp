// Whole runs of the program on products made here; what they draw is read back from their PostScript files.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "NidsBuilder.h"
#include "Program.h"
#include "PsPage.h"

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double EARTH = 63.7122;  // mean radius, 100 km
constexpr double LAT = 35.333;     // the radar of the products
constexpr double LON = -97.278;
constexpr double TOLERANCE = 0.02;  // points

// Colours of kyv.clr, as the file writes them.
const std::string BLUE = "0.04 0.08 0.90";    // 5 dBZ
const std::string YELLOW = "1.00 0.94 0.08";  // 40 dBZ
const std::string LRED = "1.00 0.59 0.47";    // 50 dBZ

double rad(double degrees) { return degrees * PI / 180.0; }

// Plane units (100 km) for 100 km at the radar: a polar stereographic map true at 60 degrees north.
double mapFactor() { return (1.0 + std::sin(rad(60.0))) / (1.0 + std::sin(rad(LAT))); }

// Data levels 5, 10, ... 75 dBZ; level 0 is below threshold.
std::vector<int> reflectivityLevels() {
  std::vector<int> levels = {0x8000};
  for (int i = 1; i < 16; ++i) levels.push_back(5 * i);
  return levels;
}

// A ring of bins 10 to 12 at 40 dBZ and, in the first quarter, bins 30 and 31 at 50 dBZ.
NidsBuilder ringProduct() {
  NidsBuilder b;
  b.header(19, 9).location(LAT, LON).thresholds(reflectivityLevels()).param(3, 5).radials(230);
  for (int i = 0; i < 360; ++i) {
    std::vector<NidsBuilder::Run> runs = {{10, 0}, {3, 8}, {15, 0}, {2, 0}};
    if (i < 90) runs.push_back({2, 10});
    b.radial(static_cast<float>(i), 1.0f, runs);
  }
  return b;
}

class RadMapRun : public testing::Test {
 protected:
  // Draws a product with these options; the page is read back.
  PsPage draw(const std::string& options, const std::string& product) {
    const Program::Result r = program.run("-de postscript,out.ps,land,color " + options + " '" + product + "'");
    EXPECT_EQ(0, r.status) << r.output;
    PsPage page;
    EXPECT_TRUE(page.read(program.path("out.ps"))) << r.output;
    return page;
  }

  Program program;
};

// Turns distances from the map's centre, plane units, into points of the page.
struct Page {
  Page(const PsPage& page, double width, double height) {
    const PsPage::Path border = page.getBorder();
    EXPECT_EQ(5u, border.points.size());
    for (const auto& [px, py] : border.points) {
      x0 = std::min(x0, px), x1 = std::max(x1, px);
      y0 = std::min(y0, py), y1 = std::max(y1, py);
    }
    sx = (x1 - x0) / width, sy = (y1 - y0) / height;
  }
  std::pair<double, double> at(double x, double y) const {
    return {(x0 + x1) / 2.0 + x * sx, (y0 + y1) / 2.0 + y * sy};
  }
  double x0 = 1e9, x1 = -1e9, y0 = 1e9, y1 = -1e9, sx = 0.0, sy = 0.0;
};

void expectCorner(const std::pair<double, double>& expected, const std::pair<double, double>& drawn) {
  EXPECT_NEAR(expected.first, drawn.first, TOLERANCE);
  EXPECT_NEAR(expected.second, drawn.second, TOLERANCE);
}

std::vector<PsPage::Path> fillsOf(const PsPage& page, const std::string& color) {
  std::vector<PsPage::Path> found;
  for (const PsPage::Path& p : page.getPaths()) {
    if (p.filled && p.color == color) found.push_back(p);
  }
  return found;
}

TEST_F(RadMapRun, RadialCellsLieWhereTheRadarSawThem) {
  const std::string product = program.write("ring.nids", ringProduct().bytes());
  const PsPage page = draw("", product);
  // The default map: 461 points high, one km apart, and 3:2 wide, that is 692 points.
  const double dx = mapFactor() / 100.0;
  const Page map(page, 691 * dx, 460 * dx);
  EXPECT_NEAR(map.sx, map.sy, 0.01);  // the domain's aspect ratio is kept

  std::map<std::string, int> counts = page.countFills();
  EXPECT_EQ(360 * 3 + 1, counts[YELLOW]);  // and the box of the colour bar
  EXPECT_EQ(90 * 2 + 1, counts[LRED]);
  EXPECT_EQ(1, counts[BLUE]);  // the bar alone

  const std::vector<PsPage::Path> cells = fillsOf(page, YELLOW);
  ASSERT_EQ(1081u, cells.size());
  for (std::size_t i = 0; i < 360; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      const PsPage::Path& cell = cells[3 * i + j];
      ASSERT_EQ(5u, cell.points.size());
      const double near = (10.0 + static_cast<double>(j)) * dx, far = near + dx;
      const double azimuth = static_cast<double>(i);
      const double a = rad(azimuth), b = rad(azimuth + 1.01);  // neighbours overlap by a hundredth of a degree
      expectCorner(map.at(near * std::sin(a), near * std::cos(a)), cell.points[0]);
      expectCorner(map.at(far * std::sin(a), far * std::cos(a)), cell.points[1]);
      expectCorner(map.at(far * std::sin(b), far * std::cos(b)), cell.points[2]);
      expectCorner(map.at(near * std::sin(b), near * std::cos(b)), cell.points[3]);
      EXPECT_EQ(cell.points[0], cell.points[4]);
    }
  }
}

TEST_F(RadMapRun, CellsFollowAnotherProjection) {
  const std::string product = program.write("ring.nids", ringProduct().bytes());
  // 24 by 16 steps of 0.1 degree around the radar.
  const PsPage page = draw("-pd ll,35.333,-97.278,25,17,0.1,0.1", product);
  const Page map(page, 2.4, 1.6);
  const std::vector<PsPage::Path> cells = fillsOf(page, YELLOW);
  ASSERT_EQ(1081u, cells.size());

  // The radar's polar stereographic plane: its meridian runs down from the pole at the origin.
  const double scale = (1.0 + std::sin(rad(60.0))) * EARTH;
  const double pole = scale * std::tan(rad((90.0 - LAT) / 2.0));
  const double dx = mapFactor() / 100.0;
  for (std::size_t i = 0; i < 360; i += 7) {
    const double a = rad(static_cast<double>(i)), range = 10 * dx;
    const double x = range * std::sin(a), y = range * std::cos(a) - pole;
    const double lat = 90.0 - 2.0 * std::atan2(std::hypot(x, y), scale) * 180.0 / PI;
    const double lonFromRadar = std::atan2(x, -y) * 180.0 / PI;
    SCOPED_TRACE(i);
    expectCorner(map.at(lonFromRadar, lat - LAT), cells[3 * i].points[0]);
  }
}

TEST_F(RadMapRun, GridCellsStartAtTheGridsCorner) {
  // 4 by 4 boxes of 4 km, coded as composite reflectivity; one box at 40 dBZ in row 1, column 2.
  NidsBuilder b;
  b.header(38, 9).location(LAT, LON).thresholds(reflectivityLevels()).raster(0xBA07);
  b.gridRow({{4, 0}}).gridRow({{2, 0}, {1, 8}, {1, 0}}).gridRow({{4, 0}}).gridRow({{4, 0}});
  const PsPage page = draw("", program.write("grid.nids", b.bytes()));
  const double c = 4.0 * mapFactor() / 100.0;  // 5 points high, 8 wide
  const Page map(page, 7 * c, 4 * c);
  const std::vector<PsPage::Path> cells = fillsOf(page, YELLOW);
  ASSERT_EQ(2u, cells.size());  // and the box of the bar
  const double x = -1.5 * c + 2 * c, y = 1.5 * c - 1 * c;
  expectCorner(map.at(x, y), cells[0].points[0]);
  expectCorner(map.at(x + c, y), cells[0].points[1]);
  expectCorner(map.at(x + c, y - c), cells[0].points[2]);
  expectCorner(map.at(x, y - c), cells[0].points[3]);
}

TEST_F(RadMapRun, AGenericImageIsDrawnToItsLastBin) {
  NidsBuilder b;
  b.header(176, 0).location(LAT, LON);
  b.generic(std::vector<std::vector<int>>(360, std::vector<int>(920, 100)));
  program.write("p.nids", b.bytes());
  EXPECT_EQ(360u * 920u, fillsOf(draw("-cof=-1000:blue -dr=-map,-text", "p.nids"), BLUE).size() - 1u)
      << "one is the bar's";
}

// "No precipitation": columns and lines of a display page of 512, as a wind profile's texts are.
TEST_F(RadMapRun, MessagesInPlaceOfAnAccumulationAreLegible) {
  NidsBuilder b;
  b.header(170, 0).location(LAT, LON);
  for (const int line : {9, 16, 23}) b.text(1, 0, 7, line, "XXXX");
  program.write("p.nids", b.bytes());
  const PsPage page = draw("-dr=-map -cod yellow", "p.nids");
  const Page map(page, 511.0, 511.0);
  const double unit = map.sy;
  std::array<int, 3> rows{};
  for (const PsPage::Path& p : page.getPaths()) {
    if (p.filled || p.color != YELLOW) continue;
    for (const auto& [x, y] : p.points) {
      EXPECT_TRUE(x > map.x0 + 6.0 * unit && x < map.x0 + 60.0 * unit) << x;
      const double line = (map.y1 - y) / unit;
      ASSERT_TRUE(line > 0.0 && line < 32.0) << line;
    }
    const double middle = (map.y1 - (p.points.front().second + p.points.back().second) / 2.0) / unit;
    ++rows[middle < 16.0 ? 0 : middle < 23.0 ? 1 : 2];  // letters are 8 lines high
  }
  EXPECT_GT(rows[0], 0);
  EXPECT_TRUE(rows[0] == rows[1] && rows[1] == rows[2]);
}

TEST_F(RadMapRun, OptionsChooseTheCells) {
  const std::string product = program.write("ring.nids", ringProduct().bytes());
  struct Case {
    const char* what;
    const char* options;
    int yellow, lred;  // cells and boxes of the bar
  };
  constexpr Case CASES[] = {
      {"clutter takes the first bins", "-pa clutter=11", 720 + 1, 180 + 1},
      {"clutter alone is 25", "-pa clutter", 1, 180 + 1},
      {"the later item wins", "-pa clutter=25,noclutter", 1080 + 1, 180 + 1},
      // 44 at the radar, falling to 0 at bin 100: 39.6, 39.16, 38.72 at bins 10 to 12 are cut to 39, 39, 38.
      {"ramp below the value", "-pa ramp=44:100", 1080 + 1, 180 + 1},
      // 46 - 4.6 = 41.4 and so on: all above 40; at bin 30 it is 32.
      {"ramp above the value", "-pa ramp=46:100", 1, 180 + 1},
      {"a ramp of no range takes the standard one", "-pa ramp=44:0", 1, 180 + 1},
      {"another scale", "-cof 45:lred", 0, 180 + 1},
      {"no scale given", "-cof miss", 1080 + 1, 180 + 1},
      {"colours alone take the data levels", "-cof off,off,off,off,off,off,off,off,yellow,off,lred,off,off,off,off,off",
       1080 + 1, 180 + 1},
      {"no cells, labels and bar alone", "-dr=-plot", 1, 1},
      {"data excludes the image", "-pa data", 1, 1},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    std::map<std::string, int> counts = draw(c.options, product).countFills();
    EXPECT_EQ(c.yellow, counts[YELLOW]);
    EXPECT_EQ(c.lred, counts[LRED]);
  }
}

TEST_F(RadMapRun, EveryFormOfAProductGivesTheSamePage) {
  program.write("plain.nids", ringProduct().bytes());
  ASSERT_EQ(0, program.run("-de postscript,plain.ps,land,color plain.nids").status);
  const std::string expected = program.read("plain.ps");
  ASSERT_FALSE(expected.empty());

  using Heading = NidsBuilder::Heading;
  using Body = NidsBuilder::Body;
  using Wrap = NidsBuilder::Wrap;
  const struct {
    const char* what;
    Heading heading;
    Body body;
    Wrap wrap;
  } forms[] = {
      {"WMO heading", Heading::Wmo, Body::Plain, Wrap::None},
      {"broadcast frame, zlib streams", Heading::Frame, Body::Zlib, Wrap::None},
      {"control block", Heading::ControlBlock, Body::Plain, Wrap::None},
      {"bzip2 body", Heading::Wmo, Body::Bzip2, Wrap::None},
      {"gzip file", Heading::Wmo, Body::Plain, Wrap::Gzip},
      {"bzip2 file", Heading::None, Body::Plain, Wrap::Bzip2},
  };
  for (const auto& form : forms) {
    SCOPED_TRACE(form.what);
    program.write("form.nids", ringProduct().heading(form.heading).body(form.body).wrap(form.wrap).bytes());
    for (const char* file : {"form.nids", "- < form.nids", "@form.nids"}) {
      SCOPED_TRACE(file);
      ASSERT_EQ(0, program.run(std::string("-de postscript,form.ps,land,color ") + file).status);
      EXPECT_EQ(expected, program.read("form.ps"));
    }
  }
}

TEST_F(RadMapRun, LabelsAndBarStayOnThePageAndApart) {
  const std::string product = program.write("ring.nids", ringProduct().bytes());
  constexpr double WIDTH = 756.0, HEIGHT = 576.0;
  for (const char* options : {"", "-la ul:Second_row,lr:Lower,lc:Middle", "-pd ll,35.3,-97.3,17,25,0.1,0.1",
                              "-pd ps,35.3,-97.3,50,10,0.1,0.1"}) {
    SCOPED_TRACE(options);
    const PsPage page = draw(std::string("-dr=-map ") + options, product);
    const Page map(page, 1.0, 1.0);
    double barTop = 0.0, textBottom = HEIGHT;
    for (const PsPage::Path& p : page.getPaths()) {
      double top = 0.0, bottom = HEIGHT;
      for (const auto& [x, y] : p.points) {
        top = std::max(top, y), bottom = std::min(bottom, y);
        if (p.filled) continue;
        EXPECT_TRUE(x >= 0.0 && x <= WIDTH && y >= 0.0 && y <= HEIGHT) << x << " " << y;
      }
      // Below the map: boxes are filled; what stands above them is text.
      if (p.filled && top < map.y0) barTop = std::max(barTop, top);
      if (!p.filled && top < map.y0 && bottom > barTop) textBottom = std::min(textBottom, bottom);
    }
    EXPECT_GT(barTop, 10.0);
    EXPECT_LT(barTop, textBottom + TOLERANCE);
    EXPECT_LT(textBottom, map.y0);
  }
}

TEST_F(RadMapRun, HelpListsTheOptionsWithoutBanner) {
  const Program::Result r = program.run("-h");
  EXPECT_EQ(0, r.status);
  EXPECT_EQ(0u, r.output.find("radmap: This program displays NIDS radar data\n"));
  EXPECT_EQ(std::string::npos, r.output.find("NIDS RADAR PLOTTER"));
  EXPECT_NE(std::string::npos, r.output.find("\n -de device   Device type and params\n"));
  EXPECT_NE(std::string::npos, r.output.find("\nPositional options...\n filenames... Filenames\n"));
  // 49 keyed options, one positional, -df and -na; four lines of headings and the first one. The own options follow.
  const std::size_t own = r.output.find("Own options...\n");
  ASSERT_NE(std::string::npos, own);
  EXPECT_EQ(49 + 1 + 2 + 5, std::count(r.output.begin(), r.output.begin() + static_cast<std::ptrdiff_t>(own), '\n'));
  EXPECT_NE(std::string::npos, r.output.find("\n -strict ", own));
}

TEST_F(RadMapRun, MessageLevelsShowWhatTheFileHolds) {
  program.write("ring.nids", ringProduct().bytes());
  const std::string command = "-de postscript,out.ps,land,color ring.nids -me ";
  const std::string header = program.run(command + "out4").output;
  for (const char* line : {"      NIDS RADAR PLOTTER (Ver 6.76-LINUX-X11)\n", "Latitude: 35.333\n",
                           "Longitude: -97.278\n", "Operational Mode: 2\n", "Threshold[1]: -32768 -100.000000\n",
                           "Threshold[9]: 40 40.000000\n", "Param[2]: 5\n", "Offset to Symbolics: 60\n"}) {
    EXPECT_NE(std::string::npos, header.find(line)) << line;
  }
  const std::string trace = program.run(command + "debug3").output;
  for (const char* line : {"Packet Code: 44831 AF1F\n", "Number of range bins: 230\n", "Number of radials: 360\n"}) {
    EXPECT_NE(std::string::npos, trace.find(line)) << line;
  }
  EXPECT_EQ(std::string::npos, program.run(command + "none").output.find("NIDS"));
}

TEST_F(RadMapRun, OptionsComeFromFilesEnvironmentAndCommandLineInThisOrder) {
  program.write("ring.nids", ringProduct().bytes());
  const std::string file = "*.title Filed\nother.title Wrong\n";
  program.write("kyv.cfg", std::vector<unsigned char>(file.begin(), file.end()));
  const auto title = [&](const std::string& options, const std::string& environment) {
    EXPECT_EQ(0, program.run("-de postscript,out.ps,land,color ring.nids " + options, environment).status);
    PsPage page;
    EXPECT_TRUE(page.read(program.path("out.ps")));
    return page.getLines("%%Title").at(0);
  };
  const std::string prefix = "%%Title: KYV Graphics Display: ";
  EXPECT_EQ(prefix + "Filed", title("", ""));
  EXPECT_EQ(prefix + "Own", title("", "kyvtitle=Own"));
  EXPECT_EQ(prefix + "Qualified", title("", "kyvtitle=Own kyv_radmap_title=Qualified"));
  EXPECT_EQ(prefix + "Typed", title("-ti Typed", "kyvtitle=Own kyv_radmap_title=Qualified"));
}

TEST_F(RadMapRun, WhatCannotBeDrawnIsReported) {
  const std::string notProduct = "This is a text, no product.\n";
  program.write("text.txt", std::vector<unsigned char>(notProduct.begin(), notProduct.end()));
  program.write("empty", {});
  struct Case {
    const char* arguments;
    const char* message;
  };
  constexpr Case CASES[] = {
      {"-de postscript,out.ps missing.nids", "RadMap: Unable to open file: missing.nids\n"},
      {"-de postscript,out.ps -id kxyz", "  Keys: i=kxyz\n  Directory: .\n"},
      {"-de postscript,out.ps text.txt", "text.txt"},
      {"-de postscript,out.ps empty", "empty"},
      {"-de postscript,/proc/none/out.ps text.txt", "Postscript: unable to output to file\n"},
      {"text.txt", "-de postscript"},
      {"-de postscript,out.ps -lo own.gif text.txt", "Logo not found: own.gif\n"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.arguments);
    const Program::Result r = program.run(c.arguments);
    EXPECT_EQ(0, r.status);
    EXPECT_NE(std::string::npos, r.output.find(c.message)) << r.output;
  }
}

}  // namespace
