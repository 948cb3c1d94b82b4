#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "dsp/eq_model.h"

namespace dsp {

// The filters run at this rate whatever the audio device does.
inline constexpr float kSampleRate = 48000.0F;

// A second-order section H(z) = (b0 + b1 z^-1 + b2 z^-2) / (1 + a1 z^-1 + a2 z^-2). A fresh record
// lets everything pass.
struct BiquadCoefficients {
  float a1 = 0.0F;
  float a2 = 0.0F;
  float b0 = 1.0F;
  float b1 = 0.0F;
  float b2 = 0.0F;

  bool operator==(const BiquadCoefficients&) const = default;
};

// Record k - 1 belongs to band k.
using CoefficientTable = std::array<BiquadCoefficients, kBandCount>;

// `type` is a FilterType's code; every other code designs nothing. `frequency` and `sampleRate` in
// Hz, `gain` a linear factor. Values that describe no filter give coefficients that are not finite.
std::optional<BiquadCoefficients> DesignBiquad(std::int32_t type, float frequency, float gain,
                                               float q, float sampleRate);

// Designs the record of one band, on or off; `band` must be a band number. A type code that names
// no filter leaves the record as it was.
void UpdateBandCoefficients(ConstParameterValues values, int band, CoefficientTable& table);
// The same for all bands.
void UpdateBandCoefficients(ConstParameterValues values, CoefficientTable& table);

}  // namespace dsp
