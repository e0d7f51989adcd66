#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <string>

#include "KYV/FileTool.h"
#include "KYV/String.h"
#include "TempDir.h"

using namespace KYV;

TEST(FileTool, ListsSplitAtColonsButNotAfterHttp) {
  constexpr const char* LIST = "/data:http://server/x:/tmp";
  EXPECT_EQ(3, FileTool::numPath(LIST));
  String path;
  constexpr const char* ENTRIES[] = {"/data", "http://server/x", "/tmp"};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(1, FileTool::getPath(LIST, i, path));
    EXPECT_STREQ(ENTRIES[i], path.get());
  }
  EXPECT_EQ(0, FileTool::getPath(LIST, 3, path));
  EXPECT_EQ(0, FileTool::getPath(LIST, -1, path));
  EXPECT_EQ(0, FileTool::getPath(nullptr, 0, path));
  EXPECT_EQ(0, FileTool::numPath(nullptr));
  EXPECT_EQ(1, FileTool::numPath("http://server/x"));
  EXPECT_EQ(1, FileTool::numPath("one"));
  EXPECT_EQ(3, FileTool::numPath("a::"));
}

TEST(FileTool, AddPathTakesTheFirstDirectoryThatHoldsTheFile) {
  TempDir dir;
  const std::string a = dir.path("a");
  const std::string b = dir.path("b");
  FileTool::makeDir((a + "/").c_str());
  FileTool::makeDir((b + "/").c_str());
  dir.write("b/file", "x");
  const std::string list = a + ":" + b + "/";
  struct Case {
    const char* what;
    std::string list, file, out;
    int found;
  };
  const Case CASES[] = {
      {"only in the second", list, "file", b + "/file", 1},
      {"nowhere: the last", list, "none", b + "/none", 0},
      {"no list", "", "none", "none", 0},
      {"full path", list, b + "/file", b + "/file", 1},
      {"beginning with a dot", list, "./none", "./none", 0},
      {"standard input", list, "-", "-", 1},
      {"an empty entry is the current directory", ":", "none", "none", 0},
      {"no file", list, "", "", 0},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    String out;
    EXPECT_EQ(c.found, FileTool::addPath(c.list.c_str(), c.file.c_str(), out));
    EXPECT_EQ(c.out, out.get());
  }
  String out("file");
  EXPECT_EQ(1, FileTool::addPath(list.c_str(), out.get(), out)) << "the result may replace the name";
  EXPECT_EQ(b + "/file", out.get());
  EXPECT_TRUE(FileTool::checkPath(list.c_str()));
  EXPECT_FALSE(FileTool::checkPath((list + ":" + dir.path("c")).c_str()));
  EXPECT_FALSE(FileTool::checkPath((b + "/file").c_str()));
}

TEST(FileTool, AddOutPathLeavesFullPathsAndStandardOutput) {
  struct Case {
    const char *dir, *file, *out;
  };
  constexpr Case CASES[] = {{"dir", "f.ps", "dir/f.ps"}, {"dir/", "f.ps", "dir/f.ps"},
                            {nullptr, "f.ps", "f.ps"},   {"dir", "/x/f.ps", "/x/f.ps"},
                            {"dir", "-", "-"},           {"dir", "|lpr", "|lpr"}};
  for (const Case& c : CASES) {
    String out;
    EXPECT_EQ(1, FileTool::addOutPath(c.dir, c.file, out));
    EXPECT_STREQ(c.out, out.get());
  }
  String path("a");
  EXPECT_EQ(1, FileTool::addPathDelim(path));
  EXPECT_EQ(1, FileTool::addPathDelim(path));
  EXPECT_STREQ("a/", path.get());
}

TEST(FileTool, HomeDirectories) {
  const char* home = std::getenv("HOME");
  const std::string old = home ? home : "";
  setenv("HOME", "/home/of mine", 1);
  struct Case {
    const char *path, *out;
    int known;
  };
  constexpr Case CASES[] = {{"~/x/y", "/home/of mine/x/y", 1},
                            {"~", "/home/of mine", 1},
                            {"~root/x", "/root/x", 1},
                            {"~no-such-user/x", "~no-such-user/x", 0},
                            {"~a-name-of-more-than-19-characters/x", "~a-name-of-more-than-19-characters/x", 0},
                            {"a~/b", "a~/b", 1},
                            {"", "", 0},
                            {nullptr, "", 0}};
  for (const Case& c : CASES) {
    String out;
    EXPECT_EQ(c.known, FileTool::addUserPath(c.path, out));
    EXPECT_STREQ(c.out, out.get());
  }
  home ? setenv("HOME", old.c_str(), 1) : unsetenv("HOME");
}

TEST(FileTool, KindsOfNames) {
  for (const char* name : {"/a", "./a", "../a", "~a", "http://a"}) EXPECT_TRUE(FileTool::isFullPath(name)) << name;
  for (const char* name : {"a/b", "https:", "", "http:a"}) EXPECT_FALSE(FileTool::isFullPath(name)) << name;
  EXPECT_FALSE(FileTool::isFullPath(nullptr));
  for (const char* name : {"-", "std", "StdN"}) EXPECT_TRUE(FileTool::isStdio(name)) << name;
  for (const char* name : {"--", "stdin", ""}) EXPECT_FALSE(FileTool::isStdio(name)) << name;
  EXPECT_FALSE(FileTool::isStdio(nullptr));
}

TEST(FileTool, FilesAreTold) {
  TempDir dir;
  const std::string file = dir.write("file", "12345");
  const std::string fifo = dir.path("fifo");
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
  EXPECT_TRUE(FileTool::isFile(file.c_str()));
  EXPECT_FALSE(FileTool::isDir(file.c_str()));
  EXPECT_TRUE(FileTool::isDir(dir.path().c_str()));
  EXPECT_TRUE(FileTool::isFifo(fifo.c_str()));
  EXPECT_TRUE(FileTool::isDevice("/dev/null"));
  EXPECT_EQ(5, FileTool::getSize(file.c_str()));
  EXPECT_GT(FileTool::getModTime(file.c_str()), 1500000000);
  EXPECT_TRUE(FileTool::exist(file.c_str()));
  EXPECT_EQ(1, FileTool::remove(file.c_str()));
  EXPECT_EQ(0, FileTool::remove(file.c_str()));
  EXPECT_FALSE(FileTool::exist(file.c_str()));
  for (const char* missing : {file.c_str(), "", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(FileTool::exist(missing));
    EXPECT_EQ(-1, FileTool::getSize(missing));
    EXPECT_EQ(-1, FileTool::getModTime(missing));
  }
}

TEST(FileTool, MakeDirMakesAllButTheLastComponent) {
  TempDir dir;
  EXPECT_EQ(1, FileTool::makeDir(dir.path("a//b\\c/last").c_str()));
  EXPECT_TRUE(FileTool::isDir(dir.path("a/b/c").c_str()));
  EXPECT_FALSE(FileTool::exist(dir.path("a/b/c/last").c_str()));
  EXPECT_EQ(1, FileTool::makeDir(dir.path("a/b/c/last").c_str())) << "existing ones are left alone";
  dir.write("file", "");
  EXPECT_EQ(0, FileTool::makeDir(dir.path("file/x/y").c_str()));
  EXPECT_EQ(0, FileTool::makeDir((dir.path() + "/" + std::string(300, 'n') + "/x").c_str()));
  EXPECT_EQ(0, FileTool::makeDir((dir.path() + std::string(100000, '/') + "x/y").c_str()));
  EXPECT_EQ(1, FileTool::makeDir("plain"));
  EXPECT_FALSE(FileTool::exist("plain"));
  EXPECT_EQ(1, FileTool::makeDir("/"));
  EXPECT_EQ(0, FileTool::makeDir(nullptr));
}
