#include "KYV/String.h"

#include <gtest/gtest.h>

namespace KYV {

TEST(String, GrowsSoThatTextAndTerminatorFit) {
  String s(2);
  for (int i = 0; i < 1000; i++) s.append("0123456789");
  EXPECT_EQ(10000, s.length());
  EXPECT_GT(s.maxLength(), s.length());
  EXPECT_EQ('\0', s.get()[10000]);
  EXPECT_EQ(6, String("abcde").maxLength());
}

TEST(String, NullEmpties) {
  String s("abc");
  EXPECT_EQ(0, s.copy(nullptr));
  EXPECT_FALSE(s.valid());
  EXPECT_STREQ("", s.get());
  EXPECT_EQ(0, s.append(nullptr));
  EXPECT_STREQ("", String(nullptr).get());
  EXPECT_STREQ("", String(-5).get());
}

TEST(String, TakesPartsOfItself) {
  String s("abcdef");
  EXPECT_EQ(1, s.copy(s.get(2)));
  EXPECT_STREQ("cdef", s.get());
  for (int i = 0; i < 6; i++) s.append(s);
  EXPECT_EQ(256, s.length());
  EXPECT_STREQ("cdef", s.get(252));
}

TEST(String, IndexesFromBothEnds) {
  const String s("abc");
  EXPECT_STREQ("bc", s.get(1));
  EXPECT_STREQ("c", s.get(99));
  EXPECT_STREQ("bc", s.get(-2));
  EXPECT_STREQ("abc", s.get(-99));
  EXPECT_EQ('c', s.getChar(-1));
  EXPECT_EQ('\0', String("").getChar(0));
}

TEST(String, TruncatesFromBothEnds) {
  struct Case {
    int n;
    const char* result;
  };
  constexpr Case CASES[] = {{2, "ab"}, {9, "abcd"}, {0, ""}, {-1, "abc"}, {-4, ""}, {-99, ""}};
  for (const Case& c : CASES) {
    String s("abcd");
    s.trunc(c.n);
    EXPECT_STREQ(c.result, s.get()) << c.n;
  }
}

TEST(String, FormatsWithinItsCapacity) {
  String s(6);
  s.printf("%s", "abcdefgh");
  EXPECT_STREQ("abcde", s.get());
  EXPECT_EQ(5, s.length());
  s.copy("ab");
  s.aprintf("%d", 123456);
  EXPECT_STREQ("ab123", s.get());
  EXPECT_EQ(6, s.maxLength());
  s.resize(4);
  EXPECT_STREQ("ab1", s.get());
}

TEST(String, CopiesOwnTheirText) {
  String a("abc");
  String b = a;
  b.upCase();
  a = String("x");
  EXPECT_STREQ("ABC", b.get());
  EXPECT_STREQ("x", a.get());
}

TEST(String, ScansOnFromItsCursor) {
  String s("id=  KTLX 35.33,-.5,7");
  char id[10] = "";
  float lat = 0.0f, lon = 0.0f, height = 0.0f;
  EXPECT_EQ(2, s.scanp("id=%9s%f", id, &lat));
  EXPECT_STREQ("KTLX", id);
  EXPECT_FLOAT_EQ(35.33f, lat);
  EXPECT_EQ(2, s.scanp(",%f,%f", &lon, &height));
  EXPECT_FLOAT_EQ(-0.5f, lon);
  EXPECT_FLOAT_EQ(7.0f, height);
  s.rewind();
  EXPECT_EQ(1, s.scanp("id=%2s", id));
  EXPECT_STREQ("KT", id);
}

TEST(String, ScanStopsAtWhatDoesNotMatch) {
  char word[8] = "";
  float value = -1.0f;
  EXPECT_EQ(0, String("ab").scanp("ax%7s", word));
  EXPECT_EQ(0, String("  ").scanp("%7s", word));
  EXPECT_EQ(0, String("x1").scanp("%f", &value));
  EXPECT_EQ(0, String("-").scanp("%f", &value));
  EXPECT_EQ(1, String("5 %").scanp("%f %%%7s", &value, word));
  EXPECT_FLOAT_EQ(5.0f, value);
  EXPECT_STREQ("", word);
}

TEST(String, ScanWidthBoundsTheDigitsBeforeThePoint) {
  float a = 0.0f, b = 0.0f;
  EXPECT_EQ(2, String("1234.56").scanp("%2f%2f", &a, &b));
  EXPECT_FLOAT_EQ(12.0f, a);
  EXPECT_FLOAT_EQ(34.56f, b);
}

}  // namespace KYV
