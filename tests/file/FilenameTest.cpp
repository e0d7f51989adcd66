#include "KYV/Filename.h"

#include <gtest/gtest.h>

#include "KYV/Kyv.h"
#include "TempDir.h"

namespace KYV {
namespace {

TEST(Filename, LiteralNamesAreFixed) {
  struct Case {
    const char* spec;
    int set;
    const char* name;
  };
  constexpr Case CASES[] = {
      {"product.nids", 1, "product.nids"}, {"@la", 1, "la"}, {"-", 1, "-"}, {"STD", 1, "-"}, {"@", 0, ""}, {"", 0, ""}};
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.spec);
    Filename file;
    EXPECT_EQ(c.set, file.checkFile(c.spec));
    EXPECT_STREQ(c.name, file.getName());
    EXPECT_EQ(c.set != 0, file.isFixed());
  }
}

TEST(Filename, ResourceMayNameSeveralFiles) {
  TempDir dir;
  const std::string first = dir.write("a,b.nids", "x");
  Kyv::resrc.set("filename", (first + "\nsecond").c_str());
  Filename file;
  EXPECT_EQ(1, file.setFile());
  EXPECT_STREQ(first.c_str(), file.getName());
  EXPECT_STREQ("second", file.getName(1));
  EXPECT_STREQ("", file.getName(2));
  EXPECT_EQ(2, file.getNumFiles());

  Kyv::resrc.set("filename", "a,b,c");
  EXPECT_EQ(0, file.setFile());  // chosen, but not there
  EXPECT_TRUE(file.isSet());
  EXPECT_EQ(3, file.getNumFiles());
  EXPECT_EQ(1, file.setFile(2));
  EXPECT_STREQ("c", file.getName());
  EXPECT_EQ(0, file.setFile(3));
  Kyv::resrc.clear();
}

}  // namespace
}  // namespace KYV
