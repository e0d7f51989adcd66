#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <map>
#include <string>

#include "HttpServer.h"
#include "KYV/File.h"
#include "KYV/FileTool.h"
#include "KYV/String.h"

using namespace KYV;

namespace {

std::string withLength(const std::string& body) {
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}
std::string withoutLength(const std::string& body) { return "HTTP/1.0 200 OK\r\n\r\n" + body; }

// Bytes that differ from place to place, more than any buffer on the way.
std::string longBody() {
  std::string body;
  for (int i = 0; i < 300000; ++i) body += static_cast<char>(i * 7 + i / 251);
  return body;
}

std::string readAll(File& file) {
  std::string all;
  char piece[7001];
  for (int n = file.read(piece, sizeof piece); n > 0 && all.size() < 10000000; n = file.read(piece, sizeof piece)) {
    all.append(piece, static_cast<std::size_t>(n));
  }
  return all;
}

}  // namespace

TEST(FileUrl, BodiesArriveWholeWithAndWithoutALength) {
  const std::string body = longBody();
  HttpServer server({{"/a", withLength(body)}, {"/b", withoutLength(body)}});
  for (const char* path : {"/a", "/b"}) {
    SCOPED_TRACE(path);
    File file(server.url(path).c_str(), "r");
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(body, readAll(file));
    EXPECT_TRUE(file.endFile());
    EXPECT_EQ(static_cast<int>(body.size()), file.tell());
    char more = 0;
    EXPECT_EQ(0, file.read(&more, 1));
    ASSERT_EQ(1, file.rewind());
    EXPECT_EQ(body, readAll(file));
  }
}

TEST(FileUrl, ReadFillsABufferToItsCapacityUntilTheEnd) {
  const std::string body = longBody().substr(0, 9000);
  HttpServer server({{"/a", withoutLength(body)}});
  File file(server.url("/a").c_str(), "r");
  std::string all;
  for (const int expected : {4000, 4000, 1000}) {
    Buffer buffer(4000);
    ASSERT_EQ(expected, file.read(buffer));
    all.append(reinterpret_cast<const char*>(buffer.getPending()), static_cast<std::size_t>(buffer.getSize()));
  }
  EXPECT_EQ(body, all);
  Buffer buffer(4000);
  EXPECT_EQ(-1, file.read(buffer));
}

TEST(FileUrl, LinesComeWithoutNewlineAndAnEmptyOneIsNotTheEnd) {
  const std::string big(5000, 'x');
  HttpServer server({{"/a", withoutLength("one\n\n" + big + "\nskipped\nlast")}});
  File file(server.url("/a").c_str(), "r");
  char line[10];
  String text;
  EXPECT_EQ(4, file.getLine(line, sizeof line));
  EXPECT_STREQ("one", line);
  EXPECT_EQ(1, file.getLine(line, sizeof line));
  EXPECT_STREQ("", line);
  EXPECT_EQ(5001, file.getLine(text));
  EXPECT_EQ(big, text.get());
  EXPECT_EQ(1, file.skipLine());
  EXPECT_EQ(4, file.getLine(text));
  EXPECT_STREQ("last", text.get());
  EXPECT_EQ(-1, file.getLine(text));
  EXPECT_EQ(-1, file.getLine(line, sizeof line));
  EXPECT_EQ(0, file.skipLine());
}

TEST(FileUrl, SeekReceivesWhatItMustPass) {
  const std::string body = longBody();
  HttpServer server({{"/a", withLength(body)}});
  File file(server.url("/a").c_str(), "r");
  char c = 0;
  ASSERT_EQ(1, file.seek(200000));
  ASSERT_EQ(1, file.read(&c, 1));
  EXPECT_EQ(body[200000], c);
  EXPECT_EQ(1, file.seek(-1, SEEK_END));
  EXPECT_EQ(static_cast<int>(body.size()) - 1, file.tell());
  EXPECT_EQ(0, file.seek(1, SEEK_END));
  EXPECT_EQ(0, file.seek(-1));
  EXPECT_EQ(0, file.seek(INT64_MAX, SEEK_CUR));
}

TEST(FileUrl, OnlyAnAnswer200Opens) {
  struct Case {
    const char* path;
    const char* bytes;
    int open;
  };
  const Case CASES[] = {
      {"/found", "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n", 1},
      {"/early-hints", "HTTP/1.1 103 Early Hints\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok", 1},
      {"/missing", "HTTP/1.1 404 Not Found\r\nContent-Length: 2\r\n\r\nno", 0},
      {"/number-in-the-reason", "HTTP/1.1 404 200\r\nContent-Length: 2\r\n\r\nno", 0},
      {"/moved", "HTTP/1.1 302 Found\r\nLocation: /found\r\nContent-Length: 0\r\n\r\n", 0},
      {"/elsewhere", "HTTP/1.1 302 Found\r\nLocation: file:///etc/passwd\r\nContent-Length: 0\r\n\r\n", 0},
      {"/silent", "", 0},
      {"/no-http", "hello\r\n\r\n", 0},
      {"/half-a-header", "HTTP/1.1 200 OK\r\nContent-", 0},
      {"/more-than-memory", "HTTP/1.1 200 OK\r\nContent-Length: 99999999999\r\n\r\n", 0},
      {"/more-than-counts", "HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999999\r\n\r\nx", -1},
  };
  std::map<std::string, std::string> answers;
  for (const Case& c : CASES) answers[c.path] = c.bytes;
  HttpServer server(answers);
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.path);
    File file;
    const int open = file.open(server.url(c.path).c_str(), "r");
    if (c.open >= 0) {
      EXPECT_EQ(c.open, open);
      EXPECT_EQ(c.open == 1, file.isOpen());
    }
  }
  EXPECT_EQ(std::size(CASES), server.stop().size()) << "a redirect was followed or a request repeated";
}

TEST(FileUrl, ABodyThatBreaksOffEndsTheFile) {
  HttpServer server({{"/a", std::string("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nonly this")}});
  File file(server.url("/a").c_str(), "r");
  ASSERT_TRUE(file.isOpen());
  EXPECT_EQ("only this", readAll(file));
  EXPECT_TRUE(file.endFile());
}

TEST(FileUrl, ProxiesOfTheEnvironmentAreIgnored) {
  HttpServer server({{"/a", withLength("direct")}});
  setenv("http_proxy", "http://127.0.0.1:1", 1);
  setenv("all_proxy", "http://127.0.0.1:1", 1);
  File file(server.url("/a").c_str(), "r");
  unsetenv("http_proxy");
  unsetenv("all_proxy");
  ASSERT_TRUE(file.isOpen());
  EXPECT_EQ("direct", readAll(file));
}

TEST(FileUrl, RefusesWhatAUrlCannotDo) {
  HttpServer server({{"/a", withLength("12 34")}});
  File file;
  EXPECT_EQ(0, file.open(server.url("/a").c_str(), "w"));
  EXPECT_EQ(0, file.open("http://127.0.0.1:1/closed-port", "r"));
  EXPECT_EQ(0, file.open("http://", "r"));
  EXPECT_EQ(0, file.open("http://bad host/\n", "r"));
  ASSERT_EQ(1, file.open(server.url("/a").c_str(), "r"));
  int number = 0;
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, file.scanf("%d", &number));
  EXPECT_EQ("scanf not supported\n", testing::internal::GetCapturedStderr());
  EXPECT_EQ(0, file.write("x", 1));
  EXPECT_EQ(0, file.printf("x"));
}

TEST(FileUrl, ExistenceAndSizeFollowTheAnswer) {
  const std::string body = longBody();
  HttpServer server({{"/length", withLength(body)},
                     {"/no-length", withoutLength(body)},
                     {"/lower-case", "HTTP/1.1 200 OK\r\ncontent-length:   3\r\n\r\nabc"}});
  EXPECT_TRUE(FileTool::exist(server.url("/length").c_str()));
  EXPECT_TRUE(FileTool::exist(server.url("/no-length").c_str()));
  EXPECT_FALSE(FileTool::exist(server.url("/none").c_str()));
  EXPECT_EQ(300000, FileTool::getSize(server.url("/length").c_str()));
  EXPECT_EQ(300000, FileTool::getSize(server.url("/no-length").c_str()));
  EXPECT_EQ(3, FileTool::getSize(server.url("/lower-case").c_str()));
  EXPECT_EQ(-1, FileTool::getSize(server.url("/none").c_str()));
  EXPECT_EQ(-1, FileTool::getModTime(server.url("/length").c_str()));
}
