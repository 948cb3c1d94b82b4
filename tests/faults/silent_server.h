// A server that takes every connection and never says a word.
#pragma once

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <vector>

namespace faults {

class SilentServer {
 public:
  explicit SilentServer(const std::filesystem::path& socketFile)
      : listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)), end_(eventfd(0, EFD_CLOEXEC)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socketFile.c_str(), sizeof(address.sun_path) - 1);
    std::filesystem::remove(socketFile);
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listener_, 16) != 0) {
      throw std::runtime_error("no server socket");
    }
    thread_ = std::thread([this] { Run(); });
  }
  // Hangs up.
  ~SilentServer() {
    const std::uint64_t one = 1;
    static_cast<void>(!write(end_, &one, sizeof(one)));
    thread_.join();
    close(listener_);
    close(end_);
  }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  int Connections() const { return connections_; }

 private:
  void Run() {
    std::vector<int> taken;
    std::array<pollfd, 2> sources = {{{end_, POLLIN, 0}, {listener_, POLLIN, 0}}};
    while (poll(sources.data(), sources.size(), -1) < 0 || sources[0].revents == 0) {
      if (sources[1].revents == 0) continue;
      taken.push_back(accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC));
      ++connections_;
    }
    for (const int connection : taken) close(connection);
  }

  int listener_;
  int end_;
  std::atomic<int> connections_{0};
  std::thread thread_;
};

}  // namespace faults
