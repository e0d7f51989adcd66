#ifndef KYV_UNIT_H
#define KYV_UNIT_H

namespace KYV {

/// Converts numbers between units of one quantity. Names are compared without regard to letter case:
///
///   length        in inch mm cm m km ft 100ft kft mi nmi
///   water         kg/m^2 kg/m2: the depth of water of that mass, 1 kg/m^2 = 1 mm; converts to and from lengths
///   speed         knt kt kts knots mph m/s km/h kph
///   angle         deg degrees
///   fraction      % percent
///   reflectivity  dBZ
class Unit {
 public:
  /// @param from    null and empty stand for "whatever it is": nothing is converted then; so for `to`
  /// @param result  the value in units `to`; the value as it is where it cannot be converted. A missing value stays
  ///                missing.
  /// @return 1; 0 when a unit is not known, the quantities differ or the result is no number
  int convert(const char* from, const char* to, float value, float& result) const;
};

}  // namespace KYV
#endif
