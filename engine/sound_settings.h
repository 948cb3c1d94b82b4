#pragma once

#include <array>
#include <optional>

#include "dsp/eq_model.h"

namespace engine {

// A band that filters. Every field lies in the range that the panel can write.
struct BandSettings {
  dsp::FilterType type = dsp::FilterType::Peaking;
  float frequency = 1000.0F;  // Hz, 20 to 20000
  float gain = 1.0F;          // linear factor, -12 to +12 dB
  float q = 1.0F;             // 0.1 to 5.0

  bool operator==(const BandSettings&) const = default;
};

// What a parameter set asks of the sound: a plain value, free of anything absurd. Two sets that
// sound the same way compare equal, whatever else they hold.
struct SoundSettings {
  // Band k is element k - 1; none passes the sound through, as all do with the equalizer off.
  std::array<std::optional<BandSettings>, dsp::kBandCount> bands{};
  float bass = 0.5F;      // 0 to 1, 0.5 is neutral
  float treble = 0.5F;    // 0 to 1, 0.5 is neutral
  float widener = 0.0F;   // 0 to 1, 0 is neutral or switched off
  float loudness = 0.0F;  // 0 to 1, 0 is neutral or switched off

  bool operator==(const SoundSettings&) const = default;
};

// Takes any parameters. What lies beyond a range stops at its end; a band with a NaN or with a type
// that names no filter passes the sound through; an amount that is NaN is neutral.
SoundSettings DecodeSettings(dsp::ConstParameterValues values);

}  // namespace engine
