#pragma once

#include <array>
#include <cstddef>

#include "engine/frame.h"
#include "engine/section_pairs.h"
#include "engine/sound_design.h"

namespace engine {

// All sections of a design, one after the other, in double precision: what single precision adds to
// filters at 31 Hz can be heard. A plain value: a copy goes on from the same past.
class FilterCascade {
 public:
  explicit FilterCascade(PairRunner runPairs = BestPairRunner()) : runPairs_(runPairs) {}

  // Forgets the past.
  void Start(const SoundDesign& design) noexcept;
  // Goes on from the past with other filters, for the same rate.
  void Change(const SoundDesign& design) noexcept;

  void Process(Frame* frames, std::size_t count) noexcept;

 private:
  static_assert(kMaxSections % 2 == 0 && (dsp::kBandCount + kToneSections) % 2 == 0);

  void TakeFilters(const SoundDesign& design) noexcept;

  PairRunner runPairs_;
  std::size_t sectionCount_ = 0;
  std::size_t stride_ = 1;
  std::size_t phase_ = 0;  // of the next frame
  // Frames until sections that do nothing have let go of the past and need not run.
  std::size_t settling_ = 0;
  // The sections run without their gains, and this is the product.
  Frame gain_ = Both(1.0);
  std::array<SectionCoefficients, kMaxSections> coefficients_;
  std::array<bool, kMaxSections> neutral_{};
  // Product of the gains up to a section, itself included: what its state lacks.
  std::array<double, kMaxSections> gainsUpTo_;
  // Frames that share no delay have states of their own.
  std::array<std::array<SectionState, kMaxSections>, kMaxStride> states_;
};

}  // namespace engine
