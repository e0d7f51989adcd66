#include "KYV/CityFile.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <chrono>
#include <string>

#include "KYV/CityData.h"
#include "KYV/CityTool.h"
#include "KYV/EarthPoint.h"
#include "KYV/Kyv.h"
#include "KYV/String.h"
#include "TempDir.h"

using namespace KYV;

namespace {

// A line of the fixed size, blanks at its end.
std::string record(std::string line) {
  line.resize(CityFile::LINE_SIZE - 1, ' ');
  return line + "\n";
}

const std::string STATIONS = record("Oklahoma_City OK US KTLX 0 35.333 -97.278 370 72357 1") +
                             record("Norman OK US KOUN *3 35.236 -97.464 9999 99999 22") +
                             record("Miami FL US KAMX 2 25.611 -80.413 4 00123 333");

TEST(CityFile, ReadsRecordAfterRecord) {
  const TempDir dir;
  CityFile cities;
  ASSERT_EQ(1, cities.open(dir.write("x.cty", STATIONS).c_str()));
  EXPECT_TRUE(cities.isOpen());
  EXPECT_EQ(3, cities.getNum());
  CityData data;
  ASSERT_EQ(1, cities.read(data));
  EXPECT_STREQ("Oklahoma_City", data.name);
  EXPECT_STREQ("OK", data.state);
  EXPECT_STREQ("US", data.country);
  EXPECT_STREQ("KTLX", data.id);
  EXPECT_EQ(0, data.priority);
  EXPECT_FLOAT_EQ(35.333f, data.lat);
  EXPECT_FLOAT_EQ(-97.278f, data.lon);
  EXPECT_EQ(370.0f, data.elev);
  EXPECT_STREQ("72357", data.wmo);
  EXPECT_EQ(1, data.number);
  ASSERT_EQ(1, cities.read(data));
  EXPECT_EQ(3, data.priority);
  EXPECT_TRUE(Const::isMissing(data.elev));
  EXPECT_STREQ("", data.wmo);
  ASSERT_EQ(1, cities.read(data));
  EXPECT_EQ(0, cities.read(data));
  ASSERT_EQ(1, cities.rewind());
  ASSERT_EQ(1, cities.read(data));
  EXPECT_STREQ("KTLX", data.id);
  EXPECT_EQ(1, cities.close());
  EXPECT_EQ(0, cities.read(data));
  EXPECT_FALSE(cities.isOpen());
  EXPECT_EQ(0, cities.open(dir.path("x.cty").c_str(), 2));
  EXPECT_EQ(0, cities.open(dir.path("missing.cty").c_str()));
  EXPECT_EQ(0, cities.open("|echo x"));
  EXPECT_EQ(0, cities.open("/dev/zero"));
  EXPECT_EQ(1, cities.open(dir.path("new.cty").c_str(), 1));
}

TEST(CityFile, DamagedLinesDecodeAsFarAsTheyGo) {
  const struct {
    const char* what;
    std::string line;
    const char* name;
    const char* id;
    int priority;
    float lat;
    int number;
  } cases[] = {
      {"empty", "", "before", "B", 7, 1.0f, 0},
      {"cut in the middle", "Town TX US T1 4 30.5", "Town", "T1", 4, 30.5f, 0},
      {"all but the number", "Town TX US T1 4 30.5 2 3 44444", "Town", "T1", 4, 30.5f, 9},
      {"no number for a latitude", "Town TX US T1 4 north", "Town", "T1", 4, 1.0f, 0},
      {"infinite latitude", "Town TX US T1 4 inf", "Town", "T1", 4, 1.0f, 0},
      {"latitude beyond floats", "Town TX US T1 4 1e99", "Town", "T1", 4, 1.0f, 0},
      {"no digit for a priority", "Town TX US T1 *", "Town", "T1", 7, 1.0f, 0},
      // The wider words run on into the fields behind them.
      {"long name", std::string(25, 'n') + " TX T1 4 30.5", "nnnnnnnnnnnnnnnnnnnn", "n", 7, 1.0f, 0},
      {"longer than a line may be", std::string(119, ' ') + std::string(5000, 'n'), "n", "B", 7, 1.0f, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const TempDir dir;
    CityFile cities(dir.write("x.cty", c.line + "\nNext TX US NEXT 1 1 1 1 1 1\n").c_str(), 0);
    CityData data;
    StrLib::copy(data.name, "before");
    StrLib::copy(data.id, "B");
    data.priority = 7;
    data.lat = 1.0f;
    data.number = 9;
    ASSERT_EQ(1, cities.read(data));
    EXPECT_STREQ(c.name, data.name);
    EXPECT_STREQ(c.id, data.id);
    EXPECT_EQ(c.lat, data.lat);
    EXPECT_EQ(c.number, data.number);
    ASSERT_EQ(1, cities.read(data));
    EXPECT_STREQ("NEXT", data.id);
  }
}

TEST(CityTool, FindsByIdentifierNameOrNumberInAnyCase) {
  const TempDir dir;
  dir.write("sao.cty", STATIONS);
  const std::string file = dir.write("own.cty", record("Elsewhere XX YY NORMAN 1 -10 20 5 00001 1") + STATIONS);
  Kyv::setDatabasePath(dir.path().c_str());
  CityData data;
  for (const char* key : {"ktlx", "KTLX", "OKLAHOMA_city", "72357"}) {
    EXPECT_EQ(1, CityTool::search(nullptr, key, data)) << key;
    EXPECT_STREQ("KTLX", data.id);
  }
  EXPECT_EQ(1, CityTool::search(nullptr, "00123", data));
  EXPECT_STREQ("KAMX", data.id);
  // In the order of the records; the identifier of an earlier one comes before the name of a later one.
  EXPECT_EQ(1, CityTool::search(file.c_str(), "norman", data));
  EXPECT_STREQ("Elsewhere", data.name);

  EXPECT_EQ(0, CityTool::search(nullptr, "nowhere", data));
  EXPECT_STREQ("KAMX", data.id);
  EXPECT_EQ(0, CityTool::search(nullptr, "", data));
  EXPECT_EQ(0, CityTool::search(nullptr, nullptr, data));
  EXPECT_EQ(0, CityTool::search("None", "KTLX", data));
  EXPECT_EQ(0, CityTool::search(dir.path("missing.cty").c_str(), "KTLX", data));

  EarthPoint e;
  EXPECT_EQ(1, CityTool::locate("sao.cty", "kamx", e));
  EXPECT_FLOAT_EQ(25.611f, e.lat);
  EXPECT_FLOAT_EQ(-80.413f, e.lon);
  EXPECT_EQ(0, CityTool::locate("sao.cty", "nowhere", e));
  EXPECT_TRUE(e.isMissing());

  String path;
  EXPECT_EQ(1, CityTool::getFilename("own.cty", path));
  EXPECT_EQ(file, path.get());
  Kyv::setResrc("city_file", "NONE");
  EXPECT_EQ(0, CityTool::getFilename(nullptr, path));
  Kyv::setResrc("city_file", "own.cty");
  EXPECT_EQ(1, CityTool::getFilename("", path));
  EXPECT_EQ(file, path.get());
  Kyv::resrc.clear();
  Kyv::setDatabasePath("");
}

// A search stands at each start of the program. The bound leaves room for sanitizers and a busy machine.
TEST(CityTool, GoesThroughAWholeDatabaseQuickly) {
  const TempDir dir;
  std::string all;
  for (int i = 0; i < 8000; ++i)
    all += record("Some_Town TX US T" + std::to_string(i) + " 4 30.512 -97.278 370 72357 1");
  const std::string file = dir.write("big.cty", all);
  CityData data;
  auto best = std::chrono::steady_clock::duration::max();
  for (int round = 0; round < 5; ++round) {
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(1, CityTool::search(file.c_str(), "T7999", data));
    best = std::min(best, std::chrono::steady_clock::now() - start);
  }
  const double ms = std::chrono::duration<double, std::milli>(best).count();
  RecordProperty("milliseconds", std::to_string(ms));
  EXPECT_LT(ms, 100.0);
}

TEST(CityData, PrintsItsFields) {
  CityData data;
  StrLib::copy(data.name, "Norman");
  StrLib::copy(data.state, "OK");
  StrLib::copy(data.country, "US");
  StrLib::copy(data.id, "KOUN");
  StrLib::copy(data.wmo, "72357");
  data.lat = 35.25f;
  data.lon = -97.5f;
  data.elev = 357.0f;
  data.priority = 3;
  data.number = 22;
  testing::internal::CaptureStdout();
  data.printLine();
  EXPECT_EQ("Norman               OK US      KOUN 3   35.250  -97.500   357 72357    22\n",
            testing::internal::GetCapturedStdout());
  testing::internal::CaptureStdout();
  data.print();
  EXPECT_EQ(
      "Id: KOUN\nName: Norman\nState: OK\nCntry/Region: US\nPriority: 3\nLatitude: 35.250\nLongitude: -97.500\n"
      "Elevation: 357\nWMO: 72357\nNumber: 22\n",
      testing::internal::GetCapturedStdout());
}

}  // namespace
