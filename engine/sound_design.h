#pragma once

#include <array>
#include <cstddef>

#include "engine/sound_settings.h"

namespace engine {

// Rates that sound is made for, Hz. A rate beyond them is designed for as the nearest of them.
inline constexpr double kLowestSampleRate = 8000.0;
inline constexpr double kHighestSampleRate = 768000.0;

// A second-order section H(z) = (b0 + b1 z^-1 + b2 z^-2) / (1 + a1 z^-1 + a2 z^-2). A fresh one
// lets everything pass.
struct Section {
  double b0 = 1.0;
  double b1 = 0.0;
  double b2 = 0.0;
  double a1 = 0.0;
  double a2 = 0.0;

  bool operator==(const Section&) const = default;
};

// Sections that one band may need: the panel's curve is that of a filter at 48 kHz, and at other
// rates takes two sections to follow.
inline constexpr std::size_t kSectionsPerBand = 2;
inline constexpr std::size_t kBandSections = dsp::kBandCount * kSectionsPerBand;

// Everything the audio thread needs to make a sound at one rate. A plain value without pointers,
// for copying between threads.
struct SoundDesign {
  double sampleRate = 48000.0;  // Hz

  // The first `bandSections` of `bands` are the cascade of all bands, each delay in them being
  // `bandStride` frames long. The number depends on the rate alone.
  std::size_t bandSections = dsp::kBandCount;
  std::size_t bandStride = 1;
  std::array<Section, kBandSections> bands{};

  Section bass;
  Section treble;
  double sideGain = 1.0;  // of half the difference of the channels
  double loudness = 0.0;  // 0 to 1, how much of the contour is applied

  bool operator==(const SoundDesign&) const = default;
};

// For the control thread: takes some microseconds and does not allocate. `sampleRate` in Hz.
SoundDesign DesignSound(const SoundSettings& settings, double sampleRate);

// The magnitude of the design's bands at `frequency` Hz, a linear factor.
double BandMagnitude(const SoundDesign& design, double frequency);

}  // namespace engine
