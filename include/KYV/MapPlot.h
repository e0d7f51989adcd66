#ifndef KYV_MAPPLOT_H
#define KYV_MAPPLOT_H

#include <span>
#include <vector>

#include "KYV/Drawing.h"
#include "KYV/EarthPoints.h"
#include "KYV/PlotAttr.h"
#include "KYV/Points.h"
#include "KYV/Rect.h"
#include "KYV/String.h"

namespace KYV {

struct ParamAnswer;
template <class T>
struct ParamKey;

/// The geographic background, under or over the data: line maps from files, pictures, land and background colour,
/// latitude-longitude lines. What is drawn at which scale is told by a map list, whose entries docs/maps.md describes.
class MapPlot : public Drawing {
 public:
  MapPlot() { MapPlot::init(); }
  /// @param params  as for setParam(), after the resource `parameter`
  explicit MapPlot(const char* params) : MapPlot() { MapPlot::setParam(params); }

  /// Resets and reads the resources `color_table`, `color_map`, `color_latlon` and `parameter`.
  int init() override;
  /// The domain of the region "globe".
  int getDomain(Domain& domain) override;
  int setParam(const char* params) override;
  /// Whether an item is one of its parameters.
  static void explain(ParamAnswer& answer);
  // Files, dates and frames are no matter of maps.
  int setFile() override { return 0; }
  int setInput(const char*) override { return 0; }
  int setNameConv(const char*) override { return 0; }
  int setFilename() override { return 0; }
  int setFilename(const char*) override { return 0; }
  int setFilename(Date&) override { return 0; }
  int setFilename(Date&, const char*) override { return 0; }
  int setForeTime(const char*) override { return 0; }
  int getDate(Date&) override { return 0; }
  int getLoopType() override { return LOOP_NONE; }
  int getInitDate(Date&) override { return 0; }
  int getDateOffset() override { return 0; }
  int getNumFrames() override { return 0; }
  int getSync() override { return 0; }
  /// Draws all that the map list names, where the plot draws maps at all.
  int draw(Plot& plot) override;
  int print() override;

  /// A map list: entries separated by commas, names of list files among them.
  int setMapFiles(const char* list) { return map_files.copy(list), 1; }
  int setColorTable(const char* name) { return color_table.copy(name), 1; }
  int setColor(const char* attr) { return color.copy(attr), 1; }
  int setColorLine(const char* attr) { return color_line.copy(attr), 1; }
  int setColorLatLon(const char* attr) { return color_latlon.copy(attr), 1; }

  /// Draws a map file with the plot's attributes: the segments that may lie in the plot's domain.
  /// @return 1; 0 for a plot that is no map or a file that cannot be read
  int draw(Plot& plot, const char* file);
  /// Draws parallels and meridians with their labels.
  /// @param lat, lon  spacing, degrees, at least MIN_STEP
  int drawLatLon(Plot& plot, float lat, float lon);
  /// Draws one entry of a map list, provided that its sign and its conditions hold.
  /// @param type  as the item `over` (2) or `under` (1) sets it
  int process(Plot& plot, const char* entry, int type);

  /// The files of a map list that are not there; pictures and the entries of list files are not looked for.
  static Strings findMissing(const char* list);

  static constexpr float MIN_STEP = 0.1f;

 private:
  static std::span<const ParamKey<MapPlot>> getKeys();
  struct Keyword;
  static std::span<const Keyword> getKinds();
  // Whether an entry names a map file or a list, and nothing that is drawn otherwise.
  static bool isFileEntry(const char* entry);

  // Bits of `type`.
  enum Type { UNDER = 1, OVER = 2 };

  bool admits(char sign, int layerType) const;
  void drawItem(Plot& plot, const char* item);
  void drawList(Plot& plot, const char* file, bool signedList);
  int drawMapFile(Plot& plot, const char* entry);
  int drawMapImage(Plot& plot, const char* entry);
  int drawPageImage(Plot& plot, const char* entry);
  int drawMetafile(Plot& plot, const char* entry);
  int drawRawFile(Plot& plot, const char* entry);
  int drawMarker(Plot& plot, const char* entry);
  int drawGrid(Plot& plot, const char* entry);
  int drawLatLonEntry(Plot& plot, const char* entry);
  int drawBackground(Plot& plot, const char* entry);
  int drawSegment(Plot& plot);
  void setStep(const char* text);
  void useText(Plot& plot, const PlotAttr& attr);
  bool drawName(Plot& plot, const Point& p, const char* name);
  void drawParallel(Plot& plot, float lat);
  void drawMeridian(Plot& plot, float lon, float high);

  int def = 1;
  int type = 0;
  int flag = 0;
  int fill_cont = 0;
  int fill = 0;
  int map_in = 0;
  int index = 0;
  float lat_step = Const::MISS;
  float lon_step = Const::MISS;
  String map_files;
  String color_table;
  String color;  // of maps
  String color_line;
  String color_latlon;

  EarthPoints places;        // of the segment in hand
  Points line;               // the same on the plot; a missing point lifts the pen
  std::vector<Rect> labels;  // drawn by the map list or map file in hand, plot units
  bool in_list = false;      // whether a map list is being drawn
};

}  // namespace KYV
#endif
