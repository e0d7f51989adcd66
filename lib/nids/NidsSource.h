#ifndef KYV_NIDSSOURCE_H
#define KYV_NIDSSOURCE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "KYV/File.h"
#include "KYV/String.h"

namespace KYV {

class Buffer;

// Where the bytes of a product file come from: the file itself; its content in memory when it is wrapped in gzip or
// bzip2 as a whole; or what was kept of a name that can be read only once (standard input, a pipe, a URL), since a
// product is opened once for its map and once for its data. The last such name is kept for the process.
class NidsSource {
 public:
  [[nodiscard]] int open(const char* name);
  int close();
  const char* getName() const { return name.get(); }

  // The bytes read, 0 at the end, -1 when not open.
  int read(unsigned char* bytes, int n);
  // Fills the free room of a buffer; its new size, -1 at the end when nothing was read.
  int read(Buffer& buffer);
  int seek(std::int64_t to);
  std::int64_t tell();
  // Whether a wrapping by gzip or bzip2 has no end.
  bool isCut() const { return cut; }
  // Bytes that are still to be read.
  std::int64_t getRest();

 private:
  using Content = std::vector<unsigned char>;

  int openKept();
  int unwrapFile();
  static Content readAll(File& file);

  String name;
  File file;
  std::shared_ptr<const Content> content;  // null: read from the file
  std::size_t at = 0;                      // in the content
  bool cut = false;
};

}  // namespace KYV
#endif
