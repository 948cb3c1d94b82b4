#include "engine/filter_cascade.h"

#include <algorithm>
#include <span>

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
      State& state = states_[phase][i];
      state = {state.s1 * scale, state.s2 * scale};
    }
  }
}

// Sample after sample through a few sections: short enough for the processor to have several
// samples on the way at once, few enough states for its registers.
template <std::size_t kCount>
void FilterCascade::RunSections(std::size_t first, Frame* frames, std::size_t count) noexcept {
  const Coefficients* const c = &coefficients_[first];
  for (std::size_t phase = 0; phase < stride_; ++phase) {
    State* const states = &states_[(phase_ + phase) % stride_][first];
    std::array<State, kCount> s;
    std::copy_n(states, kCount, s.begin());
    for (std::size_t f = phase; f < count; f += stride_) {
      Frame x = frames[f];
#pragma GCC unroll 8
      for (std::size_t i = 0; i < kCount; ++i) {
        const Frame y = x + s[i].s1;
        s[i].s1 = (c[i].b1 * x + s[i].s2) - c[i].a1 * y;
        s[i].s2 = c[i].b2 * x - c[i].a2 * y;
        x = y;
      }
      frames[f] = x;
    }
    std::copy_n(s.begin(), kCount, states);
  }
}

void FilterCascade::Process(Frame* frames, std::size_t count) noexcept {
  for (std::size_t first = 0; first < sectionCount_; first += kGroup) {
    const std::size_t size = std::min(kGroup, sectionCount_ - first);
    const auto group = std::span(neutral_).subspan(first, size);
    if (settling_ == 0 && std::ranges::find(group, false) == group.end()) {
      continue;
    }
    if (size == kGroup) {
      RunSections<kGroup>(first, frames, count);
    } else {
      RunSections<kRest>(first, frames, count);
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
