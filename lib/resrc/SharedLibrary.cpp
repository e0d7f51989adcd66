#include "KYV/SharedLibrary.h"

#include <dlfcn.h>

#include "KYV/Kyv.h"

namespace KYV {

SharedLibrary::SharedLibrary(std::initializer_list<const char*> names) {
  for (const char* name : names) {
    handle = dlopen(name, RTLD_LAZY | RTLD_LOCAL);
    if (handle) return;
  }
  Kyv::outWarning("Library %s cannot be loaded: install it\n", names.size() > 0 ? *names.begin() : "");
}

void* SharedLibrary::findSymbol(const char* name) const { return handle && name ? dlsym(handle, name) : nullptr; }

}  // namespace KYV
