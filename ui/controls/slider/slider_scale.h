// What a slider's thumb positions mean: a range of whole numbers along a travel of pixels, with
// even or logarithmic steps.
#pragma once

#include <cstdint>

#include "ui/controls/shared/value_map.h"

namespace ui {

class SliderScale {
 public:
  // Pixels between the thumb's ends. A range set before keeps its zero position.
  void SetTravel(std::int32_t travel);
  // With a logarithmic scale `minValue` must be positive; `maxValue` must be the greater one.
  // Anything else gives positions within the travel that mean nothing.
  void SetRange(std::int32_t minValue, std::int32_t maxValue);
  void SetLogScale(bool logScale) { logScale_ = logScale; }

  std::int32_t Travel() const { return linear_.travel; }
  // Where the value 0 lies on an even scale; negative below the range.
  std::int32_t ZeroPos() const { return zeroPos_; }

  // The position of a value, truncated and kept within the travel.
  std::int32_t Position(std::int32_t value) const;
  std::int32_t Value(std::int32_t position) const;
  // That position or the next one, whichever has the nearer value; `value` must lie in the range.
  std::int32_t NearestPosition(std::int32_t value) const;

 private:
  LinearMap linear_;
  LogarithmicMap logarithmic_;
  std::int32_t zeroPos_ = 50;
  bool logScale_ = false;
};

// 0 to `travel`; 0 where there is no room to travel.
std::int32_t ClampPosition(std::int64_t position, std::int32_t travel);

}  // namespace ui
