#ifndef KYV_NIDSLIMITS_H
#define KYV_NIDSLIMITS_H

namespace KYV {

// What a product may claim. Real ones stay far below: 1840 bins, 720 radials, 464 cells, 8 pages, 2.7 MB.
inline constexpr int MAX_BINS = 2400;                 // range bins of a radial
inline constexpr int MAX_GRID = 1300;                 // columns and rows of a grid
inline constexpr int LARGE_GRID = 1024;               // beyond it the data must be at hand
inline constexpr int MAX_RADIALS = 800;               // radials of a packet that are kept
inline constexpr int MAX_PAGES = 48;                  // graphic pages
inline constexpr int MAX_BODY = 12 * 1024 * 1024;     // bytes of a decoded product
inline constexpr int MAX_CONTENT = 64 * 1024 * 1024;  // bytes of a file that is held in memory
inline constexpr int MAX_CODE = 1999;                 // message code

inline constexpr int DESCRIPTION_END = 120;  // bytes of message header and description; a compressed body begins here
inline constexpr int DIVIDER = -1;           // halfword in front of every block and layer

}  // namespace KYV
#endif
