#include <gtest/gtest.h>

#include <chrono>

#include "KYV/Kyv.h"
#include "NidsBuilder.h"
#include "NidsDecode.h"
#include "NidsTestFile.h"

// Damaged and hostile products: the sanitizers watch, and nothing takes longer than a second.

namespace {

using Bytes = std::vector<unsigned char>;

// Sanitizers make the reader several times slower.
#if defined(__SANITIZE_ADDRESS__)
constexpr double MAX_SECONDS = 5.0;
#else
constexpr double MAX_SECONDS = 1.0;
#endif

class NidsDamage : public testing::Test {
 protected:
  void SetUp() override { KYV::Kyv::setMessageLevel("none"); }
  void TearDown() override { KYV::Kyv::setMessageLevel(6); }

  // Read by arrays and run by run in turn.
  void decode(const Bytes& content) {
    const TestFile f(content);
    pull = !pull;
    decodeFile(f.name());
  }
  void decodeFile(const char* name) const {
    const auto start = std::chrono::steady_clock::now();
    decodeProduct(name, pull);
    EXPECT_GT(MAX_SECONDS, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count()) << name;
  }
  bool pull = false;
};

// A product of every packet kind, in two layers and two pages.
NidsBuilder everything() {
  NidsBuilder b = NidsBuilder().header(37).thresholds({0x8000, 5, 10, 15}).param(10, 100);
  b.radial(0.0f, 1.0f, {{3, 5}}).radial(1.0f, 1.0f, {{30, 5}}).raster().gridRow({{3, 1}}).gridRow({{3, 2}});
  b.text(8, 1, 1, 1, "text").barbs({{1, 2, 3, 4, 5}}).vectors(10, 1, {{1, 2, 3, 4}}).packet(15, {1, 2, 3, 4});
  b.precip(4).gridRow({{4, 1}}).digital(3).digitalRadial(0.0f, 1.0f, {1, 2, 3}).text(1, 0, 1, 1, "end");
  b.layer().text(1, 0, 1, 1, "second layer");
  b.page().text(8, 1, 1, 1, "page").vectors(7, 0, {{1, 2, 3, 4}}).page().text(8, 1, 1, 1, "page");
  return b;
}

const NidsBuilder::Body BODIES[] = {NidsBuilder::Body::Plain, NidsBuilder::Body::Zlib, NidsBuilder::Body::Bzip2};

TEST_F(NidsDamage, CutAtEveryLength) {
  for (const auto body : BODIES) {
    const Bytes whole = everything().body(body).heading(NidsBuilder::Heading::Frame).bytes();
    // Compressed bodies end within their stream: every third length will do.
    const std::size_t step = body == NidsBuilder::Body::Plain ? 1 : 3;
    for (std::size_t n = 0; n < whole.size(); n += step) decode({whole.begin(), whole.begin() + static_cast<long>(n)});
  }
}

TEST_F(NidsDamage, EveryHalfwordAtItsExtremes) {
  // First packets of each image kind, since those are what the header's geometry is made of.
  const NidsBuilder firsts[] = {everything(), NidsBuilder().header(41).raster().gridRow({{3, 1}}),
                                NidsBuilder().header(81).precip(4).gridRow({{4, 1}}),
                                NidsBuilder().header(134).digital(3).digitalRadial(0.0f, 1.0f, {1, 2, 3})};
  for (const NidsBuilder& b : firsts) {
    const Bytes whole = b.bytes();
    for (std::size_t at = 0; at + 1 < whole.size(); at += 2) {
      const bool even = at % 4 == 0;
      for (const int value : {0xFFFF, even ? 0x7FFF : 0x8000}) {
        Bytes changed = whole;
        changed[at] = static_cast<unsigned char>(value >> 8);
        changed[at + 1] = static_cast<unsigned char>(value & 255);
        decode(changed);
      }
    }
  }
}

TEST_F(NidsDamage, ClaimsDoNotBecomeMemory) {
  const NidsBuilder claims[] = {
      NidsBuilder().header(19).radials(65535).radial(0.0f, 1.0f, {{3, 5}}).claim(65535),
      NidsBuilder().header(94).digital(65535).digitalRadial(0.0f, 1.0f, {2, 3}).claim(65535),
      NidsBuilder().header(37).raster().gridRow({{3, 5}}).claim(65535),
      NidsBuilder().header(81).precip(65535).gridRow({{3, 5}}).claim(65535),
      NidsBuilder().header(104, 10001).param(10, 32767).raster().gridRow({{3, 5}}),
  };
  for (const NidsBuilder& b : claims) {
    const TestFile f(b.bytes());
    KYV::NidsFile file(f.name());
    KYV::NidsInfo info;
    KYV::NidsData data;
    ASSERT_EQ(1, file.readHeader(info));
    file.readData(data);
    EXPECT_GE(720 * 4096, data.data_size);
  }
}

TEST_F(NidsDamage, LargeGridsNeedTheirData) {
  const TestFile f(NidsBuilder().header(37).raster().gridRow({{3, 5}}).claim(4000).bytes());
  KYV::NidsFile file(f.name());
  KYV::NidsInfo info;
  KYV::NidsData data;
  ASSERT_EQ(1, file.readHeader(info));
  file.readData(data);
  EXPECT_EQ(0, data.data_size);
}

TEST_F(NidsDamage, BombsEnd) {
  const Bytes zeros(std::size_t{40} << 20);
  Bytes body = NidsBuilder().header(58).offsets(60, 0x3FFFFFFF, 0).message();
  body.resize(120);
  const Bytes bomb = NidsBuilder::bzip2Stream(zeros);
  body.insert(body.end(), bomb.begin(), bomb.end());
  decode(body);
  decode(NidsBuilder::gzipFile(zeros));
  // Streams without content, one after another.
  Bytes empty = {'S', 'D', '\n', 'N', '\n'};
  const Bytes stream = NidsBuilder::zlibStream({});
  for (int i = 0; i < 20000; i++) empty.insert(empty.end(), stream.begin(), stream.end());
  decode(empty);
}

TEST_F(NidsDamage, SomeDamagedSamples) {
  const std::string folder = sampleFolder();
  if (folder.empty()) GTEST_SKIP() << "no samples: set RADMAP_SAMPLES to their folder";
  unsigned state = 1;
  const auto random = [&](std::size_t n) {
    state = state * 1664525u + 1013904223u;
    return static_cast<std::size_t>(state >> 8) % n;
  };
  for (const char* name :
       {"KLSX_NVW_20211211_0119.nids", "KTLX_NCO_20130520_1816.nids", "TATL_NCR_20260601_0000_zlib_bad_scan_date.nids",
        "KTLX_DSP_20130520_2016.nids", "KLSX_NMD_20211211_0152.nids", "KTLX_NTV_20130520_2016.nids",
        "KLOT_NSS_20220116_0931_odd_offsets.nids", "TJUA_NST_20260709_2026_no_symbology.nids"}) {
    const Bytes whole = readAll(folder + "/" + name);
    ASSERT_FALSE(whole.empty()) << name;
    for (int i = 0; i < 10; i++) {
      decode({whole.begin(), whole.begin() + static_cast<long>(random(whole.size()))});
      Bytes changed = whole;
      for (int k = 0; k < 4; k++) changed[random(whole.size())] = static_cast<unsigned char>(random(256));
      changed[random(std::min<std::size_t>(whole.size(), 300))] = 0xFF;
      decode(changed);
    }
  }
}

TEST_F(NidsDamage, HostileFiles) {
  const std::string folder = std::string(RADMAP_SOURCE_DIR) + "/tests/hostile";
  ASSERT_TRUE(std::filesystem::exists(folder));
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    for (int time = 0; time < 2 && entry.path().extension() == ".nids"; time++) {
      pull = !pull;
      decodeFile(entry.path().c_str());
    }
  }
}

}  // namespace
