// Whole searches through trees of files, by the conventions that come with the program.
#include <gtest/gtest.h>

#include <filesystem>

#include "KYV/Filename.h"
#include "KYV/Kyv.h"
#include "TempDir.h"

namespace KYV {
namespace {

class NameTreeTest : public testing::Test {
 protected:
  NameTreeTest() {
    Kyv::resrc.set("name_conv", RADMAP_SOURCE_DIR "/data/name.cnv");
    Kyv::resrc.set("data_path", (dir.path("nowhere") + ":" + dir.path()).c_str());
    Kyv::setInitTime(Date(2024, 5, 2, 0, 10, 0.0f).secs);
  }
  ~NameTreeTest() override {
    Kyv::resrc.clear();
    Kyv::setInitTime(Const::MISS);
  }
  void add(const std::string& name, int bytes = 200) {
    std::filesystem::create_directories(std::filesystem::path(dir.path(name)).parent_path());
    dir.write(name, std::string(static_cast<std::size_t>(bytes), 'x'));
  }
  Filename open(const char* convention, const char* station, const char* product) {
    Filename file;
    file.setNameConv(convention);
    file.setKey('i', station);
    file.setKey('t', product);
    return file;
  }
  // The file's name within the tree.
  std::string name(const Filename& file) const {
    const std::string all = file.getName();
    return all.starts_with(dir.path()) ? all.substr(dir.path().size() + 1) : all;
  }
  TempDir dir;
};

TEST_F(NameTreeTest, ShippedConventionsFindTheirFiles) {
  struct Case {
    const char* convention;
    const char* early;  // 1 May 22:58
    const char* late;   // 1 May 23:58
    const char* other;  // another station or product, later
  };
  constexpr Case CASES[] = {
      {"nids", "nids/TLX/N0Q/N0Q_20240501_2258", "nids/TLX/N0Q/N0Q_20240501_2358", "nids/FDR/N0Q/N0Q_20240502_0001"},
      {"nids", "nids/ktlx/n0q/n0q_20240501_2258", "nids/ktlx/n0q/n0q_20240501_2358", "nids/tlx/n0v/n0v_20240502_0001"},
      {"decoder", "KTLX/N0Q/N0Q_20240501_2258", "KTLX/N0Q/N0Q_20240501_2358", "KTLX/N0V/N0V_20240502_0001"},
      {"server", "N0Q/TLX/20240501/Level3_TLX_N0Q_20240501_2258.nids",
       "N0Q/TLX/20240501/Level3_TLX_N0Q_20240501_2358.nids", "N0Q/FDR/20240502/Level3_FDR_N0Q_20240502_0001.nids"},
      {"broadcast", "KOUN_SDUS54_N0QTLX_202405012258", "KOUN_SDUS54_N0QTLX_202405012358",
       "KOUN_SDUS54_N0QFDR_202405020001"},
      {"ncei", "KOUN_SDUS54_N0QTLX_202405012258", "KOUN_SDUS54_N0QTLX_202405012358", "KOUN_SDUS54_N0VTLX_202405020001"},
      {"cloud", "TLX_N0Q_2024_05_01_22_58_59", "TLX_N0Q_2024_05_01_23_58_01", "FDR_N0Q_2024_05_02_00_01_00"},
      {"cloud", "KTLX_N0Q_2024_05_01_22_58_59", "KTLX_N0Q_2024_05_01_23_58_01", "KTLXX_N0Q_2024_05_02_00_01_00"},
  };
  constexpr const char* KEYS[][2] = {{"ktlx", "n0q"}, {"KTLX", "N0Q"}, {"tlx", "N0Q"}, {"TLX", "n0q"}};
  for (const Case& c : CASES) {
    for (const char* file_name : {c.early, c.late, c.other}) add(file_name);
    for (const auto& [station, product] : KEYS) {
      SCOPED_TRACE(std::string(c.convention) + " " + station + " " + product + " " + c.late);
      Filename file = open(c.convention, station, product);
      EXPECT_EQ(1, file.setFile());
      EXPECT_EQ(c.late, name(file));
      EXPECT_FALSE(file.isFixed());
      EXPECT_EQ(60, file.getOffset());
      EXPECT_EQ(1, file.setFile(Date(2024, 5, 1, 23, 40, 0.0f)));
      EXPECT_EQ(c.early, name(file));
      EXPECT_EQ(0, file.setFile(Date(2024, 5, 1, 22, 57, 0.0f)));
      String search;
      EXPECT_EQ(1, file.getSearch(search));
      EXPECT_TRUE(search.contains((dir.path("nowhere") + " (missing)").c_str()));
    }
    std::filesystem::remove_all(dir.path());
    std::filesystem::create_directory(dir.path());
  }
  add("SL.us008001/DF.of/DC.radar/DS.180z0/SI.ttpa/sn.last");
  Filename file = open("fileserver", "TTPA", "180z0");
  EXPECT_EQ(1, file.setFile());
  EXPECT_EQ("SL.us008001/DF.of/DC.radar/DS.180z0/SI.ttpa/sn.last", name(file));
}

TEST_F(NameTreeTest, OfSeveralNamesForAMinuteTheLastWholeOneIsTaken) {
  for (const char* second : {"07", "31"}) add(std::string("TLX_N0Q_2024_05_01_23_58_") + second);
  add("TLX_N0Q_2024_05_01_23_58_40", 100);  // shorter than any product
  Filename file = open("cloud", "TLX", "N0Q");
  EXPECT_EQ(1, file.setFile());
  EXPECT_EQ("TLX_N0Q_2024_05_01_23_58_31", name(file));
}

TEST_F(NameTreeTest, OneSpecification) {
  add("nids/TLX/N0Q/N0Q_20240501_2330");
  add("nids/TLX/N0Q/N0Q_20240502_0010");
  add("own.nids");
  const std::string tree = dir.path("nids/TLX/N0Q/");
  struct Case {
    std::string spec;
    std::string name;  // within the tree of the station, or a whole one
    bool there, fixed;
    const char* date;
  };
  constexpr const char* NONE = "XXXXXXXX_XXXX";
  const Case CASES[] = {
      {"la", "N0Q_20240502_0010", true, false, "20240502_0010"},
      {"LAtest-0:40", "N0Q_20240502_0010", true, false, "20240502_0010"},
      {"la-0:40", "N0Q_20240501_2330", true, false, "20240501_2330"},
      {"cu", "N0Q_20240502_0010", true, false, "20240502_0010"},
      {"cu=0:40", "N0Q_20240501_2330", true, false, "20240501_2330"},
      {"CU-0:40", "N0Q_20240501_2330", true, false, "20240501_2330"},
      {"#202405012330", "N0Q_20240501_2330", true, false, "20240501_2330"},
      {"#202405012330+0:40", "N0Q_20240502_0010", true, false, "20240502_0010"},
      {"#202405020000la", "N0Q_20240501_2330", true, false, "20240501_2330"},
      {"@la", "la", false, true, NONE},
      {"-", "-", true, true, NONE},
      {"StdN", "-", true, true, NONE},
      {dir.path("own.nids"), dir.path("own.nids"), true, true, NONE},
      {"missing.nids", "missing.nids", false, true, NONE},
      {tree + "N0Q_20240501_2330", "N0Q_20240501_2330", true, false, "20240501_2330"},
      {"/else/nids/TLX/N0Q/N0Q_20240501_2330", "N0Q_20240501_2330", true, false, "20240501_2330"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.spec);
    Filename file = open("nids", "TLX", "N0Q");
    EXPECT_EQ(1, file.checkFile(c.spec.c_str()));
    EXPECT_EQ(c.there, file.exist());
    EXPECT_EQ(c.fixed, file.isFixed());
    EXPECT_EQ(c.fixed ? c.name : tree + c.name, file.getName());
    Date date;
    file.getDate(date);
    String text;
    date.toText("%Y%m%d_%H%M", text);
    EXPECT_STREQ(c.date, text.get());
  }
  Filename literal;
  EXPECT_EQ(1, literal.checkFile("la"));  // without a convention every text is a name
  EXPECT_STREQ("la", literal.getName());
  EXPECT_EQ(0, literal.checkFile(""));
  EXPECT_EXIT(literal.checkFile("exit"), testing::ExitedWithCode(0), "");
}

// Files named by their paths, with others of the same names in the tree that is searched.
TEST_F(NameTreeTest, ANamedFileStandsForItsOwnDate) {
  for (const char* minute : {"2300", "2330", "2345"}) add(std::string("nids/TLX/N0Q/N0Q_20240501_") + minute);
  add("else/nids/TLX/N0Q/N0Q_20240501_2330");
  add("else/nids/TLX/N0Q/N0Q_20240501_2100", 1);  // smaller than any product
  struct Case {
    const char* spec;
    Date date;  // of a frame
    const char* name;
  };
  const Case CASES[] = {
      {"2330", Date(2024, 5, 1, 23, 30, 0.0f), "else/nids/TLX/N0Q/N0Q_20240501_2330"},
      {"2330", Date(2024, 5, 1, 23, 29, 0.0f), "nids/TLX/N0Q/N0Q_20240501_2300"},
      {"2330", Date(2024, 5, 1, 23, 44, 0.0f), "else/nids/TLX/N0Q/N0Q_20240501_2330"},
      {"2330", Date(2024, 5, 1, 23, 45, 0.0f), "nids/TLX/N0Q/N0Q_20240501_2345"},
      {"2330", Date(2024, 5, 1, 22, 59, 0.0f), nullptr},
      {"2100", Date(2024, 5, 1, 21, 0, 0.0f), "else/nids/TLX/N0Q/N0Q_20240501_2100"},
      {"2100", Date(2024, 5, 1, 22, 0, 0.0f), "else/nids/TLX/N0Q/N0Q_20240501_2100"},
      {"2100", Date(2024, 5, 1, 22, 1, 0.0f), nullptr},
      {"2100", Date(2024, 5, 1, 20, 59, 0.0f), nullptr},
  };
  for (const Case& c : CASES) {
    String minute;
    c.date.toText("%H:%M", minute);
    SCOPED_TRACE(std::string(c.spec) + " at " + minute.get());
    Filename file = open("nids", "FDR", "N0V");
    const std::string given = dir.path("else/nids/TLX/N0Q/N0Q_20240501_") + c.spec;
    EXPECT_EQ(1, file.checkFile(given.c_str()));
    EXPECT_EQ(given, file.getName());
    EXPECT_FALSE(file.isFixed());
    EXPECT_EQ(60, file.getOffset());
    EXPECT_EQ(c.name != nullptr, file.setFile(c.date) == 1);
    if (c.name) {
      EXPECT_EQ(c.name, name(file));
    }
  }
  // Frames counted from it; a name that is no file is looked for in the tree.
  Filename file = open("nids", "FDR", "N0V");
  file.setFile((dir.path("else/nids/TLX/N0Q/N0Q_20240501_2330") + ",nh=-0:30").c_str());
  ASSERT_EQ(31, file.getNumFiles());
  EXPECT_EQ(1, file.setFile(30));
  EXPECT_EQ("else/nids/TLX/N0Q/N0Q_20240501_2330", name(file));
  EXPECT_EQ(1, file.setFile(0));
  EXPECT_EQ("nids/TLX/N0Q/N0Q_20240501_2300", name(file));
  file.checkFile(dir.path("else/nids/TLX/N0Q/N0Q_20240501_2345").c_str());
  EXPECT_EQ("nids/TLX/N0Q/N0Q_20240501_2345", name(file));
  EXPECT_EQ(1, file.setFile(Date(2024, 5, 1, 23, 30, 0.0f)));
  EXPECT_EQ("nids/TLX/N0Q/N0Q_20240501_2330", name(file));
}

TEST_F(NameTreeTest, ResourcesChooseTheFile) {
  add("nids/TLX/N0Q/N0Q_20240502_0000");
  add("TLX/N0Q/N0Q_20240501_2300");
  struct Case {
    const char* filename;
    const char* current;
    int there;
    const char* name;
    int frames;
  };
  const std::string list = dir.path("a") + "," + dir.path("b,c");
  const Case CASES[] = {
      {nullptr, nullptr, 1, "nids/TLX/N0Q/N0Q_20240502_0000", 1},
      {nullptr, "", 1, "nids/TLX/N0Q/N0Q_20240502_0000", 1},
      {nullptr, "la", 1, "nids/TLX/N0Q/N0Q_20240502_0000", 1},
      {nullptr, "0:10", 1, "nids/TLX/N0Q/N0Q_20240502_0000", 1},
      {"la,nh=1", nullptr, 1, "nids/TLX/N0Q/N0Q_20240502_0000", 61},
      {"decoder:i=TLX:t=N0Q", "la", 1, "TLX/N0Q/N0Q_20240501_2300", 1},
      {"decoder", "la", 1, "TLX/N0Q/N0Q_20240501_2300", 1},
      {"decoder:i=FDR", "la", 0, "FDR/N0Q/N0Q_20240501_0010", 1},
      {list.c_str(), nullptr, 0, "a", 3},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(std::string(c.filename ? c.filename : "-") + " " + (c.current ? c.current : "-"));
    Kyv::resrc.set("name_conv", RADMAP_SOURCE_DIR "/data/name.cnv");
    Kyv::resrc.set("data_path", dir.path().c_str());
    if (c.filename) Kyv::resrc.set("filename", c.filename);
    if (c.current) Kyv::resrc.set("current", c.current);
    Filename file = open("nids", "TLX", "N0Q");
    EXPECT_EQ(c.there, file.setFile());
    EXPECT_EQ(c.name, name(file));
    EXPECT_EQ(c.frames, file.getNumFiles());
    Kyv::resrc.clear();
  }
}

TEST_F(NameTreeTest, WindowsOfFrames) {
  struct Case {
    const char* window;
    int frames;
    int offset;
    const char* first;  // frames counted from 00:10
    const char* last;
  };
  constexpr Case CASES[] = {
      {"-1:00", 13, 300, "20240501_2310", "20240502_0010"},     {"1", 13, 300, "20240502_0010", "20240502_0110"},
      {":30", 7, 300, "20240502_0010", "20240502_0040"},        {"-6,0:30", 13, 1800, "20240501_1810", "20240502_0010"},
      {"1:00-0:30", 19, 300, "20240502_0040", "20240502_0210"}, {"1-:30,1", 2, 3600, "20240502_0040", "20240502_0140"},
      {"0", 1, 300, "20240502_0010", "20240502_0010"},          {"nonsense", 1, 300, "20240502_0010", "20240502_0010"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.window);
    Filename file = open("%D/%Y%m%d_%h%5n", "", "");
    file.setFile("cu");
    file.setNumFiles(c.window);
    ASSERT_EQ(c.frames, file.getNumFiles());
    EXPECT_EQ(c.offset, file.getOffset());
    file.setFile(0);
    EXPECT_EQ(dir.path("nowhere/") + c.first, file.getName());
    file.setFile(c.frames - 1);
    EXPECT_EQ(dir.path("nowhere/") + c.last, file.getName());
    EXPECT_EQ(0, file.setFile(c.frames));
    EXPECT_EQ(0, file.setFile(-1));
  }
  Filename file = open("none", "", "");
  file.setNumFiles("-1:00");
  EXPECT_EQ(1, file.getNumFiles());  // without a period
  file.setNumFiles(-5);
  EXPECT_EQ(5, file.getNumFiles());
}

TEST_F(NameTreeTest, FramesOfAListFollowTheOrderOfTheDatesAskedFor) {
  add("one");
  add("three");
  Filename file = open("nids", "TLX", "N0Q");
  file.setFile((dir.path("one") + "," + dir.path("two") + "," + dir.path("three")).c_str());
  EXPECT_EQ(3, file.getNumFiles());
  const char* const NAMES[] = {"one", "two", "three"};
  for (int round = 0; round < 2; ++round) {
    for (int k = 0; k < 3; ++k) {
      Date d(2024, 5, 1, 10 + k, 0, 0.0f);
      for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(k != 1, file.setFile(d) == 1);
        EXPECT_EQ(NAMES[k], name(file));
        EXPECT_STREQ(file.getName(k), k ? file.getName() : file.getName(0));
      }
      Date own;
      file.getDate(own);
      EXPECT_EQ(d.secs, own.secs);  // so that no frame is taken for another's double
    }
  }
  EXPECT_EQ(0, file.setFile(Date(2024, 5, 1, 13, 0, 0.0f)));
}

TEST_F(NameTreeTest, ListingRunsNothing) {
  Filename file = open("%D/%i'$(touch hacked)`%t`%Y%2?;%b", "-x", "$HOME");
  file.setPath("; touch hacked; '&");
  EXPECT_EXIT(file.listFile(), testing::ExitedWithCode(0), "^$");
  EXPECT_FALSE(std::filesystem::exists("hacked"));
}

}  // namespace
}  // namespace KYV
