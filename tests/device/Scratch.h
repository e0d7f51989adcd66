#ifndef KYV_TEST_SCRATCH_H
#define KYV_TEST_SCRATCH_H

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "TempDir.h"

/// A test that works in a directory of its own, which is gone afterwards. What the devices say is captured.
class Scratch : public testing::Test {
 protected:
  void SetUp() override { std::filesystem::current_path(dir.path()); }
  void TearDown() override { std::filesystem::current_path(home); }
  void writeFile(const std::string& name, const std::string& content) const { dir.write(name, content); }
  static std::string readFile(const std::string& name) { return TempDir::read(name); }
  static bool contains(const std::string& text, const std::string& part) { return text.find(part) != text.npos; }

 private:
  const std::filesystem::path home = std::filesystem::current_path();
  TempDir dir;
};

#endif
