#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "endpoints/enumeration.h"
#include "engine/active_set.h"
#include "engine/engine_status.h"
#include "engine/sound_control.h"
#include "platform/audio_devices.h"
#include "platform/event_listener.h"
#include "platform/platform.h"

namespace engine {

// Holds the engine's events and follows the store, the route and the endpoints. One thread, except
// where it says otherwise.
class EngineControl {
 public:
  EngineControl(platform::Platform& platform, platform::EventListener& events, SoundControl& sound);
  ~EngineControl();
  EngineControl(const EngineControl&) = delete;
  EngineControl& operator=(const EngineControl&) = delete;

  // The events of every endpoint that is there, and the service's. The first one that somebody else
  // holds, or that cannot be made, ends the attempt and is the result; else that is empty.
  std::u16string HoldEvents();

  // Takes over what is stored now.
  void Look();

  // Waits for a change, or until the listener is interrupted, and takes it over.
  void WaitAndLook();

  // Any thread.
  SetStatus Status() const;

 private:
  // Told of endpoints that come, go and change.
  class EndpointSink final : public platform::EndpointNotificationSink {
   public:
    explicit EndpointSink(EngineControl& control) : control_(control) {}

    platform::HResult QueryInterface(const platform::Guid& interfaceId, void** object) override;
    std::uint32_t AddRef() override { return 1; }
    std::uint32_t Release() override { return 1; }
    platform::HResult OnDeviceStateChanged(std::u16string_view, std::uint32_t) override {
      return Report();
    }
    platform::HResult OnDeviceAdded(std::u16string_view) override { return Report(); }
    platform::HResult OnDeviceRemoved(std::u16string_view) override { return Report(); }
    platform::HResult OnDefaultDeviceChanged(platform::DataFlow, platform::DeviceRole,
                                             std::u16string_view) override {
      return Report();
    }
    platform::HResult OnPropertyValueChanged(std::u16string_view,
                                             const platform::PropertyKey& key) override;

   private:
    platform::HResult Report();

    EngineControl& control_;
  };

  bool Hold(const std::u16string& event);
  std::u16string HoldEndpointEvents();
  void LookAtEndpoints();

  platform::Platform& platform_;
  platform::EventListener& events_;
  SoundControl& sound_;
  EndpointSink endpointSink_{*this};
  std::set<std::u16string> held_;
  std::set<std::u16string> refused_;
  endpoints::DefaultEndpointInfo endpoint_;
  std::atomic<bool> haveEndpointsChanged_ = true;
  mutable std::mutex mutex_;
  std::optional<ActiveSet> set_;  // written by the control's thread under the mutex
  ActiveSetWatch watch_;
};

}  // namespace engine
