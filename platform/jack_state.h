// The jack state that an endpoint's driver publishes in the registry.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/registry.h"

namespace platform {

// The driver's values, by the number in their name. 1 says yes and 0 no.
enum class JackProperty : std::uint32_t {
  OtherHeadphone = 1,
  Headphone = 4,
  Speaker = 6,
  Subwoofer = 20,
};

struct JackValue {
  JackProperty property;
  std::uint32_t value;
  bool operator==(const JackValue&) const = default;
};

// The key that holds the values of the endpoint with this GUID string, and a value's name in it.
std::u16string JackKeyPath(std::u16string_view endpointGuid);
std::u16string JackValueName(JackProperty property);

// Nothing when the value is missing or no number of 32 bits.
std::optional<std::uint32_t> ReadJackValue(Registry& registry, std::u16string_view endpointGuid,
                                           JackProperty property);

// Writes the values together, changed or not; makes the key when it is missing. False when that
// failed, and then none of them is written where the registry has transactions.
bool WriteJackValues(Registry& registry, std::u16string_view endpointGuid,
                     std::span<const JackValue> values);

}  // namespace platform
