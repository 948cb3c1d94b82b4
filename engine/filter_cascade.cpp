#include "engine/filter_cascade.h"

#include <algorithm>

namespace engine {

void FilterCascade::TakeFilters(const SoundDesign& design) noexcept {
  const auto sections = design.AllSections();
  double gain = 1.0;
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const Section& section = sections[i];
    gain *= section.gain;
    coefficients_[i] = {Both(section.b1), Both(section.b2), Both(section.a1), Both(section.a2)};
    neutral_[i] = section == Section{};
    gainsUpTo_[i] = gain;
  }
  sectionCount_ = sections.size();
  stride_ = design.stride;
  settling_ = 2 * stride_;
  gain_ = Both(gain);
}

void FilterCascade::Start(const SoundDesign& design) noexcept {
  TakeFilters(design);
  states_ = {};
  phase_ = 0;
}

void FilterCascade::Change(const SoundDesign& design) noexcept {
  const auto before = gainsUpTo_;
  TakeFilters(design);
  for (std::size_t i = 0; i < sectionCount_; ++i) {
    const Frame scale = Both(before[i] / gainsUpTo_[i]);
    for (std::size_t phase = 0; phase < stride_; ++phase) {
      SectionState& state = states_[phase][i];
      state = {state.s1 * scale, state.s2 * scale};
    }
  }
}

void FilterCascade::Process(Frame* frames, std::size_t count) noexcept {
  constexpr std::size_t kGroup = 2 * kMaxPairs;
  for (std::size_t first = 0; first < sectionCount_; first += kGroup) {
    std::size_t end = std::min(first + kGroup, sectionCount_);
    while (end != first && settling_ == 0 && neutral_[end - 1] && neutral_[end - 2]) end -= 2;
    if (end == first) continue;
    for (std::size_t phase = 0; phase < std::min(stride_, count); ++phase) {
      runPairs_((end - first) / 2, &coefficients_[first],
                &states_[(phase_ + phase) % stride_][first],
                {frames + phase, (count - phase + stride_ - 1) / stride_, stride_});
    }
  }
  const Frame gain = gain_;
  for (std::size_t f = 0; f < count; ++f) {
    frames[f] = frames[f] * gain;
  }
  settling_ -= std::min(settling_, count);
  phase_ = (phase_ + count) % stride_;
}

}  // namespace engine
