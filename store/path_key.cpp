#include "store/path_key.h"

namespace store {

bool IsSpeakerNodeType(std::u16string_view jackSubType) {
  return platform::GuidFromString(jackSubType) == kSpeakerNodeType;
}

std::u16string ResolvePathKey(std::u16string_view jackSubType, store::OutputPath route) {
  if (IsSpeakerNodeType(jackSubType)) {
    switch (route) {
      case store::OutputPath::LineOut:
        return platform::GuidToString(kLineConnectorNodeType);
      case store::OutputPath::Headphone:
        return platform::GuidToString(kHeadphonesNodeType);
      case store::OutputPath::SpeakerWithSubwoofer:
        return std::u16string(kSubwooferPathKey);
      case store::OutputPath::InternalSpeaker:
        break;
    }
  }
  return std::u16string(jackSubType);
}

}  // namespace store
