#include "tools/enginemon/route_watch.h"

#include "endpoints/enumeration.h"
#include "endpoints/route_detection.h"
#include "store/path_key.h"

namespace tools {

RouteWatch::RouteWatch(platform::Registry& registry, platform::AudioDevices& audioDevices)
    : registry_(registry), audioDevices_(audioDevices) {}

std::u16string RouteWatch::CurrentPathKey() const {
  endpoints::DefaultEndpointInfo endpoint;
  if (!endpoints::GetDefaultEndpointInfo(audioDevices_, endpoint)) return {};
  return store::ResolvePathKey(endpoint.jackSubType,
                               endpoints::DetectOutputPath(registry_, endpoint.endpointGuid));
}

std::optional<std::u16string> RouteWatch::Look() {
  std::u16string now = CurrentPathKey();
  if (now == last_) return std::nullopt;
  last_ = now;
  return now;
}

}  // namespace tools
