#include "KYV/Date.h"

#include <gtest/gtest.h>

#include <climits>
#include <ctime>
#include <iterator>

using namespace KYV;

namespace {

constexpr int MISS = Const::MISS;
constexpr float NOSEC = Const::MISS;

void expectFields(const Date& date, int y, int mo, int d, int h, int mi, float s) {
  EXPECT_EQ(y, date.year);
  EXPECT_EQ(mo, date.month);
  EXPECT_EQ(d, date.day);
  EXPECT_EQ(h, date.hour);
  EXPECT_EQ(mi, date.min);
  EXPECT_EQ(s, date.sec);
}

}  // namespace

TEST(Date, SecondsAndFieldsAgree) {
  struct Case {
    int y, mo, d, h, mi, s;
    std::int64_t secs;
    int wday, jday;
  };
  constexpr Case CASES[] = {
      {1970, 1, 1, 0, 0, 0, 0, 4, 1},
      {2024, 5, 1, 18, 30, 0, 1714588200, 3, 122},
      {2024, 2, 29, 12, 30, 15, 1709209815, 4, 60},
      {1969, 12, 31, 0, 0, 0, -86400, 3, 365},
      {1901, 3, 1, 0, 0, 0, -2172355200, 5, 60},
      {2099, 12, 31, 23, 59, 59, 4102444799, 4, 365},
      {2000, 2, 29, 0, 0, 0, 951782400, 2, 60},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.secs);
    const Date made(c.y, c.mo, c.d, c.h, c.mi, static_cast<float>(c.s));
    Date split;
    EXPECT_EQ(1, split.set(static_cast<long>(c.secs)));
    for (const Date& date : {made, split}) {
      EXPECT_EQ(c.secs, date.secs);
      EXPECT_EQ(c.wday, date.getDayOfWeek());
      EXPECT_EQ(c.jday, date.getJulian());
    }
    expectFields(split, c.y, c.mo, c.d, c.h, c.mi, static_cast<float>(c.s));
  }
  EXPECT_EQ(3 * 3600 + 120, Date(MISS, MISS, MISS, 3, 2, NOSEC).secs) << "without a day: the time of day";
  EXPECT_EQ(Date(2024, 1, 1, 0, 0, 0.0f).secs, Date(2024, MISS, MISS, MISS, MISS, NOSEC).secs);
  EXPECT_FALSE(Date(MISS, MISS, MISS, MISS, MISS, NOSEC).isSet());
}

TEST(Date, FieldsOutOfRangeAreBroughtBack) {
  struct Case {
    int given, year;
  };
  constexpr Case YEARS[] = {{24, 2024}, {99, 1999}, {150, 2050}, {-3, 1980}, {49, 2049}, {199, 2099}, {200, 200}};
  for (const Case& c : YEARS) EXPECT_EQ(c.year, Date(c.given, 1, 1, 0, 0, 0.0f).year) << c.given;
  expectFields(Date(2024, 13, 32, 24, 61, 61.0f), 2024, 1, 1, 0, 0, 0.0f);
  expectFields(Date(2024, 0, 0, -1, -1, -1.0f), 2024, 1, 1, 0, 0, 0.0f);
  expectFields(Date(2024, 12, 31, 23, 60, 60.0f), 2024, 12, 31, 23, 60, 60.0f);
  EXPECT_EQ(0.0f, Date(2024, 1, 1, 0, 0, __builtin_nanf("")).sec);
}

TEST(Date, SettersRefuseWhatIsOutOfRange) {
  Date date(2024, 5, 1, 18, 30, 0.0f);
  EXPECT_EQ(0, date.setYear(-1));
  EXPECT_EQ(0, date.setMonth(13));
  EXPECT_EQ(0, date.setDay(0));
  EXPECT_EQ(0, date.setHour(24));
  EXPECT_EQ(0, date.setMinute(60));
  EXPECT_EQ(0, date.setSecond(60.0f));
  EXPECT_EQ(0, date.setSecond(__builtin_nanf("")));
  EXPECT_EQ(0, date.setFractionalSecond(1.0f));
  EXPECT_EQ(0, date.setTime(86400.0f));
  EXPECT_EQ(1714588200, date.secs);
  EXPECT_EQ(1, date.setMinute(MISS));
  EXPECT_EQ(1714588200 - 1800, date.secs);
  EXPECT_EQ(1, date.setYear(99));
  EXPECT_EQ(1999, date.year);
  EXPECT_EQ(1, date.setTime(3723.5f));
  expectFields(date, MISS, MISS, MISS, 1, 2, 3.5f);
}

TEST(Date, ReadsTexts) {
  struct Case {
    const char* text;
    int y, mo, d, h, mi;
    float s;
  };
  constexpr Case CASES[] = {
      {"20240229_1230", 2024, 2, 29, 12, 30, NOSEC},
      {"#2024-02-29T12:30:15.5", 2024, 2, 29, 12, 30, 15.5f},
      {"2024-02-29", 2024, 2, 29, MISS, MISS, NOSEC},
      {"202402291230", 2024, 2, 29, 12, 30, NOSEC},
      {"#2024022912", 2024, 2, 29, 12, MISS, NOSEC},
      {"20240229_123015", 2024, 2, 29, 12, 30, 15.0f},
      {"2024-02-29T12:30:1e30", 2024, 2, 29, 12, 30, 0.0f},
      {"2024-02-29T12:30:nan", 2024, 2, 29, 12, 30, 0.0f},
      {"2024", 2024, MISS, MISS, MISS, MISS, NOSEC},
      {"rubbish", MISS, MISS, MISS, MISS, MISS, NOSEC},
      {"", MISS, MISS, MISS, MISS, MISS, NOSEC},
      {nullptr, MISS, MISS, MISS, MISS, MISS, NOSEC},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text ? c.text : "null");
    Date date(2020, 1, 1, 1, 1, 1.0f);
    EXPECT_EQ(c.y != MISS, date.set(c.text) == 1);
    expectFields(date, c.y, c.mo, c.d, c.h, c.mi, c.s);
    EXPECT_EQ(c.y != MISS, date.isSet());
  }
  const std::int64_t before = std::time(nullptr);
  EXPECT_LE(before, Date("current").secs);
  EXPECT_GE(std::time(nullptr), Date("cu").secs);
}

TEST(Date, ZonesComeWithTheFields) {
  DateVal v;
  v.set(2024, MISS, 60, 1, 0, 0.0f);  // day 60 of a leap year
  Date date;
  EXPECT_EQ(1, date.set(v, -3600, "ABCDE"));
  expectFields(date, 2024, 2, 29, 1, 0, 0.0f);
  EXPECT_EQ(-3600, date.off);
  EXPECT_STREQ("ABC", date.zone);
  EXPECT_EQ(1, date.set(v, "-6U", "Central Standard"));
  EXPECT_EQ(-21600, date.off);
  EXPECT_EQ('U', date.dtype);
  EXPECT_STREQ("Central Stand", date.zone);
  EXPECT_EQ(1, date.set(v, "99999999999999999999", nullptr));
  EXPECT_EQ(0, date.off);
  EXPECT_EQ(1, date.set(date, nullptr, "Z")) << "from its own fields";
  expectFields(date, 2024, 2, 29, 1, 0, 0.0f);
}

TEST(Date, DayNumbersCountFrom1970) {
  struct Case {
    int n, y, mo, d;
  };
  constexpr Case CASES[] = {{1, 1970, 1, 1},      {366, 1971, 1, 1},   {731, 1972, 1, 1},      {790, 1972, 2, 29},
                            {1096, 1972, 12, 31}, {65535, 2149, 6, 5}, {146097, 2369, 12, 31}, {146098, 2370, 1, 1}};
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.n);
    Date date(2000, 7, 7, 6, 5, 4.0f);
    EXPECT_EQ(1, date.setDays(c.n));
    expectFields(date, c.y, c.mo, c.d, 6, 5, 4.0f);
    EXPECT_EQ(c.n, date.getDays());
  }
  Date date;
  EXPECT_EQ(0, date.setDays(0));
  EXPECT_FALSE(date.isSet());
  EXPECT_EQ(MISS, date.getDays());
  EXPECT_EQ(0, Date(1969, 12, 31, 0, 0, 0.0f).getDays());
}

TEST(Date, DayOfYear) {
  int mo = 0;
  int d = 0;
  EXPECT_EQ(0, Date::setJulian(2023, 366, mo, d));
  EXPECT_EQ(0, Date::setJulian(2024, 0, mo, d));
  EXPECT_EQ(1, Date::setJulian(2024, 366, mo, d));
  EXPECT_EQ(12, mo);
  EXPECT_EQ(31, d);
  EXPECT_EQ(1, Date::setJulian(2023, 60, mo, d));
  EXPECT_EQ(3, mo);
  EXPECT_EQ(1, d);
  EXPECT_EQ(366, Date::getJulian(2024, 12, 31));
  EXPECT_EQ(335, Date::getJulian(2023, 99, 1)) << "December";
  EXPECT_FALSE(Date::isYearLeap(1900));
  EXPECT_TRUE(Date::isYearLeap(2000));
  EXPECT_FALSE(Date::isYearLeap(2023));
}

TEST(Date, ArithmeticKeepsMissingFieldsMissing) {
  Date date(2024, 12, 31, 23, MISS, NOSEC);
  EXPECT_EQ(1, date.addHours(1));
  expectFields(date, 2025, 1, 1, 0, MISS, NOSEC);
  date += 3600;
  expectFields(date, 2025, 1, 1, 1, 0, 0.0f);
  EXPECT_EQ(1, date.addMonths(-13));
  expectFields(date, 2023, 12, 1, 1, 0, 0.0f);
  EXPECT_EQ(1, date.addMonths(1));
  EXPECT_EQ(1, date.addYears(2));
  expectFields(date, 2026, 1, 1, 1, 0, 0.0f);
  EXPECT_EQ(1, date.addDays(-1));
  EXPECT_EQ(1, date.addMinutes(-61));
  EXPECT_EQ(1, date.addSeconds(-1.9f));
  expectFields(date, 2025, 12, 30, 23, 58, 59.0f);
  EXPECT_EQ(-1, date - Date(2025, 12, 30, 23, 59, 0.0f));
  EXPECT_TRUE(date < Date(2025, 12, 30, 23, 59, 0.0f));
}

TEST(Date, WildNumbersDoNotOverflow) {
  constexpr int INTS[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
  constexpr long SECS[] = {LONG_MIN, LONG_MIN + 1, -62135596801, 0, 67767976233532799, LONG_MAX - 1, LONG_MAX};
  for (const long secs : SECS) {
    for (const int n : INTS) {
      const auto each = [&](auto change) {
        Date date;
        date.set(secs);
        change(date);
        date.setMinute(1);
        date.fix();
      };
      each([&](Date& d) { d.addDays(n); });
      each([&](Date& d) { d.addHours(n); });
      each([&](Date& d) { d.addMinutes(n); });
      each([&](Date& d) { d.addSeconds(static_cast<float>(n)); });
      each([&](Date& d) { d.addSeconds(3.4e38f); });
      each([&](Date& d) { d.addMonths(n); });
      each([&](Date& d) { d.addYears(n); });
      each([&](Date& d) { d += n; });
      each([&](Date& d) { d.changeTimezone(n, "XYZ"), d.changeTimezone(-1, nullptr); });
      each([&](Date& d) { d.setDays(n), d.getDays(); });
      each([&](Date& d) { d.setJulian(n); });
      each([&](Date& d) { d.set(n, n, n, n, n, static_cast<float>(n)), d.getDays(); });
      each([&](Date& d) { d.adjustMinute(n, n, n), d.adjustMinute(n, n), d.adjustHour(1, 1); });
      Date::getJulian(n, n, n);
    }
    for (const long other : SECS) {
      Date a;
      Date b;
      a.set(secs);
      b.set(other);
      EXPECT_EQ(secs < other ? -1 : secs > other ? 1 : 0, (a - b > 0) - (a - b < 0));
    }
  }
  Date far;
  EXPECT_EQ(0, far.set(LONG_MAX));
  expectFields(far, MISS, MISS, MISS, MISS, MISS, NOSEC);
}

TEST(Date, ChangingTheZoneMovesTheClock) {
  Date date(2024, 5, 1, 2, MISS, NOSEC);
  EXPECT_EQ(1, date.changeTimezone(-18000, "CDTX"));
  expectFields(date, 2024, 4, 30, 21, MISS, NOSEC);
  EXPECT_STREQ("CDT", date.zone);
  EXPECT_EQ(1, date.changeTimezone(0, "Z"));
  expectFields(date, 2024, 5, 1, 2, MISS, NOSEC);
}

TEST(Date, DaylightRulesSwitchAtTwoOnTheirSundays) {
  struct Case {
    const char* what;
    char rule;
    int y, mo, d, h;
    bool daylight;
  };
  constexpr Case CASES[] = {
      {"US before", 'U', 2024, 3, 10, 1, false},         {"US from", 'U', 2024, 3, 10, 2, true},
      {"US first Sunday", 'U', 2024, 3, 3, 23, false},   {"US Saturday", 'U', 2024, 3, 9, 23, false},
      {"US Monday", 'U', 2024, 3, 11, 0, true},          {"US third Sunday", 'U', 2024, 3, 17, 0, true},
      {"US last hour", 'U', 2024, 11, 3, 1, true},       {"US over", 'U', 2024, 11, 3, 2, false},
      {"US summer", 'U', 2024, 7, 1, 0, true},           {"US winter", 'U', 2024, 12, 1, 0, false},
      {"old US March", 'U', 2006, 3, 31, 0, false},      {"old US before", 'U', 2006, 4, 2, 1, false},
      {"old US from", 'U', 2006, 4, 2, 2, true},         {"old US fourth Sunday", 'U', 2006, 10, 22, 5, true},
      {"old US last hour", 'U', 2006, 10, 29, 1, true},  {"old US over", 'U', 2006, 10, 29, 2, false},
      {"Europe before", 'E', 2024, 3, 31, 1, false},     {"Europe from", 'E', 2024, 3, 31, 2, true},
      {"Europe Saturday", 'E', 2024, 3, 30, 12, false},  {"Europe last hour", 'E', 2024, 10, 27, 1, true},
      {"Europe over", 'E', 2024, 10, 27, 2, false},      {"Australia before", 'a', 2024, 9, 29, 1, false},
      {"Australia from", 'a', 2024, 9, 29, 2, true},     {"Australia summer", 'a', 2024, 1, 15, 0, true},
      {"Australia last hour", 'a', 2024, 4, 7, 1, true}, {"Australia over", 'a', 2024, 4, 7, 2, false},
      {"Australia winter", 'a', 2024, 7, 1, 0, false},   {"no rule", ' ', 2024, 7, 1, 0, false},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    Date date(c.y, c.mo, c.d, c.h, 0, 0.0f);
    date.setDaylightType(c.rule);
    EXPECT_EQ(c.daylight, date.isDaylight() != 0);
  }
}

TEST(Date, AdjustingFindsTheNearestDate) {
  Date date(2024, 3, 1, 1, 0, 0.0f);
  EXPECT_EQ(1, date.adjustHour(23));
  expectFields(date, 2024, 2, 29, 23, 0, 0.0f);
  EXPECT_EQ(1, date.adjustMinute(2, 15));
  expectFields(date, 2024, 3, 1, 2, 15, 0.0f);
  EXPECT_EQ(1, date.adjustHour(28, 6));
  expectFields(date, 2024, 2, 28, 6, 15, 0.0f);
  EXPECT_EQ(1, date.adjustMinute(2, 6, 30));
  expectFields(date, 2024, 3, 2, 6, 30, 0.0f);
  EXPECT_EQ(1, date.adjustHour(4, 7));
  expectFields(date, 2024, 3, 4, 7, 30, 0.0f);
  EXPECT_EQ(0, date.adjustMinute(32, 6, 30));
  EXPECT_EQ(0, date.adjustMinute(24, 0));
  expectFields(date, 2024, 3, 4, 7, 30, 0.0f);
}

TEST(Date, FixFillsAllButTheHour) {
  Date date(MISS, 7, MISS, MISS, MISS, NOSEC);
  EXPECT_EQ(1, date.fix());
  expectFields(date, 1970, 7, 1, MISS, 0, 0.0f);
}
