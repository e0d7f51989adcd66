#ifndef KYV_NIDSDAMAGE_H
#define KYV_NIDSDAMAGE_H

#include <cstdint>

#include "KYV/Const.h"
#include "KYV/String.h"

namespace KYV {

/// What a product promised and its file did not hold, as NidsFile::getDamage() tells it.
struct NidsDamage {
  enum Kind {
    CUT,     // the file ends before the message does
    BROKEN,  // a compressed stream cannot be unpacked any further
    FRAME,   // the message is whole, the end of its frame is missing
    ANGLE,   // radials stop at an angle that cannot be
    EXCESS   // it has more to draw than any product
  };

  Kind kind = CUT;
  std::int64_t end = 0;       // byte of the file at which it ends or breaks
  std::int64_t promised = 0;  // bytes that it should have; 0 where a compressed stream keeps that to itself
  const char* block = "";     // of the message, "symbology block", in which that is
  int got = 0;                // radials or rows of the image that were read whole
  int wanted = 0;             // and those that it claims; 0 without an image
  bool rows = false;          // rows, not radials
  float angle = Const::MISS;  // degrees, of ANGLE
  const char* share = "";     // of EXCESS: what there is too much of, and how much was read
  std::int64_t most = 0;
  bool empty = false;  // nothing at all of the body could be read

  /// A line for the user, without the file's name: "ends at byte 9000 of 17578, in the symbology block, after 166 of
  /// 360 radials".
  String toText() const;
  /// A few words for the page: "INCOMPLETE 166 of 360 radials".
  String toLabel() const;
};

}  // namespace KYV
#endif
