#include "tools/heard/sweep.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace heard {
namespace {

constexpr double kFirst = 10.0;  // Hz
constexpr double kLast = 22000.0;
constexpr double kSeconds = 2.0;
constexpr double kFadeSeconds = 0.05;
constexpr double kSilentSeconds = 0.3;
constexpr double kAmplitude = 0.125;

// What the samples hold of one frequency.
std::complex<double> Component(std::span<const float> samples, double frequency) {
  const std::complex<double> turn =
      std::polar(1.0, -2.0 * std::numbers::pi * frequency / kSampleRate);
  std::complex<double> sum;
  // From the last sample to the first: one product for each, no table of angles.
  for (std::size_t i = samples.size(); i-- > 0;) sum = sum * turn + double{samples[i]};
  return sum;
}

// How far the recording is behind turns from one frequency to another by an angle: that of a hertz.
std::complex<double> TurnOfAHertz(std::span<const float> played, std::span<const float> recorded,
                                  double frequency) {
  const auto transfer = [&](double at) { return Component(recorded, at) / Component(played, at); };
  return transfer(frequency + 1.0) / transfer(frequency);
}

}  // namespace

// Farina, "Simultaneous measurement of impulse response and distortion with a swept-sine
// technique", 2000.
std::vector<float> MakeSweep() {
  const double octaves = std::log(kLast / kFirst);
  const auto length = static_cast<std::size_t>(kSeconds * kSampleRate);
  std::vector<float> sweep(length + static_cast<std::size_t>(kSilentSeconds * kSampleRate));
  for (std::size_t i = 0; i < length; ++i) {
    const double time = static_cast<double>(i) / kSampleRate;
    const double phase = 2.0 * std::numbers::pi * kFirst * kSeconds / octaves *
                         (std::exp(time / kSeconds * octaves) - 1.0);
    const double fade = std::clamp(std::min(time, kSeconds - time) / kFadeSeconds, 0.0, 1.0);
    sweep[i] = static_cast<float>(kAmplitude * fade * std::sin(phase));
  }
  return sweep;
}

std::vector<double> PlotFrequencies() {
  std::vector<double> frequencies;
  constexpr int kSteps = 120;
  frequencies.reserve(kSteps);
  for (int i = 0; i < kSteps; ++i) frequencies.push_back(20.0 * std::exp2(i / 12.0));
  return frequencies;
}

std::vector<double> MeasureGains(std::span<const float> played, std::span<const float> recorded,
                                 std::span<const double> frequencies) {
  std::vector<double> gains;
  for (const double frequency : frequencies) {
    gains.push_back(
        20.0 * std::log10(std::abs(Component(recorded, frequency) / Component(played, frequency))));
  }
  return gains;
}

bool IsWhole(std::span<const float> played, std::span<const float> recorded) {
  const std::complex<double> reference = TurnOfAHertz(played, recorded, 1000.0);
  for (const double frequency : PlotFrequencies()) {
    const double angle = std::arg(TurnOfAHertz(played, recorded, frequency) / reference);
    // A filter of quality Q itself delays by Q / (pi f), a cycle of the sound is some milliseconds.
    const double tolerance = 0.001 + 0.64 / frequency;
    // What is not a number is not whole either.
    if (!(std::abs(angle) < 2.0 * std::numbers::pi * tolerance)) return false;
  }
  return true;
}

}  // namespace heard
