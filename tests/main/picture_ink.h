// What a picture shows: where its ink lies and whether it equals another.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/drawing.h"
#include "platform/geometry.h"

namespace ui {

inline int Lightness(platform::Argb color) {
  return static_cast<int>((((color >> 16U) & 0xFFU) + ((color >> 8U) & 0xFFU) + (color & 0xFFU)) /
                          3U);
}

// The rectangle around the pixels of `area` that `isInk` accepts; empty when there are none.
template <class Predicate>
platform::Rect InkBox(const platform::Bitmap& picture, const platform::Rect& area,
                      Predicate isInk) {
  platform::Rect box{area.right, area.bottom, area.left, area.top};
  for (std::int32_t y = area.top; y < area.bottom; ++y) {
    for (std::int32_t x = area.left; x < area.right; ++x) {
      if (!isInk(picture.GetPixel(x, y))) continue;
      box.left = std::min(box.left, x);
      box.top = std::min(box.top, y);
      box.right = std::max(box.right, x + 1);
      box.bottom = std::max(box.bottom, y + 1);
    }
  }
  return box.right > box.left ? box : platform::Rect{};
}

// Ink that stands out from the middle greys of the plain artwork.
inline bool IsDark(platform::Argb color) {
  return Lightness(color) < 0x50;
}
inline bool IsLight(platform::Argb color) {
  return Lightness(color) > 0xA8;
}

inline bool SamePixels(const platform::Bitmap& one, const platform::Bitmap& other) {
  if (one.Width() != other.Width() || one.Height() != other.Height()) return false;
  for (std::int32_t y = 0; y < one.Height(); ++y) {
    for (std::int32_t x = 0; x < one.Width(); ++x) {
      if (one.GetPixel(x, y) != other.GetPixel(x, y)) return false;
    }
  }
  return true;
}

}  // namespace ui
