#include "engine/true_peak.h"

#include <cmath>
#include <numbers>
#include <tuple>

#include "engine/wide.h"

namespace engine {
namespace {

// Of the Kaiser windows: a higher one reads near half of the rate low, a lower one ripples.
constexpr double kHalfBeta = 2.0;
constexpr double kQuarterBeta = 3.0;

// Weights for the point in the middle of a band-limited signal's samples.
template <std::size_t kTaps>
std::array<float, kTaps> Interpolation(double beta) {
  std::array<double, kTaps> taps{};
  double sum = 0.0;
  for (std::size_t k = 0; k < kTaps; ++k) {
    const double x = static_cast<double>(k) + 0.5;
    const double part = x / static_cast<double>(kTaps);
    taps[k] = std::sin(std::numbers::pi * x) / (std::numbers::pi * x) *
              std::cyl_bessel_i(0.0, beta * std::sqrt(1.0 - part * part));
    sum += 2.0 * taps[k];
  }
  std::array<float, kTaps> rounded{};
  for (std::size_t k = 0; k < kTaps; ++k) rounded[k] = static_cast<float>(taps[k] / sum);
  return rounded;
}

float HighestGain(const auto& taps) {
  float sum = 0.0F;
  for (const float tap : taps) sum += 2.0F * std::abs(tap);
  return 1.0001F * sum;
}

template <typename Half, typename Quarter>
[[gnu::always_inline]] inline void Raise(const Half& half, const Quarter& quarter,
                                         const float* samples, std::size_t count, float* peaks) {
  const auto higher = [](float a, float b) { return a > b ? a : b; };
  // Point i lies halfway between oldest[i] and oldest[i + 1].
  const float* const oldest = samples - quarter.size() - half.size();
  std::array<float, kBlockFrames + std::tuple_size_v<Quarter>> halfway;
  for (std::size_t i = 0; i < count + quarter.size(); ++i) {
    float sum = 0.0F;
    for (std::size_t k = 0; k < half.size(); ++k) {
      sum += half[k] * (*(oldest + i - k) + *(oldest + i + 1 + k));
    }
    halfway[i] = sum;
  }
  // From a sample to its successor, with two halves before and two after the one between them.
  for (std::size_t i = 0; i < count; ++i) {
    const float* const s = oldest + i + 2;
    const float* const h = &halfway[i + 2];
    const float first = quarter[0] * (s[0] + h[0]) + quarter[1] * (h[-1] + s[1]) +
                        quarter[2] * (s[-1] + h[1]) + quarter[3] * (h[-2] + s[2]);
    const float third = quarter[0] * (h[0] + s[1]) + quarter[1] * (s[0] + h[1]) +
                        quarter[2] * (h[-1] + s[2]) + quarter[3] * (s[-1] + h[2]);
    const float outer = higher(std::abs(first), std::abs(third));
    peaks[i] = higher(peaks[i], higher(outer, higher(std::abs(s[0]), std::abs(h[0]))));
  }
}

template <typename Half, typename Quarter>
TONALYX_AVX2 void RaiseWide(const Half& half, const Quarter& quarter, const float* samples,
                            std::size_t count, float* peaks) {
  Raise(half, quarter, samples, count, peaks);
}

}  // namespace

TruePeakEstimator::TruePeakEstimator()
    : half_(Interpolation<kHalfTaps>(kHalfBeta)),
      quarter_(Interpolation<kQuarterTaps>(kQuarterBeta)),
      highestGain_(HighestGain(half_) * HighestGain(quarter_)) {}

bool TruePeakEstimator::MayExceed(float limit, const float* samples,
                                  std::size_t count) const noexcept {
  const float highest = limit / highestGain_;
  int above = 0;
  for (const float* x = samples - kPast; x != samples + count; ++x) {
    above |= static_cast<int>(std::abs(*x) > highest);
  }
  return above != 0;
}

void TruePeakEstimator::RaisePeaks(const float* samples, std::size_t count,
                                   float* peaks) const noexcept {
  if (HasAvx2()) {
    RaiseWide(half_, quarter_, samples, count, peaks);
  } else {
    Raise(half_, quarter_, samples, count, peaks);
  }
}

}  // namespace engine
