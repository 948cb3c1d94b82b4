#include "platform/linux/instance/raise_channel.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/text.h"

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

// A request is one packet: this word, the token and the titles, a NUL after each. The answer is one
// byte.
constexpr std::string_view kRequestWord = "raise";
constexpr std::size_t kLongestRequest = 16384;
constexpr char kRaised = '1';
constexpr char kNotRaised = '0';

constexpr int kBacklog = 8;
constexpr mode_t kSocketMode = 0600;
// A client that connects and says nothing must not keep the others waiting.
constexpr int kRequestMilliseconds = 300;
constexpr std::chrono::milliseconds kRetryPause(10);

std::string Encode(const RaiseRequest& request) {
  std::string packet(kRequestWord);
  packet += '\0';
  packet.append(request.activationToken) += '\0';
  for (const std::u16string& title : request.titles) packet.append(ToUtf8(title)) += '\0';
  return packet;
}

std::optional<RaiseRequest> Decode(std::string_view packet) {
  std::vector<std::string_view> fields;
  for (std::size_t end = packet.find('\0'); end != std::string_view::npos;
       end = packet.find('\0')) {
    fields.push_back(packet.substr(0, end));
    packet.remove_prefix(end + 1);
  }
  if (!packet.empty() || fields.size() < 2 || fields[0] != kRequestWord) return std::nullopt;
  RaiseRequest request{{}, std::string(fields[1])};
  for (std::size_t i = 2; i < fields.size(); ++i) request.titles.push_back(FromUtf8(fields[i]));
  return request;
}

FileDescriptor MakeSocket() {
  return FileDescriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

std::optional<sockaddr_un> SocketAddress(const RaiseAddress& address) {
  const std::string path = DescriptorPath(address.folder) + '/' + address.name;
  sockaddr_un socketAddress{};
  socketAddress.sun_family = AF_UNIX;
  if (path.size() >= sizeof(socketAddress.sun_path)) return std::nullopt;
  std::ranges::copy(path, socketAddress.sun_path);
  return socketAddress;
}

const sockaddr* Generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

bool PeerIsThisUser(const FileDescriptor& connection) {
  ucred peer{};
  socklen_t size = sizeof(peer);
  return getsockopt(connection.Get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         peer.uid == geteuid();
}

int MillisecondsUntil(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
  return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

// A server whose queue is full is tried again until the deadline.
bool Connect(const FileDescriptor& connection, const sockaddr_un& address,
             Clock::time_point deadline) {
  while (connect(connection.Get(), Generic(address), sizeof(address)) != 0) {
    if (errno == EINTR) continue;
    if (errno != EAGAIN || Clock::now() >= deadline) return false;
    std::this_thread::sleep_for(kRetryPause);
  }
  return true;
}

bool WaitForAnswer(const FileDescriptor& connection, Clock::time_point deadline) {
  pollfd waited{connection.Get(), POLLIN, 0};
  int ready = 0;
  do {
    ready = poll(&waited, 1, MillisecondsUntil(deadline));
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

FileDescriptor Listen(const RaiseAddress& address) {
  const std::optional<sockaddr_un> socketAddress = SocketAddress(address);
  FileDescriptor listener = MakeSocket();
  if (!socketAddress || !listener.IsOpen()) return {};
  unlinkat(address.folder.Get(), address.name.c_str(), 0);
  // The mode of the socket becomes the mode of its name.
  fchmod(listener.Get(), kSocketMode);
  if (bind(listener.Get(), Generic(*socketAddress), sizeof(*socketAddress)) != 0 ||
      listen(listener.Get(), kBacklog) != 0) {
    return {};
  }
  return listener;
}

}  // namespace

RaiseServer::RaiseServer(const RaiseAddress& address, Handler handler)
    : handler_(std::move(handler)),
      listener_(Listen(address)),
      stop_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (listener_.IsOpen() && stop_.IsOpen()) thread_ = std::thread([this] { Run(); });
}

RaiseServer::~RaiseServer() {
  if (!thread_.joinable()) return;
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t count = write(stop_.Get(), &one, sizeof(one));
  thread_.join();
}

void RaiseServer::Run() const {
  constexpr int kForEver = -1;
  while (WaitForInput(listener_, kForEver)) {
    const FileDescriptor connection(
        accept4(listener_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (connection.IsOpen() && PeerIsThisUser(connection)) Answer(connection);
  }
}

bool RaiseServer::WaitForInput(const FileDescriptor& source, int timeoutMilliseconds) const {
  std::array<pollfd, 2> waited = {{{source.Get(), POLLIN, 0}, {stop_.Get(), POLLIN, 0}}};
  int ready = 0;
  do {
    ready = poll(waited.data(), waited.size(), timeoutMilliseconds);
  } while (ready < 0 && errno == EINTR);
  return ready > 0 && waited[1].revents == 0;
}

void RaiseServer::Answer(const FileDescriptor& connection) const {
  if (!WaitForInput(connection, kRequestMilliseconds)) return;
  std::string packet(kLongestRequest, '\0');
  // The packet's own size, also when only a part of it fits: a part is no request.
  const ssize_t size = recv(connection.Get(), packet.data(), packet.size(), MSG_TRUNC);
  if (size <= 0) return;
  const bool isWhole = static_cast<std::size_t>(size) <= packet.size();
  packet.resize(isWhole ? static_cast<std::size_t>(size) : 0);
  const std::optional<RaiseRequest> request = Decode(packet);
  const char answer = request && handler_(*request) ? kRaised : kNotRaised;
  send(connection.Get(), &answer, sizeof(answer), MSG_NOSIGNAL);
}

bool SendRaiseRequest(const RaiseAddress& address, const RaiseRequest& request,
                      std::chrono::milliseconds timeout) {
  const Clock::time_point deadline = Clock::now() + timeout;
  const std::optional<sockaddr_un> socketAddress = SocketAddress(address);
  const FileDescriptor connection = MakeSocket();
  if (!socketAddress || !connection.IsOpen() || !Connect(connection, *socketAddress, deadline) ||
      !PeerIsThisUser(connection)) {
    return false;
  }
  const std::string packet = Encode(request);
  if (send(connection.Get(), packet.data(), packet.size(), MSG_NOSIGNAL) !=
      static_cast<ssize_t>(packet.size())) {
    return false;
  }
  char answer = kNotRaised;
  return WaitForAnswer(connection, deadline) &&
         recv(connection.Get(), &answer, sizeof(answer), 0) == sizeof(answer) && answer == kRaised;
}

}  // namespace platform
