#ifndef KYV_REGION_H
#define KYV_REGION_H

namespace KYV {

class NearWord;
class String;

/// Named map regions out of a region file: lines of name, a word, a number and the domain text.
class Region {
 public:
  /// The domain text of a region (name in any case).
  /// @param file  found along the database path; null: "kyv.reg"
  /// @return 1; 0 when the file (with a message) or the region is not there
  static int get(const char* file, const char* name, String& text);
  /// The domain text of the first region of a file, or of the region after a ':' ("file:name").
  static int get(const char* fileAndName, String& text);
  /// Offers the names of the standard file.
  static void offerNames(NearWord& near);
};

}  // namespace KYV
#endif
