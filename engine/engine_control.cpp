#include "engine/engine_control.h"

#include <chrono>
#include <iostream>

#include "engine_link/event_names.h"
#include "platform/text.h"
#include "store/route_name.h"

namespace engine {

using platform::HResult;

HResult EngineControl::EndpointSink::QueryInterface(const platform::Guid& /*interfaceId*/,
                                                    void** object) {
  *object = nullptr;
  return HResult::NoInterface;
}

// The others, levels above all, change nothing here.
HResult EngineControl::EndpointSink::OnPropertyValueChanged(std::u16string_view /*deviceId*/,
                                                            const platform::PropertyKey& key) {
  const bool counts =
      key == platform::kEndpointGuidProperty || key == platform::kEndpointJackSubTypeProperty;
  return counts ? Report() : HResult::Ok;
}

HResult EngineControl::EndpointSink::Report() {
  control_.haveEndpointsChanged_ = true;
  control_.events_.Interrupt();
  return HResult::Ok;
}

EngineControl::EngineControl(platform::Platform& platform, platform::EventListener& events,
                             SoundControl& sound)
    : platform_(platform),
      events_(events),
      sound_(sound),
      watch_(platform.registry, [&events] { events.Interrupt(); }) {
  if (const auto enumerator = platform_.audioDevices.CreateEnumerator()) {
    static_cast<void>(enumerator->RegisterCallback(endpointSink_));
  }
}

EngineControl::~EngineControl() {
  if (const auto enumerator = platform_.audioDevices.CreateEnumerator()) {
    static_cast<void>(enumerator->UnregisterCallback(endpointSink_));
  }
}

std::u16string EngineControl::HoldEvents() {
  const std::u16string service(engine_link::kServiceEvent);
  std::u16string refused = HoldEndpointEvents();
  if (refused.empty() && !Hold(service)) refused = service;
  return refused;
}

bool EngineControl::Hold(const std::u16string& event) {
  if (held_.contains(event)) return true;
  if (!events_.Create(event)) return false;
  held_.insert(event);
  return true;
}

// Also the unplugged: their events must be there when they become active. Those of an endpoint that
// goes stay, for it may come back.
std::u16string EngineControl::HoldEndpointEvents() {
  for (const auto& record : endpoints::EnumerateRenderEndpoints(platform_.audioDevices)) {
    for (const std::u16string_view baseName : engine_link::kEndpointEvents) {
      std::u16string event = engine_link::EndpointEventName(baseName, record.endpointGuid);
      if (!Hold(event)) return event;
    }
  }
  return {};
}

void EngineControl::LookAtEndpoints() {
  if (!haveEndpointsChanged_.exchange(false)) return;
  // The store is watched, so that nothing is lost by an event that somebody else holds.
  const std::u16string refused = HoldEndpointEvents();
  if (!refused.empty() && refused_.insert(refused).second) {
    std::cerr << "tonalyx-engine: " << platform::ToUtf8(refused)
              << ": another engine holds it, or it cannot be made" << std::endl;
  }
  // Without a default endpoint what is heard stays as it was.
  static_cast<void>(endpoints::GetDefaultEndpointInfo(platform_.audioDevices, endpoint_));
}

void EngineControl::Look() {
  LookAtEndpoints();
  watch_.Follow(endpoint_);
  std::optional<ActiveSet> set = ReadActiveSet(platform_.registry, endpoint_);
  if (!set || set == set_) return;
  sound_.SetSettings(set->sound);
  const std::lock_guard lock(mutex_);
  set_ = std::move(set);
}

void EngineControl::WaitAndLook() {
  constexpr std::chrono::hours kLongWait(24);
  static_cast<void>(events_.Wait(kLongWait));
  Look();
}

SetStatus EngineControl::Status() const {
  const std::lock_guard lock(mutex_);
  if (!set_) return {};
  return {store::RouteName(set_->pathKey), platform::ToUtf8(set_->pathKey),
          platform::ToUtf8(set_->setting)};
}

}  // namespace engine
