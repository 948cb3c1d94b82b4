#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/frame.h"
#include "engine/true_peak.h"

namespace engine {

// Keeps the true peak of both channels under -1 dB of full scale, the sound as it is where it is
// under that anyway. The gain, one for both channels, starts to fall before a peak arrives.
class Limiter {
 public:
  // Forgets the past. `sampleRate` in Hz, within the design's limits.
  void Start(double sampleRate) noexcept;

  // At most a block of frames, of any height that a float can tell.
  void Process(const Frame* frames, std::size_t count, float* left, float* right) noexcept;

  static std::size_t LatencyFrames(double sampleRate);

 private:
  // Gains are whole numbers in the long sums, which else would drift; this is 1.
  static constexpr std::int64_t kUnity = std::int64_t{1} << 40;
  static constexpr std::size_t kMaxHalf = 512;
  static constexpr std::size_t kMaxLatency = 1024;

  // The sum of the latest `size` values.
  class MovingSum {
   public:
    void Start(std::size_t size, std::int64_t value) noexcept;
    // Takes the block's value number `f` and gives the sum.
    std::int64_t Take(std::size_t f, std::int64_t value) noexcept {
      values_[size_ + f] = value;
      sum_ += value - values_[f];
      return sum_;
    }
    void EndBlock(std::size_t count) noexcept;

   private:
    std::size_t size_ = 1;
    std::int64_t sum_ = 0;
    // The latest `size_` before the block, then those of the block.
    std::array<std::int64_t, kMaxHalf + kBlockFrames> values_{};
  };

  // The least of at least the latest `size` gains, some few more in number.
  class MovingMinimum {
   public:
    void Start(std::size_t size) noexcept;
    // Takes so many gains and puts the least in their place.
    void Minimize(float* gains, std::size_t count) noexcept;
    // The same for gains of 1 while all are 1.
    void Skip(std::size_t count) noexcept { inGathering_ = (inGathering_ + count) % kGathered; }

   private:
    void EndGathering() noexcept;

    // Gains are gathered by so many, and of the gatherings the least is kept.
    static constexpr std::size_t kGathered = 8;

    std::size_t size_ = 1;  // gatherings
    std::size_t at_ = 0;
    std::size_t inGathering_ = 0;
    float gathering_ = 1.0F;  // least of the current one
    float earlier_ = 1.0F;    // least of all others
    std::array<float, kMaxLatency / kGathered + 1> latest_{};
  };

  bool MayExceed(std::size_t count) const noexcept;
  // From the gains that samples want to those that they get.
  void Smooth(float* gains, std::size_t count) noexcept;

  TruePeakEstimator estimator_;
  std::size_t latency_ = 1;
  std::int64_t release_ = 0;  // part of the way back to 1 in one frame, of 2^20
  double scale_ = 1.0;        // of the sum of sums, to give a gain
  std::int64_t lack_ = 0;     // of the held gain, to be 1
  std::size_t atUnity_ = 0;   // frames since the gain was last below 1
  MovingMinimum minimum_;
  MovingSum smooth_;
  MovingSum smoother_;
  // Each channel's latest `latency_` samples, then those of the block.
  std::array<std::array<float, kMaxLatency + kBlockFrames>, 2> lines_{};
};

}  // namespace engine
