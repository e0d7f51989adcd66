#ifndef KYV_BUFFER_H
#define KYV_BUFFER_H

#include <vector>

namespace KYV {

/// An owned byte array with a fill level and a read cursor: 0 <= ind <= size <= max.
class Buffer {
 public:
  Buffer() = default;
  explicit Buffer(int max) { init(max); }
  // Copies alone: a buffer that was moved from would claim bytes it no longer has.
  Buffer(const Buffer&) = default;
  Buffer& operator=(const Buffer&) = default;

  /// Drops the content and takes room for max bytes.
  int init(int max);
  /// Takes the capacity and the held bytes of another buffer; the cursor goes to 0.
  int copy(const Buffer& other);
  int clear();
  /// New capacity; as much of the content as fits is kept.
  int resize(int max);
  /// Makes room: when `need` exceeds the capacity it becomes need + 2000.
  int check(int need);
  int add(const unsigned char* bytes, int n);
  int insert(int at, const unsigned char* bytes, int n);
  int insert(int at, const Buffer& other);
  /// The byte at the cursor + i, 0 when it is not among the bytes held.
  unsigned char get(int i) const;
  /// Copies at most n unread bytes (a null destination skips them); the count.
  int read(unsigned char* bytes, int n);
  /// Copies up to and including a line feed, at most n bytes; the count.
  int readLine(unsigned char* bytes, int n);
  /// Advances past the next line feed; 0 when there is none.
  int skipLine();
  /// Moves the unread bytes to the front.
  int clearUsed();
  // Cursor; positions outside [0, size] are refused with 0.
  int seek(int pos);
  int inc(int n);
  /// A negative k drops the last -k bytes.
  int trunc(int k);
  /// Whether the bytes that start at size + k equal the text s.
  bool equal(int k, const char* s) const;
  /// Appends to `out` as many unread bytes as fit in its free capacity, at most n; both are printed afterwards.
  int read(Buffer& out);
  int read(Buffer& out, int n);
  /// "Ind: %d Num: %d Max: %d\n" on standard output.
  int print() const;
  /// Hex dump of n pending bytes from an offset, at most the bytes held.
  int dump(int offset, int n) const;

  int getInd() const { return ind; }
  int getSize() const { return size; }
  int getAvail() const { return size - ind; }
  int getMax() const { return static_cast<int>(data.size()); }

  // For those who fill and drain in place (files, decompressors).
  unsigned char* getFree() { return data.data() + size; }
  int getRoom() const { return getMax() - size; }
  const unsigned char* getPending() const { return data.data() + ind; }
  /// The bytes held, after getFree() was filled; refused outside [0, max].
  int setSize(int n);

 private:
  std::vector<unsigned char> data;
  int size = 0;
  int ind = 0;
};

}  // namespace KYV
#endif
