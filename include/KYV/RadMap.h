#ifndef KYV_RADMAP_H
#define KYV_RADMAP_H

#include <memory>
#include <optional>
#include <span>

#include "KYV/Drawing.h"
#include "KYV/Filename.h"
#include "KYV/Listener.h"
#include "KYV/NidsDamage.h"
#include "KYV/NidsData.h"
#include "KYV/NidsFile.h"
#include "KYV/NidsInfo.h"
#include "KYV/PlotAttr.h"
#include "KYV/String.h"
#include "KYV/Timezone.h"
#include "KYV/VarList.h"

namespace KYV {

class ExactImage;
struct EarthPoint;
struct ParamAnswer;
struct ParamItem;
template <class T>
struct ParamKey;
struct StormAttr;

/// The radar layer: draws one product file for each frame.
class RadMap : public Drawing, public Listener {
 public:
  RadMap() { RadMap::init(); }
  explicit RadMap(const char* param) : RadMap() { setParam(param); }

  int init() override;
  /// The product's radar-centred domain, made 3:2 wide; without a file one around the station. 0 without either.
  int getDomain(Domain& domain) override;
  int setFile() override;
  int setInput(const char*) override { return 1; }
  int setNameConv(const char* conv) override;
  /// The file of the resources `filename` and `current`, the latest of station and type without them.
  int setFilename() override;
  int setFilename(const char* name) override;
  int setFilename(Date& date) override { return setFilename(date, nullptr); }
  int setFilename(Date& date, const char* name) override;
  int setForeTime(const char*) override { return 1; }
  /// The layer's parameter string; items that are none of its keys are ignored.
  int setParam(const char* params) override;
  /// Whether an item is one of its parameters.
  static void explain(ParamAnswer& answer);
  /// The parameter string with the names that follow "va=" made one item of.
  static String joinVariables(const char* params);
  int getDate(Date& date) override { return file.getDate(date); }
  int getLoopType() override { return LOOP_DATE; }
  int getInitDate(Date& date) override;
  bool getDataTime(Date& date) override;
  int getDateOffset() override { return file.getOffset(); }
  int getNumFrames() override { return file.getNumFiles(); }
  int getSync() override { return sync; }
  int draw(Plot& surface) override;
  int print() override;

  /// Whether the layer draws the map background itself.
  int setMap(bool on) { return map = on ? 1 : 0, 1; }
  /// At most 4 characters.
  int setId(const char* text);
  /// At most 14 characters.
  int setType(const char* text);
  int setVariable(const char* text) { return variable.copy(text); }
  int setColorTable(const char* text) { return color_table.copy(text); }
  int setColorFill(const char* text) { return color_fill.copy(text); }
  int setColor(const char* text) { return color_data.copy(text); }
  /// The latest file is then looked for from this hour on (NameConv::setFixDate).
  int setHour(const char* text) { return file.setFixDate(text); }
  int setPath(const char* path) { return file.setPath(path); }
  int getInfo(NidsInfo& copy) const { return copy = info, 1; }
  /// The units of a storm attribute in the products' tables; empty for one that has none.
  static const char* getUnits(const char* attr);
  /// Draws what the variables ask for of a storm cell, at its place.
  int drawStorm(Plot& surface, const StormAttr& storm);
  /// Answers "QueryLoc" ("lat,lon") with the product's value there, on standard output.
  void callback(const char* name, const char* value, const void* data) override;

 private:
  static std::span<const ParamKey<RadMap>> getKeys();
  struct Painter;  // draws the packets of one product, see src/RadMapImage.cpp
  struct Cell;     // a storm at its place, see src/RadMapStorm.cpp

  void readVariables();
  static bool isVariable(const char* item);
  int settle(int there);
  void setRings(const ParamItem& item, int n, float standard, float unit);
  int drawImage(Plot& surface);
  int drawData(Plot& surface);
  void drawRings(Plot& surface, const EarthPoint& radar, const PlotAttr& attr);
  void drawPages(Plot& surface, const PlotAttr& attr);
  void drawShapes(Plot& surface);
  void drawVariableLabels(Plot& surface);
  void tellDamage(Plot& surface);
  void tellSite(Plot& surface);
  void tellAge(Plot& surface);
  static bool asksForNow();
  bool lookAhead();
  void drawMap(Plot& surface, const char* layer);
  PlotAttr getDataAttr(Plot& surface) const;
  void setLabels(Plot& surface);

  char id[5] = "";     // station, key i of the name convention
  char type[15] = "";  // product type, key t
  int site = 0;        // 1: mark the radar's site
  int table = 0;       // 1: draw the product's tabular pages
  float dist[4] = {};  // range rings, km; none when the first is 0
  bool plot = true;    // draw the image
  bool data = true;    // draw the data overlays
  String variable;     // storm attributes or data items to draw
  String color_table;
  String color_fill;  // empty: the product's default scale
  String color_data;
  int map = 0;
  int clutter = 0;                   // km (bins of a radial product) around the radar that are not drawn
  int ramp[2] = {Const::MISS, 200};  // threshold at the radar, and the range (bins or km) at which it falls to 0
  int shadow = 0;                    // copies of the drop shadow of storm symbols
  int sync = 0;
  Filename file;
  String reported;  // the search in vain that was last told of
  Timezone tz;
  VarList vars;  // chosen by `variable`
  std::unique_ptr<NidsFile> nids = std::make_unique<NidsFile>();
  // The product whose header was asked for; drawing the same file goes on from there.
  std::unique_ptr<NidsFile> ahead;
  String ahead_name;
  NidsInfo ahead_info;
  NidsInfo info;
  NidsData ndata;
  std::shared_ptr<ExactImage> exact;  // of the frame, where it is drawn so
  bool measured = false;              // the frame's product is drawn as the radar measured it
  bool has_shapes = false;            // whether the product's symbols, tracks or contours were drawn
  std::optional<NidsDamage> excess;   // of those
  Date newest;                        // of the file that the resources have chosen
  bool told_age = false;              // that the data found for now are old
  bool passed_over = false;           // whether the product has packets that its image does not show
};

}  // namespace KYV
#endif
