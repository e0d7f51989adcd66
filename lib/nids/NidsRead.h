#ifndef KYV_NIDSREAD_H
#define KYV_NIDSREAD_H

#include "KYV/NidsFile.h"

namespace KYV {

// A field of the wire by its type: halfwords signed or unsigned, words.
inline bool readField(NidsFile& file, short& v) { return file.readShort(v) == 1; }
inline bool readField(NidsFile& file, unsigned short& v) { return file.readUshort(v) == 1; }
inline bool readField(NidsFile& file, int& v) { return file.readLong(v) == 1; }

// Fields in wire order; false when the data ends first.
template <class... Field>
bool readFields(NidsFile& file, Field&... field) {
  return (readField(file, field) && ...);
}

}  // namespace KYV
#endif
