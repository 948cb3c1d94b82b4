#include "engine/section_pairs.h"

#include <algorithm>
#include <array>
#include <utility>

#include "engine/wide.h"

namespace engine {
namespace {

// One after the other, for one frame: short enough for the processor to have several frames on the
// way at once, few enough states for its registers.
template <std::size_t kCount, typename Lanes, typename Coefficients, typename States>
[[gnu::always_inline]] inline void Step(const Coefficients& c, States& s, Lanes& x) {
#pragma GCC unroll 8
  for (std::size_t i = 0; i < kCount; ++i) {
    const Lanes y = x + s[i].s1;
    s[i].s1 = (c[i].b1 * x + s[i].s2) - c[i].a1 * y;
    s[i].s2 = c[i].b2 * x - c[i].a2 * y;
    x = y;
  }
}

template <std::size_t kCount>
void RunSections(const SectionCoefficients* c, SectionState* states, const SpacedFrames& frames) {
  std::array<SectionState, kCount> s;
  std::copy_n(states, kCount, s.begin());
  for (std::size_t f = 0; f < frames.count; ++f) {
    Frame x = frames.first[f * frames.stride];
    Step<kCount>(c, s, x);
    frames.first[f * frames.stride] = x;
  }
  std::copy_n(s.begin(), kCount, states);
}

template <std::size_t kPairs>
void RunPlainly(const SectionCoefficients* c, SectionState* states, const SpacedFrames& frames) {
  constexpr std::size_t kMostAtOnce = 6;
  if constexpr (2 * kPairs <= kMostAtOnce) {
    RunSections<2 * kPairs>(c, states, frames);
  } else {
    RunSections<kPairs>(c, states, frames);
    RunSections<kPairs>(c + kPairs, states + kPairs, frames);
  }
}

using Pair __attribute__((vector_size(2 * sizeof(Frame)))) = double;

struct PairCoefficients {
  Pair b1, b2, a1, a2;
};

struct PairState {
  Pair s1, s2;
};

[[gnu::always_inline]] inline void Put(Pair& pair, Frame first, Frame second) {
  pair = __builtin_shufflevector(first.lanes, second.lanes, 0, 1, 2, 3);
}

[[gnu::always_inline]] inline Frame First(const Pair& pair) {
  return MakeFrame(pair[0], pair[1]);
}

[[gnu::always_inline]] inline Frame Second(const Pair& pair) {
  return MakeFrame(pair[2], pair[3]);
}

// The second half of the sections works on an earlier frame than the first, which the first left in
// its place so long ago that the second need not wait for it. At either end of the frames one half
// works alone.
template <std::size_t kPairs>
TONALYX_AVX2 void RunSideBySide(const SectionCoefficients* coefficients, SectionState* states,
                                const SpacedFrames& frames) {
  constexpr std::size_t kLag = 4;
  if (frames.count <= kLag) return RunPlainly<kPairs>(coefficients, states, frames);
  const std::size_t stride = frames.stride;
  RunSections<kPairs>(coefficients, states, {frames.first, kLag, stride});
  std::array<PairCoefficients, kPairs> c;
  std::array<PairState, kPairs> s;
  for (std::size_t i = 0; i < kPairs; ++i) {
    const SectionCoefficients& first = coefficients[i];
    const SectionCoefficients& second = coefficients[i + kPairs];
    Put(c[i].b1, first.b1, second.b1);
    Put(c[i].b2, first.b2, second.b2);
    Put(c[i].a1, first.a1, second.a1);
    Put(c[i].a2, first.a2, second.a2);
    Put(s[i].s1, states[i].s1, states[i + kPairs].s1);
    Put(s[i].s2, states[i].s2, states[i + kPairs].s2);
  }
  Frame* earlier = frames.first;
  for (std::size_t n = kLag; n < frames.count; ++n, earlier += stride) {
    Pair x;
    Put(x, earlier[kLag * stride], *earlier);
    Step<kPairs>(c, s, x);
    earlier[kLag * stride] = First(x);
    *earlier = Second(x);
  }
  for (std::size_t i = 0; i < kPairs; ++i) {
    states[i] = {First(s[i].s1), First(s[i].s2)};
    states[i + kPairs] = {Second(s[i].s1), Second(s[i].s2)};
  }
  RunSections<kPairs>(coefficients + kPairs, states + kPairs, {earlier, kLag, stride});
}

template <bool kWide, std::size_t... kLess>
constexpr auto RunsOf(std::index_sequence<kLess...> /*sizes*/) {
  if constexpr (kWide) {
    return std::array{RunSideBySide<kLess + 1>...};
  } else {
    return std::array{RunPlainly<kLess + 1>...};
  }
}

template <bool kWide>
void RunPairs(std::size_t pairs, const SectionCoefficients* coefficients, SectionState* states,
              const SpacedFrames& frames) {
  constexpr auto kRuns = RunsOf<kWide>(std::make_index_sequence<kMaxPairs>());
  kRuns[pairs - 1](coefficients, states, frames);
}

}  // namespace

void RunPairsPlainly(std::size_t pairs, const SectionCoefficients* coefficients,
                     SectionState* states, const SpacedFrames& frames) {
  RunPairs<false>(pairs, coefficients, states, frames);
}

PairRunner BestPairRunner() noexcept {
  return HasAvx2() ? RunPairs<true> : RunPairs<false>;
}

}  // namespace engine
