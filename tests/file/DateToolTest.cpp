#include "KYV/DateTool.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <ctime>
#include <string>

#include "KYV/Date.h"
#include "KYV/String.h"
#include "KYV/Timezone.h"

using namespace KYV;

namespace {
constexpr int MISS = Const::MISS;
constexpr float NOSEC = Const::MISS;
}  // namespace

TEST(Timezone, SignNameAndHours) {
  struct Case {
    const char* text;
    int result;
    const char* name;
    int pm, offset;
  };
  constexpr Case CASES[] = {
      {"-CDT:-5", 1, "CDT", -1, -18000}, {"+EST:-5", 1, "EST", 1, -18000}, {"IST:5.5", 1, "IST", 0, 19800},
      {"UTC", 1, "UTC", 0, MISS},        {"LONGER:1", 1, "LONG", 0, MISS}, {"X:1e30", 1, "X", 0, MISS},
      {"X:nan", 1, "X", 0, MISS},        {"-", 1, "", -1, MISS},           {"", 0, "", 0, MISS},
      {nullptr, 0, "", 0, MISS},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text ? c.text : "null");
    Timezone tz("OLD:3");
    EXPECT_EQ(c.result, tz.set(c.text));
    EXPECT_STREQ(c.name, tz.getName());
    EXPECT_EQ(c.pm, tz.getPM());
    EXPECT_EQ(c.offset, tz.getOffset());
    EXPECT_EQ(c.offset != MISS, tz.isSet());
  }
}

TEST(DateTool, LabelsByPrecisionAndZone) {
  struct Case {
    int h, mi;
    float s;
    const char *zone, *label;
  };
  constexpr Case CASES[] = {
      {18, MISS, NOSEC, "", "18Z  1 MAY 24"},
      {18, MISS, NOSEC, "CDT:-5", "13CDT  1 MAY 24"},
      {18, MISS, NOSEC, "+CDT:-5", "1 PM CDT  1 MAY 24"},
      {18, MISS, NOSEC, "-CDT:-5", "1 PM CDT [18Z]  1 MAY 24"},
      {18, 30, NOSEC, "", "1830Z  1 MAY 24"},
      {18, 30, NOSEC, "CDT:-5", "1330 CDT  1 MAY 24"},
      {18, 30, NOSEC, "+CDT:-5", "1:30 PM CDT  1 MAY 24"},
      {18, 30, NOSEC, "-CDT:-5", "1:30 PM CDT [1830Z]  1 MAY 24"},
      {18, 30, 5.6f, "", "18:30:06Z  1 MAY 24"},
      {18, 30, 5.0f, "CDT:-5", "13:30:05 CDT  1 MAY 24"},
      {18, 30, 5.0f, "+CDT:-5", "1:30:05 PM CDT  1 MAY 24"},
      {18, 30, 5.0f, "-CDT:-5", "1:30:05 PM CDT [183005Z]  1 MAY 24"},
      {17, 30, 5.0f, "-CDT:-5", "12:30:05 PM CDT [173005Z  1 MAY 24"},  // cut at 24 characters
      {5, 30, NOSEC, "+CDT:-5", "12:30 AM CDT  1 MAY 24"},
      {3, 30, NOSEC, "CDT:-5", "2230 CDT 30 APR 24"},
      {MISS, MISS, NOSEC, "", " 1 MAY 24"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.label);
    const Date date(2024, 5, 1, c.h, c.mi, c.s);
    String label;
    EXPECT_EQ(1, DateTool::createLabel(date, Timezone(c.zone), label));
    EXPECT_STREQ(c.label, label.get());
  }
}

// The rules of the zone tell the hour: one that is the same in summer and winter would be wrong.
TEST(DateTool, ZonesByNameKnowSummerTime) {
  const struct {
    int month;
    const char *zone, *label;
  } CASES[] = {
      {5, "America/Chicago", "1330 CDT  1 MAY 24"},         {1, "America/Chicago", "1230 CST  1 JAN 24"},
      {5, "+America/Anchorage", "10:30 AM AKDT  1 MAY 24"}, {5, "-Asia/Kolkata", "12:00 AM IST [1830Z]  2 MAY 24"},
      {5, "Asia/../Asia/Tokyo", "1830Z  1 MAY 24"},         {5, "../../../etc/localtime", "1830Z  1 MAY 24"},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.zone);
    String label;
    EXPECT_EQ(1, DateTool::createLabel(Date(2024, c.month, 1, 18, 30, NOSEC), Timezone(c.zone), label));
    EXPECT_STREQ(c.label, label.get());
  }
}

TEST(DateTool, LabelsOfCoarseDates) {
  String label("old");
  EXPECT_EQ(1, DateTool::createLabel(Date(2024, 5, MISS, 3, MISS, NOSEC), label));
  EXPECT_STREQ("MAY 24", label.get());
  EXPECT_EQ(1, DateTool::createLabel("Radar", Date(2007, MISS, MISS, MISS, MISS, NOSEC), Timezone(), label));
  EXPECT_STREQ("Radar 07", label.get());
  EXPECT_EQ(1, DateTool::createLabel("", Date(2024, 5, 1, 18, 30, NOSEC), Timezone(), 1, label));
  EXPECT_STREQ("1830Z WED  1 MAY 24", label.get());
  EXPECT_EQ(1, DateTool::createLabel(nullptr, Date(2024, 5, 1, MISS, MISS, NOSEC), Timezone(), 1, label));
  EXPECT_STREQ("WED  1 MAY 24", label.get());
  EXPECT_EQ(0, DateTool::createLabel("x", Date(), Timezone(), 1, label));
  EXPECT_STREQ("", label.get());
}

TEST(DateTool, LabelsAreReadBack) {
  struct Case {
    const char* text;
    int y, mo, d, h, mi;
    float s;
  };
  constexpr Case CASES[] = {
      {"18Z 1 MAY 2024", 2024, 5, 1, 18, MISS, NOSEC},
      {"18Z  1 MAY 24", 2024, 5, 1, 18, MISS, NOSEC},
      {"1830Z  1 MAY 2024", 2024, 5, 1, 18, 30, NOSEC},
      {"1830Z  1 MAY 24", 2024, 5, 1, 18, 30, NOSEC},
      {"Reflectivity 1830Z 11 DEC 99", 1999, 12, 11, 18, 30, NOSEC},
      {"Reflectivity  1830Z 11 dec 99", 1999, 12, 11, 18, 30, NOSEC},
      {"Reflectivity 0930Z 11 DEC 2001", 2001, 12, 11, 9, 30, NOSEC},
      {"Reflectivity  930Z 11 DEC 2001", 2001, 12, 11, 9, 30, NOSEC},
      {"Reflectivity  930Z 11 DEC 01", 2001, 12, 11, 9, 30, NOSEC},
      {"at 18:30:15Z  1 MAY 2024", 2024, 5, 1, 18, 30, 15.0f},
      {"at 18:30:15Z  1 MAY 24", 2024, 5, 1, 18, 30, 15.0f},
      {"at 18Z WED  1 MAY 2024", 2024, 5, 1, 18, MISS, NOSEC},
      {"at 18Z WED  1 MAY 24", 2024, 5, 1, 18, MISS, NOSEC},
      {"at 18Z  1 MAY 2024", 2024, 5, 1, 18, MISS, NOSEC},
      {"at 18Z  1 MAY 24", 2024, 5, 1, 18, MISS, NOSEC},
      {"18 1 5 24", 2024, 5, 1, 18, MISS, NOSEC},
      {" 1 MAY 24", 2024, 5, 1, MISS, MISS, NOSEC},
      {"1 MAY 2024", 2024, 5, 1, MISS, MISS, NOSEC},
      {"on 11 MAY 2024", 2024, 5, 11, MISS, MISS, NOSEC},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text);
    Date date;
    EXPECT_EQ(1, DateTool::decode(c.text, date));
    EXPECT_EQ(c.y, date.year);
    EXPECT_EQ(c.mo, date.month);
    EXPECT_EQ(c.d, date.day);
    EXPECT_EQ(c.h, date.hour);
    EXPECT_EQ(c.mi, date.min);
    EXPECT_EQ(c.s, date.sec);
  }
}

TEST(DateTool, WhatIsNoLabelLeavesTheDate) {
  const std::string label = "18:30:15Z  1 MAY 2024";
  for (const char* text : {"", "Z", "no date at all, but a long text", "10 xyz 12", "1830Z WED  1 MAY 24", "%2H:%2M",
                           "1:30 PM CDT [1830Z]", "                     "}) {
    SCOPED_TRACE(text);
    Date date(2000, 1, 1, 0, 0, 0.0f);
    EXPECT_EQ(0, DateTool::decode(text, date));
    EXPECT_EQ(2000, date.year);
  }
  Date date;
  EXPECT_EQ(0, DateTool::decode(nullptr, date));
  for (std::size_t n = 0; n < label.size(); ++n) DateTool::decode(label.substr(0, n).c_str(), date);
}

TEST(DateTool, MonthNamesAreToldByTheirLetters) {
  for (int m = 1; m <= 12; ++m) {
    EXPECT_EQ(m, DateTool::decodeMonth(DateTool::getMonth(m)));
    EXPECT_EQ(m, DateTool::decodeMonth(DateTool::getMonthLower(m)));
  }
  for (const char* text : {"", "J", "JU", "JUX", "MAx", "May", "X", "12"}) EXPECT_EQ(0, DateTool::decodeMonth(text));
  EXPECT_EQ(0, DateTool::decodeMonth(nullptr));
  EXPECT_EQ(12, DateTool::decodeMonth("December"));
  EXPECT_STREQ("September", DateTool::getMonthLong(9));
  EXPECT_STREQ("SAT", DateTool::getDayWeek(6));
  for (const int out : {INT_MIN, -1, 13, INT_MAX}) {
    EXPECT_STREQ("", DateTool::getMonth(out));
    EXPECT_STREQ("", DateTool::getMonthLower(out));
    EXPECT_STREQ("", DateTool::getMonthLong(out));
    EXPECT_STREQ("", DateTool::getDayWeek(out));
  }
}

TEST(DateTool, SecondsAndMinutesOfTexts) {
  EXPECT_EQ(1714588200, DateTool::getSeconds("#202405011830"));
  EXPECT_EQ(1714588200, DateTool::getSeconds("1714588200"));
  EXPECT_EQ(-5, DateTool::getSeconds("-5"));
  EXPECT_EQ(MISS, DateTool::getSeconds("#x"));
  EXPECT_EQ(MISS, DateTool::getSeconds(nullptr));
  struct Case {
    const char* text;
    int minutes;
  };
  constexpr Case CASES[] = {{"2", 120}, {"2:30", 150}, {"-1:30", -90}, {"-2", -120},
                            {"x", 0},   {"", 0},       {"1:x", 60},    {nullptr, 0}};
  for (const Case& c : CASES) EXPECT_EQ(c.minutes, DateTool::getMinutes(c.text));
  EXPECT_GT(DateTool::getMinutes("99999999999:99999999999"), 0);
}

TEST(DateTool, TheTimeWrittenIntoFilesCanBeFixed) {
  setenv("SOURCE_DATE_EPOCH", "1714588205", 1);
  String text;
  DateTool::getCurrent(text);
  EXPECT_STREQ("24 MAY 01  18:30:05Z", text.get());
  DateTool::getCurrent("RFC1123", text);
  EXPECT_STREQ("01 MAY 2024 18:30:05 GMT", text.get());
  DateTool::getCurrent("ISO8601", text);
  EXPECT_STREQ("2024-05-01T18:30:05Z", text.get());
  Date date;
  date.setCurrent();
  EXPECT_NEAR(static_cast<double>(std::time(nullptr)), static_cast<double>(date.secs), 2.0);
  setenv("SOURCE_DATE_EPOCH", "17x", 1);
  date.toText("%Y", text);
  const std::string year = text.get();
  DateTool::getCurrent("ISO8601", text);
  EXPECT_EQ(year, std::string(text.get()).substr(0, 4)) << "not a number: the clock";
  unsetenv("SOURCE_DATE_EPOCH");
}
