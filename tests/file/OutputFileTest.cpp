#include "KYV/OutputFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "KYV/File.h"
#include "KYV/String.h"
#include "TempDir.h"

using namespace KYV;

namespace {

int countFiles(const TempDir& dir) {
  int n = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(dir.path())) ++n;
  return n;
}

}  // namespace

TEST(OutputFile, TheOldFileStaysUntilTheNewOneIsComplete) {
  TempDir dir;
  const std::string name = dir.write("a", "old");
  chmod(name.c_str(), 0640);
  symlink("a", dir.path("link").c_str());
  File file;
  ASSERT_EQ(1, file.open(dir.path("link").c_str(), "w"));
  file.write("new", 3);
  file.flush();
  EXPECT_EQ("old", TempDir::read(name));
  EXPECT_EQ(1, file.close());
  EXPECT_EQ("new", TempDir::read(name));
  EXPECT_TRUE(std::filesystem::is_symlink(dir.path("link"))) << "the file that it leads to is replaced";
  struct stat info = {};
  ASSERT_EQ(0, stat(name.c_str(), &info));
  EXPECT_EQ(0640u, info.st_mode & 0777u) << "with the rights that it had";
  EXPECT_EQ(2, countFiles(dir));

  ASSERT_EQ(1, file.open(dir.path("b").c_str(), "w"));
  EXPECT_FALSE(std::filesystem::exists(dir.path("b")));
  file.close();
  const mode_t mask = umask(0);
  umask(mask);
  ASSERT_EQ(0, stat(dir.path("b").c_str(), &info));
  EXPECT_EQ(0666u & ~mask, info.st_mode & 0777u);
}

TEST(OutputFile, WhatIsNotCompleteLeavesNothingBehind) {
  TempDir dir;
  const std::string name = dir.write("a", "old");
  {
    File dropped;
    ASSERT_EQ(1, dropped.open(name.c_str(), "w"));
    dropped.write("half", 4);
  }
  File file;
  ASSERT_EQ(1, file.open(name.c_str(), "w"));
  file.write("half", 4);
  file.discard();
  EXPECT_EQ(0, file.close());
  EXPECT_EQ("old", TempDir::read(name));
  EXPECT_EQ(1, countFiles(dir));

  // A device is written as it is; a full one tells the reason.
  ASSERT_EQ(1, file.open("/dev/full", "w"));
  file.write("lost", 4);
  EXPECT_EQ(0, file.close());
  EXPECT_STREQ(": No space left on device", file.getReason().get());
  EXPECT_EQ(0, file.open(dir.path().c_str(), "w"));
  EXPECT_STREQ(": Is a directory", file.getReason().get());
}

TEST(OutputFile, AnInputOfTheRunIsNotReplaced) {
  TempDir dir;
  const std::string name = dir.write("a", "data");
  File input;
  ASSERT_EQ(1, input.open(name.c_str(), "r"));
  OutputFile::protect(input.getFP());
  input.close();
  link(name.c_str(), dir.path("same").c_str());
  File file;
  ASSERT_EQ(1, file.open(dir.path("same").c_str(), "w"));
  file.write("new", 3);
  EXPECT_EQ(0, file.close());
  EXPECT_STREQ(": it is an input of this run", file.getReason().get());
  EXPECT_EQ("data", TempDir::read(name));
  EXPECT_EQ(2, countFiles(dir));
}
