#ifndef KYV_DEVICEOPTIONS_H
#define KYV_DEVICEOPTIONS_H

#include <span>

namespace KYV {

class Strings;

/// A page's printable area, inches, the long side first. Each device has its own table.
struct Paper {
  const char* name;
  float width;
  float height;
};

/// What the option strings of file devices have in common. A value that is no number, or of no use, is refused and
/// leaves its variable as it was.
struct DeviceOptions {
  static constexpr float MIN_INCHES = 0.1f;
  static constexpr float MAX_INCHES = 200.0f;

  /// The paper of that name, any case; null when the table has none.
  static const Paper* findPaper(std::span<const Paper> papers, const char* name);
  /// The number of item i from character `from` on, when it lies within low and high.
  static bool getNumber(const Strings& items, int i, int from, float low, float high, float& value);
  /// "width:height" in inches.
  static bool getSize(const Strings& items, int i, int from, float& w, float& h) {
    return getSize(items, i, from, ':', MIN_INCHES, MAX_INCHES, w, h);
  }
  /// Warns of an item that is none of a device's options, or whose value is of no use.
  /// @param words  the options that there are
  static void refuseItem(const char* device, const char* item, std::span<const char* const> words);
  /// Warns that a device has refused a size in pixels, and says which it keeps.
  static void refuseSize(const char* device, float w, float h, int most, float kept_w, float kept_h);
  /// Width and height with sep between them, each within low and high.
  static bool getSize(const Strings& items, int i, int from, char sep, float low, float high, float& w, float& h);
};

}  // namespace KYV
#endif
