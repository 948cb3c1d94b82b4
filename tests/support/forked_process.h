// A child process that runs a function of the test itself; the two talk in single letters.
#pragma once

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <stdexcept>

namespace support {

// One end of the line between parent and child.
class Line {
 public:
  explicit Line(int socket) : socket_(socket) {}

  void Say(char letter) const {
    if (send(socket_, &letter, 1, MSG_NOSIGNAL) != 1) _exit(1);
  }

  // The other side's next letter; 0 when it is gone or silent for ten seconds.
  char Hear() const {
    pollfd waited{socket_, POLLIN, 0};
    char letter = 0;
    if (poll(&waited, 1, 10'000) <= 0 || read(socket_, &letter, 1) != 1) return 0;
    return letter;
  }

 private:
  int socket_;
};

class ForkedProcess {
 public:
  // The child ends when `body` returns, without running the parent's destructors.
  explicit ForkedProcess(const std::function<void(const Line&)>& body) {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets_.data()) != 0) {
      throw std::runtime_error("no socket pair");
    }
    pid_ = fork();
    if (pid_ < 0) throw std::runtime_error("no process");
    if (pid_ == 0) {
      close(sockets_[0]);
      body(Line(sockets_[1]));
      _exit(0);
    }
    close(sockets_[1]);
  }
  ~ForkedProcess() {
    if (pid_ > 0) Kill();
    close(sockets_[0]);
  }
  ForkedProcess(const ForkedProcess&) = delete;
  ForkedProcess& operator=(const ForkedProcess&) = delete;

  Line Talk() const { return Line(sockets_[0]); }

  // Returns when the child stands still; it does so a moment after the signal.
  void Stop() const {
    kill(pid_, SIGSTOP);
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(pid_), &info, WSTOPPED | WNOWAIT);
  }

  // As the kernel does it: no handler and no destructor runs in the child.
  void Kill() {
    kill(pid_, SIGKILL);
    Join();
  }

  // Waits for the end; true when the child ended by itself with success.
  bool Join() {
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

 private:
  std::array<int, 2> sockets_{};
  pid_t pid_ = -1;
};

}  // namespace support
