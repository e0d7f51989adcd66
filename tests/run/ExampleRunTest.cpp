// Runs what README.md and docs/ show: each command, each option with a value, each entry of a table that a header such
// as `-cu` or "Item of `-pa`" makes one. What a new example needs beyond FILE and DIR goes into STAND_INS.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "KYV/KyvResrc.h"
#include "KYV/ResrcDBItem.h"
#include "NidsBuilder.h"
#include "Program.h"

namespace {

// Examples that begin so are not run, or may leave everything as it is.
struct Special {
  const char* begin;
  bool run;
  const char* why;
};
constexpr Special SPECIALS[] = {
    {"-de display", false, "needs a display"},
    {"radmap FILE", false, "needs a display"},
    {"-pa ref", true, "looks for new data while a window is open"},
    {"-ic yes", true, "is for windows"},
    {"-ip DIR", true, "says where the picture goes"},
    {"-de raster", true, "is what happens without a display"},
    {"-cu 'la'", true, "finds the latest file, as without it"},
    {"-cu 'la#10'", true, "finds the latest file, as without it"},
    {"-ho=-:15", true, "is where the newest file is"},
    {"-if 'nids'", true, "is the standard"},
    {"-if 'nids:i=tlx", true, "tells what the others are given by -id and -ty"},
    {"-ty n0q", true, "is what the others run with"},
    {"-mx ", true, "marks what is old, and the newest file is not"},
    {"-nt ", true, "is for servers"},
    {"-pa 'over'", true, "draws again what is drawn"},
    {"-pa 'under'", true, "draws again what is drawn"},
};

struct StandIn {
  const char* name;
  std::string_view content;
};
constexpr StandIn STAND_INS[] = {
    {"a.res", "*.title Plain\n"},
    {"b.res", "IF tag\n*.title Tagged\nEND\n"},
    {"kyv.cfg", "other.title Other\nradmap.big.title Big\n"},
    {"own.list", "us_states:white\n"},
    {"my.kml",
     "<?xml version='1.0'?><kml><Placemark><LineString><coordinates>-98,36 -96,36</coordinates></LineString>"
     "</Placemark></kml>"},
    {"my.cnv", "nids %D/TLX/N0Q/N0Q_%Y%m%d_%h%n - 120,nids min=1440\n"},
    {"my.cty", "HERE              -- US HERE 1  36.000  -97.000  300 99999\n"},
    {"DIR/kyv.map", "us_states:white\n"},
    {"lpr", "#!/bin/sh\ncat > printed\n"},
    // One grey pixel.
    {"logo.png",
     {"\211PNG\015\012\032\012\000\000\000\015IHDR\000\000\000\001\000\000\000\001\010\000\000\000\000:~"
      "\233U\000\000\000\012IDATx\234ch\000\000\000\202\000\201w\315r\266\000\000\000\000IEND\256B`\202",
      67}},
};

// The present moment. Files of the convention `nids` lie half an hour apart up to then, and one of each other.
constexpr const char* NOW = "kyvcurtime=202405011903 PATH=.:/usr/bin:/bin";
constexpr int APRIL_30 = 19844;  // 2024; days, 1 is 1 January 1970
constexpr int DAY = 24 * 60;
constexpr int TLX = 1, TTPA = 3044;  // source numbers of radars
constexpr int LAST = DAY + 19 * 60;  // minutes from then
constexpr const char* FILES[] = {
    "FILE",
    "DIR/TLX/N0Q/N0Q_20240501_1841",
    "DIR/N0Q/TLX/20240501/Level3_TLX_N0Q_20240501_1842.nids",
    "DIR/KOUN_SDUS54_N0QTLX_202405011843",
    "DIR/TLX_N0Q_2024_05_01_18_44_00",
    "DIR/SL.us008001/DF.of/DC.radar/DS.n0q/SI.tlx/sn.last",
    "DIR/SL.us008001/DF.of/DC.radar/DS.180z0/SI.ttpa/sn.last",
    "DIR/2024/05/01/n0q_ktlx_1847",
    // Of ten days and twelve and a half hours ago, and the last noon of a 31st.
    "DIR/nids/TLX/N0Q/N0Q_20240421_0633",
    "DIR/nids/TLX/N0Q/N0Q_20240331_1200",
};

// A product in which every option shows: all levels, near and far, a storm as symbol and in a table, its time in a
// label.
std::vector<unsigned char> product(int day, int minute, int source) {
  std::vector<int> levels = {0x8002};
  std::vector<NidsBuilder::Run> runs;
  for (int i = 1; i < 16; ++i) levels.push_back(5 * i), runs.push_back({7, i});
  NidsBuilder b;
  b.header(38, source).location(35.333f, -97.278f).thresholds(levels).volumeTime(day, minute * 60);
  b.packet(15, {0, 200, 0, 200, 'A', '0'}).radials(115);
  for (int i = 0; i < 360; i += 12) b.radial(static_cast<float>(i), 2.0f, runs);
  b.page();
  b.text(8, 1, 0, 1, " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT ");
  b.text(8, 1, 0, 11, "   A0   228/ 28 TVS     9   90/100/ 2.50    62  66 12.3  48.6   241/ 31  ");
  return b.bytes();
}

bool isOption(const std::string& text) { return std::regex_search(text, std::regex("^-[A-Za-z]\\w*( |=|$)")); }

std::vector<std::string> findAll(const std::string& text, const char* pattern) {
  const std::regex form(pattern);
  std::vector<std::string> found;
  for (std::sregex_iterator i(text.begin(), text.end(), form), end; i != end; ++i) found.push_back((*i)[1]);
  return found;
}

// The cells of a line of a table; any other line is one.
std::vector<std::string> splitCells(const std::string& line) {
  if (!line.starts_with('|')) return {line};
  std::vector<std::string> cells = findAll(std::regex_replace(line, std::regex(R"(\\\|)"), "\1"), R"(\|([^|]*))");
  for (std::string& cell : cells) std::replace(cell.begin(), cell.end(), '\1', '|');
  return cells;
}

std::vector<std::string> getExamples(std::istream& document) {
  std::vector<std::string> examples, options;  // options: those of the columns of the table
  bool inTable = false, fenced = false;
  for (std::string line; std::getline(document, line);) {
    const std::size_t start = line.find_first_not_of(' ');
    if (line.starts_with("```")) fenced = !fenced;
    if (fenced || (start != std::string::npos && start >= 4)) {
      if (line.compare(start, 7, "radmap ") == 0) examples.push_back(line.substr(start, line.find(" # ") - start));
      continue;
    }
    const std::vector<std::string> cells = splitCells(line);
    const bool isHeader = line.starts_with('|') && !inTable;
    inTable = line.starts_with('|');
    if (isHeader || !inTable) options.assign(cells.size(), "");
    for (std::size_t i = 0; i < cells.size(); ++i) {
      for (const std::string& code : findAll(cells[i], "`([^`]+)`")) {
        const std::string option = i < options.size() ? options[i] : "";
        if (isHeader && isOption(code)) options[i] = code;
        if (isOption(code) || code.starts_with("radmap ")) {
          examples.push_back(code);
        } else if (!option.empty() && !code.ends_with('=')) {
          // An item goes on behind a value.
          examples.push_back(option + (option.find(' ') == std::string::npos ? " '" : ",'") + code + "'");
        }
      }
    }
  }
  return examples;
}

// A folder with products by all conventions and the files that examples name, in which examples are tried.
class Reader {
 public:
  Reader() {
    for (int minute = 0; minute <= LAST; minute += 30) {
      const int day = minute / DAY;
      char name[80];
      std::snprintf(name, sizeof name, "DIR/nids/TLX/N0Q/N0Q_%d_%02d%02d", day ? 20240501 : 20240430, minute % DAY / 60,
                    minute % 60);
      write(name, product(APRIL_30 + day, minute % DAY, TLX));
    }
    int minute = 18 * 60 + 40;
    for (const std::string name : FILES) {
      const int source = name.find("ttpa") == std::string::npos ? TLX : TTPA;
      write(name, product(APRIL_30 + 1, minute++, source));
    }
    for (const StandIn& s : STAND_INS) write(s.name, {s.content.begin(), s.content.end()});
    std::filesystem::permissions(program.path("lpr"), std::filesystem::perms::owner_all);
    write("errors", {});
    for (const Entry& entry : Listing(program.path("."))) own.insert(entry.path());
    help = program.run("-h").output;
  }

  // What is wrong with an example; empty for one that does what it says.
  std::string complain(const std::string& example) {
    for (const std::string& name : findAll(example, "(?:^|\\s)-([A-Za-z]\\w*)")) {
      KYV::ResrcDBItem item;
      const bool isListed = help.find("\n -" + name + " ") != std::string::npos;
      if (!isListed && !KYV::KyvResrc::get(name.c_str(), item)) return "there is no option -" + name;
    }
    const auto* special = std::find_if(std::begin(SPECIALS), std::end(SPECIALS),
                                       [&](const Special& s) { return example.starts_with(s.begin); });
    const bool isMention = isOption(example) && example.find_first_of(" =") == std::string::npos;
    if (isMention || (special != std::end(SPECIALS) && !special->run)) return "";

    // An example that names no file of its own is drawn as a picture, which has to differ from that without it.
    std::size_t promised = findAll(example, "(?:^|\\s)-(ou|de) (?!raster)").size();
    const bool compared = isOption(example) && promised == 0;
    if (compared) promised = 1;
    const std::string options = isOption(example) ? example : example.substr(example.find(' '));
    const Outcome outcome = run(options + (compared ? " -ou out.png" : ""));
    if (!outcome.errors.empty()) return outcome.errors;
    if (outcome.files < promised) return "a file is missing\n" + outcome.text;
    if (!compared || special != std::end(SPECIALS)) return "";
    if (plain.empty()) plain = run("-ou out.png").text;
    return outcome.text == plain ? "it changes nothing" : "";
  }

 private:
  using Entry = std::filesystem::directory_entry;
  using Listing = std::filesystem::recursive_directory_iterator;
  struct Outcome {
    std::string errors;     // standard error
    std::size_t files = 0;  // written, and not empty
    std::string text;       // standard output and the files
  };

  void write(const std::string& name, const std::vector<unsigned char>& bytes) const {
    std::filesystem::create_directories(std::filesystem::path(program.path(name)).parent_path());
    program.write(name, bytes);
  }

  // Runs the program on the newest product unless the options tell another; the files that it writes are taken away.
  Outcome run(std::string options) const {
    options.insert(options.begin(), ' ');
    for (const std::string source : {" -id TLX", " -ty N0Q", " -dp DIR"}) {
      if (options.find(source.substr(0, 5)) == std::string::npos) options += source;
    }
    // What is run adds standard error to the output: here to that of `exit`.
    const Program::Result result = program.run(options + " 2> errors; exit $?", NOW);
    Outcome outcome = {program.read("errors"), 0, result.output};
    if (result.status != 0) outcome.errors += "status " + std::to_string(result.status);
    std::map<std::string, std::string> made;
    for (const Entry& entry : Listing(program.path("."))) {
      if (entry.is_regular_file() && !own.contains(entry.path())) made[entry.path()] = TempDir::read(entry.path());
    }
    for (const auto& [path, content] : made) {
      outcome.files += content.empty() ? 0 : 1;
      outcome.text += path + content;
      std::filesystem::remove(path);
    }
    return outcome;
  }

  Program program;
  std::set<std::string> own;
  std::string help, plain;
};

class DocumentRun : public testing::TestWithParam<std::string> {};

TEST_P(DocumentRun, ExamplesDoWhatTheySay) {
  std::ifstream document(std::string(RADMAP_SOURCE_DIR) + "/" + GetParam());
  ASSERT_TRUE(document.is_open());
  const std::vector<std::string> examples = getExamples(document);
  if (examples.empty()) return;
  Reader reader;
  for (const std::string& example : examples) EXPECT_EQ("", reader.complain(example)) << example;
}

std::vector<std::string> getDocuments() {
  std::vector<std::string> names = {"README.md"};
  for (const auto& entry : std::filesystem::directory_iterator(std::string(RADMAP_SOURCE_DIR) + "/docs")) {
    if (entry.path().extension() == ".md") names.push_back("docs/" + entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentRun, testing::ValuesIn(getDocuments()), [](const auto& test) {
  return std::regex_replace(std::filesystem::path(test.param).stem().string(), std::regex("\\W"), "_");
});

TEST(DocumentExamples, AreFoundWhereverTheyStand) {
  std::istringstream document(
      "    radmap -ou a.png FILE # drawn\n    radmap.title x\n\n```\nradmap -h\n```\n"
      "Text `-pd us`, `out` and `radmap list`.\n\n"
      "| `-cu` | File |\n|---|---|\n| `la`, `#2024` | `x` |\n| `-nh 2` | - |\n\n"
      "| Do | Item of `-de hpgl,a` |\n|---|---|\n| `b` | `-de \"hpgl,\\|lpr\"`, `co=`, `a4` |\n");
  std::string found;
  for (const std::string& example : getExamples(document)) found += example + "\n";
  EXPECT_EQ(
      "radmap -ou a.png FILE\nradmap -h\n-pd us\nradmap list\n-cu\n-cu 'la'\n-cu '#2024'\n-nh 2\n"
      "-de hpgl,a\n-de \"hpgl,|lpr\"\n-de hpgl,a,'a4'\n",
      found);
}

TEST(DocumentExamples, ThatAreNotSoAreToldOf) {
  Reader reader;
  for (const char* example :
       {"-cofm", "-cofm green", "-me=-out6", "-pd nowhere", "-pa fog", "-pa dist=", "-mf none.kml", "-va none",
        "-cu 19990101_1200", "-dp none", "-lo im:none.png:ll", "-ic yes -nope", "-de postscript,/proc/none/map.ps",
        "radmap -ou map.png none.nids", "radmap -ou map.txt FILE"}) {
    EXPECT_NE("", reader.complain(example)) << example;
  }
}

}  // namespace
