#ifndef KYV_BZLIB_H
#define KYV_BZLIB_H

#include <memory>

namespace KYV {

class Buffer;

/// A bzip2 stream, decompressing (type 1) or compressing (any other type).
class BZlib {
 public:
  static constexpr int OK = 0;   // running
  static constexpr int END = 4;  // the stream has ended

  BZlib() : BZlib(1) {}
  explicit BZlib(int type);
  ~BZlib();
  BZlib(BZlib&&) noexcept;
  BZlib& operator=(BZlib&&) noexcept;

  /// Ends a stream that was set up and starts a fresh one; the bzip2 code, 0 for success.
  int init();
  int setIn(unsigned char* in, int n);
  int setOut(unsigned char* out, int n);
  /// One decompression call; the bzip2 code.
  int decomp();
  /// Decompresses from in's cursor, appending to out up to its capacity; the bzip2 code. On stream end (END) the
  /// decompressor starts anew.
  int decomp(Buffer& in, Buffer& out);
  /// One compression call with this action; the bzip2 code.
  int comp(int action);
  /// Ends the stream.
  int finish();
  /// State on standard output: "Decomp: OK %d %d - %d %d\n".
  int print() const;
  int getStatus() const { return stat; }
  int getAvailIn() const;
  int getAvailOut() const;
  long getTotalOut() const;
  bool isError() const { return stat < 0; }

  /// The version of the library beneath.
  static const char* getLibrary();

 private:
  struct Stream;  // bz_stream, seen by the source alone
  int type;
  bool setup = false;
  std::unique_ptr<Stream> bz;
  int stat = 0;
};

}  // namespace KYV
#endif
