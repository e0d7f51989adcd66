#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <numeric>
#include <thread>

#include "KYV/NidsFile.h"
#include "NidsBuilder.h"
#include "NidsTestFile.h"

namespace {

using namespace KYV;
using Bytes = std::vector<unsigned char>;

Bytes text(std::string_view s) { return {s.begin(), s.end()}; }

void append(Bytes& to, const Bytes& from) {
  to.reserve(to.size() + from.size());
  to.insert(to.end(), from.begin(), from.end());
}

// Bytes without pattern, so that they compress badly.
Bytes noise(std::size_t n) {
  Bytes to(n);
  unsigned state = 1;
  for (unsigned char& b : to) b = static_cast<unsigned char>((state = state * 1664525u + 1013904223u) >> 24);
  return to;
}

// All that the reader delivers, read in pieces of a size that divides nothing.
Bytes drain(NidsFile& file) {
  Bytes all;
  unsigned char b = 0;
  while (file.readBytes(&b, 1) == 1) all.push_back(b);
  return all;
}

Bytes deliver(const Bytes& content) {
  const TestFile f(content);
  NidsFile file(f.name());
  EXPECT_TRUE(file.isOpen());
  return drain(file);
}

TEST(NidsFile, NumbersAreBigEndian) {
  const TestFile f({0xFF, 0xFF, 0xFF, 0xFF, 0x01, 0x02, 0x80, 0, 0, 1, 0xFF, 0xFF, 0xFF, 0xFE, 9});
  NidsFile file(f.name());
  short s = 0;
  unsigned short u = 0;
  int l = 0;
  unsigned int ul = 0;
  EXPECT_EQ(1, file.readShort(s));
  EXPECT_EQ(-1, s);
  EXPECT_EQ(1, file.readUshort(u));
  EXPECT_EQ(65535, u);
  EXPECT_EQ(258, file.readShort());
  EXPECT_EQ(1, file.readUlong(ul));
  EXPECT_EQ(0x80000001u, ul);
  EXPECT_EQ(1, file.readLong(l));
  EXPECT_EQ(-2, l);
  EXPECT_EQ(0, file.readShort(s)) << "one byte is no halfword";
}

TEST(NidsFile, NullSkipsAndNothingIsAlwaysThere) {
  const TestFile f(text("abcdef"));
  NidsFile file(f.name());
  unsigned char b[2] = {};
  EXPECT_EQ(1, file.readBytes(nullptr, 3));
  EXPECT_EQ(1, file.readBytes(b, 2));
  EXPECT_EQ('e', b[1]);
  EXPECT_EQ(1, file.readBytes(b, 0));
  EXPECT_EQ(1, file.readBytes(b, -5));
  EXPECT_EQ(0, file.readBytes(b, 2));
}

TEST(NidsFile, TrailerIsDroppedFromTheLastPieceOnly) {
  const Bytes trailer = text("\r\r\n\003");
  Bytes shorter(100, 'x');
  append(shorter, trailer);
  EXPECT_EQ(Bytes(100, 'x'), deliver(shorter));
  Bytes full(3996, 'x');
  append(full, trailer);
  EXPECT_EQ(full, deliver(full)) << "a full piece keeps the four bytes";
}

TEST(NidsFile, ZlibStreamsAreOneSequence) {
  const Bytes content = noise(9000);
  struct Case {
    const char* what;
    std::vector<std::size_t> sizes;
  };
  // 4000 bytes without pattern make a stream that is longer than the reader's pieces.
  for (const Case& c : {Case{"feed", {4000, 4000, 1000}}, Case{"short", {10, 1, 3000, 900}}, Case{"large", {9000}}}) {
    SCOPED_TRACE(c.what);
    Bytes file;
    auto at = content.begin();
    for (std::size_t n : c.sizes) {
      append(file, NidsBuilder::zlibStream({at, at + static_cast<std::ptrdiff_t>(n)}));
      at += static_cast<std::ptrdiff_t>(n);
    }
    EXPECT_EQ(Bytes(content.begin(), at), deliver(file));
  }
}

TEST(NidsFile, PlainPiecesMayLookLikeZlib) {
  Bytes content = noise(12000);
  content[4000] = content[8000] = 0x78;
  content[4001] = content[8001] = 0xDA;
  EXPECT_EQ(content, deliver(content));
}

TEST(NidsFile, Bzip2BodiesComeOutWhole) {
  Bytes large(3000000);
  for (std::size_t i = 0; i < large.size(); i++) large[i] = static_cast<unsigned char>(i / 7 % 250);
  struct Case {
    const char* what;
    std::size_t front;  // plain bytes; 3995 and the like let the signature straddle two pieces
    Bytes body;
  };
  const Case cases[] = {{"small", 120, text("hello")},
                        {"empty", 120, {}},
                        {"badly compressed", 120, noise(200000)},
                        {"well compressed", 120, large},
                        {"at once", 0, text("hello")},
                        {"signature cut after 1", 3999, text("hello")},
                        {"after 5", 3995, text("hello")},
                        {"after 9", 3991, text("hello")}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Bytes file(c.front, 'p');
    append(file, NidsBuilder::bzip2Stream(c.body));
    const TestFile f(file);
    NidsFile reader(f.name());
    Bytes got(c.body.size());
    EXPECT_EQ(1, reader.readBytes(nullptr, static_cast<int>(c.front)));
    EXPECT_EQ(1, reader.readBytes(got.data(), static_cast<int>(got.size())));
    EXPECT_TRUE(c.body == got);
    EXPECT_EQ(0, reader.readBytes(got.data(), 1)) << "the next read ends";
  }
}

TEST(NidsFile, PartsOfMarkersAreData) {
  for (const char* s : {"aBZh9 not a stream", "BZ", "BZh", "BZh91AY&SX-", "xxR3xx", "BBZh0"}) {
    EXPECT_EQ(text(s), deliver(text(s))) << s;
  }
}

TEST(NidsFile, EncryptedBodiesAreRefused) {
  const TestFile f(text("R3 secret"));
  NidsFile file(f.name());
  unsigned char b[4];
  EXPECT_EQ(-1, file.readBytes(b, 2));
  EXPECT_EQ(-1, file.readBytes(b, 2));
}

TEST(NidsFile, DamagedStreamsEnd) {
  Bytes zlib = NidsBuilder::zlibStream(noise(3000));
  append(zlib, text("garbage that is no stream"));
  zlib[1500] ^= 0x55;
  EXPECT_GE(3000u, deliver(zlib).size());
  Bytes bzip2 = NidsBuilder::bzip2Stream(noise(3000));
  bzip2[1500] ^= 0x55;
  EXPECT_GE(3000u, deliver(bzip2).size());
}

TEST(NidsFile, OpensAnewAndRefusesWhatIsNotThere) {
  const TestFile f(text("abcdef"));
  NidsFile file(f.name());
  EXPECT_EQ(text("abcdef"), drain(file));
  EXPECT_EQ(1, file.open(f.name()));
  EXPECT_EQ(text("abcdef"), drain(file));
  EXPECT_EQ(0, file.open("/nonexistent/product"));
  EXPECT_FALSE(file.isOpen());
  EXPECT_EQ(0, file.open(nullptr));
  EXPECT_EQ(0, file.open("/tmp"));
  unsigned char b;
  EXPECT_EQ(0, file.readBytes(&b, 1));
}

TEST(NidsFile, WholeFilesAreUnwrapped) {
  const Bytes content = noise(150000);
  EXPECT_TRUE(content == deliver(NidsBuilder::gzipFile(content)));
  EXPECT_TRUE(content == deliver(NidsBuilder::bzip2Stream(content)));
  Bytes two = NidsBuilder::gzipFile(text("one "));
  append(two, NidsBuilder::gzipFile(text("two")));
  EXPECT_EQ(text("one two"), deliver(two));
  Bytes cut = NidsBuilder::gzipFile(content);
  cut.resize(cut.size() / 2);
  const Bytes part = deliver(cut);
  EXPECT_LT(50000u, part.size());
  EXPECT_TRUE(std::equal(part.begin(), part.end(), content.begin()));
}

TEST(NidsFile, NamesThatReadOnceAreKept) {
  const Bytes content = noise(100000);
  const TestFile f(NidsBuilder::gzipFile(content));
  int ends[2] = {};  // as a shell leaves them open for <(COMMAND)
  ASSERT_EQ(0, pipe(ends));
  std::thread writer([&] {
    EXPECT_EQ(100000, ::write(ends[1], content.data(), content.size()));
    ::close(ends[1]);
  });
  const int saved = dup(0);
  const int input = ::open(f.name(), O_RDONLY);
  dup2(input, 0);
  for (const std::string& name :
       {"/dev/fd/" + std::to_string(ends[0]), std::string("|cat ") + f.name(), std::string("-")}) {
    SCOPED_TRACE(name);
    for (int time = 0; time < 2; time++) {
      NidsFile file(name.c_str());
      EXPECT_TRUE(content == drain(file));
    }
  }
  writer.join();
  dup2(saved, 0);
  ::close(input);
  ::close(saved);
  ::close(ends[0]);
}

}  // namespace
