// Which route an endpoint plays through, from what the driver and the store say. Any thread.
#pragma once

#include <memory>
#include <string_view>

#include "platform/registry.h"
#include "store/output_path.h"

namespace endpoints {

// What this room finds out and the store keeps settings for.
using store::OutputPath;

// Jack values that the driver publishes win over the Intel SST driver's headset flag, which wins
// over the store's hint.
OutputPath DetectOutputPath(platform::Registry& registry, std::u16string_view endpointGuid);

// The Intel SST driver's key that holds "HeadsetStatus", open for reading; null when that driver
// is not there.
std::unique_ptr<platform::RegistryKey> FindSstHeadsetKey(platform::Registry& registry);

}  // namespace endpoints
