#pragma once

#include <array>
#include <cstddef>

namespace engine {

// Estimates what lies between the samples as ITU-R BS.1770 does it: three more points after each
// sample, by a polyphase interpolation filter.
class TruePeakEstimator {
 public:
  static constexpr std::size_t kTaps = 12;
  static constexpr std::size_t kPast = kTaps - 1;

  TruePeakEstimator();

  // `samples` is the first of `count` new ones, which kPast earlier ones precede in memory. Raises
  // peaks[i] to the greatest magnitude from sample i - kTaps / 2 up to its successor.
  void RaisePeaks(const float* samples, std::size_t count, float* peaks) const noexcept;

  // No estimate is greater than the greatest sample times this.
  float HighestGain() const { return highestGain_; }

 private:
  static constexpr std::size_t kPoints = 3;

  std::array<std::array<float, kTaps>, kPoints> taps_{};
  float highestGain_ = 1.0F;
};

}  // namespace engine
