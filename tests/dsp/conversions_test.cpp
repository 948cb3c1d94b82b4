#include "dsp/conversions.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/dsp/hostile_values.h"

namespace dsp {
namespace {

// Logarithm and product are single precision, the first rounded once: in double 71 positions
// differ, with the C library's own single-precision logarithm 15.
TEST(Conversions, GainComesBackOneStepNearerToZeroAtThesePositions) {
  const std::set<std::int32_t> nearer = {
      -119, -117, -109, -107, -105, -94, -92, -67, -47, -45, -42, -40, -38, -33, -32, -28, -23, -22,
      -17,  -16,  -14,  -9,   -8,   -4,  -2,  -1,  5,   6,   15,  18,  19,  22,  23,  31,  35,  38,
      46,   49,   68,   71,   74,   76,  80,  88,  90,  92,  94,  99,  105, 107, 109, 117, 119};
  for (std::int32_t slider = -120; slider <= 120; ++slider) {
    const std::int32_t step = !nearer.contains(slider) ? 0 : slider < 0 ? 1 : -1;
    EXPECT_EQ(GainToSlider(GainFromSlider(slider)), slider + step) << slider;
    EXPECT_EQ(DecibelsToSlider(DecibelsFromSlider(slider)), slider);
  }
}

TEST(Conversions, GainsAndTheirTexts) {
  const struct {
    std::int32_t slider;
    float gain;
    const char16_t* text;
  } cases[] = {{0, 1.0F, u"0.0 dB"},
               {1, 1.01157951F, u"+0.1 dB"},
               {-1, 0.988553107F, u"-0.1 dB"},
               {-30, 0.707945764F, u"-3.0 dB"},
               {77, 2.42660999F, u"+7.7 dB"},
               {120, 3.98107195F, u"+12.0 dB"},
               {-120, 0.251188636F, u"-12.0 dB"}};
  for (const auto& c : cases) {
    EXPECT_EQ(GainFromSlider(c.slider), c.gain) << c.slider;
    EXPECT_EQ(GainText(c.slider), c.text);
  }
  EXPECT_EQ(GainFromDecibels(-3.0F), 0.707945764F);
  EXPECT_EQ(GainToSlider(GainFromDecibels(0.19F)), 1);
  EXPECT_EQ(GainToSlider(GainFromDecibels(-0.19F)), -1);
  EXPECT_EQ(DecibelsToSlider(-3.04F), -30);
  EXPECT_EQ(DecibelsToSlider(-3.06F), -31);
  EXPECT_EQ(DecibelsToSlider(3.05F), 31);
}

TEST(Conversions, FrequenciesAreWholeHertz) {
  EXPECT_EQ(FrequencyFromSlider(19999), 19999.0F);
  EXPECT_EQ(FrequencyToSlider(31.99F), 31);
  EXPECT_EQ(FrequencyToSlider(-31.99F), -31);
  EXPECT_EQ(FrequencyText(20000), u"20000 Hz");
}

TEST(Conversions, BandwidthsRoundAndTheirTextsAreInHertz) {
  EXPECT_EQ(QFromSlider(1), 5.0F);
  EXPECT_EQ(QFromSlider(10), 4.1F);
  EXPECT_EQ(QFromSlider(44), 0.7F);
  EXPECT_EQ(QFromSlider(50), 0.1F);
  EXPECT_EQ(QToSlider(0.7F), 44);
  EXPECT_EQ(QToSlider(0.74F), 44);
  EXPECT_EQ(QToSlider(0.75F), 43);
  EXPECT_EQ(QToSlider(-0.26F), 54);
  EXPECT_EQ(QToSlider(0.35F), 47) << "in double a hair below the half";
  for (std::int32_t slider = 1; slider <= 50; ++slider) {
    EXPECT_EQ(QToSlider(QFromSlider(slider)), slider);
  }
  const struct {
    std::int32_t frequency, bandwidth;
    const char16_t* text;
  } cases[] = {{1000, 41, u"1000 Hz"},    {1000, 50, u"10000 Hz"},  // single precision: not 9999
               {20000, 50, u"200000 Hz"}, {1000, 44, u"1428 Hz"},
               {31, 1, u"6 Hz"},          {1000, 51, u"2147483647 Hz"}};
  for (const auto& c : cases) {
    EXPECT_EQ(BandwidthText(c.frequency, c.bandwidth), c.text);
  }
}

// In double precision half of all values would come back lower.
TEST(Conversions, TwoKnobValuesComeBackOneStepLower) {
  for (std::int32_t knob = 0; knob <= 100; ++knob) {
    EXPECT_EQ(AmountToKnob(AmountFromKnob(knob)), knob == 53 || knob == 59 ? knob - 1 : knob);
  }
  EXPECT_EQ(AmountFromKnob(75), 0.75F);
  EXPECT_EQ(AmountText(75), u"75%");
}

TEST(Conversions, ImpossibleValuesStopAtTheIntegersEnds) {
  EXPECT_EQ(FrequencyToSlider(kNan), 0);
  EXPECT_EQ(FrequencyToSlider(2147483648.0F), kIntMax);
  EXPECT_EQ(FrequencyToSlider(-3.0e38F), kIntMin);
  EXPECT_EQ(GainToSlider(0.0F), kIntMin);
  EXPECT_EQ(GainToSlider(-1.0F), 0);
  EXPECT_EQ(QToSlider(kNan), 51);
  EXPECT_EQ(QToSlider(kInfinity), 51 - kIntMax);
  EXPECT_EQ(QToSlider(-kInfinity), kIntMax);
  EXPECT_EQ(QFromSlider(kIntMin), 214748370.0F);
}

}  // namespace
}  // namespace dsp
