#include <gtest/gtest.h>

#include <string>

#include "KYV/File.h"
#include "KYV/String.h"
#include "TempDir.h"

using namespace KYV;

TEST(File, WritesThroughMissingDirectoriesAndReadsBack) {
  TempDir dir;
  const std::string name = dir.path("a/b/c.txt");
  File file;
  ASSERT_EQ(1, file.open(name.c_str(), "w"));
  EXPECT_EQ(5, file.printf("%d %s\n", 42, "x"));
  EXPECT_EQ(3, file.write("y\0z", 3));
  EXPECT_EQ(8, file.tell());
  EXPECT_EQ(-1, file.read(&dir, 1)) << "not open for reading";
  EXPECT_EQ(1, file.close());
  EXPECT_EQ(std::string("42 x\ny\0z", 8), TempDir::read(name));

  ASSERT_EQ(1, file.open(name.c_str(), File::APPEND));
  EXPECT_EQ(1, file.write("+", 1));
  ASSERT_EQ(1, file.open(name.c_str(), File::READ)) << "an open handle is closed first";
  int number = 0;
  char word[10] = "";
  EXPECT_EQ(2, file.scanf("%d %9s", &number, word));
  EXPECT_EQ(42, number);
  EXPECT_EQ(1, file.seek(-1, SEEK_END));
  EXPECT_FALSE(file.endFile());
  EXPECT_EQ(1, file.read(word, 10));
  EXPECT_EQ('+', word[0]);
  EXPECT_TRUE(file.endFile());
  EXPECT_EQ(1, file.rewind());
  EXPECT_EQ(0, file.tell());
}

TEST(File, WhatCannotBeOpenedLeavesTheHandleClosed) {
  TempDir dir;
  const std::string plain = dir.write("plain", "x");
  const std::string beneath = plain + "/beneath";
  struct Case {
    const char* what;
    const char* name;
    const char* mode;
  };
  const std::string self = dir.path();
  const std::string missing = dir.path("missing");
  const Case CASES[] = {
      {"null name", nullptr, "r"},
      {"null mode", plain.c_str(), nullptr},
      {"empty mode", plain.c_str(), ""},
      {"unknown mode", plain.c_str(), "q"},
      {"missing", missing.c_str(), "r"},
      {"directory", self.c_str(), "r"},
      {"directory to write", self.c_str(), "w"},
      {"beneath a file", beneath.c_str(), "w"},
      {"no command", "|", "w"},
      {"pipe without direction", "true", "p"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    File file;
    EXPECT_EQ(0, file.open(c.name, c.mode));
    EXPECT_FALSE(file.isOpen());
    char line[8];
    String text;
    Buffer buffer(4);
    EXPECT_EQ(-1, file.getLine(line, sizeof line));
    EXPECT_EQ(-1, file.getLine(text));
    EXPECT_EQ(-1, file.read(buffer));
    EXPECT_EQ(0, file.write("x", 1));
    EXPECT_EQ(0, file.seek(0));
    EXPECT_TRUE(file.endFile());
  }
  File file;
  EXPECT_EQ(0, file.open(plain.c_str(), 3));
  EXPECT_EQ(0, file.openData("|echo x"));
  EXPECT_EQ(0, file.openData(nullptr));
  EXPECT_EQ(1, file.openData(plain.c_str()));
}

TEST(File, LinesKeepTheirNewlineAndAreCutToTheRoom) {
  TempDir dir;
  File file(dir.write("lines", std::string("ab\n\nlonger line\nnul\0in\nend", 26)).c_str(), "r");
  char line[8];
  EXPECT_EQ(3, file.getLine(line, sizeof line));
  EXPECT_STREQ("ab\n", line);
  EXPECT_EQ(1, file.getLine(line, sizeof line));
  EXPECT_EQ(7, file.getLine(line, sizeof line));
  EXPECT_STREQ("longer ", line);
  EXPECT_EQ(1, file.skipLine());
  EXPECT_EQ(7, file.getLine(line, sizeof line)) << "a zero byte does not end the file";
  EXPECT_EQ(0, file.getLine(line, 1));
  EXPECT_EQ(0, file.getLine(line, 0));
  EXPECT_EQ(3, file.getLine(line, sizeof line));
  EXPECT_STREQ("end", line);
  EXPECT_EQ(0, file.getLine(line, sizeof line));
  EXPECT_EQ(0, file.skipLine());
}

TEST(File, WholeLinesGrowUpTo16Megabytes) {
  TempDir dir;
  const std::string line(100000, 'x');
  File file(dir.write("long", line + "\n" + std::string(17u << 20, 'y') + "\nlast\n").c_str(), "r");
  String text;
  EXPECT_EQ(100001, file.getLine(text));
  EXPECT_EQ(line + "\n", text.get());
  EXPECT_LE(file.getLine(text), 16 << 20);
  EXPECT_GT(file.getLine(text), 1 << 19) << "the rest of the overlong line";
  EXPECT_EQ(5, file.getLine(text));
  EXPECT_STREQ("last\n", text.get());
  EXPECT_EQ(0, file.getLine(text));
}

TEST(File, ReadAppendsToABuffer) {
  TempDir dir;
  File file(dir.write("bytes", "abcdef").c_str(), "r");
  Buffer buffer(4);
  EXPECT_EQ(4, file.read(buffer));
  EXPECT_EQ(4, file.read(buffer)) << "full, not at the end";
  buffer.clear();
  EXPECT_EQ(2, file.read(buffer));
  EXPECT_EQ('e', buffer.get(0));
  EXPECT_EQ(-1, file.read(buffer));
}

TEST(File, AFullDiskIsRememberedUntilClose) {
  File file("/dev/full", "w");
  ASSERT_TRUE(file.isOpen());
  EXPECT_EQ(3, file.printf("few")) << "still in the buffer";
  EXPECT_EQ(0, file.close());
  ASSERT_EQ(1, file.open("/dev/full", "w"));
  const std::string much(200000, 'x');
  file.write(much.data(), static_cast<int>(much.size()));
  EXPECT_TRUE(file.isError());
  file.printf("go on");
  EXPECT_EQ(0, file.close());
  EXPECT_EQ(1, file.open("/dev/null", "w")) << "a new file starts without the error";
  EXPECT_FALSE(file.isError());
  EXPECT_EQ(1, file.close());
}

TEST(File, PipesReadAndWriteCommands) {
  TempDir dir;
  const std::string out = dir.path("out");
  String line;
  for (const char* name : {"|echo 'a b'; echo c", "echo 'a b'; echo c"}) {
    File file(name, name[0] == '|' ? "r" : "pr");
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(4, file.getLine(line));
    EXPECT_STREQ("a b\n", line.get());
    EXPECT_EQ(0, file.rewind());
    EXPECT_EQ(1, file.close()) << "closing early is no failure of what was read";
  }
  File file(("|cat > " + out).c_str(), "w");
  file.printf("text");
  EXPECT_EQ(1, file.close());
  EXPECT_EQ("text", TempDir::read(out));
}

TEST(File, APipeWhoseReaderFailsIsAFailedWrite) {
  File file("|exit 3", "w");
  ASSERT_TRUE(file.isOpen());
  const std::string much(1 << 20, 'x');
  file.write(much.data(), static_cast<int>(much.size()));
  EXPECT_TRUE(file.isError());
  EXPECT_EQ(0, file.close());
  ASSERT_EQ(1, file.open("/nowhere/no-such-command 2>/dev/null", "pw"));
  EXPECT_EQ(0, file.close());
}

TEST(File, StandardOutputIsFlushedButNotClosed) {
  for (const char* name : {"-", "std", "STDN"}) {
    testing::internal::CaptureStdout();
    File file(name, "w");
    EXPECT_EQ(stdout, file.getFP());
    file.printf("once ");
    EXPECT_EQ(1, file.close());
    EXPECT_GT(std::printf("twice"), 0);
    EXPECT_EQ("once twice", testing::internal::GetCapturedStdout());
  }
}

TEST(File, ASharedStreamStaysOpen) {
  TempDir dir;
  const std::string name = dir.path("shared");
  std::FILE* fp = nullptr;
  {
    File file(name.c_str(), "w");
    fp = file.getFP();
    file.setShare(1);
    file.printf("a");
  }
  EXPECT_EQ("a", TempDir::read(name));
  EXPECT_EQ('b', std::fputc('b', fp));
  EXPECT_EQ(0, std::fclose(fp));  // NOLINT(cppcoreguidelines-owning-memory)
  EXPECT_EQ("ab", TempDir::read(name));
}
