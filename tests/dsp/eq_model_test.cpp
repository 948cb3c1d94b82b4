#include "dsp/eq_model.h"

#include <gtest/gtest.h>

#include <bit>
#include <map>
#include <numeric>

#include "tests/dsp/hostile_values.h"

namespace dsp {
namespace {

using Values = std::array<float, 1114>;

// Every parameter gets its own number, so that a stray write shows.
Values NumberedValues() {
  Values values;
  std::iota(values.begin(), values.end(), 1.0F);
  return values;
}

// The parameters that differ from those numbers, or from 0.
std::map<int, float> Differences(const Values& values, const Values& before) {
  std::map<int, float> changed;
  for (int n = 1; n <= 1114; ++n) {
    const auto i = static_cast<std::size_t>(n - 1);
    if (values[i] != before[i]) changed[n] = values[i];
  }
  return changed;
}

TEST(EqModel, InitialParameters) {
  std::map<int, float> expected = {{117, 1.0F}, {232, 0.5F}, {250, 0.5F}};
  int base = 118;
  for (int set = 0; set < 2; ++set) {
    for (const float hertz : {31.F, 63.F, 125.F, 250.F, 500.F, 1e3F, 2e3F, 4e3F, 8e3F, 16e3F}) {
      expected.insert({{base, 1}, {base + 1, 1}, {base + 2, hertz}, {base + 3, 1}, {base + 4, 1}});
      base += 5;
    }
  }
  EXPECT_EQ(Differences(InitialParameters(), {}), expected);
}

TEST(EqModel, BandsAndTheirMirrorLieAtTheirParameters) {
  Values values = NumberedValues();
  EXPECT_EQ(GetBand(values, 1).enabled, 118.0F);
  EXPECT_EQ(GetBand(values, 10).q, 167.0F);
  SetBand(values, 3, {.enabled = -1, .type = -2, .frequency = -3, .gain = -4, .q = -5});
  EXPECT_EQ(Differences(values, NumberedValues()),
            (std::map<int, float>{{128, -1}, {129, -2}, {130, -3}, {131, -4}, {132, -5}}));
  const EqBand band = GetBand(values, 3);
  EXPECT_EQ(band.type * 1000 + band.frequency * 100 + band.gain * 10, -2340.0F);

  values = NumberedValues();
  const std::uint32_t payload = 0x7FC12345;
  values[166] = std::bit_cast<float>(payload);
  CopyBandsToMirror(values);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(values[216]), payload) << "bit for bit";
  values[166] = 167.0F;
  values[216] = 167.0F;
  Values expected = NumberedValues();
  for (std::size_t i = 117; i < 167; ++i) expected[i + 50] = static_cast<float>(i + 1);
  EXPECT_EQ(values, expected);
  for (const int number : {1, 10}) EXPECT_TRUE(IsBandNumber(number));
  for (const int number : {0, 11, -1}) EXPECT_FALSE(IsBandNumber(number));
}

TEST(EqModel, ChangingTheTypeBringsItsGainQAndSliders) {
  const struct {
    FilterType type;
    float code, q, gain;
    SliderEnabling sliders;
  } cases[] = {{FilterType::Peaking, 1, 3.3F, 2, {.gain = true, .bandwidth = true}},
               {FilterType::LowPass, 2, 0.7F, 0.707945764F, {.gain = false, .bandwidth = false}},
               {FilterType::HighPass, 3, 0.7F, 0.707945764F, {.gain = false, .bandwidth = false}},
               {FilterType::LowShelving, 4, 0.7F, 2, {.gain = true, .bandwidth = false}},
               {FilterType::HighShelving, 5, 0.7F, 2, {.gain = true, .bandwidth = false}}};
  for (const auto& c : cases) {
    EqBand band = {.enabled = 0, .type = 9, .frequency = 440, .gain = 2, .q = 3.3F};
    ChangeFilterType(band, c.type);
    EXPECT_EQ((std::array{band.enabled, band.type, band.frequency, band.gain, band.q}),
              (std::array{0.0F, c.code, 440.0F, c.gain, c.q}));
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
               {-1.5F, -1, std::nullopt},
               {kNan, 0, std::nullopt},
               {-kInfinity, kIntMin, std::nullopt},
               {4.3e9F, kIntMax, std::nullopt}};
  for (const auto& c : cases) {
    EXPECT_EQ(TypeCode({.type = c.stored}), c.code);
    EXPECT_EQ(FilterTypeFromCode(c.code), c.type);
  }
}

TEST(EqModel, KnobsWriteTheirAmountsAndSwitches) {
  const struct {
    Knob knob;
    int amount;
    std::map<int, float> written;
  } cases[] = {{Knob::Bass, 232, {{232, 0.25F}}},
               {Knob::Treble, 250, {{250, 0.25F}}},
               {Knob::Widener, 6, {{5, 1.0F}, {6, 0.25F}}},
               {Knob::Loudness, 223, {{221, 1.0F}, {223, 0.25F}}}};
  for (const auto& c : cases) {
    Values values = NumberedValues();
    SetKnob(values, c.knob, 25);
    EXPECT_EQ(Differences(values, NumberedValues()), c.written);
    EXPECT_EQ(GetKnob(values, c.knob), 25);
    values[c.amount == 6 ? 4 : 220] = 0.0F;
    SetKnob(values, c.knob, 0);
    EXPECT_EQ(values[c.amount == 6 ? 4 : 220], c.written.size() == 2 ? 1.0F : 0.0F);
  }
}

}  // namespace
}  // namespace dsp
