#ifndef KYV_SRC_EXACTSCALES_H
#define KYV_SRC_EXACTSCALES_H

#include <iterator>
#include <string_view>

#include "KYV/ProductInfo.h"

namespace KYV {

/// The fill scales of exact pictures: open at both ends, so that whatever has a value has a colour. The first row that
/// fits a product counts.
struct ExactScale {
  std::string_view unit;  // of ProductInfo
  std::string_view word;  // in its name
  bool clear;             // for volumes in clear air, and long ranges of terminal radars
  const char* fill;
};

// clang-format off
inline constexpr ExactScale EXACT_SCALES[] = {
    {"dBZ", "", true,
     "-200:#30303A:la=<,-28:#45455A,-24:navy,-20:dblue,-16:blue,-12:lblue,-8:cyan,-4:lcyan,0:dgreen,4:green,8:lgreen,12:olive,"
     "16:brown,20:tan,24:yellow,28:orange,35:red,45:lred,55:magenta,65:lmagenta,75:white"},
    {"dBZ", "", false,
     "-200:#3C3C48:la=<,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:lgreen,35:brown,40:yellow,45:red,50:lred,55:magenta,"
     "60:lmagenta,65:dgray,70:lgray,75:white"},
    {"m/s", "width", false,
     "-200:dgray:la=<,1:navy,2:blue,3:lblue,4:cyan,5:lcyan,6:green,7:lgreen,8:olive,9:yellow,10:orange,12:brown,14:lred,16:red,20:magenta"},
    {"m/s", "", false,
     "-200:blue:la=<,-45:lblue,-32:cyan,-25:lcyan,-18:green,-13:lgreen,-5:dgreen,-0.75:gray,0.75:dred,5:brown,13:orange,"
     "18:yellow,25:lred,32:red,45:magenta"},
    {"dB", "", false,
     "-200:blue:la=<,-4:lblue,-2:cyan,-1:lcyan,-0.5:dgray,0:lgray,0.25:dgreen,0.5:green,1:lgreen,1.5:olive,2:yellow,2.5:orange,"
     "3:brown,4:lred,5:red,6:magenta"},
    {"", "", false,
     "-1:#30303A:la=<,0.2:dgray,0.45:navy,0.6:blue,0.7:lblue,0.8:cyan,0.85:lcyan,0.88:green,0.9:lgreen,0.92:olive,0.94:yellow,"
     "0.95:orange,0.96:lred,0.97:red,0.98:magenta,0.99:lmagenta,1:white"},
    {"deg/km", "", false,
     "-200:dgray:la=<,-1:lgray,-0.5:tan,-0.2:brown,0.2:navy,0.5:blue,0.75:lblue,1:cyan,1.5:lcyan,2:green,2.5:lgreen,3:yellow,4:orange,"
     "5:red,6:magenta,7:lmagenta"},
    {"deg", "", false,
     "-400:navy:la=<,0:blue,24:lblue,48:cyan,72:lcyan,96:dgreen,120:green,144:lgreen,168:olive,192:yellow,216:orange,240:brown,"
     "264:lred,288:red,312:magenta,336:lmagenta"},
    {"kg/m2", "", false,
     "-1:#3C3C48:la=<,1:blue,5:lblue,10:cyan,15:lcyan,20:green,25:lgreen,30:brown,35:yellow,40:red,45:lred,50:magenta,55:lmagenta,"
     "60:dgray,65:lgray,70:white"},
    {"kft", "", false,
     "-1:#3C3C48:la=<,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:lgreen,35:brown,40:yellow,45:red,50:lred,55:magenta,60:lmagenta,"
     "65:dgray,70:white"},
    {"in", "difference", false,
     "-100:blue:la=<,-3:lblue,-2:cyan,-1:lcyan,-0.5:green,-0.25:lgreen,-0.1:dgreen,-0.005:off,0.005:dred,0.1:brown,0.25:olive,0.5:yellow,"
     "1:orange,2:lred,3:red"},
    {"in", "", false,
     "-1:#3C3C48:la=<,.005:navy,.05:blue,.1:lblue,.25:cyan,.5:lcyan,.75:green,1:lgreen,1.25:brown,1.5:yellow,2:red,2.5:lred,3:magenta,"
     "4:lmagenta,6:dgray,8:white"},
    {"in/h", "", false,
     "-1:#3C3C48:la=<,.005:navy,.05:blue,.1:lblue,.25:cyan,.5:lcyan,.75:green,1:lgreen,1.25:brown,1.5:yellow,2:red,2.5:lred,3:magenta,"
     "4:lmagenta,6:dgray,8:white"},
    {"class", "", false,
     "-100:off,10:magenta:la=BI,20:dgray:la=GC,30:cyan:la=IC,40:blue:la=DS,50:lblue:la=WS,60:dgreen:la=RA,70:green:la=HR,"
     "80:lgreen:la=BD,90:lcyan:la=GR,100:red:la=HA,110:lred:la=LH,120:pink:la=GH,140:gray:la=UK,150:purple:la=RF"},
};

// Colours of the levels of coded products, from level 1 on: of one sign, and of both.
inline constexpr const char* CODED_COLORS[] = {"blue", "lblue",  "cyan", "lcyan",   "green",    "lgreen", "brown", "yellow",
                                               "red",  "lred", "magenta", "lmagenta", "dgray", "lgray",  "white"};
inline constexpr const char* SIGNED_COLORS[] = {"blue",  "lblue",  "cyan",   "lcyan", "green", "lgreen", "dgreen", "dred",
                                                "brown", "orange", "yellow", "lred",  "red",   "magenta", "lmagenta"};
// clang-format on
inline constexpr const char* FOLDED_COLOR = "purple";
inline constexpr const char* NO_DATA_COLOR = "#50463C";
inline constexpr const char* CLASS_COLORS[] = {"magenta", "dgray",  "cyan", "lcyan", "lblue", "blue", "dgreen",
                                               "green",   "lgreen", "red",  "gray",  "lred",  "pink"};  // from BI on

}  // namespace KYV
#endif
