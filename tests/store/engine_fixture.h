// A machine in memory with three endpoints and the engine's events.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engine_link/engine_signals.h"
#include "platform/fake/fake_audio_devices.h"
#include "platform/fake/fake_events.h"
#include "platform/fake/fake_registry.h"

namespace store {

inline const std::u16string kSpeakerJack = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
inline const std::u16string kSpeakerGuid = u"{11111111-1111-1111-1111-111111111111}";
inline const std::u16string kUnpluggedGuid = u"{22222222-2222-2222-2222-222222222222}";
inline const std::u16string kScreenGuid = u"{33333333-3333-3333-3333-333333333333}";
inline const std::u16string kServiceEventName = u"Global\\VelsonaServiceParameterUpdateEvent";

inline std::u16string EventName(const std::u16string& kind, const std::u16string& endpointGuid) {
  return u"Global\\Velsona" + kind + u"PropEvent" + endpointGuid;
}

class EngineFixture : public testing::Test {
 protected:
  EngineFixture() {
    AddEndpoint(u"speaker", platform::kDeviceStateActive, kSpeakerGuid, kSpeakerJack);
    AddEndpoint(u"gone", platform::kDeviceStateUnplugged, kUnpluggedGuid, std::nullopt);
    AddEndpoint(u"screen", platform::kDeviceStateActive, kScreenGuid, std::nullopt);
    audioDevices_.SetDefault(u"speaker");
    for (const std::u16string& guid : {kSpeakerGuid, kUnpluggedGuid, kScreenGuid}) {
      for (const char16_t* kind : {u"GFX", u"MFX", u"EFX", u"SFX"}) {
        events_.Add(EventName(kind, guid));
      }
    }
    events_.Add(kServiceEventName);
  }

  void AddEndpoint(const std::u16string& id, std::uint32_t state, const std::u16string& guid,
                   std::optional<std::u16string> jackSubType) {
    platform::FakeEndpoint endpoint;
    endpoint.id = id;
    endpoint.state = state;
    endpoint.guid = guid;
    endpoint.jackSubType = std::move(jackSubType);
    audioDevices_.Add(std::move(endpoint));
  }

  platform::FakeRegistry registry_;
  platform::FakeNamedEvents events_;
  platform::FakeAudioDevices audioDevices_;
  engine_link::EngineLink engine_{registry_, events_, audioDevices_};
};

}  // namespace store
