#include "ui/controls/slider/slider_drag.h"

#include "ui/controls/slider/slider_geometry.h"
#include "ui/controls/slider/slider_scale.h"

namespace ui {

std::optional<std::int32_t> SliderDrag::Press(std::int32_t x, std::int32_t thumbPos,
                                              std::int32_t thumbWidth, std::int32_t travel) {
  dragging_ = true;
  lastMouse_ = x;
  if (IsThumbPress(x, thumbPos, thumbWidth)) return std::nullopt;
  return ClampPosition(std::int64_t{x} - thumbWidth / 2, travel);
}

std::optional<std::int32_t> SliderDrag::Move(std::int32_t x, std::int32_t thumbPos,
                                             std::int32_t travel, std::int32_t clientWidth) {
  // Not even the pointer's place is remembered, so that a pointer coming back from outside goes on
  // where it left and the thumb follows at once.
  if (x < 0 || x > clientWidth) return std::nullopt;
  const std::int64_t position = std::int64_t{thumbPos} + x - lastMouse_;
  lastMouse_ = x;
  return ClampPosition(position, travel);
}

}  // namespace ui
