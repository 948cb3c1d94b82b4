// The connection to the audio server: made on first use, made again when it is lost, and never
// waited for longer than a moment.
#pragma once

#include <pulse/pulseaudio.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/audio/pulse_fetch.h"
#include "platform/linux/audio/pulse_peak.h"
#include "platform/linux/audio/pulse_state.h"

namespace platform {

enum class PulseStatus {
  Answered,
  NoServer,  // there is none, or it went away
  NoAnswer   // it hangs
};

// Changed: sinks, cards, the default or the connection may differ. Recovered: moreover, what a
// caller asked for in vain can be had by now.
enum class PulseNews { Changed, Recovered };

// Any thread may ask. Once the server has let a caller wait in vain, callers are turned away at
// once until it gives a sign of life. No caller may be inside when the object is destroyed.
class PulseConnection {
 public:
  using OnNews = std::function<void(PulseNews news)>;

  // An empty `server` is the one that the environment and the user's settings name. `onNews` is
  // called on the connection's thread and must not ask back.
  PulseConnection(std::string server, OnNews onNews);
  ~PulseConnection();
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;

  PulseStatus Fetch(PulseState* state);

  // The peak of what a sink plays, by the name of its monitor; nothing when it cannot be had. The
  // recording goes on for a moment, so that one that begins slowly serves the next caller, who is
  // called by news of a recovery.
  std::optional<float> Peak(const std::string& monitor);

 private:
  using Deadline = std::chrono::steady_clock::time_point;
  enum class Link { Unused, Connecting, Ready, Lost };
  class Lock;
  struct Answer;
  struct Level;
  struct Recording {
    Recording(pa_context* context, const std::string& monitor, PulsePeak::OnPeak onPeak,
              std::shared_ptr<Level> sharedLevel)
        : peak(context, monitor, std::move(onPeak)), level(std::move(sharedLevel)) {}

    PulsePeak peak;
    std::shared_ptr<Level> level;
    pa_usec_t lastAsked = 0;
  };

  static void OnContextState(pa_context* context, void* connection);
  static void OnSubscription(pa_context* context, pa_subscription_event_type_t type,
                             std::uint32_t index, void* connection);
  static void OnRetry(pa_mainloop_api* api, pa_time_event* event, const timeval* time,
                      void* connection);
  static void OnTidy(pa_mainloop_api* api, pa_time_event* event, const timeval* time,
                     void* connection);

  // These are called under the main loop's lock.
  void Connect();
  void HandleReady();
  void HandleLoss();
  std::shared_ptr<Level> Record(const std::string& monitor);
  void SetTimer(pa_time_event*& timer, std::chrono::milliseconds delay,
                pa_time_event_cb_t callback);
  void CancelTimer(pa_time_event*& timer);
  void StartProbe();
  void DropContext();

  void SetLink(Link link);
  void SignOfLife();
  bool IsHanging();
  PulseStatus WaitForLink(Deadline deadline);
  void DeclareHanging();

  const std::string server_;
  const OnNews onNews_;
  pa_threaded_mainloop* loop_;
  pa_context* context_ = nullptr;
  pa_time_event* retry_ = nullptr;
  pa_time_event* tidy_ = nullptr;
  std::chrono::milliseconds retryDelay_;
  std::list<PulseFetch> fetches_;
  std::map<std::string, Recording> recordings_;  // by monitor

  std::mutex mutex_;
  std::condition_variable changed_;
  Link link_ = Link::Unused;
  enum class Manner { Prompt, Hanging } manner_ = Manner::Prompt;
};

}  // namespace platform
