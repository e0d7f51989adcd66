// nids_fuzz: damages products, as they are and with their bzip2 body unpacked. See Damage.h for its use.
#include "Damage.h"
#include "KYV/Kyv.h"
#include "NidsDecode.h"
#include "Unpack.h"

namespace {

constexpr std::size_t FRONT = 400;  // bytes where headers stand

Damage makeDamage() {
  KYV::Kyv::setMessageLevel(0);
  Damage damage(
      "nids_fuzz",
      {[](const char* name) { decodeProduct(name, false); }, [](const char* name) { decodeProduct(name, true); }},
      FRONT);
  damage.forms = [](const Damage::Bytes& whole) {
    return std::vector<std::pair<std::string, Damage::Bytes>>{{"unpacked", unpackBody(whole)}};
  };
  return damage;
}

}  // namespace

RADMAP_FUZZ(makeDamage)
