#ifndef KYV_GFONT_H
#define KYV_GFONT_H

#include <array>
#include <vector>

namespace KYV {

class File;
struct Point;

/// A stroke font, 105 units a text height, or the name of a device font.
class GFont {
 public:
  static constexpr int MAX_CODE = 7500;  // stroke codes in a font, separators included
  static constexpr int STROKE = 1;
  static constexpr int DEVICE = 2;

  GFont() { init(); }
  explicit GFont(const char* fontName) { init(), (void)read(fontName); }

  int init();
  /// Reads a font file found along the database path; null reads "modern.fnt", and a name that begins with '#' is a
  /// device font. 0 (and an empty font) when the file cannot be read.
  [[nodiscard]] int read(const char* fontName);
  /// Selects a character for get(); false when it has no strokes.
  bool setChar(char c);
  /// The next code of the character: 1 draw to p, 2 move to p, 0 at its end.
  int get(Point& p);
  int getWidth(char c) const;
  int getType() const { return type; }
  int getHeight() const { return height; }
  const char* getName() const { return name; }
  bool isOpen() const { return opened; }
  int print() const;

 private:
  struct Code {
    int x;
    int y;
  };
  int setDevice(const char* spec);
  void readCodes(File& file);
  void measure();

  char name[100] = "";
  int type = STROKE;
  std::vector<Code> codes;
  std::array<int, 256> widths{};
  std::array<int, 256> starts{};  // first code of each character, -1 without strokes
  int height = 12;
  int current = 0;  // code that get() reads next
  bool opened = false;
};

}  // namespace KYV
#endif
