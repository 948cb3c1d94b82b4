#pragma once

#include <cstdint>
#include <limits>

namespace dsp {

inline constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
inline constexpr float kInfinity = std::numeric_limits<float>::infinity();
inline constexpr std::int32_t kIntMin = std::numeric_limits<std::int32_t>::min();
inline constexpr std::int32_t kIntMax = std::numeric_limits<std::int32_t>::max();

// What a store or a settings file can hold where a sensible value belongs.
inline constexpr float kHostileValues[] = {kNan,     kInfinity,     -kInfinity, 0.0F,
                                           -0.0F,    -1.0F,         3.0e38F,    -3.0e38F,
                                           1.0e-45F, 2147483648.0F, 24000.0F,   1.0e6F};

}  // namespace dsp
