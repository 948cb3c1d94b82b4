#include "engine/true_peak.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace engine {
namespace {

// Of the Kaiser window: a wider one reads near half of the rate low, a narrower one ripples.
constexpr double kBeta = 4.0;

double Sinc(double x) {
  const double y = std::numbers::pi * x;
  return y == 0.0 ? 1.0 : std::sin(y) / y;
}

}  // namespace

TruePeakEstimator::TruePeakEstimator() {
  constexpr double kHalf = kTaps / 2;
  for (std::size_t point = 0; point < kPoints; ++point) {
    const double position = static_cast<double>(point + 1) / static_cast<double>(kPoints + 1);
    std::array<double, kTaps> exact{};
    double sum = 0.0;
    for (std::size_t k = 0; k < kTaps; ++k) {
      const double x = static_cast<double>(k) - kHalf + position;
      exact[k] = Sinc(x) * std::cyl_bessel_i(0.0, kBeta * std::sqrt(1.0 - x * x / (kHalf * kHalf)));
      sum += exact[k];
    }
    float magnitudes = 0.0F;
    for (std::size_t k = 0; k < kTaps; ++k) {
      taps_[point][k] = static_cast<float>(exact[k] / sum);
      magnitudes += std::abs(taps_[point][k]);
    }
    highestGain_ = std::max(highestGain_, 1.0001F * magnitudes);
  }
}

void TruePeakEstimator::RaisePeaks(const float* samples, std::size_t count,
                                   float* peaks) const noexcept {
  const auto higher = [](float a, float b) { return a > b ? a : b; };
  for (std::size_t i = 0; i < count; ++i) {
    const float* const newest = samples + i;
    float first = 0.0F;
    float second = 0.0F;
    float third = 0.0F;
    for (std::size_t k = 0; k < kTaps; ++k) {
      const float x = *(newest - k);
      first += taps_[0][k] * x;
      second += taps_[1][k] * x;
      third += taps_[2][k] * x;
    }
    const float between = higher(higher(std::abs(first), std::abs(second)), std::abs(third));
    peaks[i] = higher(peaks[i], higher(between, std::abs(*(newest - kTaps / 2))));
  }
}

}  // namespace engine
