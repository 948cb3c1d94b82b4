#include "engine/sound_settings.h"

#include <algorithm>
#include <cmath>

namespace engine {
namespace {

constexpr float kLowestFrequency = 20.0F;  // Hz
constexpr float kHighestFrequency = 20000.0F;
constexpr float kLowestGain = 0.2511886F;  // -12 dB
constexpr float kHighestGain = 3.981072F;  // +12 dB
constexpr float kLowestQ = 0.1F;
constexpr float kHighestQ = 5.0F;

std::optional<BandSettings> DecodeBand(const dsp::EqBand& band) {
  const auto type = dsp::FilterTypeFromCode(dsp::TypeCode(band));
  if (!dsp::IsOn(band.enabled) || !type || std::isnan(band.frequency) || std::isnan(band.gain) ||
      std::isnan(band.q)) {
    return std::nullopt;
  }
  return BandSettings{.type = *type,
                      .frequency = std::clamp(band.frequency, kLowestFrequency, kHighestFrequency),
                      .gain = std::clamp(band.gain, kLowestGain, kHighestGain),
                      .q = std::clamp(band.q, kLowestQ, kHighestQ)};
}

float DecodeAmount(float amount, float neutral) {
  return std::isnan(amount) ? neutral : std::clamp(amount, 0.0F, 1.0F);
}

}  // namespace

SoundSettings DecodeSettings(dsp::ConstParameterValues values) {
  const auto at = [&](int number) { return values[dsp::ParameterIndex(number)]; };
  SoundSettings settings;
  if (dsp::IsOn(at(dsp::kEqualizerEnable))) {
    for (std::size_t k = 0; k < settings.bands.size(); ++k) {
      settings.bands[k] = DecodeBand(dsp::GetBand(values, static_cast<int>(k) + 1));
    }
  }
  settings.bass = DecodeAmount(at(dsp::kBassAmount), 0.5F);
  settings.treble = DecodeAmount(at(dsp::kTrebleAmount), 0.5F);
  if (dsp::IsOn(at(dsp::kWidenerSwitch))) {
    settings.widener = DecodeAmount(at(dsp::kWidenerAmount), 0.0F);
  }
  if (dsp::IsOn(at(dsp::kLoudnessSwitch))) {
    settings.loudness = DecodeAmount(at(dsp::kLoudnessAmount), 0.0F);
  }
  return settings;
}

}  // namespace engine
