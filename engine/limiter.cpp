#include "engine/limiter.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "engine/sound_design.h"

namespace engine {
namespace {

// Half a dB under the limit: so much of a peak near half of the rate the estimate may miss.
constexpr float kCeiling = 0.8423F;
constexpr double kAttackTime = 0.001;  // s
constexpr double kReleaseTime = 0.15;  // s
constexpr int kReleaseBits = 20;

// The gain is smoothed by two moving sums of this many frames each.
std::size_t HalfAttack(double sampleRate) {
  return std::max<std::size_t>(
      1, static_cast<std::size_t>(std::lround(0.5 * kAttackTime * sampleRate)));
}

}  // namespace

void Limiter::MovingSum::Start(std::size_t size, std::int64_t value) noexcept {
  size_ = size;
  sum_ = static_cast<std::int64_t>(size) * value;
  values_.fill(value);
}

void Limiter::MovingSum::EndBlock(std::size_t count) noexcept {
  std::copy_n(values_.begin() + static_cast<std::ptrdiff_t>(count), size_, values_.begin());
}

void Limiter::MovingMinimum::Start(std::size_t size) noexcept {
  size_ = (size + kGathered - 1) / kGathered;
  at_ = 0;
  inGathering_ = 0;
  gathering_ = earlier_ = 1.0F;
  latest_.fill(1.0F);
}

void Limiter::MovingMinimum::Minimize(float* gains, std::size_t count) noexcept {
  for (std::size_t i = 0; i < count;) {
    const std::size_t end = std::min(count, i + kGathered - inGathering_);
    inGathering_ += end - i;
    float gathering = gathering_;
    for (; i < end; ++i) {
      gathering = std::min(gathering, gains[i]);
      gains[i] = std::min(gathering, earlier_);
    }
    gathering_ = gathering;
    if (inGathering_ == kGathered) EndGathering();
  }
}

void Limiter::MovingMinimum::EndGathering() noexcept {
  const float leaving = std::exchange(latest_[at_], gathering_);
  at_ = at_ + 1 == size_ ? 0 : at_ + 1;
  // Seldom does the least of all leave for a greater one.
  earlier_ = leaving > earlier_ || gathering_ <= earlier_
                 ? std::min(earlier_, gathering_)
                 : *std::min_element(latest_.begin(),
                                     latest_.begin() + static_cast<std::ptrdiff_t>(size_));
  inGathering_ = 0;
  gathering_ = 1.0F;
}

// A sample's gain is the mean over the last frames of the attack. It has come down fully for all
// samples that an estimate is made of, when the attack began as the estimate was made.
std::size_t Limiter::LatencyFrames(double sampleRate) {
  return 2 * HalfAttack(sampleRate) - 1 + TruePeakEstimator::kPast - 1;
}

void Limiter::Start(double sampleRate) noexcept {
  const std::size_t half = HalfAttack(sampleRate);
  latency_ = LatencyFrames(sampleRate);
  release_ =
      std::llround(std::exp2(kReleaseBits) * (1.0 - std::exp(-1.0 / (kReleaseTime * sampleRate))));
  scale_ = 1.0 / (static_cast<double>(half * half) * static_cast<double>(kUnity));
  lack_ = 0;
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

void Limiter::Smooth(float* gains, std::size_t count) noexcept {
  minimum_.Minimize(gains, count);
  std::int64_t lack = lack_;
  std::size_t atUnity = atUnity_;
  for (std::size_t f = 0; f < count; ++f) {
    const auto least = static_cast<std::int64_t>(static_cast<float>(kUnity) * gains[f]);
    lack = std::max(lack - 1 - (lack * release_ >> kReleaseBits), kUnity - least);
    atUnity = lack == 0 ? atUnity + 1 : 0;
    const std::int64_t sum = smoother_.Take(f, smooth_.Take(f, kUnity - lack));
    gains[f] = static_cast<float>(static_cast<double>(sum) * scale_);
  }
  lack_ = lack;
  atUnity_ = atUnity;
  smooth_.EndBlock(count);
  smoother_.EndBlock(count);
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
    for (float& peak : std::span(peaks).first(count)) peak = kCeiling / std::max(peak, kCeiling);
    Smooth(peaks.data(), count);
    for (std::size_t f = 0; f < count; ++f) {
      left[f] = lines_[0][f] * peaks[f];
      right[f] = lines_[1][f] * peaks[f];
    }
  }
  for (auto& line : lines_) {
    std::copy_n(line.begin() + static_cast<std::ptrdiff_t>(count), latency_, line.begin());
  }
}

}  // namespace engine
