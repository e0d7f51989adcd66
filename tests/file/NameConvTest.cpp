#include "KYV/NameConv.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "KYV/DateTool.h"
#include "KYV/Kyv.h"
#include "KYV/NameConvFile.h"
#include "TempDir.h"

namespace KYV {
namespace {

std::string stamp(const Date& d) {
  String text;
  d.toText("%Y%m%d_%H%M", text);
  return text.get();
}

class NameConvTest : public testing::Test {
 protected:
  // The conventions that come with the program.
  NameConvTest() { Kyv::resrc.set("name_conv", RADMAP_SOURCE_DIR "/data/name.cnv"); }
  ~NameConvTest() override {
    Kyv::resrc.clear();
    unsetenv("kyvcurtime");
  }
  // An empty file has no bytes, so it does not count as found.
  void add(const std::string& name, int bytes = 10) {
    std::filesystem::create_directories(std::filesystem::path(dir.path(name)).parent_path());
    dir.write(name, std::string(static_cast<std::size_t>(bytes), 'x'));
  }
  TempDir dir;
};

TEST_F(NameConvTest, TemplateCodesShowTheDate) {
  struct Case {
    const char* pattern;
    const char* name;
    const char* date;  // that the name stands for
  };
  constexpr Case CASES[] = {
      {"%Y%m%d_%h%n", "20240305_1447", "20240305_1447"},
      {"%y %b %B {%d} %%", "24_mar_MAR_05_%", "20240305_XXXX"},
      {"%3h%15n", "1245", "XXXXXXXX_1245"},
      {"%Y%j", "2024065", "20240305_XXXX"},
      {"%m%2d%10y%%", "030420%", "20200304_XXXX"},
      {"%k%2k%3e%q%-4k", "valuevaext0value", "XXXXXXXX_XXXX"},
      {"%f-%3f", "6-006", "XXXXXXXX_XXXX"},
      {"a%?%3?", "a????", "XXXXXXXX_XXXX"},
      {"%", "", "XXXXXXXX_XXXX"},
  };
  Date d(2024, 3, 5, 14, 47, 31.0f);
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.pattern);
    NameConv conv;
    conv.set(c.pattern);
    conv.setKey('k', "value");
    conv.setExt("extension");
    conv.fore_time = 6;
    String name;
    conv.encodeFile(d, name);
    EXPECT_STREQ(c.name, name.get());
    Date shown;
    conv.getDate(shown);
    EXPECT_EQ(c.date, stamp(shown));
  }
  NameConv conv("%Y%m%d_%h%n%b%B%y");
  String name;
  conv.encodeFile(Date(), name);
  EXPECT_STREQ("00000000_0000xxxXXX00", name.get());
}

TEST_F(NameConvTest, DirectoryCodesTakePathOptions) {
  Kyv::resrc.set("data_path", "/one:/two");
  Kyv::resrc.set("sat_path", "/sat");
  Kyv::resrc.set("mine", "/mine");
  String name;
  NameConv conv("%D-%S-%C-%{mine}");
  conv.cpath = 1;
  conv.encodeFile(Date(), name);
  EXPECT_STREQ("/two-.-.-.", name.get());  // the other lists have no second entry
  EXPECT_FALSE(conv.pexist);
  conv.cpath = 0;
  Kyv::resrc.set("data_path", "+mine");
  conv.encodeFile(Date(), name);
  EXPECT_STREQ("/mine-/sat-.-/mine", name.get());

  EXPECT_EQ(1, conv.setPath("res=sat_path"));
  EXPECT_EQ(0, conv.setPath("+nobody"));
  conv.encodeFile(Date(), name);
  EXPECT_STREQ("/sat-/sat-/sat-/sat", name.get());
}

TEST_F(NameConvTest, ConventionTextIsLookedUp) {
  const std::string file = dir.write("own.cnv",
                                     "# %D/comment %D/comment %D\n"
                                     "N0R        %D/%Y%m%d_%h%n_%e           -          1000,nids\n"
                                     "head       %D/%5n                      %D/%h.hdr  nids,-9999 min=90,x,size=7\n"
                                     "short %Y\n"
                                     "headless   %D/%2j                      -          - -\n");
  struct Case {
    const char* spec;
    int result;
    const char* file;
    const char* hdr;
    const char* ext;
    const char* type;
    int size, time, off;
  };
  const Case CASES[] = {
      {"N0R_ktlx", 1, "%D/%Y%m%d_%h%n_%e", "", "ktlx", "nids", 1000, Const::MISS, 60},
      {"n0r", 1, "%D/%Y%m%d_%h%n_%e", "", "", "nids", 1000, Const::MISS, 60},
      {"head,a,b,size=-9999,min=5", 1, "%D/%5n", "%D/%h.hdr", "", "nids", Const::MISS, 5, 300},
      {"head", 1, "%D/%5n", "%D/%h.hdr", "", "nids", 7, 90, 300},
      // "head" stands above it and begins it.
      {"headless", 1, "%D/%5n", "%D/%h.hdr", "", "nids", 7, 90, 300},
      {"%h%2n,%h.hdr,word,size=8", 1, "%h%2n", "%h.hdr", "", "word", 8, Const::MISS, 120},
      {"short", 1, "short", "", "", "", 1, Const::MISS, Const::MISS},
      {"%2j%{x%n}%h", 1, "%2j%{x%n}%h", "", "", "", 1, Const::MISS, 3600},
      {"@/some/%Y file", 1, "/some/%Y file", "", "", "", 1, Const::MISS, Const::MISS},
      {"NONE", 1, "", "", "", "", 1, Const::MISS, Const::MISS},
      {"", 0, "", "", "", "", 1, Const::MISS, Const::MISS},
  };
  Kyv::resrc.set("name_conv", file.c_str());
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.spec);
    NameConv conv;
    EXPECT_EQ(c.result, conv.set(c.spec));
    EXPECT_STREQ(c.file, conv.getFile());
    EXPECT_STREQ(c.hdr, conv.hdr);
    EXPECT_STREQ(c.ext, conv.getExt());
    EXPECT_STREQ(c.type, conv.type);
    EXPECT_EQ(c.size, conv.min_size);
    EXPECT_EQ(c.time, conv.min_time);
    EXPECT_EQ(c.off, conv.off);
  }
  NameConv conv("http://host/%i:i=tlx:t=12345678901234567890123");
  EXPECT_STREQ("http://host/%i", conv.getFile());
  EXPECT_STREQ("tlx", conv.getKey('i'));
  EXPECT_STREQ("1234567890123456789", conv.getKey('t'));
  for (char c = 'A'; c < 'A' + NameConv::MAX_KEY - 2; ++c) EXPECT_EQ(1, conv.setKey(c, "x"));
  EXPECT_EQ(0, conv.setKey('~', "x"));
  EXPECT_EQ(1, conv.setKey('i', "fdr"));

  Kyv::resrc.set("name_conv", dir.path("missing.cnv").c_str());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, conv.set("N0R_%Y"));
  const std::string said = testing::internal::GetCapturedStderr() + testing::internal::GetCapturedStdout();
  EXPECT_NE(std::string::npos, said.find("NameConv: No file name convention file: " + dir.path("missing.cnv")));
  EXPECT_STREQ("N0R_%Y", conv.getFile());
}

TEST_F(NameConvTest, MessagesTellWhatWasFound) {
  const std::string file = dir.write("own.cnv", "N0R        %D/%Y%m%d_%h%n_%e           -          1000,nids\n");
  Kyv::resrc.set("name_conv", file.c_str());
  const std::string opening = "Opening name convention file: " + file + "\n";
  struct Case {
    const char* level;
    const char* spec;
    std::string said;
  };
  const Case CASES[] = {
      {"debug1", "n0r", opening + "File name match for: n0r\nFilename: ./20240305_1447_\nDate: 2024/03/05 14:47:MM\n"},
      {"debug1", "N0R_x",
       opening + "File name partial match for: N0R-%D/%Y%m%d_%h%n_%e ext: x\nFilename: ./20240305_1447_x\n"
                 "Date: 2024/03/05 14:47:MM\n"},
      {"debug1", "%y", opening + "No file name conversion for: %y\nFilename: 24\nDate: 2024/MM/MM MM:MM:MM\n"},
      {"out8", "n0r", ""},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.spec);
    testing::internal::CaptureStdout();
    Kyv::setMessageLevel(c.level);
    NameConv conv(c.spec);
    String name;
    conv.encodeFile(Date(2024, 3, 5, 14, 47, 31.0f), name);
    Kyv::setMessageLevel(6);
    EXPECT_EQ(c.said, testing::internal::GetCapturedStdout());
  }
}

TEST_F(NameConvTest, NamesAreReadBack) {
  struct Case {
    const char* pattern;
    const char* name;
    int result;
    const char* date;
    const char* key;  // of %t
    const char* ext;
  };
  constexpr Case CASES[] = {
      {"%D/n/%t/%t_%Y%m%d_%h%n", "/any/n/N0Q/N0Q_20240501_1830", 1, "20240501_1830", "N0Q", "old"},
      {"%D/n/%t/%t_%Y%m%d_%h%n", "n/N0Q/N0Q_20240501_1830", 1, "20240501_1830", "N0Q", "old"},
      {"%D/n/%t/%t_%Y%m%d_%h%n", "N0Q/N0Q_20240501_1830", 0, "", "N0R", "old"},
      {"%D/n/%t/%t_%Y%m%d_%h%n", "/any/m/N0Q/N0Q_20240501_1830", 0, "", "N0R", "old"},
      {"%D/%t_%y%b%d.%e", "N0R_99may07.new", 1, "19990507_XXXX", "N0R", "new"},
      {"%D/%t_%y%b%d.%e", "N0R_99xxy07.new", 0, "", "N0R", "old"},
      {"%Y%j%h", "/x/202406023", 1, "20240229_23XX", "N0R", "old"},
      {"%3t%Y", "N0Q2024", 1, "2024XXXX_XXXX", "N0Q", "old"},
      {"%t%Y", "N0Q2024", 0, "", "N0R", "old"},
      {"%t%Y", "N0R2024", 1, "2024XXXX_XXXX", "N0R", "old"},
      {"%Y_%2?", "2024_xy", 1, "2024XXXX_XXXX", "N0R", "old"},
      {"%Y_%2?", "2024_x", 0, "", "N0R", "old"},
      {"%Y", "2024.gz", 0, "", "N0R", "old"},
      {"%Y", "", 0, "", "N0R", "old"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(std::string(c.pattern) + " " + c.name);
    NameConv conv(c.pattern);
    conv.setKey('t', "N0R");
    conv.setExt("old");
    ASSERT_EQ(c.result, conv.decode(c.name));
    EXPECT_STREQ(c.key, conv.getKey('t'));
    EXPECT_STREQ(c.ext, conv.getExt());
    if (c.result) {
      Date read;
      conv.getDate(read);
      EXPECT_EQ(c.date, stamp(read));
    }
  }
}

// Files every half hour of 1 May, those of 10:30 and 11:00 being empty or small, and one at 03:00 in a second
// directory; now is 12:20.
TEST_F(NameConvTest, SpecificationsFindTheirFiles) {
  for (int m = 0; m < 24 * 60; m += 30) {
    char name[40];
    StrLib::printf(name, "a/20240501_%2.2d%2.2d", m / 60, m % 60);
    add(name, m == 630 ? 0 : m == 660 ? 4 : 10);
  }
  add("b/20240430_0300");
  struct Case {
    const char* spec;
    const char* fix;
    bool there;
    const char* name;
  };
  constexpr Case CASES[] = {
      {"la", "", true, "a/20240501_1200"},
      {"", "", true, "a/20240501_1200"},
      {"l", "", true, "a/20240501_1200"},
      {"la-1", "", false, "a/20240501_1100"},  // too small
      {"la-2:00", "", true, "a/20240501_1000"},
      {"la+0:30", "", true, "a/20240501_1230"},
      {"la-12:30", "", false, "a/20240430_2330"},
      {"-1la", "", true, "a/20240501_1000"},  // 10:30 and 11:00 do not count
      {"+1la", "", true, "a/20240501_1300"},
      {"1:20+la", "", true, "a/20240501_1130"},  // forward from 11:00
      {"+la", "", true, "a/20240501_1230"},
      {"la#20", "", false, "a/20240501_1201"},
      {"la#21", "", true, "a/20240501_1200"},
      {"0", "", false, "a/20240501_1220"},
      {"0:20", "", true, "a/20240501_1200"},
      {"1d9:20", "", true, "b/20240430_0300"},
      {"01d09:20", "", true, "b/20240430_0300"},
      {"02:20:00", "", true, "a/20240501_1000"},
      {"20240501_0830", "", true, "a/20240501_0830"},
      {"#202405010830", "", true, "a/20240501_0830"},
      {"2024-05-01T08:30:15.5", "", true, "a/20240501_0830"},
      {"2024-05-01T08:30", "", true, "a/20240501_0830"},
      {"2024-05-01", "", true, "a/20240501_0000"},
      {"2024-05-01T08:31la", "", true, "a/20240501_0830"},
      {"20240501_083000", "", true, "a/20240501_0830"},
      {"2024050108", "", true, "a/20240501_0800"},
      {"20240501", "", true, "a/20240501_0000"},
      {"20240501_0830-1", "", true, "a/20240501_0730"},
      {"20240501_0831la", "", true, "a/20240501_0830"},
      {"20240501_0831la-2", "", true, "a/20240501_0630"},
      {">20240501_0831", "", true, "a/20240501_0831"},
      {"la", "-6", true, "a/20240501_1200"},
      {"la", "3", true, "a/20240501_0300"},    // 03:20
      {"la", "13", false, "a/20240430_0501"},  // 499 minutes before yesterday's 13:20
      {"la", ":45", true, "a/20240501_1130"},  // 11:45
      {"la", "0:-30", true, "a/20240501_0000"},
      {"0", "-5:-15", false, "a/20240501_1015"},
      {"0", "-6", false, "a/20240501_1220"},
      // The last moment that has all the fields.
      {"0", "11:46", false, "a/20240501_1146"},
      {"0", "12:20", false, "a/20240501_1220"},
      {"0", "12:21", false, "a/20240430_1221"},
      {"0", "-6:45", false, "a/20240501_0645"},
      {"0", "011219", false, "a/20240501_1219"},
      {"0", "011221", false, "a/20240401_1221"},
      {"0", "1d", false, "a/20240501_1220"},
      {"0", "2d", false, "a/20240402_1220"},
      {"0", "311200", false, "a/20240331_1200"},  // April has 30 days
      {"0", "#202402291200", false, "a/20240229_1200"},
      {"0", "#202406011200", false, "a/20230601_1200"},
      {"@some file", "", false, "some file"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(std::string(c.spec) + " " + c.fix);
    NameConv conv("%D/%Y%m%d_%h%n,,,size=5");
    conv.setPath((dir.path("none") + ":" + dir.path("a") + ":" + dir.path("b")).c_str());
    conv.setLateDate(Date(2024, 5, 1, 12, 20, 0.0f));
    conv.setFixDate(c.fix);
    NameConvFile found;

    EXPECT_EQ(c.there, conv.setLatest(c.spec, found) == 1);
    if (*c.spec == '@') {
      EXPECT_STREQ(c.name, found.filename);
    } else if (c.there) {
      EXPECT_EQ(dir.path(c.name), found.filename);
    } else {
      EXPECT_EQ(std::string(c.name).substr(2), stamp(found.date));
      EXPECT_EQ(dir.path("none/") + stamp(found.date), found.filename);  // back to the first directory
    }
    EXPECT_STREQ(conv.getName(), found.filename);
  }
}

TEST_F(NameConvTest, NowComesFromTheFirstThatIsSet) {
  add("20240102_1530");
  add("20240102_1400");
  add("20240102_1215");
  NameConv conv("%D/%Y%m%d_%h%n");
  conv.setPath(dir.path().c_str());
  NameConvFile found;
  const auto latest = [&] { return conv.setLatest("la", found) ? stamp(found.date) : "none"; };
  EXPECT_EQ("none", latest());
  setenv("kyvcurtime", "202401021535", 1);
  EXPECT_EQ("20240102_1530", latest());
  setenv("kyvcurtime", "#2024010213", 1);
  EXPECT_EQ("20240102_1215", latest());
  conv.setLateDate(Date(2024, 1, 2, 14, 0, 0.0f));
  EXPECT_EQ("20240102_1400", latest());
  Kyv::setInitTime(DateTool::getSeconds("#202401021600"));
  EXPECT_EQ("20240102_1530", latest());
  Kyv::setInitTime(Const::MISS);
}

TEST_F(NameConvTest, OptionsAndHeaderFiles) {
  add("x/20240501_0000");
  add("x/20240501.hdr");
  NameConv conv("%D/%Y%m%d_%h%n,%D/%Y%m%d.hdr");
  conv.setPath(dir.path("x").c_str());
  conv.setLateDate(Date(2024, 5, 1, 12, 0, 0.0f));
  NameConvFile found;
  EXPECT_EQ(0, conv.setLatest("la", found));  // 500 minutes do not reach it
  conv.min_time = 720;
  EXPECT_EQ(1, conv.setLatest("la", found));
  EXPECT_EQ(dir.path("x/20240501.hdr"), found.header);
  EXPECT_EQ(60, found.offset);
  conv.min_time = Const::MISS;
  conv.setLateLimit(721);
  EXPECT_EQ(1, conv.setLatest("la", found));

  EXPECT_EQ(0, conv.setFile(Date(2024, 5, 1, 0, 1, 0.0f), found));
  EXPECT_EQ(0, conv.setFile(Date(2024, 5, 1, 0, 3, 0.0f), 120, found));
  EXPECT_EQ("20240501_0003", stamp(found.date));
  EXPECT_EQ(1, conv.setFile(Date(2024, 5, 1, 0, 2, 0.0f), 120, found));
  EXPECT_EQ("20240501_0000", stamp(found.date));
  conv.setOutput(true);
  EXPECT_EQ(1, conv.setFile(Date(2024, 5, 1, 0, 1, 0.0f), found));
}

}  // namespace
}  // namespace KYV
