#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KYV/RadMap.h"
#include "KYV/StormAttr.h"
#include "KYV/StormTable.h"

namespace {

using KYV::StormAttr;
using KYV::StormTable;
constexpr float MISS = KYV::Const::MISS;

constexpr const char* STRUCTURE = " STORM ID  AZ RAN  TVS MESO HAIL  DBZM HT  VLOW  TOP  FCST";
constexpr const char* ATTRIBUTES = " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT ";

TEST(StormAttr, HeadersSetTheLayout) {
  const struct {
    const char* line;
    int type;
  } CASES[] = {{STRUCTURE, 1}, {"anything", 1}, {ATTRIBUTES, 2}, {"VIL and VLOW", 1}, {"NO STORMS DETECTED", 0}};
  StormAttr s;
  for (const auto& c : CASES) {
    s.checkType(c.line);
    EXPECT_EQ(c.type, s.type) << c.line;
  }
  EXPECT_EQ(1, s.decode("A1 100/20 NONE NONE"));
  EXPECT_FLOAT_EQ(MISS, s.ang) << "no layout, nothing to decode";
}

TEST(StormAttr, StructureLines) {
  StormAttr s;
  s.decode(STRUCTURE);
  ASSERT_EQ(1, s.decode(" A1 161 54 YES NO PRO 63.5 24.4 30.1 > 45.2 236 41"));
  EXPECT_STREQ("A1", s.id);
  EXPECT_FLOAT_EQ(161.0f, s.ang);
  EXPECT_FLOAT_EQ(54.0f, s.rad);
  EXPECT_EQ(1, s.tvs);
  EXPECT_EQ(0, s.meso);
  EXPECT_EQ(50, s.hail);
  EXPECT_FLOAT_EQ(63.5f, s.dbzm);
  EXPECT_FLOAT_EQ(24.4f, s.dbzht);
  EXPECT_FLOAT_EQ(30.1f, s.vlow);
  EXPECT_FLOAT_EQ(45.2f, s.tops);
  EXPECT_FLOAT_EQ(236.0f, s.dir);
  EXPECT_FLOAT_EQ(41.0f, s.spd);
  EXPECT_EQ(1, s.decode("B2 1 2 NO YES POS"));
  EXPECT_EQ(1, s.meso);
  EXPECT_EQ(100, s.hail);
  EXPECT_EQ(0, s.decode("   "));
  EXPECT_EQ(1, s.type) << "the layout holds for the lines that follow";
}

TEST(StormAttr, AttributeLines) {
  const struct {
    const char* what;
    const char* line;
    int result;
    float ang, rad;
    int tvs, meso, shail, hail;
    float hsize, vil, dbzm, dbzht, tops, dir, spd;
  } CASES[] = {
      {"as products have it", "    M9   81/ 23 NONE    3   60/100/ 1.50    47  62  6.3  26.9  245/ 60  ", 1, 81, 23, 0,
       3, 60, 100, 1.50f, 47, 62, 6.3f, 26.9f, 245, 60},
      {"without the first blank", "   M9   81/ 23 NONE    3   60/100/ 1.50    47  62  6.3  26.9  245/ 60  ", 1, 81, 23,
       0, 3, 60, 100, 1.50f, 47, 62, 6.3f, 26.9f, 245, 60},
      {"small hail", "    H3   45/ 36 NONE    5    0/ 50/<0.50    21  56  4.2  19.5  249/ 47  ", 1, 45, 36, 0, 5, 0, 50,
       0.25f, 21, 56, 4.2f, 19.5f, 249, 47},
      {"small hail without the blank", "   H3   45/ 36 NONE    5    0/ 50/<0.50    21  56  4.2  19.5  249/ 47  ", 1, 45,
       36, 0, 5, 0, 50, 0.25f, 21, 56, 4.2f, 19.5f, 249, 47},
      {"a top above the beams", "    A0  224/ 58 TVS  MESO    0/  0/ 0.00     5  42 12.4 >31.1  286/  8  ", 1, 224, 58,
       10, 1, 0, 0, 0, 5, 42, 12.4f, 31.1f, 286, 8},
      {"a new storm", "    F4   66/ 48 NONE NONE    0/  0/ 0.00     2  39  8.5   8.5    NEW    ", 1, 66, 48, 0, 0, 0, 0,
       0, 2, 39, 8.5f, 8.5f, MISS, MISS},
      {"hail unknown", "    X0  161/154    2 NONE     UNKNOWN       63  24.4 45.0 50.0  236/ 41", 1, 161, 154, 2, 0, 0,
       0, 0, 24.4f, 45.0f, 50.0f, 0, 236, 41},
      {"too short", "    X0  161/154", 0, MISS, MISS, 0, 0, 0, 0, 0, 0, 0, 0, 0, MISS, MISS},
      {"a header", ATTRIBUTES, 0, MISS, MISS, 0, 0, 0, 0, 0, 0, 0, 0, 0, MISS, MISS},
      {"nothing", "", 0, MISS, MISS, 0, 0, 0, 0, 0, 0, 0, 0, 0, MISS, MISS},
  };
  StormAttr s;
  s.decode(ATTRIBUTES);
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.result, s.decode(c.line));
    EXPECT_FLOAT_EQ(c.ang, s.ang);
    EXPECT_FLOAT_EQ(c.rad, s.rad);
    EXPECT_EQ(c.tvs, s.tvs);
    EXPECT_EQ(c.meso, s.meso);
    EXPECT_EQ(c.shail, s.shail);
    EXPECT_EQ(c.hail, s.hail);
    EXPECT_FLOAT_EQ(c.hsize, s.hsize);
    if (std::string(c.what) == "hail unknown") continue;  // its columns shift, as they may
    EXPECT_FLOAT_EQ(c.vil, s.vil);
    EXPECT_FLOAT_EQ(c.dbzm, s.dbzm);
    EXPECT_FLOAT_EQ(c.dbzht, s.dbzht);
    EXPECT_FLOAT_EQ(c.tops, s.tops);
    EXPECT_FLOAT_EQ(c.dir, s.dir);
    EXPECT_FLOAT_EQ(c.spd, s.spd);
  }
}

TEST(StormTable, AColumnIsAStorm) {
  StormTable table;
  const auto read = [&](const std::vector<const char*>& lines) {
    table.clear();
    for (const char* line : lines) table.add(line);
    return table.getStorms();
  };
  std::vector<StormAttr> s =
      read({" STORM ID        X0        M9        U7  ", " AZ/RAN    161/154    81/ 23   127/170  ",
            " FCST MVT  236/ 41   246/ 61      NEW    ", " ERR/MEAN  0.9/ 2.0  1.6/ 1.4  0.0/ 0.0",
            " DBZM HGT   63 24.4   62  6.3   46 28.9"});
  ASSERT_EQ(3u, s.size());
  EXPECT_STREQ("M9", s[1].id);
  EXPECT_FLOAT_EQ(81.0f, s[1].ang);
  EXPECT_FLOAT_EQ(23.0f, s[1].rad);
  EXPECT_FLOAT_EQ(61.0f, s[1].spd);
  EXPECT_FLOAT_EQ(62.0f, s[1].dbzm);
  EXPECT_STREQ("kft", s[1].getHeightUnits());
  EXPECT_FLOAT_EQ(MISS, s[2].dir);
  EXPECT_FLOAT_EQ(46.0f, s[2].dbzm);

  s = read({"  STORM ID            B2       E1  ", "  AZ/RAN          25/ 48   27/126  ",
            "  POSH/POH         70/100  UNKNOWN ", "  MAX HAIL SIZE    <0.50  UNKNOWN "});
  ASSERT_EQ(2u, s.size());
  EXPECT_EQ(70, s[0].shail);
  EXPECT_EQ(100, s[0].hail);
  EXPECT_FLOAT_EQ(0.5f, s[0].hsize);
  EXPECT_EQ(0, s[1].hail);

  s = read({" TYPE STID  TVS   M0 ETVS   D0", " AZ    RAN  268   12  216   52"});
  ASSERT_EQ(2u, s.size());
  EXPECT_STREQ("D0", s[1].id);
  EXPECT_EQ(1, s[1].tvs);
  EXPECT_FLOAT_EQ(52.0f, s[1].rad);

  s = read({" CIR STMID  65    X0 659    H4", " SR   LLRV  10L   49   8L   16", " AZ    RAN 167   159 058     6"});
  ASSERT_EQ(2u, s.size());
  EXPECT_EQ(10, s[0].meso);
  EXPECT_EQ(8, s[1].meso);
  EXPECT_FLOAT_EQ(58.0f, s[1].ang);

  EXPECT_TRUE(read({"AZ/RAN", " STORM ID A B C", "POSH/POH 1e30/1e30 nan/inf -5/-5", nullptr, ""}).empty());
}

TEST(RadMap, UnitsOfStormAttributes) {
  EXPECT_STREQ("%", KYV::RadMap::getUnits("POSH"));
  EXPECT_STREQ("100ft", KYV::RadMap::getUnits("ctop"));
  EXPECT_STREQ("knt", KYV::RadMap::getUnits("cmvmt"));
  EXPECT_STREQ("", KYV::RadMap::getUnits("cid"));
  EXPECT_STREQ("", KYV::RadMap::getUnits(nullptr));
}

}  // namespace
