// Whole runs that draw pictures, and the other devices beside them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "KYV/Image.h"
#include "KYV/ImageFile.h"
#include "NidsBuilder.h"
#include "Program.h"
#include "XServer.h"

namespace {

constexpr float LAT = 35.333f;
constexpr float LON = -97.278f;
constexpr std::uint32_t BLACK = 0x000000;
constexpr std::uint32_t YELLOW = 0xFFF014;  // 40 dBZ in kyv.clr

// A ring of 40 dBZ from 100 to 120 km, with a hole in the east.
std::vector<unsigned char> ring() {
  std::vector<int> levels = {0x8000};
  for (int i = 1; i < 16; ++i) levels.push_back(5 * i);
  NidsBuilder b;
  b.header(19, 9).location(LAT, LON).thresholds(levels).param(3, 5).radials(230);
  for (int i = 0; i < 360; ++i) {
    const int level = i >= 80 && i < 100 ? 0 : 8;
    b.radial(static_cast<float>(i), 1.0f, std::vector<NidsBuilder::Run>{{100, 0}, {20, level}});
  }
  return b.bytes();
}

class PictureRun : public testing::Test {
 protected:
  PictureRun() { program.write("ring.nids", ring()); }
  std::string run(const std::string& options, const std::string& environment = "SOURCE_DATE_EPOCH=1700000000") {
    const Program::Result r = program.run(options + " ring.nids", environment);
    EXPECT_EQ(0, r.status) << r.output;
    return r.output;
  }
  KYV::Image read(const std::string& name) {
    KYV::Image image;
    KYV::ImageFile file;
    EXPECT_EQ(1, file.read(program.path(name).c_str(), image)) << name;
    return image;
  }
  // The colour at so many degrees and km from the radar, through the picture's own map.
  static std::uint32_t colorAt(const KYV::Image& image, double degrees, double km) {
    const double angle = degrees * 3.14159265358979 / 180.0;
    KYV::EarthPoint e;
    e.lat = LAT + static_cast<float>(km * std::cos(angle) / 111.2);
    e.lon = LON + static_cast<float>(km * std::sin(angle) / (111.2 * std::cos(e.lat * 3.14159265358979 / 180.0)));
    return image.getPixel(e);
  }
  static int countDifferent(const KYV::Image& a, const KYV::Image& b) {
    EXPECT_EQ(a.getWidth(), b.getWidth());
    EXPECT_EQ(a.getHeight(), b.getHeight());
    int different = 0;
    for (int y = 0; y < a.getHeight(); ++y) {
      for (int x = 0; x < a.getWidth(); ++x) different += a.getPixel(x, y) != b.getPixel(x, y);
    }
    return different;
  }
  long count(const std::string& name, const std::string& what) {
    const std::string text = program.read(name);
    long n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
  }

  Program program;
};

TEST_F(PictureRun, EveryPixelHasItsPlaceOnTheMap) {
  for (const char* name : {"map.png", "map.gif"}) {
    SCOPED_TRACE(name);
    const std::string said = run("-dr=-map -ge 900x600 -ou " + std::string(name));
    EXPECT_NE(std::string::npos,
              said.find(std::string("Created ") + (name[4] == 'p' ? "PNG" : "GIF") + " file: " + name));
    const KYV::Image image = read(name);
    EXPECT_EQ(900, image.getWidth());
    EXPECT_EQ(600, image.getHeight());
    EXPECT_EQ(KYV::Image::INDEXED, image.getColorType());
    for (const double degrees : {0.0, 45.0, 135.0, 200.0, 290.0}) {
      SCOPED_TRACE(degrees);
      for (const double km : {104.0, 116.0}) EXPECT_EQ(YELLOW, colorAt(image, degrees, km));
      for (const double km : {50.0, 96.0, 124.0}) EXPECT_EQ(BLACK, colorAt(image, degrees, km));
    }
    EXPECT_EQ(BLACK, colorAt(image, 90.0, 110.0));
    EXPECT_NE(nullptr, std::strstr(image.getInfo(), "Base reflectivity"));
    EXPECT_NE('\0', image.getDatim()[0]);
  }
  // The same plot, the same pixels; the same options, the same bytes.
  EXPECT_EQ(0, countDifferent(read("map.png"), read("map.gif")));
  for (const char* name : {"map.png", "map.gif"}) {
    const std::string before = program.read(name);
    run("-dr=-map -ge 900x600 -ou " + std::string(name));
    EXPECT_TRUE(before == program.read(name)) << name;
  }
}

TEST_F(PictureRun, APictureLiesWhereItsOwnMapDoes) {
  run("-ou back.png -ge 900x600 -dr=-map,-text,-bord -pd ll,35.3,-97.3,61,41,0.1,0.1");
  for (const char* options :
       {"-ou over.png -ge 700x500", "-ou over.png -ge 300x300 -pd lc:90:-90:33:45,35.3,-97.3,40,30,0.1"}) {
    SCOPED_TRACE(options);
    run(std::string(options) + " -dr=-plot,-text,-bord -mf=-back.png");
    const KYV::Image image = read("over.png");
    for (const double degrees : {0.0, 45.0, 135.0, 200.0, 290.0}) {
      EXPECT_EQ(YELLOW, colorAt(image, degrees, 110.0)) << degrees;
      EXPECT_EQ(BLACK, colorAt(image, degrees, 80.0)) << degrees;
    }
    EXPECT_EQ(BLACK, colorAt(image, 90.0, 110.0));
  }
}

TEST_F(PictureRun, LogosOnPaperCoverTheirOwnPlace) {
  run("-ou logo.png -ge 40x30 -dr=none");
  run("-de postscript,map.ps,color -lo if:logo.png:ll,im:logo.png:ur -dr=-map");
  EXPECT_EQ(2, count("map.ps", "\n40 30 scale\n"));
  EXPECT_EQ(2, count("map.ps", "/picstr 40 string def\n"));
}

TEST_F(PictureRun, OptionsOfPictures) {
  run("-ou png:plain -ti 'My map' -iv yes");
  const KYV::Image image = read("plain");
  EXPECT_EQ(640, image.getWidth());
  EXPECT_EQ(512, image.getHeight());
  EXPECT_STREQ("My map", image.getInfo());
  EXPECT_EQ(0xFFFFFFu, image.getPixel(2, 2));

  run("-ou clear.png -pa trans_col=black");
  const KYV::Image clear = read("clear.png");
  EXPECT_TRUE(clear.isPixelTrans(2, 2));
  run("-ou full.png -pa full");
  EXPECT_EQ(YELLOW, colorAt(read("full.png"), 0.0, 110.0));
  run("-ou sub.png -ip pictures");
  EXPECT_EQ(640, read("pictures/sub.png").getWidth());

  EXPECT_NE(std::string::npos, run("-ou map.jpg").find("map.jpg is no picture"));
  EXPECT_NE(std::string::npos, run("-ge 17000x10 -ou large.png").find("16384 x 16384 are; 640 x 512 is used"));
  EXPECT_EQ(640, read("large.png").getWidth());
}

TEST_F(PictureRun, AFileDeviceAndAPictureTogether) {
  run("-de postscript,map.ps,color -ou map.png");
  const long cells = count("map.ps", "%%FA:");
  EXPECT_GT(cells, 6800);
  EXPECT_EQ(YELLOW, colorAt(read("map.png"), 0.0, 110.0));
  // All devices are given the same polygons.
  run("-de meta,map.kyv -ou map.gif");
  EXPECT_EQ(cells, count("map.kyv", "\nF "));
  EXPECT_EQ(YELLOW, colorAt(read("map.gif"), 0.0, 110.0));
  run("-de hpgl,map.hp,a4");
  EXPECT_EQ(cells, count("map.hp", "FP;\n"));
}

TEST_F(PictureRun, FramesBecomeAnAnimationOrNumberedFiles) {
  run("-ou loop.gif ring.nids ring.nids");
  EXPECT_EQ(1, count("loop.gif", "NETSCAPE2.0"));
  EXPECT_EQ(3, count("loop.gif", std::string("\x21\xF9\x04\x04", 4)));
  run("-ou one.gif");
  EXPECT_EQ(0, countDifferent(read("one.gif"), read("loop.gif"))) << "the first frame";
  EXPECT_FALSE(std::filesystem::exists(program.path("loop.gif.part")));
  run("-ou loop.png ring.nids");
  EXPECT_EQ(YELLOW, colorAt(read("loop-00.png"), 0.0, 110.0));
  EXPECT_EQ(YELLOW, colorAt(read("loop-01.png"), 0.0, 110.0));
  EXPECT_FALSE(std::filesystem::exists(program.path("loop-02.png")));
}

TEST_F(PictureRun, ADisplayThatDoesNotAnswerIsToldOf) {
  const std::string message = "XWindow: unable to connect to display\n";
  EXPECT_NE(std::string::npos, run("-de display,:987 -ou a.png").find(message));
  EXPECT_EQ(640, read("a.png").getWidth());
  EXPECT_EQ(std::string::npos, run("-ou b.png").find(message));
  EXPECT_TRUE(program.read("a.png") == program.read("b.png"));
  const std::string said = run("");
  EXPECT_NE(std::string::npos, said.find(message));
  EXPECT_NE(std::string::npos, said.find("-ou map.png"));
}

TEST_F(PictureRun, TheWindowShowsThePictureThatIsPaintedInMemory) {
  const XServer server;
  if (server.getDisplay().empty()) GTEST_SKIP() << "no Xvfb";
  const std::string said = run("-ge 20000x300 -ou window.png -de display," + server.getDisplay());
  EXPECT_NE(std::string::npos, said.find("XWindow: a size of 20000 x 300 pixels is not possible")) << said;
  for (const char* options : {"-dr plot", "-dr plot -ge 900x600 -pd KOKC,0.05", "-iv yes"}) {
    SCOPED_TRACE(options);
    run(std::string("-ou window.png -de display,") + server.getDisplay() + " " + options);
    run(std::string("-ou memory.png ") + options);
    const KYV::Image window = read("window.png");
    // Lines of width 1 end a pixel sooner or later.
    EXPECT_LT(countDifferent(window, read("memory.png")), window.getWidth() * window.getHeight() / 1000);
  }
}

TEST_F(PictureRun, LogosLieWhereTheyAreAskedFor) {
  run("-ge 100x80 -ou logo.png -dr none");
  // A small picture of one colour stands for a logo: the plain ground, 100 by 80.
  run("-ou page.png -dr none -iv yes -lo if:logo.png:ll");
  const KYV::Image page = read("page.png");
  EXPECT_EQ(BLACK, page.getPixel(50, 500));
  EXPECT_EQ(0xFFFFFFu, page.getPixel(120, 500));
  EXPECT_EQ(0xFFFFFFu, page.getPixel(50, 420));
  EXPECT_NE(std::string::npos, run("-ou page.png -lo missing.png").find("Logo not found: missing.png\n"));
}

}  // namespace
