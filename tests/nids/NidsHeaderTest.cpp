#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "KYV/Kyv.h"
#include "KYV/NidsData.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "NidsBuilder.h"
#include "NidsTestFile.h"

namespace {

using namespace KYV;
using Heading = NidsBuilder::Heading;
using Body = NidsBuilder::Body;

struct Read {
  int stat = 0;
  NidsInfo info;
  DomainVal dom;
  std::string warnings;
};

Read readHeader(const std::vector<unsigned char>& content) {
  const TestFile f(content);
  NidsFile file(f.name());
  Read r;
  testing::internal::CaptureStderr();
  r.stat = file.readHeader(r.info);
  r.warnings = testing::internal::GetCapturedStderr();
  r.dom = file.getDomainVal();
  const auto at = r.warnings.find(f.name());
  if (at != std::string::npos) r.warnings.replace(at, std::string(f.name()).size(), "FILE");
  return r;
}

NidsBuilder product(int code, int source = 1) {
  return NidsBuilder().header(code, source).radial(0.0f, 1.0f, {{230, 5}});
}

TEST(NidsHeader, Float16HasItsOwnBias) {
  struct Case {
    int halfword;
    float value;
  };
  constexpr Case CASES[] = {{0x4000, 1.0f},
                            {0x0200, 1.0f},
                            {0xC000, -1.0f},
                            {0x0000, 0.0f},
                            {0x4400, 2.0f},
                            {0x4200, 1.5f},
                            {0x3C00, 0.5f},
                            {0x8001, -2.0f / 1024.0f},
                            {0x0400, 1.0f / 32768.0f},
                            {0x7FFF, (1.0f + 1023.0f / 1024.0f) * 32768.0f}};
  for (const Case& c : CASES) EXPECT_FLOAT_EQ(c.value, NidsFile::float16(c.halfword)) << std::hex << c.halfword;
  EXPECT_FLOAT_EQ(-1.0f, NidsFile::float16(static_cast<short>(0xC000))) << "sign-extended, as halfwords are kept";
}

TEST(NidsHeader, Float32IsTwoHalfwords) {
  EXPECT_FLOAT_EQ(1.0f, NidsFile::float32(0x3F80, 0));
  EXPECT_FLOAT_EQ(16.0f, NidsFile::float32(0x4180, 0));
  EXPECT_FLOAT_EQ(-2.5f, NidsFile::float32(static_cast<short>(0xC020), 0));
  EXPECT_FLOAT_EQ(3.14159274f, NidsFile::float32(0x4049, static_cast<short>(0x0FDB)));
}

TEST(NidsHeader, HalfwordsBecomeDataLevels) {
  struct Case {
    const char* what;
    int halfword;
    float level;
  };
  constexpr Case CASES[] = {{"plain", 0x0005, 5.0f},
                            {"missing", 0x8000, -100.0f},
                            {"special", 0x8001, -90.0f},
                            {"special 2", 0x8002, -90.0f},
                            {"tenths", 0x1005, 0.5f},
                            {"twentieths", 0x2005, 0.25f},
                            {"negative", 0x0105, -5.0f},
                            {"more than", 0x0814, 20.01f},
                            {"less than", 0x0414, 19.99f},
                            {"negative tenths", 0x1132, -5.0f},
                            {"missing stays", 0xBD04, -100.0f},
                            {"special tenths", 0x9002, -9.0f}};
  for (const Case& c : CASES) {
    EXPECT_FLOAT_EQ(c.level, readHeader(product(19).threshold(3, c.halfword).bytes()).info.thres[3]) << c.what;
  }
}

TEST(NidsHeader, DigitalProductsHaveAScale) {
  struct Case {
    int code;
    std::vector<int> halfwords;
    std::vector<float> thres;
  };
  const Case cases[] = {
      {94, {-320, 5, 254}, {-32.0f, 0.5f, 254.0f}},
      {182, {-635, 5, 254}, {-63.5f, 0.5f, 254.0f}},
      {99, {-635, 5, 254}, {-123.444f, 0.972f, 254.0f}},
      {138, {0, 25, 255}, {0.0f, 0.25f, 255.0f}},
      {81, {-60, 125, 256}, {-0.06f, 0.125f, 256.0f}},
      {135, {127, 1, 2, 128}, {127.0f, 1.0f, 2.0f, 128.0f}},
      {134, {0x4400, 0x4000, 20, 0x4200, 0xC000}, {2.0f, 1.0f, 20.0f, 1.5f, -1.0f}},
      {159, {0x4180, 0, 0x4300, 0}, {16.0f, 0.0f, 128.0f}},
      {161, {0, 0, 0x3F80, 0}, {1.0f, 0.0f, 1.0f}},  // no scale: 1
      {186, {7, 8, 9, 0x1005}, {-32.0f, 0.5f, 256.0f, 0.5f}},
  };
  for (const Case& c : cases) {
    const Read r = readHeader(product(c.code).thresholds(c.halfwords).bytes());
    for (std::size_t i = 0; i < c.thres.size(); i++) {
      EXPECT_FLOAT_EQ(c.thres[i], r.info.thres[i]) << "code " << c.code << " level " << i;
    }
  }
}

TEST(NidsHeader, CodesNameProducts) {
  struct Case {
    int code;
    int source;
    const char* name;
    float res;
  };
  constexpr Case CASES[] = {
      {19, 1, "Base reflectivity [dBZ]", 1.0f},
      {27, 1, "Base velocity [knt]", 1.0f},
      {28, 1, "Base spectrum width [knt]", 0.25f},
      {32, 1, "Digital hyb reflectivity [dBZ]", 1.0f},
      {186, 1, "Base reflectivity [dBZ]", 0.3f},
      {89, 1, "Not supported - 89", 0.0f},
      {158, 1, "Not supported - 158", 0.0f},
      {999, 1, "Not supported - 999", 0.0f},
      {67, 1, "Comp refl APR [dBZ]", 4.0f},
      {175, 1, "Digital storm total diff accum [in]", 0.25f},
      {180, 1, "Base reflectivity [dBZ]", 0.15f},
      {32, 10001, "Composite reflectivity [dBZ]", 2.0f},
      {6, 10001, "WARP Comp reflectivity [dBZ]", 8.0f},
      {107, 10001, "Sfc precipitation since 12Z [in]", 8.0f},
      {202, 10001, "Not supported - 202", 16.0f},
      {212, 10001, "Echo tops-30dBZ [ft]", 1.0f},
      {999, 10001, "Not supported - 999", 2.0f},
  };
  for (const Case& c : CASES) {
    const Read r = readHeader(product(c.code, c.source).bytes());
    EXPECT_EQ(1, r.stat);
    EXPECT_STREQ(c.name, r.info.info) << c.code;
    EXPECT_FLOAT_EQ(c.res, r.info.res) << c.code;
  }
}

TEST(NidsHeader, FamiliesOverlap) {
  const auto open = [](int code) {
    const TestFile f(product(code).bytes());
    auto file = std::make_unique<NidsFile>(f.name());
    NidsInfo info;
    EXPECT_EQ(1, file->readHeader(info));
    return file;
  };
  EXPECT_TRUE(open(159)->isDRef() && open(159)->isDual());
  EXPECT_TRUE(open(158)->isDRef() && !open(158)->isDual());
  EXPECT_TRUE(open(171)->isDPrec() && !open(171)->isDual());
  EXPECT_TRUE(open(186)->isDHR() && !open(186)->isBRef());
  EXPECT_TRUE(open(182)->isVel() && open(56)->isSRVel() && open(48)->isVAD() && open(81)->isDPA());
  EXPECT_FALSE(open(67)->isLRef() || open(999)->isBRef());
}

TEST(NidsHeader, LabelsTellModeRangeAndExtremes) {
  struct Case {
    const char* label;
    NidsBuilder product;
  };
  const Case cases[] = {
      {"Md=pr Rng=230(0.2) El=0.5 Mn,Mx=-64,64", product(99).param(3, 5).param(4, -64).param(5, 64)},
      {"Md=cl Rng=230(1.0) El=1.5 Mx=55", product(19).mode(1).param(3, 15).param(4, 55)},
      {" Rng=230(1.0) El=0.0 Mx=0", product(19).mode(7)},
      {"Md=mt Res=2.0 Mx=50", product(104, 10001).mode(0).param(4, 50)},
      {"Md=pr El=0.5 Stm=254-55 Mn,Mx=-9,7",
       product(56).param(3, 5).param(4, -9).param(5, 7).param(8, 553).param(9, 2543)},
      {"Md=pr Rng=230(4.0) Lyr=24-33 Mx=67", product(66).param(4, 67).param(5, 24).param(6, 33)},
      {"Md=pr Rng=230(2.0) B=2/01:05 Mx=75.3", product(80).param(4, 753).param(5, 19725).param(6, 65)},
      {"Md=pr Rng=230(2.0) B=2/01:05 Mx=2.89", product(138).param(4, 289).param(1, 19725).param(2, 65)},
      {"Md=pr Rng=320(0.2) El=0.5 Mn,Mx=-7.9,7.9", product(159).param(3, 5).param(4, -79).param(5, 79)},
      {"Md=pr Rng=320(0.2) El=0.5 Mn,Mx=0.2,1.0", product(161).param(3, 5).param(4, 60).param(5, 300)},
      {"Md=pr Rng=320(0.2) El=0.5", product(165).param(3, 5).param(4, 9)},
      {"Md=pr Rng=230(0.2) B=2/01:05 Mn,Mx=-1.25,2.50",
       product(175).param(1, 19725).param(2, 65).param(4, 250).param(7, -125)},
      {"Md=pr Mx=102", product(48).param(4, 102)},
  };
  for (const Case& c : cases) EXPECT_STREQ(c.label, readHeader(c.product.bytes()).info.misc);
}

TEST(NidsHeader, LongLabelsAreCut) {
  const Read r = readHeader(product(175).param(1, -32768).param(2, -32768).param(4, -32768).param(7, -32768).bytes());
  EXPECT_EQ(1, r.stat);
  EXPECT_GE(49u, std::string(r.info.misc).size());
}

TEST(NidsHeader, TimesCountFromDayOne) {
  const Read r =
      readHeader(product(19).messageTime(1, 10).volumeTime(19724, 3661).generationTime(32767, 2147483647).bytes());
  EXPECT_EQ(10, r.info.mess_date);
  EXPECT_EQ(19723LL * 86400 + 3661, r.info.date.secs);
  EXPECT_EQ(1, r.info.date.hour);
  EXPECT_EQ(Const::MISS, r.info.prod_date) << "beyond the field's range";
}

TEST(NidsHeader, RadarDomainsAreCentred) {
  const Read r = readHeader(product(19).location(35.333f, -97.278f).height(1000).bytes());
  EXPECT_EQ(DomainVal::PSTEREO, r.dom.proj);
  EXPECT_FLOAT_EQ(35.333f, r.dom.plat);
  EXPECT_FLOAT_EQ(-97.278f, r.dom.clon);
  EXPECT_EQ(460, r.info.nx);
  EXPECT_EQ(461, r.dom.nx);
  EXPECT_NEAR(0.01, r.dom.dx, 0.002) << "one kilometre";
  EXPECT_FLOAT_EQ(r.dom.dx, r.info.cres);
  EXPECT_NEAR(304.8, r.info.alt, 0.01);
}

TEST(NidsHeader, OtherDomains) {
  const Read mosaic = readHeader(product(104, 10001).param(10, 300).bytes());
  EXPECT_EQ(DomainVal::LAMB, mosaic.dom.proj);
  EXPECT_FLOAT_EQ(90.0f, mosaic.dom.plat);
  EXPECT_FLOAT_EQ(0.02f, mosaic.dom.dx);
  EXPECT_EQ(300, mosaic.info.nx);
  EXPECT_EQ(460, mosaic.info.ny);
  const Read grid = readHeader(NidsBuilder().header(81).precip(4).gridRow({{4, 7}}).gridRow({{4, 8}}).bytes());
  EXPECT_FLOAT_EQ(-105.0f, grid.dom.plon);
  EXPECT_FLOAT_EQ(0.047596f, grid.dom.dx);
  EXPECT_EQ(2, grid.info.nx);
  const Read profile = readHeader(NidsBuilder().header(48).text(8, 1, 1, 1, "ND").bytes());
  EXPECT_EQ(DomainVal::PIXEL, profile.dom.proj);
  EXPECT_EQ(512, profile.info.nx);
  EXPECT_FLOAT_EQ(255.0f, profile.dom.clat);
}

TEST(NidsHeader, EveryHeadingAndCompressionIsTheSameProduct) {
  struct Form {
    Heading heading;
    const char* ttaaii;
  };
  std::vector<unsigned char> levels(230);
  for (std::size_t i = 0; i < levels.size(); i++) levels[i] = static_cast<unsigned char>(i * 31);
  NidsBuilder b = NidsBuilder().header(94).thresholds({-320, 5, 254}).digital(230);
  for (int a = 0; a < 360; a++) {
    levels[static_cast<std::size_t>(a) % 230] ^= 0x5A;
    b.digitalRadial(static_cast<float>(a), 1.0f, levels);
  }
  for (const Form& form : {Form{Heading::None, "SDUS54"}, Form{Heading::Wmo, "SDUS54"}, Form{Heading::Wmo, "NXUS64"},
                           Form{Heading::Wmo, "NOUS63"}, Form{Heading::Wmo, "XYZW12"}, Form{Heading::Frame, "SDUS54"},
                           Form{Heading::ControlBlock, "SDUS54"}}) {
    for (const Body body : {Body::Plain, Body::Zlib, Body::Bzip2}) {
      for (const auto wrap : {NidsBuilder::Wrap::None, NidsBuilder::Wrap::Gzip, NidsBuilder::Wrap::Bzip2}) {
        SCOPED_TRACE(std::string(form.ttaaii) + " " + std::to_string(static_cast<int>(form.heading)) +
                     std::to_string(static_cast<int>(body)) + std::to_string(static_cast<int>(wrap)));
        const TestFile f(b.heading(form.heading, form.ttaaii).body(body).wrap(wrap).bytes());
        NidsFile file(f.name());
        NidsInfo info;
        NidsData data;
        ASSERT_EQ(1, file.readHeader(info));
        ASSERT_EQ(16, info.type);
        ASSERT_EQ(1, file.readData(data));
        ASSERT_EQ(-1, file.readPacket()) << "nothing follows";
        std::fill(levels.begin(), levels.end(), 0);
        for (std::size_t i = 0; i < levels.size(); i++) levels[i] = static_cast<unsigned char>(i * 31);
        int wrong = 0;
        for (int a = 0; a < 360; a++) {
          levels[static_cast<std::size_t>(a) % 230] ^= 0x5A;
          for (int j = 0; j < 230; j++) {
            const int n = levels[static_cast<std::size_t>(j)];
            wrong += data.getValue(a, j) != (n < 2 ? -9999.0f : static_cast<float>(n) * 0.5f - 32.0f);
          }
        }
        EXPECT_EQ(0, wrong);
      }
    }
  }
}

TEST(NidsHeader, WhatIsNoProductIsNamed) {
  const auto bytes = [](std::string_view s) { return std::vector<unsigned char>(s.begin(), s.end()); };
  struct Case {
    const char* what;
    std::vector<unsigned char> content;
    const char* warning;
  };
  const Case cases[] = {
      {"status", product(2).heading(Heading::Wmo, "NXUS64").bytes(),
       "FILE is a general status message, not a radar product\n"},
      {"free text 75", product(75).bytes(), "FILE is a free text message, not a radar product\n"},
      {"free text", bytes("NOUS63 KABR 281331\r\r\nFTMABR\r\r\nThe radar will be down for maintenance.\n"),
       "FILE is a free text message, not a radar product\n"},
      {"empty", {}, "FILE is no NIDS product\n"},
      {"one byte", {0}, "FILE is no NIDS product\n"},
      {"text", bytes("Dear reader,\nthis is a letter\nand no product at all, whatever its name may say.\n"),
       "FILE is no NIDS product\n"},
      {"code 0", product(0).bytes(), "FILE is no NIDS product\n"},
      {"negative code", product(-19).bytes(), "FILE is no NIDS product\n"},
      {"noise", product(30000).divider(7).bytes(), "FILE is no NIDS product\n"},
      {"encrypted", bytes("SDUS54 KOUN 202016\r\r\nN0RTLX\r\r\nR3 secret"), "FILE is encrypted and cannot be read\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Read r = readHeader(c.content);
    EXPECT_EQ(0, r.stat);
    EXPECT_EQ(c.warning, r.warnings);
    EXPECT_EQ(Const::MISS, r.info.code) << "untouched";
  }
}

TEST(NidsHeader, AWrongDividerAloneIsReadOn) {
  const Read r = readHeader(product(19).divider(7).bytes());
  EXPECT_EQ(1, r.stat);
  EXPECT_EQ(19, r.info.code);
}

TEST(NidsHeader, EncryptedBodiesLeaveTheHeader) {
  std::vector<unsigned char> content = product(19).message();
  content.resize(120);
  for (char c : {'R', '3', 'x', 'y'}) content.push_back(static_cast<unsigned char>(c));
  const Read r = readHeader(content);
  EXPECT_EQ(1, r.stat);
  EXPECT_EQ(19, r.info.code);
  EXPECT_NE(std::string::npos, r.warnings.find("FILE is encrypted and cannot be read\n"));
}

TEST(NidsHeader, AScanOf1970IsDatedByItsGeneration) {
  const Read r = readHeader(product(19).volumeTime(1, 100).generationTime(15846, 73003).bytes());
  EXPECT_EQ(15845L * 86400 + 73003, r.info.date.secs);
  EXPECT_NE(std::string::npos, r.warnings.find("FILE: the date of its scan cannot be")) << r.warnings;
}

TEST(NidsHeader, CutDescriptionsAreReported) {
  std::vector<unsigned char> content = product(19).message();
  content.resize(100);
  EXPECT_EQ("FILE is cut off within its header\n", readHeader(content).warnings);
}

TEST(NidsHeader, MessageClass8ListsTheDescription) {
  const TestFile f(product(19).location(35.333f, -97.278f).threshold(1, 0x1005).param(4, 55).bytes());
  NidsFile file(f.name());
  NidsInfo info;
  Kyv::setMessageLevel("out4");  // class 8
  testing::internal::CaptureStdout();
  EXPECT_EQ(1, file.readHeader(info));
  const std::string out = testing::internal::GetCapturedStdout();
  Kyv::setMessageLevel(6);
  EXPECT_NE(std::string::npos, out.find("Latitude: 35.333\nLongitude: -97.278\nHeight: 389\nOperational Mode: 2\n"));
  EXPECT_NE(std::string::npos, out.find("Threshold[2]: 4101 0.500000\n"));
  EXPECT_NE(std::string::npos, out.find("Param[3]: 55\n"));
  EXPECT_NE(std::string::npos, out.find("Offset to Symbolics: 60\nOffset to Graphics: 0\nOffset to Tabular: 0\n"));
}

// Rows of docs/products.md: | mnemonics | codes | product | levels | cells in km |, as many cells as codes or one for
// all.
TEST(NidsHeader, ListedProductsAreInTheCatalogue) {
  const auto numbers = [](const std::string& text) {
    std::vector<float> found;
    const std::regex number("[0-9.]+");
    for (std::sregex_iterator i(text.begin(), text.end(), number), end; i != end; ++i)
      found.push_back(std::stof(i->str()));
    return found;
  };
  std::ifstream page(std::string(RADMAP_SOURCE_DIR) + "/docs/products.md");
  const std::regex row(R"(\| `([^|]*)\|([^|]*)\|[^|]*\|[^|]*\|([^|]*)\|)");
  std::size_t rows = 0;
  std::smatch column;
  for (std::string line; std::getline(page, line);) {
    if (!std::regex_match(line, column, row)) continue;
    SCOPED_TRACE(line);
    ++rows;
    const std::vector<float> codes = numbers(column[2]), cells = numbers(column[3]);
    for (std::size_t i = 0; i < codes.size(); ++i) {
      const NidsInfo info = readHeader(product(static_cast<int>(codes[i])).bytes()).info;
      EXPECT_EQ(std::string::npos, std::string(info.info).find("Not supported"));
      if (cells.empty()) continue;
      EXPECT_FLOAT_EQ(cells[std::min(i, cells.size() - 1)], info.res);
    }
  }
  EXPECT_GT(rows, 30u);
}

}  // namespace
