// Whole runs that find their files by name and draw loops of frames.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "NidsBuilder.h"
#include "Program.h"

namespace {

// A product with so many bins in each of its radials, all of one colour.
std::vector<unsigned char> product(int bins) {
  std::vector<int> levels = {0x8000};
  for (int i = 1; i < 16; ++i) levels.push_back(5 * i);
  NidsBuilder b;
  b.header(19, 9).location(35.333f, -97.278f).thresholds(levels).param(3, 5).radials(230);
  for (int i = 0; i < 360; ++i) {
    std::vector<NidsBuilder::Run> runs = {{10, 0}};
    for (int k = 0; k < bins; ++k) runs.push_back({1, 7 + k % 2});
    b.radial(static_cast<float>(i), 1.0f, runs);
  }
  return b.bytes();
}

class FrameRun : public testing::Test {
 protected:
  // The number of bins that each page of the file shows.
  std::vector<int> pages() const {
    const std::string text = program.read("loop.ps");
    std::vector<int> bins;
    const std::string mark = "%%Page: ";
    for (std::size_t at = text.find(mark); at != std::string::npos;) {
      const std::size_t next = text.find(mark, at + 1);
      const std::string page = text.substr(at, next - at);
      bins.push_back(countBins(page));
      at = next;
    }
    return bins;
  }
  static int countBins(const std::string& page) {
    int fills = 0;
    for (std::size_t k = page.find("%%FA:"); k != std::string::npos; k = page.find("%%FA:", k + 1)) ++fills;
    return fills / 360;  // the boxes of the colour bar are fewer than that
  }
  // Options that find the station's files with 12:00 as the present moment.
  Program::Result run(const std::string& options) const {
    return program.run("-de postscript,loop.ps,color " + options, "kyvcurtime=202405011200");
  }

  Program program;
};

TEST_F(FrameRun, LoopsShowEachFileOnce) {
  // The number of bins tells the file.
  int bins = 1;
  for (const char* minute : {"10_48", "11_01", "11_14", "11_43", "11_58"}) {
    program.write("TLX_N0R_2024_05_01_" + std::string(minute) + "_07", product(bins++));
  }
  struct Case {
    const char* options;
    std::vector<int> frames;  // none: a single map
  };
  const Case CASES[] = {
      // From 10:43, which has no file yet, to 11:58; 10:58 still shows that of 10:48.
      {"-pa nf=6,linc=15", {1, 2, 3, 4, 5}},
      {"-nh 1", {1, 2, 3, 4, 5}},
      {"-pa nf=2,linc=44 -cu 20240501_1200", {3, 5}},
      {"", {}},
      {"TLX_N0R_2024_05_01_11_58_07 TLX_N0R_2024_05_01_10_48_07 TLX_N0R_2024_05_01_11_58_07", {5, 1, 5}},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.options);
    const Program::Result r = run("-id ktlx -ty n0r -if cloud " + std::string(c.options));
    EXPECT_EQ(0, r.status);
    EXPECT_EQ(c.frames, pages()) << r.output;
  }
}

TEST_F(FrameRun, TheFileOfATimeIsFoundAndDrawn) {
  int bins = 1;
  for (const char* minute :
       {"04_20_23_30", "04_30_12_00", "04_30_23_30", "05_01_00_00", "05_01_11_00", "05_01_11_58"}) {
    program.write("TLX_N0R_2024_" + std::string(minute) + "_07", product(bins++));
  }
  struct Case {
    const char* current;
    int bins;
  };
  constexpr Case CASES[] = {
      {"la", 6},
      {"1", 5},
      {"1d", 2},
      {"12:30", 3},
      {"12:30:00", 3},
      {"10d12:30", 1},
      {"20240430", 0},
      {"2024-05-01", 4},
      {"2024-04-30T23:30", 3},
      {"2024-04-30T23:31:00", 3},  // the newest before it
      {"la -ho 23:45", 3},
      {"10d -ho 23:45", 1},
      {"20240501_1158 -ho 0", 4},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.current);
    std::filesystem::remove(program.path("loop.ps"));
    const Program::Result r = run("-id ktlx -ty n0r -if cloud -cu " + std::string(c.current));
    EXPECT_EQ(0, r.status);
    EXPECT_EQ(c.bins, countBins(program.read("loop.ps")));
    EXPECT_EQ(c.bins == 0, r.output.find("No file found") != std::string::npos) << r.output;
  }
  // The resource `cur_time` goes before the environment.
  for (const char* current : {"", "-cu 0:01", "-pa nf=2,linc=15"}) {
    SCOPED_TRACE(current);
    run("-id ktlx -ty n0r -if cloud -cur_time '#202404301201' " + std::string(current));
    EXPECT_EQ(2, countBins(program.read("loop.ps")));
  }
  // On the map of the product, which only a file that was found has.
  run("-id ktlx -ty n0r -if cloud -cu 20240430_2330");
  const std::string expected = program.read("loop.ps");
  run("-id ktlx -ty n0r -if cloud -cu 2024-04-30T23:30");
  EXPECT_EQ(expected, program.read("loop.ps"));
}

TEST_F(FrameRun, AFileNamedByItsPathIsNoOtherOfItsName) {
  const std::string station = "nids/TLX/N0R/";
  for (const char* tree : {"", "other/", "own/"}) {
    std::filesystem::create_directories(program.path(tree + station));
  }
  program.write(station + "N0R_20240501_1158", product(1));
  program.write("other/" + station + "N0R_20240501_1158", product(2));
  program.write("other/" + station + "N0R_20240501_1143", product(3));
  program.write("own/" + station + "N0R_20240501_1158", product(4));
  const std::string file = " own/" + station + "N0R_20240501_1158";
  for (const char* options : {"", "-dp other", "-id fdr -dp other"}) {
    SCOPED_TRACE(options);
    run(options + file);
    EXPECT_EQ(4, countBins(program.read("loop.ps")));
  }
  run("-pa nf=2,linc=15 -dp other" + file);
  EXPECT_EQ((std::vector<int>{3, 4}), pages());
}

TEST_F(FrameRun, NamesThatLookLikeTimesAreFilesWhereNoFileIsOfThatTime) {
  program.write("TLX_N0R_2024_05_01_11_01_07", product(1));
  for (const char* name : {"latest.nids", "LA", "cu=1", "#2024.nids"}) program.write(name, product(2));
  std::filesystem::create_directory(program.path("cu"));
  struct Case {
    const char* spec;
    int found, named;  // bins with the station's files and without
  };
  constexpr Case CASES[] = {
      {"latest.nids", 1, 2}, {"LA", 1, 2}, {"cu=1", 2, 2}, {"cu=0:30", 1, 0}, {"'#2024.nids'", 1, 2}, {"cu", 1, 0},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.spec);
    for (const auto& [station, bins] : {std::pair("tlx", c.found), std::pair("fdr", c.named)}) {
      std::filesystem::remove(program.path("loop.ps"));
      const Program::Result r = run(std::string("-if cloud -ty n0r ") + c.spec + " -id " + station);
      EXPECT_EQ(bins, countBins(program.read("loop.ps")));
      EXPECT_EQ(bins == 0, r.output.find("No file found") != std::string::npos) << r.output;
    }
  }
}

TEST_F(FrameRun, ListingShowsWhatTheSearchFinds) {
  const std::vector<std::string> names = {"./nids/ktlx/n0r/n0r_20240501_1143", "./nids/ktlx/n0r/n0r_20240501_1158",
                                          "b?/TLX/N0R/N0R_20240501_1158", "bx/TLX/N0R/N0R_20240501_1143",
                                          "./N0R/KFDR/20240501/Level3_FDR_N0R_20240501_1158.nids"};
  for (const std::string& name : names) {
    std::filesystem::create_directories(std::filesystem::path(program.path(name)).parent_path());
    program.write(name, product(1));
  }
  struct Case {
    const char* options;
    std::vector<int> listed;
  };
  const Case CASES[] = {
      {"-id ktlx -ty n0r", {0, 1}},
      {"-id TLX -ty N0R", {0, 1}},
      {"-id tlx -ty n0r -dp nowhere:.", {0, 1}},
      {"-id KTLX -ty n0r -if decoder -dp 'b?'", {2}},
      {"-id fdr -ty N0R -if server", {4}},
      {"-id fdr -ty n0r", {}},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.options);
    const std::string said = run(std::string("list ") + c.options).output;
    for (int i = 0; i < static_cast<int>(names.size()); ++i) {
      const bool listed = std::find(c.listed.begin(), c.listed.end(), i) != c.listed.end();
      EXPECT_EQ(listed, said.find(names[static_cast<std::size_t>(i)]) != std::string::npos) << said;
    }
    // And whatever is listed is drawn.
    EXPECT_EQ(c.listed.empty(), run(c.options).output.find("No file found") != std::string::npos);
  }
}

TEST_F(FrameRun, ALoopWithoutDataSaysWhereItLooked) {
  const Program::Result r = run("-id ktlx -ty n0r -pa nf=6,linc=15 -dp nowhere:.");
  EXPECT_EQ(0, r.status);
  EXPECT_TRUE(pages().empty());
  for (const char* part : {"RadMap: No file found\n", "  Keys: i=ktlx t=n0r\n", "  Directory: nowhere (missing)\n",
                           "Figure: No data for any of the 6 frames of the loop\n"}) {
    EXPECT_NE(std::string::npos, r.output.find(part)) << r.output;
  }
}

TEST_F(FrameRun, AMissingFileOfAListIsNamedAndPassedOver) {
  program.write("one", product(1));
  program.write("three", product(3));
  const Program::Result r = run("one two three");
  EXPECT_EQ(0, r.status);
  EXPECT_EQ((std::vector<int>{1, 3}), pages());
  EXPECT_NE(std::string::npos, r.output.find("RadMap: Unable to open file: two\n")) << r.output;
}

}  // namespace
