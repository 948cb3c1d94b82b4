// What a hand does to a knob, without one.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "ui/controls/knob/knob_drag.h"

namespace ui {
namespace {

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
