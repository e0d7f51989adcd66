#include "KYV/XWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "CutServer.h"
#include "KYV/Image.h"
#include "KYV/Points.h"
#include "KYV/Raster.h"
#include "KYV/String.h"
#include "TempDir.h"
#include "XServer.h"

using KYV::Device;
using KYV::Image;
using KYV::Points;
using KYV::Raster;
using KYV::XWindow;

namespace {

constexpr float WIDTH = 300.0f;
constexpr float HEIGHT = 200.0f;

// Notes the events that it is told of, and acts on each.
struct Recorder : KYV::Listener {
  void callback(const char* name, const char* value, const void* data) override {
    const std::string first = name ? name : "", text = data ? static_cast<const char*>(data) : "";
    if (first == "Idle") {
      if (idle) idle();
      return;
    }
    events.push_back(
        (first == "Redraw" || first == "QueryLoc" ? first + " " + value : std::string(value) + " " + text));
  }
  std::vector<std::string> events;
  std::function<void()> idle;
};

class XWindowTest : public testing::Test {
 protected:
  void SetUp() override {
    if (server.getDisplay().empty()) GTEST_SKIP() << "no Xvfb";
    window.setParam((server.getDisplay() + ",show_num").c_str());
    window.setFixed(false);
    ASSERT_EQ(1, window.setSize(WIDTH, HEIGHT));
    ASSERT_EQ(1, window.open());
    raster.setSize(WIDTH, HEIGHT);
    ASSERT_EQ(1, raster.open());
  }
  // Draws the same on both surfaces; the pixels in which they differ.
  int differ(const std::function<void(Device&)>& draw) {
    Device* const devices[] = {&window, &raster};
    for (Device* device : devices) {
      device->clear();
      device->setClip(0, 0, WIDTH - 1, HEIGHT - 1);
      for (const int cls : {1, 2, 3, 4}) device->setColor(cls, device->allocColor(1.0f, 0.5f, 0.0f));
      draw(*device);
      device->update();
    }
    Image a, b;
    EXPECT_EQ(1, window.getImage(a));
    EXPECT_EQ(1, raster.getImage(b));
    int different = 0;
    for (int y = 0; y < a.getHeight(); ++y) {
      for (int x = 0; x < a.getWidth(); ++x) different += a.getPixel(x, y) != b.getPixel(x, y);
    }
    return different;
  }
  // Runs the event loop, in which the steps are taken one after the other, each when nothing else happens.
  void run(const std::vector<std::function<void()>>& steps) {
    std::size_t next = 0;
    int rest = 0;
    recorder.idle = [&] {
      if (rest-- > 0) return;
      rest = 3;  // the display takes its time
      if (next == steps.size()) {
        window.unmanage();
      } else {
        steps[next++]();
      }
    };
    window.addCallback("AnyEvent", &recorder, nullptr);
    EXPECT_EQ(1, window.manage());
  }
  bool heard(const std::string& event) const {
    return std::any_of(recorder.events.begin(), recorder.events.end(),
                       [&](const std::string& e) { return e.starts_with(event); });
  }

  XServer server;
  XWindow window;
  Raster raster;
  Recorder recorder;
};

TEST_F(XWindowTest, PicturesInMemoryAreThoseOfTheWindow) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> small(0.0f, 9.0f), wide(-40.0f, WIDTH + 40.0f);
  const auto cells = [&](Device& d) {
    std::mt19937 same(6);
    for (int y = 4; y < 190; y += 11) {
      for (int x = 4; x < 290; x += 11) {
        Points cell;
        for (int i = 0; i < 4; ++i) {
          cell.add(static_cast<float>(x) + small(same), static_cast<float>(y) + small(same));
        }
        d.drawFill(Device::FILL, cell);
      }
    }
  };
  EXPECT_LE(differ(cells), 5);  // one that is a single point is not shown by the server
  for (const int style : {1, 5, 12, 19, 10}) {
    SCOPED_TRACE(style);
    EXPECT_EQ(0, differ([&](Device& d) {
                d.setFillStyle(Device::FILL, style);
                Points area;
                for (const auto& [x, y] : {std::pair{20.0f, 20.0f}, {200.0f, 40.0f}, {90.0f, 180.0f}}) area.add(x, y);
                d.drawFill(Device::FILL, area);
                d.setFillStyle(Device::FILL, 0);
              }));
  }
  EXPECT_EQ(0, differ([&](Device& d) {
              std::mt19937 same(7);
              d.setLineWidth(Device::LINE, 0.0f);
              d.setClip(30, 20, 250, 170);
              for (int i = 0; i < 60; ++i) d.drawLine(Device::LINE, wide(same), wide(same), wide(same), wide(same));
            }));
  EXPECT_EQ(0, differ([&](Device& d) {
              for (int i = 0; i < 5; ++i) {
                d.setLineWidth(Device::LINE, static_cast<float>(i + 2));
                const float at = 20.0f * static_cast<float>(i + 1);
                d.drawLine(Device::LINE, 10.0f, at, 60.0f, at);
                d.drawLine(Device::LINE, 70.0f + at, 20.0f, 70.0f + at, 90.0f);
                d.setLineStyle(Device::LINE, i + 1);
                d.drawLine(Device::LINE, 10.0f, 95.0f + at, 250.0f, 95.0f + at);
                d.setLineStyle(Device::LINE, Device::SOLID);
              }
              d.setLineWidth(Device::LINE, 0.0f);
            }));
  // Lines of some width, single ones and the outline of a small symbol.
  for (const float width : {2.0f, 3.0f, 5.0f}) {
    SCOPED_TRACE(width);
    const auto lines = [&](Device& d) {
      std::mt19937 same(8);
      std::uniform_real_distribution<float> at(20.0f, 180.0f);
      d.setLineWidth(Device::LINE, width);
      for (int i = 0; i < 10; ++i) d.drawLine(Device::LINE, at(same), at(same), at(same), at(same));
      for (const float size : {4.0f, 6.0f, 9.0f, 15.0f, 30.0f}) {
        Points circle;
        for (int i = 0; i <= 12; ++i) {
          const float angle = static_cast<float>(i) * 3.14159265f / 6.0f;
          circle.add(235.0f + size * std::cos(angle), 30.0f + 4.0f * size + size * std::sin(angle));
        }
        d.drawLine(Device::LINE, circle);
      }
      d.setLineWidth(Device::LINE, 0.0f);
    };
    // Of some 3000 to 7000: the server counts in its own fractions of a pixel.
    EXPECT_LE(differ(lines), 20);
  }
  Image image;
  image.set(20, 10, 24);
  image.allocData();
  for (int i = 0; i < 10; ++i) image.setPixel(2 * i, i, 0x00FF00);
  image.setTransColor(0);
  EXPECT_EQ(0, differ([&](Device& d) {
              for (const auto& [h, v] : {std::pair{1, 3}, {2, 2}, {3, 1}}) {
                d.setImageAlign(h, v);
                d.drawImage(image, 50.0f * static_cast<float>(h), 100.4f);
              }
            }));
}

TEST_F(XWindowTest, EventsReachThoseWhoListen) {
  if (!server.act("getmouselocation")) GTEST_SKIP() << "no xdotool";
  window.drawLine(Device::LINE, 0, 0, 100, 100);
  run({[&] { server.act("mousemove 150 140 key alt+s"); }, [&] { server.act("key alt+shift+s"); },
       [&] { server.act("click 1"); }, [&] { server.act("search --name KYV windowsize 400 250"); },
       [&] { window.doCallback("QueryLoc", "35,-97"); }, [&] { server.act("key Return"); }});
  EXPECT_TRUE(heard("KeyPress s-Alt:4")) << recorder.events.size();
  EXPECT_TRUE(heard("KeyPress S-Alt-Shft:"));
  EXPECT_TRUE(heard("ButtonPress B1-P:"));
  EXPECT_TRUE(heard("Redraw 400:250"));
  EXPECT_TRUE(heard("QueryLoc 35,-97"));
  EXPECT_TRUE(heard("KeyPress Ret:"));
  EXPECT_EQ(400.0f, window.getWidth());
}

TEST_F(XWindowTest, FramesStepLoopAndGo) {
  EXPECT_EQ(-1, window.incFrame(0));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(i, window.newFrame());
  window.displayFrame(0);
  const auto press = [&](const char* event, const char* text) { window.callback("KYV", event, text); };
  press("KeyPress", "[-Alt:1:1");
  EXPECT_EQ(2, window.getFrame());
  press("ButtonPress", "B3-P:1:1");
  EXPECT_EQ(0, window.getFrame());
  press("KeyPress", "d-Alt:1:1");
  EXPECT_EQ(2, window.getNumFrames());
  press("KeyPress", "l-Alt:1:1");
  EXPECT_TRUE(window.isLooping());
  constexpr float DELAYS[] = {0.4f, 0.3f, 0.2f, 0.1f, 0.05f, 0.05f};
  for (const float delay : DELAYS) {
    press("KeyPress", "]-Alt:1:1");
    EXPECT_NEAR(delay, window.getDelay(), 0.001f);
  }
  press("ButtonPress", "B1-P:1:1");
  EXPECT_NEAR(0.1f, window.getDelay(), 0.001f);
  for (int i = 0; i < 30; ++i) window.loopRate(-1);
  EXPECT_NEAR(10.0f, window.getDelay(), 0.001f);
  window.deleteFrame();
  EXPECT_EQ(0, window.getNumFrames());

  // A picture for each frame.
  for (int i = 0; i < 2; ++i) {
    window.newFrame(-1);
    window.setColor(Device::LINE, window.allocColor(1, 1, 1));
    window.drawLine(Device::LINE, 10, 10 + 10.0f * static_cast<float>(i), 50, 10 + 10.0f * static_cast<float>(i));
  }
  window.displayFrame(0);
  Image image;
  window.getImage(image);
  EXPECT_EQ(0xFFFFFFu, image.getPixel(30, 10));
  EXPECT_EQ(0u, image.getPixel(30, 20));
}

TEST_F(XWindowTest, AnIdleWindowUsesNoTime) {
  const std::clock_t before = std::clock();
  run({[] {}, [] {}});  // about a second
  EXPECT_LT(static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC, 0.1);
}

TEST_F(XWindowTest, ADisplayThatGoesEndsTheLoop) {
  testing::internal::CaptureStderr();
  run({[&] { server.stop(); }, [] {}, [] {}});
  EXPECT_EQ("X11 Disconnected\n", testing::internal::GetCapturedStderr());
  Image image;
  EXPECT_EQ(0, window.drawLine(Device::LINE, 0, 0, 1, 1));
  EXPECT_EQ(0, window.getImage(image));
  EXPECT_EQ(0, window.newFrame(-1));
  window.close();
}

TEST_F(XWindowTest, AWindowOfAnotherProgramCanBeDrawnInto) {
  KYV::String name;
  window.getDevice(name);
  XWindow inside;
  inside.setParam(std::string(name.view().substr(2)).c_str());
  ASSERT_EQ(1, inside.open());
  EXPECT_EQ(WIDTH, inside.getWidth());
  EXPECT_EQ(1, inside.drawLine(Device::LINE, 0, 0, 10, 10));
  EXPECT_EQ(1, inside.manage());  // has no loop
  XWindow wrong;
  wrong.setParam((server.getDisplay() + ",0x123456:100x100:24").c_str());
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, wrong.open());
  EXPECT_EQ("Window open: unable to open window\n", testing::internal::GetCapturedStderr());
}

TEST_F(XWindowTest, FramesInAWindowOfAnotherProgramAreShown) {
  KYV::String name;
  window.getDevice(name);
  XWindow inside;
  inside.setParam(std::string(name.view().substr(2)).c_str());
  ASSERT_EQ(1, inside.open());
  ASSERT_EQ(1, inside.newFrame(-1));
  inside.setColor(Device::FILL, inside.allocColor(1, 0, 0));
  Points area;
  for (const auto& [x, y] : {std::pair{0.0f, 0.0f}, {WIDTH, 0.0f}, {WIDTH, HEIGHT}, {0.0f, HEIGHT}}) area.add(x, y);
  inside.drawFill(Device::FILL, area);
  ASSERT_EQ(1, inside.displayFrame(0));
  // As the screen shows it.
  const TempDir dir;
  const std::string shot = dir.path("shot.txt");
  const std::string id(name.view().substr(name.view().find(':', name.view().find('+')) + 1));
  const std::string command = "import -display " + server.getDisplay() + " -window " + std::to_string(std::stoul(id)) +
                              " -crop 1x1+150+100 -depth 8 rgb:" + shot + " 2> /dev/null";
  if (std::system(command.c_str()) != 0) GTEST_SKIP() << "no import";
  EXPECT_EQ(std::string("\xFF\0\0", 3), TempDir::read(shot));
  EXPECT_EQ(1, inside.deleteFrame(0));
  EXPECT_EQ(1, inside.drawLine(Device::LINE, 0, 0, 10, 10)) << "into the window again";
}

TEST_F(XWindowTest, AWindowThatAnotherProgramClosesEndsTheLoop) {
  testing::internal::CaptureStderr();
  bool acted = false;
  run({[&] { acted = server.act("search --name KYV windowclose"); }, [] {}, [] {}, [] {}, [] {}, [] {}});
  const std::string said = testing::internal::GetCapturedStderr();
  if (!acted) GTEST_SKIP() << "no xdotool";
  EXPECT_EQ("XWindow: another program has closed the window\n", said);
  EXPECT_EQ(0, window.drawLine(Device::LINE, 0, 0, 1, 1));
  EXPECT_EQ(1, window.close());
}

TEST_F(XWindowTest, AKeyThatDeletesAFrameTellsSo) {
  window.newFrame(-1);
  window.newFrame(-1);
  window.displayFrame(1);
  bool acted = false;
  run({[&] { acted = server.act("search --name KYV windowfocus key alt+d"); }, [] {}, [] {}});
  if (!acted) GTEST_SKIP() << "no xdotool";
  EXPECT_EQ(1, window.getNumFrames());
  EXPECT_TRUE(heard("0 ") || heard("1 ")) << "whichever the loop was at";
}

// Whatever it was that the window waited for when the display went.
TEST(XWindow, ADisplayThatGoesWhileTheWindowOpensIsToldOf) {
  const XServer server;
  if (server.getDisplay().empty()) GTEST_SKIP() << "no Xvfb";
  for (const long bytes : {8, 301, 900, 1700, 2500, 3300, 4100, 4900, 5400, 9000}) {
    SCOPED_TRACE(bytes);
    const pid_t child = fork();
    if (child == 0) {
      const CutServer cut(server.getDisplay(), bytes);
      XWindow window;
      window.setParam(cut.getDisplay().c_str());
      window.setSize(WIDTH, HEIGHT);
      if (window.open()) window.drawLine(Device::LINE, 0, 0, 10, 10);
      window.close();
      std::exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  }
}

TEST_F(XWindowTest, FontsAreThoseThatTheServerHas) {
  EXPECT_EQ(0, window.setFont("-none-such-medium-r-normal--13-*-*-*-*-*-*-*"));
  EXPECT_EQ(0, window.setFont(nullptr));
  EXPECT_EQ(0, window.setFont(std::string(1000, '-').c_str()));
  window.setColor(Device::TEXT, window.allocColor(1, 1, 1));
  window.setTextAlign(2, 2);
  EXPECT_EQ(1, window.drawText(KYV::Point(150, 100), "text"));
  Image image;
  window.getImage(image);
  EXPECT_EQ(2, image.getNumColor());
}

TEST(XWindow, ADisplayThatIsNotThereIsToldOf) {
  XWindow window;
  window.setParam(":999");
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, window.open());
  EXPECT_EQ("XWindow: unable to connect to display\n", testing::internal::GetCapturedStderr());
  EXPECT_EQ(0, window.drawLine(Device::LINE, 0, 0, 1, 1));
  EXPECT_EQ(0, window.setSize(0.0f, 5.0f));
}

}  // namespace
