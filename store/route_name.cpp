#include "store/route_name.h"

#include "platform/guid.h"
#include "platform/text.h"
#include "store/path_key.h"

namespace store {

std::string RouteName(std::u16string_view pathKey) {
  const auto guid = platform::GuidFromString(pathKey);
  if (guid == kSpeakerNodeType) return "speaker";
  if (guid == kHeadphonesNodeType) return "headphones";
  if (guid == kLineConnectorNodeType) return "line out";
  if (platform::CompareIgnoreCase(pathKey, kSubwooferPathKey) == 0) {
    return "speaker with subwoofer";
  }
  return platform::ToUtf8(pathKey);
}

}  // namespace store
