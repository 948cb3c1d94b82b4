#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

// The equalizer and the effect knobs as views onto the engine's parameter set. Nothing here checks
// the ranges of stored values: they are shown and used as they are.
namespace dsp {

inline constexpr std::size_t kParameterCount = 1114;

// Element i holds parameter i + 1.
using ParameterValues = std::span<float, kParameterCount>;
using ConstParameterValues = std::span<const float, kParameterCount>;

// Numbers of the parameters that the advanced dialog edits.
inline constexpr int kWidenerSwitch = 5;
inline constexpr int kWidenerAmount = 6;
inline constexpr int kEqualizerEnable = 117;
inline constexpr int kFirstBandParameter = 118;
inline constexpr int kFirstMirrorParameter = 168;
inline constexpr int kLoudnessSwitch = 221;
inline constexpr int kLoudnessAmount = 223;
inline constexpr int kBassAmount = 232;
inline constexpr int kTrebleAmount = 250;

constexpr std::size_t ParameterIndex(int parameterNumber) {
  return static_cast<std::size_t>(parameterNumber - 1);
}

// Switches are floats too: on when greater than 0 (a NaN is off), written as exactly 1.0 or 0.0.
constexpr bool IsOn(float parameter) {
  return parameter > 0.0F;
}
constexpr float SwitchValue(bool on) {
  return on ? 1.0F : 0.0F;
}

// What a parameter set holds before a stored one is read into it.
std::array<float, kParameterCount> InitialParameters();

inline constexpr int kBandCount = 10;
inline constexpr int kFieldsPerBand = 5;

// One equalizer band, fields in the order of their parameters.
struct EqBand {
  float enabled = 1.0F;
  float type = 1.0F;       // code of a FilterType
  float frequency = 0.0F;  // Hz
  float gain = 1.0F;       // linear factor
  float q = 1.0F;
};

// Bands count from 1. Messages may carry any number, so ask before using one.
constexpr bool IsBandNumber(int band) {
  return band >= 1 && band <= kBandCount;
}

// The edited set's bands; `band` must be a band number.
EqBand GetBand(ConstParameterValues values, int band);
void SetBand(ParameterValues values, int band, const EqBand& fields);

// The engine reads a second copy of all bands, which must equal the edited set in every write to
// the store.
void CopyBandsToMirror(ParameterValues values);

enum class FilterType : std::int32_t {
  Peaking = 1,
  LowPass = 2,
  HighPass = 3,
  LowShelving = 4,
  HighShelving = 5,
};

// The code that a band's `type` holds, which need not be that of a FilterType.
std::int32_t TypeCode(const EqBand& band);

// None for codes that name no filter.
std::optional<FilterType> FilterTypeFromCode(std::int32_t code);

// Makes `band` a filter of `type`, with the gain and q that a choice of the type brings along.
void ChangeFilterType(EqBand& band, FilterType type);

struct SliderEnabling {
  bool gain;
  bool bandwidth;

  bool operator==(const SliderEnabling&) const = default;
};

// Which sliders accept input for a band of `type`. Where a stored code names no filter, both
// sliders stay as they are.
SliderEnabling SlidersFor(FilterType type);

enum class Knob { Bass, Treble, Widener, Loudness };

// Knob values are 0 to 100.
std::int32_t GetKnob(ConstParameterValues values, Knob knob);
// Widener and Loudness also turn their effect's switch on, whatever the value.
void SetKnob(ParameterValues values, Knob knob, std::int32_t value);

}  // namespace dsp
