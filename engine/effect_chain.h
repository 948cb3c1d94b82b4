#pragma once

#include <cstddef>

#include "engine/filter_cascade.h"
#include "engine/frame.h"
#include "engine/loudness_contour.h"
#include "engine/sound_design.h"

namespace engine {

// What a design does to the sound, all but the limiter. A plain value: a copy goes on from the same
// past, which is how one design fades into the next.
class EffectChain {
 public:
  // Forgets the past.
  void Start(const SoundDesign& design) noexcept;
  // Goes on from the past with another design for the same rate.
  void Change(const SoundDesign& design) noexcept;

  // `count` must not pass the end of a block.
  void Process(Frame* frames, std::size_t count) noexcept;

 private:
  FilterCascade filters_;
  LoudnessContour loudness_;
  Frame widening_;  // what is added of the channels' difference
};

}  // namespace engine
