#ifndef KYV_ZLIB_H
#define KYV_ZLIB_H

#include <memory>

namespace KYV {

class Buffer;

/// A zlib stream, inflating (type 1) or deflating (any other type). When a stream ends, the next one may follow at
/// once: the inflater starts anew.
class Zlib {
 public:
  Zlib() : Zlib(1) {}
  explicit Zlib(int type);
  ~Zlib();
  Zlib(Zlib&&) noexcept;
  Zlib& operator=(Zlib&&) noexcept;

  /// Starts a fresh stream; the zlib code, 0 for success.
  int init();
  /// The input and output of the next call.
  int set(unsigned char* in, int nin, unsigned char* out, int nout);
  /// One inflate call with partial flush; the zlib code.
  int decomp();
  /// Inflates from in's cursor into out, from out's cursor up to its capacity; the zlib code. Afterwards in's cursor
  /// stands after the bytes used, and out holds its capacity less the room left.
  int decomp(Buffer& in, Buffer& out);
  /// One deflate call with this flush mode; the zlib code.
  int comp(int flush);
  /// Ends the stream.
  int finish();
  /// State on standard output: "Decomp OK = %d %ld = %d %ld\n".
  int print() const;
  int getStatus() const { return stat; }
  int getAvailIn() const;
  int getAvailOut() const;
  long getTotalOut() const;
  bool isError() const { return stat < 0; }
  /// The version of the library beneath.
  static const char* getLibrary();

 private:
  struct Stream;  // z_stream, seen by the source alone
  int type;
  int setup = 0;
  std::unique_ptr<Stream> zs;
  int stat = 0;
};

}  // namespace KYV
#endif
