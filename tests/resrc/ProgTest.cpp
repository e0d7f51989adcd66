#include "KYV/Prog.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "KYV/Kyv.h"
#include "KYV/ResrcDBList.h"
#include "Restore.h"
#include "TempDir.h"

namespace KYV {

TEST(Prog, CommandsSetAndListResources) {
  struct Case {
    const char* line;
    int command;
    const char *name, *value;  // null: nothing is set
  };
  constexpr Case CASES[] = {
      {"set  domain = us", 1, "domain", "us"},
      {"set domain us of a", 1, "domain", "us of a"},
      {"set domain== =us=", 1, "domain", "us="},
      {"set domain", 1, "domain", ""},
      {"  set\tdomain\t=\tus", 1, "domain", "us"},
      {"set abcdefghijklmnopqrstuvwxyz=v", 1, "abcdefghijklmnopqrs", "v"},
      {"", 0, nullptr, nullptr},
      {"   ", 0, nullptr, nullptr},
      {nullptr, 0, nullptr, nullptr},
      {"settle domain = us", 0, nullptr, nullptr},
      {"SET domain = us", 0, nullptr, nullptr},
      {"exit now", 0, nullptr, nullptr},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.line ? c.line : "null");
    const FreshKyv fresh;
    EXPECT_EQ(c.command, Prog::setCommand(c.line));
    EXPECT_STREQ(c.name, Kyv::nextResrc());
    EXPECT_STREQ(c.value, Kyv::getResrc(c.name));
  }
  const FreshKyv fresh;
  Kyv::putResrc("a", "1");
  testing::internal::CaptureStdout();
  EXPECT_EQ(1, Prog::setCommand("set"));
  EXPECT_EQ(1, Prog::setCommand("set = "));
  const std::string listing = "Set resources\na: 1\n\n";
  EXPECT_EQ(listing + listing, testing::internal::GetCapturedStdout());
}

TEST(ProgDeathTest, ExitEndsTheProcess) { EXPECT_EXIT(Prog::setCommand("exit"), testing::ExitedWithCode(0), "^$"); }

TEST(ProgDeathTest, AsksUntilTheLineIsAnAnswer) {
  const TempDir dir;
  const std::string input =
      dir.write("in", "set a = 1\n  an answer \t\n0123456789ab\n" + std::string(1000, 'x') + "\n\nend");
  EXPECT_EXIT(
      {
        // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): standard input stays the C library's
        if (!std::freopen(input.c_str(), "r", stdin)) Kyv::exit(Kyv::NOFILE);
        char answer[12];
        const int first = Prog::prompt("?", answer, sizeof answer);
        std::fprintf(stderr, "%d<%s>%s;", first, answer, Kyv::getResrc("a"));
        Prog::prompt("?", answer, sizeof answer);
        std::fprintf(stderr, "<%s>", answer);
        std::fprintf(stderr, "%d;", Prog::prompt("?").length());
        String text("before");
        for (int i = 0; i < 3; i++) {
          const int result = Prog::prompt("?", text);
          std::fprintf(stderr, "%d<%s>", result, text.get());
        }
        Kyv::exit(Kyv::NOERR);
      },
      testing::ExitedWithCode(0), "^1<an answe>1;<0123456789>158;1<>1<end>0<>$");
}

TEST(Prog, HelpIsPrintedWhenAskedFor) {
  const FreshKyv fresh;
  ResrcDBList keyed, positional;
  testing::internal::CaptureStdout();
  EXPECT_EQ(0, Prog::printHelp(keyed, positional, "This program draws"));
  Kyv::putResrc("help", "no");
  EXPECT_EQ(0, Prog::printHelp(keyed, positional, "This program draws"));
  EXPECT_EQ("", testing::internal::GetCapturedStdout());
  Kyv::putResrc("help", "");
  Kyv::putResrc("prog", "radmap");
  testing::internal::CaptureStdout();
  EXPECT_EQ(1, Prog::printHelp(keyed, positional, "This program draws"));
  const std::string help = testing::internal::GetCapturedStdout();
  EXPECT_EQ(0u, help.find("radmap: This program draws\nradmap syntax (version:6.76-LINUX-X11)\n")) << help;
}

TEST(Prog, BannerIsOfClassMess) {
  const FreshKyv fresh;
  testing::internal::CaptureStdout();
  Prog::printProg("NIDS RADAR PLOTTER");
  Kyv::setMessageLevel("warn");
  Prog::printProg("NIDS RADAR PLOTTER");
  EXPECT_EQ("      NIDS RADAR PLOTTER (Ver 6.76-LINUX-X11)\n\n", testing::internal::GetCapturedStdout());
}

TEST(Prog, ResourceFilesFillTheStore) {
  const TempDir first, second;
  first.write("kyv.cfg", "prog.message warn\nprog.file_path /data\n*.cur_time 86400\nother.a 1\nIF t\n*.b 2\nEND\n");
  second.write("Kyv.res", "prog.file_path /late\n");
  const std::string places = first.path() + ":/nowhere:" + second.path();
  {
    const FreshKyv fresh;
    EXPECT_EQ(1, Prog::readResrcFile("prog", nullptr, "t", places.c_str()));
    EXPECT_EQ(7u, Kyv::getMessageLevel());
    EXPECT_STREQ("/late", Kyv::getDatabasePath());
    EXPECT_EQ(86400, Kyv::getInitTime());
    EXPECT_EQ(nullptr, Kyv::getResrc("a"));
    EXPECT_STREQ("2", Kyv::getResrc("b"));
  }
  const FreshKyv fresh;
  const EnvVar variable("kyvdefault", places.c_str());
  EXPECT_EQ(1, Prog::readResrcFile("prog"));
  EXPECT_STREQ("/late", Kyv::getResrc("file_path"));
  EXPECT_EQ(nullptr, Kyv::getResrc("b"));
}

}  // namespace KYV
