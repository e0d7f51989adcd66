#ifndef KYV_NIDSDATA_H
#define KYV_NIDSDATA_H

#include <cstddef>
#include <vector>

#include "KYV/Const.h"
#include "KYV/Date.h"
#include "KYV/Domain.h"

namespace KYV {

/// A product's image as an array of values in data units: a radial array (azimuth slot by range bin) or a grid.
struct NidsData {
  static constexpr float NO_RADIAL = -200.0f;  // a slot or bin that no radial covered
  static constexpr float NO_RUN = -100.0f;     // a grid cell that no run covered
  // Const::MISS: a bin or cell that the product marks as missing

  char info[50] = "";       // product name with units
  char misc[50] = "";       // label
  int src = Const::MISS;    // not set by the reader
  float lat = Const::MISS;  // radar, degrees
  float lon = Const::MISS;
  int mode = Const::MISS;
  int code = Const::MISS;
  int type = 0;  // 0 radial array, 1 grid
  int vcp = Const::MISS;
  int seq = Const::MISS;
  Date date;              // volume scan
  Domain domain;          // of the array: its grid points are (slot, bin), or (column, row) with row 0 in the north
  int nrad = 0;           // azimuth slots of a radial array, 360 or 720
  int nbin = 0;           // values in a row: range bins, or the grid's width
  float* data = nullptr;  // rows one after another: nrad x nbin, or nbin x nbin; owned
  int data_size = 0;      // floats that the array can hold; it never shrinks

  NidsData() { initClass(); }
  NidsData(const NidsData& other);
  NidsData& operator=(const NidsData& other);

  int initClass();
  /// Room for n values, the array reused when it is large enough.
  int allocate(std::size_t n);
  /// Adds dv to every value that the array can hold, markers included.
  int offset(float dv);
  /// Grid: the value at column i and row j. Radial array: at slot i and bin j. Const::MISS outside.
  float getValue(int i, int j) const {
    const int rows = type != 0 ? nbin : nrad;
    const int row = type != 0 ? j : i;
    const int col = type != 0 ? i : j;
    if (row < 0 || row >= rows || col < 0 || col >= nbin) return Const::MISS;
    return values[static_cast<std::size_t>(row) * static_cast<std::size_t>(nbin) + static_cast<std::size_t>(col)];
  }
  /// The value of the bin or cell that is drawn at a place.
  float getValue(const EarthPoint& p) const;
  int print() const;

  float getLat() const { return lat; }
  float getLon() const { return lon; }
  int getNx() const { return domain.nx; }
  int getNy() const { return domain.ny; }
  float getDx() const { return domain.dx; }
  float getDy() const { return domain.dy; }
  int tran(const EarthPoint& e, Point& p) const { return domain.tran(e, p); }
  int tran(const EarthPoint& e, GridPoint& g) const { return domain.tran(e, g); }

 private:
  std::vector<float> values;  // what data points to
};

}  // namespace KYV
#endif
