// Waking the audio engine after a change in the store. User-interface thread; nothing is reported.
#pragma once

#include "platform/audio_devices.h"
#include "platform/events.h"
#include "platform/registry.h"
#include "store/parameter_store.h"

namespace engine_link {

// What the panel needs to reach the engine: where it reads, how it is woken, and for which
// endpoints it runs.
struct EngineLink {
  platform::Registry& registry;
  platform::NamedEvents& events;
  platform::AudioDevices& audioDevices;
};

// After an edit of `store.values`: mirrors the equalizer bands, commits, then sets three events of
// every active endpoint.
void SignalParameterChange(const EngineLink& engine, store::ParameterStore& store);

// After a new "ActiveSetting": sets four events of every active endpoint, then the service's.
void SignalModeChange(const EngineLink& engine);

}  // namespace engine_link
