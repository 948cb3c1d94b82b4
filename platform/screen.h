#pragma once

#include <cstdint>

namespace platform {

// Logical dots per inch of the primary screen, horizontally and vertically.
struct ScreenDpi {
  std::uint32_t x;
  std::uint32_t y;
};

// User-interface thread.
ScreenDpi GetScreenDpi();

}  // namespace platform
