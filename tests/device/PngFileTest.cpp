#include "KYV/PngFile.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "KYV/Domain.h"
#include "KYV/Image.h"
#include "Scratch.h"

using KYV::Image;
using KYV::PngFile;

namespace {

enum Kind { INDEXED_8, INDEXED_16, GREY_8, DIRECT_24, DIRECT_32, DIRECT_LSB };

Image makeImage(Kind kind) {
  constexpr int BITS[] = {8, 16, 8, 24, 32, 24};
  Image image;
  image.set(37, 11, BITS[kind]);
  image.setByteOrder(kind == DIRECT_LSB ? 0 : 1);
  image.setColorType(kind == GREY_8 ? Image::GREY : kind <= INDEXED_16 ? Image::INDEXED : Image::DIRECT);
  image.allocData();
  if (kind <= INDEXED_16) {
    image.allocColors(20);
    for (int i = 0; i < 20; ++i) image.setColorVal(i, static_cast<std::uint32_t>(i) * 0x0B0D05u);
  }
  for (int y = 0; y < 11; ++y) {
    for (int x = 0; x < 37; ++x) {
      const auto i = static_cast<std::uint32_t>((x + 3 * y) % 20);
      image.setPixel(x, y, kind >= DIRECT_24 ? i * 0x0B0D05u : i);
    }
  }
  return image;
}

// A colour as other programs show it: grey images hold levels.
std::uint32_t shown(const Image& image, int x, int y) {
  const std::uint32_t value = image.getPixel(x, y);
  return image.getColorType() == Image::GREY ? value * 0x010101u : value;
}

class PngTest : public Scratch {
 protected:
  static bool has(const char* program) {
    return std::system((std::string("command -v ") + program + " > /dev/null 2>&1").c_str()) == 0;
  }
  static void write(const Image& image) {
    PngFile file;
    ASSERT_EQ(1, file.write("x.png", image));
  }
};

TEST_F(PngTest, EveryKindOfImageComesBack) {
  for (const Kind kind : {INDEXED_8, INDEXED_16, GREY_8, DIRECT_24, DIRECT_32, DIRECT_LSB}) {
    for (const int clear : {-1, 3}) {
      SCOPED_TRACE(std::to_string(kind) + " " + std::to_string(clear));
      Image image = makeImage(kind);
      const int transparent = clear >= 0 && kind >= DIRECT_24 ? 3 * 0x0B0D05 : clear;
      image.setTransColor(transparent);
      write(image);
      Image back;
      PngFile file;
      ASSERT_EQ(1, file.read("x.png", back));
      int different = 0;
      for (int y = 0; y < 11; ++y) {
        for (int x = 0; x < 37; ++x) {
          different += shown(image, x, y) != shown(back, x, y) || image.isPixelTrans(x, y) != back.isPixelTrans(x, y);
        }
      }
      EXPECT_EQ(0, different);
    }
  }
}

TEST_F(PngTest, TextsAreThoseOfTheImage) {
  setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
  Image image = makeImage(INDEXED_8);
  image.setInfo("A title");
  image.setDatim("1830Z  1 MAY 24");
  KYV::DomainVal val;
  val.proj = KYV::DomainVal::PSTEREO;
  val.plat = val.clat = 35.0f;
  val.plon = val.clon = -97.0f;
  val.nx = 37, val.ny = 11;
  val.dx = val.dy = 0.1f;
  image.setDomain(KYV::Domain(val));
  PngFile file;
  ASSERT_EQ(1, file.open("x.png", PngFile::WRITE));
  file.setTitle("The plot");
  file.setComment("Said besides");
  ASSERT_EQ(1, file.write(image));
  ASSERT_EQ(1, file.close());
  const std::string bytes = readFile("x.png");
  std::size_t at = 0;
  for (const char* text :
       {"Title", "The plot", "Software", "KYV - Kyvern v6.0", "Creation Time", "14 NOV 2023 22:13:20 GMT", "Date/Time",
        "1830Z  1 MAY 24", "Information", "A title", "Plot Domain", "Comment", "Said besides", "IDAT"}) {
    SCOPED_TRACE(text);
    const std::size_t next = bytes.find(text, at);
    ASSERT_NE(bytes.npos, next);
    at = next;
  }
  Image back;
  ASSERT_EQ(1, file.read("x.png", back));
  EXPECT_STREQ("A title", back.getInfo());
  KYV::Date date;
  back.getDate(date);
  EXPECT_EQ(18, date.hour);
  EXPECT_EQ(2024, date.year);
  EXPECT_NEAR(35.0f, back.getDomain().clat, 0.01f);
  EXPECT_EQ(37, back.getDomain().nx);
  unsetenv("SOURCE_DATE_EPOCH");
}

TEST_F(PngTest, OtherProgramsReadAndWriteTheSame) {
  if (!has("pngcheck") || !has("convert")) GTEST_SKIP() << "no pngcheck or ImageMagick";
  for (const Kind kind : {INDEXED_8, DIRECT_24}) {
    SCOPED_TRACE(kind);
    const Image image = makeImage(kind);
    write(image);
    EXPECT_EQ(0, std::system("pngcheck -q x.png"));
    for (const char* how : {"-interlace PNG", "-depth 16", "-type Grayscale -depth 2", "-alpha on"}) {
      SCOPED_TRACE(how);
      ASSERT_EQ(
          0, std::system((std::string("convert x.png ") + how + " y.png && convert y.png -depth 8 rgb:y.rgb").c_str()));
      const std::string rgb = readFile("y.rgb");
      Image back;
      PngFile file;
      ASSERT_EQ(1, file.read("y.png", back));
      int different = 0;
      for (std::size_t i = 0; i < 37 * 11; ++i) {
        const std::uint32_t color = shown(back, static_cast<int>(i % 37), static_cast<int>(i / 37));
        for (std::size_t k = 0; k < 3; ++k) {
          different += static_cast<unsigned char>(rgb.at(3 * i + k)) != (color >> (16 - 8 * k) & 255);
        }
      }
      EXPECT_EQ(0, different);
    }
  }
}

// A PNG file of one row, its chunks as given, its pixels stored without compression.
std::string makePng(int type, int depth, int width, const std::string& palette, const std::string& clear,
                    const std::string& pixels) {
  const auto word = [](std::uint32_t v) {
    return std::string{static_cast<char>(v >> 24), static_cast<char>(v >> 16), static_cast<char>(v >> 8),
                       static_cast<char>(v)};
  };
  const auto chunk = [&](const std::string& name, const std::string& content) {
    const std::string body = name + content;
    return word(static_cast<std::uint32_t>(content.size())) + body +
           word(static_cast<std::uint32_t>(
               crc32(0, reinterpret_cast<const unsigned char*>(body.data()), static_cast<unsigned>(body.size()))));
  };
  const std::string row = std::string(1, '\0') + pixels;
  const auto length = static_cast<char>(row.size());
  const std::string data =
      std::string("\x78\x01\x01", 3) + std::string{length, 0, static_cast<char>(~length), static_cast<char>(0xFF)} +
      row +
      word(static_cast<std::uint32_t>(
          adler32(1, reinterpret_cast<const unsigned char*>(row.data()), static_cast<unsigned>(row.size()))));
  const std::string head = word(static_cast<std::uint32_t>(width)) + word(1) +
                           std::string{static_cast<char>(depth), static_cast<char>(type), 0, 0, 0};
  return "\x89PNG\r\n\x1A\n" + chunk("IHDR", head) + (palette.empty() ? "" : chunk("PLTE", palette)) +
         (clear.empty() ? "" : chunk("tRNS", clear)) + chunk("IDAT", data) + chunk("IEND", "");
}

TEST_F(PngTest, WhatIsClearIsSoAtEveryDepth) {
  using namespace std::string_literals;
  constexpr int GREY = 0, RGB = 2, PALETTE = 3, GREY_ALPHA = 4, RGBA = 6;
  const struct {
    const char* what;
    std::string file;
    std::vector<int> alpha;  // of each pixel
  } CASES[] = {
      {"colours with alpha", makePng(RGBA, 8, 3, "", "", "\1\2\3\0\1\2\3\x80\1\2\3\xFF"s), {0, 128, 255}},
      {"grey with alpha", makePng(GREY_ALPHA, 8, 2, "", "", "\7\0\7\xFF"s), {0, 255}},
      {"grey of 2 bits", makePng(GREY, 2, 4, "", "\0\2"s, "\x1B"s), {255, 255, 0, 255}},
      {"grey of 8 bits", makePng(GREY, 8, 3, "", "\0\2"s, "\1\2\3"s), {255, 0, 255}},
      {"grey of 16 bits, whose upper halves are alike",
       makePng(GREY, 16, 3, "", "\5\2"s, "\5\1\5\2\5\3"s),
       {255, 0, 255}},
      {"colours of 16 bits", makePng(RGB, 16, 2, "", "\1\1\2\2\3\3"s, "\1\1\2\2\3\3\1\1\2\2\3\4"s), {0, 255}},
      {"a clear entry of a palette", makePng(PALETTE, 8, 2, "\1\1\1\2\2\2"s, "\xFF\0"s, "\0\1"s), {255, 0}},
      {"faint entries of a palette", makePng(PALETTE, 8, 3, "\1\1\1\2\2\2"s, "\0\x40"s, "\0\1\1"s), {0, 64, 64}},
      {"two clear entries", makePng(PALETTE, 8, 2, "\1\1\1\2\2\2"s, "\0\0"s, "\0\1"s), {0, 0}},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    writeFile("x.png", c.file);
    Image image;
    PngFile file;
    ASSERT_EQ(1, file.read("x.png", image));
    for (std::size_t x = 0; x < c.alpha.size(); ++x) {
      const int at = static_cast<int>(x);
      EXPECT_EQ(c.alpha[x], image.isPixelTrans(at, 0) ? 0 : image.getAlpha(at, 0)) << x;
    }
  }
}

TEST_F(PngTest, DamagedAndForeignFilesAreToldOf) {
  write(makeImage(DIRECT_24));
  const std::string whole = readFile("x.png");
  Image image;
  PngFile file;
  writeFile("x.png", whole.substr(0, whole.size() - 40));  // within the pixels
  EXPECT_LE(0, file.read("x.png", image));
  std::string huge = whole;
  huge[16] = huge[20] = 0x40;  // a gigapixel each way
  writeFile("x.png", huge);
  EXPECT_EQ(0, file.read("x.png", image));
  EXPECT_EQ(0, image.getWidth());
  writeFile("x.png", "no picture");
  EXPECT_EQ(0, file.read("x.png", image));
  EXPECT_EQ(0, file.read("missing.png", image));
  EXPECT_EQ(0, file.write("/dev/full", makeImage(DIRECT_24)));
  EXPECT_EQ(0, file.write("y.png", Image()));
}

}  // namespace
