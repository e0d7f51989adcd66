// The loop over frames: where it starts, how long it is, what makes a frame.
#include <algorithm>
#include <climits>

#include "KYV/DateTool.h"
#include "KYV/Drawing.h"
#include "KYV/Figure.h"
#include "KYV/Kyv.h"
#include "KYV/Strings.h"
#include "KYV/TimeSpec.h"

namespace KYV {

namespace {

constexpr int DEFAULT_STEP = 3600;  // seconds between frames when nobody says
// Pointer shapes while a frame is drawn and afterwards.
constexpr int CURSOR_BUSY = 8;
constexpr int CURSOR_NORMAL = 6;

}  // namespace

// The loop date that the resource `current` names. Where it asks for the latest file, or names one, and where the hour
// is fixed, the layers know better.
void Figure::setStart() {
  const char* text = Kyv::resrc.get("current");
  if (!StrLib::valid(text) || StrLib::valid(Kyv::resrc.get("hour"))) return;
  const TimeSpec time(text);
  if (!time.latest && !time.named) time.getDate(loop_date);
}

void Figure::takeSync(Drawing& drawing) {
  if (file_param.valid()) {
    drawing.setFilename(file_param.get());
  } else {
    drawing.setFilename();
  }
  if (num_frame == -1) {
    num_frame = drawing.getNumFrames();
    loop_type = drawing.getLoopType();
  }
  if (step == -1) step = drawing.getDateOffset();
  if (!loop_date.isSet()) drawing.getInitDate(loop_date);
  if (!plot.isDate()) plot.setDate(loop_date);
  Kyv::outDebug(4, "Found sync: %d %d %d ", num_frame, loop_type, step);
}

// The layer that sets the loop, its frames and its step.
void Figure::findLoop() {
  num_sync = 0;
  bool found = false;
  for (Item& item : queue) {
    if (!item.drawing) continue;
    if (item.drawing->getLoopType() != Drawing::LOOP_NONE) ++num_sync;
    if (!item.drawing->getSync()) continue;
    found = true;
    takeSync(*item.drawing);
  }
  if (state != -1) return;
  if (fore_list.valid()) {
    num_frame = fore_list.occurs(',') + 1;
    loop_type = Drawing::LOOP_FORE;
  }
  const auto loops = [](const Item& item) { return item.drawing && item.drawing->getLoopType() != Drawing::LOOP_NONE; };
  const auto first = std::find_if(queue.begin(), queue.end(), loops);
  if (!found && first != queue.end()) {
    if (Kyv::isDebug(2)) first->drawing->print();
    takeSync(*first->drawing);
  }
  if (num_frame == -1) num_frame = 1;
}

int Figure::endPlot() {
  if (state == -1) setStart();
  findLoop();
  return drawPlot();
}

// The layer that tells which data a frame of a loop has: the first that loops, or that sets the loop where one does.
Drawing* Figure::findLoopLayer() {
  const bool anySync = std::any_of(queue.begin(), queue.end(),
                                   [](const Item& item) { return item.drawing && item.drawing->getSync() != 0; });
  const auto layer = std::find_if(queue.begin(), queue.end(), [anySync](const Item& item) {
    return item.drawing && item.drawing->getLoopType() != Drawing::LOOP_NONE &&
           (!anySync || item.drawing->getSync() != 0);
  });
  return layer == queue.end() ? nullptr : layer->drawing;
}

int Figure::drawPlot() {
  if (step == -1 || Const::isMissing(step)) step = DEFAULT_STEP;
  if (refresh == 1) refresh = step;
  if (!loop_date.isSet()) DateTool::getNow(loop_date);
  Kyv::outMessage(8, "LOOP-nf=%d linc=%d date=", num_frame, step);
  if (Kyv::checkMessage(8)) loop_date.print();
  state = 0;

  int frames = num_frame;
  if (frames > MAX_FRAME) {
    Kyv::outWarning("Figure: %d frames are too many, the last %d are drawn\n", frames, MAX_FRAME);
    frames = MAX_FRAME;
  }
  if (frames < 2 || !findLoopLayer()) {
    Date date = loop_date;
    showFrame(date, Strings(fore_list.get(), ',').getString(0));
    return 1;
  }
  if (!drawLoop(frames)) Kyv::outWarning("Figure: No data for any of the %d frames of the loop\n", frames);
  return 1;
}

// Whether there was anything to draw.
bool Figure::drawLoop(int frames) {
  const bool byTime = loop_type == Drawing::LOOP_DATE;
  const Strings hours(fore_list.get(), ',');
  Drawing& layer = *findLoopLayer();
  Date date = loop_date;
  if (byTime) date += -static_cast<int>(std::min(std::int64_t{frames - 1} * step, std::int64_t{INT_MAX}));
  Date drawn;  // of the data of the frame before
  bool any = false;
  int left_out = 0;  // frames for which the device has no room
  for (int i = 0; i < frames; ++i) {
    const bool found = layer.setFilename(date, "") != 0;
    Date dataDate;
    layer.getDate(dataDate);
    Kyv::outDebug(3, "***************************************************\n");
    const bool repeated = (byTime || num_sync == 1) && any && dataDate.secs == drawn.secs;
    if (found && !repeated) {
      if (left_out > 0 || !plot.newFrame()) {
        ++left_out;
      } else {
        showFrame(date, hours.getString(i));
      }
      drawn = dataDate;
      any = true;
    }
    if (byTime) date += step;
  }
  if (left_out > 0) {
    Kyv::outWarning("Figure: there is room for %d frames, %d more are left out; ask for fewer with nf=\n",
                    plot.getNumFrames(), left_out);
  }
  return any;
}

void Figure::showFrame(Date& date, const char* fore) {
  plot.setCursor(CURSOR_BUSY);
  if (loop_type == Drawing::LOOP_FORE) {
    drawFrame(fore);
  } else {
    drawFrame(date);
  }
  plot.setCursor(CURSOR_NORMAL);
  plot.update();
  state = 1;
}

int Figure::drawFrame(Date& date) {
  if (Kyv::checkMessage(6)) {
    String text;
    Date shown = date;
    Drawing* layer = findLoopLayer();
    if (layer && layer->setFilename(date, "")) layer->getDataTime(shown);
    shown.toText(text);
    Kyv::outMessage(6, "Plotting for time: %s\n", text.get());
  }
  for (Item& item : queue) {
    if (!item.drawing) {
      plot.newPanel(item.panel.get());
      continue;
    }
    item.drawing->setFilename(date, "");
    item.drawing->getDate(data_date);
    has_drawn |= item.drawing->draw(plot) != 0;
  }
  return endFrame();
}

int Figure::drawFrame(const char* fore) {
  Kyv::outMessage(6, "Plotting for fcst: %s\n", fore ? fore : "");
  for (Item& item : queue) {
    if (!item.drawing) {
      plot.newPanel(item.panel.get());
      continue;
    }
    item.drawing->setForeTime(fore);
    has_drawn |= item.drawing->draw(plot) != 0;
  }
  return endFrame();
}

int Figure::endFrame() {
  if (border) plot.drawBorder();
  return plot.drawLabels();
}

int Figure::draw() {
  // A redraw that is asked for while one runs would run into the frames that are being drawn.
  if (redraw_depth > 0) return 0;
  ++redraw_depth;
  ++num_redraw;
  Domain domain;
  const bool hasMap = plot.getPanelDomain(0, domain) && start_domain.isSet();
  plot.deleteAllFrames();
  plot.clearFrame();
  // The surface may have another size now.
  plot.initPanel();
  if (hasMap) {
    placeMap(domain);
  } else {
    place(start_rect, start_aspect);
  }
  drawPlot();
  --redraw_depth;
  return 1;
}

int Figure::updateLoop(Date& date) {
  if (num_frame > 1) {
    plot.deleteFrame(0);
    if (!plot.newFrame()) return 0;
  } else {
    plot.clearFrame();
  }
  drawFrame(date);
  plot.update();
  loop_date = date;
  return 1;
}

}  // namespace KYV
