#include "KYV/Image.h"

#include <gtest/gtest.h>
#include <cmath>

using KYV::Const;
using KYV::Domain;
using KYV::EarthPoint;
using KYV::Image;
using KYV::RGB;

namespace {

Image makeImage(int w, int h, int depth) {
  Image image;
  EXPECT_EQ(1, image.set(w, h, depth));
  EXPECT_EQ(1, image.allocData());
  return image;
}

TEST(Image, PixelsAreStoredInTheirByteOrder) {
  struct Case {
    const char* what;
    int depth;
    int order;
    std::uint32_t value;
    std::vector<unsigned char> bytes;
  };
  const Case cases[] = {
      {"8 bits", 8, 1, 0x7F, {0x7F}},
      {"16 bits, most significant first", 16, 1, 0x1234, {0x12, 0x34}},
      {"16 bits, least significant first", 16, 0, 0x1234, {0x34, 0x12}},
      {"24 bits, R G B", 24, 1, 0x112233, {0x11, 0x22, 0x33}},
      {"24 bits, B G R", 24, 0, 0x112233, {0x33, 0x22, 0x11}},
      {"32 bits, most significant first", 32, 1, 0x00112233, {0x00, 0x11, 0x22, 0x33}},
      {"32 bits, least significant first", 32, 0, 0x00112233, {0x33, 0x22, 0x11, 0x00}},
      {"12 bits in 16", 12, 1, 0x0ABC, {0x0A, 0xBC}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Image image = makeImage(3, 2, c.depth);
    image.setByteOrder(c.order);
    ASSERT_EQ(static_cast<int>(3 * c.bytes.size()), image.getBytesLine());
    ASSERT_EQ(6 * c.bytes.size(), image.getData().size());
    EXPECT_EQ(1, image.setPixel(1, 1, c.value));
    std::vector<unsigned char> row(3 * c.bytes.size(), 0xEE);
    EXPECT_EQ(image.getBytesLine(), image.getRow(1, row.data()));
    std::vector<unsigned char> expected(row.size(), 0);
    std::copy(c.bytes.begin(), c.bytes.end(), expected.begin() + static_cast<std::ptrdiff_t>(c.bytes.size()));
    EXPECT_EQ(expected, row);
    EXPECT_EQ(c.value, image.getVal(1, 1));
    EXPECT_EQ(c.value, image.getPixel(1, 1));  // no colour table
  }
}

TEST(Image, OutsideAndWithoutDataNothingIsReadOrWritten) {
  Image image = makeImage(4, 3, 24);
  image.getData().assign(image.getData().size(), 0xFF);
  const std::vector<unsigned char> before = image.getData();
  RGB rgb(1.0f, 1.0f, 1.0f);
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {4, 0}, {0, 3}, {INT32_MAX, INT32_MAX}, {INT32_MIN, 0}}) {
    EXPECT_EQ(0u, image.getPixel(x, y));
    EXPECT_EQ(0, image.setPixel(x, y, 0));
    EXPECT_EQ(0, image.getRGB(x, y, rgb));
    EXPECT_FALSE(image.isPixelTrans(x, y));
  }
  unsigned char row[12] = {};
  EXPECT_EQ(0, image.getRow(3, row));
  EXPECT_EQ(0, image.getRow(0, nullptr));
  EXPECT_EQ(before, image.getData());

  image.getData().resize(30);  // two rows and a half
  EXPECT_EQ(0xFFFFFFu, image.getPixel(1, 2));
  EXPECT_EQ(0, image.setPixel(2, 2, 1));
  EXPECT_EQ(0, image.getRow(2, row));
  image.clearData();
  EXPECT_FALSE(image.validData());
  EXPECT_EQ(0u, image.getPixel(0, 0));
}

TEST(Image, UselessSizesAreRefused) {
  Image image = makeImage(4, 3, 8);
  for (const auto& [w, h, depth] :
       {std::tuple{0, 3, 8}, {4, -1, 8}, {16385, 1, 8}, {1, INT32_MAX, 8}, {4, 3, 0}, {4, 3, 33}, {4, 3, -8}}) {
    EXPECT_EQ(0, image.set(w, h, depth));
  }
  EXPECT_EQ(4, image.getWidth());
  EXPECT_TRUE(image.validData());
  EXPECT_EQ(0, image.setBitsPixel(12));
  EXPECT_EQ(1, image.set(16384, 16384, 32));
  EXPECT_EQ(0, image.allocData());
  EXPECT_EQ(0, image.allocColors(-1));
  EXPECT_EQ(0, image.allocColors(1 << 30));
  EXPECT_EQ(0, image.setValues(nullptr, 3));
}

TEST(Image, IndicesAreLookedUpInTheColourTable) {
  Image image = makeImage(3, 1, 8);
  image.setPixel(0, 0, 1);
  image.setPixel(1, 0, 200);
  EXPECT_EQ(1u, image.getPixel(0, 0));
  ASSERT_EQ(1, image.allocColors(2));
  EXPECT_EQ(1, image.setColor(0, 1.0f, 0.5f, 0.0f));
  EXPECT_EQ(1, image.setColor(1, 2.0f, -1.0f, std::nanf("")));
  EXPECT_EQ(0, image.setColor(2, 1.0f, 1.0f, 1.0f));
  EXPECT_EQ(0xFF7F00u, image.getPixel(2, 0));
  EXPECT_EQ(0xFF0000u, image.getPixel(0, 0));
  EXPECT_EQ(0xFF0000u, image.getPixel(1, 0)) << "the last colour beyond the table";
  EXPECT_EQ(0u, image.getPixel(3, 0)) << "outside there is no index 0";
  RGB rgb;
  EXPECT_EQ(1, image.getRGB(2, 0, rgb));
  EXPECT_FLOAT_EQ(0.5f, rgb.green);
  EXPECT_EQ(0, image.getRGB(2, rgb));
  EXPECT_EQ(1, image.setColorVal(1, 0x336699));
  EXPECT_EQ(0x336699u, image.getColorVal(1));
  EXPECT_FLOAT_EQ(0.4f, image.getGrn(1));

  image.setTransColor(200);
  EXPECT_TRUE(image.isPixelTrans(1, 0));
  EXPECT_FALSE(image.isPixelTrans(0, 0));
}

TEST(Image, GreyAndDirectPixelsGiveTheirColour) {
  RGB rgb;
  Image grey = makeImage(1, 1, 8);
  grey.setColorType(Image::GREY);
  grey.setPixel(0, 0, 51);
  grey.getRGB(0, 0, rgb);
  EXPECT_FLOAT_EQ(0.2f, rgb.red);
  EXPECT_FLOAT_EQ(0.2f, rgb.blue);

  Image direct = makeImage(1, 1, 32);
  direct.setPixel(0, 0, 0xFF336699);
  direct.getRGB(0, 0, rgb);
  EXPECT_FLOAT_EQ(0.2f, rgb.red);
  EXPECT_FLOAT_EQ(0.4f, rgb.green);
  EXPECT_FLOAT_EQ(0.6f, rgb.blue);
  direct.setTransColor(0x336699);
  EXPECT_TRUE(direct.isPixelTrans(0, 0));

  Image masked = makeImage(1, 1, 16);  // 5, 6 and 5 bits
  masked.setColorType(Image::DIRECT);
  masked.setMasks(0xF800, 0x07E0, 0x001F);
  masked.setPixel(0, 0, 0xFBE0);
  masked.getRGB(0, 0, rgb);
  EXPECT_FLOAT_EQ(1.0f, rgb.red);
  EXPECT_FLOAT_EQ(31.0f / 63.0f, rgb.green);
  EXPECT_FLOAT_EQ(0.0f, rgb.blue);
}

TEST(Image, CopiesOwnTheirPixels) {
  Image image = makeImage(2, 2, 8);
  image.allocColors(2);
  image.setInfo("reflectivity");
  image.setPixel(0, 0, 1);
  Image copy = image;
  image.setPixel(0, 0, 0);
  image.allocColors(0);
  EXPECT_EQ(1u, copy.getVal(0, 0));
  EXPECT_EQ(2, copy.getNumColor());

  Image other = makeImage(5, 5, 24);
  EXPECT_EQ(1, other.copyInfo(copy));
  EXPECT_STREQ("reflectivity", other.getInfo());
  EXPECT_EQ(0, other.getNumColor());
  EXPECT_FALSE(other.validData()) << "pixels of another size";
  EXPECT_EQ(1, other.copyData(copy));
  EXPECT_EQ(1u, other.getVal(0, 0));

  copy.init();
  EXPECT_EQ(0, copy.getWidth());
  EXPECT_EQ(-1, copy.getTransColor());
  EXPECT_FALSE(copy.getDomain().isSet());
}

TEST(Image, ValuesAreFoundByIndexAndByPlace) {
  // Cells of one degree: column 0 from 99.5 W (the western edge of the first cell), row 0 the northern one.
  Image image;
  Domain domain("ll:40:-100,40,-100,5,5,1,1");
  ASSERT_EQ(1, image.set(domain, 8));
  ASSERT_EQ(1, image.allocData());
  const float values[] = {0.0f, 10.0f, static_cast<float>(Const::MISS), 40.0f};
  ASSERT_EQ(1, image.setValues(values, 4));
  EXPECT_FLOAT_EQ(10.0f, image.getValue(1));
  EXPECT_FLOAT_EQ(Const::MISS, image.getValue(4));
  EXPECT_EQ(1, image.getIndex(24.0f));
  EXPECT_EQ(3, image.getIndex(1000.0f));
  EXPECT_EQ(Const::MISS, image.getIndex(std::nanf("")));

  const EarthPoint center(40.0f, -100.0f);
  KYV::GridPoint g;
  ASSERT_EQ(1, image.tran(center, g));
  const int x = static_cast<int>(g.x), y = static_cast<int>(g.y);
  image.setPixel(x, y, 3);
  image.setPixel(x + 1, y, 2);   // missing: does not count
  image.setPixel(x - 1, y, 99);  // without a value: neither
  EXPECT_FLOAT_EQ(40.0f, image.getValue(center));
  EXPECT_EQ(3u, image.getPixel(center));
  image.setPixAve(true);
  EXPECT_FLOAT_EQ(40.0f / 7.0f, image.getValue(center));
  EXPECT_FLOAT_EQ(Const::MISS, image.getValue(EarthPoint(0.0f, 0.0f)));
  EXPECT_FLOAT_EQ(Const::MISS, image.getValue(EarthPoint()));
}

TEST(Image, CutoffsAreUpToFourRisingLevels) {
  Image image;
  EXPECT_EQ(1, image.setCutoff("10:20:30:40"));
  for (const char* bad : {"", "1:2:3:4:5", "5:5", "9:8", "-1:4", "12x", "1:256", "99999999999"}) {
    EXPECT_EQ(0, image.setCutoff(bad)) << bad;
  }
  EXPECT_EQ(0, image.setCutoff(nullptr));
  testing::internal::CaptureStdout();
  image.print();
  const std::string text = testing::internal::GetCapturedStdout();
  EXPECT_NE(std::string::npos, text.find("Size: 0x0\nResolution: 0.00x0.00\nOffset: 0.00x0.00\nDepth: 0\n")) << text;
  EXPECT_NE(std::string::npos, text.find("Cutoff-base: 10 - 4 10 20 30 40 256 \n")) << text;
}

}  // namespace
