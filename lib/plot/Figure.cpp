#include "KYV/Figure.h"

#include <algorithm>
#include <cstdio>

#include "KYV/Drawing.h"
#include "KYV/Kyv.h"
#include "KYV/ParamTable.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr int MAX_STEP = 31 * 86400;                       // seconds between frames
constexpr std::int64_t MAX_SHIFT = std::int64_t{1} << 30;  // seconds, 34 years
constexpr int MAX_FORE = 1000;                             // forecast hours in a list

}  // namespace

int Figure::init() {
  clearQueue();
  file_param.clear();
  fore_list.clear();
  loop_date.init();
  data_date.init();
  state = num_frame = step = -1;
  num_sync = refresh = redraw_depth = num_redraw = 0;
  loop_type = Drawing::LOOP_DATE;
  border = 1;
  if (const char* fore = Kyv::resrc.get("time")) setForeTime(fore);
  return setParam(Kyv::resrc.get("parameter"));
}

int Figure::open(const char* params) {
  plot.setFixed(false);
  setParam(params);
  if (!plot.open(params)) return 0;
  plot.addCallback("AnyEvent", this, "Figure");
  return 1;
}

std::span<const ParamKey<Figure>> Figure::getKeys() {
  using enum ParamMatch;
  using Key = ParamKey<Figure>;
  static constexpr Key KEYS[] = {
      {"fi", Begins, [](Figure& f, const ParamItem& i) { f.file_param.copy(i.after()); }},
      {"ref", Begins,
       [](Figure& f, const ParamItem& i) {
         f.refresh = 1;
         std::sscanf(i.after(), "%9d", &f.refresh);
       },
       ParamForm::Numbers},
      {"norefresh", Is, [](Figure& f, const ParamItem&) { f.refresh = 0; }},
      {"nf", Begins, [](Figure& f, const ParamItem& i) { std::sscanf(i.from(3), "%9d", &f.num_frame); },
       ParamForm::Number},
      {"nobord", Is, [](Figure& f, const ParamItem&) { f.border = 0; }},
      {"linc", Begins,
       [](Figure& f, const ParamItem& i) {
         int minutes = 0;
         // A loop without step would stand still.
         if (std::sscanf(i.from(5), "%9d", &minutes) == 1 && minutes > 0)
           f.step = std::min(minutes, MAX_STEP / 60) * 60;
       },
       ParamForm::Number},
  };
  return KEYS;
}

int Figure::setParam(const char* params) { return setParams(getKeys(), params, *this); }

void Figure::explain(ParamAnswer& answer) { answer.ask(getKeys()); }

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
    loop_date += -static_cast<int>(std::min(std::int64_t{std::clamp(frames, 0, MAX_FRAME)} * step, MAX_SHIFT));
  }
  return 1;
}

int Figure::startPlot(const Rect& r, const Domain& domain) {
  start_domain = domain;
  start_rect = r;
  return placeMap(domain);
}

int Figure::startPlot(const Domain& domain) {
  start_domain = domain;
  start_rect.reset();
  return placeMap(domain);
}

int Figure::place(const std::optional<Rect>& r, float aspect) {
  start_rect = r;
  start_aspect = aspect;
  return r ? plot.setPanel(*r, aspect) : plot.setPanel();
}

int Figure::placeMap(const Domain& domain) {
  return start_rect ? plot.setPanel(*start_rect, domain) : plot.setPanel(domain);
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

}  // namespace KYV
