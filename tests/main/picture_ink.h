// What a picture shows: where its ink lies and whether it equals another.
#pragma once

#include <cstdint>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "tests/support/picture_box.h"

namespace ui {

inline int Lightness(platform::Argb color) {
  return static_cast<int>((((color >> 16U) & 0xFFU) + ((color >> 8U) & 0xFFU) + (color & 0xFFU)) /
                          3U);
}

// The rectangle around the pixels of `area` that `isInk` accepts; empty when there are none.
template <class Predicate>
platform::Rect InkBox(const platform::Bitmap& picture, const platform::Rect& area,
                      Predicate isInk) {
  return support::BoxOf(
      area, [&](std::int32_t x, std::int32_t y) { return isInk(picture.GetPixel(x, y)); });
}

// Ink that stands out from the middle greys of the plain artwork.
inline bool IsDark(platform::Argb color) {
  return Lightness(color) < 0x50;
}
inline bool IsLight(platform::Argb color) {
  return Lightness(color) > 0xA8;
}

inline bool SamePixels(const platform::Bitmap& one, const platform::Bitmap& other) {
  const platform::Rect area = support::AreaOf(one);
  return area == support::AreaOf(other) &&
         support::BoxOfDifference(one, other, area) == platform::Rect{};
}

}  // namespace ui
