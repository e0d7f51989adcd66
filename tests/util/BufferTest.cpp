#include "KYV/Buffer.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace KYV {

namespace {

const unsigned char* bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

Buffer make(const std::string& text, int max = 0) {
  Buffer buffer(max);
  buffer.add(bytes(text.data()), static_cast<int>(text.size()));
  return buffer;
}

std::string held(const Buffer& buffer) {
  std::string text;
  for (int i = -buffer.getInd(); i < buffer.getAvail(); i++) text += static_cast<char>(buffer.get(i));
  return text;
}

}  // namespace

TEST(Buffer, GrowsBeyondTheNeed) {
  Buffer buffer(4);
  buffer.add(bytes("abcd"), 4);
  EXPECT_EQ(4, buffer.getMax());
  buffer.add(bytes("e"), 1);
  EXPECT_EQ(2005, buffer.getMax());
  EXPECT_EQ("abcde", held(buffer));
  EXPECT_EQ(0, buffer.check(INT_MAX));
  EXPECT_EQ(2005, buffer.getMax());
}

TEST(Buffer, RefusesWildArguments) {
  Buffer buffer = make("abc", 10);
  buffer.seek(1);
  const unsigned char* text = bytes("x");
  EXPECT_EQ(0, buffer.add(text, -1));
  EXPECT_EQ(0, buffer.add(text, INT_MAX));
  EXPECT_EQ(0, buffer.add(nullptr, 1));
  EXPECT_EQ(0, buffer.insert(-1, text, 1));
  EXPECT_EQ(0, buffer.insert(4, text, 1));
  EXPECT_EQ(0, buffer.init(-1));
  EXPECT_EQ(0, buffer.resize(INT_MIN));
  EXPECT_EQ(0, buffer.seek(-1));
  EXPECT_EQ(0, buffer.seek(4));
  EXPECT_EQ(0, buffer.inc(-2));
  EXPECT_EQ(0, buffer.inc(3));
  EXPECT_EQ(0, buffer.inc(INT_MIN));
  EXPECT_EQ(0, buffer.setSize(11));
  EXPECT_EQ(0, buffer.setSize(-1));
  EXPECT_EQ(0, buffer.read(nullptr, -1));
  EXPECT_EQ(0, buffer.readLine(nullptr, INT_MIN));
  EXPECT_EQ(0, buffer.dump(-1, 5));
  EXPECT_EQ(0, buffer.get(INT_MAX));
  EXPECT_EQ(0, buffer.get(INT_MIN));
  EXPECT_EQ("abc", held(buffer));
  EXPECT_EQ(1, buffer.getInd());
  EXPECT_EQ(10, buffer.getMax());
}

TEST(Buffer, InsertsPiecesOfItself) {
  Buffer buffer = make("abcd", 4);
  EXPECT_EQ(1, buffer.insert(1, buffer));
  EXPECT_EQ("aabcdbcd", held(buffer));
  buffer.seek(2);
  EXPECT_EQ(1, buffer.insert(0, bytes("XY"), 2));
  EXPECT_EQ('b', buffer.get(0));  // the next byte is still the next
  EXPECT_EQ(1, buffer.insert(buffer.getSize(), bytes("Z"), 1));
  EXPECT_EQ("XYaabcdbcdZ", held(buffer));
}

TEST(Buffer, ReadsLines) {
  Buffer buffer = make("one\ntwo\n\nend");
  unsigned char line[20];
  EXPECT_EQ(4, buffer.readLine(line, 20));
  EXPECT_EQ('\n', line[3]);
  EXPECT_EQ(2, buffer.readLine(line, 2));
  EXPECT_EQ(1, buffer.skipLine());
  EXPECT_EQ(1, buffer.readLine(line, 20));
  EXPECT_EQ(0, buffer.skipLine());
  EXPECT_EQ(3, buffer.readLine(line, 20));
  EXPECT_EQ(0, buffer.readLine(line, 20));
}

TEST(Buffer, ReadsWhatIsThere) {
  Buffer buffer = make("abcdef");
  unsigned char out[6];
  EXPECT_EQ(2, buffer.read(nullptr, 2));
  EXPECT_EQ(4, buffer.read(out, 100));
  EXPECT_EQ('c', out[0]);
  EXPECT_EQ(0, buffer.read(out, 1));
  buffer.seek(4);
  EXPECT_EQ(1, buffer.clearUsed());
  EXPECT_EQ("ef", held(buffer));
  EXPECT_EQ(0, buffer.getInd());
}

TEST(Buffer, DropsItsEnd) {
  struct Case {
    const char* what;
    int ind, k, size, newInd;
  };
  constexpr Case CASES[] = {{"cursor before", 1, -2, 3, 1},       {"cursor at the new end", 3, -2, 3, 2},
                            {"cursor behind", 5, -2, 3, 2},       {"everything", 3, -5, 0, 0},
                            {"more than held", 3, INT_MIN, 0, 0}, {"nothing", 5, 0, 5, 5}};
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    Buffer buffer = make("abcde");
    buffer.seek(c.ind);
    buffer.trunc(c.k);
    EXPECT_EQ(c.size, buffer.getSize());
    EXPECT_EQ(c.newInd, buffer.getInd());
  }
}

TEST(Buffer, ComparesItsEnd) {
  const Buffer buffer = make("body\r\r\n\003");
  EXPECT_TRUE(buffer.equal(-4, "\r\r\n\003"));
  EXPECT_FALSE(buffer.equal(-3, "\r\r\n"));
  EXPECT_FALSE(buffer.equal(-2, "\n\003x"));
  EXPECT_FALSE(buffer.equal(-9, "x"));
  EXPECT_FALSE(buffer.equal(1, ""));
  EXPECT_FALSE(buffer.equal(-1, nullptr));
  EXPECT_TRUE(make("\xff").equal(-1, "\xff"));
}

TEST(Buffer, MovesWhatFitsAndPrintsBoth) {
  Buffer in = make("abcdef", 6), out(4);
  testing::internal::CaptureStdout();
  EXPECT_EQ(3, in.read(out, 3));
  EXPECT_EQ(1, in.read(out));
  EXPECT_EQ(0, in.read(out, -1));
  EXPECT_EQ(
      "Ind: 3 Num: 6 Max: 6\nInd: 0 Num: 3 Max: 4\n"
      "Ind: 4 Num: 6 Max: 6\nInd: 0 Num: 4 Max: 4\n"
      "Ind: 4 Num: 6 Max: 6\nInd: 0 Num: 4 Max: 4\n",
      testing::internal::GetCapturedStdout());
  EXPECT_EQ("abcd", held(out));
}

TEST(Buffer, CopiesOwnTheirBytes) {
  Buffer a = make("abc", 50);
  a.seek(2);
  Buffer b;
  b.copy(a);
  EXPECT_EQ(50, b.getMax());
  EXPECT_EQ(0, b.getInd());
  a.clear();
  EXPECT_EQ("abc", held(b));
  b.copy(b);
  EXPECT_EQ("abc", held(b));
  b.resize(2);
  EXPECT_EQ("ab", held(b));
}

TEST(Buffer, DumpsPendingBytes) {
  Buffer buffer = make(std::string("x0123456789abcdef\xff"));
  buffer.seek(1);
  testing::internal::CaptureStdout();
  buffer.dump(1, 1000);
  EXPECT_EQ("000001  31 32 33 34 35 36 37 38 39 61 62 63 64 65 66 ff\n", testing::internal::GetCapturedStdout());
  testing::internal::CaptureStdout();
  buffer.dump(0, 17);
  EXPECT_EQ("000000  30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66\n000010  ff\n",
            testing::internal::GetCapturedStdout());
}

}  // namespace KYV
