#include "KYV/StrLib.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "KYV/Const.h"

namespace KYV {

TEST(StrLib, CopiesAreCutAndTerminated) {
  struct Case {
    const char* what;
    int size;
    const char* src;
    int n;
    const char* result;
  };
  constexpr Case CASES[] = {
      {"fits", 8, "abc", -1, "abc"},
      {"fits exactly", 4, "abc", -1, "abc"},
      {"cut by the size", 3, "abc", -1, "ab"},
      {"room for the terminator alone", 1, "abc", -1, ""},
      {"cut by the count", 8, "abc", 2, "ab"},
      {"count of none", 8, "abc", 0, ""},
      {"all but the last", 8, "abc", -2, "ab"},
      {"more dropped than there are", 8, "abc", INT_MIN, ""},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    char dst[8] = "xxxxxxx";
    EXPECT_EQ(1, StrLib::copy(dst, c.size, c.src, c.n));
    EXPECT_STREQ(c.result, dst);
    EXPECT_EQ(c.size < 8 ? 'x' : dst[6], dst[6]) << "wrote beyond the size";
  }
}

TEST(StrLib, CountedCopyNeedsNoTerminator) {
  const char src[3] = {'a', 'b', 'c'};
  char dst[8];
  EXPECT_EQ(1, StrLib::copy(dst, 8, src, 3));
  EXPECT_STREQ("abc", dst);
  EXPECT_STREQ("ab", StrLib::acopy(src, 2).get());
}

TEST(StrLib, FieldFormsTakeTheSizeOfTheField) {
  char id[5];
  StrLib::copy(id, "KTLXX");
  EXPECT_STREQ("KTLX", id);
  EXPECT_EQ(4, StrLib::printf(id, "%d", 123456));
  EXPECT_STREQ("1234", id);
  StrLib::copy(id, nullptr);
  EXPECT_STREQ("", id);
}

TEST(StrLib, AppendsStayInTheirBuffer) {
  char dst[6] = "ab";
  EXPECT_EQ(1, StrLib::append(dst, 6, "cdefg", 2));
  EXPECT_STREQ("abcd", dst);
  EXPECT_EQ(1, StrLib::aprintf(dst, 6, "%d", 42));
  EXPECT_STREQ("abcd4", dst);
  char full[4] = {'a', 'b', 'c', 'd'};  // never terminated
  EXPECT_EQ(1, StrLib::append(full, 4, "e"));
  EXPECT_STREQ("abc", full);
}

TEST(StrLib, EditsInPlace) {
  struct Case {
    const char* what;
    int (*edit)(char*);
    const char* before;
    const char* after;
  };
  constexpr Case CASES[] = {
      {"trim", StrLib::trimWS, " a b \t\n", " a b"},
      {"trim of blanks", StrLib::trimWS, "   ", ""},
      {"strip", StrLib::stripWS, " a\tb\n", "ab"},
      {"chop", StrLib::chop, "ab", "a"},
      {"chop of nothing", StrLib::chop, "", ""},
      {"upper", StrLib::upCase, "aB1\xe4", "AB1\xe4"},
      {"lower", StrLib::lowCase, "aB1", "ab1"},
      {"first", StrLib::upCaseFirst, "aBc", "ABc"},
      {"clean", StrLib::clean, "\ta\nb\x80\r\n", " a b\x80"},
      {"clear", StrLib::clear, "abc", ""},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    std::string text = c.before;
    EXPECT_EQ(1, c.edit(text.data()));
    EXPECT_STREQ(c.after, text.c_str());
    EXPECT_EQ(0, c.edit(nullptr));
  }
}

TEST(StrLib, SplicesWithinTheBuffer) {
  struct Case {
    const char* what;
    int at, n;
    const char* text;
    int result;
    const char* after;
  };
  constexpr Case CASES[] = {
      {"longer", 1, 1, "XYZ", 1, "aXYZcd"}, {"shorter", 1, 2, "X", 1, "aXd"}, {"at the end", 4, 9, "XX", 1, "abcdXX"},
      {"cut", 0, 0, "12345", 1, "12345ab"}, {"beyond", 5, 0, "X", 0, "abcd"}, {"negative", -1, 1, "X", 0, "abcd"},
      {"whole rest", 2, 100, "", 1, "ab"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    char s[8] = "abcd";
    EXPECT_EQ(c.result, StrLib::splice(s, 8, c.at, c.n, c.text));
    EXPECT_STREQ(c.after, s);
  }
}

TEST(StrLib, CharactersCountFromBothEnds) {
  char s[] = "abc";
  EXPECT_EQ('c', StrLib::getChar(s, -1));
  EXPECT_EQ('\0', StrLib::getChar(s, -4));
  EXPECT_EQ('\0', StrLib::getChar(s, 3));
  EXPECT_EQ(1, StrLib::setChar(s, -3, 'X'));
  EXPECT_EQ(0, StrLib::setChar(s, 3, 'Y'));
  EXPECT_STREQ("Xbc", s);
}

TEST(StrLib, FindsCharactersAndTexts) {
  const char* s = "a:b:c";
  EXPECT_EQ(1, StrLib::index(s, ':'));
  EXPECT_EQ(3, StrLib::index(s, ':', 2));
  EXPECT_EQ(-1, StrLib::index(s, ':', 3));
  EXPECT_EQ(-1, StrLib::index(s, ':', 0));
  EXPECT_EQ(-1, StrLib::index(s, '\0'));
  EXPECT_EQ(3, StrLib::lastIndex(s, ':'));
  EXPECT_EQ(2, StrLib::occurs(s, ':'));
  EXPECT_EQ(2, StrLib::where(s, "b:"));
  EXPECT_EQ(-1, StrLib::where(s, "bc"));
  EXPECT_FALSE(StrLib::contains(s, nullptr));
}

TEST(StrLib, FieldsSkipRunsOfSeparators) {
  const char* s = "//usr//share/";
  EXPECT_STREQ("usr//share/", StrLib::getField(s, '/', 0));
  EXPECT_STREQ("share/", StrLib::getField(s, '/', 1));
  EXPECT_EQ(nullptr, StrLib::getField(s, '/', 2));
  EXPECT_EQ(nullptr, StrLib::getField(s, '/', -1));
  EXPECT_TRUE(StrLib::hasToken(s, '/', "share"));
  EXPECT_FALSE(StrLib::hasToken(s, '/', "shar"));
  EXPECT_FALSE(StrLib::hasToken(s, '/', ""));
}

TEST(StrLib, SubStringsEndWithTheText) {
  char dst[4] = "x";
  EXPECT_EQ(1, StrLib::subString("abcdef", 1, 2, dst, 4));
  EXPECT_STREQ("bc", dst);
  EXPECT_EQ(1, StrLib::subString("abcdef", 1, 100, dst, 4));
  EXPECT_STREQ("bcd", dst);
  EXPECT_EQ(0, StrLib::subString("abcdef", 7, 1, dst, 4));
  EXPECT_STREQ("", dst);
}

TEST(StrLib, ComparesHeadsAndTails) {
  struct Case {
    const char *a, *b;
    int n;
    bool equal, iequal;
  };
  constexpr Case CASES[] = {
      {"abc", "abd", 2, true, true},   {"ab", "ab", 3, true, true},        {"ab", "abc", 3, false, false},
      {"abc", "bc", -2, true, true},   {"abc", "BC", -2, false, true},     {"abc", "c", -2, false, false},
      {"bc", "bc", -3, false, false},  {"Default", "DEF", 3, false, true}, {"abc", "", 0, true, true},
      {nullptr, "a", 1, false, false}, {"a", nullptr, -1, false, false},   {nullptr, nullptr, 0, false, false},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(std::string(StrLib::valid(c.a, "null")) + " " + StrLib::valid(c.b, "null") + std::to_string(c.n));
    EXPECT_EQ(c.equal, StrLib::equal(c.a, c.b, c.n));
    EXPECT_EQ(c.iequal, StrLib::iequal(c.a, c.b, c.n));
    EXPECT_EQ(c.iequal, StrLib::icmp(c.a, c.b, c.n) == 0);
  }
  EXPECT_TRUE(StrLib::equal("radmap", 3, "rad"));
  EXPECT_FALSE(StrLib::equal("radmap", 3, "radm"));
  EXPECT_FALSE(StrLib::equal("radmap", -1, "rad"));
  EXPECT_LT(StrLib::icmp("alpha", "BETA"), 0);
  EXPECT_GT(StrLib::icmp("beta", "ALPHA"), 0);
  EXPECT_LT(StrLib::icmp(nullptr, ""), 0);
}

TEST(StrLib, KnowsWholeNumbers) {
  struct Case {
    const char* text;
    bool isNum;
    int asInt;
    float asFloat;
  };
  constexpr float MISS = Const::MISS;
  constexpr Case CASES[] = {
      {"42", true, 42, 42.0f},
      {"-7", true, -7, -7.0f},
      {"+7", false, 7, 7.0f},
      {"1.5", false, Const::MISS, 1.5f},
      {".5", false, Const::MISS, 0.5f},
      {"2.", false, Const::MISS, 2.0f},
      {"-1.5e-2", false, Const::MISS, -0.015f},
      {"1e", false, Const::MISS, MISS},
      {".", false, Const::MISS, MISS},
      {"-", false, Const::MISS, MISS},
      {"", false, Const::MISS, MISS},
      {"12a", false, Const::MISS, MISS},
      {" 12", false, Const::MISS, MISS},
      {"0x10", false, Const::MISS, MISS},
      {"nan", false, Const::MISS, MISS},
      {"inf", false, Const::MISS, MISS},
      {"1e99", false, Const::MISS, MISS},
      {"1e-99", false, Const::MISS, 0.0f},
      {"2147483648", true, Const::MISS, 2147483648.0f},
      {nullptr, false, Const::MISS, MISS},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(StrLib::valid(c.text, "(none)"));
    EXPECT_EQ(c.isNum, StrLib::isNum(c.text));
    EXPECT_EQ(c.asInt, StrLib::getInt(c.text));
    EXPECT_FLOAT_EQ(c.asFloat, StrLib::getFloat(c.text));
  }
  EXPECT_TRUE(StrLib::isNum("12ab", 2));
  EXPECT_FALSE(StrLib::isNum("12ab", 3));
}

TEST(StrLib, ConvertsFieldsOfColumns) {
  struct Case {
    const char* text;
    int start, n;
    int asInt;
    float asFloat;
  };
  constexpr float MISS = Const::MISS;
  constexpr Case CASES[] = {
      {"  42  ", 0, 6, 42, 42.0f},         {"    ", 0, 4, Const::MISS, MISS},
      {"12345", 1, 2, 23, 23.0f},          {"12345", 3, 99, 45, 45.0f},
      {"12345", 5, 1, Const::MISS, MISS},  {"12345", 6, 1, Const::MISS, MISS},
      {"12345", -1, 2, Const::MISS, MISS}, {"12345", 0, -2, Const::MISS, MISS},
      {"7.25kt", 0, 6, 7, 7.25f},          {"kt", 0, 2, Const::MISS, MISS},
      {nullptr, 0, 2, Const::MISS, MISS},  {"99999999999", 0, 11, Const::MISS, 1e11f},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(StrLib::valid(c.text, "(none)"));
    EXPECT_EQ(c.asInt, StrLib::toInt(c.text, c.start, c.n));
    EXPECT_FLOAT_EQ(c.asFloat, StrLib::toFloat(c.text, c.start, c.n));
  }
  EXPECT_EQ(345, StrLib::toInt("12345", 2));
}

TEST(StrLib, MatchesCharacterTemplates) {
  struct Case {
    const char *text, *pattern;
    int result;
  };
  constexpr Case CASES[] = {
      {"N123", "udd", 1},  {"N1", "udd", 0},      {"abc", "", 1},     {"", "", 1},      {"", "a", 0},
      {"a1_ ", "Adpb", 1}, {"\t\n", "cs", 1},     {"aB", "lu", 1},    {"Ab", "lu", 0},  {"~", "g", 1},
      {"x-9", "x-d", 1},   {"b7", "[ab][78]", 1}, {"c7", "[ab]d", 0}, {"a", "a[", 0},   {"ab", "a[", 0},
      {"a]", "a[]", 0},    {"ab", "a[b", 0},      {"\xff", "a", 0},   {nullptr, "", 0}, {"a", nullptr, 0},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(std::string(StrLib::valid(c.text, "(none)")) + " against " + StrLib::valid(c.pattern, "(none)"));
    EXPECT_EQ(c.result, StrLib::check(c.text, c.pattern));
  }
}

}  // namespace KYV
