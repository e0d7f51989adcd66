#ifndef KYV_TESTS_CUTSERVER_H
#define KYV_TESTS_CUTSERVER_H

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <string>

/// A display that is another one, until it has been sent so many bytes: then it is gone.
class CutServer {
 public:
  CutServer(const std::string& display, long bytes) {
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    // A number that no other display of this test run has.
    number = 2000 + static_cast<int>(getpid() % 30000);
    sockaddr_un own = address(":" + std::to_string(number));
    unlink(own.sun_path);
    if (bind(listener, reinterpret_cast<sockaddr*>(&own), sizeof own) != 0 || listen(listener, 1) != 0) return;
    child = fork();
    if (child == 0) {
      const int client = accept(listener, nullptr, nullptr);
      const int server = socket(AF_UNIX, SOCK_STREAM, 0);
      sockaddr_un other = address(display);
      if (connect(server, reinterpret_cast<sockaddr*>(&other), sizeof other) == 0) relay(client, server, bytes);
      _exit(0);
    }
    close(listener);
  }
  ~CutServer() {
    if (child > 0) {
      kill(child, SIGKILL);
      waitpid(child, nullptr, 0);
    }
    unlink(address(getDisplay()).sun_path);
  }
  CutServer(const CutServer&) = delete;
  CutServer& operator=(const CutServer&) = delete;

  std::string getDisplay() const { return ":" + std::to_string(number); }

 private:
  static sockaddr_un address(const std::string& display) {
    sockaddr_un to = {};
    to.sun_family = AF_UNIX;
    const std::string path = "/tmp/.X11-unix/X" + display.substr(1);
    std::strncpy(to.sun_path, path.c_str(), sizeof to.sun_path - 1);
    return to;
  }
  static void relay(int client, int server, long left) {
    char bytes[4096];
    pollfd ends[] = {{client, POLLIN, 0}, {server, POLLIN, 0}};
    while (left > 0 && poll(ends, 2, 10000) > 0) {
      if (ends[0].revents) {
        const ssize_t n = read(client, bytes, static_cast<std::size_t>(left < 4096 ? left : 4096));
        if (n <= 0 || write(server, bytes, static_cast<std::size_t>(n)) != n) return;
        left -= n;
      }
      if (ends[1].revents) {
        const ssize_t n = read(server, bytes, sizeof bytes);
        if (n <= 0 || write(client, bytes, static_cast<std::size_t>(n)) != n) return;
      }
    }
  }

  pid_t child = -1;
  int number = 0;
};

#endif
