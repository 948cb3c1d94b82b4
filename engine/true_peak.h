#pragma once

#include <array>
#include <cstddef>

#include "engine/frame.h"

namespace engine {

// Estimates what lies between the samples as ITU-R BS.1770 does it, from three more points after
// each sample. Its own filter of 12 taps reads noise up to half of the rate 2 dB low. This one
// finds the point halfway with more taps; with it the quarters are easy, since no sound is left in
// the upper half of the doubled rate.
class TruePeakEstimator {
 private:
  // On each side of a point: of a half, and of a quarter at the doubled rate.
  static constexpr std::size_t kHalfTaps = 16;
  static constexpr std::size_t kQuarterTaps = 4;

 public:
  // An estimate is made of the latest sample and so many before it.
  static constexpr std::size_t kPast = 2 * kHalfTaps - 1 + kQuarterTaps;

  TruePeakEstimator();

  // Whether any estimate of the same call of RaisePeaks might be above `limit`; false is certain.
  bool MayExceed(float limit, const float* samples, std::size_t count) const noexcept;

  // `samples` is the first of `count` new ones, at most a block, which kPast earlier ones precede
  // in memory. Raises peaks[i] to the greatest magnitude from one sample to its successor, the same
  // way behind sample i for each.
  void RaisePeaks(const float* samples, std::size_t count, float* peaks) const noexcept;

 private:
  // Element k weighs the sum of the two points that are k from the nearest.
  std::array<float, kHalfTaps> half_{};
  std::array<float, kQuarterTaps> quarter_{};
  // No estimate is greater than the greatest sample times this.
  float highestGain_ = 1.0F;
};

}  // namespace engine
