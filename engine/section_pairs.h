#pragma once

#include <cstddef>

#include "engine/frame.h"

namespace engine {

// Of a section, the same for both channels.
struct SectionCoefficients {
  Frame b1, b2, a1, a2;
};

// In the transposed direct form II.
struct SectionState {
  Frame s1, s2;
};

// Frames that follow each other in a filter's delays, though not in memory.
struct SpacedFrames {
  Frame* first;
  std::size_t count;
  std::size_t stride;
};

inline constexpr std::size_t kMaxPairs = 6;

// Runs twice so many sections as pairs, 1 to kMaxPairs, one after the other. The two of a pair are
// half of the sections apart: that is how they fit into one register. Audio thread.
using PairRunner = void (*)(std::size_t pairs, const SectionCoefficients* coefficients,
                            SectionState* states, const SpacedFrames& frames);

// For every processor.
void RunPairsPlainly(std::size_t pairs, const SectionCoefficients* coefficients,
                     SectionState* states, const SpacedFrames& frames);

// The fastest on this processor. All give the same result to the last bit.
PairRunner BestPairRunner() noexcept;

}  // namespace engine
