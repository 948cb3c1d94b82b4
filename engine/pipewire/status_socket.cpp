#include "engine/pipewire/status_socket.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace engine {
namespace {

using platform::FileDescriptor;

constexpr int kBacklog = 8;
constexpr timeval kLongestWait = {1, 0};

std::optional<sockaddr_un> AddressOf(const std::filesystem::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string& text = path.native();
  if (text.size() >= sizeof(address.sun_path)) return std::nullopt;
  std::ranges::copy(text, address.sun_path);
  return address;
}

const sockaddr* Generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

FileDescriptor Listen(const std::filesystem::path& path) {
  const std::optional<sockaddr_un> address = AddressOf(path);
  if (!address) return {};
  FileDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  unlink(path.c_str());
  if (bind(listener.Get(), Generic(*address), sizeof(*address)) != 0 ||
      listen(listener.Get(), kBacklog) != 0) {
    return {};
  }
  return listener;
}

}  // namespace

std::optional<std::filesystem::path> StatusSocketPath() {
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder == '\0') return std::nullopt;
  return std::filesystem::path(folder) / "tonalyx-engine";
}

std::optional<std::string> AskStatus(const std::filesystem::path& socketPath) {
  const std::optional<sockaddr_un> address = AddressOf(socketPath);
  const FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  setsockopt(connection.Get(), SOL_SOCKET, SO_RCVTIMEO, &kLongestWait, sizeof(kLongestWait));
  if (!address || connect(connection.Get(), Generic(*address), sizeof(*address)) != 0) {
    return std::nullopt;
  }
  std::string answer;
  std::array<char, 4096> piece{};
  ssize_t count = 0;
  while ((count = read(connection.Get(), piece.data(), piece.size())) > 0) {
    answer.append(piece.data(), static_cast<std::size_t>(count));
  }
  if (count < 0 || answer.empty()) return std::nullopt;
  return answer;
}

StatusSocket::StatusSocket(pw_loop* loop, const std::filesystem::path& path, Teller tell)
    : path_(path), tell_(std::move(tell)), loop_(loop), listener_(Listen(path)) {
  if (!listener_.IsOpen()) return;
  source_ = pw_loop_add_io(loop_, listener_.Get(), SPA_IO_IN, false, OnConnection, this);
}

StatusSocket::~StatusSocket() {
  if (source_ == nullptr) return;
  pw_loop_destroy_source(loop_, source_);
  unlink(path_.c_str());
}

// The answer fits into the socket's buffer, so that nobody who does not read holds the engine up.
void StatusSocket::OnConnection(void* socket, int descriptor, std::uint32_t /*mask*/) {
  const auto& self = *static_cast<StatusSocket*>(socket);
  const FileDescriptor connection(accept4(descriptor, nullptr, nullptr, SOCK_CLOEXEC));
  if (!connection.IsOpen()) return;
  const std::string answer = self.tell_();
  send(connection.Get(), answer.data(), answer.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}

}  // namespace engine
