#include "dsp/eq_model.h"

#include <algorithm>

#include "dsp/conversions.h"
#include "dsp/truncation.h"

namespace dsp {
namespace {

constexpr std::array<float, kBandCount> kInitialFrequencies = {
    31.0F, 63.0F, 125.0F, 250.0F, 500.0F, 1000.0F, 2000.0F, 4000.0F, 8000.0F, 16000.0F};

std::size_t BandIndex(int band) {
  return ParameterIndex(kFirstBandParameter + kFieldsPerBand * (band - 1));
}

int AmountParameter(Knob knob) {
  switch (knob) {
    case Knob::Bass:
      return kBassAmount;
    case Knob::Treble:
      return kTrebleAmount;
    case Knob::Widener:
      return kWidenerAmount;
    case Knob::Loudness:
      break;
  }
  return kLoudnessAmount;
}

}  // namespace

std::array<float, kParameterCount> InitialParameters() {
  std::array<float, kParameterCount> values{};
  values[ParameterIndex(kEqualizerEnable)] = SwitchValue(true);
  values[ParameterIndex(kBassAmount)] = 0.5F;
  values[ParameterIndex(kTrebleAmount)] = 0.5F;
  for (int band = 1; band <= kBandCount; ++band) {
    SetBand(values, band, {.frequency = kInitialFrequencies[static_cast<std::size_t>(band - 1)]});
  }
  CopyBandsToMirror(values);
  return values;
}

EqBand GetBand(ConstParameterValues values, int band) {
  const auto fields = values.subspan(BandIndex(band), kFieldsPerBand);
  return {fields[0], fields[1], fields[2], fields[3], fields[4]};
}

void SetBand(ParameterValues values, int band, const EqBand& fields) {
  const std::array<float, kFieldsPerBand> inOrder = {fields.enabled, fields.type, fields.frequency,
                                                     fields.gain, fields.q};
  std::ranges::copy(inOrder, values.subspan(BandIndex(band)).begin());
}

void CopyBandsToMirror(ParameterValues values) {
  const auto edited =
      values.subspan(ParameterIndex(kFirstBandParameter), std::size_t{kBandCount} * kFieldsPerBand);
  std::ranges::copy(edited, values.subspan(ParameterIndex(kFirstMirrorParameter)).begin());
}

std::int32_t TypeCode(const EqBand& band) {
  return TruncateToInt32(band.type);
}

std::optional<FilterType> FilterTypeFromCode(std::int32_t code) {
  const auto type = static_cast<FilterType>(code);
  if (type < FilterType::Peaking || type > FilterType::HighShelving) {
    return std::nullopt;
  }
  return type;
}

void ChangeFilterType(EqBand& band, FilterType type) {
  band.type = static_cast<float>(type);
  if (type != FilterType::Peaking) {
    band.q = 0.7F;
  }
  if (type == FilterType::LowPass || type == FilterType::HighPass) {
    // Not used by the filter: it puts the band's marker on the plot where the filter's corner
    // lies, at -3 dB.
    band.gain = GainFromDecibels(-3.0F);
  }
}

SliderEnabling SlidersFor(FilterType type) {
  switch (type) {
    case FilterType::Peaking:
      return {.gain = true, .bandwidth = true};
    case FilterType::LowPass:
    case FilterType::HighPass:
      return {.gain = false, .bandwidth = false};
    case FilterType::LowShelving:
    case FilterType::HighShelving:
      break;
  }
  return {.gain = true, .bandwidth = false};
}

std::int32_t GetKnob(ConstParameterValues values, Knob knob) {
  return AmountToKnob(values[ParameterIndex(AmountParameter(knob))]);
}

void SetKnob(ParameterValues values, Knob knob, std::int32_t value) {
  if (knob == Knob::Widener) {
    values[ParameterIndex(kWidenerSwitch)] = SwitchValue(true);
  } else if (knob == Knob::Loudness) {
    values[ParameterIndex(kLoudnessSwitch)] = SwitchValue(true);
  }
  values[ParameterIndex(AmountParameter(knob))] = AmountFromKnob(value);
}

}  // namespace dsp
