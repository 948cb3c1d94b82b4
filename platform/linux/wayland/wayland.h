// What must be known of a Wayland desktop before the toolkit joins it.
#pragma once

#include <cstdint>
#include <optional>

namespace platform::wayland {

// The whole number of pixels by which the primary output, which is the one that the desktop names
// first, enlarges its units. Nothing when the environment names no Wayland desktop that answers.
std::optional<std::uint32_t> ReadOutputScale();

}  // namespace platform::wayland
