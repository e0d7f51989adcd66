#ifndef KYV_NIDSFILE_H
#define KYV_NIDSFILE_H

#include <cstdint>
#include <memory>
#include <vector>

#include "KYV/BZlib.h"
#include "KYV/Buffer.h"
#include "KYV/Const.h"
#include "KYV/Date.h"
#include "KYV/DomainVal.h"
#include "KYV/StrLib.h"
#include "KYV/Zlib.h"

namespace KYV {

struct NidsDamage;
struct NidsData;
struct NidsInfo;
struct NidsPacket;
struct NidsRadial;
struct NidsRaw;
struct NidsRun;
struct NidsShape;
struct NidsText;
struct NidsVector;
struct NidsWind;
class NidsSource;

/// Reads one NIDS (NEXRAD Level III) product file.
///
/// Bytes come through one checked reader, whether the file is plain, a chain of zlib streams or a bzip2 stream. The
/// packets are pulled: readHeader() leads to the first packet of the first symbology layer, readData() or the element
/// readers consume a packet, readPacket() leads to the next one. Readers return 1, 0 when there is nothing more or
/// the data is wrong, -1 when the data ends or is encrypted. All numbers of a product are big-endian, a halfword has
/// 2 bytes and a word 4.
class NidsFile {
 public:
  static constexpr int RADIAL = 44831;  // 0xAF1F, radial runs
  static constexpr int RASTOR = 47631;  // 0xBA0F, raster runs
  static constexpr int GENERIC = 28;

  NidsFile();
  explicit NidsFile(const char* name);
  ~NidsFile();

  int init();
  /// Opens a product file; "-" is standard input, which is kept, so that it can be opened again. A file that is
  /// wrapped in gzip or bzip2 as a whole is unwrapped.
  [[nodiscard]] int open(const char* name);
  int close();
  bool isOpen() const { return opened; }
  /// A quiet reader gives no warnings: for a file that another reader reads as well, so that the user is told once.
  int setQuiet(bool on) { return quiet = on, 1; }
  /// Whether it has kept a warning to itself since the file was opened.
  bool hasKeptQuiet() const { return kept_quiet; }

  // Bytes.
  /// The next segment of the file into the input buffer; the bytes it then holds, 0 when a zlib stream is damaged.
  int readRaw();
  /// The next n bytes of the product (a null destination skips them): 1, 0 at the end or on damage, -1 encrypted.
  int readBytes(unsigned char* bytes, int n);
  /// Skips a line of the file itself, in front of the product.
  int skipLine();
  int readShort(short& v);
  int readUshort(unsigned short& v);
  int readLong(int& v);
  int readUlong(unsigned int& v);
  short readShort();
  int readLong();
  /// Hex dump of the first n pending bytes of the decompressed (which = 1) or plain buffer.
  int dump(int n, int which);

  // Header.
  int messHeader();
  int prodDesc();
  /// Header, description, geometry, up to the first packet; 0 (with a message) for what is no radar product.
  int readHeader(NidsInfo& info);
  /// The radar-centred domain that readHeader built.
  const DomainVal& getDomainVal() const { return dom; }
  /// The two float forms of threshold halfwords.
  static float float16(int h);
  static float float32(int hi, int lo);

  // Catalogue; all by the product code alone.
  int getCode() const { return code; }
  /// The 16 threshold halfwords and the ten product-dependent parameters as they stand, i from 0.
  int getThreshold(int i) const { return ithres[i]; }
  int getParam(int i) const { return param[i]; }
  bool isBRef() const;
  bool isDHR() const;
  bool isBSW() const;
  bool isCRef() const;
  bool isVel() const;
  bool isSRVel() const;
  bool isTops() const;
  bool isEnhTops() const;
  bool isLRef() const;
  bool isVIL() const;
  bool isDigVIL() const;
  bool isVAD() const;
  bool isPrec() const;
  bool isDPrec() const;
  bool isDPrRate() const;
  bool isHydroClass() const;
  bool isCorrel() const;
  bool isDPA() const;
  bool isDSP() const;
  bool isDRef() const;
  bool isDual() const;
  /// Product name and label, fields of 50 bytes.
  int setInfo(char* s);
  int setMisc(char* s);

  // Packets.
  int prodSymb();
  int prodSymbLayer();
  /// The next packet's header: its code, 0 for none that is known, -1 at the end.
  int readPacket();
  int readRadial(NidsRadial& radial);
  int readRastor();
  int readRun(NidsRun& run);
  int readVector(NidsVector& vector);
  int skipVector();
  int readText(NidsText& text);
  int skipText();
  int readWind(NidsWind& wind);
  int skipWind();
  int graphic();
  int gotoGraphic();
  int graphicLayer();
  /// The graphic block from wherever the reader stands before it, also of a product without symbology block; reads its
  /// head as graphic() does.
  int findGraphic();
  /// As readPacket(), but inside a page a packet that is not known is passed over by its length.
  int nextPacket();
  /// All symbols, tracks, contours and texts of the symbology block's layers, of a product that was just opened,
  /// instead of readHeader(). What was decoded before damage is kept.
  /// @return their number; 0 without any, -1 when the file ends before the block
  int readShapes(std::vector<NidsShape>& shapes);
  bool isPacketRadial() const { return pk_code == RADIAL || pk_code == 16; }
  bool isPacketRastor() const { return pk_code == RASTOR; }
  bool isPacketVector() const { return pk_code == 7 || pk_code == 10; }
  bool isPacketWindbarb() const { return pk_code == 4; }
  bool isPacketText() const { return pk_code == 1 || pk_code == 8; }
  /// Whether the I and J of a text are columns and lines of a display page, as those of the messages that stand in the
  /// place of an accumulation without rain.
  bool isPageText() const;
  bool isPacketDpa() const { return pk_code == 17; }
  bool isPacketGeneric() const { return pk_code == GENERIC; }
  int getPacketCode() const { return pk_code; }
  int getNbin() const { return nbin; }
  int getNrad() const { return nrad; }

  /// The image packet as an array of values; always 1, what could be decoded is kept.
  int readData(NidsData& d);
  /// The image packet's levels as they stand; 0 when the present packet is no image, or the product has too many.
  int readLevels(NidsRaw& image);
  /// The radial component of a generic packet (28), at which readPacket() or readHeader() stopped, as an array like
  /// that of readData(). 1, with what could be decoded; 0 for another packet or component, d's array is then as it was.
  int readGeneric(NidsData& d);
  /// The same with its levels as they stand.
  int readGeneric(NidsRaw& image);

  /// Whether the body is encrypted, so that nothing of it can be read.
  bool isEncrypted() const { return data_type == ENCRYPTED; }
  /// Whether reading has stopped because the product has more to draw than any.
  bool hasStopped() const { return excess != NUM_SHARE; }
  /// Reads what is left, and tells what the product promised and the file did not hold; false for a whole product.
  /// After the packets: the image that readData() delivered counts.
  bool getDamage(NidsDamage& d);

 private:
  enum DataType { PLAIN = 0, ENCRYPTED = 2, BZIP2 = 3 };
  // What a product may have to draw.
  enum Share { CELLS, TEXTS, CHARACTERS, POINTS, BARBS, SYMBOLS, NUM_SHARE };
  bool spend(Share share, std::int64_t n);
  std::int64_t getShare(Share share) const;
  bool endsFrame(std::int64_t size);
  void noteImage(int got, int wanted, bool rows);
  KYV_PRINTF(2, 3) void warn(const char* format, ...) const;
  // Bytes.
  bool isZlibSegment() const;
  int inflateSegment();
  int reportDamage();
  int checkMarkers();
  int decompress();
  int deliver(unsigned char* to, int n);
  // Header.
  int skipHeading();
  int reportOther();
  int readDescription();
  static int toSeconds(std::int64_t secs);
  void decodeThresholds();
  void printDescription() const;
  void findPackets();
  void setGeometry();
  void setExtremes();
  // Packets.
  int symbologyBlock(bool asked);
  int skipRest();
  int readPacketHead(const NidsPacket& packet);
  int graphicHead(bool divided);
  int clampCount(int count, int limit);
  float levelValue(int level) const;
  float thresValue(int level) const;
  // Image.
  template <class Begin, class Take>
  bool readComponent(Begin begin, Take take);
  int fetchLine();
  void describe(NidsData& d);
  void startRadials(NidsData& d, int radials, int bins, float bin_size) const;
  bool canHoldGrid();
  void readRadials(NidsData& d);
  void readRows(NidsData& d);

  std::unique_ptr<NidsSource> file;
  bool opened = false;
  bool quiet = false;
  mutable bool kept_quiet = false;
  DomainVal dom;
  Date date;
  int seg_type = 0;  // kind of the last raw segment: 0 plain, 1 zlib
  int data_type = PLAIN;
  Buffer raw;  // bytes just read from the file
  Buffer in;   // plain or inflated bytes
  Buffer out;  // bzip2 output
  Zlib zs;
  BZlib bz;
  int code = 0;
  std::int64_t mess_date = 0;
  int mess_len = 0;
  int src = 0;
  int mess_blks = 0;
  float lat = 0.0f;
  float lon = 0.0f;
  float elev = 0.0f;
  int mode = 0;
  int vol_scan = 0;
  std::int64_t vol_date = 0;
  int vcp = 0;
  int seq = 0;
  std::int64_t prod_date = 0;
  int param[10] = {};
  int ithres[16] = {};
  float thres[16] = {};
  int nmaps = 0;
  int off_symb = 0;
  int off_graph = 0;
  int off_tab = 0;
  int prodsym_len = 0;
  int prodsym_lyr = 0;
  int prodsym_lyr_len = 0;
  int pk_code = 0;
  int rad = 0;
  int nrad = 0;
  int nbin = 0;
  int bin0 = 0;
  float ang0 = 0.0f;
  float ang1 = 0.0f;
  int row = 0;
  int col = 0;
  int nrow = 0;
  int ncol = 0;
  int row0 = 0;
  int col0 = 0;
  int len = 0;
  int num = 0;
  int val = 0;
  int bytes = 0;
  int nbytes = 0;
  int pack = 0;
  float res = 0.0f;
  int nx = 0;
  int ny = 0;
  int scan_num = 0;
  float scan_elev = 0.0f;
  float range = 0.0f;
  float max = 0.0f;
  float nmax = 0.0f;
  int num_graph = 0;
  std::vector<unsigned char> line;  // the encoded bytes of one radial or row
  int total = 0;                    // bytes of the message delivered; unlike `bytes` it is not reset by pages
  bool body_start = true;           // a body may begin here, encrypted or not
  bool first_segment = true;        // no segment has been read yet
  bool stream_open = false;         // the zlib stream goes on in the next segment
  bool damaged = false;             // a compressed stream was damaged: nothing follows
  bool text_pending = false;        // the current text has not been read
  int layer_end = 0;                // where the layer ends, as `total`; 0: not known
  bool layer_done = false;          // the layer's end has been passed
  bool unpacking = false;           // a bzip2 stream has begun and not ended
  bool framed = false;              // the message lies in a broadcast frame
  std::int64_t message_start = 0;   // byte of the file, of a message that is no zlib stream
  int packets = 0;                  // heads of packets that were read
  int image_got = 0;                // radials or rows of the image, whole ones and those that it claims
  int image_wanted = 0;
  bool image_rows = false;
  float bad_angle = Const::MISS;  // of the radial at which an image stops
  bool clamped = false;           // an image claims more than any has
  std::int64_t spent[NUM_SHARE] = {};
  int excess = NUM_SHARE;  // the share of which the product has more than it may: reading has stopped there
};

}  // namespace KYV
#endif
