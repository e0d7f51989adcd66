#ifndef KYV_RESRCDBITEM_H
#define KYV_RESRCDBITEM_H

namespace KYV {

/// The definition of one resource. The texts are not owned, they live as long as the program.
struct ResrcDBItem {
  const char* name = nullptr;   // long name, the key of the value
  const char* env = nullptr;    // environment variable of its own, or null
  const char* cmdln = nullptr;  // abbreviation without the dash; null for positional resources
  const char* help = nullptr;   // line of the usage listing
  ResrcDBItem* next = nullptr;  // in its list

  int init() { return *this = ResrcDBItem(), 1; }
  int set(const char* longName, const char* envName, const char* abbrev, const char* helpLine) {
    name = longName, env = envName, cmdln = abbrev, help = helpLine, next = nullptr;
    return 1;
  }
};

}  // namespace KYV
#endif
