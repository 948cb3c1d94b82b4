#pragma once

#include <array>
#include <complex>
#include <cstddef>

#include "dsp/biquad.h"
#include "engine/section.h"

namespace engine {

// Carries the magnitude of a filter at 48 kHz over to a lower rate.
//
// A filter's magnitude is a ratio of polynomials in u = tan^2(pi f / 48000). The same filter
// designed for another rate has it in t = tan^2(pi f / rate) and so bends otherwise toward the end
// of its band: by 2 dB at 20 kHz for a peak at 16 kHz and 44.1 kHz. u is therefore written as a
// ratio of two cubics in t, which is right to 0.02 % up to 20 kHz at 44.1 kHz; what results is a
// ratio of polynomials in t again, of three times the order, and its roots give the sections.
class CurveTransfer {
 public:
  static constexpr std::size_t kSections = 3;

  // `sampleRate` in Hz, below 48000.
  explicit CurveTransfer(double sampleRate);

  // Sections for the rate whose cascade has the magnitude that `filter` has at 48 kHz, up to 20 kHz
  // or 0.45 of the rate, whichever is less. `filter` must be stable.
  std::array<Section, kSections> operator()(const dsp::BiquadCoefficients& filter) const;

 private:
  // A factor s^2 + linear s + constant, s being the variable of the bilinear transform at the rate.
  struct Factor {
    double linear;
    double constant;
  };

  double Ratio(double t) const;
  std::array<std::complex<double>, kSections> Solve(std::complex<double> numerator,
                                                    std::complex<double> denominator) const;
  std::array<Factor, kSections> Factorize(const std::array<double, 3>& polynomial) const;

  // u = t (p[0] + p[1] t + p[2] t^2) / (1 + t (q[0] + q[1] t + q[2] t^2))
  std::array<double, kSections> p_{};
  std::array<double, kSections> q_{};
};

}  // namespace engine
