#pragma once

#include <cstdint>

#include "platform/audio_devices.h"

namespace endpoints {

// Whether the main window shows the warning about unsupported endpoints.
enum class EndpointWarning : std::uint8_t { Hidden = 0, Shown = 1 };

// Hidden when the default endpoint is on a supported adapter and nothing plays on any other; shown
// in every other case, failures included. Any thread.
EndpointWarning EvaluateEndpointSupport(platform::AudioDevices& audioDevices);

}  // namespace endpoints
