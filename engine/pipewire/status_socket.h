// A socket in the session's runtime folder that tells the engine's status to whoever connects.
#pragma once

#include <pipewire/pipewire.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "platform/linux/files/file_descriptor.h"

namespace engine {

// Where the socket of this session's engine lies; nothing without a runtime folder.
std::optional<std::filesystem::path> StatusSocketPath();

// What the running engine says about itself; nothing when none runs or it does not answer in a
// second.
std::optional<std::string> AskStatus(const std::filesystem::path& socket);

// Serves on the connection's thread. To be made and destroyed under the connection's lock.
class StatusSocket {
 public:
  using Teller = std::function<std::string()>;

  // Takes the place of a socket that a killed engine left behind. Where none can be made nobody is
  // told anything.
  StatusSocket(pw_loop* loop, const std::filesystem::path& path, Teller tell);
  ~StatusSocket();
  StatusSocket(const StatusSocket&) = delete;
  StatusSocket& operator=(const StatusSocket&) = delete;

 private:
  static void OnConnection(void* socket, int descriptor, std::uint32_t mask);

  const std::filesystem::path path_;
  const Teller tell_;
  pw_loop* const loop_;
  platform::FileDescriptor listener_;
  spa_source* source_ = nullptr;
};

}  // namespace engine
