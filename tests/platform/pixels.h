// Reading pictures in tests.
#pragma once

#include <ostream>
#include <vector>

#include "platform/drawing.h"
#include "tests/support/picture_box.h"

namespace platform {

inline void PrintTo(const Rect& rect, std::ostream* out) {
  *out << "(" << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom << ")";
}

inline std::uint32_t AlphaAt(const Bitmap& bitmap, std::int32_t x, std::int32_t y) {
  return bitmap.GetPixel(x, y) >> 24U;
}

// The smallest rectangle that holds all pixels that are not fully transparent.
inline Rect PaintedBounds(const Bitmap& bitmap) {
  return support::BoxOf(support::AreaOf(bitmap),
                        [&](std::int32_t x, std::int32_t y) { return AlphaAt(bitmap, x, y) != 0; });
}

// How many pixels the painted coverage amounts to.
inline double PaintedArea(const Bitmap& bitmap) {
  double area = 0.0;
  for (std::int32_t y = 0; y < bitmap.Height(); ++y) {
    for (std::int32_t x = 0; x < bitmap.Width(); ++x) area += AlphaAt(bitmap, x, y) / 255.0;
  }
  return area;
}

inline Bitmap EmptyBitmap(std::int32_t width, std::int32_t height) {
  return Bitmap(width, height, PixelFormat::PremultipliedArgb32);
}

}  // namespace platform
