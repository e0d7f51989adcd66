// The keys of the screen, on a device that paints in memory.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "KYV/Image.h"
#include "KYV/ImageFile.h"
#include "KYV/Kyv.h"
#include "KYV/Plot.h"
#include "TempDir.h"

namespace KYV {
namespace {

class PlotKeys : public testing::Test {
 protected:
  PlotKeys() {
    std::filesystem::current_path(dir.path());
    Kyv::resrc.clear();
    Kyv::setMessageLevel(3);
    Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
    Kyv::setResrc("device", "raster");
    Kyv::setResrc("title", "Radar plot");
  }
  ~PlotKeys() override {
    std::filesystem::current_path(home);
    Kyv::resrc.clear();
    Kyv::setDatabasePath("");
  }
  void open(const char* domain) {
    ASSERT_EQ(1, plot.open());
    Domain d;
    ASSERT_EQ(1, d.set(domain));
    plot.setPanel(d);
  }
  std::string press(const char* key) {
    testing::internal::CaptureStdout();
    plot.callback("window", "KeyPress", key);
    return testing::internal::GetCapturedStdout();
  }

  TempDir dir;
  std::filesystem::path home = std::filesystem::current_path();
  Plot plot;
};

TEST_F(PlotKeys, PlacesAreToldByTheMapsProjection) {
  struct Case {
    int proj;
    float clat, clon, step;
    const char* beginning;
  };
  // At the middle of the map, which is not that of the page.
  constexpr Case CASES[] = {{DomainVal::PSTEREO, 35.0f, -97.0f, 0.1f, "Lat: 35.0"},
                            {DomainVal::XY, 10.0f, 20.0f, 1.0f, "X: "},
                            {DomainVal::POLAR, 10.0f, 20.0f, 1.0f, "A: "},
                            {DomainVal::SKEWT, 0.0f, 500.0f, 1.0f, "Temp: "}};
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.beginning);
    DomainVal val;
    val.proj = c.proj;
    val.plat = val.clat = c.clat;
    val.plon = val.clon = c.clon;
    val.nx = 61, val.ny = 41;
    val.dx = val.dy = c.step;
    const Domain d(val);
    ASSERT_EQ(1, plot.open());
    plot.setPanel(d);
    const Rect view = plot.getGraph().getViewport();
    const GTran& t = plot.getGraph().getTransform();
    const Rect window = plot.getGraph().getWindow();
    char key[60];
    StrLib::printf(key, "v-Alt:%.0f:%.0f", static_cast<double>(t.tranWindowPlotX((window.xmin + window.xmax) / 2.0f)),
                   static_cast<double>(t.tranWindowPlotY((window.ymin + window.ymax) / 2.0f)));
    EXPECT_GT(view.width(), 0.0f);
    const std::string said = press(key);
    EXPECT_TRUE(said.starts_with(c.beginning)) << said;
    EXPECT_NE(std::string::npos, said.find("Pixel: "));
    EXPECT_TRUE(said.ends_with("\n"));
    plot.close();
  }
  open("ps:35:-97,35,-97,61,41,0.1,0.1");
  for (const char* none : {"v-Alt", "v-Alt:", "v-Alt:x:y", "v-Alt:nan:1", "", "q-Alt:1:1"}) EXPECT_EQ("", press(none));
  plot.callback("window", "KeyPress", nullptr);
}

TEST_F(PlotKeys, PicturesAreNamedAfterTheTitle) {
  open("ps:35:-97,35,-97,61,41,0.1,0.1");
  press("s-Alt:1:1");
  press("S-Alt-Shft:1:1");
  EXPECT_EQ(ImageFile::GIF, ImageFile::checkType("Radar_plot.gif"));
  EXPECT_EQ(ImageFile::PNG, ImageFile::checkType("Radar_plot.png"));
  for (int frame = 0; frame < 3; ++frame) plot.newFrame();
  plot.getGraph().displayFrame(2);
  press("S-Alt-Shft:1:1");
  EXPECT_TRUE(std::filesystem::exists("Radar_plot-02.png"));
  EXPECT_FALSE(std::filesystem::exists("Radar_plot-00.png"));
}

TEST_F(PlotKeys, ADeletedFrameTakesItsTitleWithIt) {
  Kyv::resrc.clear();
  Kyv::setResrc("device", "raster");
  open("ps:35:-97,35,-97,61,41,0.1,0.1");
  for (const char* name : {"First", "Second", "Third"}) {
    plot.newFrame();
    plot.addLabel("ul", name);
    plot.drawLabels();
  }
  // The window deletes a frame by a key, and tells of it.
  plot.getGraph().deleteFrame(0);
  plot.callback("DeleteFrame", "0", nullptr);
  Image image;
  for (int frame = 0; frame < 2; ++frame) {
    plot.getGraph().displayFrame(frame);
    ASSERT_EQ(1, plot.getImage(image));
    EXPECT_STREQ(frame == 0 ? "Second" : "Third", image.getInfo());
  }
}

TEST_F(PlotKeys, APictureTellsWhatItShows) {
  open("ps:35:-97,35,-97,61,41,0.1,0.1");
  plot.addLabel("ul", "Layer_of_%Y");
  plot.addLabel("ur", "1830Z  1 MAY 24");
  plot.setDate(Date(2024, 5, 1, 12, 0, 0.0f));
  plot.drawLabels();
  Image image;
  ASSERT_EQ(1, plot.getImage(image));
  EXPECT_STREQ("Radar plot", image.getInfo());  // the user's title before the labels
  EXPECT_STREQ("1830Z  1 MAY 24", image.getDatim());
  // The centre of the map is where it is drawn.
  const GTran& t = plot.getGraph().getTransform();
  const Rect window = plot.getGraph().getWindow();
  GridPoint g;
  image.tran(EarthPoint(35.0f, -97.0f), g);
  EXPECT_NEAR(t.tranWindowPlotX((window.xmin + window.xmax) / 2.0f), g.x, 0.5f);
  EXPECT_NEAR(t.tranWindowPlotY((window.ymin + window.ymax) / 2.0f), g.y, 0.5f);
}

}  // namespace
}  // namespace KYV
