#ifndef KYV_CURLLIBRARY_H
#define KYV_CURLLIBRARY_H

#include <curl/curl.h>

namespace KYV {

/// The functions of libcurl, loaded with the first transfer.
struct CurlLibrary {
  decltype(::curl_easy_init)* easyInit = nullptr;
  CURLcode (*easySetOption)(CURL*, CURLoption, ...) = nullptr;  // its own name is a macro
  decltype(::curl_easy_cleanup)* easyCleanup = nullptr;
  decltype(::curl_multi_init)* multiInit = nullptr;
  decltype(::curl_multi_add_handle)* multiAdd = nullptr;
  decltype(::curl_multi_remove_handle)* multiRemove = nullptr;
  decltype(::curl_multi_perform)* multiPerform = nullptr;
  decltype(::curl_multi_timeout)* multiTimeout = nullptr;
  decltype(::curl_multi_poll)* multiPoll = nullptr;
  decltype(::curl_multi_cleanup)* multiCleanup = nullptr;
  decltype(::curl_version)* version = nullptr;

  /// The functions; null when the library or one of them is missing.
  static const CurlLibrary* get();
};

}  // namespace KYV
#endif
