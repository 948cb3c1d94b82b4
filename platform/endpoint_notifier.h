// Delivers endpoint reports to registered sinks on one thread of its own.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/audio_devices.h"

namespace platform {

enum class EndpointReportKind { StateChanged, Added, Removed, DefaultChanged, PropertyChanged };

// One report; `state` belongs to StateChanged and `key` to PropertyChanged. A changed default is
// reported for rendering and the console role, with an empty ID when there is none any more.
struct EndpointReport {
  EndpointReportKind kind;
  std::u16string deviceId;
  std::uint32_t state = 0;
  PropertyKey key{};
  bool operator==(const EndpointReport&) const = default;
};

// What every backend of AudioDevices needs to keep the promises of EndpointNotificationSink. Any
// thread may call any operation. The thread starts with the first sink and ends with the object;
// sinks still registered then are released without further calls.
class EndpointNotifier {
 public:
  EndpointNotifier() = default;
  ~EndpointNotifier();
  EndpointNotifier(const EndpointNotifier&) = delete;
  EndpointNotifier& operator=(const EndpointNotifier&) = delete;

  HResult Register(EndpointNotificationSink& sink);

  // Waits until a running call into `sink` has returned, unless it is made from such a call. Fail
  // when the sink is not registered.
  HResult Unregister(EndpointNotificationSink& sink);

  bool HasSinks();

  // Queues a report for the sinks; dropped when there are none. It takes the place of an equal one
  // that still waits, so that a slow sink meets neither a backlog nor an outdated last word.
  void Post(EndpointReport report);

  // Returns when every report posted before has been delivered.
  void WaitUntilDelivered();

 private:
  void Run();
  void Deliver(std::unique_lock<std::mutex>& lock, const EndpointReport& report);
  bool IsRegistered(const EndpointNotificationSink* sink) const;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<EndpointNotificationSink*> sinks_;
  std::deque<EndpointReport> queue_;
  EndpointNotificationSink* called_ = nullptr;
  bool delivering_ = false;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace platform
