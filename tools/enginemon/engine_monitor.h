// Plays the audio engine's part: holds its events and tells which were set.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "platform/event_listener.h"
#include "tools/enginemon/monitor_report.h"

namespace tools {

// The events of the engine: four for each endpoint, in the order in which a change of mode sets
// them, and the service's. Endpoints that share a GUID share their events.
std::vector<std::u16string> EngineEventNames(const std::vector<std::u16string>& endpointGuids);

class EngineMonitor {
 public:
  // Called when events were set, after the first of them was reported.
  using Look = std::function<void(MonitorReport& report)>;

  EngineMonitor(platform::EventListener& listener, MonitorReport& report, Look look);

  // Makes the events; the first one that cannot be made ends the attempt and is the result, which
  // is empty when all were made.
  std::u16string MakeEvents(std::vector<std::u16string> names);

  // Waits until events are set, `timeout` has passed or the listener was interrupted; reports every
  // set.
  void ReportSets(std::chrono::milliseconds timeout);

 private:
  platform::EventListener& listener_;
  MonitorReport& report_;
  Look look_;
  std::vector<std::u16string> names_;
};

}  // namespace tools
