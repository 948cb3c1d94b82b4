// The render endpoints of the machine. Any thread; every answer reflects the state at the call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/audio_devices.h"

namespace endpoints {

struct EndpointRecord {
  std::uint32_t active = 0;     // 1 when the endpoint is active, else 0
  std::u16string endpointGuid;  // at most 99 units; empty when the endpoint has none
};

// Active and unplugged endpoints in the service's order, one record for each, also for those that
// cannot be read. Empty when there is none or the service fails.
std::vector<EndpointRecord> EnumerateRenderEndpoints(platform::AudioDevices& audioDevices);

// Buffers for an endpoint's GUID, in UTF-16 units with the NUL.
inline constexpr std::size_t kEndpointGuidCapacity = 100;
inline constexpr std::size_t kWatcherGuidCapacity = 50;

struct DefaultEndpointInfo {
  std::u16string jackSubType;
  std::u16string endpointGuid;
};

// Asks for the default endpoint of the console role. True when at least one of the two strings was
// obtained; one that was not stays as it was. The GUID is cut to `guidCapacity` - 1 units.
bool GetDefaultEndpointInfo(platform::AudioDevices& audioDevices, DefaultEndpointInfo& info,
                            std::size_t guidCapacity = kEndpointGuidCapacity);

}  // namespace endpoints
