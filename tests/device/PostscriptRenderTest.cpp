#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "KYV/Image.h"
#include "KYV/Points.h"
#include "KYV/Postscript.h"
#include "Scratch.h"

namespace {

// What another interpreter makes of the page. Skipped where Ghostscript is not installed.
class PostscriptRender : public Scratch {
 protected:
  void SetUp() override {
    Scratch::SetUp();
    if (std::system("command -v gs > where.txt 2>&1") != 0) GTEST_SKIP() << "no Ghostscript";
  }
  static std::string run(const std::string& options) {
    const std::string command = "gs -q -dNOPAUSE -dBATCH " + options + " x.ps > said.txt 2>&1";
    const int status = std::system(command.c_str());
    std::string said = readFile("said.txt");
    EXPECT_EQ(0, status) << said;
    EXPECT_FALSE(contains(said, "Error")) << said;
    return said;
  }
  // The page as pixels of one point.
  struct Page {
    int width = 0, height = 0;
    std::string rgb;
    // Of the pixel whose lower left corner is at (x, y), y upward.
    int at(int x, int y) const {
      const std::size_t i = 3 * (static_cast<std::size_t>(height - 1 - y) * static_cast<std::size_t>(width) +
                                 static_cast<std::size_t>(x));
      const auto part = [&](std::size_t k) { return static_cast<unsigned char>(rgb.at(i + k)); };
      return part(0) << 16 | part(1) << 8 | part(2);
    }
  };
  static Page render() {
    run("-sDEVICE=ppmraw -r72 -g792x792 -sOutputFile=page.ppm");
    Page page;
    std::istringstream file(readFile("page.ppm"));
    std::string word;
    std::getline(file, word);
    while (file.peek() == '#') std::getline(file, word);
    int max = 0;
    file >> page.width >> page.height >> max;
    file.get();
    page.rgb.assign(std::istreambuf_iterator<char>(file), {});
    return page;
  }
};

TEST_F(PostscriptRender, ASquareLandsWhereTheOptionsPutIt) {
  struct Case {
    const char* options;
    float x1, y1, x2, y2;  // of the square from 100, 300 to 200, 350
  };
  // Landscape turns (x, y) to (594 - y, x + 18), or (612 - y, x) with EPS; portrait moves by 18 points, with EPS not.
  for (const Case& c :
       {Case{"x.ps", 244.0f, 118.0f, 294.0f, 218.0f}, Case{"x.ps,eps", 262.0f, 100.0f, 312.0f, 200.0f},
        Case{"x.ps,port", 118.0f, 318.0f, 218.0f, 368.0f}, Case{"x.ps,eps,port", 100.0f, 300.0f, 200.0f, 350.0f},
        Case{"x.ps,port,scale=0.5,color", 68.0f, 168.0f, 118.0f, 193.0f}}) {
    SCOPED_TRACE(c.options);
    {
      KYV::Postscript ps;
      ps.setParam(c.options);
      ASSERT_EQ(1, ps.open());
      ps.setClip(0.0f, 0.0f, 756.0f, 576.0f);
      KYV::Points points;
      for (const auto& [x, y] : {std::pair{100.0f, 300.0f}, {200.0f, 300.0f}, {200.0f, 350.0f}, {100.0f, 350.0f}}) {
        points.add(x, y);
      }
      ps.drawFill(3, points);
    }
    const std::string said = run("-sDEVICE=bbox");
    const std::string key = "%%HiResBoundingBox:";
    const std::size_t at = said.find(key);
    ASSERT_NE(said.npos, at) << said;
    std::istringstream box(said.substr(at + key.size()));
    float x1 = 0.0f, y1 = 0.0f, x2 = 0.0f, y2 = 0.0f;
    box >> x1 >> y1 >> x2 >> y2;
    EXPECT_NEAR(c.x1, x1, 0.1f);
    EXPECT_NEAR(c.y1, y1, 0.1f);
    EXPECT_NEAR(c.x2, x2, 0.1f);
    EXPECT_NEAR(c.y2, y2, 0.1f);
  }
}

TEST_F(PostscriptRender, ColoursLinesClipsAndImagesShow) {
  KYV::Image image;
  image.set(100, 100, 24);
  image.allocData();
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 100; ++x) image.setPixel(x, y, y < 50 ? (x < 50 ? 0xFF0000 : 0x00FF00) : 0x0000FF);
  }
  {
    KYV::Postscript ps;
    ps.setParam("x.ps,eps,port,color,lwidth=3");
    ASSERT_EQ(1, ps.open());
    ps.setClip(200.0f, 100.0f, 300.0f, 200.0f);
    ASSERT_EQ(1, ps.drawImage(image, 0.0f, 0.0f));
    ps.setClip(400.0f, 400.0f, 500.0f, 500.0f);
    ps.setColor(1, 0x336699);
    ps.setLineWidth(1, 10.0f);
    ps.drawLine(1, 350.0f, 450.0f, 450.0f, 450.0f);  // begins outside the clip
  }
  const Page page = render();
  ASSERT_EQ(792, page.width);
  EXPECT_EQ(0xFF0000, page.at(220, 180)) << "row 0 of the image is on top";
  EXPECT_EQ(0x00FF00, page.at(280, 180));
  EXPECT_EQ(0x0000FF, page.at(250, 120));
  EXPECT_EQ(0x336699, page.at(440, 446)) << "30 dots are 9.9 points";
  EXPECT_EQ(0xFFFFFF, page.at(440, 456));
  EXPECT_EQ(0xFFFFFF, page.at(390, 450)) << "clipped";
  EXPECT_EQ(0xFFFFFF, page.at(460, 450));
}

TEST_F(PostscriptRender, EveryDashStyleAndGreyImagesRender) {
  KYV::Image image;
  image.set(40, 40, 8);
  image.allocData();
  {
    KYV::Postscript ps;
    ps.setParam("x.ps");
    ASSERT_EQ(1, ps.open());
    ps.message("all styles");
    for (int style = 0; style <= 6; ++style) {
      ps.setLineStyle(1, style);
      for (int cls = 1; cls <= 4; ++cls) ps.drawLine(cls, 0.0f, 0.0f, 300.0f, 200.0f);
    }
    ps.setClip(0.0f, 0.0f, 80.0f, 80.0f);
    ps.drawImage(image, -5.0f, 3.0f);
  }
  run("-sDEVICE=nullpage");
}

TEST_F(PostscriptRender, EachFrameIsAPage) {
  for (const char* options : {"x.ps", "x.ps,port,color", "x.ps,eps,port"}) {
    SCOPED_TRACE(options);
    {
      KYV::Postscript ps;
      ps.setParam(options);
      ASSERT_EQ(1, ps.open());
      ps.setClip(100.0f, 100.0f, 300.0f, 300.0f);  // holds for all frames
      for (int frame = 0; frame < 3; ++frame) {
        ps.newFrame(-1);
        const float x = 150.0f + 50.0f * static_cast<float>(frame);
        KYV::Points points;
        for (const auto& [dx, dy] : {std::pair{0.0f, 0.0f}, {20.0f, 0.0f}, {20.0f, 400.0f}, {0.0f, 400.0f}}) {
          points.add(x + dx, 200.0f + dy);
        }
        ps.drawFill(3, points);
      }
    }
    std::istringstream said(run("-sDEVICE=bbox"));
    std::vector<float> sizes, places;
    std::string word;
    while (said >> word) {
      if (word != "%%HiResBoundingBox:") continue;
      float x1 = 0.0f, y1 = 0.0f, x2 = 0.0f, y2 = 0.0f;
      said >> x1 >> y1 >> x2 >> y2;
      sizes.push_back(x2 - x1 + y2 - y1);
      places.push_back(x1 + y1);
    }
    // The bar is cut at 300.1, and each page shows its own.
    ASSERT_EQ(3u, sizes.size());
    for (const float size : sizes) EXPECT_NEAR(120.1f, size, 0.1f);
    EXPECT_NEAR(50.0f, places[1] - places[0], 0.1f);
    EXPECT_NEAR(50.0f, places[2] - places[1], 0.1f);
    const std::string text = readFile("x.ps");
    EXPECT_TRUE(contains(text, "%%Page: 3 3\n"));
    EXPECT_TRUE(contains(text, "%%Pages: 3\n"));
  }
}

}  // namespace
