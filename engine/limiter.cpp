#include "engine/limiter.h"

#include <algorithm>
#include <cmath>

#include "engine/sound_design.h"

namespace engine {
namespace {

// Half a dB under the limit: so much of a peak near half of the rate the estimate may miss.
constexpr float kCeiling = 0.8423F;
constexpr double kAttackTime = 0.001;  // s
constexpr double kReleaseTime = 0.15;  // s
constexpr std::int64_t kReleaseUnit = std::int64_t{1} << 20;

// The gain is smoothed by two moving sums of this many frames each.
std::size_t HalfAttack(double sampleRate) {
  return std::max<std::size_t>(
      1, static_cast<std::size_t>(std::lround(0.5 * kAttackTime * sampleRate)));
}

}  // namespace

void Limiter::MovingSum::Start(std::size_t size, std::int64_t value) noexcept {
  size_ = size;
  at_ = 0;
  sum_ = static_cast<std::int64_t>(size) * value;
  latest_.fill(value);
}

std::int64_t Limiter::MovingSum::Next(std::int64_t value) noexcept {
  sum_ += value - latest_[at_];
  latest_[at_] = value;
  at_ = at_ + 1 == size_ ? 0 : at_ + 1;
  return sum_;
}

void Limiter::MovingMinimum::Start(std::size_t size) noexcept {
  size_ = (size + kGathered - 1) / kGathered;
  at_ = 0;
  inGathering_ = 0;
  gathering_ = earlier_ = 1.0F;
  latest_.fill(1.0F);
}

float Limiter::MovingMinimum::Next(float value) noexcept {
  gathering_ = std::min(gathering_, value);
  const float least = std::min(gathering_, earlier_);
  if (++inGathering_ == kGathered) {
    latest_[at_] = gathering_;
    at_ = at_ + 1 == size_ ? 0 : at_ + 1;
    earlier_ =
        *std::min_element(latest_.begin(), latest_.begin() + static_cast<std::ptrdiff_t>(size_));
    inGathering_ = 0;
    gathering_ = 1.0F;
  }
  return least;
}

// A sample's gain is the mean over the last frames of the attack. It has come down fully for all
// samples that an estimate is made of, when the attack began as the estimate was made.
std::size_t Limiter::LatencyFrames(double sampleRate) {
  return 2 * HalfAttack(sampleRate) - 1 + TruePeakEstimator::kPast - 1;
}

void Limiter::Start(double sampleRate) noexcept {
  const std::size_t half = HalfAttack(sampleRate);
  latency_ = LatencyFrames(sampleRate);
  release_ = std::llround(static_cast<double>(kReleaseUnit) *
                          (1.0 - std::exp(-1.0 / (kReleaseTime * sampleRate))));
  scale_ = 1.0 / (static_cast<double>(half * half) * static_cast<double>(kUnity));
  held_ = kUnity;
  atUnity_ = latency_;
  minimum_.Start(latency_ + 1);
  smooth_.Start(half, kUnity);
  smoother_.Start(half, static_cast<std::int64_t>(half) * kUnity);
  for (auto& line : lines_) line.fill(0.0F);
}

bool Limiter::MayExceed(std::size_t count) const noexcept {
  return std::ranges::any_of(lines_, [&](const auto& line) {
    return estimator_.MayExceed(kCeiling, &line[latency_], count);
  });
}

float Limiter::Smooth(float wanted) noexcept {
  const auto least = static_cast<std::int64_t>(static_cast<float>(kUnity) * minimum_.Next(wanted));
  const std::int64_t released = held_ + (kUnity - held_) * release_ / kReleaseUnit + 1;
  held_ = std::min(std::min(released, least), kUnity);
  atUnity_ = held_ == kUnity ? atUnity_ + 1 : 0;
  return static_cast<float>(static_cast<double>(smoother_.Next(smooth_.Next(held_))) * scale_);
}

void Limiter::Process(const Frame* frames, std::size_t count, float* left, float* right) noexcept {
  for (std::size_t f = 0; f < count; ++f) {
    lines_[0][latency_ + f] = static_cast<float>(frames[f].lanes[0]);
    lines_[1][latency_ + f] = static_cast<float>(frames[f].lanes[1]);
  }
  const bool mayExceed = MayExceed(count);
  if (!mayExceed && atUnity_ >= latency_) {
    std::copy_n(lines_[0].begin(), count, left);
    std::copy_n(lines_[1].begin(), count, right);
    minimum_.Skip(count);
  } else {
    std::array<float, kBlockFrames> peaks{};
    if (mayExceed) {
      for (const auto& line : lines_) estimator_.RaisePeaks(&line[latency_], count, peaks.data());
    }
    for (std::size_t f = 0; f < count; ++f) {
      const float gain = Smooth(kCeiling / std::max(peaks[f], kCeiling));
      left[f] = lines_[0][f] * gain;
      right[f] = lines_[1][f] * gain;
    }
  }
  for (auto& line : lines_) {
    std::copy_n(line.begin() + static_cast<std::ptrdiff_t>(count), latency_, line.begin());
  }
}

}  // namespace engine
