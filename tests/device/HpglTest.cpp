#include "KYV/Hpgl.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <sstream>

#include "KYV/Points.h"
#include "Scratch.h"

using KYV::Device;
using KYV::Hpgl;
using KYV::Points;

namespace {

const std::string ESC = "\033";

class HpglTest : public Scratch {
 protected:
  template <class Draw>
  static std::string drawn(const char* options, Draw draw) {
    Hpgl hpgl;
    hpgl.setParam(options);
    EXPECT_EQ(1, hpgl.open());
    draw(hpgl);
    EXPECT_EQ(1, hpgl.close());
    return readFile("x.hp");
  }
};

Points square() {
  Points points;
  for (const auto& [x, y] : {std::pair{10.4f, 20.6f}, {110.0f, 20.0f}, {110.0f, 120.0f}, {10.0f, 120.0f}})
    points.add(x, y);
  return points;
}

TEST_F(HpglTest, OptionsSetFrameAndSize) {
  struct Case {
    const char* options;
    std::string start, end;
    float width, height;
  };
  const std::string in = "IN;SP1;PA;\n", pen = "PW1.0;SV;LT;\n", out = "SP;PG;\n";
  const std::string enter = ESC + "E" + ESC + "%1B" + ESC + "&l1O\n", leave = ESC + "%0A" + ESC + "E";
  const Case CASES[] = {
      {"x.hp", in + pen, out, 756.0f, 576.0f},
      {"x.hp,lj,a4", enter + in + "RO90;\n" + pen, out + leave, 11368.0f, 7917.0f},
      {"x.hp,pcl,ansid,lwidth=0.35", enter + in + "PW0.3;SV;LT;\n", out + leave, 30450.0f, 21822.5f},
      {"x.hp,PORT,sz=2:3", in + "RO90;\n" + pen, out, 2030.0f, 3045.0f},
      {"x.hp,rot=270,roll=10", in + "RO270;\n" + pen, out, 10150.0f, 23345.0f},
      {"x.hp,rot=45,lj,nopcl,sz=x,scale=9", in + pen, out, 756.0f, 576.0f},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.options);
    const std::string text = drawn(c.options, [&](Hpgl& h) {
      EXPECT_FLOAT_EQ(c.width, h.getWidth());
      EXPECT_FLOAT_EQ(c.height, h.getHeight());
    });
    EXPECT_EQ(c.start + c.end, text);
  }
  drawn("x.hp", [](Hpgl&) {});
  const std::string twice = drawn("+x.hp,lj", [](Hpgl&) {});
  EXPECT_EQ(in + pen + out + pen, twice);
}

TEST_F(HpglTest, PrimitivesAreTheInstructionsOfAPlotter) {
  const std::string text = drawn("x.hp,lwidth=2", [](Hpgl& h) {
    h.drawFill(Device::FILL, square());
    h.setLineStyle(Device::LINE, Device::LONG_SHORT_DASH);
    h.setLineWidth(Device::LINE, 1.5f);
    h.drawLine(Device::LINE, 1, 2, 3, 4);
    h.setLineWidth(Device::TEXT, 0.0f);
    h.drawLine(Device::TEXT, square());
    h.setClip(100, 50, 0, 0);
    EXPECT_EQ(0, h.drawLine(Device::LINE, 0, 0, std::numeric_limits<float>::infinity(), 0));
    h.newFrame(-1);
    h.newFrame(-1);
    h.drawLine(Device::MARKER, 5, 5, 6, 6);
  });
  const std::string expected =
      "IN;SP1;PA;\nPW2.0;SV;LT;\n"
      "SV;\nPU10,21;PM0;PD110,20;PD110,120;PD10,120;PM1;PM2;FP;\n"
      "SV;\nPW3.0;\nLT5,8,1;\nPU1,2;PD3,4;"
      "SV;\nLT;\nPW2.0;\nPU10,21;PD110,20;PD110,120;PD10,120;"
      "IW -0,-0,100,50;\n"
      "PG;\nSP1;\n"
      "SV;\nLT;\nPW2.0;\nPU5,5;PD6,6;"
      "SP;PG;\n";
  EXPECT_EQ(expected, text);
}

TEST_F(HpglTest, AnotherProgramPlotsIt) {
  if (std::system("command -v hp2xx > /dev/null 2>&1") != 0) GTEST_SKIP() << "no hp2xx";
  drawn("x.hp,a4", [](Hpgl& h) {
    h.setClip(0, 0, 11368, 7917);
    h.drawLine(Device::LINE, 0, 0, 11368, 7917);  // spreads the picture over the page
    Points points;
    for (const auto& [x, y] : {std::pair{8000.0f, 0.0f}, {11368.0f, 0.0f}, {11368.0f, 3000.0f}, {8000.0f, 3000.0f}}) {
      points.add(x, y);
    }
    h.drawFill(Device::FILL, points);
  });
  ASSERT_EQ(0, std::system("hp2xx -q -m pbm -f x.pbm x.hp > said.txt 2>&1")) << readFile("said.txt");
  std::istringstream file(readFile("x.pbm"));
  std::string word;
  std::size_t width = 0, height = 0;
  file >> word;
  while (file >> std::ws && file.peek() == '#') std::getline(file, word);
  file >> width >> height;
  file.get();
  const std::string bits((std::istreambuf_iterator<char>(file)), {});
  const auto ink = [&](double x, double y) {  // fractions of the page, y upward
    const auto column = static_cast<std::size_t>(x * static_cast<double>(width));
    const auto row = static_cast<std::size_t>((1.0 - y) * static_cast<double>(height));
    return bits.at(row * ((width + 7) / 8) + column / 8) >> (7 - column % 8) & 1;
  };
  EXPECT_EQ(1, ink(0.9, 0.2));
  EXPECT_EQ(0, ink(0.2, 0.8));
  EXPECT_EQ(0, ink(0.9, 0.5));
}

}  // namespace
