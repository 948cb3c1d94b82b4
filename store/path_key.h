// The folders of the store: one for each output route.
#pragma once

#include <string>
#include <string_view>

#include "platform/guid.h"
#include "store/output_path.h"

namespace store {

// Node types that endpoints report as their jack subtype.
inline constexpr platform::Guid kSpeakerNodeType{
    0xDFF21CE1, 0xF70F, 0x11D0, {0xB9, 0x17, 0x00, 0xA0, 0xC9, 0x22, 0x31, 0x96}};
inline constexpr platform::Guid kHeadphonesNodeType{
    0xDFF21CE2, 0xF70F, 0x11D0, {0xB9, 0x17, 0x00, 0xA0, 0xC9, 0x22, 0x31, 0x96}};
inline constexpr platform::Guid kLineConnectorNodeType{
    0xDFF21FE3, 0xF70F, 0x11D0, {0xB9, 0x17, 0x00, 0xA0, 0xC9, 0x22, 0x31, 0x96}};

// The folder of the speaker with subwoofer, which has no node type of its own.
inline constexpr std::u16string_view kSubwooferPathKey = u"{765D256B-701A-44F8-BA7A-4A95AFA7C762}";

// True when the text is the speaker's node type in registry form, in either case.
bool IsSpeakerNodeType(std::u16string_view jackSubType);

// The `PathKey` of a route. Endpoints other than speakers have one route, named by the jack subtype
// as it stands, whatever text that is.
std::u16string ResolvePathKey(std::u16string_view jackSubType, store::OutputPath route);

}  // namespace store
