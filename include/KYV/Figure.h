#ifndef KYV_FIGURE_H
#define KYV_FIGURE_H

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "KYV/Date.h"
#include "KYV/Domain.h"
#include "KYV/Listener.h"
#include "KYV/Plot.h"
#include "KYV/String.h"

namespace KYV {

class Drawing;
struct ParamAnswer;
template <class T>
struct ParamKey;

/// The page: a plot, a queue of layers and panel breaks, and the frames that they are drawn into, one for each time or
/// forecast hour of a loop. Answers the device's events: redraws, zooms, and looks for new data while nothing else
/// happens. The layers belong to the caller and outlive the figure.
class Figure : public Listener {
 public:
  static constexpr int MAX_FRAME = 1500;  // of a loop: a day of minutes

  Figure() { init(); }
  explicit Figure(const char* params) : Figure() { (void)open(params); }

  int init();
  /// Opens the plot; 0 when there is no device to draw on.
  [[nodiscard]] int open(const char* params);
  [[nodiscard]] int open() { return open(nullptr); }
  /// 0 when the output could not be written.
  int close() { return plot.close(); }
  /// Whether any layer has drawn anything.
  bool hasDrawn() const { return has_drawn; }
  /// "fi=", "ref", "norefresh", "nf=", "nobord", "linc=" of a comma list.
  int setParam(const char* params);
  /// Whether an item is one of its parameters.
  static void explain(ParamAnswer& answer);
  /// "first-last/step" or a list of forecast hours.
  int setForeTime(const char* text);
  int setDate(const Date& date);
  int setDate(const Date& date, int step, int frames);
  int setLoopType(int type) { return loop_type = type, 1; }
  int startPlot(const Rect& r, const Domain& domain);
  int startPlot(const Domain& domain);
  int setDomain(const Domain& domain) { return startPlot(domain); }
  int startPlot(const Rect& r, float aspect) { return place(r, aspect); }
  int startPlot(const Rect& r) { return place(r, 0.0f); }
  int startPlot() { return place(std::nullopt, 0.0f); }
  int addDrawing(Drawing& drawing);
  int addPanel(const char* text);
  int clearQueue();
  int draw(Drawing& drawing);
  /// Settles the loop and draws the plot.
  int endPlot();
  /// Draws the frames of the loop. A time without data makes none, one whose data are those of the frame before
  /// neither.
  int drawPlot();
  /// Draws everything again.
  int draw();
  int drawFrame(Date& date);
  int drawFrame(const char* fore);
  /// Draws the data of a date as the newest frame; a loop loses its oldest one.
  int updateLoop(Date& date);
  /// Hands control to the device.
  int manage();
  /// Takes the events of the device: "Redraw", "Idle" and the keys r z Z p u with Alt.
  void callback(const char* name, const char* value, const void* data) override;
  int setDrawing(const char* list) { return plot.setDrawing(list); }
  int isDrawing(int n) const { return plot.isDrawing(n); }
  Plot& getPlot() { return plot; }

 private:
  static std::span<const ParamKey<Figure>> getKeys();
  // A layer, or a panel break with its text.
  struct Item {
    Drawing* drawing;
    String panel;
  };

  struct KeyAction;  // what a key does, see lib/plot/FigureEvent.cpp

  int place(const std::optional<Rect>& r, float aspect);
  int placeMap(const Domain& domain);
  void setStart();
  void findLoop();
  void takeSync(Drawing& drawing);
  Drawing* findLoopLayer();
  bool drawLoop(int frames);
  void showFrame(Date& date, const char* fore);
  int endFrame();
  bool toWindow(const char* position, Point& p);
  void zoom(const char* event, const char* position, float factor, const char* what);
  void pan(const char* event, const char* position);
  void unzoom();
  void checkRefresh();

  Plot plot;
  std::vector<Item> queue;
  String file_param;
  String fore_list;  // comma-separated
  Date loop_date;    // of the frame drawn
  Date data_date;    // that the layers report
  Domain start_domain;
  std::optional<Rect> start_rect;  // of the map in its panel, fractions
  float start_aspect = 0.0f;       // of a map without domain
  int state = -1;                  // -1 no date set, 0 set, 1 a frame was drawn
  int num_frame = -1;              // -1: ask the layers
  int num_sync = 0;                // layers that loop
  int loop_type = 1;               // 1 time, 2 forecast
  int step = -1;                   // seconds; -1: ask the layers
  int border = 1;
  bool has_drawn = false;  // any layer, anything
  int redraw_depth = 0;    // above 0 while a redraw runs
  int num_redraw = 0;
  int refresh = 0;                // seconds between looks for new data, 0: none
  std::int64_t last_refresh = 0;  // seconds since 1970
};

}  // namespace KYV
#endif
