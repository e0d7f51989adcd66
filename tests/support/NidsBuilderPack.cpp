#include <bzlib.h>
#include <zlib.h>

#include <algorithm>

#include "NidsBuilder.h"

namespace {

using Bytes = NidsBuilder::Bytes;

constexpr std::size_t STREAM = 4000;      // bytes of a zlib stream's content
constexpr std::size_t DESCRIPTION = 120;  // bytes that stay plain in front of a bzip2 stream
constexpr std::size_t LENGTH_AT = 8;      // of the message's length, a big-endian word
constexpr std::size_t CONTROL_BLOCK = 24;

template <class From>
void put(Bytes& to, const From& from) {
  to.reserve(to.size() + from.size());
  to.insert(to.end(), from.begin(), from.end());
}

Bytes deflated(const Bytes& from, int windowBits) {
  z_stream z{};
  deflateInit2(&z, Z_BEST_COMPRESSION, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
  Bytes input = from;
  Bytes to(deflateBound(&z, static_cast<uLong>(from.size())) + 64);
  z.next_in = input.data();
  z.avail_in = static_cast<uInt>(input.size());
  z.next_out = to.data();
  z.avail_out = static_cast<uInt>(to.size());
  deflate(&z, Z_FINISH);
  to.resize(z.total_out);
  deflateEnd(&z);
  return to;
}

}  // namespace

Bytes NidsBuilder::zlibStream(const Bytes& from) { return deflated(from, MAX_WBITS); }

Bytes NidsBuilder::gzipFile(const Bytes& from) { return deflated(from, MAX_WBITS + 16); }

Bytes NidsBuilder::bzip2Stream(const Bytes& from) {
  std::vector<char> input(from.begin(), from.end());
  std::vector<char> output(from.size() + from.size() / 50 + 1000);
  unsigned size = static_cast<unsigned>(output.size());
  char none = 0;
  BZ2_bzBuffToBuffCompress(output.data(), &size, input.empty() ? &none : input.data(),
                           static_cast<unsigned>(input.size()), 9, 0, 0);
  return {output.begin(), output.begin() + size};
}

// What stands in front of the message; `repeated` is the form inside the first zlib stream.
Bytes NidsBuilder::front(bool repeated) const {
  Bytes to;
  if (repeated || heading_ == Heading::ControlBlock) {
    to.assign(CONTROL_BLOCK, 0x0A);  // bytes that look like line ends
    to[0] = 0x40;
    to[1] = 0x0C;
  } else if (heading_ == Heading::Frame) {
    put(to, std::string_view("\001\r\r\n123 \r\r\n"));
  } else if (heading_ == Heading::None) {
    return to;
  }
  put(to, ttaaii_ + " KOUN 011200\r\r\nN0RTLX\r\r\n");
  return to;
}

Bytes NidsBuilder::bytes() const {
  Bytes to = front(false);
  const Bytes all = message();
  if (body_ == Body::Bzip2) {
    Bytes content(all.begin(), all.begin() + DESCRIPTION);
    put(content, bzip2Stream({all.begin() + DESCRIPTION, all.end()}));
    if (!length_) {  // the length in the header is that of the bytes in the file
      for (std::size_t i = 0; i < 4; ++i) {
        content[LENGTH_AT + i] = static_cast<unsigned char>(content.size() >> (24 - 8 * i));
      }
    }
    put(to, content);
  } else if (body_ == Body::Zlib) {
    Bytes content = front(true);
    put(content, all);
    for (std::size_t at = 0; at < content.size(); at += STREAM) {
      const auto first = content.begin() + static_cast<std::ptrdiff_t>(at);
      put(to, zlibStream({first, first + static_cast<std::ptrdiff_t>(std::min(STREAM, content.size() - at))}));
    }
  } else {
    put(to, all);
  }
  if (heading_ == Heading::Frame) put(to, std::string_view("\r\r\n\003"));
  switch (wrap_) {
    case Wrap::Gzip:
      return gzipFile(to);
    case Wrap::Bzip2:
      return bzip2Stream(to);
    case Wrap::None:
      break;
  }
  return to;
}
