#include "KYV/SharedLibrary.h"

#include <gtest/gtest.h>

#include "KYV/Kyv.h"

namespace {

TEST(SharedLibrary, TheFirstThatIsThereIsLoaded) {
  const KYV::SharedLibrary maths({"libnone.so.1", "libm.so.6", "libnone.so.2"});
  ASSERT_TRUE(maths.isOpen());
  double (*root)(double) = nullptr;
  ASSERT_TRUE(maths.find("sqrt", root));
  EXPECT_EQ(3.0, root(9.0));
  EXPECT_FALSE(maths.find("no_such_function", root));
  EXPECT_EQ(nullptr, root);
}

TEST(SharedLibrary, AMissingOneIsTold) {
  testing::internal::CaptureStderr();
  const KYV::SharedLibrary none({"libnone.so.1", "libnone.so.2"});
  EXPECT_EQ("Library libnone.so.1 cannot be loaded: install it\n", testing::internal::GetCapturedStderr());
  EXPECT_FALSE(none.isOpen());
  void (*f)() = nullptr;
  EXPECT_FALSE(none.find("sqrt", f));
}

}  // namespace
