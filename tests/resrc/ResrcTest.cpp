#include "KYV/Resrc.h"

#include <gtest/gtest.h>

#include <string>

#include "KYV/String.h"

namespace KYV {

TEST(Resrc, LaterWritesWinWithTheirSource) {
  Resrc store;
  EXPECT_EQ(nullptr, store.get("a"));
  EXPECT_STREQ("none", store.get("a", "none"));
  EXPECT_EQ(0, store.getType("a"));
  store.add("a", "1", Resrc::FILE);
  store.add("A", "other", Resrc::ENVIRON);
  store.set("a", "2", Resrc::CMDLINE);
  EXPECT_STREQ("2", store.get("a"));
  EXPECT_EQ(Resrc::CMDLINE, store.getType("a"));
  store.put("a", nullptr);
  EXPECT_STREQ("", store.get("a", "none"));
  EXPECT_EQ(Resrc::CODE, store.getType("a"));
  EXPECT_EQ(0, store.add(nullptr, "x", 1));
  EXPECT_EQ(nullptr, store.get(nullptr));
}

TEST(Resrc, NumbersNeedALeadingDigit) {
  struct Case {
    const char* value;
    int whole;
    float real;
  };
  constexpr Case CASES[] = {
      {"42", 42, 42.0f},   {"42.5km", 42, 42.5f}, {"-3", 5, 5.0f},    {".5", 5, 5.0f},
      {"+1", 5, 5.0f},     {"", 5, 5.0f},         {nullptr, 5, 5.0f}, {" 7", 5, 5.0f},
      {"1e3", 1, 1000.0f}, {"0x10", 0, 0.0f},     {"007", 7, 7.0f},   {"99999999999", 5, 99999999999.0f},
      {"1e99", 1, 5.0f},
  };
  Resrc store;
  EXPECT_EQ(5, store.get("n", 5));
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.value ? c.value : "null");
    store.set("n", c.value);
    EXPECT_EQ(c.whole, store.get("n", 5));
    EXPECT_EQ(c.real, store.get("n", 5.0f));
  }
}

TEST(Resrc, FlagsAreOnUnlessTheirValueDeniesIt) {
  struct Case {
    const char* value;
    int on;
  };
  constexpr Case CASES[] = {{"No", 0}, {"OFF", 0},   {"False", 0}, {"0", 1},
                            {"", 1},   {nullptr, 1}, {"nope", 1},  {"n", 1}};
  Resrc store;
  EXPECT_EQ(0, store.getBool("flag"));
  for (const Case& c : CASES) {
    store.set("flag", c.value);
    EXPECT_EQ(c.on, store.getBool("flag")) << (c.value ? c.value : "null");
  }
}

TEST(Resrc, TextIsJoinedAndTheSourceStays) {
  Resrc store;
  store.add("list", nullptr, Resrc::FILE);
  store.append("list", "b", ',');
  EXPECT_STREQ("b", store.get("list"));
  store.append("list", "c", ',');
  store.prepend("list", "a", ':');
  store.append("list", "d", '\0');
  store.prepend("list", "0", '\0');
  EXPECT_STREQ("0\na:b,c\nd", store.get("list"));
  EXPECT_EQ(Resrc::FILE, store.getType("list"));
  store.append("new", "x", ',');
  EXPECT_STREQ("x", store.get("new"));
  EXPECT_EQ(Resrc::CODE, store.getType("new"));
}

TEST(Resrc, OwnTextsAreSafeSources) {
  Resrc store;
  store.set("a", "some text that is long enough for the heap");
  store.append("a", store.get("a") + 5, ' ');
  store.set("a", store.get("a") + 10);
  EXPECT_STREQ("that is long enough for the heap text that is long enough for the heap", store.get("a"));
  // A reader keeps a value while others are written.
  store.set("short", "s");
  const char* kept = store.get("short");
  for (int i = 0; i < 1000; i++) store.set(std::to_string(i).c_str(), "x");
  EXPECT_STREQ("s", kept);
}

TEST(Resrc, ListsAllEntriesInTheirOrder) {
  Resrc store;
  const struct {
    const char *name, *value;
    int source;
  } entries[] = {{"prog", "radmap", 1}, {"f", "1", 2}, {"e", "2", 3}, {"c", nullptr, 4}, {"k", "4", 5}, {"w", "5", 99}};
  for (const auto& e : entries) store.add(e.name, e.value, e.source);
  testing::internal::CaptureStdout();
  store.printAll();
  store.print("f");
  store.print("g");
  EXPECT_EQ("prog: radmap\nf (file): 1\ne (env): 2\nc (cmd): \nk: 4\nw: 5\nf: 1\ng: not set\n",
            testing::internal::GetCapturedStdout());
  String name, value;
  int num = 0;
  for (int more = store.getValues(name, value, 0); more; more = store.getValues(name, value, 1)) {
    EXPECT_STREQ(entries[num++].name, name.get());
  }
  EXPECT_EQ(6, num);
  store.rewind();
  EXPECT_STREQ("prog", store.getNext());
  store.clear();
  EXPECT_EQ(nullptr, store.getNext());
  EXPECT_EQ(nullptr, store.get("prog"));
}

TEST(Resrc, ValuesAreScanned) {
  Resrc store;
  int a = 0, b = 0;
  EXPECT_EQ(0, store.scanf("size", "%dx%d", &a, &b));
  store.set("size", "640x480");
  EXPECT_EQ(2, store.scanf("size", "%dx%d", &a, &b));
  EXPECT_EQ(640, a);
  EXPECT_EQ(480, b);
}

}  // namespace KYV
