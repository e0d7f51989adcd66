#include "KYV/Kyv.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <string>

#include "Restore.h"

namespace KYV {

namespace {

constexpr std::uint32_t bit(int n) { return 1u << (n - 1); }
constexpr std::uint32_t upTo(int n) { return (1u << n) - 1; }

}  // namespace

TEST(Kyv, LevelTextSwitchesClasses) {
  struct Case {
    const char* spec;
    std::uint32_t mask;
  };
  constexpr Case CASES[] = {
      {"none", 0},
      {"print", upTo(1)},
      {"error", upTo(2)},
      {"warn", upTo(3)},
      {"mess", upTo(4)},
      {"out1", upTo(5)},
      {"out8", upTo(12)},
      {"debug1", upTo(13)},
      {"DEBUG2", upTo(14)},
      {"debug8", upTo(20)},
      {"debug", upTo(20)},
      {"mess,+debug3", upTo(4) | bit(15)},
      {"out2,-warn", upTo(6) & ~bit(3)},
      {"+debug", upTo(6) | bit(20)},
      {"-Print", upTo(6) & ~bit(1)},
      {"+none", upTo(6)},
      {"-none", upTo(6)},
      {"debug,none,+out8", bit(12)},
      {"nonsense", upTo(6)},
      {"print,nonsense,+", upTo(1)},
      {"++warn", upTo(6)},
      {"3", upTo(6)},
      {"", upTo(6)},
      {",,", upTo(6)},
      {nullptr, upTo(6)},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.spec ? c.spec : "null");
    const FreshKyv fresh;
    Kyv::setMessageLevel(c.spec);
    EXPECT_EQ(c.mask, Kyv::getMessageLevel());
  }
}

TEST(Kyv, LevelNumberMeansAllClassesUpToIt) {
  const FreshKyv fresh;
  struct Case {
    int level;
    std::uint32_t mask;
  };
  constexpr int LEAST = std::numeric_limits<int>::min();
  constexpr int MOST = std::numeric_limits<int>::max();
  for (const Case& c : {Case{0, 0}, Case{5, upTo(5)}, Case{20, upTo(20)}, Case{LEAST, 0}, Case{MOST, upTo(20)}}) {
    Kyv::setMessageLevel(c.level);
    EXPECT_EQ(c.mask, Kyv::getMessageLevel());
    EXPECT_EQ(c.level >= 13, Kyv::isDebug());
    for (int n : {LEAST, -1, 0, 21, 33, MOST}) {
      EXPECT_FALSE(Kyv::checkMessage(n)) << n;
      EXPECT_FALSE(Kyv::isDebug(n)) << n;
    }
  }
}

TEST(Kyv, MessagesArePrintedByTheirClass) {
  const FreshKyv fresh;
  Kyv::setMessageLevel("none,+mess,+debug3");
  testing::internal::CaptureStdout();
  Kyv::outMessage("print\n");
  Kyv::outMessage(4, "mess %d\n", 4);
  Kyv::outMessage(5, "out1\n");
  Kyv::outMessage(0, "no class\n");
  Kyv::outDebug("debug1\n");
  Kyv::outDebug(3, "debug3\n");
  Kyv::outDebug(15, "no level\n");
  Kyv::print("always\n");
  Kyv::print(nullptr);
  EXPECT_EQ("mess 4\ndebug3\nalways\n", testing::internal::GetCapturedStdout());
}

TEST(Kyv, WarningsAndErrorsGoWhereTheEnvironmentSays) {
  for (const bool toOut : {false, true}) {
    const FreshKyv fresh;
    const EnvVar variable("kyverrtoout", toOut ? "" : nullptr);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Kyv::outWarning("warning %s\n", "1");
    Kyv::setMessageLevel("none");
    Kyv::outWarning("warning 2\n");
    Kyv::outError("error\n");
    const std::string text = "warning 1\nerror\n";
    EXPECT_EQ(toOut ? "" : text, testing::internal::GetCapturedStderr());
    EXPECT_EQ(toOut ? text : "", testing::internal::GetCapturedStdout());
  }
}

TEST(KyvDeathTest, OutputKeepsItsOrderAndExitItsCode) {
  EXPECT_EXIT(
      {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        Kyv::outMessage("first\n");
        Kyv::outError("second\n");
        Kyv::exit(Kyv::NODATA);
      },
      testing::ExitedWithCode(10), "^first\nsecond\n$");
}

TEST(Kyv, IdentityIsKeptWithinItsBounds) {
  const FreshKyv fresh;
  EXPECT_STREQ("KYV", Kyv::getProgramName());
  EXPECT_STREQ("", Kyv::getDatabasePath());
  Kyv::setProgramName("abcdefghijklmnopqrstuvwxyz");
  EXPECT_STREQ("abcdefghijklmnopqrs", Kyv::getProgramName());
  std::string path(5000, 'p');
  Kyv::setDatabasePath(path.c_str());
  path[0] = 'x';
  EXPECT_EQ(std::string(5000, 'p'), Kyv::getDatabasePath());
  Kyv::setDatabasePath(Kyv::getDatabasePath() + 4990);
  EXPECT_STREQ("pppppppppp", Kyv::getDatabasePath());
  char host[256] = "";
  gethostname(host, sizeof host - 1);
  EXPECT_EQ(std::string(host).substr(0, 39), Kyv::getComputerName());
}

TEST(Kyv, VirtualMemoryGrowsWithAMapping) {
  constexpr std::size_t SIZE = 64 << 20;
  const std::int64_t before = Kyv::getVirtMem();
  void* block = mmap(nullptr, SIZE, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(MAP_FAILED, block);
  EXPECT_GE(Kyv::getVirtMem() - before, static_cast<std::int64_t>(SIZE));
  munmap(block, SIZE);
}

TEST(Kyv, SleepsTheGivenTimeAndNotForNonsense) {
  const double start = Kyv::getTime();
  Kyv::sleep(0.05f);
  EXPECT_GE(Kyv::getTime() - start, 0.049);
  const double nonsense = Kyv::getTime();
  for (const float seconds : {0.0f, -1e30f, std::nanf("")}) Kyv::sleep(seconds);
  EXPECT_LT(Kyv::getTime() - nonsense, 5.0);
}

}  // namespace KYV
