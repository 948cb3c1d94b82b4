// Render endpoints held as a list: what a backend knows at one moment, served through the device
// service's contract, and the reports that lead from one moment to the next.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio_devices.h"
#include "platform/endpoint_notifier.h"

namespace platform {

// An empty text is a property that the endpoint does not have, or an ID that cannot be read.
struct ListedEndpoint {
  std::u16string id;
  std::u16string guid = {};
  std::u16string jackSubType = {};
  std::u16string adapter = {};
  std::uint32_t state = kDeviceStateActive;
  // What the backend knows about the sound on it without metering, 0.0 to 1.0.
  float level = 0.0F;
  bool operator==(const ListedEndpoint&) const = default;
};

// In enumeration order. One default serves every role; one that is unknown or not active is none.
struct EndpointList {
  std::vector<ListedEndpoint> endpoints;
  std::u16string defaultId;

  const ListedEndpoint* Default() const;
};

// The property that a changed level is reported as.
inline constexpr PropertyKey kEndpointLevelProperty{
    {0x0F3A5C11, 0x6D0B, 0x4E8B, {0x9A, 0x31, 0x5E, 0x1D, 0x7C, 0x42, 0x88, 0x06}}, 2};

// Gone, new, changed state, changed properties, then the default.
std::vector<EndpointReport> Differences(const EndpointList& before, const EndpointList& after);

using MeterMaker = std::function<std::unique_ptr<AudioMeter>(const ListedEndpoint& endpoint)>;

// What an enumerator answers from a list. There are no capture endpoints.
std::unique_ptr<AudioDeviceCollection> SelectEndpoints(const EndpointList& list, DataFlow flow,
                                                       std::uint32_t stateMask,
                                                       const MeterMaker& makeMeter);
std::unique_ptr<AudioDevice> SelectDefault(const EndpointList& list, DataFlow flow,
                                           const MeterMaker& makeMeter);

}  // namespace platform
