#include "engine/section_pairs.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "engine/wide.h"

namespace engine {
namespace {

// Short enough for the processor to have several frames on the way at once, few enough states for
// its registers.
template <std::size_t kCount>
void RunSections(const SectionCoefficients* c, SectionState* states, const SpacedFrames& frames) {
  std::array<SectionState, kCount> s;
  std::copy_n(states, kCount, s.begin());
  for (std::size_t f = 0; f < frames.count; ++f) {
    Frame x = frames.first[f * frames.stride];
#pragma GCC unroll 8
    for (std::size_t i = 0; i < kCount; ++i) {
      const Frame y = x + s[i].s1;
      s[i].s1 = (c[i].b1 * x + s[i].s2) - c[i].a1 * y;
      s[i].s2 = c[i].b2 * x - c[i].a2 * y;
      x = y;
    }
    frames.first[f * frames.stride] = x;
  }
  std::copy_n(s.begin(), kCount, states);
}

}  // namespace

void RunPairsPlainly(std::size_t pairs, const SectionCoefficients* coefficients,
                     SectionState* states, const SpacedFrames& frames) {
  constexpr std::size_t kGroup = 6;
  const std::size_t sections = 2 * pairs;
  std::size_t i = 0;
  for (; i + kGroup <= sections; i += kGroup) {
    RunSections<kGroup>(coefficients + i, states + i, frames);
  }
  for (; i < sections; i += 2) RunSections<2>(coefficients + i, states + i, frames);
}

namespace {

using Pair __attribute__((vector_size(2 * sizeof(Frame)))) = double;
using Positions __attribute__((vector_size(2 * sizeof(Frame)))) = std::int64_t;

#define TONALYX_INLINE __attribute__((always_inline))

struct PairCoefficients {
  Pair b1, b2, a1, a2;
};

TONALYX_INLINE inline void Put(Pair& pair, Frame first, Frame second) {
  pair = Pair{first.lanes[0], first.lanes[1], second.lanes[0], second.lanes[1]};
}

TONALYX_INLINE inline void Put(PairCoefficients& c, const SectionCoefficients& first,
                               const SectionCoefficients& second) {
  Put(c.b1, first.b1, second.b1);
  Put(c.b2, first.b2, second.b2);
  Put(c.a1, first.a1, second.a1);
  Put(c.a2, first.a2, second.a2);
}

// Each section is one frame behind the one before, whose latest output it takes, so that none waits
// for another. At either end of the frames some sections have none, and keep their states.
template <std::size_t kPairs>
TONALYX_AVX2 void Run(const SectionCoefficients* coefficients, SectionState* states,
                      const SpacedFrames& frames) {
  constexpr std::size_t kLag = 2 * kPairs - 1;
  Frame* const first = frames.first;
  const std::size_t count = frames.count;
  const std::size_t stride = frames.stride;
  std::array<PairCoefficients, kPairs> c;
  std::array<Pair, kPairs> s1;
  std::array<Pair, kPairs> s2;
  // Of the pairs; what comes in stands before them.
  std::array<Pair, kPairs + 1> out{};
  for (std::size_t i = 0; i < kPairs; ++i) {
    Put(c[i], coefficients[2 * i], coefficients[2 * i + 1]);
    Put(s1[i], states[2 * i].s1, states[2 * i + 1].s1);
    Put(s2[i], states[2 * i].s2, states[2 * i + 1].s2);
  }
  const auto step = [&](Frame in, auto keep) TONALYX_INLINE {
    Put(out[0], Frame{}, in);
#pragma GCC unroll 8
    for (std::size_t k = 0; k < kPairs; ++k) {
      const std::size_t i = kPairs - 1 - k;
      const Pair x = __builtin_shufflevector(out[i], out[i + 1], 2, 3, 4, 5);
      const Pair y = x + s1[i];
      keep(i, (c[i].b1 * x + s2[i]) - c[i].a1 * y, c[i].b2 * x - c[i].a2 * y);
      out[i + 1] = y;
    }
    return MakeFrame(out[kPairs][2], out[kPairs][3]);
  };
  std::size_t n = 0;
  const auto keepAll = [&](std::size_t i, const Pair& next1, const Pair& next2) TONALYX_INLINE {
    s1[i] = next1;
    s2[i] = next2;
  };
  const auto keepSome = [&](std::size_t i, const Pair& next1, const Pair& next2) TONALYX_INLINE {
    const auto at = static_cast<std::int64_t>(n - 2 * i);
    const Positions position = {at, at, at - 1, at - 1};
    const Positions isFrame = (position >= 0) & (position < static_cast<std::int64_t>(count));
    s1[i] = isFrame ? next1 : s1[i];
    s2[i] = isFrame ? next2 : s2[i];
  };
  for (; n < kLag; ++n) step(n < count ? first[n * stride] : Frame{}, keepSome);
  for (; n < count; ++n) first[(n - kLag) * stride] = step(first[n * stride], keepAll);
  for (; n < count + kLag; ++n) first[(n - kLag) * stride] = step(Frame{}, keepSome);
  for (std::size_t i = 0; i < kPairs; ++i) {
    states[2 * i] = {MakeFrame(s1[i][0], s1[i][1]), MakeFrame(s2[i][0], s2[i][1])};
    states[2 * i + 1] = {MakeFrame(s1[i][2], s1[i][3]), MakeFrame(s2[i][2], s2[i][3])};
  }
}

template <std::size_t... kLess>
constexpr std::array<void (*)(const SectionCoefficients*, SectionState*, const SpacedFrames&),
                     kMaxPairs>
RunsOf(std::index_sequence<kLess...> /*sizes*/) {
  return {Run<kLess + 1>...};
}

void RunPairsSideBySide(std::size_t pairs, const SectionCoefficients* coefficients,
                        SectionState* states, const SpacedFrames& frames) {
  constexpr auto kRuns = RunsOf(std::make_index_sequence<kMaxPairs>());
  kRuns[pairs - 1](coefficients, states, frames);
}

}  // namespace

PairRunner BestPairRunner() noexcept {
  return HasAvx2() ? RunPairsSideBySide : RunPairsPlainly;
}

}  // namespace engine
