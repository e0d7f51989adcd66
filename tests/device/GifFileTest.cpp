#include "KYV/GifFile.h"

#include <gtest/gtest.h>
#include <cstdint>
#include <random>
#include <set>
#include <vector>

#include "KYV/Image.h"
#include "KYV/Kyv.h"
#include "Scratch.h"

using KYV::GifFile;
using KYV::Image;

namespace {

using Pattern = std::uint32_t (*)(int x, int y);

std::uint32_t flat(int, int) { return 0; }
std::uint32_t stripes(int x, int y) { return static_cast<std::uint32_t>(x / 3 + y) % 3; }
std::uint32_t rings(int x, int y) { return static_cast<std::uint32_t>(x * x + y * y) / 700 % 20; }
std::uint32_t noise(int x, int y) { return static_cast<std::uint32_t>((x * 7919 + y * 104729) * 31 >> 4) & 0xFF; }

Image makeImage(int w, int h, int depth, int colors, Pattern pattern) {
  Image image;
  image.set(w, h, depth);
  image.allocData();
  image.allocColors(colors);
  for (int i = 0; i < colors; ++i) image.setColorVal(i, static_cast<std::uint32_t>(i) * 0x0A0B0Cu & 0xFFFFFF);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) image.setPixel(x, y, pattern(x, y));
  }
  return image;
}

int write(const char* name, const Image& image, int interlace = 0) {
  GifFile gif;
  gif.setInterlace(interlace);
  return gif.open(name, GifFile::WRITE) && gif.write(image) && gif.close();
}

int read(const char* name, Image& image) {
  GifFile gif;
  return gif.open(name, GifFile::READ) && gif.read(image);
}

bool samePixels(const Image& a, const Image& b) {
  if (a.getWidth() != b.getWidth() || a.getHeight() != b.getHeight()) return false;
  for (int y = 0; y < a.getHeight(); ++y) {
    for (int x = 0; x < a.getWidth(); ++x) {
      if (a.getPixel(x, y) != b.getPixel(x, y)) return false;
    }
  }
  return true;
}

int run(const std::string& command) { return std::system((command + " 2>/dev/null").c_str()); }

// Packed colours as ImageMagick sees them; transparent pixels are black.
std::vector<std::uint32_t> magick(const std::string& file) {
  run("convert '" + file + "[0]' -background black -alpha remove -depth 8 rgb:magick.rgb");
  const std::string bytes = TempDir::read("magick.rgb");
  std::vector<std::uint32_t> colors;
  for (std::size_t i = 0; i + 2 < bytes.size(); i += 3) {
    std::uint32_t packed = 0;
    for (std::size_t c = 0; c < 3; ++c) packed = packed << 8 | static_cast<unsigned char>(bytes[i + c]);
    colors.push_back(packed);
  }
  return colors;
}

std::vector<std::uint32_t> colorsOf(const Image& image) {
  std::vector<std::uint32_t> colors;
  for (int y = 0; y < image.getHeight(); ++y) {
    for (int x = 0; x < image.getWidth(); ++x) colors.push_back(image.getPixel(x, y));
  }
  return colors;
}

class GifFileTest : public Scratch {
 protected:
  void SetUp() override {
    Scratch::SetUp();
    KYV::Kyv::setMessageLevel("none");
  }
  void TearDown() override {
    KYV::Kyv::setMessageLevel(6);
    Scratch::TearDown();
  }
  static void put(const std::string& name, const std::string& bytes) { std::ofstream(name, std::ios::binary) << bytes; }
};

TEST_F(GifFileTest, EveryByteOfASmallPictureIsKnown) {
  Image image = makeImage(2, 2, 8, 3, [](int, int) { return 1u; });
  image.setInfo("T\nx");
  image.setDatim("D");
  image.setTransColor(2);
  ASSERT_EQ(1, write("a.gif", image, 1));
  using namespace std::string_literals;
  EXPECT_EQ(
      "GIF89a\2\0\2\0\x91\0\0\0\0\0\x0A\x0B\x0C\x14\x16\x18\0\0\0"
      "!\xFE\6ti=T x\0!\xFE\4dt=D\0!\xF9\4\1\x0A\0\2\0"
      // Clear, 1, 6 (1 1), 1 in three bits each and the end in four.
      ",\0\0\0\0\2\0\2\0\x40\2\2\x8C\x53\0;"s,
      readFile("a.gif"));
}

TEST_F(GifFileTest, TablesAreTheNextPowerOfTwo) {
  struct Case {
    int colors, flags, table, codeSize;
  };
  for (const Case& c : {Case{0, 0xF7, 256, 8},
                        {1, 0x80, 2, 2},
                        {2, 0x80, 2, 2},
                        {3, 0x91, 4, 2},
                        {20, 0xC4, 32, 5},
                        {256, 0xF7, 256, 8},
                        {300, 0xF7, 256, 8}}) {
    SCOPED_TRACE(c.colors);
    ASSERT_EQ(1, write("a.gif", makeImage(300, 200, 8, c.colors, c.colors > 20 ? noise : flat)));
    const std::string bytes = readFile("a.gif");
    const std::size_t image = 13 + 3 * static_cast<std::size_t>(c.table) + 2 * 7;  // behind two empty comments
    ASSERT_LT(image + 10, bytes.size());
    EXPECT_EQ(c.flags, static_cast<unsigned char>(bytes[10]));
    EXPECT_EQ(',', bytes[image]);
    EXPECT_EQ(c.codeSize, bytes[image + 10]);
    if (c.colors == 0) {
      EXPECT_EQ("\x7F\x7F\x7F", bytes.substr(13 + 3 * 127, 3));
    }
    std::size_t at = image + 11;
    for (; static_cast<unsigned char>(bytes.at(at)) == 254; at += 255) {
    }
    EXPECT_LT(bytes[at], 254);
    EXPECT_EQ(std::string("\0;", 2), bytes.substr(at + 1 + static_cast<unsigned char>(bytes[at])));
  }
}

TEST_F(GifFileTest, PicturesComeBackAndOtherProgramsSeeThem) {
  struct Case {
    const char* what;
    int w, h, colors;
    Pattern pattern;
  };
  const Case cases[] = {{"one pixel", 1, 1, 1, flat},
                        {"flat", 500, 300, 2, flat},
                        {"three colours", 97, 31, 3, stripes},
                        {"rings", 640, 480, 20, rings},
                        {"noise", 257, 255, 256, noise},
                        {"grey", 64, 64, 0, noise},
                        {"indices beyond the table", 64, 64, 20, noise}};
  const bool others = run("convert -version >/dev/null") == 0 && run("giftext -h >/dev/null") != 127 * 256;
  for (const Case& c : cases) {
    for (const int interlace : {0, 1}) {
      SCOPED_TRACE(std::string(c.what) + (interlace ? " interlaced" : ""));
      Image image = makeImage(c.w, c.h, 8, c.colors, c.pattern);
      ASSERT_EQ(1, write("a.gif", image, interlace));
      Image back;
      ASSERT_EQ(1, read("a.gif", back));
      if (c.colors == 0) {
        image.allocColors(256);
        for (int i = 0; i < 256; ++i) image.setColorVal(i, static_cast<std::uint32_t>(i) * 0x010101u);
      }
      EXPECT_TRUE(samePixels(image, back));
      EXPECT_EQ(-1, back.getTransColor());
      if (!others) continue;
      EXPECT_EQ(0, run("giftext a.gif >/dev/null"));
      if (interlace) {
        EXPECT_EQ(colorsOf(image), magick("a.gif"));
      }
    }
  }
  for (int h = 1; h < 20; ++h) {
    const Image image = makeImage(5, h, 8, 256, noise);
    Image back;
    EXPECT_TRUE(write("a.gif", image, 1) && read("a.gif", back) && samePixels(image, back)) << h;
  }
  if (!others) GTEST_SKIP() << "convert or giftext is not installed: only read back by ourselves";
}

TEST_F(GifFileTest, TitleDateAndMapTravelAlong) {
  Image image = makeImage(25, 17, 8, 4, flat);
  image.setInfo(std::string(200, 'x').c_str());
  image.setDatim("1830Z  1 MAY 24");
  KYV::Domain domain("pstereo:90:-105,40,-100,25,17,1.2,1.2");
  ASSERT_TRUE(domain.isSet());
  image.setDomain(domain);
  ASSERT_EQ(1, write("a.gif", image));
  Image back;
  ASSERT_EQ(1, read("a.gif", back));
  EXPECT_EQ(std::string(79, 'x'), back.getInfo());
  EXPECT_STREQ("1830Z  1 MAY 24", back.getDatim());
  KYV::Date date;
  back.getDate(date);
  EXPECT_EQ(1714588200, date.secs);
  EXPECT_TRUE(KYV::DomainVal::compare(domain, back.getDomain()));

  // Lines of one comment; maps may not name a path.
  struct Case {
    const char* comment;
    const char* info;
    bool map;
  };
  for (const Case& c : {Case{"made elsewhere", "GIF", false},
                        {"x\r\nti=rain \t\r\nproj=ll:40:-100,40,-100,5,5,1,1\n", "rain", true},
                        {"pd=fi:../../secret", "GIF", false},
                        {"pd=id:|touch gone:KTLX", "GIF", false},
                        {"pd=", "GIF", false}}) {
    SCOPED_TRACE(c.comment);
    const std::string text = c.comment;
    put("b.gif", "GIF87a" + std::string("\1\0\1\0\0\0\0!\xFE", 9) + static_cast<char>(text.size()) + text +
                     std::string("\0,\0\0\0\0\1\0\1\0\0\2\2\x44\1\0;", 17));
    ASSERT_EQ(1, read("b.gif", back));
    EXPECT_STREQ(c.info, back.getInfo());
    EXPECT_EQ(c.map, back.getDomain().isSet());
  }
  EXPECT_FALSE(std::filesystem::exists("gone"));
}

TEST_F(GifFileTest, TransparencyIsTheImagesElseTheFiles) {
  for (const auto& [own, set, expected] : {std::tuple{2, 1, 2}, {-1, 1, 1}, {-1, -1, -1}, {9, -1, 9}}) {
    Image image = makeImage(4, 4, 8, 3, stripes);
    image.setPixel(0, 0, 9);
    image.setTransColor(own);
    GifFile gif;
    gif.setTransColor(set);
    ASSERT_TRUE(gif.open("a.gif", GifFile::WRITE) && gif.write(image));
    EXPECT_EQ(0, gif.write(image)) << "a file holds one picture";
    ASSERT_EQ(1, gif.close());
    Image back;
    ASSERT_EQ(1, read("a.gif", back));
    EXPECT_EQ(expected, back.getTransColor());
    EXPECT_EQ(expected == 9 ? 9u : 2u, back.getVal(0, 0));
  }
}

TEST_F(GifFileTest, AnimationsKeepEveryFrame) {
  ASSERT_TRUE(write("a.gif", makeImage(40, 30, 8, 20, rings)) && write("b.gif", makeImage(9, 50, 8, 256, noise), 1));
  GifFile gif;
  EXPECT_EQ(0, gif.setDelay(65536));
  EXPECT_EQ(0, gif.setLoop(-1));
  gif.setDelay(25);
  gif.setLoop(3);
  ASSERT_EQ(1, gif.open("ab.gif", GifFile::WRITE));
  put("text", "no picture");
  EXPECT_EQ(0, gif.write("missing.gif"));
  EXPECT_EQ(0, gif.write("text"));
  EXPECT_EQ(0, gif.write("|cat a.gif"));
  EXPECT_EQ(1, gif.write("a.gif"));
  EXPECT_EQ(1, gif.write("b.gif"));
  EXPECT_EQ(0, gif.write(Image()));
  ASSERT_EQ(1, gif.close());
  // All frames of an animation are appended to another.
  ASSERT_TRUE(gif.open("abab.gif", GifFile::WRITE) && gif.write("ab.gif") && gif.write("ab.gif") && gif.close());

  using namespace std::string_literals;
  const std::string bytes = readFile("ab.gif");
  EXPECT_EQ(readFile("a.gif").substr(0, 13 + 96), bytes.substr(0, 13 + 96));
  EXPECT_EQ("!\xFF\x0BNETSCAPE2.0\3\1\3\0\0!\xF9\4\4\x19\0\0\0,\0\0\0\0\x28\0\x1E\0\x84"s, bytes.substr(13 + 96, 37));
  EXPECT_EQ(';', bytes.back());
  Image back;
  ASSERT_EQ(1, read("abab.gif", back));
  EXPECT_TRUE(samePixels(makeImage(40, 30, 8, 20, rings), back));
  if (run("convert -version >/dev/null") != 0) GTEST_SKIP() << "convert is not installed";
  EXPECT_EQ(0, run("identify -format '%wx%h %T|' abab.gif >frames"));
  EXPECT_EQ("40x30 25|9x50 25|40x30 25|9x50 25|", readFile("frames"));
  run("convert 'abab.gif[3]' +repage second.gif");
  EXPECT_EQ(magick("b.gif"), magick("second.gif"));
}

TEST_F(GifFileTest, FilesOfOtherProgramsAreRead) {
  if (run("convert -size 61x43 plasma:red-blue -colors 200 plain.gif") != 0) GTEST_SKIP() << "convert is not installed";
  run("convert plain.gif -interlace GIF interlaced.gif");
  run("convert plain.gif -repage 100x90+7+9 placed.gif");
  run("convert plain.gif -colors 2 two.gif");
  run("convert \\( plain.gif \\) \\( -size 9x9 plasma: \\) +repage several.gif");
  for (const char* name : {"plain.gif", "interlaced.gif", "placed.gif", "two.gif", "several.gif"}) {
    Image image;
    EXPECT_EQ(1, read(name, image)) << name;
    EXPECT_EQ(61, image.getWidth()) << name;
    run(std::string("convert '") + name + "[0]' +repage alone.gif");
    EXPECT_EQ(magick("alone.gif"), colorsOf(image)) << name;
  }
  Image piped;
  EXPECT_EQ(0, read("|cat interlaced.gif", piped)) << "a list of maps may name a picture, it runs nothing";
}

TEST_F(GifFileTest, DamageKeepsTheRowsBefore) {
  const Image image = makeImage(100, 60, 8, 256, noise);
  for (const int interlace : {0, 1}) {
    ASSERT_EQ(1, write("a.gif", image, interlace));
    const std::string whole = readFile("a.gif");
    int first = 0;
    for (std::size_t n = 0; n < whole.size(); n += n < 850 ? 3 : 97) {
      put("cut.gif", whole.substr(0, n));
      Image back;
      back.setInfo("before");
      if (!read("cut.gif", back)) {
        EXPECT_STREQ("before", back.getInfo());
        EXPECT_EQ(0, first) << n;
        continue;
      }
      if (!first) first = static_cast<int>(n);
      ASSERT_EQ(60, back.getHeight());
      EXPECT_EQ(image.getVal(0, 0), back.getVal(0, 0));
    }
    EXPECT_GT(first, 800);
    put("cut.gif", whole.substr(0, whole.size() - 3));  // without the end code, the terminator and the trailer
    Image back;
    EXPECT_TRUE(read("cut.gif", back) && samePixels(image, back));
  }

  // A code size, then the sub-blocks. With two bits of a pixel: clear 4, end 5, first string 6.
  using namespace std::string_literals;
  struct Case {
    const char* what;
    std::string size, data;
    int height;  // of what is read; 0: nothing
  };
  const Case cases[] = {{"claims far more than it holds", "\0\x40\0\x40"s, "\2\2\x04\x0A\0;"s, 1},
                        {"a size beyond any picture", "\xFF\xFF\xFF\xFF"s, "\2\2\x04\x0A\0;"s, 0},
                        {"no pixels", "\2\0\2\0"s, "\2\0;"s, 0},
                        {"a width of zero", "\0\0\2\0"s, "\2\2\x44\1\0;"s, 0},
                        {"a code size of 12", "\2\0\2\0"s, "\x0C\2\x44\1\0;"s, 0},
                        {"a string before any pixel", "\2\0\2\0"s, "\2\1\x34\0;"s, 0},
                        {"a string that is not there yet", "\2\0\2\0"s, "\2\2\xC4\x01\0;"s, 2},
                        {"more pixels than claimed", "\1\0\1\0"s, "\2\2\x04\x0A\0;"s, 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    put("b.gif", "GIF89a\1\0\1\0\0\0\0,\0\0\0\0"s + c.size + '\0' + c.data);
    Image back;
    EXPECT_EQ(c.height > 0, read("b.gif", back));
    EXPECT_EQ(c.height, back.getHeight());
    EXPECT_LE(back.getData().size(), 16384u);
  }
  EXPECT_EQ(0, write("/dev/full", image));
}

TEST_F(GifFileTest, ColoursAreReducedOnlyWhenThereAreTooMany) {
  struct Case {
    const char* what;
    int depth, colors, type;
    Pattern pattern;
    bool exact;
  };
  const Case cases[] = {
      {"direct, 256 colours", 24, 0, Image::DIRECT, [](int x, int y) { return noise(x, y) * 0x010203u; }, true},
      {"direct, smooth", 32, 0, Image::DIRECT,
       [](int x, int y) { return static_cast<std::uint32_t>(x << 17 | y << 9); }, false},
      {"16 bits, 1000 entries", 16, 1000, Image::INDEXED, [](int x, int y) { return rings(x, y) * 40; }, true},
      {"16 bits, 20 entries", 16, 20, Image::INDEXED, rings, true},
      {"12 bits grey", 12, 0, Image::GREY, [](int x, int) { return static_cast<std::uint32_t>(x * 32); }, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Image image = makeImage(128, 128, c.depth, c.colors, c.pattern);
    image.setColorType(c.type);
    image.setPixel(5, 5, c.pattern(0, 0));
    image.setTransColor(static_cast<int>(c.pattern(0, 0)));
    Image less = image;
    ASSERT_EQ(1, less.reduceColors());
    EXPECT_EQ(8, less.getBitsPixel());
    EXPECT_LE(less.getNumColor(), 256);
    std::set<std::uint32_t> used;
    double error = 0.0;
    for (int y = 0; y < 128; ++y) {
      for (int x = 0; x < 128; ++x) {
        KYV::RGB a, b;
        image.getRGB(x, y, a);
        less.getRGB(x, y, b);
        ASSERT_EQ(image.isPixelTrans(x, y), less.isPixelTrans(x, y)) << x << ' ' << y;
        error = std::max<double>(
            error, std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)}));
        used.insert(less.getVal(x, y));
      }
    }
    // A square of 256 by 256 levels in 255 pieces: 16 levels a side, were they all squares.
    EXPECT_LE(error, c.exact ? 1.01 / 255.0 : 20.0 / 255.0);
    EXPECT_GT(used.size(), c.exact ? 1u : 250u);
    ASSERT_EQ(1, write("a.gif", image));
    Image back;
    ASSERT_EQ(1, read("a.gif", back));
    EXPECT_TRUE(samePixels(less, back));
    EXPECT_EQ(less.getTransColor(), back.getTransColor());

    ASSERT_EQ(1, image.reduceColors(2));
    EXPECT_LE(image.getNumColor(), 2);
  }
  Image empty;
  EXPECT_EQ(0, empty.reduceColors());
  EXPECT_EQ(0, makeImage(2, 2, 24, 0, flat).reduceColors(0));
  EXPECT_EQ(0, write("a.gif", empty));
}

}  // namespace
