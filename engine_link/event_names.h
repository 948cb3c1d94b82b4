// Names of the machine-wide events by which the audio engine is told to read its parameters again.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace engine_link {

// One for each kind of processing object; the GUID string of an endpoint follows without a
// separator.
inline constexpr std::u16string_view kGfxEvent = u"Global\\VelsonaGFXPropEvent";
inline constexpr std::u16string_view kMfxEvent = u"Global\\VelsonaMFXPropEvent";
inline constexpr std::u16string_view kEfxEvent = u"Global\\VelsonaEFXPropEvent";
inline constexpr std::u16string_view kSfxEvent = u"Global\\VelsonaSFXPropEvent";

// In the order in which they are set: all by a change of the mode, the first three by an edit.
inline constexpr std::array<std::u16string_view, 4> kEndpointEvents = {kGfxEvent, kMfxEvent,
                                                                       kEfxEvent, kSfxEvent};
inline constexpr auto kEditEvents = std::span(kEndpointEvents).first<3>();

inline constexpr std::u16string_view kServiceEvent = u"Global\\VelsonaServiceParameterUpdateEvent";

// A name's buffer, in UTF-16 units with the NUL; what does not fit is cut off.
inline constexpr std::size_t kEventNameCapacity = 150;

// An endpoint without a GUID string gives the bare base name.
inline std::u16string EndpointEventName(std::u16string_view baseName,
                                        std::u16string_view endpointGuid) {
  std::u16string name(baseName);
  name.append(endpointGuid);
  if (name.size() >= kEventNameCapacity) name.resize(kEventNameCapacity - 1);
  return name;
}

}  // namespace engine_link
