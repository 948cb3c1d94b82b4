#pragma once

#include <optional>
#include <string>

#include "platform/audio_devices.h"
#include "platform/registry.h"

namespace tools {

// Tells when the default endpoint's route has become another one.
class RouteWatch {
 public:
  RouteWatch(platform::Registry& registry, platform::AudioDevices& audioDevices);

  // The route's path key, empty when there is no default endpoint; nothing when it is that of the
  // last look. The first look always tells.
  std::optional<std::u16string> Look();

 private:
  std::u16string CurrentPathKey() const;

  platform::Registry& registry_;
  platform::AudioDevices& audioDevices_;
  std::optional<std::u16string> last_;
};

}  // namespace tools
