#ifndef NIDSTESTFILE_H
#define NIDSTESTFILE_H

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"

/// A file of given content that lives as long as the object.
class TestFile {
 public:
  explicit TestFile(const std::vector<unsigned char>& content)
      : path((std::filesystem::temp_directory_path() / "nidsXXXXXX").string()) {
    const int fd = mkstemp(path.data());
    if (fd >= 0) ::close(fd);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
  }
  ~TestFile() { std::filesystem::remove(path); }
  TestFile(const TestFile&) = delete;
  TestFile& operator=(const TestFile&) = delete;
  const char* name() const { return path.c_str(); }

 private:
  std::string path;
};

inline std::vector<unsigned char> readAll(const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// Where the sample products are; empty when there are none.
inline std::string sampleFolder() {
  const char* given = std::getenv("RADMAP_SAMPLES");
  const std::string folder = given ? given : std::string(RADMAP_SOURCE_DIR) + "/../shared/samples";
  return std::filesystem::exists(folder + "/truth.json") ? folder : "";
}

#endif
