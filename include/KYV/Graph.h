#ifndef KYV_GRAPH_H
#define KYV_GRAPH_H

#include <array>
#include <memory>
#include <span>
#include <string_view>

#include "KYV/GFont.h"
#include "KYV/GTran.h"
#include "KYV/Listener.h"
#include "KYV/Points.h"
#include "KYV/RGB.h"
#include "KYV/StrLib.h"
#include "KYV/Symbol.h"

namespace KYV {

class Device;
class Image;
class String;

/// Drawing without knowledge of the device: four coordinate transforms, the current attributes (a device is told only
/// of changes), text in stroke fonts, markers, symbols and drop shadows. Owns the device, which only ever sees its own
/// coordinates. Operations that need a device return 0 when there is none.
class Graph : public Listener {
 public:
  /// Device types.
  enum Type { NONE = 0, XWINDOW = 1, POSTSCRIPT = 2, HPGL = 3, METAFILE = 4, RASTER = 5 };

  Graph();
  Graph(const char* type, const char* params) : Graph() { setDevice(type, params); }
  ~Graph() override;
  Graph(const Graph&) = delete;
  Graph& operator=(const Graph&) = delete;

  // Device.
  /// Makes the device of a type name ("postscript", "hpgl", "meta", "raster", any other the window) and hands it its
  /// parameters. 1.
  int setDevice(const char* type, const char* params);
  /// Takes a device that was made elsewhere.
  int setDevice(std::unique_ptr<Device> device);
  int getDevice(String& name);
  int getDeviceType() const { return devtype; }
  /// Whether the device writes a file of drawing instructions.
  bool isFileDevice() const { return devtype == POSTSCRIPT || devtype == HPGL || devtype == METAFILE; }
  [[nodiscard]] int open();
  [[nodiscard]] int open(const char* type, const char* params) { return setDevice(type, params), open(); }
  bool isOpen() const { return opened; }
  /// 0 when the device could not write all of its output.
  int close();
  /// As close(), for an output that shall not be written.
  int discard();
  int manage();
  int unmanage();
  int update();
  /// Refused once the graph is managed.
  int addCallback(const char* event, Listener* listener, const void* data);
  int doCallback(const char* event, const char* data);
  void callback(const char* name, const char* value, const void* data) override;
  int setFixed(bool on);
  int setSize(float w, float h);
  int setOffset(float x, float y);
  int setInverse(bool on);
  bool getInverse();
  int setBackground(const char* color);
  int setIcon(bool on);
  int setTitle(const char* title);
  int setCursor(int shape);
  int bell();
  KYV_PRINTF(2, 3) int message(const char* format, ...);

  // Transforms, numbers 0 to 3.
  int setTran(int n);
  int getTran() const { return tran; }
  /// Sets the device's clip to the current transform's viewport.
  int activateTran();
  int activateTran(int n);
  int setWindow(const Rect& r);
  int setViewport(const Rect& r);
  int setWindow(int n, const Rect& r);
  int setViewport(int n, const Rect& r);
  int getWindow(Rect& r) const { return r = getWindow(), 1; }
  Rect getWindow() const { return trans[index()].getWindow(); }
  int getViewport(Rect& r) const { return r = getViewport(), 1; }
  Rect getViewport() const { return trans[index()].getViewport(); }
  int getMaxViewport(Rect& r) const { return r = getMaxViewport(), 1; }
  Rect getMaxViewport() const { return trans[index()].getNdc(); }
  int getDeviceViewport(Rect& r);
  Rect getDeviceViewport();
  /// Puts a viewport of this aspect ratio (0: that of r) into r; negative coordinates count inward from the surface's
  /// edges. Alignment 1 left or bottom, 3 right or top, else centred. r is taken as it is, not put in order.
  int setViewportAspect(const Rect& r, float aspect, int halign, int valign);
  int setViewportAspect(const Rect& r, float aspect) { return setViewportAspect(r, aspect, 2, 2); }
  int tranPlotView(float px, float py, float& vx, float& vy) const;
  int tranPlotWindow(float px, float py, float& wx, float& wy) const;
  int tranPlotWindow(const Point& p, Point& w) const;
  int tranWindow(int from, float x, float y, int to, float& ox, float& oy) const;
  int tranWindow(int from, const Point& p, int to, Point& o) const;
  const GTran& getTransform() const { return trans[index()]; }
  int printTran() const;

  // Drawing, window units of the current transform.
  int clear();
  int clearRect(const Rect& r);
  int allocColor(float r, float g, float b);
  int allocColor(const RGB& rgb) { return allocColor(rgb.red, rgb.green, rgb.blue); }
  int drawLine(float x1, float y1, float x2, float y2);
  int drawLine(const Point& p1, const Point& p2) { return drawLine(p1.x, p1.y, p2.x, p2.y); }
  int drawLine(const Points& points);
  int drawRect(float x1, float y1, float x2, float y2);
  int drawRect(const Rect& r) { return drawRect(r.xmin, r.ymin, r.xmax, r.ymax); }
  int drawCircle(float x, float y, float r);
  int drawCircle(const Point& p, float r) { return drawCircle(p.x, p.y, r); }
  int drawFill(const Points& points);
  int drawFillarea(const Points& points) { return drawFill(points); }
  int drawFill(const Rect& r);
  int drawText(float x, float y, const char* text);
  int drawText(const Point& p, const char* text) { return drawText(p.x, p.y, text); }
  KYV_PRINTF(4, 5) int drawFormText(float x, float y, const char* format, ...);
  KYV_PRINTF(3, 4) int drawFormText(const Point& p, const char* format, ...);
  int drawMark(float x, float y);
  int drawMark(const Point& p) { return drawMark(p.x, p.y); }
  int drawSymbol(float x, float y, const char* name, float size);
  int drawSymbol(const Point& p, const char* name, float size) { return drawSymbol(p.x, p.y, name, size); }
  int setImageAlign(int h, int v);
  int drawImage(const Image& image, float x, float y);
  int drawImage(const Image& image, int arg, float x, float y);
  /// A picture by one of nine of its points (1 left or bottom, 2 middle, 3 right or top) at an anchor. File devices, of
  /// whose page an image fills the whole clip rectangle, get one of the picture's size, a point for each pixel.
  int placeImage(const Image& image, float x, float y, int halign, int valign);
  int getImage(Image& image);
  /// The width of a line of text in stroke letters, window units.
  float getTextWidth(const char* line) const;

  // Frames.
  bool isLooping();
  int getFrame();
  int setFrame(int frame);
  int displayFrame(int frame);
  int deleteFrame(int frame);
  int getNumFrames();
  int newFrame();

  // Attributes. Those that a device knows return 0 when nothing changed. Colours are the device's values.
  int setLineColor(int value);
  int setLineWidth(float width);
  int setLineStyle(int style);
  int setFillColor(int value);
  int setFillStyle(int style);
  int setTextColor(int value);
  int setTextWeight(float width);
  int setTextHeight(float height);
  int setTextExpansion(float expansion) { return state.text_expansion = expansion, 1; }
  int setTextSpacing(float spacing) { return state.text_spacing = spacing, 1; }
  /// 0: proportional.
  int setTextCharWidth(float width) { return state.text_char_width = width, 1; }
  int setTextAlign(int h, int v) { return state.text_halign = h, state.text_valign = v, 1; }
  int setTextDirection(float upx, float upy);
  int setTextBoxColor(int value) { return state.text_box_color = value, 1; }
  int setDropColor(int value) { return state.drop_color = value, 1; }
  int setDropShadow(int n) { return state.drop_shadow = n, 1; }
  int getDropShadow() const { return state.drop_shadow; }
  int setDropWidth(int width) { return state.drop_width = width, 1; }
  int setMarkType(int type);
  int setMarkSize(float size);
  int setMarkWeight(float width);
  int setMarkColor(int value);
  /// 0 when nothing changed; a font that cannot be had falls back on "modern.fnt".
  int setFont(const char* name);
  int setSymbol(const char* name);
  float getTextHeight() const { return state.text_height; }
  float getMarkSize() const { return state.mark_size; }

 private:
  // The attributes as they are after open().
  struct State {
    int line_color = 1;
    float line_width = -1.0f;  // so that the first width always reaches the device
    int line_style = 1;
    int fill_color = 1;
    int fill_style = 0;
    int text_color = 1;
    float text_weight = 1.0f;
    float text_height = 0.01f;  // window units
    float text_expansion = 1.0f;
    float text_spacing = 0.25f;
    float text_char_width = 0.0f;
    int text_halign = 0;
    int text_valign = 0;
    float text_upx = 0.0f;
    float text_upy = 1.0f;
    int text_box_color = 0;
    int drop_color = 1;
    int drop_shadow = 0;
    int drop_width = 0;
    int mark_type = 1;
    float mark_size = 0.01f;  // window units
    float mark_weight = 1.0f;
    int mark_color = 1;
  };
  static constexpr int NUM_TRAN = 4;
  static constexpr int MAX_SHADOW = 100;  // copies; plot units that a line is shifted

  std::size_t index() const { return static_cast<std::size_t>(tran); }
  const GTran& cur() const { return trans[index()]; }
  void findFontSpec(const char* name);
  int loadFont();
  int setFontSpec();
  int setStyle(int& kept, int value, int (Device::*set)(int, int), int cls);
  int setWidth(float& kept, float value, int cls);
  int getShadow() const;
  /// Draws drop shadows by draw(x, y) in the colour of shadows, then the thing itself.
  template <class Draw>
  void drawShadowed(int cls, int color, float x, float y, Draw draw);
  const Points& toPlot(std::span<const Point> points);
  void drawStroke(int cls);
  void drawMarkShape(float x, float y);
  void drawDeviceText(float x, float y, std::string_view line);
  void drawTextLine(float x, float y, std::string_view line);
  float textWidth(std::string_view line) const;

  std::unique_ptr<Device> device;
  int devtype = NONE;
  bool device_fonts = false;  // the device draws text
  bool opened = false;
  bool managed = false;
  bool fixed = true;  // the user may not resize the window
  bool device_text = false;
  std::array<GTran, NUM_TRAN> trans;
  int tran = 0;
  int font_type = 0;  // 0 none, 1 stroke font, 2 device font, 3 device font that follows the text height
  char font_name[40] = "modern.fnt";
  char font_spec[120] = "";
  GFont font;
  char symbol_file[80] = "wx.smb";
  Symbol symbol;
  Points scratch;  // device polyline, reused
  State state;
};

}  // namespace KYV
#endif
