// The sizes in which an icon resource was drawn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace resources {

// PNGs, the largest first; they live as long as the program.
std::vector<std::span<const std::byte>> IconImages(std::uint16_t id);

}  // namespace resources
