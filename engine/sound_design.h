#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "engine/curve_transfer.h"
#include "engine/section.h"
#include "engine/sound_settings.h"

namespace engine {

// Rates that sound is made for, Hz. For one beyond them the nearest counts.
inline constexpr double kLowestSampleRate = 8000.0;
inline constexpr double kHighestSampleRate = 768000.0;

// Each delay of a section is so many frames long at the highest rate.
inline constexpr std::size_t kMaxStride = 16;

// The bands' sections come first, a row of one section for each band and after it the next row; the
// bass and treble knobs' two are the last.
inline constexpr std::size_t kMaxRows = CurveTransfer::kSections;
inline constexpr std::size_t kToneSections = 2;
inline constexpr std::size_t kMaxSections = kMaxRows * dsp::kBandCount + kToneSections;

// Everything that the audio thread needs to make a sound at one rate: a plain value without
// pointers. What depends on the rate alone is the same in all designs for it.
struct SoundDesign {
  double sampleRate = 48000.0;  // Hz
  std::size_t rows = 1;
  std::size_t stride = 1;
  std::array<Section, kMaxSections> sections{};
  double width = 1.0;     // gain of the channels' difference
  double loudness = 0.0;  // 0 to 1, the contour's part that is applied

  bool operator==(const SoundDesign&) const = default;

  std::span<const Section> Bands() const {
    return std::span(sections).first(rows * dsp::kBandCount);
  }
  std::span<const Section> AllSections() const {
    return std::span(sections).first(rows * dsp::kBandCount + kToneSections);
  }
};

// For the control thread: takes some microseconds at 48 kHz and its multiples, less than a
// millisecond at other rates. `sampleRate` in Hz.
SoundDesign DesignSound(const SoundSettings& settings, double sampleRate);

}  // namespace engine
