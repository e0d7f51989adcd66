#ifndef KYV_TIMESPEC_H
#define KYV_TIMESPEC_H

#include "KYV/Const.h"
#include "KYV/DateVal.h"
#include "KYV/String.h"

namespace KYV {

class Date;

/// The time that a text asks for, as the resource `current` gives it:
/// [date][+|-][offset]["la"["#"periods]][+|-][offset].
///
/// Dates are "2024-05-01", "2024-05-01T18:30", "2024-05-01T18:30:00", "20240501", "20240501_1830", "202405011830", each
/// with or without hour, minute and second; they have at least 8 characters, or a '#' in front. Offsets are hours "6",
/// hours and minutes "6:30", with seconds "6:30:00", and days "1d", "1d6", "10d12:30"; a 'd' behind the first digits
/// makes any text an offset. They count back unless a '+' stands before them. "la", of which "l" is enough, is the
/// latest file. A leading '>' means a file to be written, "@file" this one. What does not fit is passed over.
struct TimeSpec {
  static constexpr int BACKWARD = -1;
  static constexpr int FORWARD = 1;

  explicit TimeSpec(const char* text);

  bool isDated() const { return !Const::isMissing(date.year); }
  /// The moment itself: the date, or now, with the offset. Fields that the text leaves out are missing, an offset gives
  /// hour and minute.
  int getDate(Date& d) const;

  bool whole = true;          // all of the text fits
  bool output = false;        // '>'
  bool named = false;         // '@': all the rest is the name
  String name;                // of the file
  DateVal date;               // fields that are given; none: now
  int offset = 0;             // from the date, seconds
  bool latest = false;        // the latest file from there on
  int direction = BACKWARD;   // in which it is looked for
  int periods = Const::MISS;  // that the search goes through at most
  int shift = 0;              // from the file that was found, seconds
  String rest;                // behind "la", as it was given
};

}  // namespace KYV
#endif
