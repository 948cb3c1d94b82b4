#include "engine_link/engine_signals.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dsp/eq_model.h"
#include "endpoints/enumeration.h"
#include "engine_link/event_names.h"

namespace engine_link {
namespace {

// An event that nobody has made belongs to a part of the engine that does not run.
void SetNamedEvent(platform::NamedEvents& events, std::u16string_view name) {
  if (const std::unique_ptr<platform::NamedEvent> event = events.Open(name)) {
    static_cast<void>(event->Set());
  }
}

void SignalEndpoint(platform::NamedEvents& events, std::u16string_view endpointGuid,
                    std::span<const std::u16string_view> baseNames) {
  for (const std::u16string_view baseName : baseNames) {
    SetNamedEvent(events, EndpointEventName(baseName, endpointGuid));
  }
}

void SignalActiveEndpoints(const EngineLink& engine,
                           std::span<const std::u16string_view> baseNames) {
  for (const endpoints::EndpointRecord& record :
       endpoints::EnumerateRenderEndpoints(engine.audioDevices)) {
    if (record.active != 0) SignalEndpoint(engine.events, record.endpointGuid, baseNames);
  }
}

}  // namespace

void SignalParameterChange(const EngineLink& engine, store::ParameterStore& store) {
  dsp::CopyBandsToMirror(store.values);
  static_cast<void>(store::CommitChanges(engine.registry, store));
  SignalActiveEndpoints(engine, kEditEvents);
}

void SignalModeChange(const EngineLink& engine) {
  SignalActiveEndpoints(engine, kEndpointEvents);
  SetNamedEvent(engine.events, kServiceEvent);
}

}  // namespace engine_link
