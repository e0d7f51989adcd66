#ifndef KYV_TESTS_XSERVER_H
#define KYV_TESTS_XSERVER_H

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

/// An X server without a screen of its own for one test, ended with it. Where there is none, getDisplay() is empty.
class XServer {
 public:
  XServer() {
    int ends[2];
    if (std::system("command -v Xvfb > /dev/null 2>&1") != 0 || pipe(ends) != 0) return;
    server = fork();
    if (server == 0) {
      const int null = open("/dev/null", O_WRONLY);
      dup2(null, 1);
      dup2(null, 2);
      dup2(ends[1], 3);
      execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
             static_cast<char*>(nullptr));
      _exit(1);
    }
    close(ends[1]);
    // The server writes its number when it is ready.
    char digit = 0;
    while (read(ends[0], &digit, 1) == 1 && digit != '\n') display += digit;
    close(ends[0]);
    if (!display.empty()) display = ":" + display;
  }
  ~XServer() { stop(); }
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  void stop() {
    if (server <= 0) return;
    kill(server, SIGKILL);
    waitpid(server, nullptr, 0);
    server = -1;
  }
  const std::string& getDisplay() const { return display; }
  /// Acts as a user by xdotool; false where that is missing or fails.
  bool act(const std::string& words) const {
    return std::system(("DISPLAY=" + display + " xdotool " + words + " > /dev/null 2>&1").c_str()) == 0;
  }

 private:
  pid_t server = -1;
  std::string display;
};

#endif
