#include "KYV/Raster.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "../../lib/device/RasterPaint.h"
#include "KYV/Points.h"

using KYV::Device;
using KYV::Image;
using KYV::Points;
using KYV::Raster;
using KYV::RasterPaint;

namespace {

constexpr int RED = 0xFF0000;
constexpr int BLUE = 0x0000FF;

Points path(std::initializer_list<std::pair<float, float>> list) {
  Points points;
  for (const auto& [x, y] : list) points.add(x, y);
  return points;
}

// The picture as rows of characters: '.' ground, '#' red, 'o' anything else.
std::vector<std::string> rows(Raster& raster) {
  Image image;
  EXPECT_EQ(1, raster.getImage(image));
  std::vector<std::string> list;
  for (int y = 0; y < image.getHeight(); ++y) {
    std::string row;
    for (int x = 0; x < image.getWidth(); ++x) {
      const std::uint32_t color = image.getPixel(x, y);
      row += color == 0 ? '.' : color == RED ? '#' : 'o';
    }
    list.push_back(row);
  }
  return list;
}

class RasterTest : public testing::Test {
 protected:
  void open(float w, float h) {
    EXPECT_EQ(1, raster.setSize(w, h));
    ASSERT_EQ(1, raster.open());
    for (const int cls : {Device::LINE, Device::MARKER, Device::FILL, Device::TEXT}) raster.setColor(cls, RED);
  }
  Raster raster;
};

TEST_F(RasterTest, LinesFillsPatternsAndClips) {
  open(10, 6);
  raster.setClip(1, 1, 8, 4);
  raster.drawFill(Device::FILL, path({{2, 0}, {6, 0}, {6, 3}, {2, 3}}));
  EXPECT_EQ(
      (std::vector<std::string>{"..........", "..#####...", "..#####...", "..#####...", "..........", ".........."}),
      rows(raster));
  raster.clear();
  raster.drawLine(Device::LINE, 0, 0, 9, 5);
  EXPECT_EQ(
      (std::vector<std::string>{"..........", ".##.......", "...##.....", ".....##...", ".......##.", ".........."}),
      rows(raster));
  raster.clear();
  raster.setClip(0, 0, 9, 5);
  raster.setFillStyle(Device::FILL, 1);
  raster.drawFill(Device::FILL, path({{0, 0}, {3, 0}, {3, 2}, {0, 2}}));
  EXPECT_EQ(".#.#......", rows(raster)[0]);
  EXPECT_EQ("#.#.......", rows(raster)[1]);
  raster.clear();
  raster.setFillStyle(Device::FILL, Device::CLEAR);
  raster.drawFill(Device::FILL, path({{0, 0}, {9, 0}, {9, 5}, {0, 5}}));
  EXPECT_EQ("..........", rows(raster)[3]);
  raster.setLineStyle(Device::LINE, Device::DASH);
  raster.drawLine(Device::LINE, 0, 0, 9, 0);
  EXPECT_EQ("######....", rows(raster)[0]);
  raster.setLineStyle(Device::LINE, Device::SOLID);
  raster.setLineWidth(Device::LINE, 3);
  raster.drawLine(Device::LINE, path({{0, 3}, {9, 3}}));
  EXPECT_EQ(
      (std::vector<std::string>{"..........", "#########.", "#########.", "#########.", ".........."}),
      (std::vector<std::string>{rows(raster)[1], rows(raster)[2], rows(raster)[3], rows(raster)[4], rows(raster)[5]}));
  raster.clearRect(KYV::Rect(2, 2, 4, 9));
  EXPECT_EQ("##...####.", rows(raster)[3]);
  const float bad = std::numeric_limits<float>::quiet_NaN(), far = 1e30f;
  EXPECT_EQ(0, raster.drawLine(Device::LINE, 0, 0, bad, 1));
  EXPECT_EQ(0, raster.drawFill(Device::FILL, path({{0, 0}, {1, bad}, {2, 2}})));
  EXPECT_EQ(1, raster.drawLine(Device::LINE, -far, -far, far, far));
  EXPECT_EQ(1, raster.drawFill(Device::FILL, path({{-far, -far}, {far, -far}, {far, far}, {-far, far}})));
}

// The quick way of convex polygons against the plain one: pixels whose centre is inside by the even-odd rule, and the
// lines of the outline.
TEST_F(RasterTest, QuickFillsAreFillsWithTheirOutline) {
  constexpr int SIZE = 40;
  std::mt19937 random(7);
  std::uniform_int_distribution<int> place(-6, SIZE + 6), small(0, 5);
  for (int round = 0; round < 20000; ++round) {
    std::vector<RasterPaint::Pixel> points;
    const int x = place(random), y = place(random);
    const bool cell = round % 4 != 0;
    for (int i = 0; i < 4; ++i) {
      points.push_back(cell ? RasterPaint::Pixel{x + small(random), y + small(random)}
                            : RasterPaint::Pixel{place(random), place(random)});
    }
    std::vector<unsigned char> quick(SIZE * SIZE), plain(SIZE * SIZE);
    RasterPaint paint;
    paint.setClip({1, 1, SIZE - 2, SIZE - 2});
    paint.setInk(1);
    paint.setTarget(quick.data(), SIZE, SIZE, 1);
    paint.fill(points);
    paint.setTarget(plain.data(), SIZE, SIZE, 1);
    for (int py = 1; py < SIZE - 1; ++py) {
      for (int px = 1; px < SIZE - 1; ++px) {
        bool inside = false;
        for (std::size_t i = 0; i < 4; ++i) {
          const auto &a = points[i], &b = points[(i + 1) % 4];
          if ((a.y <= py) == (b.y <= py)) continue;
          const double at = a.x + static_cast<double>(b.x - a.x) * (py - a.y) / (b.y - a.y);
          if (at <= px) inside = !inside;
        }
        if (inside) plain[static_cast<std::size_t>(py * SIZE + px)] = 1;
      }
    }
    for (std::size_t i = 0; i < 4; ++i) {
      const RasterPaint::Pixel edge[] = {points[i], points[(i + 1) % 4]};
      paint.line(edge, 1, {}, false);
    }
    ASSERT_EQ(plain, quick) << "round " << round;
  }
}

TEST_F(RasterTest, PicturesAreIndexedUntilColoursRunOut) {
  open(300, 4);
  Image image;
  for (int i = 0; i < 300; ++i) {
    raster.setColor(Device::LINE, 0x010000 + i);
    raster.drawLine(Device::LINE, static_cast<float>(i), 1, static_cast<float>(i), 2);
    if (i == 254) {
      raster.getImage(image);
      EXPECT_EQ(Image::INDEXED, image.getColorType());
      EXPECT_EQ(256, image.getNumColor());
    }
  }
  raster.getImage(image);
  EXPECT_EQ(Image::DIRECT, image.getColorType());
  for (int i = 0; i < 300; ++i) EXPECT_EQ(0x010000u + static_cast<unsigned>(i), image.getPixel(i, 1));
  EXPECT_EQ(0u, image.getPixel(5, 0));
}

TEST_F(RasterTest, FramesAreKeptAndShown) {
  open(4, 1);
  EXPECT_EQ(0, raster.newFrame());
  raster.drawLine(Device::LINE, 0, 0, 0, 0);
  EXPECT_EQ(1, raster.newFrame());
  raster.setColor(Device::LINE, BLUE);
  raster.drawLine(Device::LINE, 1, 0, 1, 0);
  EXPECT_EQ("#...", rows(raster)[0]);
  raster.displayFrame(-1);
  EXPECT_EQ(".o..", rows(raster)[0]);
  EXPECT_EQ(0, raster.incFrame(0));
  EXPECT_EQ(1, raster.incFrame(-1));
  raster.copyFrame(0, 1);
  raster.clearFrame(1);
  EXPECT_EQ("....", rows(raster)[0]);
  raster.deleteFrame(1);
  EXPECT_EQ(".o..", rows(raster)[0]);
  EXPECT_EQ(1, raster.getNumFrames());
}

TEST_F(RasterTest, ImagesLieBesideTheirPlace) {
  Image image;
  image.set(2, 2, 8);
  image.allocData();
  image.allocColors(2);
  image.setColorVal(1, RED);
  image.setPixel(0, 0, 1);
  image.setPixel(1, 1, 1);
  image.setTransColor(0);
  open(6, 4);
  raster.drawImage(image, 1, 1);
  EXPECT_EQ((std::vector<std::string>{"......", ".#....", "..#...", "......"}), rows(raster));
  raster.clear();
  raster.setImageAlign(3, 1);
  raster.drawImage(image, 4, 3);
  EXPECT_EQ((std::vector<std::string>{"......", "..#...", "...#..", "......"}), rows(raster));
}

TEST_F(RasterTest, PicturesAreBlendedWithWhatIsThere) {
  Image image;
  image.set(3, 1, 24);
  image.setByteOrder(1);
  image.setColorType(Image::DIRECT);
  ASSERT_TRUE(image.allocData() && image.allocAlpha());
  const int seen[] = {0, 51, 255};
  for (int x = 0; x < 3; ++x) {
    image.setPixel(x, 0, 0x0000FF);
    image.setAlpha(x, 0, seen[x]);
  }
  open(3, 1);
  raster.setColor(Device::FILL, RED);
  raster.drawFill(Device::FILL, path({{0, 0}, {2, 0}, {2, 0}, {0, 0}}));
  raster.drawImage(image, 0, 0);
  Image result;
  raster.getImage(result);
  EXPECT_EQ(0xFF0000u, result.getPixel(0, 0));
  EXPECT_EQ(0xCC0033u, result.getPixel(1, 0)) << "a fifth of blue";
  EXPECT_EQ(0x0000FFu, result.getPixel(2, 0));
}

// Filled by even and odd, as the window fills: what an outline goes around twice stays open.
TEST_F(RasterTest, StarsHaveAHole) {
  open(101, 101);
  raster.setColor(Device::FILL, RED);
  Points star;
  for (int i = 0; i <= 5; ++i) {
    const double angle = 2.0 * 3.14159265358979 * (2 * i % 5) / 5.0;
    star.add(50.0f + 48.0f * static_cast<float>(std::sin(angle)), 50.0f - 48.0f * static_cast<float>(std::cos(angle)));
  }
  raster.drawFill(Device::FILL, star);
  const std::vector<std::string> picture = rows(raster);
  EXPECT_EQ('.', picture[50][50]);
  EXPECT_EQ('#', picture[15][50]) << "a point of the star";
}

TEST_F(RasterTest, SizesAndGrounds) {
  for (const auto& [w, h] : {std::pair{0.0f, 5.0f}, {16385.0f, 5.0f}, {std::nanf(""), 5.0f}, {-3.0f, 5.0f}}) {
    Raster other;
    other.setSize(30.0f, 20.0f);
    testing::internal::CaptureStderr();
    EXPECT_EQ(0, other.setSize(w, h));
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, said.find("16384 x 16384 are; 30 x 20 is used")) << said;
    EXPECT_EQ(1, other.open());
    EXPECT_EQ(30.0f, other.getWidth()) << "as it was";
  }
  struct Case {
    const char* color;
    bool inverse;
    unsigned shown;
  };
  for (const Case& c :
       {Case{"", false, 0}, Case{"", true, 0xFFFFFF}, Case{"#f80", false, 0xFF8800}, Case{"#102030", true, 0x102030},
        Case{"white", false, 0xFFFFFF}, Case{"def", false, 0}, Case{"#12345", false, 0}}) {
    Raster other;
    other.setInverse(c.inverse);
    other.setBackground(c.color);
    other.open();
    Image image;
    other.getImage(image);
    EXPECT_EQ(c.shown, image.getPixel(600, 500)) << c.color;
  }
}

}  // namespace
