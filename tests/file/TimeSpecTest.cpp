#include "KYV/TimeSpec.h"

#include <gtest/gtest.h>

#include <string>

#include "KYV/Date.h"
#include "KYV/Kyv.h"

namespace KYV {
namespace {

// "20240501_183000", with XX for missing fields.
std::string stamp(const Date& d) {
  String text;
  d.toText("%Y%m%d_%H%M%S", text);
  return text.get();
}

// Now is 12:20 on 20 May.
TEST(TimeSpec, EveryFormNamesItsMoment) {
  struct Case {
    const char* text;
    const char* moment;
    bool latest;
  };
  constexpr Case CASES[] = {
      // Dates, of every form and precision.
      {"2024-05-01", "20240501_XXXXXX", false},
      {"2024-05-01T18", "20240501_18XXXX", false},
      {"2024-05-01T18:30", "20240501_1830XX", false},
      {"2024-05-01T18:30:15", "20240501_183015", false},
      {"2024-05-01T18:30:15Z", "20240501_183015", false},
      {"2024-5-1", "20240501_XXXXXX", false},
      {"20240501", "20240501_XXXXXX", false},
      {"2024050118", "20240501_18XXXX", false},
      {"202405011830", "20240501_1830XX", false},
      {"20240501183015", "20240501_183015", false},
      {"20240501_18", "20240501_18XXXX", false},
      {"20240501_1830", "20240501_1830XX", false},
      {"20240501_183014.6", "20240501_183015", false},
      {"#202405011830", "20240501_1830XX", false},
      {"#2024-05-01", "20240501_XXXXXX", false},
      {"#24-5-1", "20240501_XXXXXX", false},
      // Offsets, in days where a 'd' says so.
      {"3", "20240520_092000", false},
      {"6:30", "20240520_055000", false},
      {"12:30:00", "20240519_235000", false},
      {"12:30:10", "20240519_234950", false},
      {"-3", "20240520_092000", false},
      {"+0:40", "20240520_130000", false},
      {"1d", "20240519_122000", false},
      {"1D", "20240519_122000", false},
      {"1d6", "20240519_062000", false},
      {"0d6:15", "20240520_060500", false},
      {"10d12:30", "20240509_235000", false},
      {"20d00:00:10", "20240430_121950", false},
      {"100000d", "19560502_090553", false},  // 2^31 - 1 seconds at most
      {"0", "20240520_122000", false},
      // Of a date.
      {"20240501_1830-1", "20240501_1730XX", false},
      {"20240501+1d2", "20240502_0200XX", false},
      {"2024-05-01-0:30", "20240430_2330XX", false},
      {"2024-05-01T18:30+3", "20240501_2130XX", false},
      {"2024-05-01T18:30+0:00:05", "20240501_183005", false},
      // The latest.
      {"la", "20240520_122000", true},
      {"LAtest", "20240520_122000", true},
      {"l", "20240520_122000", true},
      {"-1la", "20240520_112000", true},
      {"1dla", "20240519_122000", true},
      {"20240501_1830la", "20240501_1830XX", true},
      {"2024-05-01la", "20240501_XXXXXX", true},
      // What is none of these is now.
      {"now", "20240520_122000", false},
      {"", "20240520_122000", false},
      {"#", "20240520_122000", false},
  };
  Kyv::setInitTime(Date(2024, 5, 20, 12, 20, 0.0f).secs);
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text);
    const TimeSpec time(c.text);
    Date moment;
    time.getDate(moment);
    EXPECT_EQ(c.moment, stamp(moment));
    EXPECT_EQ(c.latest, time.latest);
    EXPECT_FALSE(time.output || time.named);
  }
  Kyv::setInitTime(Const::MISS);
}

TEST(TimeSpec, TheSearchForTheLatestIsBounded) {
  struct Case {
    const char* text;
    int direction, periods, shift;
  };
  constexpr Case CASES[] = {
      {"la", -1, Const::MISS, 0},          {"+la", 1, Const::MISS, 0},     {"1:20+la", 1, Const::MISS, 0},
      {"+1la", -1, Const::MISS, 0},        {"la#12", -1, 12, 0},           {"la#12-1", -1, 12, -3600},
      {"la-0:30", -1, Const::MISS, -1800}, {"l+2", -1, Const::MISS, 7200}, {"la-1d0:00:05", -1, Const::MISS, -86405},
      {"20240501+la", 1, Const::MISS, 0},  {"later", -1, Const::MISS, 0},  {"la#9999999999", -1, 1000000, 0},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text);
    const TimeSpec time(c.text);
    EXPECT_TRUE(time.latest);
    EXPECT_EQ(c.direction, time.direction);
    EXPECT_EQ(c.periods, time.periods);
    EXPECT_EQ(c.shift, time.shift);
  }
  EXPECT_TRUE(TimeSpec(">la").output);
  EXPECT_STREQ("some file", TimeSpec("@some file").name.get());
}

}  // namespace
}  // namespace KYV
