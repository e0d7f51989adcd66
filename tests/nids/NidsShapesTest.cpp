#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "KYV/NidsData.h"
#include "KYV/NidsShape.h"
#include "KYV/NidsText.h"
#include "NidsBuilder.h"
#include "NidsTestFile.h"

namespace {

using KYV::NidsFile;
using KYV::NidsShape;
using Bytes = std::vector<unsigned char>;

Bytes halves(const std::vector<int>& values) {
  Bytes b;
  for (const int v : values) {
    b.push_back(static_cast<unsigned char>(v >> 8));
    b.push_back(static_cast<unsigned char>(v));
  }
  return b;
}
Bytes operator+(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}
Bytes text(const char* s) { return {s, s + std::char_traits<char>::length(s)}; }
// A packet of code, length, content.
Bytes wrap(int code, const Bytes& content) { return halves({code, static_cast<int>(content.size())}) + content; }

std::vector<NidsShape> read(const Bytes& bytes) {
  const TestFile file(bytes);
  NidsFile nids;
  nids.setQuiet(true);
  std::vector<NidsShape> shapes;
  if (nids.open(file.name())) nids.readShapes(shapes);
  return shapes;
}

TEST(NidsShapes, EveryPacketIsReadByItsFormat) {
  const struct {
    const char* what;
    Bytes packet;
    NidsShape::Kind kind;
    float x, y;
    bool (*rest)(const NidsShape& s);
  } CASES[] = {
      {"storm id", wrap(15, halves({40, -80}) + text("A7")), NidsShape::CELL, 40, -80,
       [](const NidsShape& s) { return std::string("A7") == s.text; }},
      {"current position", wrap(2, halves({-4096, 4095}) + text("\"")), NidsShape::MARK, -4096, 4095,
       [](const NidsShape& s) { return s.time == NidsShape::NOW; }},
      {"past position", wrap(23, wrap(2, halves({1, 2}) + text("!"))), NidsShape::MARK, 1, 2,
       [](const NidsShape& s) { return s.time == NidsShape::PAST; }},
      {"forecast track", wrap(24, wrap(6, halves({1, 2, 3, 4, 5, 6}))), NidsShape::LINE, 1, 2,
       [](const NidsShape& s) { return s.time == NidsShape::FORECAST && s.points.getNum() == 3; }},
      {"error circle", wrap(24, wrap(25, halves({1, 2, 12}))), NidsShape::CIRCLE, 1, 2,
       [](const NidsShape& s) { return s.radius == 3.0f; }},
      {"linked vectors with a value", wrap(9, halves({5, 1, 2, 3, 4})), NidsShape::LINE, 1, 2,
       [](const NidsShape& s) { return s.level == 5 && s.points.getNum() == 2; }},
      {"mesocyclone", wrap(3, halves({7, 8, 20})), NidsShape::MESO, 7, 8,
       [](const NidsShape& s) { return s.radius == 5.0f; }},
      {"shear", wrap(11, halves({7, 8, 20})), NidsShape::MESO, 7, 8, [](const NidsShape&) { return true; }},
      {"tornado signature", wrap(12, halves({7, 8})), NidsShape::TVS, 7, 8, [](const NidsShape&) { return true; }},
      {"elevated", wrap(26, halves({7, 8})), NidsShape::ETVS, 7, 8, [](const NidsShape&) { return true; }},
      {"hail", wrap(19, halves({7, 8, 90, 60, 2})), NidsShape::HAIL, 7, 8,
       [](const NidsShape& s) { return s.poh == 90.0f && s.posh == 60.0f && s.size == 2.0f; }},
      {"hail out of range", wrap(19, halves({7, 8, -999, -999, 0})), NidsShape::HAIL, 7, 8,
       [](const NidsShape& s) { return s.poh == KYV::Const::MISS && s.posh == KYV::Const::MISS; }},
      {"feature", wrap(20, halves({7, 8, 9, 16})), NidsShape::MESO, 7, 8,
       [](const NidsShape& s) { return s.type == 9 && s.radius == 4.0f; }},
      {"feature of a later standard", wrap(20, halves({7, 8, 99, 16})), NidsShape::MARK, 7, 8,
       [](const NidsShape& s) { return s.type == 99; }},
      {"text", wrap(8, halves({3, 7, 8}) + text("Hi")), NidsShape::TEXT, 7, 8,
       [](const NidsShape& s) { return std::string("Hi") == s.text && s.level == 3; }},
      {"contour", halves({0x0802, 2, 6, 0x0E03, 0x8000, 1, 2, 8, 3, 4, 5, 6}), NidsShape::LINE, 1, 2,
       [](const NidsShape& s) { return s.level == 6 && s.points.getNum() == 3; }},
      {"pieces of a contour", wrap(0x3501, halves({1, 2, 3, 4})), NidsShape::LINE, 1, 2,
       [](const NidsShape& s) { return s.points.getNum() == 2; }},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    // Behind a packet that is not known, in a second layer.
    NidsBuilder b;
    b.header(58, 1).raw(wrap(99, text("??"))).layer().raw(wrap(21, halves({1})) + c.packet);
    const std::vector<NidsShape> shapes = read(b.bytes());
    ASSERT_EQ(1u, shapes.size());
    EXPECT_EQ(c.kind, shapes[0].kind);
    EXPECT_FLOAT_EQ(c.x, shapes[0].points[0].x);
    EXPECT_FLOAT_EQ(c.y, shapes[0].points[0].y);
    EXPECT_TRUE(c.rest(shapes[0]));
  }
}

TEST(NidsShapes, ManyElementsAndEveryForm) {
  NidsBuilder b;
  b.header(58, 1).raw(wrap(12, halves({1, 2, 3, 4, 5, 6})) +
                      wrap(15, halves({1, 2}) + text("A1") + halves({3, 4}) + text("B2")));
  for (const auto body : {NidsBuilder::Body::Plain, NidsBuilder::Body::Bzip2, NidsBuilder::Body::Zlib}) {
    const std::vector<NidsShape> shapes = read(b.body(body).bytes());
    ASSERT_EQ(5u, shapes.size());
    EXPECT_STREQ("B2", shapes[4].text);
  }
}

TEST(NidsShapes, DamageKeepsWhatWasDecoded) {
  const Bytes tvs = wrap(12, halves({1, 2}));
  const struct {
    const char* what;
    Bytes bytes;
    std::size_t shapes;
  } CASES[] = {
      {"a packet longer than the layer", tvs + halves({12, 30000, 5, 6}), 2},
      {"half an element", tvs + wrap(19, halves({1, 2, 3})), 1},
      {"packets within packets without end", tvs + wrap(23, wrap(23, wrap(23, wrap(23, wrap(12, halves({1, 2})))))), 1},
      {"an image", tvs + halves({0xAF1F, 0, 230, 0, 0, 1, 1}) + tvs, 1},
      {"nothing", {}, 0},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.shapes, read(NidsBuilder().header(58, 1).raw(c.bytes).bytes()).size());
  }
  // Cut anywhere.
  const Bytes whole = NidsBuilder().header(58, 1).raw(tvs + tvs + tvs).bytes();
  std::size_t last = 0;
  for (std::size_t n = 0; n <= whole.size(); ++n) {
    const std::size_t now = read(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n))).size();
    EXPECT_GE(now, last);
    last = now;
  }
  EXPECT_EQ(3u, last);
}

// The texts of all pages.
std::vector<std::string> readPages(const std::string& name) {
  std::vector<std::string> lines;
  NidsFile nids;
  KYV::NidsInfo info;
  KYV::NidsText t;
  nids.setQuiet(true);
  if (!nids.open(name.c_str()) || !nids.readHeader(info)) return lines;
  while (nids.readPacket() > 0) {
  }
  if (!nids.findGraphic()) return lines;
  while (nids.graphicLayer()) {
    while (nids.nextPacket() > 0) {
      if (nids.isPacketText() && nids.readText(t) > 0) lines.emplace_back(t.data);
    }
  }
  return lines;
}

TEST(NidsGraphic, PagesAreFoundBehindPacketsThatAreNotKnown) {
  const auto build = [](const Bytes& symbology) {
    NidsBuilder b;
    b.header(58, 1).raw(symbology).layer().raw(wrap(12, halves({1, 2})));
    b.page().text(8, 1, 1, 2, "one").packet(99, {1, 2, 3, 4}).text(8, 1, 1, 2, "two");
    return b.page().text(8, 1, 1, 2, "three");
  };
  const std::vector<std::string> expected = {"one", "two", "three"};
  for (const Bytes& symbology :
       {wrap(2, halves({1, 2}) + text("!")), wrap(23, wrap(6, halves({1, 2, 3, 4}))), Bytes{0, 0, 0}}) {
    for (const auto body : {NidsBuilder::Body::Plain, NidsBuilder::Body::Bzip2, NidsBuilder::Body::Zlib}) {
      const TestFile file(build(symbology).body(body).bytes());
      EXPECT_EQ(expected, readPages(file.name()));
    }
  }
  // Without symbology block the graphic block follows the description.
  const TestFile none(NidsBuilder().header(58, 1).page().text(8, 1, 1, 2, "alone").bytes());
  EXPECT_EQ(std::vector<std::string>{"alone"}, readPages(none.name()));
}

TEST(NidsGeneric, RadialsBecomeAnArray) {
  // Scale 10, offset 0; the highest level is 100, and one flag stands below and one above the values.
  NidsBuilder b = NidsBuilder().header(176).thresholds({0x4120, 0, 0, 0, 0, 100, 1, 1});
  const TestFile content(b.generic({{0, 1, 99}, {100, 50}, {7, 7, 7, 7}}).bytes());
  NidsFile file;
  KYV::NidsInfo info;
  KYV::NidsData d;
  ASSERT_TRUE(file.open(content.name()) && file.readHeader(info) && file.isPacketGeneric());
  ASSERT_EQ(1, file.readGeneric(d));
  EXPECT_EQ(std::tuple(0, 360, 3), std::tuple(d.type, d.nrad, d.nbin));
  constexpr float MISS = KYV::Const::MISS;
  const float expected[] = {MISS, 0.1f, 9.9f, MISS, 5.0f, -200.0f, 0.7f, 0.7f, 0.7f, -200.0f};
  for (std::size_t i = 0; i < std::size(expected); i++) EXPECT_FLOAT_EQ(expected[i], d.data[i]) << i;
  EXPECT_EQ(0, file.readGeneric(d)) << "once";
  // Cut anywhere.
  const Bytes whole = b.bytes();
  for (std::size_t n = 0; n < whole.size(); ++n) {
    const TestFile cut(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)));
    NidsFile part;
    part.setQuiet(true);
    if (part.open(cut.name()) && part.readHeader(info)) part.readGeneric(d);
  }
}

TEST(NidsGeneric, TheSampleHasItsMaximum) {
  const std::string folder = sampleFolder();
  if (folder.empty()) GTEST_SKIP() << "no samples: set RADMAP_SAMPLES to their folder";
  NidsFile file((folder + "/KTLX_DPR_20130520_2016.nids").c_str());
  KYV::NidsInfo info;
  KYV::NidsData d;
  ASSERT_TRUE(file.readHeader(info) && file.readGeneric(d));
  ASSERT_EQ(std::tuple(360, 920), std::tuple(d.nrad, d.nbin));
  // The description tells the largest rate: 7874 thousandths of an inch per hour. 275655 bins are dry.
  const std::vector<float> rates(d.data, d.data + std::ptrdiff_t{360} * 920);
  EXPECT_FLOAT_EQ(7.874f, *std::max_element(rates.begin(), rates.end()));
  EXPECT_EQ(275655, std::count(rates.begin(), rates.end(), 0.0f));
}

// Azimuths (degrees) and ranges (nautical miles) stand in the pages as whole numbers.
TEST(NidsShapes, SymbolsOfSamplesLieWhereTheirTablesSay) {
  const std::string folder = sampleFolder();
  if (folder.empty()) GTEST_SKIP() << "no samples: set RADMAP_SAMPLES to their folder";
  const struct {
    const char* file;
    std::size_t cells;
  } CASES[] = {{"KLSX_NST_20211211_0215.nids", 34}, {"KTLX_NHI_20130520_2016.nids", 22}};
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.file);
    std::map<std::string, std::pair<double, double>> table;
    std::vector<std::string> names;
    for (const std::string& line : readPages(folder + "/" + c.file)) {
      std::vector<std::string> words;
      for (std::size_t at = 0; at < line.size();) {
        const std::size_t from = line.find_first_not_of(" /", at);
        if (from == std::string::npos) break;
        at = std::min(line.find_first_of(" /", from), line.size());
        words.push_back(line.substr(from, at - from));
      }
      if (words.size() > 2 && words[0] == "STORM") names.assign(words.begin() + 2, words.end());
      if (words.size() > 2 && words[0] == "AZ") {
        for (std::size_t i = 0; i < names.size() && 3 + 2 * i < words.size(); ++i) {
          table[names[i]] = {std::stod(words[2 + 2 * i]), std::stod(words[3 + 2 * i])};
        }
      }
    }
    EXPECT_EQ(c.cells, table.size());
    std::size_t found = 0;
    for (const NidsShape& s : read(readAll(folder + "/" + c.file))) {
      if (s.kind != NidsShape::CELL || table.count(s.text) == 0) continue;
      ++found;
      const double km = 0.25 * std::hypot(s.points[0].x, s.points[0].y);
      const double degrees = std::atan2(s.points[0].x, s.points[0].y) * 180.0 / 3.14159265358979;
      const auto& [azimuth, range] = table[s.text];
      EXPECT_NEAR(1.852 * range, km, 0.926 + 0.5) << s.text;
      EXPECT_NEAR(0.0, std::remainder(degrees - azimuth, 360.0), 0.5 + 0.5 / km * 57.3) << s.text;
    }
    EXPECT_GE(found, c.cells / 2);
  }
}

}  // namespace
