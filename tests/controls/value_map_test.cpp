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

struct Range {
  std::int32_t minValue;
  std::int32_t maxValue;
  bool logScale;
};
constexpr Range kGain{-120, 120, false};
constexpr Range kFrequency{20, 20000, true};
constexpr Range kBandwidth{1, 50, false};

SliderScale MakeScale(const Range& range, std::int32_t travel) {
  SliderScale scale;
  scale.SetTravel(travel);
  scale.SetLogScale(range.logScale);
  scale.SetRange(range.minValue, range.maxValue);
  return scale;
}

// Positions are truncated, so a value may come back as one below, never above; and setting what
// came back may not go on sinking by more than a pixel at a time.
TEST(SliderScale, ValuesComeBackAtMostOnePixelLower) {
  for (const Range& range : {kGain, kFrequency, kBandwidth, Range{-7, -3, false}}) {
    // As the dialog has it at 96 and 192 dpi, and shorter than its range.
    for (const std::int32_t travel : {368, 735, 100}) {
      SCOPED_TRACE(testing::Message() << range.minValue << " over " << travel);
      const SliderScale scale = MakeScale(range, travel);
      EXPECT_EQ(scale.Position(range.minValue - 15), 0);
      EXPECT_EQ(scale.Position(range.maxValue + 15), travel);
      EXPECT_EQ(scale.Position(range.maxValue), travel);
      EXPECT_EQ(scale.Value(0), range.minValue);
      EXPECT_EQ(scale.Value(travel), range.maxValue);
      for (std::int32_t value = range.minValue; value <= range.maxValue; ++value) {
        const std::int32_t position = scale.Position(value);
        ASSERT_LE(scale.Value(position), value);
        ASSERT_GE(scale.Value(std::min(position + 1, travel)), value);
      }
    }
  }
}

TEST(SliderScale, KnownPlaces) {
  const SliderScale gain = MakeScale(kGain, 369);
  EXPECT_EQ(gain.ZeroPos(), 184);
  EXPECT_EQ(gain.Position(0), 184);
  EXPECT_EQ(gain.Value(184), 0) << "-0.3 is cut to 0";
  EXPECT_EQ(MakeScale(kBandwidth, 368).ZeroPos(), -7);
  EXPECT_EQ(MakeScale(kFrequency, 300).Position(200), 100) << "a third for each decade";
  EXPECT_EQ(MakeScale(kFrequency, 300).Value(100), 200);
  EXPECT_EQ(MakeScale(kFrequency, 368).Value(2), 21) << "20.77 rounded";
  // The value of the next pixel can be nearer than that of the truncated one.
  EXPECT_EQ(MakeScale(kGain, 100).NearestPosition(1), 50);
  EXPECT_EQ(MakeScale(kGain, 100).NearestPosition(2), 51);
  SliderScale scale = MakeScale(kGain, 200);
  scale.SetTravel(400);
  EXPECT_EQ(scale.ZeroPos(), 100) << "until the next range";
}

TEST(SliderScale, NothingLeavesTheTravel) {
  constexpr std::int32_t kHostile[] = {kIntMin, -1, 0, 65536, kIntMax};
  for (const bool logScale : {false, true}) {
    for (const std::int32_t minValue : kHostile) {
      for (const std::int32_t maxValue : kHostile) {
        for (const std::int32_t value : kHostile) {
          const SliderScale scale = MakeScale({minValue, maxValue, logScale}, 368);
          const std::int32_t position = scale.Position(value);
          ASSERT_EQ(position, std::clamp(position, 0, 368));
          scale.Value(value);
          ASSERT_EQ(MakeScale({minValue, maxValue, logScale}, -20).Position(value), 0);
        }
      }
    }
  }
}

TEST(LinearMap, TruncatesAndWrapsAroundAtThirtyTwoBits) {
  const LinearMap knob{.minValue = 0, .maxValue = 100, .travel = kKnobTravel};
  EXPECT_EQ(knob.Position(53), 212);
  EXPECT_EQ(knob.Value(215), 53);
  EXPECT_EQ(knob.Position(-1), -4) << "not clamped";
  const LinearMap map{.minValue = 0, .maxValue = 1 << 20, .travel = 1 << 12};
  EXPECT_EQ(map.Position((1 << 19) - 1), 2047);
  EXPECT_EQ(map.Position(1 << 19), -2048);
}

TEST(PixelMath, CoordinatesBeyondEverythingStayUsable) {
  EXPECT_EQ(PixelPosition(12.9), 12);
  EXPECT_EQ(PixelPosition(-0.9), 0);
  EXPECT_EQ(PixelPosition(std::nan("")), kNowhere);
  EXPECT_EQ(PixelPosition(-3.0e38), kNowhere);
  EXPECT_EQ(PixelPosition(3.0e38), -kNowhere);
}

}  // namespace
}  // namespace ui
