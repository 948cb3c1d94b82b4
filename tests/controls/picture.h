// Small pictures to paint with, and ways to look at what was painted.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "platform/drawing.h"
#include "platform/geometry.h"

namespace ui {

inline constexpr platform::Argb kTestBackground = 0xFF808080;

inline platform::Bitmap Solid(platform::Size size, platform::Argb color) {
  platform::Bitmap image(size.width, size.height, platform::PixelFormat::PremultipliedArgb32);
  platform::Graphics(image).Clear(color);
  return image;
}

inline std::int32_t Channel(platform::Argb color, unsigned shift) {
  return static_cast<std::int32_t>((color >> shift) & 0xFFU);
}

// The largest difference of a colour channel.
inline std::int32_t Distance(platform::Argb one, platform::Argb other) {
  return std::max({std::abs(Channel(one, 16) - Channel(other, 16)),
                   std::abs(Channel(one, 8) - Channel(other, 8)),
                   std::abs(Channel(one, 0) - Channel(other, 0))});
}

// The rectangle around all pixels that `isWanted` accepts by position; empty when there are none.
template <class Predicate>
platform::Rect BoxOf(platform::Size size, Predicate isWanted) {
  platform::Rect box{size.width, size.height, 0, 0};
  for (std::int32_t y = 0; y < size.height; ++y) {
    for (std::int32_t x = 0; x < size.width; ++x) {
      if (!isWanted(x, y)) continue;
      box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
             std::max(box.bottom, y + 1)};
    }
  }
  return box.right > box.left ? box : platform::Rect{};
}

inline platform::Rect BoxOfColor(const platform::Bitmap& picture, platform::Argb color) {
  return BoxOf({picture.Width(), picture.Height()},
               [&](std::int32_t x, std::int32_t y) { return picture.GetPixel(x, y) == color; });
}

inline platform::Rect BoxOfDifference(const platform::Bitmap& one, const platform::Bitmap& other) {
  return BoxOf({one.Width(), one.Height()}, [&](std::int32_t x, std::int32_t y) {
    return one.GetPixel(x, y) != other.GetPixel(x, y);
  });
}

}  // namespace ui
