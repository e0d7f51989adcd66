#include "KYV/Swap.h"

#include <gtest/gtest.h>

#include "KYV/File.h"
#include "TempDir.h"

using namespace KYV;

TEST(Swap, TheModeSaysWhoseOrder) {
  struct Case {
    int mode, swapped;
  };
  constexpr Case CASES[] = {{0, 1}, {1, 1}, {2, 0}, {-1, 0}, {7, 1}};
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.mode);
    std::uint16_t two = 0x0102;
    std::uint32_t four[2] = {0x01020304, 0x0a0b0c0d};
    std::uint64_t eight = 0x0102030405060708;
    const Swap swap(c.mode);
    EXPECT_EQ(c.swapped, swap.swap2(&two));
    EXPECT_EQ(c.swapped, swap.swap4(four, 2));
    EXPECT_EQ(c.swapped, swap.swap8(&eight));
    EXPECT_EQ(c.swapped ? 0x0201u : 0x0102u, two);
    EXPECT_EQ(c.swapped ? 0x0d0c0b0au : 0x0a0b0c0du, four[1]);
    EXPECT_EQ(c.swapped ? 0x0807060504030201u : 0x0102030405060708u, eight);
    EXPECT_EQ(0, swap.swap2(nullptr, 3));
    EXPECT_EQ(0, swap.swap4(four, -1));
  }
}

TEST(Swap, NumbersOfAFile) {
  TempDir dir;
  // -2, 65534, 1.5f (0x3fc00000), -2.0 (0xc000...), and half a word.
  const std::string bytes("\xff\xfe\xff\xfe\x3f\xc0\0\0\xc0\0\0\0\0\0\0\0\x01\x02", 18);
  File file(dir.write("big", bytes).c_str(), "r");
  const Swap swap(1);
  std::int16_t i2 = 0;
  std::uint16_t u2 = 0;
  std::int32_t i4 = 77;
  float f = 0.0f;
  double d = 0.0;
  EXPECT_EQ(1, swap.readInt2(file, i2));
  EXPECT_EQ(1, swap.readUInt2(file, u2));
  EXPECT_EQ(1, swap.readFloat(file, f));
  EXPECT_EQ(1, swap.readDouble(file, d));
  EXPECT_EQ(0, swap.readInt4(file, i4));
  EXPECT_EQ(-2, i2);
  EXPECT_EQ(65534, u2);
  EXPECT_EQ(1.5f, f);
  EXPECT_EQ(-2.0, d);
  EXPECT_EQ(77, i4) << "half a value is none";

  const std::string name = dir.path("written");
  File out(name.c_str(), "w");
  EXPECT_EQ(1, swap.writeInt2(out, -2));
  EXPECT_EQ(1, swap.writeInt4(out, 0x01020304));
  EXPECT_EQ(1, swap.writeFloat(out, 1.5f));
  EXPECT_EQ(-1, swap.readInt4(out, i4));
  out.close();
  EXPECT_EQ(std::string("\xff\xfe\x01\x02\x03\x04\x3f\xc0\0\0", 10), TempDir::read(name));
  EXPECT_EQ(0, swap.writeInt2(out, 1));
}
