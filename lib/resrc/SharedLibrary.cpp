#include "KYV/SharedLibrary.h"

#include <dlfcn.h>

#include "KYV/Kyv.h"

namespace KYV {

SharedLibrary::SharedLibrary(const char* name) {
  handle = name ? dlopen(name, RTLD_LAZY | RTLD_LOCAL) : nullptr;
  if (!handle) Kyv::outWarning("Library %s cannot be loaded: install it\n", name ? name : "");
}

void* SharedLibrary::findSymbol(const char* name) const { return handle && name ? dlsym(handle, name) : nullptr; }

}  // namespace KYV
