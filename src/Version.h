#ifndef KYV_SRC_VERSION_H
#define KYV_SRC_VERSION_H

namespace KYV {

/// Prints version, build and the versions of the libraries on standard output. Those that are loaded when they are
/// needed are loaded for it, or named as missing.
void printVersion();

/// The products that the public format has, a line each, and what of them is drawn.
void printProducts();

}  // namespace KYV
#endif
