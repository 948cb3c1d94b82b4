#pragma once

#include <cmath>
#include <complex>

#include "dsp/eq_model.h"

namespace dsp {

// A second opinion on a band's response at `frequency`: the analog filter that the bilinear
// transform turns into the digital one, evaluated in double precision.
inline std::complex<double> AnalogResponse(FilterType type, double corner, double gain, double q,
                                           double frequency) {
  const double pi = std::acos(-1.0);
  const auto warp = [pi](double hertz) { return std::tan(pi * hertz / 48000.0); };
  const double k = warp(corner);
  const std::complex<double> s(0.0, warp(frequency));
  const auto root = [](double x) { return std::sqrt(x); };
  if (gain < 1.0 && (type == FilterType::LowShelving || type == FilterType::HighShelving)) {
    return 1.0 / AnalogResponse(type, corner, 1.0 / gain, q, frequency);
  }
  const double k2 = k * k;
  switch (type) {
    case FilterType::Peaking: {
      const double width = 2.0 * pi * corner / 48000.0 / (2.0 * q) * (1.0 + k2);
      const double boost = gain < 1.0 ? 1.0 / gain : gain;
      const auto peak = (s * s + boost * width * s + k2) / (s * s + width * s + k2);
      // A cut's width is divided by its gain in numerator and denominator alike.
      return gain < 1.0 ? 1.0 / peak : peak;
    }
    case FilterType::LowPass:
      return k2 / (s * s + root(2.0) * k * s + k2);
    case FilterType::HighPass:
      return s * s / (s * s + root(2.0) * k * s + k2);
    case FilterType::LowShelving:
      return (s * s + root(gain) / q * k * s + gain * k2) / (s * s + k / q * s + k2);
    case FilterType::HighShelving:
      break;
  }
  return (gain * s * s + root(gain) / q * k * s + k2) / (s * s + k / q * s + k2);
}

}  // namespace dsp
