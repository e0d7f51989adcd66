#include "KYV/Figure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "KYV/DateTool.h"
#include "KYV/Drawing.h"
#include "KYV/Kyv.h"
#include "TestDevice.h"

namespace KYV {
namespace {

using Log = std::vector<std::string>;

std::string clockTime(const Date& d) {
  String text;
  d.toText(d.day == 1 ? "%H%M" : "%d/%H%M", text);
  return text.get();
}

Date at(int hour, int minute = 0) { return Date(2024, 5, 1, hour, minute, 0.0f); }

// A layer whose data are those of certain times of the day; each frame shows the data of its very time, or of the one
// that is given for it. Notes what it draws.
class Layer : public Drawing {
 public:
  explicit Layer(Log& drawn) : log(drawn) {}
  int init() override { return 1; }
  int getDomain(Domain&) override { return 0; }
  int setFile() override { return 1; }
  int setInput(const char*) override { return 1; }
  int setNameConv(const char*) override { return 1; }
  int setFilename() override { return log.push_back(name + "choose"), 1; }
  int setFilename(const char* file) override { return log.push_back(name + "choose " + file), 1; }
  int setFilename(Date& date) override { return setFilename(date, ""); }
  int setFilename(Date& date, const char*) override {
    const auto other = data.find(clockTime(date));
    current = other == data.end() ? clockTime(date) : other->second;
    return current != "none";
  }
  int setForeTime(const char* hours) override { return fore = hours ? hours : "", 1; }
  int setParam(const char*) override { return 1; }
  int getDate(Date& date) override {
    int day = 1, hour = 0, minute = 0;
    const char* text = current.c_str();
    if (current.size() > 4) std::sscanf(text, "%2d/%2d%2d", &day, &hour, &minute);
    if (current.size() == 4) std::sscanf(text, "%2d%2d", &hour, &minute);
    if (current != "none") date = Date(2024, day == 1 ? 5 : 4, day, hour, minute, 0.0f);
    return 1;
  }
  int getLoopType() override { return type; }
  int getInitDate(Date& date) override { return date = at(12), 1; }
  int getDateOffset() override { return offset; }
  int getNumFrames() override { return frames; }
  int getSync() override { return sync; }
  int draw(Plot& plot) override {
    log.push_back(name + (fore.empty() ? current : "fcst " + fore));
    EXPECT_TRUE(plot.addLabel("ul", "label"));
    return plot.done();
  }
  int print() override { return 1; }

  Log& log;
  std::string name;
  std::map<std::string, std::string> data;  // of a time, "none" for none
  std::string current;
  std::string fore;
  int type = LOOP_DATE;
  int offset = 900;
  int frames = 1;
  int sync = 0;
};

class FigureTest : public testing::Test {
 protected:
  FigureTest() {
    Kyv::resrc.clear();
    Kyv::setMessageLevel(3);
    Kyv::setDatabasePath(RADMAP_SOURCE_DIR "/data");
    Kyv::setResrc("device", "postscript,/dev/null");
    Kyv::setInitTime(at(18, 0).secs);
  }
  ~FigureTest() override {
    Kyv::resrc.clear();
    Kyv::setDatabasePath("");
    Kyv::setInitTime(Const::MISS);
  }
  // A figure on the noting device, with these layers on a map of 100 by 60 units.
  void open(const char* params, std::vector<Layer*> layers) {
    Kyv::setResrc("parameter", params);
    figure = std::make_unique<Figure>();
    ASSERT_EQ(1, figure->open());
    Graph& graph = figure->getPlot().getGraph();
    auto test = std::make_unique<TestDevice>(calls);
    device = test.get();
    graph.setDevice(std::move(test));
    ASSERT_EQ(1, graph.open());
    figure->getPlot().initPanel();
    DomainVal val;
    val.proj = DomainVal::PSTEREO;
    val.plat = val.clat = 35.0f;
    val.plon = val.clon = -97.0f;
    val.nx = 101, val.ny = 61;
    val.dx = val.dy = 0.1f;
    figure->startPlot(Domain(val));
    for (Layer* layer : layers) figure->addDrawing(*layer);
  }
  void key(const char* text) { figure->callback("window", "KeyPress", text); }
  Domain domain() {
    Domain d;
    figure->getPlot().getPanelDomain(0, d);
    return d;
  }
  // The layers' notes since the last call.
  Log drawn() {
    Log now;
    now.swap(log);
    std::erase_if(now, [](const std::string& s) { return s.find("choose") != std::string::npos; });
    return now;
  }

  Log log;    // of layers
  Log calls;  // of the device
  TestDevice* device = nullptr;
  std::unique_ptr<Figure> figure;
};

TEST_F(FigureTest, TheLoopStartsWhereCurrentSays) {
  struct Case {
    const char* current;
    const char* start;
  };
  constexpr Case CASES[] = {
      {nullptr, "1200"},
      {"", "1200"},
      {"la-1", "1200"},
      {"6:30", "1130"},
      {"3", "1500"},
      {"1d", "30/1800"},
      {"1d6", "30/1200"},
      {"0d6:15", "1145"},
      {"12:30:00", "0530"},
      {"10d12:30", "21/0530"},
      {"+0:30", "1830"},
      {"now", "1800"},
      {"#202405010715", "0715"},
      {"20240501_0730", "0730"},
      {"2024-05-01T07:45:00", "0745"},
      {"2024-05-01T07:45", "0745"},
      {"20240501_0730+1", "0830"},
      {"20240501la", "1200"},
      {"LA", "1200"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.current ? c.current : "unset");
    if (c.current) Kyv::setResrc("current", c.current);
    Layer layer(log);
    open("", {&layer});
    figure->endPlot();
    EXPECT_EQ(Log{c.start}, drawn());
    EXPECT_EQ(0, std::count(calls.begin(), calls.end(), "new -1"));  // a single map is no frame
    calls.clear();
    figure.reset();
  }
}

TEST_F(FigureTest, FramesOfATimeLoop) {
  struct Case {
    const char* params;
    std::map<std::string, std::string> data;
    Log frames;
  };
  const Case CASES[] = {
      {"nf=6,linc=15", {}, {"1045", "1100", "1115", "1130", "1145", "1200"}},
      {"nf=3", {}, {"1130", "1145", "1200"}},
      // The same data twice make one frame, missing data none.
      {"nf=4,linc=5", {{"1150", "1145"}, {"1145", "1145"}}, {"1145", "1155", "1200"}},
      {"nf=4,linc=5", {{"1150", "none"}, {"1200", "none"}}, {"1145", "1155"}},
      {"nf=2,linc=60", {{"1100", "none"}, {"1200", "none"}}, {}},
      {"nf=0", {}, {"1200"}},
      {"nf=-7", {}, {"1200"}},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.params);
    Layer layer(log);
    layer.data = c.data;
    open(c.params, {&layer});
    testing::internal::CaptureStderr();
    figure->endPlot();
    EXPECT_EQ(c.frames.empty(), testing::internal::GetCapturedStderr().find("No data") != std::string::npos);
    EXPECT_EQ(c.frames, drawn());
    if (c.frames.size() > 1) {
      EXPECT_EQ(static_cast<int>(c.frames.size()), device->frames);
    }
    figure.reset();
  }
  Layer layer(log);
  open("nf=999999999,linc=1", {&layer});
  testing::internal::CaptureStderr();
  figure->endPlot();
  EXPECT_NE("", testing::internal::GetCapturedStderr());
  EXPECT_EQ(static_cast<std::size_t>(Figure::MAX_FRAME), drawn().size());
}

TEST_F(FigureTest, TheLayerThatSetsTheLoop) {
  Layer fixed(log), plain(log), sync(log);
  fixed.name = "fixed ", plain.name = "plain ", sync.name = "sync ";
  fixed.type = Drawing::LOOP_NONE;
  sync.sync = 1, sync.frames = 2, sync.offset = 3600;
  plain.frames = 5, plain.offset = 60;
  plain.data = {{"1100", "none"}};  // is drawn with what it has
  open("fi=own.nids", {&fixed, &plain, &sync});
  figure->endPlot();
  EXPECT_EQ("sync choose own.nids", log.front());
  EXPECT_EQ((Log{"fixed 1100", "plain none", "sync 1100", "fixed 1200", "plain 1200", "sync 1200"}), drawn());

  Layer still(log);
  still.type = Drawing::LOOP_NONE;
  open("nf=4", {&still});
  figure->endPlot();
  EXPECT_EQ(1u, drawn().size());  // nothing in it moves
}

TEST_F(FigureTest, ForecastHoursMakeALoop) {
  Kyv::setResrc("time", "0-12/6");
  Layer layer(log), other(log);
  open("", {&layer, &other});
  figure->endPlot();
  EXPECT_EQ((Log{"fcst 0", "fcst 0", "fcst 6", "fcst 6", "fcst 12", "fcst 12"}), drawn());
}

TEST_F(FigureTest, EachFrameStartsOnOnePanelWithoutLabels) {
  Layer first(log), second(log);
  open("nf=2", {&first});
  figure->addPanel("2x1+1+0");
  figure->addDrawing(second);
  figure->endPlot();
  EXPECT_EQ((Log{"1145", "1145", "1200", "1200"}), drawn());
  EXPECT_EQ(2, figure->getPlot().getNumPanels());
  // Both frames draw the same.
  const auto half = std::find(calls.rbegin(), calls.rend(), "new -1").base();
  const auto begin = std::find(calls.begin(), calls.end(), "new -1") + 1;
  const auto lines = [](Log::const_iterator from, Log::const_iterator to) {
    Log list;
    std::copy_if(from, to, std::back_inserter(list), [](const std::string& s) { return s.starts_with("line"); });
    return list;
  };
  const Log one = lines(begin, half), two = lines(half, calls.end());
  EXPECT_FALSE(one.empty());
  EXPECT_EQ(one, two);
}

TEST_F(FigureTest, FramesForWhichThereIsNoRoomAreLeftOut) {
  Layer layer(log);
  open("nf=5", {&layer});
  device->room = 2;
  testing::internal::CaptureStderr();
  figure->endPlot();
  EXPECT_EQ("Figure: there is room for 2 frames, 3 more are left out; ask for fewer with nf=\n",
            testing::internal::GetCapturedStderr());
  EXPECT_EQ((Log{"1100", "1115"}), drawn()) << "nothing is drawn over the last one";
}

TEST_F(FigureTest, KeysChangeTheMap) {
  Layer layer(log);
  open("nf=2", {&layer});
  figure->endPlot();
  const Domain start = domain();
  drawn();
  char text[40];
  StrLib::printf(text, "z-Alt:%d:%d", 480, 300);  // of 800 by 600: right of the centre
  key(text);
  EXPECT_EQ((Log{"1145", "1200"}), drawn());
  EXPECT_FLOAT_EQ(start.dx / 2.0f, domain().dx);
  EXPECT_GT(domain().clon, start.clon);
  EXPECT_EQ(2, device->frames);
  StrLib::printf(text, "Z-Alt-Shft:%d:%d", 400, 300);
  key(text);
  EXPECT_FLOAT_EQ(start.dx, domain().dx);
  StrLib::printf(text, "p-Alt:%d:%d", 200, 300);
  key(text);
  EXPECT_FLOAT_EQ(start.dx, domain().dx);
  EXPECT_LT(domain().clon, start.clon);
  key("u-Alt:1:1");
  EXPECT_FLOAT_EQ(start.clon, domain().clon);
  EXPECT_EQ(6u, drawn().size());
  key("r-Alt:0:0");
  figure->callback("Redraw", "400:300", "Figure");  // as events come that are delivered by their name
  EXPECT_EQ(4u, drawn().size());
  for (const char* none : {"z-Alt", "z-Alt:", "z-Alt:nan:x", "Z-Alt:1:1", "q-Alt:1:1", ""}) key(none);
  figure->callback("window", "KeyPress", nullptr);
  EXPECT_TRUE(drawn().empty());
}

TEST_F(FigureTest, ARedrawFitsTheMapToTheNewSize) {
  Layer layer(log);
  open("", {&layer});
  figure->endPlot();
  // A tall window: the map is bound by its width now.
  device->surface.setu(0.0f, 0.0f, 400.0f, 600.0f);
  Graph& graph = figure->getPlot().getGraph();
  graph.callback("window", "Redraw", "400:600");
  figure->callback("window", "Redraw", "400:600");
  EXPECT_EQ(2u, drawn().size());
  const Rect view = graph.getViewport(), page = graph.getMaxViewport();
  EXPECT_NEAR(view.width(), 0.99f * page.width(), 1e-3f);
  EXPECT_LT(view.height(), 0.5f * page.height());
}

// New data are looked for when a second has passed after manage().
TEST_F(FigureTest, RefreshDrawsNewDataOnly) {
  struct Case {
    const char* params;
    bool newData;
    Log frames;
    int deleted;
  };
  const Case CASES[] = {
      {"nf=3,ref=2", true, {"1800"}, 1}, {"nf=3,ref=2", false, {}, 0},
      {"ref=2", true, {"1800"}, 0},      {"nf=3", true, {}, 0},
      {"ref,norefresh", true, {}, 0},    {"ref", true, {"1800"}, 0},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.params);
    Layer layer(log);
    if (!c.newData) layer.data = {{"1800", "1200"}};
    open(c.params, {&layer});
    figure->endPlot();
    drawn();
    calls.clear();
    figure->callback("window", "Idle", nullptr);  // before manage() all time has passed
    EXPECT_EQ(c.frames, drawn());
    EXPECT_EQ(c.deleted, std::count(calls.begin(), calls.end(), "delete 0"));
    figure->manage();
    figure->callback("window", "Idle", nullptr);
    EXPECT_TRUE(drawn().empty());
    figure.reset();
  }
}

// A single map is drawn in its place again, and its panels are those of the first time.
TEST_F(FigureTest, ARefreshDrawsAllPanelsAgain) {
  Layer first(log), second(log);
  open("ref=2", {&first});
  figure->addPanel("2x1+0+0");
  figure->addDrawing(second);
  calls.clear();
  figure->endPlot();
  const auto lines = [this] {
    Log list;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(list),
                 [](const std::string& s) { return s.starts_with("line"); });
    calls.clear();
    return list;
  };
  const Log once = lines();
  Date later = at(18);
  figure->updateLoop(later);
  EXPECT_EQ((Log{"1200", "1200", "1800", "1800"}), drawn());
  EXPECT_EQ(2, figure->getPlot().getNumPanels());
  EXPECT_FALSE(once.empty());
  EXPECT_EQ(once, lines());
}

}  // namespace
}  // namespace KYV
