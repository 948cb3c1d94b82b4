#include "engine/sound_processor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "engine/effect_chain.h"
#include "engine/float_mode.h"
#include "engine/limiter.h"

namespace engine {
namespace {

constexpr double kFadeTime = 0.02;  // s

// 60 dB over full scale. Nothing that is meant to be heard comes near, and whatever passes can be
// computed with.
constexpr float kHighestInput = 1000.0F;

// What is no number becomes 0, what lies beyond the highest stops there.
void Limit(const float* samples, std::size_t count, float* limited) {
  for (std::size_t i = 0; i < count; ++i) {
    const float x = samples[i];
    const float below = x < kHighestInput ? x : kHighestInput;
    const float between = below > -kHighestInput ? below : -kHighestInput;
    limited[i] = std::isnan(x) ? 0.0F : between;
  }
}

}  // namespace

std::size_t LatencyFrames(double sampleRate) {
  return Limiter::LatencyFrames(std::clamp(sampleRate, kLowestSampleRate, kHighestSampleRate));
}

struct SoundProcessor::State {
  using Block = std::array<Frame, kBlockFrames>;

  State() { Start(); }

  void Start() noexcept {
    current.Start(design);
    limiter.Start(design.sampleRate);
    fadeFrames = static_cast<std::size_t>(std::lround(kFadeTime * design.sampleRate));
    faded = fadeFrames;
    framesInBlock = 0;
  }

  bool Fading() const { return faded < fadeFrames; }

  void Take(const SoundDesign& next) noexcept {
    if (next == design) {
      return;
    }
    const bool sameRate = next.sampleRate == design.sampleRate;
    design = next;
    if (!sameRate) {
      Start();
      return;
    }
    former = current;
    current.Change(design);
    faded = 0;
  }

  void Run(Frame* frames, std::size_t count) noexcept {
    if (!Fading()) {
      current.Process(frames, count);
      return;
    }
    Block leaving;
    std::copy_n(frames, count, leaving.begin());
    former.Process(leaving.data(), count);
    current.Process(frames, count);
    for (std::size_t f = 0; f < count; ++f) {
      const double way =
          std::min(1.0, static_cast<double>(++faded) / static_cast<double>(fadeFrames));
      const double weight = 0.5 + 0.5 * std::cos(std::numbers::pi * way);
      frames[f] = frames[f] + Both(weight) * (leaving[f] - frames[f]);
    }
  }

  SoundDesign design;
  EffectChain current;
  EffectChain former;  // while fading
  std::size_t fadeFrames = 0;
  std::size_t faded = 0;
  std::size_t framesInBlock = 0;
  Limiter limiter;
};

SoundProcessor::SoundProcessor(DesignExchange& exchange)
    : exchange_(exchange), state_(std::make_unique<State>()) {}

SoundProcessor::~SoundProcessor() = default;

void SoundProcessor::Process(const float* inLeft, const float* inRight, float* outLeft,
                             float* outRight, std::size_t frames) noexcept {
  const DenormalsAreZero mode;
  State& state = *state_;
  for (std::size_t done = 0; done < frames;) {
    if (!state.Fading()) {
      if (const SoundDesign* next = exchange_.Take()) state.Take(*next);
    }
    const std::size_t count = std::min(frames - done, kBlockFrames - state.framesInBlock);
    std::array<float, kBlockFrames> left;
    std::array<float, kBlockFrames> right;
    Limit(inLeft + done, count, left.data());
    Limit(inRight + done, count, right.data());
    State::Block block;
    for (std::size_t f = 0; f < count; ++f) {
      block[f] = MakeFrame(left[f], right[f]);
    }
    state.Run(block.data(), count);
    state.limiter.Process(block.data(), count, outLeft + done, outRight + done);
    state.framesInBlock = (state.framesInBlock + count) % kBlockFrames;
    done += count;
  }
}

void SoundProcessor::Reset() noexcept {
  state_->Start();
}

}  // namespace engine
