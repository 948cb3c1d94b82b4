// Coordinates that the drawing library can bear: numbers that are none crash it, large ones keep it
// busy for ever.
#pragma once

#include <algorithm>
#include <cmath>

#include "platform/drawing.h"
#include "platform/windows/drawing/gdiplus_interface.h"

namespace platform {

// Far outside of any surface.
inline constexpr float kFarthest = 1.0e5F;

inline bool IsDrawable(PointF point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}
inline bool IsDrawable(const RectF& rect) {
  return IsDrawable(PointF{rect.x, rect.y}) && IsDrawable(PointF{rect.width, rect.height});
}

inline float Near(float coordinate) {
  return std::clamp(coordinate, -kFarthest, kFarthest);
}
inline Gdiplus::PointF ToNative(PointF point) {
  return {Near(point.x), Near(point.y)};
}
inline Gdiplus::RectF ToNative(const RectF& rect) {
  return {Near(rect.x), Near(rect.y), Near(rect.width), Near(rect.height)};
}
inline Gdiplus::Rect ToNative(const Rect& rect) {
  return {rect.left, rect.top, rect.Width(), rect.Height()};
}

}  // namespace platform
