#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <map>
#include <nlohmann/json.hpp>

#include "KYV/NidsData.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "KYV/NidsRadial.h"
#include "KYV/NidsRaw.h"
#include "KYV/NidsRun.h"
#include "KYV/NidsText.h"
#include "NidsTestFile.h"

// Real products against what other decoders found in them.

namespace {

using namespace KYV;
using Json = nlohmann::json;

struct Line {  // a radial or row, raw level by raw level
  NidsRadial radial;
  std::vector<int> levels;
  std::vector<float> values;
};

constexpr long YEAR = 365L * 86400;

long seconds(const std::string& text) {  // "2013-05-20 20:16:43"
  std::tm t{};
  return strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &t) ? timegm(&t) : -1;
}

class NidsSample : public testing::Test {
 protected:
  void SetUp() override {
    folder = sampleFolder();
    if (folder.empty()) GTEST_SKIP() << "no samples: set RADMAP_SAMPLES to their folder";
    truth = Json::parse(std::ifstream(folder + "/truth.json"));
  }
  template <class Check>
  void each(Check check) {
    for (const auto& [name, facts] : truth.items()) {
      SCOPED_TRACE(name);
      check(folder + "/" + name, facts);
    }
  }
  static bool hasImage(const Json& facts) { return facts.contains("image") && facts["image"].contains("level_counts"); }
  std::string folder;
  Json truth;
};

std::vector<Line> pull(NidsFile& file) {
  std::vector<Line> lines;
  for (;;) {
    Line line;
    if ((file.isPacketRadial() ? file.readRadial(line.radial) : file.readRastor()) <= 0) return lines;
    NidsRun run;
    while (file.readRun(run) > 0) {
      line.levels.insert(line.levels.end(), static_cast<std::size_t>(run.run), run.ival);
      line.values.insert(line.values.end(), static_cast<std::size_t>(run.run), run.val);
    }
    lines.push_back(std::move(line));
  }
}

// The array by the rules of slots: nearest slot, a later radial over an earlier one, a single gap filled.
std::vector<float> assemble(const std::vector<Line>& lines, long nbin) {
  const long slots = lines.size() > 700 ? 720 : 360;
  const float step = 360.0f / static_cast<float>(slots);
  std::vector<float> all(static_cast<std::size_t>(slots * nbin), -200.0f);
  long prev = -9999;
  for (const Line& line : lines) {
    if (line.radial.ang0 > 360.0f) break;
    const long slot = std::lround(line.radial.ang0 / step) % slots;
    if (slot - prev == 2 || slot - prev == 2 - slots) {
      std::copy_n(all.begin() + prev * nbin, nbin, all.begin() + (prev + 1) % slots * nbin);
    }
    const auto n = std::min(line.values.size(), static_cast<std::size_t>(nbin));
    std::copy_n(line.values.begin(), n, all.begin() + slot * nbin);
    prev = slot;
  }
  return all;
}

TEST_F(NidsSample, HeadersHoldTheFields) {
  int seen = 0;
  each([&](const std::string& name, const Json& facts) {
    NidsFile file(name.c_str());
    NidsInfo info;
    if (facts.contains("radar_product") && !facts["radar_product"]) {
      EXPECT_EQ(0, file.readHeader(info));
      return;
    }
    ASSERT_EQ(1, file.readHeader(info));
    const Json& message = facts["message"];
    const Json& description = facts["description"];
    EXPECT_EQ(message["code"], info.code);
    EXPECT_EQ(message["source"], info.src);
    EXPECT_EQ(seconds(message["time"]), info.mess_date);
    EXPECT_FLOAT_EQ(description["lat"], info.lat);
    EXPECT_FLOAT_EQ(description["lon"], info.lon);
    EXPECT_NEAR(description["height_ft"].get<double>() * 0.3048, info.alt, 0.01);
    EXPECT_EQ(description["mode"], info.mode);
    EXPECT_EQ(description["vcp"], info.vcp);
    EXPECT_EQ(description["sequence"], info.seq);
    // a volume scan in 1970 has no date: the product stands at the time of its making
    const long volume = seconds(description["volume_time"]);
    EXPECT_EQ(volume >= YEAR ? volume : seconds(description["generation_time"]), info.date.secs);
    EXPECT_EQ(seconds(description["generation_time"]), info.prod_date);
    seen++;
  });
  EXPECT_LE(50, seen);
}

// All radials with their own angles, those from 360 degrees on as well.
TEST_F(NidsSample, ImagesStandAsTheyAre) {
  int seen = 0;
  each([&](const std::string& name, const Json& facts) {
    if (!hasImage(facts)) return;
    const Json& image = facts["image"];
    NidsFile file(name.c_str());
    NidsInfo info;
    NidsRaw raw;
    ASSERT_EQ(1, file.readHeader(info));
    ASSERT_EQ(1, file.readLevels(raw));
    EXPECT_EQ(image["kind"] != "radial", raw.grid);
    EXPECT_EQ(raw.grid ? image["columns"] : image["bins"], raw.width);
    EXPECT_EQ(raw.grid ? image["rows"] : image["radials"], raw.rows);
    std::map<std::string, int> counts;
    for (const int level : raw.levels) ++counts[std::to_string(level)];
    // Bytes that pad a radial are none of its bins.
    const bool padded = !raw.grid && image["row_len_max"] > image["bins"];
    for (const auto& [level, count] : image["level_counts"].items()) {
      if (padded) continue;
      EXPECT_EQ(count, counts[level]) << "level " << level;
    }
    if (raw.grid) return;
    EXPECT_NEAR(image["first_start_angle"].get<float>(), raw.rays.front().start, 0.001f);
    EXPECT_NEAR(image["first_width"].get<float>(), raw.rays.front().width, 0.001f);
    const auto [least, most] = std::minmax_element(raw.rays.begin(), raw.rays.end(),
                                                   [](const auto& a, const auto& b) { return a.start < b.start; });
    EXPECT_NEAR(std::fmod(std::min(image["start_angle_min"].get<float>(), 360.0f), 360.0f), least->start, 1.0f);
    EXPECT_GT(360.0f, most->start);
    ++seen;
  });
  EXPECT_LE(30, seen);
}

TEST_F(NidsSample, ImagesHoldTheLevels) {
  int seen = 0;
  each([&](const std::string& name, const Json& facts) {
    if (!hasImage(facts)) return;
    const Json& image = facts["image"];
    NidsFile file(name.c_str());
    NidsInfo info;
    ASSERT_EQ(1, file.readHeader(info));
    const bool radial = image["kind"] == "radial";
    ASSERT_EQ(radial, file.isPacketRadial());
    const std::vector<Line> lines = pull(file);
    const std::size_t bins = radial ? image["bins"] : image["columns"];
    ASSERT_EQ(radial ? image["radials"] : image["rows"], lines.size());
    if (radial) {
      EXPECT_EQ(bins, file.getNbin());
      EXPECT_EQ(lines.size(), file.getNrad());
      EXPECT_FLOAT_EQ(image["first_start_angle"], lines.front().radial.ang0);
      EXPECT_FLOAT_EQ(image["last_start_angle"], lines.back().radial.ang0);
      EXPECT_FLOAT_EQ(image["first_width"], lines.front().radial.ang1);
    }
    std::map<int, int> counts;
    std::size_t shortest = lines[0].levels.size();
    std::size_t longest = 0;
    for (const Line& line : lines) {
      shortest = std::min(shortest, line.levels.size());
      longest = std::max(longest, line.levels.size());
      for (std::size_t i = 0; i < std::min(bins, line.levels.size()); i++) counts[line.levels[i]]++;
    }
    EXPECT_EQ(image["row_len_min"], shortest);
    EXPECT_EQ(image["row_len_max"], longest);
    std::map<int, int> expected;
    for (const auto& [level, count] : image["level_counts"].items()) expected[std::stoi(level)] = count;
    EXPECT_EQ(expected, counts);
    for (const Json& probe : image["probes"]) {
      EXPECT_EQ(probe[2], lines[probe[0]].levels[probe[1]]);
    }
    seen++;
  });
  EXPECT_LE(40, seen);
}

TEST_F(NidsSample, ArraysAgreeWithTheRuns) {
  each([&](const std::string& name, const Json& facts) {
    if (!hasImage(facts)) return;
    NidsFile file(name.c_str());
    NidsInfo info;
    ASSERT_EQ(1, file.readHeader(info));
    const std::vector<Line> lines = pull(file);
    NidsData data;
    ASSERT_EQ(1, file.open(name.c_str()));
    ASSERT_EQ(1, file.readHeader(info));
    ASSERT_EQ(1, file.readData(data));
    std::vector<float> expected;
    if (data.type == 0) {
      expected = assemble(lines, data.nbin);
    } else {
      for (const Line& line : lines) {
        std::vector<float> cells = line.values;
        cells.resize(static_cast<std::size_t>(data.nbin), -100.0f);
        expected.insert(expected.end(), cells.begin(), cells.end());
      }
    }
    EXPECT_EQ(expected, std::vector<float>(data.data, data.data + expected.size()));
  });
}

TEST_F(NidsSample, GraphicPagesHoldTheText) {
  int seen = 0;
  each([&](const std::string& name, const Json& facts) {
    if (!facts.contains("graphic") || facts["graphic"].is_null() || facts["symbology"].is_null()) return;
    NidsFile file(name.c_str());
    NidsInfo info;
    ASSERT_EQ(1, file.readHeader(info));
    if (hasImage(facts)) {
      NidsData data;
      file.readData(data);
    }
    while (file.readPacket() > 0) {
    }
    ASSERT_EQ(1, file.graphic());
    for (const Json& page : facts["graphic"]["pages"]) {
      ASSERT_EQ(page["page"], file.graphicLayer());
      std::vector<std::string> found;
      NidsText text;
      while (file.readPacket() > 0) {
        if (file.isPacketText() && file.readText(text) > 0) found.emplace_back(text.getData());
      }
      std::vector<std::string> expected;
      for (const Json& line : page["text"]) expected.push_back(line[4].get<std::string>().substr(0, 99));
      EXPECT_EQ(expected, found);
      seen++;
    }
  });
  EXPECT_LE(20, seen);
}

}  // namespace
