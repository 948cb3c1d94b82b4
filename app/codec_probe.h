// Identifies the laptop by the subsystem ID of its audio codec.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace app {

// The SSID of the codec, 0 when no codec of a known family is present. The first family with an
// SSID wins; every matching device of the families looked at gets its entry in the diagnostic log.
std::uint32_t ProbeCodecSsid(platform::Platform& platform);

}  // namespace app
