// The kinds of virtual laptop that the tool makes, and what its driver says at each jack.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/jack_state.h"
#include "platform/virtual/laptop_file.h"

namespace tools {

// The machine of a kind: one codec, a default speaker endpoint on a supported adapter, one active
// and one unplugged endpoint on other adapters. Nothing for an unknown kind.
std::optional<platform::LaptopFile> MakeLaptop(std::string_view kind);

// The jack values of a machine fresh from the factory: its speaker plays.
std::vector<platform::JackValue> FactoryJackValues();

// What the driver writes when something is plugged in; nothing for an unknown plug.
std::optional<std::vector<platform::JackValue>> PlugJackValues(std::string_view plug);

// What the driver writes when it is pulled out again.
std::vector<platform::JackValue> UnplugJackValues();

}  // namespace tools
