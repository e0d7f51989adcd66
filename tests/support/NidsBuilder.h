#ifndef NIDSBUILDER_H
#define NIDSBUILDER_H

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Makes a product of the NIDS format as bytes: message header, description, symbology block, graphic and tabular
/// block, in any of the header forms and compressions. Offsets, lengths and counts are computed unless they are set.
///
///   NidsBuilder().header(19).radial(0.0f, 1.0f, {{3, 5}}).bytes()
///
/// is a base reflectivity product of one radial, three bins of level 5. Packets go into the layer or graphic page that
/// was begun last; radials and rows into the packet that was begun last.
class NidsBuilder {
 public:
  using Bytes = std::vector<unsigned char>;
  struct Run {
    int run;    // bins or cells
    int level;  // raw
  };
  struct Barb {
    int level, x, y, dir, spd;
  };
  struct Line {
    int x1, y1, x2, y2;
  };
  struct Place {
    int x, y;
  };
  enum class Heading {
    None,         // the message itself
    Wmo,          // two lines
    Frame,        // broadcast frame: start, sequence number, the two lines; trailer at the end
    ControlBlock  // 24 bytes beginning 40 0C, the two lines
  };
  enum class Body {
    Plain,
    Zlib,  // the whole message in streams of 4000 bytes, the first with control block and heading repeated
    Bzip2  // one stream behind the description
  };
  enum class Wrap { None, Gzip, Bzip2 };

  NidsBuilder();

  // Message header.
  NidsBuilder& header(int code, int source = 1);
  NidsBuilder& messageTime(int day, int secs);
  NidsBuilder& messageLength(int bytes);
  NidsBuilder& destination(int id);
  NidsBuilder& blocks(int n);

  // Description.
  NidsBuilder& divider(int halfword);
  NidsBuilder& location(float lat, float lon);
  NidsBuilder& height(int feet);
  NidsBuilder& mode(int m);
  NidsBuilder& vcp(int pattern);
  NidsBuilder& sequence(int n);
  NidsBuilder& volume(int n);
  NidsBuilder& volumeTime(int day, int secs);
  NidsBuilder& generationTime(int day, int secs);
  /// Product-dependent parameter, 1 to 10.
  NidsBuilder& param(int number, int halfword);
  NidsBuilder& elevationNumber(int n);
  /// Threshold halfword, 0 to 15.
  NidsBuilder& threshold(int i, int halfword);
  NidsBuilder& thresholds(const std::vector<int>& halfwords);
  NidsBuilder& maps(int halfword);
  /// Halfwords from the message code; what is not set is computed.
  NidsBuilder& offsets(std::optional<int> symbology, std::optional<int> graphic, std::optional<int> tabular);

  // Symbology block.
  /// Begins a layer; the first one need not be begun.
  NidsBuilder& layer();
  /// Claims a length for the present layer instead of its own.
  NidsBuilder& layerLength(int bytes);
  /// Begins a run-length radial packet (AF1F) of so many bins.
  NidsBuilder& radials(int bins, int first = 0);
  /// A radial of runs; begins a packet when there is none, whose bins are those of its longest radial.
  NidsBuilder& radial(float start, float width, const std::vector<Run>& runs);
  /// Begins a digital radial packet (16) of so many bins.
  NidsBuilder& digital(int bins, int first = 0);
  /// A radial of a byte for each bin; an odd number of them is padded.
  NidsBuilder& digitalRadial(float start, float width, const Bytes& levels);
  /// Claims a number of radials or rows for the present packet instead of its own.
  NidsBuilder& claim(int radialsOrRows);
  /// Begins a raster packet (BA0F or BA07); packing 2 is run-length nibbles, 1 pairs of bytes.
  NidsBuilder& raster(int code = 0xBA0F, int packing = 2);
  /// A row of a raster or precipitation packet.
  NidsBuilder& gridRow(const std::vector<Run>& runs);
  /// Begins a precipitation array packet (17) of so many boxes a row.
  NidsBuilder& precip(int boxes);
  /// Text packets, code 1 (without value) or 8.
  NidsBuilder& text(int code, int value, int i, int j, std::string_view characters);
  /// Wind barbs (4) and vector arrows (5).
  NidsBuilder& barbs(const std::vector<Barb>& list);
  NidsBuilder& arrows(const std::vector<Barb>& list);
  /// Unlinked vectors, code 7 (without value) or 10.
  NidsBuilder& vectors(int code, int value, const std::vector<Line>& list);
  /// Linked vectors, code 6 (without value) or 9.
  NidsBuilder& linked(int code, int value, const std::vector<Place>& points);
  /// Any packet of code, length, content: 3, 11 to 15, 18.
  NidsBuilder& packet(int code, const Bytes& content);
  /// A generic packet (28) of radials of one degree, from north on, of bins of 250 m.
  NidsBuilder& generic(const std::vector<std::vector<int>>& radials);
  /// Bytes as they stand.
  NidsBuilder& raw(const Bytes& content);

  // Further blocks.
  /// Begins a page of the graphic block.
  NidsBuilder& page();
  NidsBuilder& tabular(const Bytes& content);

  // Form.
  NidsBuilder& heading(Heading h, std::string_view ttaaii = "SDUS54");
  NidsBuilder& body(Body b);
  NidsBuilder& wrap(Wrap w);

  Bytes bytes() const;
  /// The message alone: no heading, not compressed.
  Bytes message() const;
  /// 0 when the file cannot be written.
  int write(const char* filename) const;

  // The two packings by themselves.
  static Bytes zlibStream(const Bytes& from);
  static Bytes bzip2Stream(const Bytes& from);
  static Bytes gzipFile(const Bytes& from);

 private:
  struct Packet {
    int code = 0;
    std::vector<int> head;  // halfwords behind the code, up to the count
    std::vector<int> tail;  // halfwords behind the count
    int count = 0;          // of elements; not written when counted is false
    bool counted = false;
    std::optional<int> claimed;
    Bytes content;
    int bins = 0;  // of the longest radial
  };
  struct Part {  // a layer or a page
    std::vector<Packet> packets;
    std::optional<int> length;
  };

  Part& part();
  Packet& open(int code);
  Packet& element(int code);
  static Bytes encode(const Part& p);
  Bytes symbology() const;
  Bytes graphic() const;
  Bytes front(bool repeated) const;

  int code_ = 19;
  int source_ = 1;
  int day_ = 19724;  // 1 January 2024
  int secs_ = 43200;
  int destination_ = 0;
  int divider_ = -1;
  int lat_ = 35333;  // thousandths of a degree
  int lon_ = -97278;
  int feet_ = 1277;
  int mode_ = 2;
  int vcp_ = 212;
  int sequence_ = 1;
  int volume_ = 1;
  int elevation_ = 1;
  int maps_ = 0;
  std::array<int, 10> param_{};
  std::array<int, 16> threshold_{};
  // What is not set is computed, times are those of the message.
  std::optional<int> length_;
  std::optional<int> blocks_;
  std::optional<int> off_symbology_;
  std::optional<int> off_graphic_;
  std::optional<int> off_tabular_;
  std::optional<std::array<int, 2>> volume_time_;
  std::optional<std::array<int, 2>> generation_time_;
  Heading heading_ = Heading::None;
  Body body_ = Body::Plain;
  Wrap wrap_ = Wrap::None;
  bool in_page_ = false;
  std::vector<Part> layers_;
  std::vector<Part> pages_;
  Bytes tabular_;
  std::string ttaaii_ = "SDUS54";
};

#endif
