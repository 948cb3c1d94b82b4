#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>

#include "endpoints/endpoint_support.h"
#include "platform/audio_devices.h"
#include "platform/clock.h"

namespace endpoints {

// Keeps the supported-endpoint warning right while endpoints come, go and change. The main window
// holds one as a member, with the initial reference that is never given up. Register and Unregister
// belong to the user-interface thread, the notifications come on the service's.
class CMMNotificationClient final : public platform::EndpointNotificationSink {
 public:
  CMMNotificationClient(platform::AudioDevices& audioDevices, platform::Clock& clock);
  ~CMMNotificationClient();
  CMMNotificationClient(const CMMNotificationClient&) = delete;
  CMMNotificationClient& operator=(const CMMNotificationClient&) = delete;

  // Registers and evaluates once, on the calling thread, which sleeps 100 ms in it. On failure
  // there is no evaluation and the warning stays hidden.
  platform::HResult Register();
  void Unregister();

  platform::HResult QueryInterface(const platform::Guid& interfaceId, void** object) override;
  std::uint32_t AddRef() override;
  // At 0 the object destroys itself.
  std::uint32_t Release() override;
  platform::HResult OnDeviceStateChanged(std::u16string_view deviceId,
                                         std::uint32_t newState) override;
  platform::HResult OnDeviceAdded(std::u16string_view deviceId) override;
  platform::HResult OnDeviceRemoved(std::u16string_view deviceId) override;
  platform::HResult OnDefaultDeviceChanged(platform::DataFlow flow, platform::DeviceRole role,
                                           std::u16string_view deviceId) override;
  platform::HResult OnPropertyValueChanged(std::u16string_view deviceId,
                                           const platform::PropertyKey& key) override;

  // Read by the window when it paints.
  std::atomic<EndpointWarning> endpointWarning{EndpointWarning::Hidden};

 private:
  platform::AudioDevices& audioDevices_;
  platform::Clock& clock_;
  std::atomic<std::uint32_t> referenceCount_{1};
  bool registered_ = false;
};

}  // namespace endpoints
