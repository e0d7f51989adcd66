#include "CurlLibrary.h"

#include <optional>

#include "KYV/SharedLibrary.h"

namespace KYV {

namespace {

std::optional<CurlLibrary> load() {
  const SharedLibrary library({"libcurl.so.4", "libcurl-gnutls.so.4", "libcurl.so"});
  CurlLibrary c;
  const bool whole =
      library.find("curl_easy_init", c.easyInit) && library.find("curl_easy_setopt", c.easySetOption) &&
      library.find("curl_easy_cleanup", c.easyCleanup) && library.find("curl_multi_init", c.multiInit) &&
      library.find("curl_multi_add_handle", c.multiAdd) && library.find("curl_multi_remove_handle", c.multiRemove) &&
      library.find("curl_multi_perform", c.multiPerform) && library.find("curl_multi_timeout", c.multiTimeout) &&
      library.find("curl_multi_poll", c.multiPoll) && library.find("curl_multi_cleanup", c.multiCleanup) &&
      library.find("curl_version", c.version);
  return whole ? std::optional(c) : std::nullopt;
}

}  // namespace

const CurlLibrary* CurlLibrary::get() {
  static const std::optional<CurlLibrary> functions = load();
  return functions ? &*functions : nullptr;
}

}  // namespace KYV
