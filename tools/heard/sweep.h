// A sweep that is played through the engine, and what a recording of it tells.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace heard {

inline constexpr double kSampleRate = 48000.0;  // Hz

// One channel: from 10 Hz to 22 kHz, each octave as long as any other, 18 dB below full scale,
// faded at both ends, with silence after it for what rings on.
std::vector<float> MakeSweep();

// The gain in dB from `played` to `recorded` at each of `frequencies` (Hz). Silence around either
// and a delay between them change nothing.
std::vector<double> MeasureGains(std::span<const float> played, std::span<const float> recorded,
                                 std::span<const double> frequencies);

}  // namespace heard
