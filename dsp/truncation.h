#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace dsp {

// Truncates toward zero. Stored parameters may hold anything a float can hold, and a plain cast of
// such a value is undefined, so values beyond the integer's range stop at its ends and a NaN counts
// as 0. Floats widen exactly, so this serves single precision results too.
inline std::int32_t TruncateToInt32(double value) {
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  if (std::isnan(value)) {
    return 0;
  }
  if (value <= kLowest) {
    return std::numeric_limits<std::int32_t>::min();
  }
  if (value >= kHighest) {
    return std::numeric_limits<std::int32_t>::max();
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace dsp
