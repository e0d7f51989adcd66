#include "KYV/FileDevice.h"

#include <cmath>

#include "KYV/Image.h"
#include "KYV/Points.h"
#include "KYV/Postscript.h"
#include "KYV/String.h"
#include "Scratch.h"

using KYV::Postscript;

namespace {

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

class FileDevice : public Scratch {};

TEST_F(FileDevice, TheNameSaysHowTheFileIsOpened) {
  struct Case {
    const char* what;
    const char* options;
    const char* said;
  };
  for (const Case& c :
       {Case{"created", "a.ps", "Creating: a.ps\n"}, Case{"appended", "+a.ps", "Appending to: a.ps\n"},
        Case{"command", "|cat > piped.ps", "Spooling to: cat > piped.ps\n"}, Case{"no name", "", "Creating: kyv.ps\n"},
        Case{"directories are made", "new/dir/a.ps", "Creating: new/dir/a.ps\n"}}) {
    SCOPED_TRACE(c.what);
    Postscript ps;
    ps.setParam(c.options);
    CaptureStdout();
    EXPECT_EQ(1, ps.open());
    EXPECT_EQ(c.said, GetCapturedStdout());
    EXPECT_EQ(1, ps.close());
    EXPECT_EQ(0, ps.close()) << "once only";
  }
  EXPECT_EQ(readFile("kyv.ps").substr(0, 15), "%!PS-Adobe-1.0\n");
  EXPECT_TRUE(readFile("piped.ps").ends_with("%%EOF\n"));
  // The appended plot begins behind the trailer of the first and has none itself.
  EXPECT_TRUE(contains(readFile("a.ps"), "%%EOF\n%!PS-Adobe-1.0\n"));
  EXPECT_TRUE(readFile("a.ps").ends_with("%%End of plot\n"));
}

TEST_F(FileDevice, StandardOutputHoldsThePlotAlone) {
  CaptureStdout();
  {
    Postscript ps;
    ps.setParam("-");
    EXPECT_EQ(1, ps.open());
  }
  const std::string text = GetCapturedStdout();
  EXPECT_TRUE(text.starts_with("%!PS-Adobe-1.0\n") && text.ends_with("%%EOF\n")) << text;
}

TEST_F(FileDevice, OnlyOpenCreatesTheFileAndTheDestructorClosesIt) {
  {
    Postscript ps;
    ps.setParam("lazy.ps");
    ps.setColor(1, 5);
    EXPECT_EQ(0, ps.drawLine(1, 0.0f, 0.0f, 1.0f, 1.0f));
    EXPECT_EQ(0, ps.close());
    EXPECT_FALSE(std::filesystem::exists("lazy.ps"));
    ASSERT_EQ(1, ps.open());
  }
  EXPECT_TRUE(readFile("lazy.ps").ends_with("%%EOF\n"));
}

TEST_F(FileDevice, AFileThatCannotBeOpenedIsReported) {
  std::filesystem::create_directory("dir");
  constexpr const char* CASES[][2] = {{"dir", "  dir: Is a directory\n"},
                                      {"/dev/null/x.ps", "  /dev/null/x.ps: Not a directory\n"},
                                      {"|", ""},
                                      {"+", ""}};
  for (const auto& [name, reason] : CASES) {
    SCOPED_TRACE(name);
    Postscript ps;
    ps.setParam(name);
    CaptureStderr();
    EXPECT_EQ(0, ps.open());
    EXPECT_EQ(std::string("Postscript: unable to output to file\n") + reason, GetCapturedStderr());
    EXPECT_EQ(0, ps.drawLine(1, 0.0f, 0.0f, 1.0f, 1.0f));
  }
}

TEST_F(FileDevice, AFailedWriteIsReportedOnceWithTheFile) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  for (const char* name : {"/dev/full", "+/dev/full", "|exit 3"}) {
    SCOPED_TRACE(name);
    Postscript ps;
    ps.setParam(name);
    CaptureStderr();
    ASSERT_EQ(1, ps.open());
    KYV::Points points;
    for (int i = 0; i < 20000; ++i) points.add(1.0f, 2.0f);
    EXPECT_EQ(1, ps.drawLine(1, points));
    EXPECT_EQ(0, ps.close());
    const std::string said = GetCapturedStderr();
    EXPECT_TRUE(said.starts_with("Postscript: ")) << said;
    EXPECT_TRUE(contains(said, name[0] == '|' ? "exit 3" : "/dev/full")) << said;
    EXPECT_EQ(1, std::count(said.begin(), said.end(), '\n')) << said;
  }
}

TEST_F(FileDevice, WhatAFileLacksSucceedsWithoutEffect) {
  Postscript ps;
  KYV::Device& device = ps;
  KYV::Image image;
  image.set(3, 3, 8);
  KYV::String name("x");
  ASSERT_EQ(1, device.open());
  device.update();
  const std::string before = readFile("kyv.ps");
  EXPECT_EQ(1, device.getDevice(name));
  EXPECT_STREQ("", name.get());
  EXPECT_EQ(1, device.getImage(image));
  EXPECT_EQ(0, image.getWidth());
  EXPECT_EQ(1, device.newFrame(-1));
  EXPECT_EQ(0, device.getFrame());
  EXPECT_EQ(0, device.getNumFrames());
  EXPECT_FALSE(device.isLooping());
  EXPECT_EQ(1, device.drawText(KYV::Point(1.0f, 1.0f), nullptr));
  EXPECT_EQ(1, device.setFont(nullptr));
  EXPECT_EQ(1, device.setTitle(nullptr));
  EXPECT_EQ(1, device.clear());
  device.update();
  EXPECT_EQ(before, readFile("kyv.ps"));
}

TEST_F(FileDevice, SizesAndOffsetsAreHundredthsOfAnInch) {
  Postscript ps;
  float a = 0.0f, b = 0.0f;
  EXPECT_EQ(1, ps.setSize(800.0f, 1000.0f));
  EXPECT_EQ(1, ps.setOffset(100.0f, 50.0f));
  ps.getOffset(a, b);
  EXPECT_FLOAT_EQ(72.0f, a);
  EXPECT_FLOAT_EQ(36.0f, b);
  for (const float bad : {0.0f, -1.0f, 1e30f, std::nanf("")}) {
    EXPECT_EQ(0, ps.setSize(bad, 100.0f));
    EXPECT_EQ(0, ps.setSize(100.0f, bad));
  }
  ps.getSize(a, b);
  EXPECT_FLOAT_EQ(576.0f, a);
  EXPECT_FLOAT_EQ(720.0f, b);
  const KYV::Rect r = ps.getCoords();
  EXPECT_FLOAT_EQ(720.0f, r.ymin);
  EXPECT_FLOAT_EQ(576.0f, r.xmax);
  EXPECT_FLOAT_EQ(0.0f, r.ymax);
}

TEST_F(FileDevice, ColoursArePackedAndHeldInRange) {
  Postscript ps;
  EXPECT_EQ(16744192, ps.allocColor(1.0f, 0.5f, 0.0f));
  EXPECT_EQ(0xFF0000, ps.allocColor(1e30f, -1.0f, std::nanf("")));
  EXPECT_EQ(0, ps.setColor(0, 1));
  EXPECT_EQ(0, ps.setColor(5, 1));
}

}  // namespace
