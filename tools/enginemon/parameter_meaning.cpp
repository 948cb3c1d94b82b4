#include "tools/enginemon/parameter_meaning.h"

#include <array>
#include <charconv>
#include <cmath>

#include "dsp/eq_model.h"
#include "dsp/truncation.h"

namespace tools {
namespace {

constexpr int kBandParameters = dsp::kBandCount * dsp::kFieldsPerBand;

struct Field {
  std::string_view name;
  Unit unit;
};

// In the order of a band's parameters.
constexpr std::array<Field, dsp::kFieldsPerBand> kBandFields = {{
    {"enabled", Unit::Switch},
    {"type", Unit::FilterType},
    {"frequency", Unit::Hertz},
    {"gain", Unit::Decibels},
    {"q", Unit::Q},
}};

struct SingleParameter {
  int number;
  Field field;
};

constexpr std::array<SingleParameter, 7> kSingleParameters = {{
    {dsp::kWidenerSwitch, {"widener switch", Unit::Switch}},
    {dsp::kWidenerAmount, {"widener", Unit::Amount}},
    {dsp::kEqualizerEnable, {"equalizer", Unit::Switch}},
    {dsp::kLoudnessSwitch, {"loudness switch", Unit::Switch}},
    {dsp::kLoudnessAmount, {"loudness", Unit::Amount}},
    {dsp::kBassAmount, {"bass", Unit::Amount}},
    {dsp::kTrebleAmount, {"treble", Unit::Amount}},
}};

std::optional<ParameterMeaning> BandMeaning(int number, int firstParameter,
                                            ParameterMeaning::Copy copy) {
  const int offset = number - firstParameter;
  if (offset < 0 || offset >= kBandParameters) return std::nullopt;
  const Field& field = kBandFields[static_cast<std::size_t>(offset % dsp::kFieldsPerBand)];
  return ParameterMeaning{field.name, field.unit, offset / dsp::kFieldsPerBand + 1, copy};
}

std::string DecibelsText(double decibels) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), decibels,
                                 std::chars_format::fixed, 2);
  return (decibels < 0.0 ? "" : "+") + std::string(digits.data(), end.ptr) + " dB";
}

}  // namespace

std::optional<ParameterMeaning> MeaningOf(std::uint32_t number) {
  if (number > dsp::kParameterCount) return std::nullopt;
  const auto known = static_cast<int>(number);
  for (const SingleParameter& single : kSingleParameters) {
    if (single.number == known) return ParameterMeaning{single.field.name, single.field.unit};
  }
  if (auto meaning = BandMeaning(known, dsp::kFirstBandParameter, ParameterMeaning::Copy::Edited)) {
    return meaning;
  }
  return BandMeaning(known, dsp::kFirstMirrorParameter, ParameterMeaning::Copy::Mirror);
}

std::optional<std::string_view> FilterTypeName(float code) {
  dsp::EqBand band;
  band.type = code;
  const auto filter = dsp::FilterTypeFromCode(dsp::TypeCode(band));
  if (!filter) return std::nullopt;
  switch (*filter) {
    case dsp::FilterType::Peaking:
      return "peaking";
    case dsp::FilterType::LowPass:
      return "low pass";
    case dsp::FilterType::HighPass:
      return "high pass";
    case dsp::FilterType::LowShelving:
      return "low shelving";
    case dsp::FilterType::HighShelving:
      break;
  }
  return "high shelving";
}

std::optional<double> DecibelsOf(float factor) {
  if (!(factor > 0.0F) || std::isinf(factor)) return std::nullopt;
  // Adding zero takes the sign off a rounded zero.
  return std::round(20.0 * std::log10(static_cast<double>(factor)) * 100.0) / 100.0 + 0.0;
}

std::string ShortestText(float value) {
  if (std::isnan(value)) return "nan";
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), end.ptr};
}

std::string TextInUnit(Unit unit, float value) {
  std::string number = ShortestText(value);
  switch (unit) {
    case Unit::Switch:
      return dsp::IsOn(value) ? "on" : "off";
    case Unit::FilterType: {
      const auto name = FilterTypeName(value);
      return name ? std::string(*name) : number;
    }
    case Unit::Hertz:
      return number + " Hz";
    case Unit::Decibels: {
      const auto decibels = DecibelsOf(value);
      return decibels ? DecibelsText(*decibels) : "factor " + number;
    }
    case Unit::Q:
    case Unit::Amount:
      break;
  }
  return number;
}

}  // namespace tools
