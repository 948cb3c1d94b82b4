// What a hand does to a slider and to a knob, without either.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <optional>

#include "ui/controls/knob/knob_drag.h"
#include "ui/controls/knob/knob_geometry.h"
#include "ui/controls/slider/slider_drag.h"
#include "ui/controls/slider/slider_geometry.h"

namespace ui {
namespace {

using platform::Point;

constexpr std::int32_t kTravel = 368;
constexpr std::int32_t kWidth = 389;
constexpr std::int32_t kThumb = 19;

TEST(SliderDrag, PressHoldsTheThumbOrMakesItJump) {
  struct Case {
    std::int32_t x;
    std::int32_t thumbPos;
    std::optional<std::int32_t> expected;
  };
  for (const Case& c : {
           Case{91, 100, std::nullopt},   // the thumb's left edge: 100 - 9
           Case{109, 100, std::nullopt},  // and its right one
           Case{90, 100, 81},
           Case{110, 100, 101},  // although the drawn thumb lies there
           Case{111, 100, 102},
           Case{3, 100, 0},
           Case{388, 100, 368},
           Case{120, 111, std::nullopt},
       }) {
    SliderDrag drag;
    EXPECT_EQ(drag.Press(c.x, c.thumbPos, kThumb, kTravel), c.expected) << "x " << c.x;
    EXPECT_TRUE(drag.IsDragging());
  }
}

TEST(SliderGeometry, TravelLeavesRoomForMarginsAndThumbOffset) {
  // As wide as the dialog makes it at each resolution.
  EXPECT_EQ(SliderGeometry({389, 59}, 1.0).Travel(), 368);
  EXPECT_EQ(SliderGeometry({518, 72}, 1.25).Travel(), 493);
  EXPECT_EQ(SliderGeometry({583, 90}, 1.5).Travel(), 552);
  EXPECT_EQ(SliderGeometry({777, 113}, 2.0).Travel(), 735);
}

TEST(SliderDrag, TheThumbKeepsItsDistanceToThePointer) {
  SliderDrag drag;
  ASSERT_FALSE(drag.Press(105, 100, kThumb, kTravel));
  EXPECT_EQ(drag.Move(106, 100, kTravel, kWidth), 101);
  EXPECT_EQ(drag.Move(156, 101, kTravel, kWidth), 151);
  EXPECT_EQ(drag.Move(156, 151, kTravel, kWidth), 151);
  drag.Release();
  EXPECT_FALSE(drag.IsDragging());
}

TEST(SliderDrag, AThumbAtItsEndFollowsAtOnceWhenThePointerTurns) {
  SliderDrag drag;
  ASSERT_FALSE(drag.Press(360, 360, kThumb, kTravel));
  EXPECT_EQ(drag.Move(388, 360, kTravel, kWidth), 368);
  EXPECT_EQ(drag.Move(380, 368, kTravel, kWidth), 360) << "not only when it is back at 368";
}

TEST(SliderDrag, MovesBeyondTheSidesDoNotHappen) {
  SliderDrag drag;
  ASSERT_FALSE(drag.Press(200, 200, kThumb, kTravel));
  EXPECT_EQ(drag.Move(-1, 200, kTravel, kWidth), std::nullopt);
  EXPECT_EQ(drag.Move(kWidth + 1, 200, kTravel, kWidth), std::nullopt);
  EXPECT_EQ(drag.Move(205, 200, kTravel, kWidth), 205) << "the last place inside counts";
  EXPECT_EQ(drag.Move(0, 205, kTravel, kWidth), 0);
  EXPECT_EQ(drag.Move(kWidth, 0, kTravel, kWidth), kTravel);
}

constexpr Point kCentre{64, 77};

Point OnCircle(double degrees, double radius = 60.0) {
  const double angle = degrees * std::numbers::pi / 180.0;
  return {static_cast<std::int32_t>(std::lround(kCentre.x + std::cos(angle) * radius)),
          static_cast<std::int32_t>(std::lround(kCentre.y - std::sin(angle) * radius))};
}

std::int32_t Turn(Point from, Point to, std::int32_t knobPos) {
  KnobDrag drag;
  drag.Press(from);
  return drag.Move(to, kCentre, knobPos);
}

TEST(KnobDrag, ClockwiseRaisesAllTheWayRound) {
  for (const double degrees : {200.0, 225.0, 250.0, 170.0, 135.0, 90.0, 45.0, 20.0, 340.0, 300.0}) {
    const std::int32_t clockwise = Turn(OnCircle(degrees), OnCircle(degrees - 10.0), 200);
    const std::int32_t back = Turn(OnCircle(degrees), OnCircle(degrees + 10.0), 200);
    EXPECT_NEAR(clockwise, 200 + 17, 2) << degrees << " degrees";
    EXPECT_NEAR(back, 200 - 17, 2) << degrees << " degrees";
  }
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

TEST(KnobDrag, StopsAtBothEnds) {
  EXPECT_EQ(Turn(OnCircle(135.0), OnCircle(45.0), 300), 400);
  EXPECT_EQ(Turn(OnCircle(45.0), OnCircle(135.0), 100), 0);
  EXPECT_EQ(Turn(OnCircle(135.0), OnCircle(120.0), 4000), 400) << "a position set from outside";
}

TEST(KnobDrag, AHundredPositionsForARadian) {
  EXPECT_EQ(Turn(OnCircle(135.0), OnCircle(45.0), 0), 157);
  EXPECT_EQ(Turn(OnCircle(45.0), OnCircle(135.0), 400), 400 - 157);
}

TEST(KnobDrag, SmallStepsAreLostForGood) {
  KnobDrag drag;
  drag.Press({kCentre.x - 300, kCentre.y - 300});
  std::int32_t knobPos = 200;
  for (std::int32_t step = 1; step <= 100; ++step) {
    knobPos = drag.Move({kCentre.x - 300 + step, kCentre.y - 300}, kCentre, knobPos);
  }
  EXPECT_EQ(knobPos, 200);
}

TEST(KnobDrag, TheCentreHasNoAngle) {
  KnobDrag drag;
  drag.Press(OnCircle(90.0));
  EXPECT_EQ(drag.Move(kCentre, kCentre, 123), 123);
  EXPECT_EQ(drag.Move(OnCircle(45.0), kCentre, 123), 123) << "nor has the step away from it";
  EXPECT_GT(drag.Move(OnCircle(30.0), kCentre, 123), 123);
}

TEST(KnobGeometry, TurnsAboutTheMiddleOfTheControlNotOfTheDisc) {
  const platform::Size client{128, 154};
  EXPECT_EQ(TurningCentre(client), (Point{64, 77}));
  EXPECT_EQ(KnobGeometry(client, 1.0).DiscCentre(), 64.0);
  EXPECT_NEAR(IndicatorAngle(0), 210.0 * std::numbers::pi / 180.0, 1e-12);
  EXPECT_NEAR(IndicatorAngle(200), std::numbers::pi / 2.0, 1e-12);
  EXPECT_NEAR(IndicatorAngle(400), -30.0 * std::numbers::pi / 180.0, 1e-12);
  for (int degrees = 0; degrees <= kScaleDegrees; degrees += kTickDegrees) {
    EXPECT_NEAR(TickAngle(degrees), IndicatorAngle(degrees * kKnobTravel / kScaleDegrees), 0.011)
        << "ticks run along with the indicator";
  }
}

}  // namespace
}  // namespace ui
