#ifndef KYV_RESRCENV_H
#define KYV_RESRCENV_H

namespace KYV {

class Resrc;
class String;

/// Resources in environment variables.
class ResrcEnv {
 public:
  /// Looks for the variable qualified by the program (kyv_radmap_plot_domain), then for the resource's own
  /// (kyvpltdom), then for "kyv" and its long name; 1 and the value of the first that is set, else 0.
  /// @param store  holds the program's names, `prog` and `name`
  static int get(const Resrc& store, const char* resource, const char* envName, String& value);
};

}  // namespace KYV
#endif
