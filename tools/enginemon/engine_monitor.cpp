#include "tools/enginemon/engine_monitor.h"

#include <algorithm>
#include <utility>

#include "engine_link/event_names.h"

namespace tools {

std::vector<std::u16string> EngineEventNames(const std::vector<std::u16string>& endpointGuids) {
  std::vector<std::u16string> names;
  for (const std::u16string& guid : endpointGuids) {
    for (const std::u16string_view baseName : engine_link::kEndpointEvents) {
      std::u16string name = engine_link::EndpointEventName(baseName, guid);
      if (std::ranges::find(names, name) == names.end()) names.push_back(std::move(name));
    }
  }
  names.emplace_back(engine_link::kServiceEvent);
  return names;
}

EngineMonitor::EngineMonitor(platform::EventListener& listener, MonitorReport& report, Look look)
    : listener_(listener), report_(report), look_(std::move(look)) {}

std::u16string EngineMonitor::MakeEvents(std::vector<std::u16string> names) {
  for (const std::u16string& name : names) {
    if (!listener_.Create(name)) return name;
  }
  names_ = std::move(names);
  return {};
}

void EngineMonitor::ReportSets(std::chrono::milliseconds timeout) {
  bool hasLooked = false;
  for (const platform::EventSet& set : listener_.Wait(timeout)) {
    report_.Event(names_[set.event], set.time);
    // All that came in together was written before this first look.
    if (!hasLooked) look_(report_);
    hasLooked = true;
  }
}

}  // namespace tools
