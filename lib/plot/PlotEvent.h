#ifndef KYV_PLOTEVENT_H
#define KYV_PLOTEVENT_H

#include "KYV/StrLib.h"

namespace KYV {

/// An event as a listener gets it. Windows put their own name first, then the event's name and its text; events that
/// are delivered by name come with the text in the second place.
struct PlotEvent {
  PlotEvent(const char* first, const char* value, const void* data)
      : name(isName(value) ? value : first), text(isName(value) ? static_cast<const char*>(data) : value) {}
  bool is(const char* event) const { return StrLib::equal(name, event); }

  const char* name;
  const char* text;  // may be null

 private:
  static bool isName(const char* word) {
    for (const char* event : {"Redraw", "Idle", "KeyPress", "ButtonPress", "QueryLoc"}) {
      if (StrLib::equal(word, event)) return true;
    }
    return false;
  }
};

}  // namespace KYV
#endif
