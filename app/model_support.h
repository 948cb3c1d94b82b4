// Which models are supported, and what they have.
#pragma once

#include <cstdint>

#include "platform/files.h"
#include "store/model_flags.h"

namespace app {

// The result of identification.
struct ModelInfo : store::ModelFlags {
  std::uint32_t ssid = 0;  // subsystem vendor ID above, device ID below; 0: no codec was found
  bool supported = false;
};

// Looks the SSID up and notes the answer in the diagnostic log.
bool IsSupportedModel(std::uint32_t ssid, platform::FileSystem& files);

bool HasThreeGuiLayers(std::uint32_t ssid);
bool IsDavrinModel(std::uint32_t ssid);

}  // namespace app
