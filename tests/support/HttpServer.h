#ifndef KYV_TESTS_HTTPSERVER_H
#define KYV_TESTS_HTTPSERVER_H

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// A small server on the loopback interface: sends for a path the bytes given, whatever they are, and hangs up.
class HttpServer {
 public:
  explicit HttpServer(std::map<std::string, std::string> pathsToBytes) : answers(std::move(pathsToBytes)) {
    listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool bound = bind(listener, reinterpret_cast<sockaddr*>(&address), size) == 0 && listen(listener, 8) == 0;
    if (!bound) return;  // nobody answers, and the test fails
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
    worker = std::thread([this] { serve(); });
  }
  ~HttpServer() {
    stop();
    close(listener);
  }
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  std::string url(const std::string& path) const { return "http://127.0.0.1:" + std::to_string(port) + path; }
  /// Ends the serving; the paths that were asked for, in order.
  std::vector<std::string> stop() {
    ended = true;
    if (worker.joinable()) worker.join();
    return asked;
  }

 private:
  void serve() {
    while (!ended) {
      pollfd waiting = {listener, POLLIN, 0};
      if (poll(&waiting, 1, 20) <= 0) continue;
      const int client = accept(listener, nullptr, nullptr);
      if (client < 0) continue;
      const timeval limit = {2, 0};
      setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
      setsockopt(client, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
      answer(client);
      close(client);
    }
  }
  void answer(int client) {
    std::string request;
    char piece[1024];
    while (request.find("\r\n\r\n") == std::string::npos && request.size() < 65536) {
      const ssize_t n = recv(client, piece, sizeof piece, 0);
      if (n <= 0) return;
      request.append(piece, static_cast<std::size_t>(n));
    }
    const std::size_t from = request.find(' ') + 1;
    asked.push_back(request.substr(from, request.find(' ', from) - from));
    const auto found = answers.find(asked.back());
    const std::string bytes =
        found != answers.end() ? found->second : "HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\nnone";
    for (std::size_t at = 0; at < bytes.size();) {
      const ssize_t n = send(client, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
      if (n <= 0) return;
      at += static_cast<std::size_t>(n);
    }
  }

  std::map<std::string, std::string> answers;
  std::vector<std::string> asked;
  std::atomic<bool> ended = false;
  int listener = -1;
  int port = 0;
  std::thread worker;
};

#endif
