// The multimedia device service: render endpoints, their properties, meters and changes.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/guid.h"

namespace platform {

inline constexpr std::uint32_t kDeviceStateActive = 1;
inline constexpr std::uint32_t kDeviceStateUnplugged = 8;

enum class DataFlow : std::uint32_t { Render = 0, Capture = 1 };
enum class DeviceRole : std::uint32_t { Console = 0, Multimedia = 1, Communications = 2 };

struct PropertyKey {
  Guid format;
  std::uint32_t id;
  bool operator==(const PropertyKey&) const = default;
};

// {1DA5D803-D492-4EDD-8C23-E0C0FFEE7F0E}, 4 and 8; {026E516E-B814-414B-83CD-856D6FEF4822}, 2.
inline constexpr PropertyKey kEndpointGuidProperty{
    {0x1DA5D803, 0xD492, 0x4EDD, {0x8C, 0x23, 0xE0, 0xC0, 0xFF, 0xEE, 0x7F, 0x0E}}, 4};
inline constexpr PropertyKey kEndpointJackSubTypeProperty{
    {0x1DA5D803, 0xD492, 0x4EDD, {0x8C, 0x23, 0xE0, 0xC0, 0xFF, 0xEE, 0x7F, 0x0E}}, 8};
inline constexpr PropertyKey kDeviceInterfaceFriendlyNameProperty{
    {0x026E516E, 0xB814, 0x414B, {0x83, 0xCD, 0x85, 0x6D, 0x6F, 0xEF, 0x48, 0x22}}, 2};

class PropertyStore {
 public:
  virtual ~PropertyStore() = default;

  // Nothing when the property is missing or not a string.
  virtual std::optional<std::u16string> GetString(const PropertyKey& key) = 0;
};

class AudioMeter {
 public:
  virtual ~AudioMeter() = default;

  // Current peak, 0.0 to 1.0; nothing when it cannot be read.
  virtual std::optional<float> PeakValue() = 0;
};

class AudioDevice {
 public:
  virtual ~AudioDevice() = default;

  virtual std::optional<std::u16string> Id() = 0;
  virtual std::optional<std::uint32_t> State() = 0;
  virtual std::unique_ptr<PropertyStore> OpenPropertyStore() = 0;
  virtual std::unique_ptr<AudioMeter> ActivateMeter() = 0;
};

class AudioDeviceCollection {
 public:
  virtual ~AudioDeviceCollection() = default;

  virtual std::uint32_t Count() = 0;
  virtual std::unique_ptr<AudioDevice> Item(std::uint32_t index) = 0;
};

enum class HResult : std::uint32_t {
  Ok = 0,
  NoInterface = 0x80004002,
  Fail = 0x80004005,
};

// What the service calls, on a thread of its own, when endpoints change. The service holds
// references while the sink is registered; a callback may still be running when unregistering
// begins, and none is when it has returned.
class EndpointNotificationSink {
 public:
  virtual HResult QueryInterface(const Guid& interfaceId, void** object) = 0;
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;
  virtual HResult OnDeviceStateChanged(std::u16string_view deviceId, std::uint32_t newState) = 0;
  virtual HResult OnDeviceAdded(std::u16string_view deviceId) = 0;
  virtual HResult OnDeviceRemoved(std::u16string_view deviceId) = 0;
  virtual HResult OnDefaultDeviceChanged(DataFlow flow, DeviceRole role,
                                         std::u16string_view deviceId) = 0;
  virtual HResult OnPropertyValueChanged(std::u16string_view deviceId, const PropertyKey& key) = 0;

 protected:
  ~EndpointNotificationSink() = default;
};

// One enumerator serves one operation and is released at its end.
class AudioDeviceEnumerator {
 public:
  virtual ~AudioDeviceEnumerator() = default;

  // Null on failure; an empty collection when there is no endpoint in these states.
  virtual std::unique_ptr<AudioDeviceCollection> EnumerateEndpoints(DataFlow flow,
                                                                    std::uint32_t stateMask) = 0;
  virtual std::unique_ptr<AudioDevice> DefaultEndpoint(DataFlow flow, DeviceRole role) = 0;
  virtual HResult RegisterCallback(EndpointNotificationSink& sink) = 0;
  virtual HResult UnregisterCallback(EndpointNotificationSink& sink) = 0;
};

// May be used from any thread; every answer reflects the state at the call and comes within a
// bounded time even when the service hangs.
class AudioDevices {
 public:
  virtual ~AudioDevices() = default;

  // Null when the service is not to be had.
  virtual std::unique_ptr<AudioDeviceEnumerator> CreateEnumerator() = 0;
};

}  // namespace platform
