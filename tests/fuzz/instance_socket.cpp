// The running copy's socket: whatever a peer sends as its packet, the copy answers in one byte,
// hands on requests only, and those as they were sent.
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/instance/raise_channel.h"
#include "platform/text.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr std::chrono::milliseconds kServersPatience(250);
constexpr int kPatienceMilliseconds = 5000;
constexpr std::string_view kSocketName = "socket";

// One server for all inputs, as a copy that runs for days.
class Server {
 public:
  std::optional<platform::RaiseRequest> TakeRequest() {
    const std::lock_guard lock(mutex_);
    return std::exchange(request_, std::nullopt);
  }

  platform::FileDescriptor Connect() const {
    platform::FileDescriptor client(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = (folder_.Path() / kSocketName).string();
    std::copy(path.begin(), path.end(), address.sun_path);
    fuzz::Require(
        connect(client.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0,
        "the server is there");
    return client;
  }

 private:
  bool Raise(const platform::RaiseRequest& request) {
    const std::lock_guard lock(mutex_);
    request_ = request;
    return !request.titles.empty();
  }

  support::TemporaryFolder folder_;
  platform::FileDescriptor handle_{open(folder_.Path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
  std::mutex mutex_;
  std::optional<platform::RaiseRequest> request_;
  platform::RaiseServer server_{{handle_, std::string(kSocketName)},
                                [this](const auto& request) { return Raise(request); }};
};

// A fuzzer interrupts its target again and again.
bool IsAnswered(const platform::FileDescriptor& client) {
  pollfd waited{client.Get(), POLLIN, 0};
  int ready = 0;
  do {
    ready = poll(&waited, 1, kPatienceMilliseconds);
  } while (ready < 0 && errno == EINTR);
  return ready == 1;
}

std::string PacketOf(const platform::RaiseRequest& request) {
  std::string packet("raise\0", 6);
  packet.append(request.activationToken) += '\0';
  for (const std::u16string& title : request.titles) {
    packet.append(platform::ToUtf8(title)) += '\0';
  }
  return packet;
}

bool IsRequest(std::string_view packet) {
  return packet.size() <= 16384 && packet.starts_with(std::string_view("raise\0", 6)) &&
         packet.back() == '\0' && std::ranges::count(packet, '\0') >= 2;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Server server;
  // An empty packet is the end of a connection, not one.
  if (size == 0) return 0;
  const std::string_view packet = fuzz::AsText(data, size);
  const auto begin = std::chrono::steady_clock::now();
  const platform::FileDescriptor client = server.Connect();
  if (send(client.Get(), data, size, MSG_NOSIGNAL) != static_cast<ssize_t>(size)) return 0;
  // On a machine that is so busy the server may have given the client up.
  const bool isLate = std::chrono::steady_clock::now() - begin > kServersPatience;
  std::array<char, 2> answer{};
  fuzz::Require(IsAnswered(client), "there is an answer");
  const ssize_t answerSize = recv(client.Get(), answer.data(), answer.size(), 0);
  const std::optional<platform::RaiseRequest> request = server.TakeRequest();
  if (isLate) return 0;
  fuzz::Require(answerSize == 1, "the answer is one byte");
  fuzz::Require(request.has_value() == IsRequest(packet), "requests are handed on, others are not");
  fuzz::Require(!request || PacketOf(*request) == packet, "a request arrives as it was sent");
  fuzz::Require(answer[0] == (request && !request->titles.empty() ? '1' : '0'),
                "the answer is the handler's");
  return 0;
}
