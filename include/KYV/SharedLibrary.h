#ifndef KYV_SHAREDLIBRARY_H
#define KYV_SHAREDLIBRARY_H

#include <initializer_list>

namespace KYV {

/// A library of the system that is loaded when it is first needed. Few runs fetch an URL, yet a linked libcurl alone
/// would load some thirty further libraries into every process, which takes longer than drawing a plot. What was
/// loaded stays until the process ends.
class SharedLibrary {
 public:
  /// Loads the first of the libraries that is there.
  /// @param names  as the loader knows them, "libcurl.so.4": that of each version whose functions are alike
  explicit SharedLibrary(std::initializer_list<const char*> names);

  bool isOpen() const { return handle != nullptr; }

  /// Finds a function, or a variable, by its name.
  /// @param function  receives its address; null when there is none
  /// @return whether it was found
  template <class F>
  bool find(const char* name, F*& function) const {
    function = reinterpret_cast<F*>(findSymbol(name));
    return function != nullptr;
  }

 private:
  void* findSymbol(const char* name) const;

  void* handle = nullptr;
};

}  // namespace KYV
#endif
