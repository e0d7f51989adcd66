#ifndef KYV_SYMBOL_H
#define KYV_SYMBOL_H

#include <string>
#include <vector>

#include "KYV/Point.h"

namespace KYV {

/// Stroked symbols by name, their points in units of the symbol's size.
class Symbol {
 public:
  static constexpr int MAX_SYMBOL = 199;
  static constexpr int MAX_ENTRY = 4999;

  /// What an entry of a symbol is.
  enum Op { POINT, LINE, FILL, END };

  int init();
  /// Reads a symbol file found along the database path; 0 with a warning when it cannot.
  [[nodiscard]] int read(const char* file);
  /// Selects a symbol for get(); 0 when there is none of that name.
  int set(const char* name);
  /// The next entry; p is set for POINT.
  Op get(Point& p);
  int getNum() const { return static_cast<int>(names.size()); }
  int print() const;

 private:
  struct Entry {
    Op op;
    float x;
    float y;
  };
  std::vector<std::string> names;
  std::vector<std::size_t> starts;
  std::vector<Entry> entries;
  std::size_t current = 0;
};

}  // namespace KYV
#endif
