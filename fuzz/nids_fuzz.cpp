// nids_fuzz: damages products, as they are and with their bzip2 body unpacked, so that changes reach the packets and
// not the checksum. See Damage.h for its use.
#include <bzlib.h>

#include "Damage.h"
#include "KYV/Kyv.h"
#include "NidsDecode.h"

namespace {

using Bytes = Damage::Bytes;

constexpr std::size_t FRONT = 400;  // bytes where headers stand
constexpr std::size_t MAX_UNPACKED = 8UL * 1024 * 1024;

// The same product with its bzip2 body unpacked; empty when it has none.
Bytes unpack(const Bytes& from) {
  constexpr unsigned char BODY[] = {'B', 'Z', 'h'};
  const auto body = std::search(from.begin(), from.end(), std::begin(BODY), std::end(BODY));
  if (body == from.end()) return {};
  std::vector<char> input(body, from.end());
  std::vector<char> output(MAX_UNPACKED);
  unsigned n = static_cast<unsigned>(output.size());
  if (BZ2_bzBuffToBuffDecompress(output.data(), &n, input.data(), static_cast<unsigned>(input.size()), 0, 0) != BZ_OK) {
    return {};
  }
  Bytes to(from.begin(), body);
  to.insert(to.end(), output.begin(), output.begin() + n);
  return to;
}

Damage makeDamage() {
  KYV::Kyv::setMessageLevel(0);
  Damage damage(
      "nids_fuzz",
      {[](const char* name) { decodeProduct(name, false); }, [](const char* name) { decodeProduct(name, true); }},
      FRONT);
  damage.forms = [](const Bytes& whole) {
    return std::vector<std::pair<std::string, Bytes>>{{"unpacked", unpack(whole)}};
  };
  return damage;
}

}  // namespace

RADMAP_FUZZ(makeDamage)
