#ifndef KYV_DATAPATH_H
#define KYV_DATAPATH_H

namespace KYV {

class String;

/// Where the program's own data files lie (colours, fonts, stations, regions, maps).
class DataPath {
 public:
  /// Finds a data file: along the database path (Kyv::getDatabasePath), which the user sets through `file_path`; then
  /// among the data that came with the program: `data` beside the executable (a build tree), `../share/radmap` from it
  /// (an installed one), the installation prefix. Full paths and standard input stay as they are. At debug level 3
  /// the places tried are shown.
  /// @param path  the file found; when there is none, where the database path would have it
  /// @return 1 when the file exists
  static int find(const char* file, String& path);
};

}  // namespace KYV
#endif
