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

// What is measured, in Hz: twelve to the octave over what the plot shows.
std::vector<double> PlotFrequencies();

// The gain in dB from `played` to `recorded` at each of `frequencies` (Hz). Silence around either
// and a delay between them change nothing.
std::vector<double> MeasureGains(std::span<const float> played, std::span<const float> recorded,
                                 std::span<const double> frequencies);

// Whether nothing was lost or put in on the way, as happens on a machine that has too much to do:
// what comes after it is as much earlier or later than what comes before.
bool IsWhole(std::span<const float> played, std::span<const float> recorded);

}  // namespace heard
