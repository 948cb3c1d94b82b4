// Plays signals through a processor, and measures what comes out with means of its own.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <random>
#include <vector>

#include "dsp/biquad.h"
#include "engine/sound_design.h"
#include "engine/sound_processor.h"

namespace engine {

struct Stereo {
  std::vector<float> left;
  std::vector<float> right;
};

inline Stereo Signal(std::size_t frames, const std::function<double(std::size_t)>& left,
                     const std::function<double(std::size_t)>& right) {
  Stereo signal{std::vector<float>(frames), std::vector<float>(frames)};
  for (std::size_t i = 0; i < frames; ++i) {
    signal.left[i] = static_cast<float>(left(i));
    signal.right[i] = static_cast<float>(right(i));
  }
  return signal;
}

inline Stereo Signal(std::size_t frames, const std::function<double(std::size_t)>& both) {
  Stereo signal = Signal(frames, both, [](std::size_t) { return 0.0; });
  signal.right = signal.left;
  return signal;
}

inline std::function<double(std::size_t)> Sine(double frequency, double amplitude, double rate) {
  return [=](std::size_t i) {
    return amplitude * std::sin(2.0 * std::numbers::pi * frequency / rate * static_cast<double>(i));
  };
}

inline std::function<double(std::size_t)> Noise(double amplitude, unsigned seed = 1) {
  return [amplitude, random = std::mt19937(seed)](std::size_t) mutable {
    return std::uniform_real_distribution<double>(-amplitude, amplitude)(random);
  };
}

inline BandSettings RandomBand(std::mt19937& random) {
  const auto between = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  return {.type = static_cast<dsp::FilterType>(1 + random() % 5),
          .frequency = static_cast<float>(20.0 * std::pow(1000.0, between(0.0, 1.0))),
          .gain = static_cast<float>(std::pow(10.0, between(-0.6, 0.6))),
          .q = static_cast<float>(between(0.1, 5.0))};
}

class Player {
 public:
  explicit Player(double rate, const SoundSettings& settings = {}) : rate_(rate) {
    Set(settings);
    Play(Signal(1, [](std::size_t) { return 0.0; }));
    processor_.Reset();
  }

  void Set(const SoundSettings& settings) { exchange_.Publish(DesignSound(settings, rate_)); }

  // In place and in uneven portions.
  Stereo Play(Stereo sound) {
    constexpr std::array<std::size_t, 6> kPortions = {1, 32, 64, 1000, 8192, 77};
    for (std::size_t at = 0, turn = 0; at < sound.left.size(); ++turn) {
      const std::size_t count =
          std::min(kPortions[turn % kPortions.size()], sound.left.size() - at);
      float* const left = &sound.left[at];
      float* const right = &sound.right[at];
      processor_.Process(left, right, left, right, count);
      at += count;
    }
    return sound;
  }

 private:
  double rate_;
  DesignExchange exchange_;
  SoundProcessor processor_{exchange_};
};

// The part of `frequency` in a channel, from frame `from` on: a sine's amplitude is told.
inline double Amplitude(const std::vector<float>& channel, double frequency, double rate,
                        std::size_t from = 0) {
  std::complex<double> sum = 0.0;
  double weights = 0.0;
  const double size = static_cast<double>(channel.size() - from);
  for (std::size_t i = from; i < channel.size(); ++i) {
    const double at = static_cast<double>(i - from);
    const double weight = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * at / size);
    sum += weight * channel[i] * std::polar(1.0, -2.0 * std::numbers::pi * frequency / rate * at);
    weights += weight;
  }
  return 2.0 * std::abs(sum) / weights;
}

inline double Decibels(double factor) {
  return 20.0 * std::log10(factor);
}

// What the panel draws, in double precision: its own picture of filters near 20 Hz is made in
// single precision and off by some tenths of a dB.
inline double PanelDecibels(dsp::ConstParameterValues values, double frequency) {
  dsp::CoefficientTable table;
  dsp::UpdateBandCoefficients(values, table);
  const auto delay = std::polar(1.0, -2.0 * std::numbers::pi * frequency / 48000.0);
  const auto polynomial = [&](double c0, double c1, double c2) {
    return std::abs(c0 + delay * (c1 + delay * c2));
  };
  double magnitude = 1.0;
  for (std::size_t k = 0; k < table.size(); ++k) {
    if (dsp::IsOn(dsp::GetBand(values, static_cast<int>(k) + 1).enabled)) {
      magnitude *= polynomial(table[k].b0, table[k].b1, table[k].b2) /
                   polynomial(1.0, table[k].a1, table[k].a2);
    }
  }
  return Decibels(magnitude);
}

// The highest point of the curve through the samples, sixteen of them for each and by far more taps
// than a true-peak meter has.
inline double TruePeak(const std::vector<float>& samples) {
  constexpr int kPoints = 16;
  constexpr int kHalf = 32;
  double highest = 0.0;
  for (int point = 0; point < kPoints; ++point) {
    std::array<double, 2 * kHalf> taps{};
    for (int k = 0; k < 2 * kHalf; ++k) {
      const double x = std::numbers::pi * (k - kHalf + static_cast<double>(point) / kPoints);
      const double window = 0.5 + 0.5 * std::cos(x / kHalf);
      taps[static_cast<std::size_t>(k)] = x == 0.0 ? 1.0 : window * std::sin(x) / x;
    }
    for (std::size_t i = taps.size(); i < samples.size(); ++i) {
      double sum = 0.0;
      for (std::size_t k = 0; k < taps.size(); ++k) sum += taps[k] * samples[i - k];
      highest = std::max(highest, std::abs(sum));
    }
  }
  return highest;
}

}  // namespace engine
