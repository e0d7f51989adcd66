#ifndef KYV_DATUMPLOT_H
#define KYV_DATUMPLOT_H

#include "KYV/PlotAttr.h"

namespace KYV {

class Plot;
struct Datum;
struct Point;

/// Draws values around places of the map: numbers and texts at one of nine positions, symbols, arrows of movement.
///
/// The format of a datum is a comma list; later items count:
///   ul uc ur cl cc cr ll lc lr  the position of a text, above, beside or below the place ("ur" without one); a digit
///                     1 to 9 behind it is the line, counted away from the place ("ur2"). "cc" stands on the place.
///                     Positions and lines have rooms of their own, and none touches a symbol of the standard size.
///   fm=%.1f           the number format: one conversion %[flags][width][.precision] and f, e or g, with text around
///                     it ("%%" a percent sign); for any other "%.0f"
///   co=red, wi=2 ...  attributes (PlotAttr) over those of setAttr(); hi= is a multiple of the standard size
///
/// The drop shadow is that of the graph (Graph::setDropShadow) unless there is one in the attributes. What is drawn
/// leaves its colours, widths, alignment and font behind as those of the plot, but not its shadow.
class DatumPlot {
 public:
  // Standard sizes, of the plot's vertical extent.
  static constexpr float TEXT_HEIGHT = 0.018f;
  static constexpr float SYMBOL_SIZE = 0.025f;
  static constexpr float ARROW_LENGTH = 0.05f;  // of a movement whose speed is 30

  /// White, or black on a plot in inverse colours, until setAttr().
  explicit DatumPlot(Plot& surface);

  int setAttr(const PlotAttr& attr);
  /// Draws by type, in the current panel's map:
  ///   2 NUMBER    val[0], or the text when there is one
  ///   3 TEXT      the text
  ///   4 SYMBOL    the symbol named by the text, centred on the place
  ///   7 MOVEMENT  an arrow away from the place towards where val[0] (degrees from north, where the movement comes
  ///               from) does not lie, as long as the speed val[1] demands; with an "fm=" the speed at its head
  /// Texts that would cross the edge of the map are moved inside.
  /// @return 1; 0 when nothing was drawn: missing values, places outside the map, unknown types and symbols
  int draw(const Datum& datum);

 private:
  struct Format;

  int drawText(const Point& p, const Format& format, const char* text);
  int drawSymbol(const Point& p, const Format& format, const char* name);
  int drawMovement(const Point& p, const Format& format, const Datum& datum);
  int drawLabel(float x, float y, int align, const Format& format, const char* text);

  Plot& plot;
  PlotAttr base;
};

}  // namespace KYV
#endif
