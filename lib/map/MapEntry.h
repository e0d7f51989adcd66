#ifndef KYV_LIB_MAP_MAPENTRY_H
#define KYV_LIB_MAP_MAPENTRY_H

#include "KYV/String.h"

namespace KYV {

class Domain;

/// How latitude-longitude lines look unless told otherwise.
inline constexpr const char* LATLON_ATTR = "magenta:st=4";

/// Passes over the conditions that a map entry begins with.
/// @param text   after the sign
/// @param holds  receives whether the domain meets them all
/// @return the rest of the entry
const char* passConditions(const char* text, const Domain& domain, bool& holds);

/// Splits "name:attributes" or "name[attributes]"; the attributes are empty when there are none.
void splitEntry(const char* text, String& name, String& attr);

}  // namespace KYV
#endif
