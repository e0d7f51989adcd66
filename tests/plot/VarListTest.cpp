#include "KYV/VarList.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "../resrc/Restore.h"
#include "KYV/Date.h"
#include "KYV/Timezone.h"
#include "TempDir.h"

namespace KYV {
namespace {

class VarListTest : public testing::Test {
 protected:
  // All that is chosen, "name:layer:units:format:map".
  std::string chosen() const {
    std::string text;
    for (int i = 0; i < list.getNum(); ++i) {
      if (i) text += ' ';
      text += std::string(list.getName(i)) + ":" + std::to_string(list.getLayer(i)) + ":" + list.getUnits(i) + ":" +
              list.getFormat(i) + ":" + (list.isMap(i) ? "1" : "0");
    }
    return text;
  }
  // The lines on standard error while this is done.
  template <class Do>
  static long warnings(Do what) {
    testing::internal::CaptureStderr();
    what();
    const std::string text = testing::internal::GetCapturedStderr();
    return std::count(text.begin(), text.end(), '\n');
  }
  void read(const std::string& content) { ASSERT_EQ(1, list.setFile(dir.write("own.var", content).c_str())); }

  FreshKyv fresh;
  TempDir dir;
  VarList list;
};

TEST_F(VarListTest, TakesTheItemsOfAText) {
  read("# comment\n\ncid 1 - ul 0 Storm cell\nhsize 1 in lr,fm=%.2f 0\n  map 0 - - 1 Own  maps\n");
  struct Case {
    const char* text;
    const char* chosen;
  };
  constexpr Case CASES[] = {
      {"cid,hsize", "cid:1::ul:0 hsize:1:in:lr,fm=%.2f:0"},
      {"hsize/CID:map", "hsize:1:in:lr,fm=%.2f:0 cid:1::ul:0 map:0:::1"},
      {"[cid,map]", "cid:1::ul:0 map:0:::1"},
      {"[cid", "cid:1::ul:0"},
      {"\"(map), {cid}\"", "map:0:::1 cid:1::ul:0"},
      {"cid[un=m/s,co=red]/map", "cid:1:m/s:ul,co=red:0 map:0:::1"},
      {"{map[ul],cid[,,fm=%.1f}", "map:0::ul:1 cid:1::ul,fm=%.1f}:0"},
      {"cid,cid", "cid:1::ul:0 cid:1::ul:0"},
      {",,[]/", ""},
      {"", ""},
      {nullptr, ""},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text ? c.text : "null");
    EXPECT_EQ(1, list.process(c.text));
    EXPECT_EQ(c.chosen, chosen());
  }
  EXPECT_FALSE(list.isMap());
  list.process("cid,map");
  EXPECT_TRUE(list.isMap());
  EXPECT_STREQ("Own maps", list.getVarSpec(1).getTitle());
  EXPECT_STREQ("", list.getName(2));
  EXPECT_TRUE(Const::isMissing(list.getLayer(-1)));
}

TEST_F(VarListTest, FaultsAreToldOnce) {
  const std::string file = dir.write("own.var", "cid 1 - ul 0\nshort 1 -\nname_of_twenty_chars 1 - - 0\nx 1 - - 7\n");
  EXPECT_EQ(3, warnings([&] { EXPECT_EQ(1, list.setFile(file.c_str())); }));
  EXPECT_EQ(1, warnings([&] { EXPECT_EQ(0, list.process("foo,cid,bar")); }));
  EXPECT_EQ("cid:1::ul:0", chosen());
  EXPECT_EQ(0, warnings([&] {
              EXPECT_EQ(1, list.setFile(file.c_str()));
              EXPECT_EQ(0, list.getNum());
              EXPECT_EQ(0, list.process("foo,cid,bar"));
            }));
  EXPECT_EQ(1, warnings([&] { list.process("x"); }));

  const std::string none = dir.path("none.var");
  EXPECT_EQ(1, warnings([&] {
              EXPECT_EQ(0, list.setFile(none.c_str()));
              EXPECT_EQ(0, list.process("cid"));
              EXPECT_EQ(0, list.setFile(none.c_str()));
            }));
  EXPECT_EQ(0, list.getNum());
}

TEST_F(VarListTest, CountsAndLengthsHaveLimits) {
  std::string content, text;
  for (int i = 0; i < 600; ++i) content += "v" + std::to_string(i) + " 1 - ul 0\n";
  for (int i = 0; i < 200; ++i) text += "v0,";
  content.insert(0, "long 1 - ul 0 " + std::string(100000, 'x') + "\n");
  EXPECT_EQ(1, warnings([&] { read(content); }));
  EXPECT_EQ(1, list.process(text.c_str()));
  EXPECT_EQ(VarList::MAX_CHOSEN, list.getNum());
  EXPECT_EQ(1, list.process("long,v498"));
  EXPECT_EQ(1, warnings([&] { EXPECT_EQ(0, list.process("v499")); }));
}

TEST_F(VarListTest, TheShippedFileKnowsEveryStormAttribute) {
  Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
  EXPECT_EQ(0, warnings([&] {
              ASSERT_EQ(1, list.setFile("radmap.var"));
              EXPECT_EQ(1, list.process("cid,tvs,meso,meso5,poh,poh5,posh,hsize,vil,dbzm,dbzht,ctop,cdir,cspd,cmvmt,"
                                        "cstat,comp,track"));
            }));
  EXPECT_EQ(18, list.getNum());
  for (int i = 0; i < list.getNum(); ++i) {
    EXPECT_EQ(1, list.getLayer(i));
    EXPECT_FALSE(list.isMap(i));
    EXPECT_STREQ("", list.getUnits(i));
  }
  EXPECT_EQ(1, list.process("title,map"));
  EXPECT_EQ(0, list.getLayer(0));
  EXPECT_FALSE(list.isMap(0));
  EXPECT_TRUE(list.isMap(1));
}

TEST(VarSpec, MakesLabels) {
  const VarSpec spec("Hail size");
  String label;
  EXPECT_EQ(1, spec.toInfoLabel("in", label));
  EXPECT_STREQ("Hail size [in]", label.get());
  EXPECT_EQ(1, spec.toInfoLabel("", label));
  EXPECT_STREQ("Hail size", label.get());
  const Date date(2024, 5, 1, 18, 30, Const::MISS);
  EXPECT_EQ(1, spec.toDateLabel(date, Timezone(), "", label));
  EXPECT_STREQ("1830Z  1 MAY 24", label.get());
  EXPECT_EQ(1, spec.toDateLabel(date, Timezone(), "Valid", label));
  EXPECT_STREQ("Valid 1830Z  1 MAY 24", label.get());
  EXPECT_EQ(0, spec.toDateLabel(Date(), Timezone(), nullptr, label));
  EXPECT_STREQ("", label.get());
}

}  // namespace
}  // namespace KYV
