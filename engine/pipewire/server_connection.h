// The connection to the PipeWire server and the thread that serves it.
#pragma once

#include <pipewire/pipewire.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace engine {

// Everything that is made on the connection is made, used and destroyed under its lock, or by its
// thread.
class ServerConnection {
 public:
  // Called once on the connection's thread when the server is gone. `reason` is the system's text.
  using OnLost = std::function<void(const std::string& reason)>;

  // Null when there is no server.
  static std::unique_ptr<ServerConnection> Open(OnLost onLost);
  // Ends the thread. Nothing that was made on the connection may be left.
  ~ServerConnection();
  ServerConnection(const ServerConnection&) = delete;
  ServerConnection& operator=(const ServerConnection&) = delete;

  class Lock {
   public:
    explicit Lock(const ServerConnection& connection) : loop_(connection.loop_) {
      pw_thread_loop_lock(loop_);
    }
    ~Lock() { pw_thread_loop_unlock(loop_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    pw_thread_loop* loop_;
  };

  pw_core* Core() const { return core_; }
  // For what sound passes through. The server reads nothing from a client that asks the session
  // manager for something until that one has answered, which in turn waits for the client of a
  // stream that it sets up: with one client for both they would wait for each other.
  pw_core* StreamCore() const { return streamCore_; }
  pw_loop* Loop() const { return pw_thread_loop_get_loop(loop_); }

  // Under the lock, which is given up meanwhile: waits until the server has worked through all that
  // was asked before, at most as long as `timeout`.
  void WaitForServer(std::chrono::seconds timeout);

 private:
  explicit ServerConnection(OnLost onLost);

  pw_core* Connect() const;
  static void OnDone(void* connection, std::uint32_t id, int sequence);
  static void OnError(void* connection, std::uint32_t id, int sequence, int result,
                      const char* message);
  static const pw_core_events kCoreEvents;

  const OnLost onLost_;
  bool isLost_ = false;
  std::optional<int> awaited_;  // the sequence number that WaitForServer waits for
  pw_thread_loop* loop_ = nullptr;
  pw_context* context_ = nullptr;
  pw_core* core_ = nullptr;
  pw_core* streamCore_ = nullptr;
  spa_hook coreListener_{};
};

}  // namespace engine
