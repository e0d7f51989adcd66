#include "KYV/MetaFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

#include "KYV/Image.h"
#include "KYV/Points.h"
#include "Scratch.h"

using KYV::Device;
using KYV::MetaFile;

namespace {

class MetaFileTest : public Scratch {
 protected:
  void SetUp() override {
    Scratch::SetUp();
    setenv("SOURCE_DATE_EPOCH", "0", 1);
  }
  void TearDown() override {
    unsetenv("SOURCE_DATE_EPOCH");
    Scratch::TearDown();
  }
  // The records between the header and the end.
  template <class Draw>
  static std::string drawn(const char* options, Draw draw) {
    MetaFile meta;
    meta.setParam(options);
    EXPECT_EQ(1, meta.open());
    draw(meta);
    EXPECT_EQ(1, meta.close());
    const std::string text = readFile("x.kyv"), begin = "#KYV Plot: KYV Plot\n", end = "#End of plot\n";
    const std::size_t from = text.rfind(begin);
    EXPECT_NE(text.npos, from) << text;
    EXPECT_TRUE(text.ends_with(end));
    return text.substr(from + begin.size(), text.size() - end.size() - from - begin.size());
  }
};

TEST_F(MetaFileTest, HeaderTellsSizeAndTitle) {
  drawn("x.kyv,sz=900x600", [](MetaFile&) {});
  EXPECT_EQ(
      "KYVMETA2\n#Title: KYV Graphics Display\n#Creator: KYV MetaFile Processor-2.0\n"
      "#CreationDate: 70 JAN 01  00:00:00Z\n#Begin plot\nSZ 900.000000 600.000000\n#KYV Plot: KYV Plot\n#End of plot\n",
      readFile("x.kyv"));
  drawn("+x.kyv", [](MetaFile&) {});
  const std::string twice = readFile("x.kyv");
  EXPECT_NE(twice.npos, twice.find("#End of plot\nKYVMETA2\n"));
  EXPECT_NE(twice.npos, twice.find("SZ 1.000000 1.000000\n"));
}

TEST_F(MetaFileTest, TheFirstTokenThatIsNoOptionNamesTheFile) {
  for (const char* options : {"x.kyv", ",x.kyv", "sz=2x3,x.kyv,other", "other,file=x.kyv", "hfont,x.kyv,sz=0x1"}) {
    SCOPED_TRACE(options);
    std::filesystem::remove("x.kyv");
    drawn(options, [](MetaFile&) {});
    EXPECT_TRUE(std::filesystem::exists("x.kyv"));
  }
}

TEST_F(MetaFileTest, RecordsFollowTheCalls) {
  KYV::Points points;
  for (const auto& [x, y] : {std::pair{1.0f, 2.0f}, {3.5f, 4.0f}, {5.0f, -6.25f}}) points.add(x, y);
  KYV::Image image;
  image.set(1, 1, 24);
  image.allocData();
  image.setPixel(0, 0, 0x102030);
  const std::string text = drawn("x.kyv,sz=10x10", [&](MetaFile& m) {
    m.newFrame(-1);
    m.setColor(Device::LINE, 255);
    m.setColor(Device::LINE, 255);
    m.setColor(Device::FILL, 0xFFFFFF);  // as it is
    m.setLineWidth(Device::LINE, 2.0f);
    m.setLineWidth(Device::LINE, 0.0f);
    m.setLineWidth(Device::FILL, 7.0f);  // fills have none
    m.setLineStyle(Device::LINE, Device::DOT);
    m.setLineStyle(Device::TEXT, Device::DOT);
    m.setFillStyle(Device::FILL, 3);
    m.setFont("a\nb");
    m.setTextAlign(2, 1);
    m.setImageAlign(1, 3);
    m.message("said");
    m.drawLine(Device::LINE, 0, 0, 1.5f, 2);
    m.drawLine(Device::TEXT, points);
    m.newFrame(-1);
    m.drawFill(Device::FILL, points);
    m.drawText(KYV::Point(7, 8), "two\twords");
    m.setClip(1, 2, 3, 4);
    m.drawImage(image, 0, 0);
    EXPECT_EQ(0, m.drawLine(Device::LINE, 0, 0, std::numeric_limits<float>::quiet_NaN(), 0));
  });
  EXPECT_EQ(
      "#Frame 1\nLCLR 255\nLWID 2.00\nLWID 1.00\nLSTY 5\nFSTY 3\nFONT a b\nTALIGN 2 1\nIALIGN 1 3\n#said\n"
      "L 2 0.000000,0.000000 1.500000,2.000000\n"
      "L 3 1.000000,2.000000 3.500000,4.000000 5.000000,-6.250000 \n"
      "#Frame 2\nF 3 1.000000,2.000000 3.500000,4.000000 5.000000,-6.250000 \n"
      "T 7.000000,8.000000 two words\n"
      "CL 1.000000 2.000000 3.000000 4.000000\n"
      "I\n1 2 translate\n2 2 scale\n102030FFFFFF\nFFFFFFFFFFFF\ngrestore\n",
      text);
}

}  // namespace
