#include "ui/controls/slider/slider_scale.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ui {

void SliderScale::SetTravel(std::int32_t travel) {
  linear_.travel = travel;
  logarithmic_.travel = travel;
}

void SliderScale::SetRange(std::int32_t minValue, std::int32_t maxValue) {
  linear_.minValue = minValue;
  linear_.maxValue = maxValue;
  logarithmic_.logMin = std::log10(static_cast<double>(minValue));
  logarithmic_.logMax = std::log10(static_cast<double>(maxValue));
  zeroPos_ = linear_.ZeroPosition();
}

std::int32_t SliderScale::Position(std::int32_t value) const {
  const std::int32_t position = logScale_ ? logarithmic_.Position(value) : linear_.Position(value);
  return ClampPosition(position, Travel());
}

std::int32_t SliderScale::Value(std::int32_t position) const {
  return logScale_ ? logarithmic_.Value(position) : linear_.Value(position);
}

// Positions and values are truncated, so the value of the next position can be nearer.
std::int32_t SliderScale::NearestPosition(std::int32_t value) const {
  const std::int32_t first = Position(value);
  const std::int32_t second = ClampPosition(std::int64_t{first} + 1, Travel());
  const auto distance = [&](std::int32_t position) {
    return std::abs(std::int64_t{Value(position)} - value);
  };
  return distance(first) <= distance(second) ? first : second;
}

std::int32_t ClampPosition(std::int64_t position, std::int32_t travel) {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(position, 0, std::max<std::int32_t>(travel, 0)));
}

}  // namespace ui
