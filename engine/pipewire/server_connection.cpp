#include "engine/pipewire/server_connection.h"

#include <spa/utils/result.h>

#include <cerrno>
#include <utility>

namespace engine {

const pw_core_events ServerConnection::kCoreEvents = [] {
  pw_core_events events{};
  events.version = PW_VERSION_CORE_EVENTS;
  events.done = OnDone;
  events.error = OnError;
  return events;
}();

std::unique_ptr<ServerConnection> ServerConnection::Open(OnLost onLost) {
  std::unique_ptr<ServerConnection> connection(new ServerConnection(std::move(onLost)));
  if (connection->streamCore_ == nullptr) return nullptr;
  return connection;
}

ServerConnection::ServerConnection(OnLost onLost) : onLost_(std::move(onLost)) {
  pw_init(nullptr, nullptr);
  loop_ = pw_thread_loop_new("tonalyx-pipewire", nullptr);
  if (loop_ == nullptr) return;
  // The configuration whose audio thread asks for real-time priority.
  context_ = pw_context_new(pw_thread_loop_get_loop(loop_),
                            pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
  if (context_ == nullptr) return;
  core_ = Connect();
  if (core_ == nullptr) return;
  pw_core_add_listener(core_, &coreListener_, &kCoreEvents, this);
  streamCore_ = Connect();
  pw_thread_loop_start(loop_);
}

pw_core* ServerConnection::Connect() const {
  return pw_context_connect(
      context_,
      pw_properties_new(PW_KEY_APP_NAME, "Tonalyx", PW_KEY_APP_ID, "example.norvane.tonalyx",
                        PW_KEY_APP_ICON_NAME, "tonalyx", nullptr),
      0);
}

ServerConnection::~ServerConnection() {
  if (loop_ != nullptr) pw_thread_loop_stop(loop_);
  if (streamCore_ != nullptr) pw_core_disconnect(streamCore_);
  if (core_ != nullptr) {
    spa_hook_remove(&coreListener_);
    pw_core_disconnect(core_);
  }
  if (context_ != nullptr) pw_context_destroy(context_);
  if (loop_ != nullptr) pw_thread_loop_destroy(loop_);
  pw_deinit();
}

void ServerConnection::WaitForServer(std::chrono::seconds timeout) {
  awaited_ = pw_core_sync(core_, PW_ID_CORE, 0);
  while (!isLost_ && awaited_) {
    if (pw_thread_loop_timed_wait(loop_, static_cast<int>(timeout.count())) != 0) return;
  }
}

void ServerConnection::OnDone(void* connection, std::uint32_t id, int sequence) {
  auto& self = *static_cast<ServerConnection*>(connection);
  if (id != PW_ID_CORE || self.awaited_ != sequence) return;
  self.awaited_.reset();
  pw_thread_loop_signal(self.loop_, false);
}

// Errors of other objects are those of requests that came too late, to a stream that has just ended
// for instance.
void ServerConnection::OnError(void* connection, std::uint32_t id, int /*sequence*/, int result,
                               const char* /*message*/) {
  auto& self = *static_cast<ServerConnection*>(connection);
  if (id != PW_ID_CORE || result != -EPIPE || self.isLost_) return;
  self.isLost_ = true;
  pw_thread_loop_signal(self.loop_, false);
  self.onLost_(spa_strerror(result));
}

}  // namespace engine
