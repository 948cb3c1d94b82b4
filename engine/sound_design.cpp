#include "engine/sound_design.h"

#include <algorithm>
#include <cmath>

#include "dsp/biquad.h"

namespace engine {
namespace {

using dsp::FilterType;

// The knobs' shelves.
constexpr float kBassCorner = 120.0F;  // Hz
constexpr float kTrebleCorner = 6000.0F;
constexpr float kToneRange = 12.0F;  // dB at either end of a knob
constexpr float kToneQ = 0.70710678F;
constexpr double kHighestWidth = 2.0;

Section FromCoefficients(const dsp::BiquadCoefficients& c) {
  const double gain = c.b0;
  return {.gain = gain, .b1 = c.b1 / gain, .b2 = c.b2 / gain, .a1 = c.a1, .a2 = c.a2};
}

dsp::BiquadCoefficients DesignBand(const BandSettings& band, double sampleRate) {
  return dsp::DesignBiquad(static_cast<std::int32_t>(band.type), band.frequency, band.gain, band.q,
                           static_cast<float>(sampleRate))
      .value_or(dsp::BiquadCoefficients{});
}

Section DesignTone(FilterType type, float corner, float amount, double sampleRate) {
  const float gain =
      amount == 0.5F ? 1.0F : std::pow(10.0F, kToneRange * (2.0F * amount - 1.0F) / 20.0F);
  return FromCoefficients(
      DesignBand({.type = type,
                  .frequency = std::min(corner, 0.4F * static_cast<float>(sampleRate)),
                  .gain = gain,
                  .q = kToneQ},
                 sampleRate));
}

// How often a rate that the panel's curve can be followed at fits into `sampleRate`. Filters for
// that rate with so much longer delays have the same curve at `sampleRate`; above half of the lower
// rate, where nobody hears, the curve comes back mirrored.
std::size_t StrideFor(double sampleRate) {
  constexpr double kTolerance = 1.0 + 1e-6;
  const double times = std::ceil(sampleRate / (dsp::kSampleRate * kTolerance));
  return times >= 1.0 && sampleRate / times * kTolerance >= 44100.0
             ? static_cast<std::size_t>(times)
             : 1;
}

void DesignBands(const SoundSettings& settings, double filterRate, SoundDesign& design) {
  const bool lower = filterRate < dsp::kSampleRate * 0.9999;
  const bool higher = filterRate > dsp::kSampleRate * 1.0001;
  const CurveTransfer* transfer = nullptr;
  std::optional<CurveTransfer> forRate;
  if (lower) {
    transfer = &forRate.emplace(filterRate);
  }
  design.rows = lower ? CurveTransfer::kSections : 1;
  for (std::size_t k = 0; k < settings.bands.size(); ++k) {
    if (!settings.bands[k]) {
      continue;
    }
    const auto panel = DesignBand(*settings.bands[k], higher ? filterRate : dsp::kSampleRate);
    if (transfer == nullptr) {
      design.sections[k] = FromCoefficients(panel);
      continue;
    }
    const auto sections = (*transfer)(panel);
    for (std::size_t row = 0; row < sections.size(); ++row) {
      design.sections[row * dsp::kBandCount + k] = sections[row];
    }
  }
}

}  // namespace

SoundDesign DesignSound(const SoundSettings& settings, double sampleRate) {
  SoundDesign design;
  design.sampleRate = std::clamp(sampleRate, kLowestSampleRate, kHighestSampleRate);
  design.stride = StrideFor(design.sampleRate);
  const double filterRate = design.sampleRate / static_cast<double>(design.stride);
  DesignBands(settings, filterRate, design);
  Section* tone = &design.sections[design.rows * dsp::kBandCount];
  tone[0] = DesignTone(FilterType::LowShelving, kBassCorner, settings.bass, filterRate);
  tone[1] = DesignTone(FilterType::HighShelving, kTrebleCorner, settings.treble, filterRate);
  design.width = 1.0 + (kHighestWidth - 1.0) * settings.widener;
  design.loudness = settings.loudness;
  return design;
}

}  // namespace engine
