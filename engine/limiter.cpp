#include "engine/limiter.h"

#include <algorithm>
#include <cmath>

#include "engine/sound_design.h"

namespace engine {
namespace {

// A third of a dB under the limit: so much of a peak can hide between four points for each sample.
constexpr float kCeiling = 0.8577F;
constexpr double kAttackTime = 0.00125;  // s
constexpr double kReleaseTime = 0.15;    // s
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
  size_ = static_cast<std::uint32_t>(size);
  now_ = first_ = end_ = 0;
}

std::int64_t Limiter::MovingMinimum::Next(std::int64_t value) noexcept {
  constexpr std::uint32_t kMask = kMaxLatency - 1;
  while (end_ != first_ && entries_[(end_ - 1) & kMask].value >= value) {
    --end_;
  }
  entries_[end_++ & kMask] = {value, now_};
  if (now_ - entries_[first_ & kMask].time >= size_) {
    ++first_;
  }
  ++now_;
  return entries_[first_ & kMask].value;
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

bool Limiter::MayPeak(std::size_t count) const noexcept {
  float highest = 0.0F;
  for (const auto& line : lines_) {
    const float* const end = &line[latency_ + count];
    for (const float* x = &line[latency_ - TruePeakEstimator::kPast]; x != end; ++x) {
      highest = std::max(highest, std::abs(*x));
    }
  }
  return highest * estimator_.HighestGain() > kCeiling;
}

float Limiter::NextGain(float peak) noexcept {
  const std::int64_t wanted =
      peak > kCeiling ? static_cast<std::int64_t>(static_cast<double>(kUnity) * (kCeiling / peak))
                      : kUnity;
  const std::int64_t least = minimum_.Next(wanted);
  const std::int64_t released = held_ + (kUnity - held_) * release_ / kReleaseUnit + 1;
  held_ = std::min({released, least, kUnity});
  atUnity_ = held_ == kUnity ? atUnity_ + 1 : 0;
  return static_cast<float>(static_cast<double>(smoother_.Next(smooth_.Next(held_))) * scale_);
}

void Limiter::Process(const Frame* frames, std::size_t count, float* left, float* right) noexcept {
  for (std::size_t f = 0; f < count; ++f) {
    lines_[0][latency_ + f] = static_cast<float>(frames[f].lanes[0]);
    lines_[1][latency_ + f] = static_cast<float>(frames[f].lanes[1]);
  }
  const bool mayPeak = MayPeak(count);
  if (!mayPeak && atUnity_ >= latency_) {
    std::copy_n(lines_[0].begin(), count, left);
    std::copy_n(lines_[1].begin(), count, right);
  } else {
    std::array<float, kBlockFrames> peaks{};
    if (mayPeak) {
      for (const auto& line : lines_) estimator_.RaisePeaks(&line[latency_], count, peaks.data());
    }
    for (std::size_t f = 0; f < count; ++f) {
      const float gain = NextGain(peaks[f]);
      left[f] = lines_[0][f] * gain;
      right[f] = lines_[1][f] * gain;
    }
  }
  for (auto& line : lines_) {
    std::copy_n(line.begin() + static_cast<std::ptrdiff_t>(count), latency_, line.begin());
  }
}

}  // namespace engine
