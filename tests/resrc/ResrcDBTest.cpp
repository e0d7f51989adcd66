#include "KYV/ResrcDB.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KYV/Kyv.h"
#include "KYV/ResrcDBList.h"
#include "KYV/String.h"
#include "KYV/Strings.h"
#include "Restore.h"
#include "TempDir.h"

namespace KYV {

namespace {

// A program with a few resources, started with these arguments behind its name.
class ResrcDBTest : public testing::Test {
 protected:
  ResrcDBTest() {
    keyed.add("help", "kyvhelp", "h", "-h           Print help");
    keyed.add("message", "kyvmess", "me", nullptr);
    keyed.add("file_path", "kyvfpath", "fp", nullptr);
    keyed.add("plot_domain", "kyvpltdom", "pd", "-pd domain   Plot domain");
    keyed.add("plot_type", "kyvplot", "pl", nullptr);
    keyed.add("ti_long", nullptr, "tl", nullptr);
    keyed.add("title", "kyvtitle", "ti", nullptr);
    positional.add("filename", "kyvfilenm", nullptr, "filenames... Filenames");
  }

  // Without "-df" no file is read.
  void start(const std::vector<std::string>& arguments) {
    std::vector<const char*> argv = {"/usr/bin/radmap"};
    for (const std::string& argument : arguments) argv.push_back(argument.c_str());
    FreshKyv::reset();
    ResrcDB::create(Strings(static_cast<int>(argv.size()), argv.data()), keyed, positional);
  }
  static std::string get(const char* name) { return Kyv::getResrc(name, "(unset)"); }

  FreshKyv fresh;
  EnvVar defaults{"kyvdefault", ""};
  EnvVar clean[6] = {{"kyv_radmap_default", nullptr}, {"kyv_radmap_plot_domain", nullptr},
                     {"kyvplot_domain", nullptr},     {"kyvpltdom", nullptr},
                     {"kyvfpath", nullptr},           {"kyvmess", nullptr}};
  TempDir dir;
  ResrcDBList keyed, positional;
};

}  // namespace

TEST_F(ResrcDBTest, CommandLineOverEnvironmentOverFiles) {
  struct Case {
    const char* what;
    const char* file;
    const char *qualified, *own, *plain;
    std::vector<std::string> line;
    const char* value;
    int source;
  };
  const Case cases[] = {
      {"nothing", "", nullptr, nullptr, nullptr, {}, "(unset)", 0},
      {"file", "*.plot_domain f\n", nullptr, nullptr, nullptr, {}, "f", Resrc::FILE},
      {"last entry of a file",
       "radmap.plot_domain f\n*.plot_domain g\n",
       nullptr,
       nullptr,
       nullptr,
       {},
       "g",
       Resrc::FILE},
      {"plain variable", "*.plot_domain f\n", nullptr, nullptr, "p", {}, "p", Resrc::ENVIRON},
      {"own variable", "*.plot_domain f\n", nullptr, "o", "p", {}, "o", Resrc::ENVIRON},
      {"qualified variable", "*.plot_domain f\n", "q", "o", "p", {}, "q", Resrc::ENVIRON},
      {"command line", "*.plot_domain f\n", "q", "o", "p", {"-pd", "c"}, "c", Resrc::CMDLINE},
      {"last on the line", "", nullptr, nullptr, nullptr, {"-pd", "c", "--plot_d=d"}, "d", Resrc::CMDLINE},
      {"no value", "*.plot_domain f\n", nullptr, nullptr, nullptr, {"-pd", "-ti"}, "", Resrc::CMDLINE},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const EnvVar variables[] = {
        {"kyv_radmap_plot_domain", c.qualified}, {"kyvpltdom", c.own}, {"kyvplot_domain", c.plain}};
    std::vector<std::string> line = {"-df", dir.write("f", c.file)};
    line.insert(line.end(), c.line.begin(), c.line.end());
    start(line);
    EXPECT_EQ(c.value, get("plot_domain"));
    EXPECT_EQ(c.source, Kyv::getResrcType("plot_domain"));
  }
}

TEST_F(ResrcDBTest, OptionsFindTheirResource) {
  struct Case {
    std::vector<std::string> line;
    const char *name, *value;
  };
  const Case cases[] = {
      {{"-pd", "us"}, "plot_domain", "us"},
      {{"-plot_domain", "us"}, "plot_domain", "us"},
      {{"-plot_dom", "us"}, "plot_domain", "us"},
      {{"-plot_domain=us"}, "plot_domain", "us"},
      {{"--pd", "us"}, "plot_domain", "us"},
      {{"-pd", "-5"}, "plot_domain", "-5"},
      {{"-ti", "x"}, "title", "x"},   // not ti_long
      {{"-t", "x"}, "ti_long", "x"},  // the first in the list
      {{"-plot", "x"}, "plot_domain", "x"},
      {{"-unknown", "x"}, "unknown", "x"},
      {{"-PD", "x"}, "PD", "x"},
      {{"--", "x"}, "filename", "x"},
      {{"--", "x"}, "", "(unset)"},
      {{"-na", "big"}, "name", "big"},
      {{"-nam=big"}, "name", "big"},
      {{"-NA", "big"}, "NA", "(unset)"},
      {{"-DF", "x"}, "default", "x"},
      {{"-dfx", "y"}, "dfx", "(unset)"},
      {{"-defaults", "y"}, "defaults", "(unset)"},
      {{"a"}, "filename", "a"},
      {{"a", "-h", "no", "b", "", "c"}, "filename", "a\nb\n\nc"},
      {{"-file", "k", "a"}, "file_path", "k"},
      {{}, "prog", "radmap"},
      {{}, "name", "radmap"},
  };
  for (const Case& c : cases) {
    start(c.line);
    EXPECT_EQ(c.value, get(c.name)) << testing::PrintToString(c.line);
  }
  EXPECT_STREQ("radmap", Kyv::getProgramName());
}

TEST_F(ResrcDBTest, PositionsFallToTheLastResource) {
  const EnvVar variable("kyvfilenm", "from the environment");
  ResrcDBList two, none;
  two.add("first", nullptr, nullptr, nullptr);
  two.add("filename", "kyvfilenm", nullptr, nullptr);
  const char* argv[] = {"radmap", "a", "b", "c"};
  ResrcDB::create(Strings(4, argv), keyed, two);
  EXPECT_EQ("a", get("first"));
  EXPECT_EQ("b\nc", get("filename"));
  FreshKyv::reset();
  ResrcDB::create(Strings(4, argv), keyed, none);
  EXPECT_EQ("(unset)", get("filename"));
  ResrcDB::create(Strings(), keyed, none);
  EXPECT_EQ("", get("prog"));
}

TEST_F(ResrcDBTest, TagsApplyToTheFilesBehindThem) {
  dir.write("a", "IF test\n*.plot_domain wrong\nELSE\n*.plot_domain a\nEND\nDEF other\n");
  dir.write("b", "IF test\n*.title b\nEND\nIF other\n*.plot_type b\nEND\n");
  dir.write("c", "UNDEF other\nIF no\n");
  struct Case {
    const char* list;  // files of the directory, and tags
    const char *domain, *title, *type;
  };
  constexpr Case CASES[] = {
      {"a", "a", "(unset)", "(unset)"},
      {"a:+test:b", "a", "b", "b"},
      {"+test:a:b", "wrong", "b", "b"},
      {"b:a", "a", "(unset)", "(unset)"},
      {"+test:b:b:b:b:b:b:b:b:b:b:a:b", "wrong", "b", "b"},  // one tag, of ten that there may be
      {"a:c:+test:b", "a", "(unset)", "(unset)"},            // within the IF of c
      {"+no:a:c:+test:b", "a", "b", "(unset)"},
      {"+:+no:missing::b", "(unset)", "(unset)", "(unset)"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.list);
    std::string list;
    const Strings places(c.list, ':');
    for (int i = 0; i < places.getNum(); ++i) {
      const std::string place = places.getString(i);
      list += (i ? ":" : "") + (place.starts_with('+') || place.empty() ? place : dir.path(place));
    }
    start({"-df", list});
    EXPECT_EQ(c.domain, get("plot_domain"));
    EXPECT_EQ(c.title, get("title"));
    EXPECT_EQ(c.type, get("plot_type"));
  }
  start({"-df", "+" + std::string(100, 't') + ":" + dir.path("b")});
  EXPECT_EQ("(unset)", get("title"));
}

TEST_F(ResrcDBTest, FilesAreChosenByLineThenEnvironment) {
  const EnvVar own("kyvdefault", dir.write("own", "*.title own\n").c_str());
  start({});
  EXPECT_EQ("own", get("title"));
  EXPECT_EQ(Resrc::ENVIRON, Kyv::getResrcType("default"));
  const EnvVar qualified("kyv_radmap_default", dir.write("qualified", "*.title qualified\n").c_str());
  start({});
  EXPECT_EQ("qualified", get("title"));
  start({"-df", dir.write("line", "*.plot_domain line\n")});
  EXPECT_EQ("(unset)", get("title"));
  EXPECT_EQ("line", get("plot_domain"));
  start({"-df", "|echo '*.title' http://server/a:" + dir.path("line")});
  EXPECT_EQ("http://server/a", get("title")) << "a command of the user's own, its URL whole";
  EXPECT_EQ("line", get("plot_domain"));
}

TEST_F(ResrcDBTest, FilesSetWhatIsAddressedToTheProgram) {
  const std::string path =
      dir.write("f", "*.title t\nradmap.color red\nother.color blue\ntitle plain\nbig.shape round\nDEF tag\n");
  start({"-df", path});
  EXPECT_EQ("t", get("title"));
  EXPECT_EQ("red", get("color"));
  EXPECT_EQ("(unset)", get("shape"));
  EXPECT_EQ("(unset)", get("def"));
  start({"file", "-df", path, "-na", "big"});
  EXPECT_EQ("(unset)", get("color"));
  EXPECT_EQ("round", get("shape")) << "the name counts before the files, wherever it stands";
}

TEST_F(ResrcDBTest, MessageLevelDatabasePathAndPresentTimeTakeEffect) {
  start({"-me", "warn", "-fp", "/data:/more"});
  EXPECT_EQ(7u, Kyv::getMessageLevel());
  EXPECT_STREQ("/data:/more", Kyv::getDatabasePath());
  start({"-me", "-fp"});
  EXPECT_EQ(63u, Kyv::getMessageLevel());
  EXPECT_STREQ("", Kyv::getDatabasePath());
  start({"-cur_time", "#202405011830"});
  EXPECT_EQ(1714588200, Kyv::getInitTime());
  start({"-df", dir.write("time", "*.cur_time 86400\n")});
  EXPECT_EQ(86400, Kyv::getInitTime());
  struct Case {
    const char* level;
    bool listed;
  };
  for (const Case& c : {Case{"debug4", false}, Case{"debug5", true}, Case{"none,+debug8", true}}) {
    testing::internal::CaptureStdout();
    start({"-me", c.level});
    EXPECT_EQ(c.listed, testing::internal::GetCapturedStdout().find("message (cmd): ") != std::string::npos) << c.level;
  }
}

TEST_F(ResrcDBTest, PrintsTheUsageInListOrder) {
  testing::internal::CaptureStdout();
  ResrcDB::printHelp("radmap", keyed, positional);
  EXPECT_EQ(
      "radmap syntax (version:6.76-LINUX-X11)\n   radmap [options...]\nKeyed options...\n"
      " -df file...  Resource/defaults file name\n -na name     Program name\n -h           Print help\n \n \n"
      " -pd domain   Plot domain\n \n \n \nPositional options...\n filenames... Filenames\n",
      testing::internal::GetCapturedStdout());
}

TEST(ResrcDB, ProgramNameIsTheLastPartOfThePath) {
  const char* const cases[][2] = {{"/usr/bin/radmap", "radmap"}, {"radmap", "radmap"}, {"bin/", ""}, {"", ""}};
  String name;
  for (const auto& c : cases) {
    EXPECT_EQ(1, ResrcDB::decodeProgramName(c[0], name));
    EXPECT_STREQ(c[1], name.get());
  }
  EXPECT_EQ(0, ResrcDB::decodeProgramName(nullptr, name));
}

}  // namespace KYV
