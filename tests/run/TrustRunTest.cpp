// What a run says of itself: its exit status, outputs that are whole or not there, and words that nobody understands.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "HttpServer.h"
#include "NidsBuilder.h"
#include "Program.h"

namespace {

// Values of the exit status, as docs/exit-status.md lists them.
constexpr int NOERR = 0, MISC = 2, NOMEMORY = 3, NOGRAPH = 4, NOFILE = 6, NOWRITE = 8, NOINPUT = 9, NODATA = 10,
              BADPARAM = 11;

constexpr const char* PANEL = "0.78 0.00 0.00 setrgbcolor";

class TrustRun : public testing::Test {
 protected:
  TrustRun() {
    program.write("p.nids", product().bytes());
    write("text", "no product\n");
  }
  // Reflectivity in 360 radials.
  static NidsBuilder product() {
    NidsBuilder b;
    b.header(19, 9).location(35.333f, -97.278f).thresholds({0x8000, 5, 10, 15, 20, 25, 30, 35, 40}).param(3, 5);
    b.radials(230);
    for (int i = 0; i < 360; ++i) b.radial(static_cast<float>(i), 1.0f, std::vector<NidsBuilder::Run>{{20, 8}});
    return b;
  }
  // Whether the page has the panel of what it lacks, whose letters are strokes.
  bool isMarked(const std::string& arguments) {
    program.run("-de postscript,a.ps,color " + arguments);
    const auto bytes = program.read("a.ps");
    return std::string(bytes.begin(), bytes.end()).find(PANEL) != std::string::npos;
  }
  void write(const std::string& name, const std::string& text) {
    program.write(name, std::vector<unsigned char>(text.begin(), text.end()));
  }
  // The names in the folder, those that begin with a dot as well.
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(program.path("."))) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  Program program;
};

TEST_F(TrustRun, TheStatusTellsTheGravestFailure) {
  const struct {
    const char* what;
    const char* arguments;
    int status;
  } CASES[] = {
      {"a picture", "-ou a.png p.nids", NOERR},
      {"a page", "-de postscript,a.ps p.nids", NOERR},
      {"help", "-h", NOERR},
      {"an unknown option", "-ou a.png -nosuch 5 p.nids", BADPARAM},
      {"a bad value", "-ou a.png -mx soon p.nids", BADPARAM},
      {"a missing file", "-ou a.png gone.nids", NOFILE},
      {"a folder", "-ou a.png .", NOFILE},
      {"nothing found", "-ou a.png -id ktlx -ty n0q", NOFILE},
      {"no product", "-ou a.png text", NODATA},
      {"one of several", "-ou a.gif p.nids gone.nids p.nids", NOFILE},
      {"no display", "p.nids", NOGRAPH},
      {"an unknown device", "-de nosuch p.nids", BADPARAM},
      {"a full disk", "-ou png:/dev/full p.nids", NOWRITE},
      {"a page on a full disk", "-de postscript,/dev/full p.nids", NOWRITE},
      {"no such folder to make", "-ou text/a.png p.nids", NOWRITE},
      {"a command that fails", "-de 'postscript,|exit 3' p.nids", NOWRITE},
      {"a folder that may not be written", "-ou /proc/a.png p.nids", NOWRITE},
      {"a product that is cut", "-ou a.png cut.nids", NOINPUT},
      {"one of several that is cut", "-ou a.gif p.nids cut.nids", NOINPUT},
      {"another radar", "-ou a.png -id KFTG p.nids", NODATA},
      {"old data", "-ou a.png -mx 1d p.nids", MISC},
      {"a map that is not there", "-ou a.png lists.nids -mf kyv.map,mine.mpl", MISC},
  };
  write("mine.mpl", "nowhere:red\n");
  program.write("lists.nids", product().bytes());
  const std::string bytes = program.read("p.nids");
  write("cut.nids", bytes.substr(0, bytes.size() / 2));
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    const Program::Result r = program.run(std::string("-strict ") + c.arguments);
    EXPECT_EQ(c.status, r.status) << r.output;
    EXPECT_EQ(0, program.run(c.arguments).status) << "without being asked for";
  }
  // The environment and resource files ask for it as well.
  EXPECT_EQ(NOFILE, program.run("-ou a.png gone.nids", "kyv_radmap_strict=yes").status);
  EXPECT_EQ(NOERR, program.run("-strict no -ou a.png gone.nids", "kyv_radmap_strict=yes").status);
  write("kyv.cfg", "*.strict: yes\n");
  EXPECT_EQ(NOFILE, program.run("-ou a.png gone.nids").status);
}

#ifndef __SANITIZE_ADDRESS__  // which needs more than any limit
TEST_F(TrustRun, TooLittleMemoryIsSaid) {
  const char* limited = "sh -c 'ulimit -v 100000; exec \"$0\" \"$@\"'";
  const Program::Result r = program.run("-ge 8000x8000 -ou a.png p.nids", limited);
  EXPECT_EQ(NOMEMORY, r.status);
  EXPECT_NE(std::string::npos, r.output.find("there is not enough memory")) << r.output;
  EXPECT_FALSE(std::filesystem::exists(program.path("a.png")));
}
#endif

TEST_F(TrustRun, AReaderThatGoesAwayIsAFailure) {
  program.run("", "bash -c '\"$0\" -strict -ou png:- p.nids | true; echo ${PIPESTATUS[0]} > said'");
  EXPECT_EQ(std::to_string(NOWRITE) + "\n", program.read("said"));
}

TEST_F(TrustRun, OutputsAreWholeOrStayAsTheyWere) {
  write("old.png", "old");
  write("old.ps", "old");
  const std::vector<std::string> before = files();
  const struct {
    const char* what;
    const char* command;
  } CASES[] = {
      {"a missing product", "-ou old.png gone.nids"},
      {"a missing product on a page", "-de postscript,old.ps gone.nids"},
      {"no product", "-ou old.png text"},
      {"a disk that is full", "-ou old.png p.nids"},
      {"a disk that is full under a page", "-de postscript,old.ps p.nids"},
      {"a bad option", "-strict -nosuch -ou old.png p.nids"},
  };
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.what);
    // One block: less than any picture, more than any message.
    const bool full = std::string(c.what).find("full") != std::string::npos;
    program.run(c.command, full ? "sh -c 'ulimit -f 1; exec \"$0\" \"$@\"'" : "");
    EXPECT_EQ("old", program.read("old.png"));
    EXPECT_EQ("old", program.read("old.ps"));
    EXPECT_EQ(before, files());
  }
  // The input of the run is not replaced, whatever its name.
  const std::string product = program.read("p.nids");
  ASSERT_EQ(0, symlink("p.nids", program.path("link").c_str()));
  EXPECT_EQ(NOWRITE, program.run("-strict -ou png:link p.nids").status);
  EXPECT_TRUE(product == program.read("p.nids"));
}

TEST_F(TrustRun, ASignalLeavesNothingBehind) {
  write("old.ps", "old");
  mkfifo(program.path("never").c_str(), 0600);
  const std::vector<std::string> before = files();
  for (const char* signal : {"INT", "TERM", "HUP", "PIPE"}) {
    SCOPED_TRACE(signal);
    // The page is begun, the product never comes.
    program.run("",
                "sh -c '\"$0\" -pd us -de postscript,old.ps - < never & sleep 9 > never & hold=$!;"
                " while [ $(ls -A | wc -l) -lt " +
                    std::to_string(before.size() + 1) +
                    " ]; do sleep 0.02; done;"
                    " kill -" +
                    signal + " %1 2>/dev/null || kill -" + signal + " $(jobs -p | head -1); sleep 0.1; kill $hold'");
    EXPECT_EQ("old", program.read("old.ps"));
    EXPECT_EQ(before, files());
  }
}

TEST_F(TrustRun, ManyRunsIntoOneNameLeaveOneWholeFile) {
  ASSERT_EQ(0, program.run("-ou one.png p.nids").status);
  const std::string one = program.read("one.png");
  program.run("",
              "sh -c 'for i in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do \"$0\" -ou many.png p.nids & "
              "done; wait'");
  EXPECT_TRUE(one == program.read("many.png"));
  EXPECT_EQ((std::vector<std::string>{"many.png", "one.png", "p.nids", "text"}), files());
}

TEST_F(TrustRun, APlotHasStandardOutputForItself) {
  program.run("", "sh -c '\"$0\" -ou png:- p.nids > a.png 2> said'");
  program.run("-ou b.png p.nids");
  EXPECT_TRUE(program.read("a.png") == program.read("b.png"));
  EXPECT_NE(std::string::npos, program.read("said").find("NIDS RADAR PLOTTER"));
  program.run("", "sh -c '\"$0\" -de postscript,- p.nids > a.ps 2> said'");
  EXPECT_EQ(0u, program.read("a.ps").find("%!PS"));
}

TEST_F(TrustRun, FilesThatNobodyNamedNeitherRunNorWrite) {
  write("kyv.cfg",
        "*.filename: \"|touch pwned\"\n*.device: \"postscript,evil.ps\"\n*.output: evil.png\n*.title: Mine\n");
  const std::string said = program.run("-ou a.png p.nids").output;
  EXPECT_NE(std::string::npos, said.find("./kyv.cfg:1: filename:")) << said;
  write("kyv.map", "im:|touch${IFS}pwned;.gif\n");
  program.run("-ou a.png p.nids");
  program.run("p.nids");
  program.run("");
  EXPECT_EQ((std::vector<std::string>{"a.png", "kyv.cfg", "kyv.map", "p.nids", "text"}), files());
  // Named, the file may.
  program.run("-df kyv.cfg p.nids");
  EXPECT_TRUE(std::filesystem::exists(program.path("evil.ps")));
}

// A product cut anywhere never passes for a whole one.
TEST_F(TrustRun, DamageIsSaidAndShown) {
  using Bytes = std::vector<unsigned char>;
  NidsBuilder framed = product(), packed = product(), wrapped = product(), zlib = product();
  framed.heading(NidsBuilder::Heading::Frame);
  packed.body(NidsBuilder::Body::Bzip2);
  wrapped.wrap(NidsBuilder::Wrap::Gzip);
  zlib.body(NidsBuilder::Body::Zlib);
  const struct {
    const char* what;
    Bytes bytes;
  } FORMS[] = {{"plain", product().bytes()},
               {"framed", framed.bytes()},
               {"bzip2", packed.bytes()},
               {"gzip", wrapped.bytes()},
               {"zlib", zlib.bytes()}};
  for (const auto& form : FORMS) {
    program.write("cut.nids", form.bytes);
    const Program::Result whole = program.run("-strict -ou a.png cut.nids");
    EXPECT_EQ(NOERR, whole.status) << form.what << whole.output;
    for (const double part : {0.3, 0.6, 0.96, 1.0}) {
      SCOPED_TRACE(std::string(form.what) + " " + std::to_string(part));
      const auto length = static_cast<std::ptrdiff_t>(part * static_cast<double>(form.bytes.size() - 1));
      program.write("cut.nids", Bytes(form.bytes.begin(), form.bytes.begin() + length));
      const Program::Result r = program.run("-strict -ou a.png cut.nids");
      EXPECT_TRUE(r.status == NOINPUT || r.status == NODATA) << r.status << r.output;
      EXPECT_NE(std::string::npos, r.output.find("cut.nids ")) << r.output;
      EXPECT_TRUE(isMarked("cut.nids"));
    }
  }
  const Bytes bytes = product().bytes();
  program.write("cut.nids", Bytes(bytes.begin(), bytes.end() - 1));
  const Program::Result r = program.run("-ou a.png cut.nids");
  const std::string sizes = std::to_string(bytes.size() - 1) + " of " + std::to_string(bytes.size());
  EXPECT_NE(std::string::npos, r.output.find("cut.nids ends at byte " + sizes + ", in the symbology block"))
      << r.output;
  EXPECT_FALSE(isMarked("p.nids"));
}

TEST_F(TrustRun, AnEncryptedBodyIsTheOnlyThingSaid) {
  std::vector<unsigned char> bytes = product().message();
  bytes.resize(120);
  const std::string secret = "R3" + std::string(300, 'x');
  for (const bool packed : {false, true}) {
    std::vector<unsigned char> body(secret.begin(), secret.end());
    if (packed) body = NidsBuilder::bzip2Stream(body);
    body.insert(body.begin(), bytes.begin(), bytes.end());
    program.write("r3.nids", body);
    const Program::Result r = program.run("-strict -me warn -ou a.png r3.nids");
    EXPECT_EQ(NODATA, r.status);
    EXPECT_NE(std::string::npos, r.output.find("r3.nids is encrypted and cannot be read\n")) << r.output;
    EXPECT_EQ(std::string::npos, r.output.find("drawn")) << r.output;
    EXPECT_EQ(std::string::npos, r.output.find("divider")) << r.output;
  }
}

TEST_F(TrustRun, ARadarThatIsNotOnTheEarthIsNotDrawn) {
  NidsBuilder b = product();
  b.location(671.0f, -97.0f);
  program.write("p.nids", b.bytes());
  const Program::Result r = program.run("-strict -ou a.png p.nids");
  EXPECT_EQ(NODATA, r.status);
  EXPECT_NE(std::string::npos, r.output.find("p.nids has its radar at 671.000, -97.000, which is not on the earth"));
  EXPECT_TRUE(isMarked("p.nids"));
}

// As ls writes it, and of more names than a command line holds.
TEST_F(TrustRun, AListNeedsNoShell) {
  for (const int count : {1, 7, 40, 3000}) {
    for (int i = 0; i < count; ++i) {
      write("T_" + std::string(static_cast<std::size_t>(i % 9), 'x') + std::to_string(10000 + i), "x");
    }
    const std::string out = program.run("-if '%D/T_%?%?%?%?%?' -dp . -me none list").output;
    program.run("", "sh -c 'ls -x -T0 -w80 ./T_????? > listed'");
    EXPECT_EQ(program.read("listed"), out.substr(out.find('.'))) << count;
  }
  EXPECT_EQ(NOFILE, program.run("-strict -if '%D/no_%Y' -dp . list").status);
}

// What a shell puts in the place of '*', and pipes that nobody writes to.
TEST_F(TrustRun, FilesAreNotCommandsAndPipesAreNotFiles) {
  write("|touch${IFS}pwned", program.read("p.nids"));
  write("|touchXpwned", program.read("p.nids"));
  EXPECT_EQ(NOERR, program.run("-strict -ou a.png '|touch${IFS}pwned'").status);
  EXPECT_EQ(NOERR, program.run("-strict -ou a.png -if '|%5?Xpwned' -cu la -cur_time '#20240501'").status);
  EXPECT_FALSE(std::filesystem::exists(program.path("pwned")));
  ASSERT_EQ(0, mkfifo(program.path("fifo").c_str(), 0600));
  const Program::Result r = program.run("-strict -ou b.png fifo", "timeout 5");
  EXPECT_EQ(NOFILE, r.status) << r.output;
  EXPECT_NE(std::string::npos, r.output.find("It is a pipe and no file")) << r.output;
  EXPECT_EQ(NOERR, program.run("", "bash -c '\"$0\" -strict -ou c.png <(cat p.nids)'").status);
  std::filesystem::create_directory(program.path("png"));
  EXPECT_EQ(NOERR, program.run("-strict -ou png/a.png p.nids").status);
  EXPECT_TRUE(std::filesystem::exists(program.path("png/a.png")));
}

// A few hundred bytes claim what would take minutes and gigabytes.
TEST_F(TrustRun, AProductDrawsNoMoreThanProductsDo) {
  NidsBuilder texts = product(), vectors = product(), images = product(), grid, shapes;
  const std::vector<NidsBuilder::Line> lines(4000, {-1000, -1000, 1000, 1000});
  for (int i = 0; i < 3000; ++i) texts.text(8, 1, 10, 10, std::string(60, 'W'));
  for (int i = 0; i < 20; ++i) vectors.vectors(10, 1, lines);
  shapes.header(58, 1).location(35.333f, -97.278f);
  for (int i = 0; i < 12000; ++i) shapes.packet(3, {0, 10, 0, 10, 0, 20});
  for (int i = 0; i < 80; ++i) {
    images.radials(1800);
    for (int k = 0; k < 360; ++k) images.radial(static_cast<float>(k), 1.0f, std::vector<NidsBuilder::Run>{{15, 8}});
  }
  grid.header(37, 1).location(35.333f, -97.278f).thresholds({0x8002, 5, 10}).raster();
  for (int i = 0; i < 4000; ++i) grid.gridRow({{15, 1}, {15, 2}});
  struct {
    NidsBuilder& product;
    const char* said;
  } CASES[] = {{texts, "100000 characters"},
               {vectors, "100000 points of lines"},
               {shapes, "10000 symbols"},
               {images, "1920000 cells of images"},
               {grid, "1920000 cells of images"}};
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.said);
    program.write("p.nids", c.product.body(NidsBuilder::Body::Bzip2).bytes());
    const Program::Result r = program.run("-strict -de hpgl,a.hp p.nids");
    EXPECT_EQ(NOINPUT, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find(std::string("p.nids has more than ") + c.said)) << r.output;
    EXPECT_GT(256u << 20, std::filesystem::file_size(program.path("a.hp")));
    EXPECT_TRUE(isMarked("p.nids"));
  }
}

TEST_F(TrustRun, TextsOfAProductAreNoCommandsToTheTerminal) {
  NidsBuilder b = product();
  b.page().text(8, 1, 10, 10, "\033]0;owned\007X");
  program.write("p.nids", b.bytes());
  const std::string said = program.run("-ou a.png p.nids").output;
  EXPECT_NE(std::string::npos, said.find("?]0;owned?X")) << said;
  EXPECT_EQ(std::string::npos, said.find('\033'));
}

TEST_F(TrustRun, OldDataAreMarkedWithTheirAge) {
  const struct {
    const char* arguments;
    const char* label;
  } CASES[] = {{"-mx 90 -cur_time '#201305202145'", ""},
               {"-mx 60 -cur_time '#201305202145'", "DATA 88 MIN OLD"},
               {"-mx 2h -cur_time '#201305211616'", "DATA 19 H OLD"},
               {"-mx 1d -cur_time '#201305231616'", "DATA 2 DAYS OLD"},
               {"-cur_time '#201305231616'", ""}};
  NidsBuilder b = product();
  b.messageTime(15846, 73003);  // 20 May 2013, 20:16:43
  program.write("p.nids", b.bytes());
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.arguments);
    const std::string arguments = std::string(c.arguments) + " p.nids";
    const Program::Result r = program.run("-strict -ou a.png " + arguments);
    EXPECT_EQ(*c.label ? MISC : NOERR, r.status);
    EXPECT_EQ(*c.label != 0, r.output.find(" OLD") != std::string::npos) << r.output;
    EXPECT_NE(std::string::npos, r.output.find(c.label)) << r.output;
    EXPECT_EQ(*c.label != 0, isMarked(arguments));
  }
}

TEST_F(TrustRun, AProductOfAnotherRadarIsNotPassedOff) {
  const struct {
    const char* id;
    int source;
    const char* said;
  } CASES[] = {{"KTLX", 1, ""},
               {"tlx", 1, ""},
               {"KFTG", 1, "p.nids is a product of radar KTLX, not of KFTG"},
               {"KTLX", 9999, ""},  // unknown, yet at its place
               {"KFTG", 9999, "p.nids is a product of radar 9999 AT 35.33, -97.28, not of KFTG"},
               {"mine", 9999, ""}};
  for (const auto& c : CASES) {
    SCOPED_TRACE(std::string(c.id) + " " + std::to_string(c.source));
    NidsBuilder b = product();
    b.header(19, c.source);
    program.write("p.nids", b.bytes());
    const std::string arguments = std::string("-id ") + c.id + " p.nids";
    const Program::Result r = program.run("-strict -ou a.png " + arguments);
    EXPECT_EQ(*c.said ? NODATA : NOERR, r.status) << r.output;
    EXPECT_EQ(*c.said != 0, r.output.find("of radar") != std::string::npos) << r.output;
    EXPECT_NE(std::string::npos, r.output.find(c.said)) << r.output;
    EXPECT_EQ(*c.said != 0, isMarked(arguments));
  }
}

TEST_F(TrustRun, TimesAreThoseOfTheData) {
  NidsBuilder b = product();
  b.volumeTime(15846, 73003);  // 20 May 2013, 20:16:43
  program.write("p.nids", b.bytes());
  program.write("TLX_19R_201305202016", b.bytes());
  // Of a named file, and of each of a list.
  EXPECT_NE(std::string::npos, program.run("-ou a.png p.nids").output.find("for time: 20:16:43Z 20 MAY 2013"));
  // What was found for now and is older than an hour; not what was asked for.
  const struct {
    const char* arguments;
    bool said;
  } CASES[] = {{"-cur_time '#201305202145'", true},
               {"-cur_time '#201305202115'", false},
               {"-cur_time '#201305202145' -cu '#201305202020'", false},
               {"-cur_time '#201305202145' -cu 1", false}};
  for (const auto& c : CASES) {
    const std::string out =
        program.run(std::string("-strict -id TLX -ty 19R -if %D/%i_%t_%Y%m%d%h%n,min=1440 -ou a.png ") + c.arguments)
            .output;
    EXPECT_EQ(c.said, out.find(" OLD; -mx AGE marks") != std::string::npos) << c.arguments << out;
    EXPECT_NE(std::string::npos, out.find("Created")) << c.arguments << out;
  }
}

// All transfers of a run share one time.
TEST_F(TrustRun, AServerThatNeverAnswersIsWaitedForOnce) {
  HttpServer silent({});
  silent.stop();  // connections come in and wait
  const Program::Result r = program.run("-strict -nt 1 -ou a.png " + silent.url("/a.nids ") + silent.url("/b.nids"));
  EXPECT_EQ(NOFILE, r.status) << r.output;
  EXPECT_NE(std::string::npos, r.output.find("no time left for transfers; more with -nt SECONDS")) << r.output;
}

}  // namespace
