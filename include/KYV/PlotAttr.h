#ifndef KYV_PLOTATTR_H
#define KYV_PLOTATTR_H

#include "KYV/Const.h"

namespace KYV {

class Strings;

/// One set of drawing attributes as a user writes it, "red:wi=2:st=dsh" or "co=red,wi=2,st=dsh". What was not given is
/// missing or empty.
struct PlotAttr {
  float width = Const::MISS;      // line width
  float height = Const::MISS;     // text height or marker size
  float weight = Const::MISS;     // line width of text or marker
  float expansion = Const::MISS;  // of text
  int style = Const::MISS;        // line style
  int shadow = Const::MISS;       // copies of a drop shadow
  int fill = Const::MISS;         // fill style
  int color = Const::MISS;        // index in the colour map, missing until the name was looked up
  char name[20] = "";             // colour name
  char font[120] = "";
  char label[20] = "";

  PlotAttr() = default;
  explicit PlotAttr(const char* text) { parse(text); }

  int init() { return *this = PlotAttr(), 1; }
  int set(const char* text) { return init(), parse(text); }
  /// The text's attributes over the defaults'.
  int set(const char* text, const char* defaults) { return init(), parse(defaults), parse(text); }
  /// Adds the attributes that the text names.
  int parse(const char* text);
  /// The items of such a text that are no attributes, or lack their value, behind the colour's name.
  static Strings findBadItems(const char* text);
  /// Copies what is set in the other one, shadow and label excepted.
  int update(const PlotAttr& other);
  /// White to black, light grey to dark and dark to light: what stands out on black is faint on white paper.
  void turnGreys();
  /// A colour is named, and it is not "off" or the like.
  bool validColor() const;
  int print() const;

  // The values of "st=", "fi=" and of marker names.
  static int parseLineStyle(const char* text);
  static int parseFillStyle(const char* text);
  static int parseMarker(const char* text);
};

}  // namespace KYV
#endif
