#include "tools/engine_monitor.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "platform/text.h"
#include "store/event_names.h"

namespace tools {
std::vector<std::u16string> EngineEventNames(const std::vector<std::u16string>& endpointGuids) {
  std::vector<std::u16string> names;
  for (const std::u16string& guid : endpointGuids) {
    for (const std::u16string_view baseName : store::kEndpointEvents) {
      std::u16string name = store::EndpointEventName(baseName, guid);
      if (std::ranges::find(names, name) == names.end()) names.push_back(std::move(name));
    }
  }
  names.emplace_back(store::kServiceEvent);
  return names;
}

EngineMonitor::EngineMonitor(platform::EventListener& listener, std::ostream& output, Look look)
    : listener_(listener), output_(output), look_(std::move(look)) {}

std::u16string EngineMonitor::MakeEvents(std::vector<std::u16string> names) {
  for (const std::u16string& name : names) {
    if (!listener_.Create(name)) return name;
  }
  names_ = std::move(names);
  return {};
}

bool EngineMonitor::PrintSets(std::chrono::milliseconds timeout) {
  bool hasLooked = false;
  for (const platform::EventSet& set : listener_.Wait(timeout)) {
    output_ << platform::ToUtf8(names_[set.event]) << std::endl;
    // All that came in together was written before this first look.
    if (!hasLooked) look_(output_);
    hasLooked = true;
  }
  return output_.good();
}

}  // namespace tools
