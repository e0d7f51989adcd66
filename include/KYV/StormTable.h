#ifndef KYV_STORMTABLE_H
#define KYV_STORMTABLE_H

#include <string_view>
#include <vector>

#include "KYV/StormAttr.h"

namespace KYV {

/// The tables that have a column for each storm: those of the storm track, hail index, tornado signature and
/// mesocyclone products. A line gives one attribute of all storms of a page and begins with its name; docs/storms.md
/// shows them.
class StormTable {
 public:
  /// Begins a page.
  void clear() { storms.clear(); }
  /// Takes a line of the page; lines that are none of these tables are passed over.
  void add(const char* line);
  /// The storms of the page whose place is known.
  std::vector<StormAttr> getStorms() const;

 private:
  struct Row;

  StormAttr& at(std::size_t column);
  void takeNames(std::string_view rest);
  void takePlaces(std::string_view rest);
  void takeMovements(std::string_view rest);
  void takeReflectivities(std::string_view rest);
  void takeHail(std::string_view rest);
  void takeSizes(std::string_view rest);
  void takeSignatures(std::string_view rest);
  void takeCirculations(std::string_view rest);
  void takeStrengths(std::string_view rest);

  std::vector<StormAttr> storms;  // by column
};

}  // namespace KYV
#endif
