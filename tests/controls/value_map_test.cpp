#include "ui/controls/shared/value_map.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ui/controls/knob/knob_drag.h"
#include "ui/controls/shared/pixel_math.h"
#include "ui/controls/slider/slider_scale.h"

namespace ui {
namespace {

constexpr std::int32_t kIntMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kIntMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kHostileIntegers[] = {kIntMin, kIntMin + 1, -65536, -1,
                                             0,       1,           65536,  kIntMax};

struct Range {
  std::int32_t minValue;
  std::int32_t maxValue;
  bool logScale;
};

constexpr Range kGain{-120, 120, false};
constexpr Range kFrequency{20, 20000, true};
constexpr Range kBandwidth{1, 50, false};

// A slider as the dialog has it at 96, 120, 144 and 192 dpi, and shorter than its range.
constexpr std::int32_t kTravels[] = {368, 493, 552, 735, 100};

SliderScale MakeScale(const Range& range, std::int32_t travel) {
  SliderScale scale;
  scale.SetTravel(travel);
  scale.SetLogScale(range.logScale);
  scale.SetRange(range.minValue, range.maxValue);
  return scale;
}

TEST(SliderScale, EndsOfTheRangeAreEndsOfTheTravel) {
  for (const Range& range : {kGain, kFrequency, kBandwidth, Range{-7, -3, false}}) {
    for (const std::int32_t travel : kTravels) {
      SCOPED_TRACE(testing::Message()
                   << range.minValue << " to " << range.maxValue << " over " << travel);
      const SliderScale scale = MakeScale(range, travel);
      EXPECT_EQ(scale.Position(range.minValue), 0);
      EXPECT_EQ(scale.Position(range.maxValue), travel);
      EXPECT_EQ(scale.Value(0), range.minValue);
      EXPECT_EQ(scale.Value(travel), range.maxValue);
      EXPECT_EQ(scale.Position(range.minValue - 15), 0);
      EXPECT_EQ(scale.Position(range.maxValue + 15), travel);
    }
  }
}

// Positions are truncated, so a value may come back as one below, never above; and setting what
// came back may not go on sinking by more than a pixel at a time.
TEST(SliderScale, ValuesComeBackAtMostOnePixelLower) {
  for (const Range& range : {kGain, kFrequency, kBandwidth}) {
    for (const std::int32_t travel : kTravels) {
      const SliderScale scale = MakeScale(range, travel);
      for (std::int32_t value = range.minValue; value <= range.maxValue; ++value) {
        const std::int32_t position = scale.Position(value);
        ASSERT_LE(scale.Value(position), value) << "travel " << travel;
        if (position < travel) {
          ASSERT_GE(scale.Value(position + 1), value) << "travel " << travel;
        }
      }
      for (std::int32_t position = 0; position < travel; ++position) {
        ASSERT_LE(scale.Value(position), scale.Value(position + 1));
      }
    }
  }
}

TEST(SliderScale, KnownPlaces) {
  const SliderScale gain = MakeScale(kGain, 369);
  EXPECT_EQ(gain.ZeroPos(), 184);
  EXPECT_EQ(gain.Position(0), 184);
  EXPECT_EQ(gain.Value(184), 0) << "-0.3 is cut to 0";
  EXPECT_LT(MakeScale(kBandwidth, 368).ZeroPos(), 0);
  EXPECT_EQ(MakeScale(kFrequency, 300).Position(200), 100) << "a third for each decade";
  EXPECT_EQ(MakeScale(kFrequency, 300).Value(100), 200);
  EXPECT_EQ(MakeScale(kFrequency, 368).Value(1), 20) << "20.38 rounded";
  EXPECT_EQ(MakeScale(kFrequency, 368).Value(2), 21) << "20.77 rounded";
}

TEST(SliderScale, SettingTheRangeFixesTheZeroPosition) {
  SliderScale scale = MakeScale(kGain, 200);
  scale.SetTravel(400);
  EXPECT_EQ(scale.ZeroPos(), 100);
  scale.SetRange(-100, 300);
  EXPECT_EQ(scale.ZeroPos(), 100);
  scale.SetRange(0, 300);
  EXPECT_EQ(scale.ZeroPos(), 0);
}

TEST(LinearMap, ProductWrapsAroundAtThirtyTwoBits) {
  const LinearMap map{.minValue = 0, .maxValue = 1 << 20, .travel = 1 << 12};
  EXPECT_EQ(map.Position((1 << 19) - 1), 2047);
  EXPECT_EQ(map.Position(1 << 19), -2048);
  EXPECT_EQ(map.Position(1 << 20), 0);
}

TEST(SliderScale, NothingLeavesTheTravel) {
  for (const bool logScale : {false, true}) {
    for (const std::int32_t minValue : kHostileIntegers) {
      for (const std::int32_t maxValue : kHostileIntegers) {
        for (const std::int32_t travel : {-20, 0, 1, 368}) {
          const SliderScale scale = MakeScale({minValue, maxValue, logScale}, travel);
          for (const std::int32_t value : kHostileIntegers) {
            const std::int32_t position = scale.Position(value);
            ASSERT_GE(position, 0);
            ASSERT_LE(position, std::max(travel, 0));
            scale.Value(value);
          }
        }
      }
    }
  }
  EXPECT_EQ(MakeScale({5, 5, false}, 368).Position(7), 368) << "no range: infinitely far";
  EXPECT_EQ(MakeScale({5, 5, false}, 368).Position(5), 0);
  EXPECT_EQ(MakeScale({0, 100, true}, 368).Value(368), 0) << "no logarithm of 0";
}

TEST(KnobMap, FourHundredPositions) {
  const LinearMap map{.minValue = 0, .maxValue = 100, .travel = kKnobTravel};
  for (std::int32_t value = 0; value <= 100; ++value) {
    EXPECT_EQ(map.Position(value), 4 * value);
    EXPECT_EQ(map.Value(4 * value), value);
    EXPECT_EQ(map.Value(4 * value + 3), value);
  }
  EXPECT_EQ(map.Position(-1), -4) << "not clamped";
  EXPECT_EQ(map.Position(200), 800);
}

TEST(PixelMath, CoordinatesBeyondEverythingStayUsable) {
  EXPECT_EQ(PixelPosition(12.9), 12);
  EXPECT_EQ(PixelPosition(-0.9), 0);
  EXPECT_EQ(PixelPosition(std::nan("")), kNowhere);
  EXPECT_EQ(PixelPosition(-std::numeric_limits<double>::infinity()), kNowhere);
  EXPECT_EQ(PixelPosition(3.0e38), -kNowhere);
  EXPECT_EQ(ScaledPixels(1.5, 1.25), 1);
  EXPECT_EQ(ScaledPixels(15.0, 1.25), 18);
}

}  // namespace
}  // namespace ui
