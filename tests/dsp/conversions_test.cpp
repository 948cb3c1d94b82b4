#include "dsp/conversions.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/dsp/hostile_values.h"

namespace dsp {
namespace {

TEST(Conversions, FrequencySliderKeepsWholeHertz) {
  for (const std::int32_t slider : {20, 31, 1000, 19999, 20000}) {
    EXPECT_EQ(FrequencyToSlider(FrequencyFromSlider(slider)), slider);
  }
  EXPECT_EQ(FrequencyToSlider(31.99F), 31);
  EXPECT_EQ(FrequencyToSlider(-31.99F), -31);
  EXPECT_EQ(FrequencyText(20000), u"20000 Hz");
}

TEST(Conversions, GainSliderReachesItsEndsAndNeverMovesAwayFromZero) {
  EXPECT_EQ(GainFromSlider(0), 1.0F);
  EXPECT_FLOAT_EQ(GainFromSlider(-30), 0.7079458F);
  EXPECT_FLOAT_EQ(GainFromSlider(-120), 0.25118864F);
  EXPECT_FLOAT_EQ(GainFromSlider(120), 3.9810717F);
  EXPECT_EQ(GainFromDecibels(-3.0F), GainFromSlider(-30));
  for (std::int32_t slider = -120; slider <= 120; ++slider) {
    const std::int32_t shown = GainToSlider(GainFromSlider(slider));
    EXPECT_LE(std::abs(shown), std::abs(slider));
    EXPECT_LE(std::abs(slider - shown), 1) << slider;
  }
  EXPECT_EQ(GainToSlider(GainFromDecibels(0.19F)), 1);
  EXPECT_EQ(GainToSlider(GainFromDecibels(-0.19F)), -1);
}

TEST(Conversions, GainTextHasAPlusAboveZeroOnly) {
  const struct {
    std::int32_t slider;
    const char16_t* text;
  } cases[] = {{0, u"0.0 dB"},   {1, u"+0.1 dB"},    {-1, u"-0.1 dB"},   {-30, u"-3.0 dB"},
               {77, u"+7.7 dB"}, {120, u"+12.0 dB"}, {-120, u"-12.0 dB"}};
  for (const auto& c : cases) {
    EXPECT_EQ(GainText(c.slider), c.text);
  }
}

TEST(Conversions, BandwidthSliderRoundsAndComesBackExactly) {
  EXPECT_EQ(QFromSlider(1), 5.0F);
  EXPECT_EQ(QFromSlider(10), 4.1F);
  EXPECT_EQ(QFromSlider(41), 1.0F);
  EXPECT_EQ(QFromSlider(50), 0.1F);
  EXPECT_EQ(QToSlider(0.7F), 44);
  EXPECT_EQ(QToSlider(0.74F), 44);
  EXPECT_EQ(QToSlider(0.75F), 43);
  EXPECT_EQ(QToSlider(-0.26F), 54);
  for (std::int32_t slider = 1; slider <= 50; ++slider) {
    EXPECT_EQ(QToSlider(QFromSlider(slider)), slider);
  }
}

TEST(Conversions, BandwidthTextIsInHertz) {
  const struct {
    std::int32_t frequency;
    std::int32_t bandwidth;
    const char16_t* text;
  } cases[] = {{1000, 41, u"1000 Hz"},   // q 1.0
               {1000, 50, u"10000 Hz"},  // q 0.1: single precision does not fall short
               {20000, 50, u"200000 Hz"},
               {1000, 44, u"1428 Hz"},  // q 0.7
               {31, 1, u"6 Hz"},        // q 5.0, 6.2 truncated
               {1000, 51, u"2147483647 Hz"},
               {0, 51, u"0 Hz"}};
  for (const auto& c : cases) {
    EXPECT_EQ(BandwidthText(c.frequency, c.bandwidth), c.text);
  }
}

// In double precision half of all values would come back lower.
TEST(Conversions, TwoKnobValuesComeBackOneStepLower) {
  for (std::int32_t knob = 0; knob <= 100; ++knob) {
    const bool lower = knob == 53 || knob == 59;
    EXPECT_EQ(AmountToKnob(AmountFromKnob(knob)), lower ? knob - 1 : knob);
  }
  EXPECT_EQ(AmountFromKnob(100), 1.0F);
}

TEST(Conversions, DecibelsRoundToTheNearestTenth) {
  for (std::int32_t slider = -120; slider <= 120; ++slider) {
    EXPECT_EQ(DecibelsToSlider(DecibelsFromSlider(slider)), slider);
  }
  EXPECT_EQ(DecibelsToSlider(-3.04F), -30);
  EXPECT_EQ(DecibelsToSlider(-3.06F), -31);
  EXPECT_EQ(DecibelsToSlider(3.06F), 31);
}

TEST(Conversions, ImpossibleValuesStopAtTheIntegersEnds) {
  EXPECT_EQ(FrequencyToSlider(kNan), 0);
  EXPECT_EQ(FrequencyToSlider(kInfinity), kIntMax);
  EXPECT_EQ(FrequencyToSlider(2147483648.0F), kIntMax);
  EXPECT_EQ(FrequencyToSlider(-2147483648.0F), kIntMin);
  EXPECT_EQ(FrequencyToSlider(-3.0e38F), kIntMin);
  EXPECT_EQ(GainToSlider(0.0F), kIntMin);
  EXPECT_EQ(GainToSlider(-1.0F), 0);
  EXPECT_EQ(GainToSlider(kInfinity), kIntMax);
  EXPECT_EQ(DecibelsToSlider(-kInfinity), kIntMin);
  EXPECT_EQ(DecibelsToSlider(kNan), 0);
  EXPECT_EQ(QToSlider(kNan), 51);
  EXPECT_EQ(QToSlider(kInfinity), 51 - kIntMax);
  EXPECT_EQ(QToSlider(-kInfinity), kIntMax);
  EXPECT_EQ(QFromSlider(kIntMin), 214748370.0F);
  EXPECT_EQ(AmountToKnob(3.0e38F), kIntMax);
}

}  // namespace
}  // namespace dsp
