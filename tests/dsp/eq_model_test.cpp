#include "dsp/eq_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <map>
#include <numeric>
#include <set>

#include "tests/dsp/hostile_values.h"

namespace dsp {
namespace {

using Values = std::array<float, kParameterCount>;

// Every parameter gets its own number, so that a stray write shows.
Values NumberedValues() {
  Values values;
  std::iota(values.begin(), values.end(), 1.0F);
  return values;
}

// Numbers of the parameters that differ from NumberedValues.
std::set<int> ChangedParameters(const Values& values) {
  const Values before = NumberedValues();
  std::set<int> changed;
  for (int n = 1; n <= static_cast<int>(kParameterCount); ++n) {
    if (values[ParameterIndex(n)] != before[ParameterIndex(n)]) {
      changed.insert(n);
    }
  }
  return changed;
}

TEST(EqModel, InitialParameters) {
  std::map<int, float> expected = {{117, 1.0F}, {232, 0.5F}, {250, 0.5F}};
  const float frequencies[] = {31, 63, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
  for (int k = 0; k < 10; ++k) {
    for (const int base : {118 + 5 * k, 168 + 5 * k}) {
      expected.insert({{base, 1.0F},
                       {base + 1, 1.0F},
                       {base + 2, frequencies[k]},
                       {base + 3, 1.0F},
                       {base + 4, 1.0F}});
    }
  }
  const Values values = InitialParameters();
  for (int n = 1; n <= static_cast<int>(kParameterCount); ++n) {
    const auto entry = expected.find(n);
    EXPECT_EQ(values[ParameterIndex(n)], entry == expected.end() ? 0.0F : entry->second) << n;
  }
}

TEST(EqModel, BandsLieAtTheirParameters) {
  Values values = NumberedValues();
  EXPECT_EQ(GetBand(values, 1).enabled, 118.0F);
  EXPECT_EQ(GetBand(values, 10).q, 167.0F);
  SetBand(values, 3, {.enabled = -1, .type = -2, .frequency = -3, .gain = -4, .q = -5});
  for (int field = 0; field < 5; ++field) {
    EXPECT_EQ(values[ParameterIndex(128 + field)], static_cast<float>(-1 - field));
  }
  EXPECT_EQ(ChangedParameters(values), (std::set{128, 129, 130, 131, 132}));
}

TEST(EqModel, MirrorIsACopyBitForBit) {
  Values values = NumberedValues();
  const std::uint32_t payload = 0x7FC12345;
  values[ParameterIndex(167)] = std::bit_cast<float>(payload);
  CopyBandsToMirror(values);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(values[ParameterIndex(217)]), payload);
  EXPECT_EQ(values[ParameterIndex(168)], 118.0F);
  EXPECT_EQ(values[ParameterIndex(216)], 166.0F);
  EXPECT_EQ(values[ParameterIndex(218)], 218.0F);
}

TEST(EqModel, ChangingTheTypeBringsItsGainQAndSliders) {
  constexpr float kMinus3Db = 0.70794576F;
  const struct {
    FilterType type;
    float code, q, gain;
    SliderEnabling sliders;
  } cases[] = {{FilterType::Peaking, 1, 3.3F, 2, {.gain = true, .bandwidth = true}},
               {FilterType::LowPass, 2, 0.7F, kMinus3Db, {.gain = false, .bandwidth = false}},
               {FilterType::HighPass, 3, 0.7F, kMinus3Db, {.gain = false, .bandwidth = false}},
               {FilterType::LowShelving, 4, 0.7F, 2, {.gain = true, .bandwidth = false}},
               {FilterType::HighShelving, 5, 0.7F, 2, {.gain = true, .bandwidth = false}}};
  for (const auto& c : cases) {
    EqBand band = {.enabled = 0, .type = 9, .frequency = 440, .gain = 2, .q = 3.3F};
    ChangeFilterType(band, c.type);
    EXPECT_EQ(band.type, c.code);
    EXPECT_EQ(band.q, c.q);
    EXPECT_EQ(band.gain, c.gain);
    EXPECT_EQ(band.enabled, 0.0F);
    EXPECT_EQ(band.frequency, 440.0F);
    EXPECT_EQ(SlidersFor(c.type), c.sliders);
  }
}

TEST(EqModel, TypeCodesTruncateAndMayNameNoFilter) {
  const struct {
    float stored;
    std::int32_t code;
    std::optional<FilterType> type;
  } cases[] = {{1.0F, 1, FilterType::Peaking},
               {2.9F, 2, FilterType::LowPass},
               {5.99F, 5, FilterType::HighShelving},
               {0.99F, 0, std::nullopt},
               {6.0F, 6, std::nullopt},
               {-1.0F, -1, std::nullopt},
               {kNan, 0, std::nullopt},
               {-kInfinity, kIntMin, std::nullopt},
               {4.3e9F, kIntMax, std::nullopt}};
  for (const auto& c : cases) {
    const EqBand band = {.type = c.stored};
    EXPECT_EQ(TypeCode(band), c.code);
    EXPECT_EQ(FilterTypeFromCode(TypeCode(band)), c.type);
  }
}

TEST(EqModel, KnobsWriteTheirAmountsAndSwitches) {
  const struct {
    Knob knob;
    int amount;
    std::optional<int> effectSwitch;
  } cases[] = {{Knob::Bass, 232, {}},
               {Knob::Treble, 250, {}},
               {Knob::Widener, 6, 5},
               {Knob::Loudness, 223, 221}};
  for (const auto& c : cases) {
    Values values = NumberedValues();
    SetKnob(values, c.knob, 0);
    EXPECT_EQ(values[ParameterIndex(c.amount)], 0.0F);
    std::set expected = {c.amount};
    if (c.effectSwitch) {
      EXPECT_EQ(values[ParameterIndex(*c.effectSwitch)], 1.0F);
      expected.insert(*c.effectSwitch);
    }
    EXPECT_EQ(ChangedParameters(values), expected);
    SetKnob(values, c.knob, 75);
    EXPECT_EQ(GetKnob(values, c.knob), 75);
  }
}

TEST(EqModel, SwitchesAreOnAboveZero) {
  EXPECT_TRUE(IsOn(SwitchValue(true)));
  EXPECT_TRUE(IsOn(1.0e-45F));
  for (const float off : {SwitchValue(false), -0.0F, -1.0F, kNan}) {
    EXPECT_FALSE(IsOn(off));
  }
}

}  // namespace
}  // namespace dsp
