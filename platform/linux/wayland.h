// What must be known of a Wayland desktop before the toolkit joins it.
#pragma once

#include <cstdint>
#include <optional>

namespace platform::wayland {

// The whole number of pixels by which the outputs enlarge their units, the smallest where they
// differ: the toolkit can enlarge a picture for a denser output, but not reduce it for a coarser
// one. Nothing when the environment names no Wayland desktop that answers.
std::optional<std::uint32_t> ReadOutputScale();

}  // namespace platform::wayland
