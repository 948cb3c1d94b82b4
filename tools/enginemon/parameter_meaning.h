// What the numbers of the engine's parameters stand for, and their values in the units of people.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tools {

enum class Unit { Switch, FilterType, Hertz, Decibels, Q, Amount };

struct ParameterMeaning {
  enum class Copy { None, Edited, Mirror };

  std::string_view name;  // "frequency", "bass"
  Unit unit;
  int band = 0;  // from 1; 0 for what is no part of a band
  Copy copy = Copy::None;
};

// Nothing for the parameters that only the engine knows.
std::optional<ParameterMeaning> MeaningOf(std::uint32_t number);

// The name of a filter type's code, which may be any float; nothing when it names none.
std::optional<std::string_view> FilterTypeName(float code);

// A linear factor as dB, to a hundredth; nothing for what is no factor: 0, negative, not finite.
std::optional<double> DecibelsOf(float factor);

// The shortest decimal form that gives the same float again; "nan", "inf", "-inf".
std::string ShortestText(float value);

// The value with its unit: "250 Hz", "+3.00 dB", "on", "low pass", "0.7". One that its unit cannot
// tell comes as the number that it is.
std::string TextInUnit(Unit unit, float value);

}  // namespace tools
