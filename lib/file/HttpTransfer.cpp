#include "HttpTransfer.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "CurlLibrary.h"
#include "KYV/Kyv.h"

namespace KYV {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds CONNECT_TIME = seconds(10);
// All transfers of a run together; net_time sets another.
constexpr seconds RUN_TIME(30);
// A window rests that long between two looks for new data at least: each has its own time.
constexpr seconds REST(5);
// Slower than this for so long counts as a stall.
constexpr long STALL_BYTES = 100;
constexpr long STALL_SECONDS = 30;
// Milliseconds between two looks when libcurl names none, and at most.
constexpr long WAIT_DEFAULT = 100;
constexpr long WAIT_MOST = 1000;

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool beginsWith(std::string_view line, std::string_view lowCaseName) {
  return line.size() >= lowCaseName.size() &&
         std::equal(lowCaseName.begin(), lowCaseName.end(), line.begin(), [](char a, char b) { return a == lower(b); });
}

// The number after any blanks; -1 when there is none.
std::int64_t toNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  std::int64_t value = -1;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() && value >= 0 ? value : -1;
}

// The time that all transfers of the process share, so that a server without an answer is waited for once.
struct Allowance {
  Clock::time_point end;   // of the time, once a transfer has begun
  Clock::time_point last;  // when it was last made use of
  bool told = false;       // that it is over

  milliseconds getRest() {
    const Clock::time_point now = Clock::now();
    if (end == Clock::time_point() || now - last > REST) {
      const char* text = Kyv::resrc.get("net_time");
      end = now + (text && toNumber(text) > 0 ? seconds(std::min(toNumber(text), std::int64_t{86400})) : RUN_TIME);
      told = false;
    }
    last = now;
    return std::max(milliseconds(0), std::chrono::duration_cast<milliseconds>(end - now));
  }
};
Allowance allowance;

}  // namespace

HttpTransfer::~HttpTransfer() {
  if (multi && easy) curl->multiRemove(multi, easy);
  if (easy) curl->easyCleanup(easy);
  if (multi) curl->multiCleanup(multi);
}

bool HttpTransfer::start(const char* url, Sink sink) {
  const milliseconds rest = allowance.getRest();
  if (rest == milliseconds(0)) {
    if (!std::exchange(allowance.told, true)) {
      Kyv::report(Kyv::NOFILE, "%s: no time left for transfers; more with -nt SECONDS\n", url);
    }
    return false;
  }
  take = std::move(sink);
  curl = CurlLibrary::get();
  if (!curl) return false;
  easy = curl->easyInit();
  multi = curl->multiInit();
  if (!easy || !multi) return false;
  const auto set = curl->easySetOption;
  set(easy, CURLOPT_URL, url);
  set(easy, CURLOPT_WRITEDATA, this);
  set(easy, CURLOPT_WRITEFUNCTION, &HttpTransfer::onBody);
  set(easy, CURLOPT_HEADERDATA, this);
  set(easy, CURLOPT_HEADERFUNCTION, &HttpTransfer::onHeader);
  set(easy, CURLOPT_NOSIGNAL, 1L);
  set(easy, CURLOPT_PROTOCOLS_STR, "http");
  set(easy, CURLOPT_FOLLOWLOCATION, 0L);
  set(easy, CURLOPT_PROXY, "");  // also hides the proxies of the environment
  set(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(std::min(CONNECT_TIME, rest).count()));
  set(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(rest.count()));
  set(easy, CURLOPT_LOW_SPEED_LIMIT, STALL_BYTES);
  set(easy, CURLOPT_LOW_SPEED_TIME, STALL_SECONDS);
  running = curl->multiAdd(multi, easy) == CURLM_OK;
  return running;
}

bool HttpTransfer::perform(const char* tag) {
  if (!running) return false;
  allowance.last = Clock::now();
  int handles = 0;
  const CURLMcode code = curl->multiPerform(multi, &handles);
  Kyv::outDebug(5, "%s-mp: %d %d\n", tag, static_cast<int>(code), handles);
  running = code == CURLM_OK && handles > 0;
  return running;
}

void HttpTransfer::wait(const char* tag) {
  if (!running) return;
  long milliseconds = -1;
  curl->multiTimeout(multi, &milliseconds);
  if (milliseconds < 0) milliseconds = WAIT_DEFAULT;
  milliseconds = std::min(milliseconds, WAIT_MOST);
  Kyv::outDebug(5, "%s-to: %ld\n", tag, milliseconds);
  // The library's own form of select: it has no limit on descriptor numbers.
  int ready = 0;
  const CURLMcode code = curl->multiPoll(multi, nullptr, 0, static_cast<int>(milliseconds), &ready);
  Kyv::outDebug(5, "%s-fd: %d\n", tag, ready);
  Kyv::outDebug(5, "%s-sel: %d\n", tag, static_cast<int>(code));
  if (code != CURLM_OK) running = false;
}

std::size_t HttpTransfer::onHeader(char* line, std::size_t size, std::size_t n, void* self) {
  static_cast<HttpTransfer*>(self)->takeHeader(size * n, line);
  return size * n;
}

std::size_t HttpTransfer::onBody(char* bytes, std::size_t size, std::size_t n, void* self) {
  HttpTransfer& transfer = *static_cast<HttpTransfer*>(self);
  transfer.headersDone = true;
  return transfer.take(bytes, size * n) ? size * n : 0;
}

void HttpTransfer::takeHeader(std::size_t n, const char* text) {
  static constexpr std::string_view CONTENT_LENGTH = "content-length:";
  const std::string_view line(text, n);
  if (beginsWith(line, "http/")) {
    // A new status line makes the headers before it an interim answer.
    const std::size_t blank = line.find(' ');
    status = blank == std::string_view::npos
                 ? 0
                 : static_cast<int>(std::min<std::int64_t>(toNumber(line.substr(blank)), 999));
    length = -1;
    headersDone = false;
  } else if (beginsWith(line, CONTENT_LENGTH)) {
    length = toNumber(line.substr(CONTENT_LENGTH.size()));
  } else if (line.find_first_not_of("\r\n") == std::string_view::npos && status >= OK) {
    headersDone = true;
  }
}

}  // namespace KYV
