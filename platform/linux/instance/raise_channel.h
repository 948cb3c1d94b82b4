// The wish of a second copy to see the running copy's window, carried over a local socket.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/files/file_descriptor.h"

namespace platform {

struct RaiseRequest {
  std::vector<std::u16string> titles;  // the first that is shown counts
  std::string activationToken;         // what the desktop gave the second copy; may be empty

  bool operator==(const RaiseRequest&) const = default;
};

// Where the socket lies. The folder is an open handle so that its path may have any length.
struct RaiseAddress {
  const FileDescriptor& folder;
  std::string name;
};

// Answers requests of this user's processes, and of nobody else's, on a thread of its own.
class RaiseServer {
 public:
  // Called on the server's thread, one request at a time; tells whether a window was raised. It
  // must return within a bounded time, for the server's end waits for it.
  using Handler = std::function<bool(const RaiseRequest&)>;

  // Takes the place of a socket that a killed copy left behind. Without a socket nothing is served.
  RaiseServer(const RaiseAddress& address, Handler handler);
  ~RaiseServer();
  RaiseServer(const RaiseServer&) = delete;
  RaiseServer& operator=(const RaiseServer&) = delete;

 private:
  void Run() const;
  void Answer(const FileDescriptor& connection) const;
  bool WaitForInput(const FileDescriptor& source, int timeoutMilliseconds) const;

  Handler handler_;
  FileDescriptor listener_;
  FileDescriptor stop_;
  std::thread thread_;
};

// False when nobody serves, no window was raised, or no answer came within `timeout`, which bounds
// the whole call.
bool SendRaiseRequest(const RaiseAddress& address, const RaiseRequest& request,
                      std::chrono::milliseconds timeout);

}  // namespace platform
