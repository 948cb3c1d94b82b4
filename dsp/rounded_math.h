#pragma once

#include <cmath>

namespace dsp {

// The C libraries' own single-precision functions differ from each other in the last bit. Computed
// in double precision and rounded once, the bits are the same on every platform.
inline float RoundedLog10(float value) {
  return static_cast<float>(std::log10(static_cast<double>(value)));
}

inline float RoundedPowerOf10(float exponent) {
  return static_cast<float>(std::pow(10.0, static_cast<double>(exponent)));
}

}  // namespace dsp
