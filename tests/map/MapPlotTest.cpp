#include "KYV/MapPlot.h"

#include <gtest/gtest.h>

#include <string>

#include "KYV/Domain.h"
#include "KYV/Kyv.h"

namespace {

std::string printed(const char* params) {
  KYV::MapPlot map(params);
  testing::internal::CaptureStdout();
  map.print();
  return testing::internal::GetCapturedStdout();
}

TEST(MapPlot, ParametersSetWhatTheyName) {
  const struct {
    const char* params;
    const char* state;  // Def, Type, Fill cont, Fill, Index, LaLo
  } CASES[] = {
      {"", "1 0 0 0 0 -9999, -9999"},
      {"over", "0 2 0 0 0 -9999, -9999"},
      {"under", "0 1 0 0 0 -9999, -9999"},
      {"default", "2 0 0 0 0 -9999, -9999"},
      {"default,over", "2 2 0 0 0 -9999, -9999"},
      {"over,default", "2 2 0 0 0 -9999, -9999"},
      {"default,nodefault", "1 0 0 0 0 -9999, -9999"},
      {"over,default,nodefault", "0 2 0 0 0 -9999, -9999"},
      {"fill,index", "1 0 0 1 1 -9999, -9999"},
      {"fc", "1 0 1 0 0 -9999, -9999"},
      {"fill_cont", "1 0 1 0 0 -9999, -9999"},
      {"lalo", "1 0 0 0 0 5, 5"},
      {"lalo=10:20", "1 0 0 0 0 10, 20"},
      {"lalo=10", "1 0 0 0 0 10, 10"},
      {"lalo=-5:nan", "1 0 0 0 0 -9999, -9999"},
      {"lalo=10,nolalo", "1 0 0 0 0 -9999, -9999"},
      {"ct=a.clr,co=red,coll=blue,coln=green,mf=a.map,map_in,unknown=1", "1 0 0 0 0 -9999, -9999"},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.params);
    std::string expected = "MapPlot\n";
    std::string rest = c.state;
    for (const char* name : {"Def", "Type", "Fill cont", "Fill", "Index"}) {
      const std::size_t blank = rest.find(' ');
      expected += std::string(name) + ": " + rest.substr(0, blank) + "\n";
      rest.erase(0, blank + 1);
    }
    EXPECT_EQ(expected + "LaLo: " + rest + "\n", printed(c.params));
  }
}

TEST(MapPlot, ItsDomainIsTheGlobe) {
  KYV::Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
  KYV::MapPlot map;
  KYV::Domain domain;
  EXPECT_EQ(1, map.getDomain(domain));
  EXPECT_TRUE(domain.isSet());
  EXPECT_TRUE(domain.within(KYV::EarthPoint(-45.0f, 170.0f)) && domain.within(KYV::EarthPoint(60.0f, -150.0f)));
}

}  // namespace
