#include "tools/enginemon/route_name.h"

#include "platform/guid.h"
#include "platform/text.h"
#include "store/path_key.h"

namespace tools {

std::string RouteName(std::u16string_view pathKey) {
  const auto guid = platform::GuidFromString(pathKey);
  if (guid == store::kSpeakerNodeType) return "speaker";
  if (guid == store::kHeadphonesNodeType) return "headphones";
  if (guid == store::kLineConnectorNodeType) return "line out";
  if (platform::CompareIgnoreCase(pathKey, store::kSubwooferPathKey) == 0) {
    return "speaker with subwoofer";
  }
  return platform::ToUtf8(pathKey);
}

}  // namespace tools
