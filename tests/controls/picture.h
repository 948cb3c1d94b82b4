// Small pictures to paint with, and ways to look at what was painted.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "tests/support/picture_box.h"

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

inline platform::Rect BoxOfColor(const platform::Bitmap& picture, platform::Argb color) {
  return support::BoxOf(support::AreaOf(picture), [&](std::int32_t x, std::int32_t y) {
    return picture.GetPixel(x, y) == color;
  });
}

inline platform::Rect BoxOfDifference(const platform::Bitmap& one, const platform::Bitmap& other) {
  return support::BoxOfDifference(one, other, support::AreaOf(one));
}

}  // namespace ui
