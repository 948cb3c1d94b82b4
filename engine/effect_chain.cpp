#include "engine/effect_chain.h"

namespace engine {
namespace {

// With middle and side M = (L + R) / 2 and S = (L - R) / 2, M + width S = L + (width - 1) (L - R)
// / 2. So written, equal channels stay what they are to the last bit.
Frame Widening(const SoundDesign& design) {
  return Both(0.5 * (design.width - 1.0));
}

}  // namespace

void EffectChain::Start(const SoundDesign& design) noexcept {
  filters_.Start(design);
  loudness_.Start(design.sampleRate, design.loudness);
  widening_ = Widening(design);
}

void EffectChain::Change(const SoundDesign& design) noexcept {
  filters_.Change(design);
  loudness_.Change(design.loudness);
  widening_ = Widening(design);
}

void EffectChain::Process(Frame* frames, std::size_t count) noexcept {
  filters_.Process(frames, count);
  // In registers: the compiler cannot know that no frame is one of the members.
  LoudnessContour loudness = loudness_;
  const Frame widening = widening_;
  for (std::size_t f = 0; f < count; ++f) {
    const Frame x = loudness.Next(frames[f]);
    frames[f] = x + widening * (x - Swapped(x));
  }
  loudness_ = loudness;
  loudness_.Advance(count);
}

}  // namespace engine
