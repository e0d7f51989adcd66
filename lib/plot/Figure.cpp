#include "KYV/Figure.h"

#include <algorithm>
#include <cstdio>

#include "KYV/Drawing.h"
#include "KYV/Kyv.h"
#include "KYV/ParamTable.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr int DEFAULT_STEP = 3600;    // seconds between frames when nobody says
constexpr int MAX_STEP = 31 * 86400;  // seconds between frames
constexpr int MAX_FRAME = 500;
constexpr int MAX_FORE = 1000;  // forecast hours in a list
// Pointer shapes while a frame is drawn and afterwards.
constexpr int CURSOR_BUSY = 8;
constexpr int CURSOR_NORMAL = 6;

}  // namespace

int Figure::init() {
  clearQueue();
  file_param.clear();
  fore_list.clear();
  loop_date.init();
  data_date.init();
  state = num_frame = step = -1;
  num_sync = refresh = 0;
  loop_type = Drawing::LOOP_DATE;
  border = 1;
  if (const char* fore = Kyv::resrc.get("time")) setForeTime(fore);
  return setParam(Kyv::resrc.get("parameter"));
}

int Figure::open(const char* params) {
  plot.setFixed(false);
  setParam(params);
  return plot.open(params);
}

int Figure::setParam(const char* params) {
  using enum ParamMatch;
  using Key = ParamKey<Figure>;
  static constexpr Key KEYS[] = {
      {"fi", Begins, [](Figure& f, const ParamItem& i) { f.file_param.copy(i.after()); }},
      {"ref", Begins,
       [](Figure& f, const ParamItem& i) {
         f.refresh = 1;
         std::sscanf(i.after(), "%9d", &f.refresh);
       }},
      {"norefresh", Is, [](Figure& f, const ParamItem&) { f.refresh = 0; }},
      {"nf", Begins, [](Figure& f, const ParamItem& i) { std::sscanf(i.from(3), "%9d", &f.num_frame); }},
      {"nobord", Is, [](Figure& f, const ParamItem&) { f.border = 0; }},
      {"linc", Begins,
       [](Figure& f, const ParamItem& i) {
         int minutes = 0;
         // A loop without step would stand still.
         if (std::sscanf(i.from(5), "%9d", &minutes) == 1 && minutes > 0)
           f.step = std::min(minutes, MAX_STEP / 60) * 60;
       }},
  };
  return setParams(KEYS, params, *this);
}

int Figure::setForeTime(const char* text) {
  int first = 0, last = 0, by = 0;
  if (!text || std::sscanf(text, "%9d-%9d/%9d", &first, &last, &by) != 3 || by <= 0) return fore_list.copy(text);
  fore_list.clear();
  for (int hour = first, n = 0; hour <= last && n < MAX_FORE; hour += by, ++n) {
    char item[20];
    StrLib::printf(item, n ? ",%d" : "%d", hour);
    fore_list.append(item);
  }
  return 1;
}

int Figure::setDate(const Date& date) {
  loop_date = date;
  state = 0;
  loop_type = Drawing::LOOP_DATE;
  return 1;
}

int Figure::setDate(const Date& date, int seconds, int frames) {
  loop_date = date;
  state = 0;
  num_frame = frames;
  step = seconds;
  if (step < 0) {
    step = -std::max(step, -MAX_STEP);
    loop_date += -std::clamp(frames, 0, MAX_FRAME) * step;
  }
  return 1;
}

int Figure::startPlot(const Rect& r, const Domain& domain) {
  start_domain = domain;
  return plot.setPanel(r, domain);
}

int Figure::startPlot(const Domain& domain) {
  start_domain = domain;
  return plot.setPanel(domain);
}

int Figure::addDrawing(Drawing& drawing) {
  queue.push_back({&drawing, String()});
  return 1;
}

int Figure::addPanel(const char* text) {
  queue.push_back({nullptr, String(text)});
  return 1;
}

int Figure::clearQueue() {
  queue.clear();
  return 1;
}

int Figure::draw(Drawing& drawing) { return drawing.draw(plot); }

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
  findLoop();
  return drawPlot();
}

int Figure::drawPlot() {
  if (step == -1) step = DEFAULT_STEP;
  if (refresh == 1) refresh = step;
  if (!loop_date.isSet()) loop_date.setCurrent();
  Kyv::outMessage(8, "LOOP-nf=%d linc=%d date=", num_frame, step);
  if (Kyv::checkMessage(8)) loop_date.print();
  state = 0;

  // One frame; loops over several come with the file search, which tells the dates of their data.
  plot.setCursor(CURSOR_BUSY);
  if (loop_type == Drawing::LOOP_FORE) {
    drawFrame(Strings(fore_list.get(), ',').getString(0));
  } else {
    Date date = loop_date;
    drawFrame(date);
  }
  plot.setCursor(CURSOR_NORMAL);
  plot.update();
  state = 1;
  return 1;
}

int Figure::drawFrame(Date& date) {
  if (Kyv::checkMessage(6)) {
    String text;
    date.toText(text);
    Kyv::outMessage(6, "Plotting for time: %s\n", text.get());
  }
  for (Item& item : queue) {
    if (!item.drawing) {
      plot.newPanel(item.panel.get());
      continue;
    }
    item.drawing->setFilename(date, "");
    item.drawing->getDate(data_date);
    item.drawing->draw(plot);
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
    item.drawing->draw(plot);
  }
  return endFrame();
}

int Figure::endFrame() {
  if (border) plot.drawBorder();
  return plot.drawLabels();
}

}  // namespace KYV
