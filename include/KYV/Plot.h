#ifndef KYV_PLOT_H
#define KYV_PLOT_H

#include <array>
#include <span>
#include <vector>

#include "KYV/ColorBar.h"
#include "KYV/ColorMap.h"
#include "KYV/Date.h"
#include "KYV/Domain.h"
#include "KYV/EarthPoints.h"
#include "KYV/GeomBox.h"
#include "KYV/Graph.h"
#include "KYV/Listener.h"
#include "KYV/Panel.h"
#include "KYV/PlotAttr.h"
#include "KYV/String.h"
#include "KYV/Timezone.h"

namespace KYV {

class Strings;
class NearWord;
struct ParamAnswer;
template <class T>
struct ParamKey;

/// The surface that layers draw on, and the pictures that are taken of it: owns the graph with its device, the colours,
/// the panels with their map domains, the labels and the colour bar. Transform 0 of the graph is the page, transform 1
/// the map of the current panel; drawing in earth, grid or plane coordinates goes to the map, labels and border to the
/// page.
class Plot : public Listener {
 public:
  static constexpr int MAX_PANEL = 16;
  static constexpr int MAX_LABEL = 30;
  /// Drawing flags.
  enum Draw { DRAW_PLOT = 0, DRAW_DATA = 1, DRAW_MAP = 2, DRAW_TEXT = 3, DRAW_BORDER = 9 };

  Plot();
  explicit Plot(const char* params) : Plot() { (void)open(params); }
  ~Plot();
  Plot(const Plot&) = delete;
  Plot& operator=(const Plot&) = delete;

  // Life cycle.
  int init();
  /// Chooses and opens the device by resources and parameters, reads the colours; 0 when there is no device to draw on.
  [[nodiscard]] int open(const char* params);
  [[nodiscard]] int open() { return open(nullptr); }
  /// 0 when the output could not be written.
  int close();
  /// As close(), for a plot in which nothing was drawn: its file stays as it was before. 0 where the plot is a window.
  int discard();
  /// Hands control to the device or, where the resource `output` asks for a picture, writes that: one file, or for
  /// several frames an animated GIF or a numbered PNG file each. 0 when it could not be written.
  int manage();
  /// Whether the resource `output` asks for a picture that this device cannot give, being a file of instructions.
  bool isPictureDue() const { return image_output && graph.isFileDevice(); }
  /// Border, labels, then the device's loop.
  int end();
  /// A drawing is complete: the labels it added make a row.
  int done();
  int update() { return graph.update(); }
  int clear();
  KYV_PRINTF(2, 3) int message(const char* format, ...);
  int setCursor(int shape) { return graph.setCursor(shape); }
  int getDevice(String& name) { return graph.getDevice(name); }
  int addCallback(const char* event, Listener* listener, const void* data);
  /// Takes the keys of the screen: Return ends, v s S with Alt tell a place and save pictures.
  void callback(const char* name, const char* value, const void* data) override;
  bool isOpen() const { return graph.isOpen(); }

  // Frames of an animation.
  /// Starts a frame without labels, on one panel that shows the map of panel 0; 0, with all as it was, when the device
  /// holds no more frames.
  int newFrame();
  /// Clears the frame in hand, which is then as a new one.
  int clearFrame();
  int deleteFrame(int frame);
  int deleteAllFrames();
  int getNumFrames() { return graph.getNumFrames(); }

  int setFixed(bool on) { return graph.setFixed(on); }
  bool getInverse() { return graph.getInverse(); }
  Graph& getGraph() { return graph; }
  int setParam(const char* params);
  /// Whether an item is one of its parameters.
  static void explain(ParamAnswer& answer);

  // Panels and domains.
  int initPanel();
  /// Ends the panel in hand and starts another, its place by a panel text.
  int newPanel(const char* text);
  /// Places the map: r in fractions of the panel, aspect 0 for that of r.
  int setPanel(const Rect& r, float aspect, int h, int v);
  int setPanel(const Rect& r, float aspect) { return setPanel(r, aspect, 2, 2); }
  int setPanel(const Rect& r) { return setPanel(r, 0.0f); }
  /// The map where it leaves room for labels above and below and for the colour bar.
  int setPanel();
  int setPanel(const Rect& r, const Domain& domain);
  int setPanel(const Domain& domain);
  /// Makes panel n the current one.
  int setPanel(int n);
  int setPanelDomain(int n, const Domain& domain);
  int getPanelDomain(int n, Domain& domain) const;
  int setDomain(const Domain& domain) { return setPanel(domain); }
  int setDomain(const DomainVal& domain) { return setPanel(Domain(domain)); }
  int setDomain(const Rect& r, const Domain& domain) { return setPanel(r, domain); }
  const Domain& getDomain() const { return rec().domain; }
  DomainVal getDomainVal() const { return rec().domain.get(); }
  /// The panel's domain, its view set to the map's place on the page.
  int getViewDomain(Domain& domain) const;
  int getProj() const { return getDomain().proj; }
  float getPLat() const { return getDomain().plat; }
  float getPLon() const { return getDomain().plon; }
  float getDomVert() const { return getDomain().getVert(); }
  float getDomAspect() const { return getDomain().getAspect(); }
  float getDomCLat() const { return getDomain().clat; }
  float getDomCLon() const { return getDomain().clon; }
  int getDomNx() const { return getDomain().nx; }
  int getDomNy() const { return getDomain().ny; }
  float getDomDx() const { return getDomain().dx; }
  float getDomDy() const { return getDomain().dy; }
  /// Height of the map's window, plot units of the domain.
  float getVert() const { return rec().panel.window.height(); }
  bool withinDomain(const Point& p) const { return getDomain().within(p); }
  bool withinDomain(const EarthPoint& e) const { return getDomain().within(e); }
  bool withinDomainExt(const Point& p, int n) const { return getDomain().withinExt(p, n); }
  bool withinDomainExt(const EarthPoint& e, int n) const { return getDomain().withinExt(e, n); }
  int whereDomain(const Point& p) const { return getDomain().where(p); }
  int whereDomain(const EarthPoint& e) const { return getDomain().where(e); }
  int tranPlotWindow(float px, float py, float& wx, float& wy) const { return graph.tranPlotWindow(px, py, wx, wy); }
  int getNumPanels() const { return num_panel; }
  int getPanel() const { return panel; }
  /// "800x600+10-20": 1 size, 2 size and offset, 3 offset, 0 neither.
  static int decodeGeometryStr(const char* text, GeomBox& box);
  /// "0.5x0.5+0.5+0.5" in fractions, "2x2+1+0" a cell of a grid, of an area.
  static bool decodePanelStr(const Rect& area, const char* text, GeomBox& box);

  // Primitives. A negative colour index (of an "off" colour) draws nothing.
  int drawLine(const Points& points);
  int drawLine(const Point& p1, const Point& p2);
  int drawLine(float x1, float y1, float x2, float y2) { return drawLine(Point(x1, y1), Point(x2, y2)); }
  int drawLine(const EarthPoints& points);
  int drawLine(const EarthPoint& e1, const EarthPoint& e2);
  int drawLine(const GridPoint& g1, const GridPoint& g2);
  int drawLine(const GridPoints& points);
  /// A smooth curve through the points.
  int drawSpline(const Points& points);
  int drawSpline(const EarthPoints& points);
  int drawRect(const Rect& r);
  int drawCircle(const Point& p, float r);
  /// The places r km from e.
  int drawCircle(const EarthPoint& e, float r);
  /// On a map a polygon that reaches its seam is cut there.
  int drawFill(const Points& points);
  int drawFill(const Rect& r);
  int drawFill(const EarthPoints& points);
  int drawFillarea(const Points& points) { return drawFill(points); }
  /// A filled outline of any size on the map, of which devices get the part in the window: some count in 16 bits.
  int drawArea(const Points& outline);
  int drawText(const Point& p, const char* text);
  int drawText(float x, float y, const char* text) { return drawText(Point(x, y), text); }
  int drawText(const EarthPoint& e, const char* text);
  int drawText(const GridPoint& g, const char* text);
  KYV_PRINTF(3, 4) int drawFormText(const Point& p, const char* format, ...);
  KYV_PRINTF(3, 4) int drawFormText(const EarthPoint& e, const char* format, ...);
  int drawMark(const Point& p);
  int drawMark(const EarthPoint& e);
  int drawMark(const GridPoint& g);
  int drawSymbol(const Point& p, const char* name, float size);
  /// A picture at the upper left corner of the map.
  int drawImage(const Image& image);
  int drawImage(const Image& image, int arg);
  /// A picture file at a place of the current transform; 0 when it cannot be read.
  int drawImage(const char* file, float x, float y);
  /// The same beside a place: "ul" "uc" "ur" "cl" "cc" "cr" "ll" "lc", any other "lr".
  int drawImage(const char* file, float x, float y, const char* position);
  /// Reads a picture file, beneath the resource `image_path`.
  static int readImage(const char* file, Image& image);
  /// A picture file by "file[:position[:dx:dy]]" or "file::dx:dy": at a position of the map or, when `page` is set, of
  /// the page, moved by dx and dy of its units; 0 when it cannot be read.
  int placeImage(const char* entry, bool page);
  /// The surface as a picture, with the transparent colour, title, date and map of the plot.
  int getImage(Image& image);
  int clearRect(const Rect& r) { return graph.clearRect(r); }
  /// Cuts a polyline at the domain's limits; pieces are separated by pen lifts.
  int cropLine(Points& points) const;

  // Attributes, by default, by a set of them, by a text, singly.
  int setLine();
  int setLine(const PlotAttr& attr);
  int setLine(const char* attr) { return setLine(PlotAttr(attr)); }
  int setLineColor(const char* name);
  int setLineColor(int index);
  int setLineWidth(float width) { return graph.setLineWidth(width); }
  int setLineStyle(int style) { return graph.setLineStyle(style); }
  int setFill();
  int setFill(const PlotAttr& attr);
  int setFill(const char* attr) { return setFill(PlotAttr(attr)); }
  int setFillColor(const char* name);
  int setFillColor(int index);
  int setFillStyle(int style) { return graph.setFillStyle(style); }
  int setText();
  int setText(const PlotAttr& attr) { return setText(attr, 1.0f); }
  int setText(const PlotAttr& attr, float scale);
  int setText(const char* attr) { return setText(PlotAttr(attr)); }
  int setTextColor(const char* name);
  int setTextColor(int index);
  int setTextAlign(int h, int v) { return graph.setTextAlign(h, v); }
  int setTextHeight(float height) { return graph.setTextHeight(height); }
  int setTextWeight(float weight) { return graph.setTextWeight(weight); }
  int setTextExpansion(float expansion) { return graph.setTextExpansion(expansion); }
  int setTextSpacing(float spacing) { return graph.setTextSpacing(spacing); }
  int setTextCharWidth(float width) { return graph.setTextCharWidth(width); }
  int setTextDirection(float upx, float upy) { return graph.setTextDirection(upx, upy); }
  int setFont(const char* name) { return graph.setFont(name); }
  int setMark();
  int setMark(const PlotAttr& attr) { return setMark(attr, 1.0f); }
  int setMark(const PlotAttr& attr, float scale);
  int setMark(const char* attr) { return setMark(PlotAttr(attr)); }
  int setMarkColor(const char* name);
  int setMarkColor(int index);
  int setMarkType(int type) { return graph.setMarkType(type); }
  int setMarkType(const char* name) { return graph.setMarkType(PlotAttr::parseMarker(name)); }
  int setMarkWeight(float weight) { return graph.setMarkWeight(weight); }
  int setMarkSize(float size) { return graph.setMarkSize(size); }
  int setImageAlign(int h, int v) { return graph.setImageAlign(h, v); }
  int setDropShadow(int n) { return graph.setDropShadow(n); }

  // Colours.
  const ColorMap& getColorMap() const { return color_map; }
  int getColorMap(ColorMap& map) const { return map = color_map, 1; }
  int setColorMap(const ColorMap& map) { return color_map = map, 1; }
  /// The device's value of a table entry; 0 when there is no such entry.
  int allocColor(int index);
  int getColorValue(const char* name);
  int getColorRGB(int index, float& r, float& g, float& b) const { return color_map.getRGB(index, r, g, b); }

  // Labels and colour bar.
  int setLabelColor(const char* attr) { return label_color.copy(attr), 1; }
  int setLabelFormat(const char* attr) { return StrLib::copy(label_format, attr), 1; }
  /// A label ("ul", "uc", "ur", "ll", "lc", "lr") in the present row; false when there are MAX_LABEL.
  bool addLabel(const char* pos, const char* text);
  /// A label at the map's edge, instead of those that addLabel put at the position.
  bool setLabel(const char* pos, const char* text);
  /// 0 to 5 in the order above; -1 for any other position.
  static int getLabelPosIndex(const char* pos);
  /// Replaces '_' and the '%' escapes; at most max - 1 characters.
  int formatLabel(const char* format, char* out, int max) const;
  /// A line that stands out over the map of this frame, whatever else is drawn: what the picture lacks.
  int addNotice(const char* text) { return notices.emplace_back(text), 1; }
  int printLabels() const;
  int clearLabels();
  int drawLabels();
  int drawBorder();
  int setBar(const ColorFill& fill);
  int setBarLocate(const char* text) { return bar.setLocate(text); }
  int setBarRange(float min, float max) { return bar.setRange({min, max}); }
  int drawBar();
  /// Comma list of picture files on the map ("im:") or the page ("if:"): "if:logo.png:ul:0.01:-0.01".
  int setLogo(const char* list) { return logo.copy(list), 1; }
  int setDataSource(const char* text) { return StrLib::copy(data_source, text), 1; }
  int setDate(const Date& date) { return label_date = date, 1; }
  int getDate(Date& date) const { return date = label_date, 1; }
  bool isDate() const { return label_date.isSet(); }
  int setForeHour(float hour) { return fore_hour = hour, 1; }
  int setTimezone(const char* text) { return tz.set(text); }
  int setFull(int mode) { return full = mode, 1; }
  int getFull() const { return full; }
  /// Chooses what is drawn: a comma list of keywords, each with '+' or '-' where wanted.
  int setDrawing(const char* list);
  int isDrawing(int n) const;
  /// Whether a word, its sign aside, is one of these keywords.
  static bool isDrawWord(const char* word, NearWord& near);
  /// Whether a text is the name of a device, or begins one; `used` is the device that it stands for all the same.
  static bool isDevice(const char* word, NearWord& near, const char*& used);
  /// Whether the resource `output` with this value names a picture, by its kind or its ending.
  static bool isPicture(const char* output);
  int printDrawing() const;

  // Picture files.
  /// By the end of the name, "gif" or "png"; 0 for any other.
  int saveImage(const char* name);
  /// The surface as "GIF" or "PNG", beneath the resource `image_path`.
  int saveImage(const char* name, const char* type);

 private:
  static std::span<const ParamKey<Plot>> getKeys();
  // What a frame's picture tells of it.
  struct FrameText {
    String info;
    String datim;
  };
  struct PanelRec {
    Panel panel;
    Domain domain;
  };
  struct Label {
    int row;  // -1 for one that setLabel placed
    char pos[10];
    char text[100];
    char attr[100];
  };
  // Where the labels stand: their map, the free height and that of a row (NDC), the rows.
  struct LabelBand {
    Rect view;
    float space;
    float rowHeight;
    int rows;
  };
  static constexpr int NUM_DRAW = 13;
  static constexpr int PAGE = 0;  // transforms
  static constexpr int MAP = 1;

  PanelRec& rec() { return panels[static_cast<std::size_t>(panel)]; }
  const PanelRec& rec() const { return panels[static_cast<std::size_t>(panel)]; }
  int chooseDevice(const Strings& params, const char* text);
  void prepareDevice(const Strings& params, const char* text);
  bool pictureDomain(int width, int height, Domain& domain) const;
  void noteFrame();
  void dropFrameText(int frame);
  int saveOutput();
  int saveAll(const char* stem, const char* type);
  int saveAnimation(const char* name);
  void saveByKey(const char* type);
  void tellPlace(const char* position);
  void drawLogos();
  void drawLogo(const char* entry);
  int openColors(const Strings& params);
  Rect pageRect(const Rect& fractions) const;
  int setViewport();
  int resetPage();
  int firstPanel();
  void dropLabels();
  bool isOff(int index) const { return index < 0 && !Const::isMissing(index); }
  int useColor(int& kept, int index, int (Graph::*set)(int));
  int useColor(int& kept, const PlotAttr& attr, int (Graph::*set)(int));
  int drawPieces(Points& points);
  bool addLabelRow(int row, const char* pos, const char* text);
  PlotAttr labelAttr();
  float labelSpace(const Rect& view) const;
  LabelBand labelBand() const;
  void addUserLabels();
  void drawNotices();
  void drawLabel(const Label& label, const PlotAttr& attr, const LabelBand& band);

  Graph graph;
  ColorMap color_map;
  String label_color;
  char panel_text[50] = "";
  std::array<PanelRec, MAX_PANEL> panels;
  int panel = 0;
  int num_panel = 0;
  int full = 0;          // 1 the map fills the page, 2 with labels inside it
  int image_output = 0;  // 1 when the resource `output` names a GIF or PNG file
  bool end_due = false;  // the user has ended the plot
  std::array<unsigned char, NUM_DRAW> draw{};
  char title[80] = "";
  bool own_title = false;  // the title is the user's, not the program's name
  int label_rows = 0;
  char trans_color[20] = "";
  int line_index = Const::MISS;  // colours last set, of the colour map
  int fill_index = Const::MISS;
  int text_index = Const::MISS;
  int mark_index = Const::MISS;
  std::vector<Label> labels;
  std::vector<String> notices;
  char label_format[100] = "";
  ColorBar bar;
  int bar_on = 0;
  String logo;
  char data_source[10] = "";
  float fore_hour = Const::MISS;
  Date label_date;
  Timezone tz;
  int num_done = 0;
  std::vector<FrameText> frame_texts;  // of each frame, or of the surface without frames
  Points work;                         // reused by the primitives
  Points piece;
  std::vector<Points> parts;
};

}  // namespace KYV
#endif
