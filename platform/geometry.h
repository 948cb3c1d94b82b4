// Points, sizes and rectangles, in pixels unless said otherwise.
#pragma once

#include <cstdint>

namespace platform {

struct Point {
  std::int32_t x = 0;
  std::int32_t y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  std::int32_t width = 0;
  std::int32_t height = 0;
  bool operator==(const Size&) const = default;
};

// Right and bottom lie outside.
struct Rect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;

  std::int32_t Width() const { return right - left; }
  std::int32_t Height() const { return bottom - top; }
  bool operator==(const Rect&) const = default;
};

struct PointF {
  float x = 0.0F;
  float y = 0.0F;
};

struct SizeF {
  float width = 0.0F;
  float height = 0.0F;
};

struct RectF {
  float x = 0.0F;
  float y = 0.0F;
  float width = 0.0F;
  float height = 0.0F;
};

}  // namespace platform
