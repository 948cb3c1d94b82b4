#include "ui/controls/knob/knob_drag.h"

#include <algorithm>
#include <cmath>

#include "ui/controls/shared/pixel_math.h"

namespace ui {
namespace {

constexpr double kPositionsPerRadian = 100.0;

// From the centre, up is positive.
struct Arm {
  std::int32_t x;
  std::int32_t y;
};

Arm ArmTo(platform::Point pointer, platform::Point centre) {
  return {WrappingSubtract(pointer.x, centre.x), WrappingSubtract(centre.y, pointer.y)};
}

// 0 to pi, the same above and below the centre; no number on it.
double AngleOf(Arm arm) {
  const double x = arm.x;
  return std::acos(x / std::sqrt(WrappingMultiply(arm.y, arm.y) + x * x));
}

}  // namespace

void KnobDrag::Press(platform::Point pointer) {
  dragging_ = true;
  lastMouse_ = pointer;
}

std::int32_t KnobDrag::Move(platform::Point pointer, platform::Point centre, std::int32_t knobPos) {
  const Arm last = ArmTo(lastMouse_, centre);
  const double currentAngle = AngleOf(ArmTo(pointer, centre));
  const double lastAngle = AngleOf(last);
  lastMouse_ = pointer;

  // Below the centre's row, and on it, angles grow the other way round.
  const double delta = last.y < 1 ? lastAngle - currentAngle : currentAngle - lastAngle;
  if (std::isnan(delta)) return knobPos;
  const auto steps = static_cast<std::int32_t>(-kPositionsPerRadian * delta);
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(std::int64_t{knobPos} + steps, 0, kKnobTravel));
}

}  // namespace ui
