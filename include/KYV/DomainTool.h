#ifndef KYV_DOMAINTOOL_H
#define KYV_DOMAINTOOL_H

namespace KYV {

class Domain;
class Strings;
struct DomainVal;

/// Turns the user's domain texts into domains: direct forms, stations, named regions.
class DomainTool {
 public:
  /// As DomainVal::getProj.
  static int proj(const char* name);
  /// Sets one field ("proj", "plon", "clat", "clon", "nx", "ny", "dx", "dy", "id") from a text; 0 when it is refused.
  static int setParam(DomainVal& val, const char* value, const char* name);
  /// Sets the fields named by a comma list from the items of `values`; 0 unless the counts agree and all are accepted.
  static int setParams(DomainVal& val, const Strings& values, const char* names);
  /// The syntax of the resource `plot_domain`; 0 with a warning for a text that means nothing.
  static int decode(DomainVal& val, const char* text);
  static int decode(Domain& domain, const char* text);
  static int set(Domain& domain, const char* text) { return decode(domain, text); }
  /// From the resource `plot_domain`; 0 when there is none.
  static int set(Domain& domain);
};

}  // namespace KYV
#endif
