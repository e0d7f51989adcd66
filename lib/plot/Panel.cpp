#include "KYV/Panel.h"

#include "KYV/Kyv.h"

namespace KYV {

int Panel::print() const {
  Kyv::print("Panel\n");
  Kyv::print("  Limits: ");
  limits.print();
  Kyv::print("  View: ");
  view.print();
  Kyv::print("  Window: ");
  window.print();
  return 1;
}

}  // namespace KYV
