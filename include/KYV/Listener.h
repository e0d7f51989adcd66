#ifndef KYV_LISTENER_H
#define KYV_LISTENER_H

namespace KYV {

/// Receives named events: devices call it, figure, plot, graph and the drawing layers implement it.
class Listener {
 public:
  virtual ~Listener() = default;

  /// @param name   what happened ("KeyPress", "Redraw", "QueryLoc", ...)
  /// @param value  the event's text, its form depends on the name
  /// @param data   the pointer given when the listener was registered
  virtual void callback(const char* name, const char* value, const void* data) = 0;
};

}  // namespace KYV
#endif
