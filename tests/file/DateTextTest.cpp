#include <gtest/gtest.h>

#include "KYV/Date.h"
#include "KYV/DateTool.h"
#include "KYV/String.h"

using namespace KYV;

namespace {
constexpr int MISS = Const::MISS;
constexpr float NOSEC = Const::MISS;
}  // namespace

TEST(DateText, CodesAndTheirMissingTexts) {
  const Date full(2024, 5, 1, 18, 3, 9.25f);
  const Date none;
  struct Case {
    const char *format, *full, *none;
  };
  constexpr Case CASES[] = {
      {"%Y %y", "2024 24", "XXXX XX"},
      {"%m %b", "05 MAY", "XX XXX"},
      {"%d|%e", "01| 1", "XX|XX"},
      {"%j %a %u", "122 WED 3", "XXX XXX X"},
      {"%H %l %p", "18 06 PM", "XX XX XX"},
      {"%M %S", "03 09", "XX XX"},
      {"%s", "09.2500", "XX.XXXX"},
      {"%Z %% %q 100%", "Z % q 100", "Z % q 100"},
      {"RFC1123", "01 MAY 2024 18:03:09 Z", "XX XXX XXXX XX:XX:XX Z"},
      {"ISO8601", "2024-05-01T18:03:09Z", "XXXX-XX-XXTXX:XX:XXZ"},
      {"", "", ""},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.format);
    String text("old");
    EXPECT_EQ(1, full.toText(c.format, text));
    EXPECT_STREQ(c.full, text.get());
    EXPECT_EQ(1, none.toText(c.format, text));
    EXPECT_STREQ(c.none, text.get());
  }
  String text("old");
  EXPECT_EQ(0, full.toText(nullptr, text));
  EXPECT_STREQ("", text.get());
}

TEST(DateText, TwelveHourClock) {
  struct Case {
    int hour;
    const char* text;
  };
  constexpr Case CASES[] = {{0, "12 AM"}, {1, "01 AM"}, {11, "11 AM"}, {12, "12 PM"}, {13, "01 PM"}, {23, "11 PM"}};
  for (const Case& c : CASES) {
    String text;
    Date(2024, 5, 1, c.hour, 0, 0.0f).toText("%l %p", text);
    EXPECT_STREQ(c.text, text.get());
  }
}

TEST(DateText, SecondsRound) {
  struct Case {
    float sec;
    const char *whole, *decimals;
  };
  constexpr Case CASES[] = {{9.4f, "09", "09.4000"},  {9.5f, "10", "09.5000"},     {10.0f, "10", "10.0000"},
                            {59.6f, "60", "59.6000"}, {9.99999f, "10", "10.0000"}, {1e30f, "XX", "XX.XXXX"}};
  for (const Case& c : CASES) {
    Date date(2024, 5, 1, 0, 0, 0.0f);
    date.sec = c.sec;
    String text;
    date.toText("%S", text);
    EXPECT_STREQ(c.whole, text.get());
    date.toText("%s", text);
    EXPECT_STREQ(c.decimals, text.get());
  }
}

TEST(DateText, TheFieldsThatArePresentChooseTheForm) {
  struct Case {
    int h, mi;
    float s;
    const char* text;
  };
  constexpr Case CASES[] = {{MISS, MISS, NOSEC, " 1 MAY 2024"},
                            {18, MISS, NOSEC, "18Z  1 MAY 2024"},
                            {18, 3, NOSEC, "18:03Z  1 MAY 2024"},
                            {18, 3, 9.0f, "18:03:09Z  1 MAY 2024"}};
  for (const Case& c : CASES) {
    String text;
    Date(2024, 5, 1, c.h, c.mi, c.s).toText(text);
    EXPECT_STREQ(c.text, text.get());
  }
  String text;
  Date(2024, 5, 1, 18, 3, 9.25f).toString(text);
  EXPECT_STREQ("20240501180309.2500", text.get());
}

TEST(DateText, Printing) {
  testing::internal::CaptureStdout();
  Date(2024, 5, 1, 18, 3, 9.25f).print();
  Date(2024, 5, MISS, MISS, MISS, NOSEC).print();
  Date(2024, 5, 1, 18, 3, 9.25f).get().print();
  Date().get().print();
  Date(2024, 5, 1, 18, 30, 0.0f).printSeconds();
  DateTool::print(0);
  EXPECT_EQ(
      "2024/05/01 18:03:09.250\n2024/05/MM MM:MM:MM\n2024/5/1 18:3:9.250\nM/M/M M:M:M\n1714588200\n"
      "1970/01/01 00:00:00.000\n",
      testing::internal::GetCapturedStdout());
}
