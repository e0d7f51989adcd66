#ifndef KYV_HTTPTRANSFER_H
#define KYV_HTTPTRANSFER_H

#include <curl/curl.h>

#include <cstddef>
#include <cstdint>
#include <functional>

namespace KYV {

struct CurlLibrary;

/// One GET of an "http://" URL, driven step by step by its owner. Nothing else is spoken: no other protocol, no
/// redirects, no proxies. It ends by itself when the server stalls.
class HttpTransfer {
 public:
  static constexpr int OK = 200;

  /// Takes body bytes; false ends the transfer.
  using Sink = std::function<bool(const char* bytes, std::size_t n)>;

  HttpTransfer() = default;
  ~HttpTransfer();
  HttpTransfer(const HttpTransfer&) = delete;
  HttpTransfer& operator=(const HttpTransfer&) = delete;

  bool start(const char* url, Sink sink);
  /// Does what can be done without waiting; false once the transfer has ended.
  /// @param tag  begins the debug lines of level 5
  bool perform(const char* tag);
  /// Waits until there is something to do, at most a second.
  void wait(const char* tag);
  bool isRunning() const { return running; }
  /// Whether the headers have come to their end, so that status and length are known.
  bool hasHeaders() const { return headersDone; }
  bool isFound() const { return headersDone && status == OK; }
  /// Bytes of the body as the server announced them, -1 when it did not.
  std::int64_t getLength() const { return length; }

 private:
  static std::size_t onHeader(char* line, std::size_t size, std::size_t n, void* self);
  static std::size_t onBody(char* bytes, std::size_t size, std::size_t n, void* self);
  void takeHeader(std::size_t n, const char* line);

  const CurlLibrary* curl = nullptr;
  CURL* easy = nullptr;
  CURLM* multi = nullptr;
  Sink take;
  int status = 0;  // of the last status line
  bool headersDone = false;
  bool running = false;
  std::int64_t length = -1;
};

}  // namespace KYV
#endif
