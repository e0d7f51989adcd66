#ifndef KYV_FIGURE_H
#define KYV_FIGURE_H

#include <cstdint>
#include <vector>

#include "KYV/Date.h"
#include "KYV/Domain.h"
#include "KYV/Plot.h"
#include "KYV/String.h"

namespace KYV {

class Drawing;

/// The page: a plot, a queue of layers and panel breaks, and the frame that they are drawn into. The layers belong to
/// the caller and outlive the figure.
class Figure {
 public:
  Figure() { init(); }
  explicit Figure(const char* params) : Figure() { (void)open(params); }

  int init();
  /// Opens the plot; 0 when there is no device to draw on.
  [[nodiscard]] int open(const char* params);
  [[nodiscard]] int open() { return open(nullptr); }
  /// 0 when the output could not be written.
  int close() { return plot.close(); }
  /// "fi=", "ref", "norefresh", "nf=", "nobord", "linc=" of a comma list.
  int setParam(const char* params);
  /// "first-last/step" or a list of forecast hours.
  int setForeTime(const char* text);
  int setDate(const Date& date);
  int setDate(const Date& date, int step, int frames);
  int setLoopType(int type) { return loop_type = type, 1; }
  int startPlot(const Rect& r, const Domain& domain);
  int startPlot(const Domain& domain);
  int setDomain(const Domain& domain) { return startPlot(domain); }
  int startPlot(const Rect& r, float aspect) { return plot.setPanel(r, aspect); }
  int startPlot(const Rect& r) { return plot.setPanel(r); }
  int startPlot() { return plot.setPanel(); }
  int addDrawing(Drawing& drawing);
  int addPanel(const char* text);
  int clearQueue();
  int draw(Drawing& drawing);
  /// Settles the loop and draws the plot.
  int endPlot();
  int drawPlot();
  int drawFrame(Date& date);
  int drawFrame(const char* fore);
  /// Hands control to the device.
  int manage() { return plot.manage(); }
  int setDrawing(const char* list) { return plot.setDrawing(list); }
  int isDrawing(int n) const { return plot.isDrawing(n); }
  Plot& getPlot() { return plot; }

 private:
  // A layer, or a panel break with its text.
  struct Item {
    Drawing* drawing;
    String panel;
  };

  void findLoop();
  void takeSync(Drawing& drawing);
  int endFrame();

  Plot plot;
  std::vector<Item> queue;
  String file_param;
  String fore_list;  // comma-separated
  Date loop_date;    // of the frame drawn
  Date data_date;    // that the layers report
  Domain start_domain;
  int state = -1;      // -1 no date set, 0 set, 1 a frame was drawn
  int num_frame = -1;  // -1: ask the layers
  int num_sync = 0;    // layers that loop
  int loop_type = 1;   // 1 time, 2 forecast
  int step = -1;       // seconds; -1: ask the layers
  int border = 1;
  int refresh = 0;  // seconds between looks for new data, 0: none
};

}  // namespace KYV
#endif
