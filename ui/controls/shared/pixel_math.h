// Arithmetic for positions on the screen that stays defined for every argument.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/truncation.h"

namespace ui {

// `units` at 96 dots per inch as whole pixels, truncated toward zero; `scale` is the resolution
// divided by 96.
inline std::int32_t ScaledPixels(double units, double scale) {
  return dsp::TruncateToInt32(units * scale);
}

// Far outside every window, yet near enough to add image sizes to it.
inline constexpr std::int32_t kNowhere = -(1 << 24);

// A computed coordinate as a pixel, truncated toward zero. Coordinates beyond every window stop
// where they are still out of sight, and what is no number lies nowhere.
inline std::int32_t PixelPosition(double coordinate) {
  if (std::isnan(coordinate)) return kNowhere;
  return static_cast<std::int32_t>(std::clamp<double>(coordinate, kNowhere, -kNowhere));
}

// 32-bit integer arithmetic in which an overflow wraps around.
inline std::int32_t WrappingMultiply(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}
inline std::int32_t WrappingSubtract(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

}  // namespace ui
