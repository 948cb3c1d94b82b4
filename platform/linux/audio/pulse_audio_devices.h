// The sinks of a PulseAudio server, or of PipeWire's server of that protocol, as endpoints.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/audio_devices.h"
#include "platform/endpoint_list.h"
#include "platform/endpoint_notifier.h"
#include "platform/linux/audio/pulse_connection.h"
#include "platform/linux/audio/pulse_state.h"

namespace platform {

// Connects on first use, never starts a server, and connects again to one that comes back.
// Registering a sink works without a server. A server that hangs costs the first caller a quarter
// of a second; until it is back, callers get failures at once. Enumerators must not outlive it.
class PulseAudioDevices : public AudioDevices {
 public:
  // Gets every state that was fetched, on the thread that fetched it and before anyone acts on it;
  // an empty one when the server did not answer.
  using Observer = std::function<void(const PulseState& state)>;

  // An empty `server` is the user's own; the observer may be empty.
  explicit PulseAudioDevices(Observer observer = {}, std::string server = {});
  ~PulseAudioDevices() override;

  std::unique_ptr<AudioDeviceEnumerator> CreateEnumerator() override;

 private:
  class Enumerator;
  class Meter;
  enum class Task { None, Compare, Announce, Stop };

  PulseStatus Fetch(PulseState* state);
  HResult Register(EndpointNotificationSink& sink);
  void Request(Task task);
  void Run();
  void ReportChanges(Task task);

  const Observer observer_;
  // One at a time, so that the observer's last word is the latest.
  std::mutex fetchMutex_;
  EndpointNotifier notifier_;
  // What the sinks have been told so far.
  std::mutex knownMutex_;
  EndpointList known_;

  std::mutex taskMutex_;
  std::condition_variable taskGiven_;
  Task task_ = Task::None;
  PulseConnection connection_;
  std::thread thread_;
};

}  // namespace platform
