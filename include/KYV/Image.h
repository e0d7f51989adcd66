#ifndef KYV_IMAGE_H
#define KYV_IMAGE_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "KYV/Date.h"
#include "KYV/Domain.h"
#include "KYV/RGB.h"

namespace KYV {

class String;

/// The description of a raster: all its fields but colours, values and pixels.
struct ImageInfo {
  int source = 0;
  int type = 0;
  int version = 0;
  char datim[80] = "";
  Date date;
  char info[80] = "";
  int width = 0;
  int height = 0;
  int depth = 0;
  float dx = 0.0f;
  float dy = 0.0f;
  float xoff = 0.0f;
  float yoff = 0.0f;
  int bits_pixel = 0;
  int bytes_line = 0;
  int byte_order = 0;
  int color_type = 0;
  unsigned long red_mask = 0;
  unsigned long grn_mask = 0;
  unsigned long blu_mask = 0;
  int trans_color = -1;
  Domain domain;
  bool pix_ave = false;
  int cutoff[5] = {};
  int cutoff_base = 0;
  int num_cutoff = 0;
};

/// A raster in memory with its colours, its date, its text and the map it covers. Row 0 is the top one. Pixels outside
/// the raster read as 0 and are never written. A packed colour is 0xRRGGBB.
class Image : private ImageInfo {
 public:
  /// What a pixel's value is.
  enum ColorType { DIRECT = 0, INDEXED = 1, GREY = 2 };
  /// The largest width and height of a raster, pixels.
  static constexpr int MAX_SIZE = 16384;
  /// The most entries of a colour table or values.
  static constexpr int MAX_COLORS = 65536;

  /// One entry of the colour table.
  struct Color {
    float red = 0.0f;
    float green = 0.0f;
    float blue = 0.0f;
    std::uint32_t packed = 0;
  };

  Image() { init(); }

  /// Everything cleared: no pixels, no colours, nothing transparent, no domain.
  int init();
  /// The description without colours, values and pixels; pixels that no longer fit it are dropped.
  int copyInfo(const Image& other);
  /// The pixels and their layout.
  int copyData(const Image& other);
  /// A raster of this size, its pixels yet to be allocated; the depth, bits of a value, gives the storage: 8 or 16 bits
  /// indexed, 24 or 32 direct. 0, and unchanged, for a size of no use.
  int set(int w, int h, int bits);
  /// A raster of nx by ny pixels that covers the domain.
  int set(const Domain& dom, int bits);
  int set(const DomainVal& dom, int bits);
  /// Zero-filled pixels for the present size; 0 and no pixels beyond 256 MB.
  int allocData();
  int clearData();
  bool validData() const { return !data.empty(); }

  // Colour table.
  /// A table of n black entries.
  int allocColors(int n);
  int setColor(int i, float r, float g, float b);
  int setColor(int i, const RGB& rgb) { return setColor(i, rgb.red, rgb.green, rgb.blue); }
  float getRed(int i) const;
  float getGrn(int i) const;
  float getBlu(int i) const;
  int getRGB(int i, RGB& rgb) const;
  /// The entry from its packed value.
  int setColorVal(int i, std::uint32_t packed);
  std::uint32_t getColorVal(int i) const;
  /// Makes any raster an indexed one of 8 bits with at most so many colours (1 to 256): exactly when there are no more,
  /// else by median cut. The transparent colour stays one. Values of indices that changed their meaning are dropped.
  /// 0, and unchanged, without pixels.
  int reduceColors(int most = 256);
  int getNumColor() const { return static_cast<int>(colors.size()); }
  int setTransColor(int value) { return trans_color = value, 1; }
  int getTransColor() const { return trans_color; }

  // Pixels.
  int setPixel(int x, int y, std::uint32_t value);
  /// The packed colour of an indexed pixel (the last colour for an index beyond the table, the index without a table),
  /// else its value.
  std::uint32_t getPixel(int x, int y) const;
  /// The raw value.
  std::uint32_t getVal(int x, int y) const;
  int getRGB(int x, int y, RGB& rgb) const;
  /// Copies the getBytesLine() bytes of a row; the count.
  int getRow(int y, unsigned char* bytes) const;
  /// Whether a pixel has the transparent colour, or is clear.
  bool isPixelTrans(int x, int y) const;

  // How much of each pixel covers what is behind it. An image without it covers all.
  /// Room for a value of each pixel, all 255; 0 and none where there is no room for pixels either.
  int allocAlpha();
  int setAlpha(int x, int y, int value);
  /// From 0, clear, to 255, which every pixel has without it.
  int getAlpha(int x, int y) const;
  bool validAlpha() const { return !alpha.empty(); }
  /// A pixel's packed colour over another one.
  std::uint32_t blend(int x, int y, std::uint32_t behind) const;

  // Physical values of the indices.
  int setValues(const float* v, int n);
  float getValue(int i) const;
  /// The index whose value is nearest, Const::MISS when there are none.
  int getIndex(float value) const;

  // Geography, through the domain.
  std::uint32_t getPixel(const EarthPoint& e) const;
  /// With averaging, the mean over the pixel and its neighbours; transparent and missing ones do not count.
  float getValue(const EarthPoint& e) const;
  int tran(const EarthPoint& e, GridPoint& g) const { return domain.tran(e, g); }
  int tran(const GridPoint& g, EarthPoint& e) const { return domain.tran(g, e); }
  int tran(const EarthPoint& e, Point& p) const { return domain.tran(e, p); }

  // Fields.
  int setSource(int v) { return source = v, 1; }
  int getSource() const { return source; }
  int setType(int v) { return type = v, 1; }
  int getType() const { return type; }
  int setVersion(int v) { return version = v, 1; }
  int getVersion() const { return version; }
  int setDatim(const char* text);
  const char* getDatim() const { return datim; }
  int setDate(const Date& d) { return date = d, 1; }
  int getDate(Date& d) const { return d = date, 1; }
  int setInfo(const char* text);
  const char* getInfo() const { return info; }
  int getWidth() const { return width; }
  int getHeight() const { return height; }
  int getDepth() const { return depth; }
  int setRes(float x, float y) { return dx = x, dy = y, 1; }
  float getDx() const { return dx; }
  float getDy() const { return dy; }
  int setOffset(float x, float y) { return xoff = x, yoff = y, 1; }
  float getXoff() const { return xoff; }
  float getYoff() const { return yoff; }
  /// 8, 16, 24 or 32; pixels of another storage are dropped.
  int setBitsPixel(int bits);
  int getBitsPixel() const { return bits_pixel; }
  int setBytesLine();
  int getBytesLine() const { return bytes_line; }
  /// 1 most significant byte first, 0 least.
  int setByteOrder(int order) { return byte_order = order, 1; }
  int getByteOrder() const { return byte_order; }
  int setColorType(int t) { return color_type = t, 1; }
  int getColorType() const { return color_type; }
  int setMasks(unsigned long red, unsigned long green, unsigned long blue);
  int getMasks(unsigned long& red, unsigned long& green, unsigned long& blue) const;
  int setDomain(const Domain& dom) { return domain = dom, 1; }
  const Domain& getDomain() const { return domain; }
  int setPixAve(bool on) { return pix_ave = on, 1; }
  bool getPixAve() const { return pix_ave; }
  /// Up to four rising levels from 0 to 255, "%d:%d:%d:%d"; 256 closes them, the base is the first. 0, and unchanged,
  /// for anything else.
  int setCutoff(const char* text);
  std::vector<unsigned char>& getData() { return data; }
  const std::vector<unsigned char>& getData() const { return data; }

  // On standard output.
  int print() const;
  int printInt() const;
  int printValues() const;
  int printColors() const;
  int printHist() const;
  int printData(const EarthPoint& e) const;

 private:
  /// Where the bytes of a pixel begin in data; NOWHERE outside the raster or without its pixels.
  std::size_t find(int x, int y) const;
  RGB split(std::uint32_t value) const;
  /// The cell of a place; false outside the raster.
  bool locate(const EarthPoint& e, int& x, int& y) const;

  std::vector<Color> colors;
  std::vector<float> values;
  std::vector<unsigned char> data;
  std::vector<unsigned char> alpha;  // a byte a pixel, row by row, or none
};

}  // namespace KYV
#endif
