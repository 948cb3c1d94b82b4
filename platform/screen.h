#pragma once

#include <cstdint>

namespace platform {

// Logical dots per inch of the primary screen, horizontally and vertically.
struct ScreenDpi {
  std::uint32_t x;
  std::uint32_t y;
};

// Stays what it was when the user-interface session began. Any thread while that lives.
ScreenDpi GetScreenDpi();

}  // namespace platform
