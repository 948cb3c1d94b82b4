#include "ui/controls/shared/value_map.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

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

using platform::Point;

constexpr Point kCentre{64, 77};

Point OnCircle(double degrees) {
  const double angle = degrees * std::numbers::pi / 180.0;
  return {static_cast<std::int32_t>(std::lround(kCentre.x + std::cos(angle) * 60.0)),
          static_cast<std::int32_t>(std::lround(kCentre.y - std::sin(angle) * 60.0))};
}

std::int32_t Turn(Point from, Point to, std::int32_t knobPos) {
  KnobDrag drag;
  drag.Press(from);
  return drag.Move(to, kCentre, knobPos);
}

TEST(KnobDrag, ClockwiseRaisesAllTheWayRound) {
  for (const double degrees : {200.0, 250.0, 170.0, 135.0, 90.0, 45.0, 20.0, 340.0, 300.0}) {
    EXPECT_NEAR(Turn(OnCircle(degrees), OnCircle(degrees - 10.0), 200), 217, 2) << degrees;
    EXPECT_NEAR(Turn(OnCircle(degrees), OnCircle(degrees + 10.0), 200), 183, 2) << degrees;
  }
  EXPECT_EQ(Turn(OnCircle(135.0), OnCircle(45.0), 0), 157) << "a hundred for a radian";
  EXPECT_EQ(Turn(OnCircle(45.0), OnCircle(135.0), 400), 243);
  EXPECT_EQ(Turn(OnCircle(135.0), OnCircle(45.0), 300), 400);
  EXPECT_EQ(Turn(OnCircle(45.0), OnCircle(135.0), 100), 0);
}

// A step that starts on the centre's row raises on the right and lowers on the left, whichever way
// the pointer goes.
TEST(KnobDrag, TheCentresRowCountsAsBelow) {
  for (const double away : {12.0, -12.0}) {
    EXPECT_GT(Turn(OnCircle(0.0), OnCircle(away), 200), 200);
    EXPECT_LT(Turn(OnCircle(180.0), OnCircle(180.0 + away), 200), 200);
  }
  EXPECT_LT(Turn({kCentre.x + 50, kCentre.y - 1}, OnCircle(12.0), 200), 200)
      << "one pixel higher it is above";
}

TEST(KnobDrag, SmallStepsAndThoseOverTheCentreAreLost) {
  KnobDrag drag;
  drag.Press({kCentre.x - 300, kCentre.y - 300});
  std::int32_t knobPos = 200;
  for (std::int32_t step = 1; step <= 100; ++step) {
    knobPos = drag.Move({kCentre.x - 300 + step, kCentre.y - 300}, kCentre, knobPos);
  }
  EXPECT_EQ(knobPos, 200);
  EXPECT_EQ(drag.Move(kCentre, kCentre, 123), 123);
  EXPECT_EQ(drag.Move(OnCircle(45.0), kCentre, 123), 123);
  EXPECT_GT(drag.Move(OnCircle(30.0), kCentre, 123), 123);
}

}  // namespace
}  // namespace ui
