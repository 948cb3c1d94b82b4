#include "store/path_key.h"

namespace store {

bool IsSpeakerNodeType(std::u16string_view jackSubType) {
  return platform::GuidFromString(jackSubType) == kSpeakerNodeType;
}

std::u16string ResolvePathKey(std::u16string_view jackSubType, endpoints::OutputPath route) {
  if (IsSpeakerNodeType(jackSubType)) {
    switch (route) {
      case endpoints::OutputPath::LineOut:
        return platform::GuidToString(kLineConnectorNodeType);
      case endpoints::OutputPath::Headphone:
        return platform::GuidToString(kHeadphonesNodeType);
      case endpoints::OutputPath::SpeakerWithSubwoofer:
        return std::u16string(kSubwooferPathKey);
      case endpoints::OutputPath::InternalSpeaker:
        break;
    }
  }
  return std::u16string(jackSubType);
}

}  // namespace store
