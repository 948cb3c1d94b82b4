// A hand on a slider: pointer positions in, thumb positions out.
#pragma once

#include <cstdint>
#include <optional>

namespace ui {

class SliderDrag {
 public:
  bool IsDragging() const { return dragging_; }

  // The button goes down at `x` (client coordinates). The position to which the thumb jumps, which
  // may be the old one; nothing when the press takes hold of the thumb where it is.
  std::optional<std::int32_t> Press(std::int32_t x, std::int32_t thumbPos, std::int32_t thumbWidth,
                                    std::int32_t travel);
  // The pointer moves to `x` while the button is down. The thumb keeps its distance to the pointer;
  // nothing when the move is ignored because it lies beyond the sides of the client area.
  std::optional<std::int32_t> Move(std::int32_t x, std::int32_t thumbPos, std::int32_t travel,
                                   std::int32_t clientWidth);
  void Release() { dragging_ = false; }

 private:
  bool dragging_ = false;
  std::int32_t lastMouse_ = 0;
};

}  // namespace ui
