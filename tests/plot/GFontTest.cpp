#include "KYV/GFont.h"

#include <gtest/gtest.h>

#include <string>

#include "../resrc/Restore.h"
#include "KYV/Point.h"
#include "KYV/Symbol.h"
#include "TempDir.h"

namespace KYV {
namespace {

// The codes of a character, "m(1,2) d(3,4)"; "none" when it has no strokes.
std::string codesOf(GFont& font, char c) {
  if (!font.setChar(c)) return "none";
  std::string text;
  Point p;
  while (const int op = font.get(p)) {
    char part[60];
    std::snprintf(part, sizeof part, "%s%c(%g,%g)", text.empty() ? "" : " ", op == 2 ? 'm' : 'd',
                  static_cast<double>(p.x), static_cast<double>(p.y));
    text += part;
  }
  return text;
}

TEST(GFont, StrokesOfCharacters) {
  FreshKyv fresh;
  TempDir dir;
  // The last code before 254 is made the end of the font's last character.
  const std::string file = dir.write("my.fnt",
                                     "0 A 128 35 40 140 208 35\n"
                                     "255 1 138 0 10 -20 255 B 253 5 0 0 254 99 99");
  GFont font;
  ASSERT_EQ(1, font.read(file.c_str()));
  EXPECT_EQ("m(0,35) d(40,140) m(80,35)", codesOf(font, 'A'));
  EXPECT_EQ("m(10,0) d(10,-20)", codesOf(font, '1')) << "a digit as a character";
  EXPECT_EQ("m(125,5)", codesOf(font, 'B'));
  EXPECT_EQ("none", codesOf(font, 'C'));
  EXPECT_EQ("none", codesOf(font, ' '));
  EXPECT_EQ(80, font.getWidth('A')) << "a closing move counts";
  EXPECT_EQ(40, font.getWidth(' '));
  EXPECT_EQ(0, font.getWidth('C'));
}

TEST(GFont, DamagedFilesAreSafe) {
  struct Case {
    const char* what;
    std::string text;
    int result;
  };
  std::string endless = "0 A";
  for (int i = 0; i < 20000; ++i) endless += " 1 1";
  const Case cases[] = {
      {"empty", "", 0},
      {"no number", "hello", 0},
      {"number alone", "0", 0},
      {"no codes", "0 A", 0},
      {"one code, which becomes the end", "0 A 1 1", 0},
      {"half a code", "0 A 1 1 2 2 3", 1},
      {"huge numbers", "0 A 99999999999999999999 -99999999999999999999 1 2 3 4 5 6", 0},
      {"far codes", "0 A -999999999 999999999 1 2 3 4", 1},
      {"255 first, without a character", "255 A 1 1 2 2", 0},
      {"endless", endless, 1},
  };
  FreshKyv fresh;
  TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    GFont font;
    EXPECT_EQ(c.result, font.read(dir.write("bad.fnt", c.text).c_str()));
    EXPECT_EQ(c.result == 1, font.isOpen());
    int n = 0;
    Point p;
    if (font.setChar('A')) {
      while (font.get(p)) ++n;
    }
    EXPECT_LT(n, GFont::MAX_CODE);
  }
  GFont font;
  EXPECT_EQ(0, font.read(dir.path("none.fnt").c_str()));
  EXPECT_FALSE(font.setChar('A'));
}

TEST(GFont, DeviceFontHasNameAndHeight) {
  GFont font;
  EXPECT_EQ(1, font.read("#helv_bold:18"));
  EXPECT_STREQ("helv bold", font.getName());
  EXPECT_EQ(18, font.getHeight());
  EXPECT_EQ(GFont::DEVICE, font.getType());
  EXPECT_EQ(1, font.read("#times"));
  EXPECT_EQ(12, font.getHeight());
}

TEST(Symbol, EntriesInOrder) {
  FreshKyv fresh;
  TempDir dir;
  const std::string file =
      dir.write("my.smb", "box 0,0 1,0 L\n 0.5,0.5 x,y 1,1 F $ a_very_long_symbol_name 0,0 $ open 2,3");
  Symbol symbol;
  ASSERT_EQ(1, symbol.read(file.c_str()));
  EXPECT_EQ(3, symbol.getNum());
  const auto entries = [&symbol](const char* name) {
    std::string text;
    if (!symbol.set(name)) return std::string("none");
    Point p;
    for (Symbol::Op op = symbol.get(p); op != Symbol::END; op = symbol.get(p)) {
      text += op == Symbol::LINE ? 'L' : op == Symbol::FILL ? 'F' : static_cast<char>('0' + static_cast<int>(p.x * 2));
    }
    return text;
  };
  EXPECT_EQ("02L12F", entries("box"));
  EXPECT_EQ("0", entries("a_very_long_symbol_name"));
  EXPECT_EQ("4", entries("open")) << "the end closes the last symbol";
  EXPECT_EQ("none", entries("Box"));
  EXPECT_EQ(0, symbol.set(nullptr));
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, symbol.read("none.smb"));
  EXPECT_EQ("Symbol_read: unable to load symbol file: none.smb\n", testing::internal::GetCapturedStderr());
}

TEST(Symbol, LimitsHold) {
  FreshKyv fresh;
  TempDir dir;
  std::string many;
  for (int i = 0; i < 500; ++i) many += "s" + std::to_string(i) + " 1,1 $ ";
  Symbol symbol;
  ASSERT_EQ(1, symbol.read(dir.write("many.smb", many).c_str()));
  EXPECT_EQ(Symbol::MAX_SYMBOL, symbol.getNum());
  std::string big = "big";
  for (int i = 0; i < 9000; ++i) big += " 1,1";
  ASSERT_EQ(1, symbol.read(dir.write("big.smb", big).c_str()));
  ASSERT_EQ(1, symbol.set("big"));
  int n = 0;
  Point p;
  while (symbol.get(p) != Symbol::END) ++n;
  EXPECT_EQ(Symbol::MAX_ENTRY, n);
}

}  // namespace
}  // namespace KYV
