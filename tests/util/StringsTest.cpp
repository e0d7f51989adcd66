#include "KYV/Strings.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "KYV/Const.h"

namespace KYV {

namespace {

std::vector<std::string> items(const Strings& list) {
  std::vector<std::string> all;
  all.reserve(static_cast<std::size_t>(list.getNum()));
  for (int i = 0; i < list.getNum(); i++) all.emplace_back(StrLib::valid(list.getString(i), ""));
  return all;
}

using List = std::vector<std::string>;

}  // namespace

TEST(Strings, WordsAreRunsOfNonBlanks) {
  EXPECT_EQ((List{"one", "two"}), items(Strings("  one  two ")));
  EXPECT_EQ((List{"a", "b"}), items(Strings("a\t\nb")));
  EXPECT_EQ(0, Strings().set("   "));
  EXPECT_EQ(0, Strings().set(""));
  EXPECT_EQ(0, Strings().set(static_cast<const char*>(nullptr)));
}

TEST(Strings, SplitsAtSeparators) {
  struct Case {
    const char* what;
    const char* text;
    char sep;
    int limit;
    List result;
  };
  const Case cases[] = {
      {"plain", "a:b:c", ':', -1, {"a", "b", "c"}},
      {"limit keeps the rest", "a:b:c", ':', 2, {"a", "b:c"}},
      {"limit not reached", "a:b", ':', 5, {"a", "b"}},
      {"limit of none", "a:b", ':', 0, {}},
      {"empty field between", "a,,b", ',', -1, {"a", "", "b"}},
      {"empty field at the end", "a,", ',', -1, {"a", ""}},
      {"separator alone", ",", ',', -1, {"", ""}},
      {"no trimming", " a , b", ',', -1, {" a ", " b"}},
      {"empty text", "", ',', -1, {}},
      {"quoted field", "\"x,y\"", ',', -1, {"x,y"}},
      {"quoted field among others", "a,\"b,c\",d", ',', -1, {"a", "b,c", "d"}},
      {"quote within a field", "a\"b,c\"", ',', -1, {"a\"b", "c\""}},
      {"quote closes at a separator alone", "\"a\"b,c\",d", ',', -1, {"a\"b,c", "d"}},
      {"quote that never closes", "a,\"b,c", ',', -1, {"a", "\"b,c"}},
      {"quote alone", "\"", ',', -1, {"\""}},
      {"empty quotes", "\"\",a", ',', -1, {"", "a"}},
      {"quoted rest keeps its separators", "a,\"b\",c", ',', 2, {"a", "\"b\",c"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Strings list("old items");
    EXPECT_EQ(static_cast<int>(c.result.size()), list.set(c.text, c.sep, c.limit));
    EXPECT_EQ(c.result, items(list));
    EXPECT_EQ(list.getNum(), list.getMax());
  }
}

TEST(Strings, BracketsKeepTheirSeparators) {
  struct Case {
    const char* what;
    const char* text;
    const char* quotes;
    List result;
  };
  const Case cases[] = {
      {"bracket", "red[a,b],blue", "\"[", {"red[a,b]", "blue"}},
      {"not asked for", "red(a,b)", "[", {"red(a", "b)"}},
      {"all kinds", "(a,b),{c,d},[e,f],\"g,h\"", "\"([{", {"(a,b)", "{c,d}", "[e,f]", "g,h"}},
      {"no nesting", "[a[b],c],d", "[", {"[a[b]", "c]", "d"}},
      {"quote within a field", "a\"b,c\"d,e", "\"", {"a\"b,c\"d", "e"}},
      {"never closes", "a[b,c", "[", {"a[b,c"}},
      {"closing alone", "a],b", "[", {"a]", "b"}},
      {"no quotes", "\"a,b\"", nullptr, {"\"a", "b\""}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.result, items(Strings(c.text, ',', -1, c.quotes)));
  }
}

TEST(Strings, SplitsOneOfItsOwnItems) {
  Strings list("a,b;c", ';');
  EXPECT_EQ(2, list.set(list.getString(0), ','));
  EXPECT_EQ((List{"a", "b"}), items(list));
  list.add(list.getString(0));
  EXPECT_STREQ("a", list.getString(2));
}

TEST(Strings, GrowsByTen) {
  Strings list(1);
  EXPECT_EQ(0, list.getNum());
  EXPECT_EQ(0, list.add(""));
  EXPECT_EQ(0, list.add(nullptr));
  EXPECT_EQ(1, list.add("a"));
  EXPECT_EQ(1, list.getMax());
  EXPECT_EQ(1, list.add("b"));
  EXPECT_EQ(11, list.getMax());
  EXPECT_EQ(2, list.getNum());
}

TEST(Strings, SetsItemsBeyondItsEnd) {
  Strings list("a");
  EXPECT_EQ(1, list.set(3, "d"));
  EXPECT_EQ(4, list.getNum());
  EXPECT_EQ(nullptr, list.getString(2));
  EXPECT_EQ(0, list.set(0, ""));
  EXPECT_EQ(nullptr, list.getString(0));
  EXPECT_EQ(0, list.set(-1, "x"));
  EXPECT_EQ(0, list.set(INT_MAX, "x"));
  EXPECT_EQ(4, list.getNum());
}

TEST(Strings, CopiesArgumentArrays) {
  const char* argv[] = {"radmap", nullptr, ""};
  const Strings list(3, argv);
  EXPECT_EQ(3, list.getNum());
  EXPECT_STREQ("radmap", list.getString(0));
  EXPECT_EQ(nullptr, list.getString(1));
  EXPECT_STREQ("", list.getString(2));
}

TEST(Strings, ReadsNumbersOfItems) {
  const Strings list("ra=42 el=0.5 n-7 99999999999", ' ');
  EXPECT_EQ(42, list.getIntAfter(0, '='));
  EXPECT_EQ(Const::MISS, list.getInt(0));
  EXPECT_EQ(42, list.getInt(0, 3));
  EXPECT_EQ(Const::MISS, list.getIntAfter(1, '='));
  EXPECT_FLOAT_EQ(0.5f, list.getFloatAfter(1, '='));
  EXPECT_EQ(-7, list.getInt(2, 1));
  EXPECT_EQ(Const::MISS, list.getInt(3));
  EXPECT_EQ(99999999999L, list.getLong(3));
  EXPECT_EQ(Const::MISS, list.getLongAfter(2, '='));
}

TEST(Strings, OutsideAnswersNothing) {
  Strings list("abc");
  list.set(1, "");  // a slot without an item
  for (int i : {-1, 1, 2, INT_MAX, INT_MIN}) {
    SCOPED_TRACE(i);
    EXPECT_EQ(nullptr, list.getString(i));
    EXPECT_EQ(nullptr, list.getString(i, 'a'));
    EXPECT_EQ(nullptr, list.getString(i, 0));
    EXPECT_EQ(nullptr, list.getStringAfter(i, 'a'));
    EXPECT_EQ('\0', list.getChar(i, 0));
    EXPECT_FALSE(list.valid(i));
    EXPECT_EQ(0, list.getLength(i));
    EXPECT_EQ(-1, list.index(i, 'a'));
    EXPECT_FALSE(list.contains(i, ""));
    EXPECT_FALSE(list.equal(i, ""));
    EXPECT_EQ(0, list.check(i, ""));
    EXPECT_EQ(Const::MISS, list.getInt(i));
    EXPECT_FLOAT_EQ(Const::MISS, list.getFloat(i));
  }
  EXPECT_EQ(nullptr, list.getString(0, 3));
  EXPECT_EQ(nullptr, list.getString(0, -1));
  EXPECT_STREQ("c", list.getString(0, 2));
  EXPECT_EQ(-1, list.find("ab"));
  EXPECT_EQ(0, list.find("abc"));
}

TEST(Strings, PrintsOneLineAnItem) {
  testing::internal::CaptureStdout();
  Strings("a,,b", ',').print();
  EXPECT_EQ("0=a\n1=\n2=b\n", testing::internal::GetCapturedStdout());
}

}  // namespace KYV
