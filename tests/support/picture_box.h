// The rectangle around those pixels of a picture that a test asks for.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/drawing.h"
#include "platform/geometry.h"

namespace support {

// Around all pixels of `area` that `isWanted` accepts by position; empty when there are none.
template <class Predicate>
platform::Rect BoxOf(const platform::Rect& area, Predicate isWanted) {
  platform::Rect box{area.right, area.bottom, area.left, area.top};
  for (std::int32_t y = area.top; y < area.bottom; ++y) {
    for (std::int32_t x = area.left; x < area.right; ++x) {
      if (!isWanted(x, y)) continue;
      box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
             std::max(box.bottom, y + 1)};
    }
  }
  return box.right > box.left ? box : platform::Rect{};
}

inline platform::Rect AreaOf(const platform::Bitmap& picture) {
  return {0, 0, picture.Width(), picture.Height()};
}

// Around the pixels of `area` in which the pictures differ.
inline platform::Rect BoxOfDifference(const platform::Bitmap& one, const platform::Bitmap& other,
                                      const platform::Rect& area) {
  return BoxOf(area, [&](std::int32_t x, std::int32_t y) {
    return one.GetPixel(x, y) != other.GetPixel(x, y);
  });
}

}  // namespace support
