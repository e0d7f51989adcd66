#ifndef KYV_IMAGETEXT_H
#define KYV_IMAGETEXT_H

#include <string>
#include <string_view>
#include <vector>

namespace KYV {

class Image;

/// What an image file says of its picture, as lines of a comment: "ti=" the title, "dt=" the date label, "pd=" or
/// "proj=" the map. The texts come out of files: they are cut to the image's fields, and none of them
/// leads to a path of its own choice.
class ImageText {
 public:
  /// Takes over every line of a text that is one of these; the number taken.
  static int decode(Image& image, std::string_view text);
  /// The same for a single line without its end; 0 for any other line.
  static int decodeLine(Image& image, std::string_view line);
  /// The title (`info`).
  static int setTitle(Image& image, std::string_view text);
  /// The date label (`datim`), and the date when the label can be read.
  static int setLabel(Image& image, std::string_view text);
  /// The domain; 0, and unchanged, for a text that means none.
  static int setDomain(Image& image, std::string_view text);
  /// "ti=", "dt=" and, when the image has a domain, "pd=", each a line without its end. Control characters are blanks.
  static std::vector<std::string> encode(const Image& image);
};

}  // namespace KYV
#endif
