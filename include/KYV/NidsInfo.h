#ifndef KYV_NIDSINFO_H
#define KYV_NIDSINFO_H

#include "KYV/Const.h"
#include "KYV/Date.h"

namespace KYV {

/// What a product's header tells. Fields that the reader does not set stay missing.
struct NidsInfo {
  static constexpr int MULTI_RADAR = 10000;  // sources from here on are mosaics of several radars

  char info[50] = "";       // product name with units
  char misc[50] = "";       // mode, range, elevation, extremes
  int src = Const::MISS;    // source: radar number, 10000 and above for multi-radar products
  float lat = Const::MISS;  // radar, degrees
  float lon = Const::MISS;
  int mode = Const::MISS;       // 0 maintenance, 1 clear air, 2 precipitation
  int code = Const::MISS;       // product code
  int type = Const::MISS;       // code of the first packet of the symbology layer
  int vcp = Const::MISS;        // volume coverage pattern
  int seq = Const::MISS;        // sequence number
  Date date;                    // volume scan
  int prod_date = Const::MISS;  // generation and message time, seconds since 1970
  int mess_date = Const::MISS;
  int nx = Const::MISS;  // image size, cells
  int ny = Const::MISS;
  float res = Const::MISS;   // resolution, km
  float cres = Const::MISS;  // grid spacing of the product's domain, plot units (100 km)
  float alt = Const::MISS;   // radar height, metres
  float thres[16] = {Const::MISS, Const::MISS, Const::MISS, Const::MISS, Const::MISS, Const::MISS,
                     Const::MISS, Const::MISS, Const::MISS, Const::MISS, Const::MISS, Const::MISS,
                     Const::MISS, Const::MISS, Const::MISS, Const::MISS};  // data levels or scaling
  float elev = Const::MISS;                                                // elevation angle, degrees
  float elevt = Const::MISS;                                               // not set by the reader
  float range = Const::MISS;                                               // not set by the reader
  float max = Const::MISS;                                                 // extremes of the product
  float nmax = Const::MISS;
  int beg_date = Const::MISS;  // not set by the reader, as the three that follow
  int beg_time = Const::MISS;
  int end_date = Const::MISS;
  int end_time = Const::MISS;

  int init() { return *this = NidsInfo(), 1; }
  bool isMultiRadar() const { return src >= MULTI_RADAR; }
  /// A line for each field on standard output.
  int print() const;
  const char* getInfo() const { return info; }
  const char* getMisc() const { return misc; }
  int getSrc() const { return src; }
  float getLat() const { return lat; }
  float getLon() const { return lon; }
  int getMode() const { return mode; }
  int getCode() const { return code; }
  int getVcp() const { return vcp; }
  int getSeq() const { return seq; }
  int getDate(Date& d) const { return d = date, 1; }
  int getVolDate(Date& d) const { return d = date, 1; }
  int getProdDate() const { return prod_date; }
  int getMessDate() const { return mess_date; }
  float getRes() const { return res; }
};

}  // namespace KYV
#endif
