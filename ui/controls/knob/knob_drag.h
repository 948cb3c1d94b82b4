// A hand on a knob: pointer positions in, knob positions out.
#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace ui {

// Positions of a knob from its left stop to its right one.
inline constexpr std::int32_t kKnobTravel = 400;

class KnobDrag {
 public:
  bool IsDragging() const { return dragging_; }

  // The button goes down, which by itself turns nothing.
  void Press(platform::Point pointer);
  // The pointer moves while the button is down and turns the knob about `centre`, clockwise up.
  // Turning by less than a hundredth of a radian is lost, and so is a step that starts or ends on
  // the centre, which has no angle.
  std::int32_t Move(platform::Point pointer, platform::Point centre, std::int32_t knobPos);
  void Release() { dragging_ = false; }

 private:
  bool dragging_ = false;
  platform::Point lastMouse_;
};

}  // namespace ui
