#include "KYV/ResrcFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "KYV/Resrc.h"
#include "KYV/String.h"
#include "Restore.h"
#include "TempDir.h"

namespace KYV {

namespace {

using Texts = std::vector<std::string>;

// All lines as "name=value".
Texts readAll(ResrcFile& file, int (ResrcFile::*next)(String&, String&)) {
  Texts all;
  String name, value;
  while ((file.*next)(name, value) > 0) all.push_back(std::string(name.get()) + "=" + value.get());
  EXPECT_STREQ("", name.get());
  EXPECT_STREQ("", value.get());
  return all;
}

}  // namespace

TEST(ResrcFile, ScansNamesAndValues) {
  const std::string n49(49, 'n');
  const std::string v249(249, 'v');
  struct Case {
    const char* what;
    std::string text;
    Texts lines;
  };
  const Case cases[] = {
      {"two words", "radmap.title Radar\n", {"radmap.title=Radar"}},
      {"small letters, no colon", "Radmap.Domain: Us\n", {"radmap.domain=Us"}},
      {"one colon alone", "a:: b\n", {"a:=b"}},
      {"quoted", "radmap.title \"Radar at 12Z\" rest\n", {"radmap.title=Radar at 12Z"}},
      {"empty quotes", "a \"\"\n", {"a="}},
      {"quotes within a word", "a b\"c d\"\n", {"a=b\"c"}},
      {"quote not closed", "a \"b c \r\nd e\n", {"a=b c ", "d=e"}},
      {"further words", "a b c d\n", {"a=b"}},
      {"comment", "#a b\n # c\n", {"#=c"}},
      {"no value", "a\n\n \t \nb\n", {}},
      {"no newline at the end", "a b\nc d", {"a=b", "c=d"}},
      {"newlines of other systems", "a b\r\nc d\r\n", {"a=b", "c=d"}},
      {"name cut by the scan", n49 + "mm v\n", {n49 + "=mm"}},
      {"value cut by the scan", "a " + v249 + "w\n", {"a=" + v249}},
      {"quoted value cut", "a \"" + v249 + "w\"\n", {"a=" + v249}},
      {"null bytes", std::string("a b\0c d\ne \0f\ng h\n", 17), {"a=b", "g=h"}},
      {"bytes beyond ASCII", "\xc4.\xe4 \xff\xfe\n", {"\xc4.\xe4=\xff\xfe"}},
      {"a line without end",
       std::string(300000, ' ') + "a b\n" + std::string(300000, 'x'),
       {"a=b", std::string(49, 'x') + "=" + std::string(249, 'x')}},
      {"nothing", "", {}},
  };
  const TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    ResrcFile file;
    ASSERT_EQ(1, file.open(dir.write("f", c.text).c_str()));
    EXPECT_EQ(c.lines, readAll(file, &ResrcFile::get));
  }
}

TEST(ResrcFile, ConditionalsLetLinesThrough) {
  struct Case {
    const char* what;
    const char* text;
    Texts tags;
    Texts lines;
    const char* warnings = "";
  };
  const Case cases[] = {
      {"version", "IF V6\n*.a 1\nEND\n", {}, {"a=1"}},
      {"version in any case", "if v6\n*.a 1\nend\n", {}, {"a=1"}},
      {"no version for elif", "IF x\nELIF V6\n*.a 1\nEND\n", {}, {}},
      {"defined", "DEF big\nIF big\n*.a 1\nELSE\n*.b 2\nEND\n", {}, {"a=1"}},
      {"not defined", "IF big\n*.a 1\nELSE\n*.b 2\nEND\n*.c 3\n", {}, {"b=2", "c=3"}},
      {"tag of the caller, any case", "IF BIG\n*.a 1\nEND\n", {"big"}, {"a=1"}},
      {"first branch alone", "IF a\n*.a 1\nELIF b\n*.b 2\nELSE\n*.c 3\nEND\n", {"a", "b"}, {"a=1"}},
      {"second branch alone", "IF a\n*.a 1\nELIF b\n*.b 2\nELIF b\n*.x 9\nELSE\n*.c 3\nEND\n", {"b"}, {"b=2"}},
      {"last branch", "IF a\n*.a 1\nELIF b\n*.b 2\nELSE\n*.c 3\nEND\n", {}, {"c=3"}},
      {"all open ones count", "IF a\nIF b\n*.x 1\nEND\n*.y 2\nELSE\nIF b\n*.z 3\nEND\nEND\n", {"b"}, {"z=3"}},
      {"removed", "DEF a\nDEF A\nUNDEF a\nIF a\n*.x 1\nEND\nUNDEF a\nIF a\n*.y 2\nEND\n", {}, {"x=1"}},
      {"defined where no lines are taken", "IF a\nDEF b\nEND\nIF b\n*.x 1\nEND\n", {}, {"x=1"}},
      {"an if of one word is none",
       "IF\n*.x 1\nELIF\nEND\n*.y 2\n",
       {},
       {"x=1", "y=2"},
       "ResrcFile::get: end without an if\n"},
      {"no if",
       "ELIF a\nELSE\nEND\n*.x 1\n",
       {"a"},
       {"x=1"},
       "ResrcFile::get: elif without an if\nResrcFile::get: else without an if\nResrcFile::get: end without an if\n"},
      {"ten tags",
       "DEF 4\nIF 3\n*.x 3\nEND\nIF 4\n*.x 4\nEND\n",
       {"1", "2", "3", "5", "6", "7", "8", "9", "10", "11"},
       {"x=3"}},
      {"long tags are compared as kept",
       "DEF 1234567890123456789a\nIF 1234567890123456789a\n*.x 1\nEND\n",
       {},
       {"x=1"}},
      {"end of file within an if", "IF a\n*.x 1", {}, {}},
  };
  const FreshKyv fresh;
  const EnvVar toOut("kyverrtoout", nullptr);
  const TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    ResrcFile file;
    file.set("radmap", "");
    ASSERT_EQ(1, file.open(dir.write("f", c.text).c_str()));
    for (const std::string& tag : c.tags) EXPECT_EQ(1, file.setTag(tag.c_str()));
    testing::internal::CaptureStderr();
    EXPECT_EQ(c.lines, readAll(file, &ResrcFile::getValid));
    EXPECT_EQ(c.warnings, testing::internal::GetCapturedStderr());
  }
}

TEST(ResrcFile, DefinitionsAreLinesToo) {
  const TempDir dir;
  ResrcFile file;
  ASSERT_EQ(1, file.open(dir.write("f", "DEF a\nDEF\nIF b\nDEF c\nEND\nundef a\n").c_str()));
  EXPECT_EQ((Texts{"def=a", "undef=a"}), readAll(file, &ResrcFile::get));
}

TEST(ResrcFile, DeepIfsAreFalseAndBalanced) {
  constexpr int DEEP = 100000;
  std::string text;
  for (int i = 0; i < DEEP; i++) text += i == 11 ? "IF a\n*.twelfth 12\n" : "IF a\n";
  text += "*.x 1\nELSE\n*.x 2\nELIF a\n*.x 3\n";
  for (int i = 0; i < DEEP; i++) text += "END\n";
  text += "*.y 4\n";
  const FreshKyv fresh;
  const EnvVar toOut("kyverrtoout", nullptr);
  const TempDir dir;
  ResrcFile file;
  file.set("radmap", "");
  ASSERT_EQ(1, file.open(dir.write("f", text).c_str()));
  file.setTag("a");
  testing::internal::CaptureStderr();
  EXPECT_EQ((Texts{"twelfth=12", "y=4"}), readAll(file, &ResrcFile::getValid));
  EXPECT_EQ("ResrcFile::get: too many nested ifs\n", testing::internal::GetCapturedStderr());
}

TEST(ResrcFile, NamesAreAddressedToPrograms) {
  const std::string longProg(40, 'p');
  struct Case {
    const char *what, *prog, *second, *pattern;
    bool valid;
  };
  const Case cases[] = {
      {"program", "radmap", "", "radmap.domain", true},
      {"any program", "radmap", "", "*.domain", true},
      {"end of the program", "radmap", "", "*map.domain", true},
      {"beginning of the program", "radmap", "", "rad*.domain", true},
      {"two pieces", "radmap", "", "r*m*.domain", true},
      {"other program", "radmap", "", "other.domain", false},
      {"no qualifier", "radmap", "", "domain", false},
      {"case counts", "radmap", "", "RADMAP.domain", false},
      {"star and the name", "radmap", "", "*domain", true},
      {"star at the end", "radmap", "", "radmap.*", false},
      {"star alone", "radmap", "", "*", false},
      {"first occurrence alone", "p", "", "*p", false},
      {"program is longer", "radmap", "", "radma.domain", false},
      {"program is shorter", "rad", "", "radmap.domain", false},
      {"second name instead", "radmap", "big", "big.domain", true},
      {"second name hides the program", "radmap", "big", "radmap.domain", false},
      {"second name added", "radmap", "+big", "radmap.big.domain", true},
      {"star over both", "radmap", "+big", "*.domain", true},
      {"second name wanted", "radmap", "+big", "radmap.domain", false},
      {"no program", nullptr, nullptr, ".domain", true},
      {"program is cut", longProg.c_str(), "", "ppppppppppppppppppppppppppppp.domain", true},
      {"empty", "radmap", "", "", false},
      {"null", "radmap", "", nullptr, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    ResrcFile file;
    file.set(c.prog, c.second);
    EXPECT_EQ(c.valid, file.valid(c.pattern));
  }
  ResrcFile file;
  file.set("radmap", "");
  EXPECT_TRUE(file.compare("plot_domain", "*.plot_domain"));
  EXPECT_TRUE(file.compare("plot_domain", "*.plot*main"));
  EXPECT_FALSE(file.compare("plot_domain", "*.domain"));
  // "radmap." and 52 more characters are all that counts.
  EXPECT_TRUE(file.compare(std::string(200, 'x').c_str(), ("*." + std::string(52, 'x')).c_str()));
}

TEST(ResrcFile, ParsesTheBareName) {
  const char* const cases[][2] = {{"radmap.a", "a"}, {"*a", "a"}, {"a", "a"}, {"r.b*c.d", "d"}, {"a.", ""}, {"", ""}};
  for (const auto& c : cases) {
    String out;
    ResrcFile::parseName(c[0], out);
    EXPECT_STREQ(c[1], out.get()) << c[0];
  }
}

TEST(ResrcFile, FindsTheStandardNamesOfADirectory) {
  const TempDir dir;
  EXPECT_EQ(0, ResrcFile().open(dir.path().c_str()));
  for (const char* name : {"Kyv.res", ".kyvdef", "kyv.cfg"}) {
    dir.write(name, std::string("a ") + name);
    for (const char* end : {"", "/"}) {
      ResrcFile file;
      ASSERT_EQ(1, file.open((dir.path() + end).c_str()));
      EXPECT_EQ((Texts{std::string("a=") + name}), readAll(file, &ResrcFile::get));
      file.close();
      EXPECT_FALSE(file.isOpen());
    }
  }
}

TEST(ResrcFile, OpensWhatEndsAndNothingElse) {
  const TempDir dir;
  std::filesystem::create_directories(dir.path("kyv.cfg"));
  ASSERT_EQ(0, mkfifo(dir.path(".kyvdef").c_str(), 0600));
  EXPECT_EQ(0, ResrcFile().open(dir.path().c_str())) << "a directory and a fifo of standard names";
  for (const std::string& path : {dir.path(".kyvdef"), dir.path("missing"), std::string("/dev/zero"),
                                  std::string(5000, 'x'), std::string("http://")}) {
    ResrcFile file;
    EXPECT_EQ(0, file.open(path.c_str())) << path;
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(Texts(), readAll(file, &ResrcFile::get));
  }
  dir.write("Kyv.res", "a b\n");
  EXPECT_EQ(1, ResrcFile().open(dir.path().c_str()));
  ResrcFile pipe;
  ASSERT_EQ(1, pipe.open("|echo a b")) << "the user's own name may be a command";
  EXPECT_EQ((Texts{"a=b"}), readAll(pipe, &ResrcFile::get));
}

TEST(ResrcFile, ReadsIntoAStore) {
  const TempDir dir;
  const std::string path = dir.write("f", "*.a 1\nother.b 2\nradmap.big.c 3\nradmap.a 4\n*.a 5\n");
  Resrc store;
  EXPECT_EQ(0, ResrcFile(store).readFile(store, dir.path("missing").c_str()));
  store.set("prog", "radmap");
  store.set("name", "+big");
  EXPECT_EQ(1, ResrcFile(store).readFile(store, path.c_str()));
  EXPECT_STREQ("5", store.get("a"));
  EXPECT_STREQ("3", store.get("c"));
  EXPECT_EQ(nullptr, store.get("b"));
  EXPECT_EQ(Resrc::CODE, store.getType("a"));
}

TEST(ResrcFile, ANewFileKeepsTagsAndOpenIfs) {
  const TempDir dir;
  const std::string first = dir.write("1", "DEF t\nIF no\n");
  const std::string second = dir.write("2", "a 1\nEND\nIF t\nb 2\nEND\n");
  const FreshKyv fresh;
  Kyv::setMessageLevel("error");
  ResrcFile file;
  ASSERT_EQ(1, file.open(first.c_str()));
  EXPECT_EQ((Texts{"def=t"}), readAll(file, &ResrcFile::get));
  ASSERT_EQ(1, file.open(second.c_str()));
  EXPECT_EQ((Texts{"b=2"}), readAll(file, &ResrcFile::get));
  file.init();
  ASSERT_EQ(1, file.open(second.c_str()));
  EXPECT_EQ((Texts{"a=1"}), readAll(file, &ResrcFile::get));
}

}  // namespace KYV
