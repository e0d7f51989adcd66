#ifndef KYV_NIDSTEXT_H
#define KYV_NIDSTEXT_H

namespace KYV {

/// A text of a text packet.
struct NidsText {
  float val = 0.0f;  // the packet's value as a data level; Const::MISS when it names none
  float x = 0.0f;    // I
  float y = 0.0f;    // J
  char data[100] = "";
  int print() const;
  const char* getData() const { return data; }
};

}  // namespace KYV
#endif
