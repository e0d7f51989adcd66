#include "KYV/NidsInfo.h"

#include <cstdio>

namespace KYV {

int NidsInfo::print() const {
  std::printf("Info: %s\n", info);
  std::printf("Misc: %s\n", misc);
  std::printf("Src: %d\n", src);
  std::printf("Lat: %f\n", lat);
  std::printf("Lon: %f\n", lon);
  std::printf("Mode: %d\n", mode);
  std::printf("Code: %d\n", code);
  std::printf("Type: %d\n", type);
  std::printf("Vcp: %d\n", vcp);
  std::printf("Seq: %d\n", seq);
  std::printf("Date: ");
  date.print();
  std::printf("Nx: %d\n", nx);
  std::printf("Ny: %d\n", ny);
  std::printf("Res: %f\n", res);
  std::printf("Cres: %f\n", cres);
  std::printf("Alt: %f\n", alt);
  for (int i = 0; i < 16; i++) std::printf("Thres: %d %f\n", i, thres[i]);
  std::printf("Elev: %f\n", elev);
  std::printf("Elevt: %f\n", elevt);
  std::printf("Range: %f\n", range);
  std::printf("Max: %f\n", max);
  std::printf("Nmax: %f\n", nmax);
  std::printf("Beg Date: %d\n", beg_date);
  std::printf("Beg Time: %d\n", beg_time);
  std::printf("End Date: %d\n", end_date);
  std::printf("End Time: %d\n", end_time);
  return 1;
}

}  // namespace KYV
