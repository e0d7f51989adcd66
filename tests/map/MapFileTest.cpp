#include "KYV/MapFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "KYV/EarthPoints.h"
#include "TempDir.h"

namespace {

using KYV::EarthPoint;
using KYV::EarthPoints;
using KYV::MapFile;
using KYV::MapFileHeader;
using KYV::MapKyvFile;

struct Segment {
  int num;
  int attr;
  std::string name;
  std::vector<std::pair<float, float>> points;
  bool operator==(const Segment&) const = default;
};

std::vector<Segment> readAll(MapFile& file) {
  std::vector<Segment> all;
  MapFileHeader header;
  EarthPoints points;
  while (file.readHeader(header) > 0) {
    file.readData(points);
    Segment s{header.num, header.attr, header.name, {}};
    for (const EarthPoint& e : points) s.points.emplace_back(e.lat, e.lon);
    all.push_back(s);
  }
  return all;
}

std::vector<Segment> readAll(const std::string& name) {
  MapFile file;
  return file.open(name.c_str()) ? readAll(file) : std::vector<Segment>();
}

MapFileHeader headerOf(int num, int attr, const char* name) {
  MapFileHeader h;
  h.num = num;
  h.attr = attr;
  h.range = {10.0f, 40.0f, -100.0f, -80.0f};
  KYV::StrLib::copy(h.name, name);
  return h;
}

// Numbers as the formats write them.
std::string big(std::uint32_t v, int bytes = 4) {
  std::string s;
  for (int i = bytes - 1; i >= 0; --i) s += static_cast<char>(v >> (8 * i));
  return s;
}
std::string bigFloat(float f) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &f, 4);
  return big(bits);
}
std::string little(std::int32_t v) {
  std::string s = big(static_cast<std::uint32_t>(v));
  return {s.rbegin(), s.rend()};
}
std::string littleDouble(double d) {
  std::string s(8, '\0');
  std::memcpy(s.data(), &d, 8);
  return s;
}

const std::vector<Segment> TWO = {{2, 12, "", {{35.5f, -97.25f}, {36.0f, -98.0f}}},
                                  {3, 13, "Some_name", {{-1.0f, 2.0f}, {3.0f, -179.5f}, {5.125f, 180.0f}}}};

TEST(MapKyvFile, BinaryLayoutIsBigEndian) {
  const TempDir dir;
  const std::string bytes = big(1, 2) + bigFloat(36.0f) + bigFloat(35.0f) + bigFloat(-97.0f) + bigFloat(-98.0f) +
                            big(7) + bigFloat(35.5f) + bigFloat(-97.25f);
  const std::string name = dir.write("a.map", bytes);
  dir.write("a.mdb", "1 x Oklahoma_City rest\n");
  MapFile file;
  ASSERT_EQ(1, file.open(name.c_str()));
  MapFileHeader h;
  ASSERT_EQ(1, file.readHeader(h));
  EXPECT_EQ(1, h.num);
  EXPECT_FLOAT_EQ(36.0f, h.range.max_lat);
  EXPECT_FLOAT_EQ(35.0f, h.range.min_lat);
  EXPECT_FLOAT_EQ(-97.0f, h.range.max_lon);
  EXPECT_FLOAT_EQ(-98.0f, h.range.min_lon);
  EXPECT_EQ(7, h.attr);
  EXPECT_STREQ("Oklahoma_City", h.name);
  EarthPoint e;
  ASSERT_EQ(1, file.readData(e));
  EXPECT_FLOAT_EQ(35.5f, e.lat);
  EXPECT_FLOAT_EQ(-97.25f, e.lon);
  EXPECT_EQ(0, file.readData(e));
  EXPECT_EQ(0, file.readHeader(h));
  // Places alone have names, of their own lines.
  dir.write("a.map", big(0, 2) + bytes.substr(2, 20) + bytes);
  dir.write("a.mdb", "1 x Line\n2 x Place\n");
  ASSERT_EQ(1, file.open(name.c_str()));
  file.setPlaceNames(true);
  EXPECT_EQ(1, file.readHeader(h));
  EXPECT_STREQ("", h.name);
  EXPECT_EQ(1, file.readHeader(h));
  EXPECT_STREQ("Place", h.name);
}

TEST(MapKyvFile, WhatIsWrittenIsReadAgain) {
  const TempDir dir;
  for (const int type : {MapKyvFile::BINARY, MapKyvFile::TEXT}) {
    SCOPED_TRACE(type);
    const std::string name = dir.path(type == MapKyvFile::BINARY ? "b.map" : "t.map");
    MapKyvFile out;
    ASSERT_EQ(1, out.open(name.c_str(), "w", type));
    for (const Segment& s : TWO) {
      out.writeHeader(headerOf(s.num, s.attr, s.name.c_str()));
      for (const auto& [lat, lon] : s.points) out.writeData(EarthPoint(lat, lon));
    }
    EXPECT_EQ(1, out.close());
    std::vector<Segment> expected = TWO;
    if (type == MapKyvFile::TEXT) expected[1].name = "";
    EXPECT_EQ(expected, readAll(name));

    MapFile file;
    ASSERT_EQ(1, file.open(name.c_str()));
    EXPECT_EQ(1, file.seek(1));
    EXPECT_EQ(std::vector<Segment>{expected[1]}, readAll(file));
    EXPECT_EQ(0, file.seek(2));
    EXPECT_EQ(1, file.rewind());
    EXPECT_EQ(expected, readAll(file));
    file.rewind();
    file.setPlaceNames(true);
    EXPECT_EQ("", readAll(file)[1].name);
  }
  EXPECT_EQ("   2   40.0000   10.0000  -80.0000 -100.0000    12\n 35.5000  -97.2500\n",
            TempDir::read(dir.path("t.map")).substr(0, 70));
}

TEST(MapKyvFile, LargeCountsGoOnInFurtherHalfwords) {
  const TempDir dir;
  const struct {
    int num;
    std::string count;
  } CASES[] = {{65534, big(65534, 2)},
               {65535, big(65535, 2) + big(0, 2)},
               {70000, big(65535, 2) + big(4465, 2)},
               {140000, big(65535, 2) + big(65535, 2) + big(8930, 2)}};
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.num);
    const std::string name = dir.path("n.map");
    MapKyvFile out;
    ASSERT_EQ(1, out.open(name.c_str(), "w"));
    out.writeHeader(headerOf(c.num, 1, ""));
    for (int i = 0; i < c.num; ++i) out.writeData(EarthPoint(1.0f, 2.0f));
    out.writeHeader(headerOf(0, 5, ""));
    EXPECT_EQ(1, out.close());
    EXPECT_EQ(c.count, TempDir::read(name).substr(0, c.count.size()));
    MapFile file;
    ASSERT_EQ(1, file.open(name.c_str()));
    MapFileHeader h;
    EXPECT_EQ(1, file.readHeader(h));
    EXPECT_EQ(c.num, h.num);
    EXPECT_EQ(1, file.skipData());
    EXPECT_EQ(1, file.readHeader(h));
    EXPECT_EQ(5, h.attr);
  }
}

// One record of two parts, with heights behind its points when the type has them; a point; a type that ends the file.
std::string shapes() {
  std::string file = big(9994) + std::string(20, '\0') + big(0) + little(1000) + little(3) + std::string(64, '\0');
  for (const int type : {13, 5}) {
    std::string content = little(type);
    for (const double side : {-100.0, 30.0, -90.0, 40.0}) content += littleDouble(side);
    content += little(2) + little(5) + little(0) + little(2);
    for (int i = 0; i < 5; ++i) content += littleDouble(-100.0 + i) + littleDouble(30.0 + i);
    if (type == 13) content += std::string(16 + 5 * 8, '\1');
    file += big(1) + big(static_cast<std::uint32_t>(content.size() / 2)) + content;
  }
  file += big(3) + big(10) + little(1) + littleDouble(-97.5) + littleDouble(35.25);
  file += big(4) + big(2) + little(0);
  return file;
}

TEST(ShapeFile, EveryPartIsASegment) {
  const TempDir dir;
  const std::string name = dir.write("a.shp", shapes());
  EXPECT_EQ(MapFile::SHAPE, MapFile::checkType(name.c_str()));
  const std::vector<Segment> all = readAll(name);
  ASSERT_EQ(5u, all.size());
  for (const std::size_t record : {0u, 2u}) {
    EXPECT_EQ(2, all[record].num);
    ASSERT_EQ(3u, all[record + 1].points.size());
    EXPECT_FLOAT_EQ(32.0f, all[record + 1].points[0].first);
    EXPECT_FLOAT_EQ(-98.0f, all[record + 1].points[0].second);
  }
  EXPECT_EQ(1, all[4].attr);
  EXPECT_EQ((std::vector<std::pair<float, float>>{{35.25f, -97.5f}}), all[4].points);

  KYV::ShapeFile file;
  ASSERT_EQ(1, file.open(name.c_str()));
  MapFileHeader h;
  EarthPoints points;
  ASSERT_EQ(1, file.seek(3));
  ASSERT_EQ(1, file.read(h, points));
  EXPECT_EQ(3, points.getNum());
  EXPECT_FLOAT_EQ(-100.0f, h.range.min_lon);
  EXPECT_FLOAT_EQ(40.0f, h.range.max_lat);
  ASSERT_EQ(1, file.seek(4));
  ASSERT_EQ(1, file.read(h, points));
  EXPECT_EQ(1, points.getNum());
  EXPECT_EQ(0, file.seek(5));
}

TEST(ShapeFile, WhatIsWrittenIsReadAgain) {
  const TempDir dir;
  const std::string name = dir.path("w.shp");
  MapFile out;
  ASSERT_EQ(1, out.open(name.c_str(), "w", MapFile::SHAPE));
  for (const Segment& s : TWO) {
    out.writeHeader(headerOf(s.num, s.attr, ""));
    for (const auto& [lat, lon] : s.points) out.writeData(EarthPoint(lat, lon));
  }
  EXPECT_EQ(1, out.close());
  const std::vector<Segment> all = readAll(name);
  ASSERT_EQ(2u, all.size());
  EXPECT_EQ(TWO[0].points, all[0].points);
  EXPECT_EQ(TWO[1].points, all[1].points);
  const std::string bytes = TempDir::read(name);
  EXPECT_EQ(big(9994) + std::string(20, '\0') + big(static_cast<std::uint32_t>(bytes.size() / 2)) + little(1000) +
                little(3) + littleDouble(-180.0) + littleDouble(-90.0) + littleDouble(180.0) + littleDouble(90.0) +
                std::string(32, '\0'),
            bytes.substr(0, 100));
}

constexpr const char* KML =
    "<?xml version=\"1.0\"?>\n<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>"
    "<Placemark><name>A place</name><Point><coordinates>-97.5,35.25,300</coordinates></Point></Placemark>"
    "<Placemark><name><![CDATA[Lines]]></name><MultiGeometry>"
    "<LineString><coordinates>\n 1,2 3,4\n5,6,7 </coordinates></LineString>"
    "<LinearRing><coordinates>0,0 1,0 1,1 0,0 junk 9,9</coordinates></LinearRing>"
    "</MultiGeometry></Placemark></Document></kml>";

TEST(KmlFile, CoordinatesAreSegments) {
  const TempDir dir;
  const std::vector<Segment> all = readAll(dir.write("a.kml", KML));
  ASSERT_EQ(3u, all.size());
  EXPECT_EQ((Segment{1, 1, "A place", {{35.25f, -97.5f}}}), all[0]);
  EXPECT_EQ("Lines", all[1].name);
  EXPECT_EQ((std::vector<std::pair<float, float>>{{2.0f, 1.0f}, {4.0f, 3.0f}, {6.0f, 5.0f}}), all[1].points);
  EXPECT_EQ(4u, all[2].points.size());
}

TEST(KmlFile, NothingIsPutInOrFetched) {
  const TempDir dir;
  const std::string secret = dir.write("secret", "7,7 8,8");
  const std::string entities =
      "<?xml version=\"1.0\"?><!DOCTYPE kml [<!ENTITY a \"1,1 2,2 \"><!ENTITY b \"&a;&a;&a;\">"
      "<!ENTITY x SYSTEM \"file://" +
      secret + "\">]>";
  const auto wrap = [&](const std::string& text) {
    return readAll(dir.write("e.kml", entities + "<kml><Placemark><LineString><coordinates>3,3 4,4 " + text +
                                          "</coordinates></LineString></Placemark></kml>"));
  };
  for (const char* text : {"&a;", "&b;", "&x;"}) {
    SCOPED_TRACE(text);
    const std::vector<Segment> all = wrap(text);
    ASSERT_EQ(1u, all.size());
    EXPECT_EQ(2u, all[0].points.size());
  }
  // What stands before the damage is kept.
  EXPECT_EQ(3u, readAll(dir.write("cut.kml", std::string(KML).substr(0, std::strlen(KML) - 20))).size());
}

TEST(MapFile, DamagedFilesEndWithWhatWasRead) {
  const TempDir dir;
  const std::string segment = big(1, 2) + bigFloat(1.0f) + bigFloat(1.0f) + bigFloat(1.0f) + bigFloat(1.0f) + big(7) +
                              bigFloat(1.0f) + bigFloat(std::nanf(""));
  const std::string text = "   1    1.0    1.0    1.0    1.0   7\n 1.0 2.0\n";
  const std::string shape = shapes();
  const struct {
    const char* what;
    std::string bytes;
    std::size_t segments;
  } CASES[] = {
      {"empty", "", 0},
      {"points end", segment + big(2, 2) + segment.substr(2), 2},
      {"header ends", segment + segment.substr(0, 9), 1},
      {"a count without bytes", segment + big(0xFFFFFFFF) + big(0xFFFF, 2) + segment.substr(2, 20), 2},
      {"text that is none", text + "nonsense\n1 2 3\n", 1},
      {"negative count", text + "-5 1 1 1 1 7\n", 1},
      {"points of a text end", text + "3 1 1 1 1 7\n1 1\n", 2},
      {"shape: parts beyond the file", shape.substr(0, 144) + little(0x40000000) + shape.substr(148), 0},
      {"shape: points beyond the file", shape.substr(0, 148) + little(0x7FFFFFFF) + shape.substr(152), 0},
      {"shape: parts that go back", shape.substr(0, 152) + little(4) + little(2) + shape.substr(160), 0},
      {"shape: header only", shape.substr(0, 60), 0},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    testing::internal::CaptureStderr();
    EXPECT_EQ(c.segments, readAll(dir.write("x.map", c.bytes)).size());
    testing::internal::GetCapturedStderr();
  }
  // A coordinate that is no number lifts the pen.
  const std::vector<Segment> all = readAll(dir.write("x.map", segment));
  ASSERT_EQ(1u, all.size());
  EXPECT_FLOAT_EQ(KYV::Const::MISS, all[0].points[0].first);
  MapFile none;
  EXPECT_EQ(0, none.open(dir.path("none.map").c_str()));
}

}  // namespace
