#ifndef KYV_VARLIST_H
#define KYV_VARLIST_H

#include <string_view>
#include <vector>

#include "KYV/String.h"
#include "KYV/VarSpec.h"

namespace KYV {

/// The variables that a layer draws: those of a variable file (docs/variables.md) that the user's text names, in the
/// order of that text. A file or text that was found fault with is not complained of again while it stays the same, so
/// that a layer may read it anew for each frame.
class VarList {
 public:
  static constexpr int MAX_NAME = 19;     // characters of a name
  static constexpr int MAX_VAR = 500;     // variables of a file
  static constexpr int MAX_CHOSEN = 100;  // of a user's text; further ones are left out

  /// Reads a variable file, found along the database path. Nothing is chosen afterwards.
  /// @return 1; 0 with a warning when it cannot be read, the list is then empty
  [[nodiscard]] int setFile(const char* file);
  /// Chooses the variables that a text names, "cid,cstat,track". Items are separated by ',', '/', ':' or blanks;
  /// brackets and quotes around items mean nothing; upper and lower case are alike. An item's own attributes follow its
  /// name in brackets, "hsize[un=mm,fm=%.1f,co=red]": `un` is its units, the others are added to the format, where the
  /// later ones count.
  /// @param variable  null or empty chooses nothing
  /// @return 1; 0 when a name is not in the file: one warning names all those, the others are chosen
  int process(const char* variable);

  // The chosen variables, 0 to getNum() - 1; outside MISS, empty, false.
  int getNum() const { return static_cast<int>(chosen.size()); }
  /// 0: labels the plot; 1: drawn beside the plot's own labels.
  int getLayer(int i) const;
  /// As the file spells it.
  const char* getName(int i) const;
  /// Empty: as in the data.
  const char* getUnits(int i) const;
  /// Attribute text for DatumPlot.
  const char* getFormat(int i) const;
  bool isMap(int i) const;
  /// Whether one of the chosen is a map entry.
  bool isMap() const;
  const VarSpec& getVarSpec(int i) const;
  /// The chosen variables on standard output.
  int print() const;

 private:
  struct Var {
    char name[MAX_NAME + 1] = "";
    int layer = 0;
    String units;
    String format;
    bool map = false;
    VarSpec spec;

    bool decode(const char* line);
    void addAttributes(std::string_view list);
  };

  const Var* get(int i) const;

  std::vector<Var> known;
  std::vector<Var> chosen;
  String filename;  // of the last setFile
  String told;      // the text whose unknown names were told of
  bool readable = false;
};

}  // namespace KYV
#endif
